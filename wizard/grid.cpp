// The grid of lines of both wizards: the box that floats over a cell, its keys, and a line's removal.
#include "data/text.h"
#include "forms/keys.h"
#include "wizard/document_wizard.h"

namespace tarvik {

using service::Trampa;

namespace {

// Columns whose box takes more than figures; the second may also be opened with a letter. Goods-in has its
// description and its presentation there. Goods-out uses the same numbers, and edits neither.
constexpr int kSinFiltro = 4;
constexpr int kSinFiltroAlAbrir = 6;

}  // namespace

bool DocumentWizard::TextoInicial(Trampa& intenta, forms::TextBox& Edt, int KeyAscii) {
  if (KeyAscii >= 0 && KeyAscii <= forms::kKeySpace) {
    intenta([&] { Edt.Text(fg2.Text()); });
    intenta([&] { Edt.SelStart(1000); });
    return true;
  }
  if (intenta.Si([&] { return Funciones().EstaVacio(fg2.TextMatrix(fg2.Row(), kColumnaDelArticulo)); }))
    return false;
  int tecla = KeyAscii;
  if (intenta.Si([&] { return Funciones().TeclaNumerica(tecla, Edt) == 0; })) {
    if (fg2.Col() != kSinFiltroAlAbrir) return false;
    tecla = KeyAscii;
  }
  intenta([&] { Edt.Text(data::Encode(static_cast<char32_t>(tecla))); });
  intenta([&] { Edt.SelStart(1); });
  return true;
}

void DocumentWizard::SobreLaCelda(Trampa& intenta, forms::FlexGrid& MSFlexGrid, forms::TextBox& Edt) {
  intenta([&] {
    Edt.Place(MSFlexGrid.Left() + MSFlexGrid.CellLeft(), MSFlexGrid.Top() + MSFlexGrid.CellTop(),
              MSFlexGrid.CellWidth(), MSFlexGrid.CellHeight());
  });
  intenta([&] { Edt.Visible(true); });
  if (Edt.Enabled()) ColocaFoco(Edt);
}

void DocumentWizard::EditKeyCode(forms::FlexGrid& MSFlexGrid, forms::TextBox& Edt, int& KeyCode,
                                 int /*Shift*/) {
  Trampa intenta{*this, "EditKeyCode"};
  auto regresa = [&] {
    ColocaFoco(MSFlexGrid);
    // The cell that is left has been committed by now, on its own row.
    intenta([&] { GetPlatform().ProcessEvents(); });
  };
  switch (KeyCode) {
    case forms::kKeyEnter:
      ColocaFoco(MSFlexGrid);
      break;
    case forms::kKeyEsc:
      intenta([&] { Edt.Visible(false); });
      ColocaFoco(MSFlexGrid);
      break;
    case forms::kKeyUp:
      regresa();
      if (MSFlexGrid.Row() > MSFlexGrid.FixedRows()) intenta([&] { MSFlexGrid.Row(MSFlexGrid.Row() - 1); });
      break;
    case forms::kKeyDown:
      regresa();
      if (MSFlexGrid.Row() < MSFlexGrid.Rows() - 1) intenta([&] { MSFlexGrid.Row(MSFlexGrid.Row() + 1); });
      break;
    default:
      break;
  }
}

void DocumentWizard::ConfirmaCelda(Trampa& intenta) {
  intenta([&] { fg2.Text(txtEdit.Text()); });
  intenta([&] { txtEdit.Text(""); });
  intenta([&] { txtEdit.Visible(false); });
  SalvaCambios();
  CalculaImportes();
}

void DocumentWizard::fg2_RowColChange() {
  Trampa intenta{*this, "fg2_RowColChange"};
  if (fg2.Row() >= 1) intenta([&] { fg2.CellBackColor(kCianClaro); });
}

void DocumentWizard::fg2_KeyPress(int& KeyAscii) {
  Trampa intenta{*this, "fg2_KeyPress"};
  if (intenta.Si([&] { return Funciones().EstaVacio(fg2.TextMatrix(fg2.Row(), kColumnaDelArticulo)); }))
    return;
  MSFlexGridEdit(fg2, txtEdit, KeyAscii);
}

void DocumentWizard::fg2_DblClick() {
  Trampa intenta{*this, "fg2_DblClick"};
  if (intenta.Si([&] { return Funciones().EstaVacio(fg2.TextMatrix(fg2.Row(), kColumnaDelArticulo)); }))
    return;
  MSFlexGridEdit(fg2, txtEdit, forms::kKeySpace);
}

void DocumentWizard::txtEdit_KeyDown(int& KeyCode, int Shift) { EditKeyCode(fg2, txtEdit, KeyCode, Shift); }

void DocumentWizard::txtEdit_KeyPress(int& KeyAscii) {
  if (KeyAscii == forms::kKeyEnter) {
    KeyAscii = 0;
    return;
  }
  if (fg2.Col() == kSinFiltro || fg2.Col() == kSinFiltroAlAbrir) return;
  KeyAscii = Funciones().TeclaNumerica(KeyAscii, txtEdit);
}

void DocumentWizard::SalvaCelda(Trampa& intenta, std::string_view tabla, const std::string& clave,
                                std::initializer_list<Cambio> cambios) {
  intenta([&] { Query->Limpia(); });
  intenta([&] { Query->TipoSentencia("UPDATE"); });
  intenta([&] { Query->Condicion(clave + " = " + fg2.TextMatrix(fg2.Row(), particular_.columna_id)); });
  for (const Cambio& cambio : cambios) {
    if (cambio.columna != fg2.Col()) continue;
    intenta([&] {
      Query->AgregaCampo(
          tabla, cambio.campo,
          cambio.numero ? data::Value(Funciones().ANumero(fg2.Text())) : data::Value(fg2.Text()));
    });
  }
  EjecutaQuery(intenta);
}

void DocumentWizard::QuitaRenglon(Trampa& intenta) {
  intenta([&] { Query->Limpia(); });
  intenta([&] {
    Query->SentenciaDirecta(std::string(particular_.borra_renglon) +
                            fg2.TextMatrix(fg2.Row(), particular_.columna_id));
  });
  intenta([&] { Query->Ejecuta(); });
  intenta([&] { fg2.RemoveItem(fg2.Row()); });
  intenta([&] { fg2.AddItem(""); });
}

int DocumentWizard::RenglonLibre(Trampa& intenta) {
  const int ultimo = fg2.Rows() - fg2.FixedRows();
  for (int renglon = 1; renglon <= ultimo; ++renglon) {
    // A row that can't be read counts as used: a line is never written over another.
    if (!intenta.Si([&] { return !Funciones().EstaVacio(fg2.TextMatrix(renglon, kColumnaDelArticulo)); }))
      return renglon;
  }
  return 0;
}

}  // namespace tarvik
