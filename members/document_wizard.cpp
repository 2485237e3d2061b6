// What the screens of goods-in and goods-out have alike.
#include "wizard/document_wizard.h"
#include "members/row.h"
#include "members/tables.h"

namespace tarvik::members {

namespace {

using C = DocumentWizard;

std::vector<Member> State() {
  return {
      VARIABLE(Modo, "ALTA mientras el documento no existe, MODIFICACION, o CONSULTA si sólo se lee."),
      VARIABLE(Ambiente, "El contexto de trabajo: usuario, estación, base y ajustes."),
      VARIABLE(Parent, "La forma del programa que muestra las listas de documentos, o nada."),
      VARIABLE(rstArticulo, "El artículo que se leyó por último, o nada."),
      VARIABLE(rstPartidas, "Los renglones guardados del documento, o nada si no se han leído."),
      VARIABLE(Importe,
               "En salidas, el importe del último renglón guardado. En entradas queda para las rutinas."),
      VARIABLE(Iva, "Para las rutinas; la pantalla no lo usa."),
      VARIABLE(Total, "Para las rutinas; la pantalla no lo usa."),
      VARIABLE(Costo, "La suma de lo que valió cada movimiento al afectar."),
      Reads<C>("Query", "El constructor de sentencias de la pantalla, o nada antes de cargarse.",
               [](C& wizard) { return wizard.Query ? &*wizard.Query : nullptr; }),
      VARIABLE(CancelaProceso,
               "Una rutina lo pone para que no siga lo que estaba por hacerse; quien obedece lo quita."),
      VARIABLE(Procesando, "Si se está guardando un renglón."),
      VARIABLE(NumeroDePartidas, "El renglón a partir del cual la rejilla se desplaza."),
  };
}

std::vector<Member> Controls() {
  return {
      CONTROLS(MultiCombo1, "Buscadores junto a las cajas de texto."),
      CONTROLS(txtFields, "Cajas de texto del encabezado, del renglón de captura y de los totales."),
      CONTROL(DTPicker1, "Fecha del documento."),
      CONTROL(RichTextBox1, "Avance al afectar."),
      CONTROL(RichTextBox2, "Observaciones del documento."),
      CONTROL(RichTextBox3, "Descripción del concepto."),
      CONTROL(Check2, "Imprimir el documento al terminar."),
      CONTROL(Check3, "Dejar el documento pendiente en vez de afectarlo."),
      CONTROL(Check4, "Lector de código de barras: cada artículo es un renglón de una unidad."),
      CONTROL(fg2, "Rejilla de renglones del documento."),
      CONTROL(txtEdit, "Caja que flota sobre la celda que se corrige."),
      CONTROL(Command1, "Modelos en entradas, reenviar a sucursal en salidas."),
      CONTROL(Command2, "Cancelar: cierra la pantalla; lo capturado queda pendiente."),
      CONTROL(Command5, "Finalizar (F5): deja pendiente o afecta, imprime y cierra."),
      CONTROL(Command6, "Agrega el renglón de captura al documento."),
      CONTROLS(Label10, "Letreros que se oprimen.", {0, "Observaciones"},
               {1, "Dejar como movimiento pendiente"}, {2, "Imprimir movimiento"}),
  };
}

std::vector<Member> Fields() {
  return {
      PROCEDURE(txtFields_Change, "Lo que pasa al cambiar el texto de un campo.", {"Index"}),
      PROCEDURE(txtFields_GotFocus, "Lo que pasa al entrar el cursor a un campo.", {"Index"}),
      PROCEDURE(txtFields_LostFocus,
                "Lo que pasa al salir de un campo; al salir del artículo se buscan sus datos.", {"Index"}),
      PROCEDURE(txtFields_KeyDown, "Lo que hace una tecla en un campo; da lo que queda de ella, 0 si nada.",
                {"Index"}, {"KeyCode"}, {"Shift"}),
      PROCEDURE(txtFields_KeyPress,
                "Lo que hace un carácter en un campo; da el que se escribe, 0 si ninguno.", {"Index"},
                {"KeyAscii"}),
      PROCEDURE(txtFields_KeyUp,
                "Lo que pasa al soltar una tecla: flecha abajo despliega el buscador del campo.", {"Index"},
                {"KeyCode"}, {"Shift"}),
      PROCEDURE(txtFields_DblClick, "Abre la ayuda del campo: el buscador de su catálogo o la calculadora.",
                {"Index"}),
      PROCEDURE(TraeConcepto,
                "Busca el concepto y muestra su descripción; el documento vuelve a la fecha de trabajo."),
      PROCEDURE(Valida, "Revisa el encabezado; sí cuando está bien. Avisa de lo que falta."),
      PROCEDURE(ValidaTab1, "Revisa concepto, almacén y lo demás del encabezado; sí cuando está bien.",
                {"valido"}),
      PROCEDURE(ValidaFecha, "Dice si la fecha del documento cae en un período abierto.", {"valida"}),
      PROCEDURE(PonTC, "Busca la moneda escrita en el campo 15 y pone su tipo de cambio en el 16."),
  };
}

std::vector<Member> Lines() {
  return {
      PROCEDURE(PonDescripcion,
                "Busca el artículo del renglón de captura y pone descripción, unidad y precio."),
      PROCEDURE(TraeSegundaClave,
                "Busca la clave adicional del renglón de captura y pone su artículo y su presentación."),
      PROCEDURE(MultiplicaPrecio,
                "Pone el importe del renglón de captura: cantidad por precio. En salidas no hace nada."),
      PROCEDURE(LlenaPartida,
                "Revisa el renglón de captura, lo agrega al documento y lo vacía para el siguiente."),
      PROCEDURE(NuevaPartida, "Guarda el renglón de captura en la base y en la rejilla, sin revisarlo."),
      PROCEDURE(MSFlexGridEdit, "Empieza a corregir la celda actual con la caja que flota sobre ella.",
                {"MSFlexGrid"}, {"Edt"}, {"KeyAscii"}),
      PROCEDURE(EditKeyCode, "Lo que hace una tecla en la caja que flota sobre la celda; da la tecla.",
                {"MSFlexGrid"}, {"Edt"}, {"KeyCode"}, {"Shift"}),
      PROCEDURE(CalculaImportes, "Calcula de nuevo los importes de los renglones y los totales."),
      PROCEDURE(SalvaCambios, "Guarda en la base la celda corregida."),
      PROCEDURE(CuantasPartidas, "Cuántos renglones tiene el documento en la rejilla."),
  };
}

std::vector<Member> Events() {
  return {
      PROCEDURE(fg2_GotFocus, "Lo que pasa al entrar el cursor a la rejilla."),
      PROCEDURE(fg2_LeaveCell, "Lo que pasa al salir de una celda: se guarda la que se corregía."),
      PROCEDURE(fg2_RowColChange, "Lo que pasa al cambiar la celda actual: toma su color."),
      PROCEDURE(fg2_KeyDown,
                "Lo que hace una tecla en la rejilla; Supr en el artículo elimina el renglón. Da la tecla.",
                {"KeyCode"}, {"Shift"}),
      PROCEDURE(fg2_KeyPress,
                "Lo que hace un carácter en la rejilla: empieza a corregir la celda. Da el carácter.",
                {"KeyAscii"}),
      PROCEDURE(fg2_DblClick, "Lo que hace un doble clic en la rejilla: empieza a corregir la celda."),
      PROCEDURE(txtEdit_KeyDown, "Lo que hace una tecla en la caja que flota sobre la celda; da la tecla.",
                {"KeyCode"}, {"Shift"}),
      PROCEDURE(txtEdit_KeyPress,
                "Lo que hace un carácter en la caja que flota sobre la celda; da el que se escribe.",
                {"KeyAscii"}),
      PROCEDURE(Label10_Click,
                "Lo que hace un clic en un letrero: el 1 marca o desmarca Check3, el 2 Check2.", {"Index"}),
      PROCEDURE(Command2_Click, "Lo que hace el botón Cancelar: cierra la pantalla."),
      PROCEDURE(Command5_Click, "Lo que hace el botón Finalizar."),
      PROCEDURE(Command6_Click, "Lo que hace el botón junto al renglón de captura: lo agrega al documento."),
  };
}

std::vector<Member> Rest() {
  return {
      PROCEDURE(SalvaPendiente,
                "Guarda el encabezado de un documento que ya existe y lo deja pendiente y tomado; no "
                "imprime ni afecta."),
      PROCEDURE(DejaEnConsulta,
                "De aquí en adelante el documento sólo se lee, como si se hubiera abierto en consulta."),
      PROCEDURE(SoloLectura,
                "Sí cuando el documento se abrió para consulta, o dejó de ser de esta pantalla."),
      Reads<C>("Reportes", "Cuántas fallas ha reportado esta pantalla.",
               [](C& wizard) { return wizard.Reportes(); }),
      Does<C>("ColocaFoco", "Lleva el cursor al control; si no puede, no pasa nada.", {{"control"}},
              [](C& wizard, forms::Control& control) { wizard.ColocaFoco(control); }),
      PROCEDURE(ReportaError,
                "Muestra una falla en una caja y la anota en la bitácora del día; siempre da sí.", {"modulo"},
                {"funcion"}, {"descripcion"}),
      READ_ONLY(Modulo, "El nombre con que esta pantalla firma en la bitácora del día."),
  };
}

}  // namespace

const Class& DocumentWizardTable() {
  static const Class table = [] {
    Class wizard{"DocumentWizard",
                 "Lo que las pantallas de entradas y de salidas tienen en común.",
                 &FormTable(),
                 &typeid(C),
                 {}};
    for (const auto& part : {State(), Controls(), Fields(), Lines(), Events(), Rest()}) {
      wizard.members.insert(wizard.members.end(), part.begin(), part.end());
    }
    return wizard;
  }();
  return table;
}

}  // namespace tarvik::members
