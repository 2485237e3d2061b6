#include "stations/frm_mov_estaciones.h"

#include <utility>

#include "forms/keys.h"
#include "service/report/pantalla.h"

namespace tarvik {

namespace {

constexpr std::string_view kBorraPartida = "Esta seguro de querer borrar la partida";
constexpr int kEstiloDePregunta = 2;

}  // namespace

frmMovEstaciones::frmMovEstaciones(service::Host& host)
    : Form(host.Plataforma(), "frmMovEstaciones", "Asistente para traspasos entre estaciones"),
      MultiCombo1(*this, "MultiCombo1", {0, 1}),
      txtFields(*this, "txtFields",
                {campo_de_traspaso::Entrega, campo_de_traspaso::Recibe, campo_de_traspaso::Articulo,
                 campo_de_traspaso::Descripcion, campo_de_traspaso::Cantidad}),
      DTPicker1(*this, "DTPicker1"),
      grid(*this, "grid", forms::FlexGrid::Start::Bare),
      Command1(*this, "Command1"),
      cmdConfirmar(*this, "cmdConfirmar"),
      cmdPendiente(*this, "cmdPendiente"),
      cmdCancelar(*this, "cmdCancelar"),
      lblLabel(*this, "lblLabel", {0, 1, 2, 3}),
      Label1(*this, "Label1"),
      host_(host) {
  int tab = 0;
  for (forms::Control* control : std::initializer_list<forms::Control*>{
           &txtFields(campo_de_traspaso::Entrega), &txtFields(campo_de_traspaso::Recibe), &DTPicker1,
           &txtFields(campo_de_traspaso::Articulo), &txtFields(campo_de_traspaso::Cantidad), &Command1,
           &cmdConfirmar, &cmdPendiente, &cmdCancelar, &txtFields(campo_de_traspaso::Descripcion), &grid}) {
    control->TabIndex(tab++);
  }
  // A search box has the number of the field that it holds.
  for (int caja : {campo_de_traspaso::Entrega, campo_de_traspaso::Recibe}) {
    MultiCombo1(caja).buscar("Estaciones");
    MultiCombo1(caja).Hold(txtFields(caja));
  }
  lblLabel(0).Caption("Estación que entrega");
  Label1.Caption("Estación que recibe");
  lblLabel(1).Caption("Fecha de aplicación");
  lblLabel(2).Caption("Artículo");
  lblLabel(3).Caption("Cantidad");
  cmdConfirmar.Caption("Confirmar operación (F5)");
  cmdPendiente.Caption("Dejar como pendiente");
  cmdCancelar.Caption("Cancelar");
  Conecta();
}

void frmMovEstaciones::Conecta() {
  txtFields.Each([this](forms::TextBox& campo) {
    const int indice = *campo.Index();
    campo.OnGotFocus = [=, this] { txtFields_GotFocus(indice); };
    campo.OnLostFocus = [=, this] { txtFields_LostFocus(indice); };
    campo.OnKeyDown = [=, this](int& tecla, int shift) { txtFields_KeyDown(indice, tecla, shift); };
    campo.OnKeyUp = [=, this](int& tecla, int shift) { txtFields_KeyUp(indice, tecla, shift); };
  });
  DTPicker1.OnKeyDown = [this](int& tecla, int shift) { DTPicker1_KeyDown(tecla, shift); };
  grid.OnKeyDown = [this](int& tecla, int shift) { grid_KeyDown(tecla, shift); };
  Command1.OnClick = [this] { Command1_Click(); };
  cmdCancelar.OnClick = [this] { cmdCancelar_Click(); };
  cmdPendiente.OnClick = [this] { cmdPendiente_Click(); };
  cmdConfirmar.OnClick = [this] { cmdConfirmar_Click(); };
}

void frmMovEstaciones::Dispara(std::string_view clave) { service::Dispara(host_, clave, *this, *Ambiente); }

void frmMovEstaciones::ColocaFoco(forms::Control& control) { service::ColocaFoco(control); }

void frmMovEstaciones::Form_Load() {
  DTPicker1.Value(GetPlatform().Now().date);
  Dispara("MOVESTACIONES001");
  for (int caja = 0; caja < MultiCombo1.Count(); ++caja) MultiCombo1(caja).Conexion(Ambiente->Conexion());
}

// Whatever closes the screen comes through here: a button's own key has fired before.
void frmMovEstaciones::Form_Unload(int& Cancel) {
  Dispara("MOVESTACIONES007");
  if (std::exchange(CancelaProceso, false)) Cancel = 1;
}

void frmMovEstaciones::txtFields_GotFocus(int Index) { txtFields(Index).SelectAll(); }

void frmMovEstaciones::txtFields_LostFocus(int Index) {
  Ambiente->ValorDeGancho(static_cast<std::int16_t>(Index));
  Dispara("MOVESTACIONES002");
}

void frmMovEstaciones::txtFields_KeyDown(int /*Index*/, int& KeyCode, int /*Shift*/) {
  if (KeyCode == forms::kKeyEnter) host_.Funciones().EnviaTeclas("{TAB}", false);
}

void frmMovEstaciones::txtFields_KeyUp(int Index, int KeyCode, int /*Shift*/) {
  if (KeyCode != forms::kKeyDown) return;
  service::Ignora ignora;
  if (Index == campo_de_traspaso::Articulo) {
    // The routine reads what was chosen when the field is left.
    std::unique_ptr<service::ListaArticulos> lista;
    ignora([&] { lista = host_.NuevaLista(); });
    if (lista) {
      ignora([&] { lista->Ambiente(*Ambiente); });
      ignora([&] { lista->Campo(txtFields(campo_de_traspaso::Articulo)); });
      ignora([&] { lista->Muestra(); });
    }
    ColocaFoco(txtFields(campo_de_traspaso::Articulo));
  } else if (Index == campo_de_traspaso::Entrega || Index == campo_de_traspaso::Recibe) {
    ignora([&] { MultiCombo1(Index).ShowData(); });
    ignora([&] { txtFields(Index).SelStart(0); });
  }
}

void frmMovEstaciones::DTPicker1_KeyDown(int& KeyCode, int /*Shift*/) {
  if (KeyCode == forms::kKeyEnter) host_.Funciones().EnviaTeclas("{TAB}", false);
}

// The line is removed from the grid alone: no key fires, and a routine sees it when it reads the grid.
void frmMovEstaciones::grid_KeyDown(int& KeyCode, int /*Shift*/) {
  if (KeyCode != forms::kKeyDelete) return;
  bool acepta = false;
  host_.Funciones().Pregunta(std::string(kBorraPartida), kEstiloDePregunta, acepta);
  const bool hay_renglon = grid.Row() >= grid.FixedRows() && grid.Row() < grid.Rows();
  if (acepta && hay_renglon) grid.RemoveItem(grid.Row());
}

void frmMovEstaciones::Command1_Click() { Dispara("MOVESTACIONES003"); }
void frmMovEstaciones::cmdCancelar_Click() { DisparaYCierra("MOVESTACIONES004"); }
void frmMovEstaciones::cmdPendiente_Click() { DisparaYCierra("MOVESTACIONES005"); }
void frmMovEstaciones::cmdConfirmar_Click() { DisparaYCierra("MOVESTACIONES006"); }

void frmMovEstaciones::DisparaYCierra(std::string_view clave) {
  Dispara(clave);
  if (!std::exchange(CancelaProceso, false)) Unload();
}

}  // namespace tarvik
