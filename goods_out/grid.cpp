// The lines of goods-out in their grid: only quantities are corrected here, and stock is asked first.
#include "data/number.h"
#include "forms/keys.h"
#include "goods_out/columnas.h"
#include "goods_out/frm_salidas_wizard.h"

namespace tarvik {

using data::PlainNumber;
using service::Trampa;

void frmSalidasWizard::MSFlexGridEdit(forms::FlexGrid& MSFlexGrid, forms::TextBox& Edt, int KeyAscii) {
  Trampa intenta{*this, "MSFlexGridEdit"};
  if (!TextoInicial(intenta, Edt, KeyAscii)) return;
  if (MSFlexGrid.Col() != columna_salida::Cantidad) {
    intenta([&] { GetPlatform().Beep(); });
    return;
  }
  if (Modo == modo::kConsulta) return;
  intenta([&] { Dispara("SALIDAS014"); });
  if (Cancelado()) return;
  SobreLaCelda(intenta, MSFlexGrid, Edt);
}

void frmSalidasWizard::fg2_GotFocus() {
  Trampa intenta{*this, "fg2_GotFocus"};
  EditaCelda(intenta);
}

void frmSalidasWizard::fg2_LeaveCell() {
  Trampa intenta{*this, "fg2_LeaveCell"};
  if (fg2.Row() >= 1) intenta([&] { fg2.CellBackColor(kBlanco); });
  EditaCelda(intenta);
}

void frmSalidasWizard::EditaCelda(Trampa& intenta) {
  if (!txtEdit.Visible() || !txtEdit.Enabled()) return;
  if (fg2.Col() == columna_salida::Cantidad) {
    bool confirma = false;
    intenta([&] {
      confirma = ConfirmaExistencia(Funciones().ANumero(txtEdit.Text()), Funciones().ANumero(fg2.Text()));
    });
    if (!confirma) {
      intenta([&] { txtEdit.Text(""); });
      intenta([&] { txtEdit.Visible(false); });
      return ColocaFoco(fg2);
    }
  }
  ConfirmaCelda(intenta);
}

void frmSalidasWizard::fg2_KeyDown(int& KeyCode, int /*Shift*/) {
  Trampa intenta{*this, "fg2_KeyDown"};
  if (Modo == modo::kConsulta || KeyCode != forms::kKeyDelete || fg2.Col() != columna_salida::Articulo ||
      fg2.Text().empty())
    return;
  data::RecordsetRef renglon;
  intenta([&] {
    Abre("SELECT * FROM salpart WHERE id_salida = " + fg2.TextMatrix(fg2.Row(), columna_salida::IdSalida),
         renglon);
  });
  data::RecordsetRef producto;
  intenta([&] {
    Abre("SELECT * FROM prods WHERE articulo = '" + fg2.TextMatrix(fg2.Row(), columna_salida::Articulo) + "'",
         producto);
  });
  if (!intenta.Si([&] { return renglon->Eof(); })) {
    QuitaRenglon(intenta);
    ColocaFoco(txtFields(campo::Articulo));
  }
  CalculaImportes();
}

void frmSalidasWizard::SalvaCambios() {
  Trampa intenta{*this, "SalvaCambios"};
  // By the column's number alone. Only quantity and price open an editor; a cell of the other two is stored
  // here when a routine edits it.
  SalvaCelda(intenta, "salpart", "id_salida",
             {{columna_salida::Cantidad, "cantidad", true},
              {columna_salida::Precio, "precio", true},
              {columna_salida::Importe, "impuesto", true},
              {columna_salida::Descripcion, "observ", false}});
  ColocaFoco(txtFields(campo::Articulo));
}

void frmSalidasWizard::CalculaImportes() {
  Trampa intenta{*this, "CalculaImportes"};
  double importes = 0;
  double unidades = 0;
  const int ultimo = fg2.Rows() - fg2.FixedRows();
  auto numero = [&](int renglon, int columna) {
    return Funciones().ANumero(fg2.TextMatrix(renglon, columna));
  };
  for (int renglon = 1; renglon <= ultimo; ++renglon) {
    if (intenta.Si([&] { return Funciones().EstaVacio(fg2.TextMatrix(renglon, columna_salida::Articulo)); }))
      break;
    intenta([&] {
      fg2.TextMatrix(
          renglon, columna_salida::Importe,
          PlainNumber(numero(renglon, columna_salida::Precio) * numero(renglon, columna_salida::Cantidad)));
    });
    intenta([&] {
      fg2.TextMatrix(renglon, columna_salida::Existencia,
                     PlainNumber(numero(renglon, columna_salida::ExistenciaDelAlmacen) -
                                 numero(renglon, columna_salida::Cantidad)));
    });
    intenta([&] { importes += numero(renglon, columna_salida::Importe); });
    intenta([&] { unidades += numero(renglon, columna_salida::Cantidad); });
    UltimaPartida = renglon;
    intenta([&] { txtFields(campo::Renglones).Text(std::to_string(renglon)); });
  }
  intenta([&] { txtFields(campo::Unidades).Text(data::FormatNumber(unidades, kFormatoTotal)); });
  intenta([&] { txtFields(campo::Total).Text(data::FormatNumber(importes, kFormatoTotal)); });
}

}  // namespace tarvik
