// What the matrix of colours and sizes has of its own.
#include "matrix/frm_malla_modelos.h"
#include "members/row.h"
#include "members/tables.h"

namespace tarvik::members {

namespace {
using C = frmMallaModelos;
}

const Class& MatrixTable() {
  static const Class table{
      "frmMallaModelos",
      "La malla en que se reparte una cantidad entre los colores y las tallas de un modelo.",
      &FormTable(),
      &typeid(C),
      {
          VARIABLE(clrCeldaBloqueada, "El color de una combinación sin artículo, 0xBBGGRR."),
          CONTROL(fg2, "Rejilla: un color por renglón, una talla por columna, cantidades en las celdas."),
          CONTROL(txtCelda, "Caja que flota sobre la celda que se llena."),
          CONTROL(txtRemanente, "Lo que falta por repartir; sólo se muestra."),
          CONTROL(lblCantidadRestante, "Letrero: cantidad restante."),
          CONTROL(txtDescrip, "Descripción del modelo; sólo se muestra."),
          CONTROL(cmdAceptar, "Acepta el reparto; se habilita cuando no falta nada."),
          CONTROL(cmdCancelar, "Cancela el reparto."),
          CONTROL(AutoResizer1, "Mantiene los controles en proporción con la ventana; no se ve."),
          PROCEDURE(CalculaSuma,
                    "Calcula de nuevo lo que falta por repartir; cuando es cero habilita cmdAceptar."),
          PROCEDURE(fg2_DblClick, "Lo que hace un doble clic en la rejilla: empieza a llenar la celda."),
          PROCEDURE(fg2_EnterCell, "Lo que pasa al entrar a una celda: una bloqueada se salta."),
          PROCEDURE(fg2_GotFocus, "Lo que pasa al entrar el cursor a la rejilla: nada."),
          PROCEDURE(fg2_KeyDown,
                    "Lo que hace una tecla en la rejilla; Intro llena la celda, Supr la vacía. Da la tecla.",
                    {"KeyCode"}, {"Shift"}),
          PROCEDURE(fg2_KeyPress,
                    "Lo que hace un carácter en la rejilla: un dígito empieza a llenar la celda. Da el "
                    "carácter.",
                    {"KeyAscii"}),
          PROCEDURE(fg2_LeaveCell, "Lo que pasa al salir de una celda: se recuerda de dónde se viene."),
          PROCEDURE(txtCelda_KeyDown,
                    "Lo que hace una tecla al llenar la celda: Intro guarda, Esc deja. Da la tecla.",
                    {"KeyCode"}, {"Shift"}),
          PROCEDURE(txtCelda_KeyPress,
                    "Lo que hace un carácter al llenar la celda; da el que se escribe, 0 si ninguno.",
                    {"KeyAscii"}),
          PROCEDURE(cmdAceptar_Click, "Lo que hace el botón Aceptar: da el reparto por hecho."),
          PROCEDURE(cmdCancelar_Click, "Lo que hace el botón Cancelar: cierra la malla."),
          PROCEDURE(ColocaFoco, "Lleva el cursor al control; si no puede, no pasa nada.", {"control"}),
          PROCEDURE(ReportaError,
                    "Muestra una falla en una caja y la anota en la bitácora del día; siempre da sí.",
                    {"modulo"}, {"funcion"}, {"descripcion"}),
          READ_ONLY(Modulo, "El nombre con que esta pantalla firma en la bitácora del día."),
      }};
  return table;
}

}  // namespace tarvik::members
