// The text fields of goods-in: keys, entering and leaving, and the check of the header.
#include "forms/keys.h"
#include "goods_in/frm_entradas_wizard.h"

namespace tarvik {

using service::Trampa;

bool frmEntradasWizard::AlCambiar(int Index) {
  switch (Index) {
    case 0:
      TraeConcepto();
      break;
    case 5:
      MultiplicaPrecio();
      break;
    case 24:
      TraeSegundaClave();
      break;
    case 28:
      CalculaCantidad();
      break;
    default:
      break;
  }
  return true;
}

void frmEntradasWizard::txtFields_GotFocus(int Index) {
  txtFields(Index).SelectAll();
  Ambiente->ValorDeGancho(static_cast<std::int16_t>(Index));
  Dispara("ENTRADA008");
}

void frmEntradasWizard::AlSalir(int Index) {
  Ambiente->ValorDeGancho(static_cast<std::int16_t>(Index));
  Dispara("ENTRADA007");
}

void frmEntradasWizard::txtFields_KeyDown(int Index, int& KeyCode, int /*Shift*/) {
  if (KeyCode == forms::kKeyF2) ColocaFoco(txtFields(4));
  if (KeyCode == forms::kKeyF5) return Command5_Click();
  if (KeyCode == forms::kKeyDown && Index == 4) return AbajoEnArticulo();
  if (KeyCode == forms::kKeyF8 && PasaPorPresentacion(Index)) return;
  if (KeyCode == forms::kKeyF2) txtFields_DblClick(Index);
  if (KeyCode != forms::kKeyEnter && KeyCode != forms::kKeyTab) {
    Procesando = false;
    return;
  }
  if (!PasaConEnter(Index) && Index == 4) EnterEnArticulo();
}

void frmEntradasWizard::EnterEnArticulo() {
  if (!TomaArticulo()) return;
  // A model's key brings its cost and unit to the entry row. After a scan the key is empty by now,
  // and a row of articles without a model would answer; the next scan overwrites what it leaves.
  data::RecordsetRef modelo;
  Abre("SELECT * FROM prods WHERE modelo = '" + txtFields(4).Text() + "'", modelo);
  if (modelo->Eof()) return;
  txtFields(27).Text(Funciones().TextoDe(modelo->Fields("unidad")));
  txtFields(6).Text(Funciones().TextoDe(modelo->Fields("costo_u")));
  txtFields(9).Text(Funciones().TextoDe(modelo->Fields("impuesto")));
}

void frmEntradasWizard::RichTextBox1_KeyDown(int& KeyCode, int /*Shift*/) {
  if (KeyCode == forms::kKeyF8) PasaA(4);
}

void frmEntradasWizard::ValidaTab1(bool& valido) {
  Trampa intenta{*this, "ValidaTab1"};
  valido = true;
  auto rechaza = [&](int mensaje, int campo) {
    Mensaje(intenta, mensaje);
    ColocaFoco(txtFields(campo));
    valido = false;
  };
  if (intenta.Si([&] { return Vacio(0); })) return rechaza(341, 0);
  data::RecordsetRef concepto;
  intenta([&] {
    Abre("SELECT tipo_movim FROM tipominv WHERE tipo_movim = '" + txtFields(0).Text() + "' AND ent_sal = 'E'",
         concepto);
  });
  if (intenta.Si([&] { return concepto->Eof(); })) return rechaza(342, 0);
  if (intenta.Si([&] { return Vacio(14); })) return rechaza(240, 14);
  if (intenta.Si([&] {
        return !Funciones().ExisteClave(txtFields(14).Text(), "almacen", "almacen", Ambiente->Conexion());
      })) {
    return rechaza(241, 14);
  }
}

}  // namespace tarvik
