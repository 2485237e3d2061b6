#include "matrix/frm_malla_modelos.h"

#include <set>

#include "data/number.h"
#include "forms/keys.h"
#include "service/contract/objeto.h"
#include "service/report/pantalla.h"
#include "service/report/trampa.h"

namespace tarvik {

using service::Trampa;

namespace {

constexpr int Rgb(int red, int green, int blue) { return red | green << 8 | blue << 16; }
constexpr int kRojo = Rgb(192, 0, 0);
constexpr int kRojoOscuro = Rgb(128, 0, 0);
constexpr int kVerde = Rgb(0, 128, 0);

bool EsDigito(int character) { return character >= '0' && character <= '9'; }

}  // namespace

frmMallaModelos::frmMallaModelos(service::Host& host)
    : Form(host.Plataforma(), "frmMallaModelos", "Modelos"),
      fg2(*this, "fg2"),
      txtCelda(*this, "txtCelda"),
      txtRemanente(*this, "txtRemanente"),
      lblCantidadRestante(*this, "lblCantidadRestante"),
      txtDescrip(*this, "txtDescrip"),
      cmdAceptar(*this, "cmdAceptar"),
      cmdCancelar(*this, "cmdCancelar"),
      AutoResizer1(*this, "AutoResizer1"),
      host_(host) {
  // The description and the remainder are only read: not in the tab order.
  int tab = 0;
  for (forms::Control* control :
       std::initializer_list<forms::Control*>{&fg2, &txtCelda, &cmdAceptar, &cmdCancelar}) {
    control->TabIndex(tab++);
  }
  txtCelda.Visible(false);
  txtRemanente.Text("0");
  txtRemanente.RightAligned(true);
  txtRemanente.ForeColor(kRojo);
  lblCantidadRestante.Caption("&Cantidad restante");
  cmdAceptar.Caption("&Aceptar");
  cmdAceptar.Enabled(false);
  cmdCancelar.Caption("&Cancelar");

  txtDescrip.Place(120, 120, 6000, 315);
  lblCantidadRestante.Place(6360, 120, 1500, 315);
  txtRemanente.Place(7920, 120, 1200, 315);
  fg2.Place(120, 540, 9000, 4200);
  cmdAceptar.Place(6360, 4860, 1320, 375);
  cmdCancelar.Place(7800, 4860, 1320, 375);
  AutoResizer1.Design(9240, 5355);

  fg2.OnDblClick = [this] { fg2_DblClick(); };
  fg2.OnEnterCell = [this] { fg2_EnterCell(); };
  fg2.OnLeaveCell = [this] { fg2_LeaveCell(); };
  fg2.OnGotFocus = [this] { fg2_GotFocus(); };
  fg2.OnKeyDown = [this](int& tecla, int shift) { fg2_KeyDown(tecla, shift); };
  fg2.OnKeyPress = [this](int& tecla) { fg2_KeyPress(tecla); };
  txtCelda.OnKeyDown = [this](int& tecla, int shift) { txtCelda_KeyDown(tecla, shift); };
  txtCelda.OnKeyPress = [this](int& tecla) { txtCelda_KeyPress(tecla); };
  cmdAceptar.OnClick = [this] { cmdAceptar_Click(); };
  cmdCancelar.OnClick = [this] { cmdCancelar_Click(); };
}

void frmMallaModelos::Form_Load() {}

void frmMallaModelos::Form_Resize() { AutoResizer1.Fit(ScaleWidth(), ScaleHeight(), {&txtCelda}); }

void frmMallaModelos::fg2_DblClick() {
  Trampa intenta{*this, "fg2_DblClick"};
  if (intenta.Si([&] { return fg2.Blocked(fg2.Row(), fg2.Col()); })) return;
  intenta([&] { txtCelda.Text(fg2.Text()); });
  intenta([&] { txtCelda.Place(fg2.CellLeft(), fg2.CellTop(), fg2.CellWidth(), fg2.CellHeight()); });
  intenta([&] { txtCelda.Visible(true); });
  intenta([&] { txtCelda.SetFocus(); });
  intenta([&] { txtCelda.SelectAll(); });
}

bool frmMallaModelos::EnCeldaVedada() const {
  return fg2.Row() < fg2.FixedRows() || fg2.Col() < fg2.FixedCols() || fg2.Blocked(fg2.Row(), fg2.Col());
}

// The cursor rests on no header and no blocked cell: it goes on in the direction in which it was moving,
// and returns to where it was if it would start over. Each step enters a cell, which calls this again;
// the travel under way allows for that and goes on by itself.
void frmMallaModelos::fg2_EnterCell() {
  Trampa intenta{*this, "fg2_EnterCell"};
  intenta([&] { txtCelda.Visible(false); });
  if (viajando_) return;
  const int fila_dejada = FilaAnterior;
  const int columna_dejada = ColumnaAnterior;
  std::set<Lugar> pasados;
  const Viaje viaje{*this};
  while (intenta.Mientras([&] { return EnCeldaVedada(); })) {
    intenta([&] { GetPlatform().ProcessEvents(); });
    if (!Open()) return;
    const Lugar aqui{fg2.Row(), fg2.Col(), FilaAnterior, ColumnaAnterior};
    if (!pasados.insert(aqui).second) {
      intenta([&] { fg2.MoveTo(fila_dejada, columna_dejada); });
      return;
    }
    const Lugar nuevo = Siguiente(aqui, {fg2.Rows(), fg2.Cols(), fg2.FixedRows(), fg2.FixedCols()});
    intenta([&] { fg2.MoveTo(nuevo.fila, nuevo.columna); });
    FilaAnterior = nuevo.fila_anterior;
    ColumnaAnterior = nuevo.columna_anterior;
  }
}

void frmMallaModelos::fg2_LeaveCell() {
  FilaAnterior = fg2.Row();
  ColumnaAnterior = fg2.Col();
}

void frmMallaModelos::fg2_KeyDown(int& KeyCode, int /*Shift*/) {
  Trampa intenta{*this, "fg2_KeyDown"};
  if (KeyCode == forms::kKeyEnter) fg2_DblClick();
  if (KeyCode != forms::kKeyDelete && KeyCode != forms::kKeyBack) return;
  intenta([&] { fg2.Text(""); });
  CalculaSuma();
}

void frmMallaModelos::fg2_KeyPress(int& KeyAscii) {
  Trampa intenta{*this, "fg2_KeyPress"};
  if (KeyAscii == forms::kKeyBack) {
    intenta([&] { fg2.Text(""); });
    CalculaSuma();
  }
  if (!EsDigito(KeyAscii)) return;
  fg2_DblClick();
  if (!txtCelda.Visible()) return;
  intenta([&] { txtCelda.Text(std::string(1, static_cast<char>(KeyAscii))); });
  intenta([&] { txtCelda.SelStart(1); });
}

void frmMallaModelos::txtCelda_KeyPress(int& KeyAscii) {
  const bool pasa = EsDigito(KeyAscii) || KeyAscii == forms::kKeyEsc || KeyAscii == forms::kKeyEnter ||
                    KeyAscii == '.' || KeyAscii == forms::kKeyBack;
  if (!pasa) KeyAscii = 0;
}

void frmMallaModelos::txtCelda_KeyDown(int& KeyCode, int /*Shift*/) {
  if (KeyCode == forms::kKeyEnter) {
    txtCelda.Visible(false);
    fg2.Text(txtCelda.Text());
    ColocaFoco(fg2);
    fg2_LeaveCell();
    fg2.Col(fg2.Col() + 1);
    fg2_EnterCell();
    CalculaSuma();
  } else if (KeyCode == forms::kKeyEsc) {
    txtCelda.Visible(false);
    ColocaFoco(fg2);
  }
}

void frmMallaModelos::CalculaSuma() {
  Trampa intenta{*this, "CalculaSuma"};
  if (!txtRemanente.Visible()) return;
  double suma = 0;
  intenta([&] {
    for (int columna = fg2.FixedCols(); columna < fg2.Cols(); ++columna) {
      for (int fila = fg2.FixedRows(); fila < fg2.Rows(); ++fila) {
        suma += data::Val(fg2.TextMatrix(fila, columna));
      }
    }
  });
  // By way of their texts, so that tenths that add up to a whole leave nothing over.
  intenta(
      [&] { txtRemanente.Text(data::PlainNumber(data::Val(Tag()) - data::Val(data::PlainNumber(suma)))); });
  if (data::Val(txtRemanente.Text()) != 0) {
    intenta([&] { txtRemanente.ForeColor(kRojoOscuro); });
    intenta([&] { cmdAceptar.Enabled(false); });
    return;
  }
  intenta([&] { txtRemanente.ForeColor(kVerde); });
  intenta([&] { cmdAceptar.Enabled(true); });
  ColocaFoco(cmdAceptar);
}

void frmMallaModelos::cmdAceptar_Click() {
  Tag("Hecho");
  Hide();
}

void frmMallaModelos::cmdCancelar_Click() { Unload(); }

void frmMallaModelos::ColocaFoco(forms::Control& control) { service::ColocaFoco(control); }

// This screen has no context, and so no folder for a log: the box is shown, and then the error goes
// up through the screen's event.
bool frmMallaModelos::ReportaError(const std::string& modulo, const std::string& funcion,
                                   const std::string& descripcion) {
  return service::ReportaEnCajaYBitacora(
      host_, []() -> std::string { service::SinObjeto(); }, modulo, funcion, descripcion);
}

}  // namespace tarvik
