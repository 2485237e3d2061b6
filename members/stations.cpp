// What the screen of transfers between stations has of its own.
#include "members/row.h"
#include "members/tables.h"
#include "stations/frm_mov_estaciones.h"

namespace tarvik::members {

namespace {

using C = frmMovEstaciones;

std::vector<Member> Controls() {
  return {
      CONTROLS(MultiCombo1, "Buscadores junto a las cajas de texto.",
               {0, "De la estación que entrega, txtFields(0)"},
               {1, "De la estación que recibe, txtFields(1)"}),
      CONTROLS(txtFields, "Cajas de texto del encabezado y del renglón de captura.",
               {campo_de_traspaso::Entrega, "Estación que entrega"},
               {campo_de_traspaso::Recibe, "Estación que recibe"}, {campo_de_traspaso::Articulo, "Artículo"},
               {campo_de_traspaso::Descripcion, "Queda para las rutinas"},
               {campo_de_traspaso::Cantidad, "Cantidad"}),
      CONTROL(DTPicker1, "Fecha en que se aplica."),
      CONTROL(grid, "Rejilla de renglones; sus columnas las ponen las rutinas."),
      CONTROL(Command1, "Agrega el renglón: dispara MOVESTACIONES003."),
      CONTROL(cmdConfirmar, "Confirma la operación: dispara MOVESTACIONES006 y cierra."),
      CONTROL(cmdPendiente, "Deja como pendiente: dispara MOVESTACIONES005 y cierra."),
      CONTROL(cmdCancelar, "Cancela: dispara MOVESTACIONES004 y cierra."),
      CONTROLS(lblLabel, "Letreros de los campos.", {0, "Estación que entrega"}, {1, "Fecha de aplicación"},
               {2, "Artículo"}, {3, "Cantidad"}),
      CONTROL(Label1, "Letrero: estación que recibe."),
  };
}

std::vector<Member> Procedures() {
  return {
      PROCEDURE(txtFields_GotFocus, "Lo que pasa al entrar el cursor a un campo: se selecciona su texto.",
                {"Index"}),
      PROCEDURE(txtFields_LostFocus, "Lo que pasa al salir de un campo: dispara MOVESTACIONES002.",
                {"Index"}),
      PROCEDURE(txtFields_KeyDown, "Lo que hace una tecla en un campo; Intro pasa al siguiente. Da la tecla.",
                {"Index"}, {"KeyCode"}, {"Shift"}),
      PROCEDURE(txtFields_KeyUp, "Lo que pasa al soltar una tecla: flecha abajo abre la ayuda del campo.",
                {"Index"}, {"KeyCode"}, {"Shift"}),
      PROCEDURE(DTPicker1_KeyDown, "Lo que hace una tecla en la fecha; Intro pasa al siguiente. Da la tecla.",
                {"KeyCode"}, {"Shift"}),
      PROCEDURE(grid_KeyDown,
                "Lo que hace una tecla en la rejilla; Supr pregunta y quita el renglón. Da la tecla.",
                {"KeyCode"}, {"Shift"}),
      PROCEDURE(Command1_Click, "Lo que hace el botón del renglón: dispara MOVESTACIONES003."),
      PROCEDURE(cmdCancelar_Click, "Lo que hace el botón Cancelar: dispara MOVESTACIONES004 y cierra."),
      PROCEDURE(cmdPendiente_Click,
                "Lo que hace el botón Dejar como pendiente: dispara MOVESTACIONES005 y cierra."),
      PROCEDURE(cmdConfirmar_Click, "Lo que hace el botón Confirmar: dispara MOVESTACIONES006 y cierra."),
      PROCEDURE(ColocaFoco, "Lleva el cursor al control; si no puede, no pasa nada.", {"control"}),
  };
}

}  // namespace

const Class& StationsTable() {
  static const Class table = [] {
    Class screen{
        "frmMovEstaciones",
        "La pantalla de un traspaso entre estaciones. Lo que un traspaso significa lo hacen las rutinas.",
        &FormTable(),
        &typeid(C),
        {
            VARIABLE(Ambiente, "El contexto de trabajo: usuario, estación, base y ajustes."),
            VARIABLE(Id, "Número del traspaso, para las rutinas: la pantalla no lo lee."),
            VARIABLE(CancelaProceso,
                     "Una rutina lo pone para que la pantalla no se cierre; quien obedece lo quita."),
        }};
    for (const auto& part : {Controls(), Procedures()}) {
      screen.members.insert(screen.members.end(), part.begin(), part.end());
    }
    return screen;
  }();
  return table;
}

}  // namespace tarvik::members
