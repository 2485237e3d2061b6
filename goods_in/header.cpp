// The text fields of goods-in: keys, entering and leaving, and the check of the header.
#include "forms/keys.h"
#include "goods_in/frm_entradas_wizard.h"

namespace tarvik {

using service::Trampa;

bool frmEntradasWizard::AlCambiar(int Index) {
  switch (Index) {
    case campo::Concepto:
      TraeConcepto();
      break;
    case campo::Cantidad:
      MultiplicaPrecio();
      break;
    case campo::SegundaClave:
      TraeSegundaClave();
      break;
    case campo::Presentaciones:
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
  if (KeyCode == forms::kKeyF2) ColocaFoco(txtFields(campo::Articulo));
  if (KeyCode == forms::kKeyF5) return Command5_Click();
  if (KeyCode == forms::kKeyDown && Index == campo::Articulo) return AbajoEnArticulo();
  if (KeyCode == forms::kKeyF8 && PasaPorPresentacion(Index)) return;
  if (KeyCode == forms::kKeyF2) txtFields_DblClick(Index);
  if (KeyCode != forms::kKeyEnter && KeyCode != forms::kKeyTab) {
    Procesando = false;
    return;
  }
  if (!PasaConEnter(Index) && Index == campo::Articulo) EnterEnArticulo();
}

void frmEntradasWizard::EnterEnArticulo() {
  if (!TomaArticulo()) return;
  // A model's key brings its cost and unit to the entry row. After a scan the key is empty by now,
  // and a row of articles without a model would answer; the next scan overwrites what it leaves.
  data::RecordsetRef modelo;
  Abre("SELECT * FROM prods WHERE modelo = '" + txtFields(campo::Articulo).Text() + "'", modelo);
  if (modelo->Eof()) return;
  txtFields(campo::Unidad).Text(Funciones().TextoDe(modelo->Fields("unidad")));
  txtFields(campo::Precio).Text(Funciones().TextoDe(modelo->Fields("costo_u")));
  txtFields(campo::ImporteDelRenglon).Text(Funciones().TextoDe(modelo->Fields("impuesto")));
}

void frmEntradasWizard::RichTextBox1_KeyDown(int& KeyCode, int /*Shift*/) {
  if (KeyCode == forms::kKeyF8) PasaA(campo::Articulo);
}

void frmEntradasWizard::ValidaTab1(bool& valido) {
  Trampa intenta{*this, "ValidaTab1"};
  valido = true;
  auto rechaza = [&](int mensaje, int campo) {
    Mensaje(intenta, mensaje);
    ColocaFoco(txtFields(campo));
    valido = false;
  };
  if (intenta.Si([&] { return EstaVacio(campo::Concepto); }))
    return rechaza(mensaje::EntradaSinConcepto, campo::Concepto);
  data::RecordsetRef concepto;
  intenta([&] {
    Abre("SELECT tipo_movim FROM tipominv WHERE tipo_movim = '" + txtFields(campo::Concepto).Text() +
             "' AND ent_sal = 'E'",
         concepto);
  });
  if (intenta.Si([&] { return concepto->Eof(); }))
    return rechaza(mensaje::EntradaNoExisteConcepto, campo::Concepto);
  if (intenta.Si([&] { return EstaVacio(campo::Almacen); }))
    return rechaza(mensaje::SinAlmacen, campo::Almacen);
  if (intenta.Si([&] {
        return !Funciones().ExisteClave(txtFields(campo::Almacen).Text(), "almacen", "almacen",
                                        Ambiente->Conexion());
      })) {
    return rechaza(mensaje::NoExisteAlmacen, campo::Almacen);
  }
}

}  // namespace tarvik
