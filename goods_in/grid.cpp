// The lines of goods-in in their grid: correcting a cell, removing a line, the total.
#include "data/number.h"
#include "forms/keys.h"
#include "goods_in/columnas.h"
#include "goods_in/frm_entradas_wizard.h"

namespace tarvik {

using service::Trampa;

void frmEntradasWizard::MSFlexGridEdit(forms::FlexGrid& MSFlexGrid, forms::TextBox& Edt, int KeyAscii) {
  Trampa intenta{*this, "MSFlexGridEdit"};
  if (!TextoInicial(intenta, Edt, KeyAscii)) return;
  if (MSFlexGrid.Col() == columna_entrada::Articulo) {
    intenta([&] { GetPlatform().Beep(); });
    return;
  }
  if (Modo == modo::kConsulta) return;
  if (fg2.Col() > columna_entrada::Precio) return;
  if (fg2.Col() == columna_entrada::Cantidad) {
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
  if (Modo == modo::kConsulta || KeyCode != forms::kKeyDelete || fg2.Col() != columna_entrada::Articulo ||
      fg2.Text().empty())
    return;
  QuitaRenglon(intenta);
  CalculaImportes();
}

void frmEntradasWizard::SalvaCambios() {
  Trampa intenta{*this, "SalvaCambios"};
  // By the column's number alone. Only quantity and price open an editor; a cell of the other two is stored
  // here when a routine edits it.
  SalvaCelda(intenta, "entpart", "id_entrada",
             {{columna_entrada::Cantidad, "cantidad", true},
              {columna_entrada::Precio, "precio", true},
              {columna_entrada::IdEntrada, "impuesto", true},
              {columna_entrada::Presentacion, "observ", false}});
}

void frmEntradasWizard::CalculaImportes() {
  Trampa intenta{*this, "CalculaImportes"};
  double suma = 0;
  const int ultimo = fg2.Rows() - fg2.FixedRows();
  for (int renglon = 1; renglon <= ultimo; ++renglon) {
    if (intenta.Si([&] { return Funciones().EstaVacio(fg2.TextMatrix(renglon, columna_entrada::Articulo)); }))
      break;
    intenta([&] {
      fg2.TextMatrix(
          renglon, columna_entrada::Importe,
          data::PlainNumber(Funciones().ANumero(fg2.TextMatrix(renglon, columna_entrada::Cantidad)) *
                            Funciones().ANumero(fg2.TextMatrix(renglon, columna_entrada::Precio))));
    });
    intenta([&] { suma += Funciones().ANumero(fg2.TextMatrix(renglon, columna_entrada::Importe)); });
  }
  intenta([&] { txtFields(campo::Total).Text(data::FormatNumber(suma, kFormatoTotal)); });
}

}  // namespace tarvik
