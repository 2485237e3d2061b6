// What every screen has, and what an operator does on it.
#include "data/error.h"
#include "forms/keys.h"
#include "members/row.h"
#include "members/tables.h"

namespace tarvik::members {

namespace {

using C = forms::Form;

std::vector<Member> OperatorsActs() {
  using forms::ComboBox;
  using forms::Control;
  using forms::FlexGrid;
  return {
      Does<C>("enfoca",
              "Lleva el cursor al control como con el ratón. Nada pasa si está deshabilitado u oculto.",
              {{"control"}}, [](C& form, Control& control) { form.Enter(control); }),
      Does<C>("teclea", "Va al control y teclea el texto, carácter por carácter, como el operador.",
              {{"control"}, {"text"}},
              [](C& form, Control& control, const std::string& text) { form.Type(control, text); }),
      Does<C>(
          "tecla",
          "Oprime una tecla donde está el cursor, o antes va al control: Enter, Tab, Esc, Up, Down, Left, "
          "Right, Delete, Back, Space, F1 a F12, o un carácter.",
          {{"name"}, {.name = "control", .optional = true}},
          [](C& form, const std::string& name, Control* control) {
            const auto key = forms::KeyNamed(name);
            if (!key) throw data::Error("No existe la tecla " + name);
            if (control) form.Enter(*control);
            form.Press(*key);
          }),
      Does<C>("clic", "Un clic en el control. Uno deshabilitado u oculto no lo siente.", {{"control"}},
              [](C& form, Control& control) { form.Click(control); }),
      Does<C>("doble_clic", "Un doble clic en el control.", {{"control"}},
              [](C& form, Control& control) { form.DoubleClick(control); }),
      Does<C>("clic_celda", "Un clic en una celda de la rejilla, que pasa a ser la actual.",
              {{"grid"}, {"row"}, {"col"}},
              [](C& form, FlexGrid& grid, int row, int col) { form.ClickCell(grid, row, col); }),
      Does<C>("doble_clic_celda", "Un doble clic en una celda de la rejilla, que pasa a ser la actual.",
              {{"grid"}, {"row"}, {"col"}},
              [](C& form, FlexGrid& grid, int row, int col) { form.DoubleClickCell(grid, row, col); }),
      Does<C>("elige", "Elige un elemento de la lista, desde 0.", {{"list"}, {"item"}},
              [](C& form, ComboBox& list, int item) { form.Choose(list, item); }),
      Does<C>("cierra", "Oprime la cruz de la ventana. La pantalla o una rutina pueden negarse.", {},
              [](C& form) { form.Close(); }),
      Does<C>("pinta", "La ventana se pinta de nuevo. En un guion nada más la pinta.", {},
              [](C& form) { form.Paint(); }),
      Does<C>("redimensiona", "La ventana toma este tamaño por dentro, en twips.", {{"width"}, {"height"}},
              [](C& form, int width, int height) { form.Resize(width, height); }),
  };
}

}  // namespace

const Class& FormTable() {
  static const Class table = [] {
    Class screen{
        "Forma",
        "Lo que toda pantalla tiene, y lo que el operador hace en ella.",
        nullptr,
        &typeid(C),
        {
            READ_ONLY(Name, "El nombre de la clase de pantalla, como frmEntradasWizard."),
            PROPERTY(Caption, "El título de la ventana."),
            PROPERTY(Tag, "Nota de quien abrió la pantalla. En la malla, la cantidad por repartir."),
            READ_ONLY(Visible, "Si se muestra; no después de cerrada."),
            Reads<C>("abierta", "Si sigue abierta: desde que se carga hasta que se cierra, se vea o no.",
                     [](C& form) { return form.Open(); }),
            Reads<C>("ActiveControl", "El control que tiene el cursor, o nada.",
                     [](C& form) { return form.ActiveControl(); }),
            Reads<C>("Controls", "Todos los controles de la pantalla.",
                     [](C& form) -> const std::vector<forms::Control*>& { return form.Controls(); }),
            READ_ONLY(ScaleWidth, "El ancho de la ventana por dentro, en twips; 0 antes de que se sepa."),
            READ_ONLY(ScaleHeight, "El alto de la ventana por dentro, en twips; 0 antes de que se sepa."),
        }};
    for (Member& member : OperatorsActs()) screen.members.push_back(std::move(member));
    return screen;
  }();
  return table;
}

}  // namespace tarvik::members
