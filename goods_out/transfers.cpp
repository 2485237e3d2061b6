// The marks that turn a goods-out into a transfer. The document at the receiving end is made
// by the host, in the routines of these hooks.
#include "goods_out/frm_salidas_wizard.h"

namespace tarvik {

using service::Trampa;

void frmSalidasWizard::SSCheck1_Click() {
  if (Modo == modo::kConsulta) return;
  const bool traspaso = SSCheck1.Value() == 1;
  txtFields(campo::AlmacenDestino).Enabled(traspaso);
  if (traspaso) ColocaFoco(txtFields(campo::AlmacenDestino));
}

void frmSalidasWizard::SSCheck2_Click() { Dispara("SALIDAS012"); }

void frmSalidasWizard::Check1_Click() { Dispara("SALIDAS015"); }

void frmSalidasWizard::Command1_Click() {
  Trampa intenta{*this, "Command1_Click"};
  intenta([&] { Dispara("SALIDAS005"); });
}

void frmSalidasWizard::CreaEntradasDeTraspaso() { Dispara("SALIDAS017"); }

}  // namespace tarvik
