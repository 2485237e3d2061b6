// The members of the controls.
#include "members/row.h"
#include "members/tables.h"

namespace tarvik::members {

namespace {

using namespace forms;

const Class& ControlTable() {
  using C = forms::Control;
  static const Class table{
      "Control",
      "Lo que todo control tiene. Dos referencias al mismo control son iguales con ==.",
      nullptr,
      &typeid(C),
      {
          READ_ONLY(Name, "El nombre del control, sin su índice."),
          READ_ONLY(Index, "El índice dentro de su arreglo; nada si el control es único."),
          PROPERTY(Enabled,
                   "Si el operador puede usarlo. Al deshabilitar el que tiene el cursor, nadie lo tiene."),
          PROPERTY(Visible, "Si se muestra. Al ocultar el que tiene el cursor, nadie lo tiene."),
          PROPERTY(Tag, "Nota de la pantalla: U mayúsculas, N importe, SN y SD sólo números."),
          PROPERTY(TabIndex, "Su lugar en el camino de la tecla Tab; -1 si no está en él."),
          PROPERTY(Left, "Distancia al borde izquierdo de la pantalla, en twips."),
          PROPERTY(Top, "Distancia al borde superior de la pantalla, en twips."),
          PROPERTY(Width, "Ancho, en twips."),
          PROPERTY(Height, "Alto, en twips."),
          PROPERTY(ForeColor, "Color de la letra, un número 0xBBGGRR."),
          PROCEDURE(SetFocus,
                    "Lleva el cursor a este control, con lo que pasa al salir del otro y al entrar aquí. "
                    "Da error si la pantalla no se muestra o el control no puede recibirlo."),
      }};
  return table;
}

const Class& LabelTable() {
  using C = Label;
  static const Class table{"Label",
                           "Letrero: un texto que no recibe el cursor.",
                           &ControlTable(),
                           &typeid(C),
                           {PROPERTY(Caption, "El texto del letrero.")}};
  return table;
}

const Class& ButtonTable() {
  using C = Button;
  static const Class table{
      "Button",
      "Botón.",
      &ControlTable(),
      &typeid(C),
      {PROPERTY(Caption, "El texto del botón; & antepone la letra que lo oprime junto con Alt.")}};
  return table;
}

const Class& CheckBoxTable() {
  using C = CheckBox;
  static const Class table{
      "CheckBox",
      "Casilla que se marca o no.",
      &ControlTable(),
      &typeid(C),
      {
          PROPERTY(Caption, "El texto junto a la casilla."),
          PROPERTY(Value, "1 marcada, 0 sin marcar. Un valor distinto hace lo que haría un clic."),
      }};
  return table;
}

const Class& TextBoxTable() {
  using C = TextBox;
  static const Class table{
      "TextBox",
      "Caja de texto.",
      &ControlTable(),
      &typeid(C),
      {
          PROPERTY(Text,
                   "El texto de la caja. Uno distinto hace en ese momento lo que la pantalla hace al "
                   "cambiarlo; el mismo no hace nada."),
          PROPERTY(MaxLength, "Cuántos caracteres admite; 0 sin límite."),
          PROPERTY(SelStart, "Dónde está el cursor dentro del texto, desde 0, en caracteres."),
          PROPERTY(SelLength, "Cuántos caracteres están seleccionados desde el cursor."),
      }};
  return table;
}

const Class& RichTextBoxTable() {
  static const Class table{
      "RichTextBox", "Caja para textos largos.", &TextBoxTable(), &typeid(RichTextBox), {}};
  return table;
}

const Class& DatePickerTable() {
  using C = DatePicker;
  static const Class table{"DatePicker",
                           "Selector de fecha.",
                           &ControlTable(),
                           &typeid(C),
                           {PROPERTY(Value, "La fecha, o nada. Admite también un texto aaaa-mm-dd.")}};
  return table;
}

const Class& ComboBoxTable() {
  using C = ComboBox;
  static const Class table{
      "ComboBox",
      "Texto que se escribe o se elige de una lista.",
      &ControlTable(),
      &typeid(C),
      {
          PROPERTY(Text, "El texto que se muestra. Uno distinto hace lo que la pantalla hace al cambiarlo."),
          PROPERTY(ListIndex, "Cuál elemento está elegido, desde 0; -1 ninguno. Elegir toma su texto."),
          READ_ONLY(List, "Los textos de la lista, en su orden."),
          PROCEDURE(AddItem, "Agrega un texto al final de la lista.", {"text"}),
          PROCEDURE(Clear, "Vacía la lista; el texto que se muestra se queda."),
      }};
  return table;
}

const Class& PictureBoxTable() {
  static const Class table{
      "PictureBox", "Panel que contiene a otros controles.", &ControlTable(), &typeid(PictureBox), {}};
  return table;
}

const Class& SearchBoxTable() {
  using C = SearchBox;
  static const Class table{
      "SearchBox",
      "Buscador que se despliega junto a una caja de texto. No recibe el cursor.",
      &ControlTable(),
      &typeid(C),
      {
          PROPERTY(buscar, "Lo que se busca: Articulos, Almacenes, Estaciones..."),
          Reads<C>("Conexion", "Si ya tiene con qué buscar: sí a partir de que la pantalla se cargó.",
                   [](C& box) { return box.Conexion() != nullptr; }),
          READ_ONLY(Field, "La caja de texto que recibe lo elegido, o nada."),
          PROCEDURE(ShowData, "Abre la lista."),
      }};
  return table;
}

const Class& TimerTable() {
  using C = Timer;
  static const Class table{"Timer",
                           "Reloj que llama a la pantalla cada cierto tiempo.",
                           &ControlTable(),
                           &typeid(C),
                           {
                               PROPERTY(Interval, "Cada cuántos milisegundos llama; 0 nunca."),
                               PROPERTY(Enabled, "Si corre. Empieza detenido."),
                           }};
  return table;
}

const Class& WebBrowserTable() {
  using C = WebBrowser;
  static const Class table{"WebBrowser",
                           "Visor de una página.",
                           &ControlTable(),
                           &typeid(C),
                           {
                               READ_ONLY(Location, "La página que se pidió por último."),
                               PROCEDURE(Navigate, "Muestra un archivo o una dirección.", {"name"}),
                           }};
  return table;
}

const Class& AutoResizerTable() {
  static const Class table{"AutoResizer",
                           "Mantiene los controles en proporción con la ventana; no se ve.",
                           &ControlTable(),
                           &typeid(AutoResizer),
                           {}};
  return table;
}

std::vector<Member> GridCells() {
  using C = FlexGrid;
  return {
      Does<C>("TextMatrix", "El texto de una celda.", {{"row"}, {"col"}},
              [](C& grid, int row, int col) -> const std::string& { return grid.TextMatrix(row, col); }),
      Does<C>("setTextMatrix", "Pone el texto de una celda; no guarda nada en la base.",
              {{"row"}, {"col"}, {"text"}},
              [](C& grid, int row, int col, const std::string& text) { grid.TextMatrix(row, col, text); }),
      Does<C>("ColWidth", "El ancho de una columna, en twips; 0 oculta.", {{"col"}},
              [](C& grid, int col) { return grid.ColWidth(col); }),
      Does<C>("setColWidth", "Pone el ancho de una columna, en twips; 0 la oculta.", {{"col"}, {"width"}},
              [](C& grid, int col, int width) { grid.ColWidth(col, width); }),
      Does<C>("RowHeight", "El alto de un renglón, en twips.", {{"row"}},
              [](C& grid, int row) { return grid.RowHeight(row); }),
      Does<C>("setRowHeight", "Pone el alto de un renglón, en twips; 0 lo oculta.", {{"row"}, {"height"}},
              [](C& grid, int row, int height) { grid.RowHeight(row, height); }),
      Does<C>("BackColor", "El color de fondo de una celda, 0xBBGGRR; 0 si nadie le puso uno.",
              {{"row"}, {"col"}}, [](C& grid, int row, int col) { return grid.BackColor(row, col); }),
      Does<C>("bloqueada",
              "En la malla: si la celda no admite cantidad, por no haber artículo o ser separación.",
              {{"row"}, {"col"}}, [](C& grid, int row, int col) { return grid.Blocked(row, col); }),
      PROCEDURE(RemoveItem, "Quita un renglón de la rejilla; los que siguen suben.", {"row"}),
      PROCEDURE(AddItem, "Agrega un renglón al final; el texto va a su primera columna.", {"text"}),
  };
}

const Class& FlexGridTable() {
  using C = FlexGrid;
  static const Class table = [] {
    Class grid{
        "FlexGrid",
        "Rejilla de textos con una celda actual. Renglones y columnas cuentan desde 0, con los encabezados.",
        &ControlTable(),
        &typeid(C),
        {
            PROPERTY(Rows, "Cuántos renglones tiene, con los encabezados."),
            PROPERTY(Cols, "Cuántas columnas tiene."),
            PROPERTY(FixedRows, "Cuántos de los primeros renglones son encabezado."),
            PROPERTY(FixedCols, "Cuántas de las primeras columnas son encabezado."),
            PROPERTY(Row, "El renglón de la celda actual. Cambiarlo sale de una celda y entra en otra."),
            PROPERTY(Col, "La columna de la celda actual. Cambiarla sale de una celda y entra en otra."),
            PROPERTY(TopRow, "El primer renglón que se ve."),
            PROPERTY(Text, "El texto de la celda actual."),
            PROPERTY(CellBackColor,
                     "El color de fondo de la celda actual, 0xBBGGRR; 0 si nadie le puso uno."),
            READ_ONLY(CellLeft,
                      "Dónde empieza la celda actual, desde el borde izquierdo de la rejilla, en twips."),
            READ_ONLY(CellTop,
                      "Dónde empieza la celda actual, desde el borde superior de la rejilla, en twips."),
            READ_ONLY(CellWidth, "El ancho de la celda actual, en twips."),
            READ_ONLY(CellHeight, "El alto de la celda actual, en twips."),
        }};
    for (Member& member : GridCells()) grid.members.push_back(std::move(member));
    return grid;
  }();
  return table;
}

}  // namespace

std::vector<const Class*> ControlTables() {
  return {&ControlTable(),     &LabelTable(),      &ButtonTable(),      &CheckBoxTable(),   &TextBoxTable(),
          &RichTextBoxTable(), &DatePickerTable(), &ComboBoxTable(),    &PictureBoxTable(), &SearchBoxTable(),
          &TimerTable(),       &WebBrowserTable(), &AutoResizerTable(), &FlexGridTable()};
}

}  // namespace tarvik::members
