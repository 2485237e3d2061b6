// The lines of goods-in in their grid: correcting a cell, removing a line, the total.
#include "data/number.h"
#include "forms/keys.h"
#include "goods_in/frm_entradas_wizard.h"

namespace tarvik {

using service::Trampa;

void frmEntradasWizard::MSFlexGridEdit(forms::FlexGrid& MSFlexGrid, forms::TextBox& Edt, int KeyAscii) {
  Trampa intenta{*this, "MSFlexGridEdit"};
  if (!TextoInicial(intenta, Edt, KeyAscii)) return;
  if (MSFlexGrid.Col() == 0) {
    intenta([&] { GetPlatform().Beep(); });
    return;
  }
  if (Modo == "CONSULTA") return;
  if (fg2.Col() > 2) return;
  if (fg2.Col() == 1) {
    intenta([&] { Dispara("ENTRADA013"); });
    if (Cancelado()) return;
  }
  SobreLaCelda(intenta, MSFlexGrid, Edt);
}

void frmEntradasWizard::fg2_GotFocus() {
  Trampa intenta{*this, "fg2_GotFocus"};
  if (txtEdit.Visible()) ConfirmaCelda(intenta);
}

void frmEntradasWizard::fg2_LeaveCell() {
  Trampa intenta{*this, "fg2_LeaveCell"};
  if (fg2.Row() >= 1) intenta([&] { fg2.CellBackColor(kBlanco); });
  if (txtEdit.Visible()) ConfirmaCelda(intenta);
}

void frmEntradasWizard::fg2_KeyDown(int& KeyCode, int /*Shift*/) {
  Trampa intenta{*this, "fg2_KeyDown"};
  if (Modo == "CONSULTA" || KeyCode != forms::kKeyDelete || fg2.Col() != 0 || fg2.Text().empty()) return;
  QuitaRenglon(intenta);
  CalculaImportes();
}

void frmEntradasWizard::CalculaImportes() {
  Trampa intenta{*this, "CalculaImportes"};
  double suma = 0;
  const int ultimo = fg2.Rows() - fg2.FixedRows();
  for (int renglon = 1; renglon <= ultimo; ++renglon) {
    if (intenta.Si([&] { return Funciones().EstaVacio(fg2.TextMatrix(renglon, 0)); })) break;
    intenta([&] {
      fg2.TextMatrix(renglon, 3,
                     data::PlainNumber(Funciones().ANumero(fg2.TextMatrix(renglon, 1)) *
                                       Funciones().ANumero(fg2.TextMatrix(renglon, 2))));
    });
    intenta([&] { suma += Funciones().ANumero(fg2.TextMatrix(renglon, 3)); });
  }
  intenta([&] { txtFields(11).Text(data::FormatNumber(suma, kFormatoTotal)); });
}

}  // namespace tarvik
