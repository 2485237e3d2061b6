// Controls and forms as Python objects: properties, and what an operator does.
#include <pybind11/functional.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <memory>

#include "data/error.h"
#include "data/recordset.h"
#include "forms/flex_grid.h"
#include "python/binding.h"

namespace tarvik::python {

namespace {

using forms::Control;
using forms::Form;

// All controls of one name: forma.txtFields[4], forma.txtFields(4).
struct ControlGroup {
  std::shared_ptr<Form> form;
  std::string name;

  [[nodiscard]] py::object At(int index) const {
    Control* found = form->Find(name, index);
    if (!found) throw data::Error("No existe el control " + name + "(" + std::to_string(index) + ")");
    return ControlObject(*found);
  }
  [[nodiscard]] std::vector<Control*> All() const {
    std::vector<Control*> members;
    for (Control* control : form->Controls()) {
      if (control->Name() == name) members.push_back(control);
    }
    return members;
  }
};

py::object Attribute(Form& form, const std::string& name) {
  if (Control* single = form.Find(name)) return ControlObject(*single);
  for (Control* control : form.Controls()) {
    if (control->Name() == name) return py::cast(ControlGroup{form.shared_from_this(), name});
  }
  throw py::attribute_error("La pantalla " + form.Name() + " no tiene " + name);
}

void PressNamed(Form& form, const std::string& name, Control* control) {
  auto key = forms::KeyNamed(name);
  if (!key) throw data::Error("No existe la tecla " + name);
  if (control) form.Enter(*control);
  form.Press(*key);
}

// An operator's act: the form outlives it, and what the script's own functions raised comes out.
template <class Done>
void Act(Form& form, Done&& done) {
  auto held = form.shared_from_this();
  Called(std::forward<Done>(done));
}

template <class T, class... Base>
py::class_<T, Base..., std::shared_ptr<T>> Bind(py::module_& module, const char* name) {
  return py::class_<T, Base..., std::shared_ptr<T>>(module, name);
}

// A property with its getter and setter under its own name.
#define TARVIK_PROPERTY(Type, Name, ValueType)                 \
  .def_property(                                               \
      #Name, [](const Type& object) { return object.Name(); }, \
      [](Type& object, ValueType value) { Called([&] { object.Name(std::move(value)); }); })
#define TARVIK_TEXT(Type, Name)                                       \
  .def_property(                                                      \
      #Name, [](const Type& object) { return StrOf(object.Name()); }, \
      [](Type& object, const py::object& value) { Called([&] { object.Name(TextOf(value)); }); })

void BindControls(py::module_& module) {
  Bind<Control>(module, "Control")
      .def_property_readonly("Name", &Control::Name)
      .def_property_readonly("Index", &Control::Index)
      .def("SetFocus", [](Control& control) { Called([&] { control.SetFocus(); }); })
      .def("__eq__",
           [](const Control& a, const py::object& b) {
             return py::isinstance<Control>(b) && &a == b.cast<Control*>();
           })
      .def("__hash__", [](const Control& control) { return std::hash<const void*>{}(&control); })
      .def("__repr__", [](const Control& control) { return "<" + control.FullName() + ">"; })
          TARVIK_PROPERTY(Control, Enabled, bool) TARVIK_PROPERTY(Control, Visible, bool)
              TARVIK_TEXT(Control, Tag) TARVIK_PROPERTY(Control, TabIndex, int)
                  TARVIK_PROPERTY(Control, Left, int) TARVIK_PROPERTY(Control, Top, int)
                      TARVIK_PROPERTY(Control, Width, int) TARVIK_PROPERTY(Control, Height, int)
                          TARVIK_PROPERTY(Control, ForeColor, int);

  Bind<forms::Label, Control>(module, "Label") TARVIK_TEXT(forms::Label, Caption);
  Bind<forms::Button, Control>(module, "Button") TARVIK_TEXT(forms::Button, Caption);
  Bind<forms::CheckBox, Control>(module, "CheckBox") TARVIK_TEXT(forms::CheckBox, Caption)
      TARVIK_PROPERTY(forms::CheckBox, Value, int);
  Bind<forms::TextBox, Control>(module, "TextBox") TARVIK_TEXT(forms::TextBox, Text)
      TARVIK_PROPERTY(forms::TextBox, MaxLength, int) TARVIK_PROPERTY(forms::TextBox, SelStart, int)
          TARVIK_PROPERTY(forms::TextBox, SelLength, int);
  Bind<forms::RichTextBox, forms::TextBox>(module, "RichTextBox");
  Bind<forms::PictureBox, Control>(module, "PictureBox");
  Bind<forms::WebBrowser, Control>(module, "WebBrowser")
      .def("Navigate",
           [](forms::WebBrowser& browser, const py::object& name) { browser.Navigate(TextOf(name)); });
  Bind<forms::DatePicker, Control>(module, "DatePicker")
      .def_property(
          "Value",
          [](const forms::DatePicker& picker) {
            return picker.Value() ? ToPython(data::Value(*picker.Value())) : py::object(py::none());
          },
          [](forms::DatePicker& picker, const py::object& day) {
            auto date = DateOf(day);
            if (!date && !day.is_none()) throw data::Error("El valor no es una fecha");
            picker.Value(date);
          });
  Bind<forms::ComboBox, Control>(module, "ComboBox") TARVIK_TEXT(forms::ComboBox, Text)
      TARVIK_PROPERTY(forms::ComboBox, ListIndex, int)
          .def_property_readonly("List",
                                 [](const forms::ComboBox& box) {
                                   py::list items;
                                   for (const auto& item : box.List()) items.append(StrOf(item));
                                   return items;
                                 })
          .def("AddItem", [](forms::ComboBox& box, const py::object& text) { box.AddItem(TextOf(text)); })
          .def("Clear", &forms::ComboBox::Clear);
  Bind<forms::SearchBox, Control>(module, "SearchBox") TARVIK_TEXT(forms::SearchBox, buscar)
      .def("ShowData", &forms::SearchBox::ShowData)
      .def_property_readonly("Conexion",
                             [](const forms::SearchBox& box) { return box.Conexion() != nullptr; });
  Bind<forms::Timer, Control>(module, "Timer") TARVIK_PROPERTY(forms::Timer, Interval, int)
      TARVIK_PROPERTY(forms::Timer, Enabled, bool);

  using forms::FlexGrid;
  Bind<FlexGrid, Control>(module, "FlexGrid") TARVIK_PROPERTY(FlexGrid, Rows, int) TARVIK_PROPERTY(
      FlexGrid, Cols, int) TARVIK_PROPERTY(FlexGrid, FixedRows, int) TARVIK_PROPERTY(FlexGrid, FixedCols, int)
      TARVIK_PROPERTY(FlexGrid, Row, int) TARVIK_PROPERTY(FlexGrid, Col, int) TARVIK_PROPERTY(
          FlexGrid, TopRow, int) TARVIK_TEXT(FlexGrid, Text) TARVIK_PROPERTY(FlexGrid, CellBackColor, int)
          .def("TextMatrix",
               [](const FlexGrid& grid, int row, int col) { return StrOf(grid.TextMatrix(row, col)); })
          .def("setTextMatrix", [](FlexGrid& grid, int row, int col,
                                   const py::object& text) { grid.TextMatrix(row, col, TextOf(text)); })
          .def("ColWidth", [](const FlexGrid& grid, int col) { return grid.ColWidth(col); })
          .def("RowHeight", [](const FlexGrid& grid, int row) { return grid.RowHeight(row); })
          .def("setColWidth", [](FlexGrid& grid, int col, int width) { grid.ColWidth(col, width); })
          .def("setRowHeight", [](FlexGrid& grid, int row, int height) { grid.RowHeight(row, height); })
          .def("BackColor", [](const FlexGrid& grid, int row, int col) { return grid.BackColor(row, col); })
          .def("bloqueada", [](const FlexGrid& grid, int row, int col) { return grid.Blocked(row, col); })
          .def("RemoveItem", &FlexGrid::RemoveItem)
          .def("AddItem", [](FlexGrid& grid, const py::object& text) { grid.AddItem(TextOf(text)); })
          .def_property_readonly("CellLeft", &FlexGrid::CellLeft)
          .def_property_readonly("CellTop", &FlexGrid::CellTop)
          .def_property_readonly("CellWidth", &FlexGrid::CellWidth)
          .def_property_readonly("CellHeight", &FlexGrid::CellHeight);

  py::class_<ControlGroup>(module, "ControlArray")
      .def("__getitem__", &ControlGroup::At)
      .def("__call__", &ControlGroup::At)
      .def("__contains__", [](const ControlGroup& group,
                              int index) { return group.form->Find(group.name, index) != nullptr; })
      .def("__len__", [](const ControlGroup& group) { return group.All().size(); })
      .def("__iter__",
           [](const ControlGroup& group) {
             py::list members;
             for (Control* control : group.All()) members.append(ControlObject(*control));
             return py::iter(members);
           })
      .def_property_readonly("Count", [](const ControlGroup& group) { return group.All().size(); });
}

void BindRecordset(py::module_& module) {
  using data::Recordset;
  struct Field {
    data::Value value;
  };
  py::class_<Field>(module, "Field").def_property_readonly("Value", [](const Field& field) {
    return ToPython(field.value);
  });
  py::class_<Recordset, std::shared_ptr<Recordset>>(module, "Recordset")
      .def_property_readonly("EOF", &Recordset::Eof)
      .def_property_readonly("RecordCount", &Recordset::RecordCount)
      .def("MoveNext", &Recordset::MoveNext)
      .def("Fields", [](const Recordset& rows, const std::string& name) { return Field{rows.Fields(name)}; })
      .def("__getitem__",
           [](const Recordset& rows, const std::string& name) { return ToPython(rows.Fields(name)); });
}

}  // namespace

py::object FormObject(forms::Form& form) { return py::cast(form.shared_from_this()); }

py::object ControlObject(Control& control) {
  return py::cast(std::shared_ptr<Control>(control.Owner().shared_from_this(), &control));
}

void BindForms(py::module_& module) {
  BindControls(module);
  BindRecordset(module);
  auto optional_control = py::arg("control") = static_cast<Control*>(nullptr);
  py::class_<Form, std::shared_ptr<Form>>(module, "Forma") TARVIK_TEXT(Form, Caption) TARVIK_TEXT(Form, Tag)
      .def_property_readonly("Name", &Form::Name)
      .def_property_readonly("Visible", &Form::Visible)
      .def_property_readonly("abierta", &Form::Open)
      .def_property_readonly("ActiveControl",
                             [](Form& form) {
                               return form.ActiveControl() ? ControlObject(*form.ActiveControl())
                                                           : py::object(py::none());
                             })
      .def_property_readonly("Controls",
                             [](Form& form) {
                               py::list all;
                               for (Control* control : form.Controls()) all.append(ControlObject(*control));
                               return all;
                             })
      .def("enfoca", [](Form& form, Control& control) { Act(form, [&] { form.Enter(control); }); })
      .def("teclea", [](Form& form, Control& control,
                        const py::object& text) { Act(form, [&] { form.Type(control, TextOf(text)); }); })
      .def(
          "tecla",
          [](Form& form, const std::string& name, Control* control) {
            Act(form, [&] { PressNamed(form, name, control); });
          },
          py::arg("name"), optional_control)
      .def("clic", [](Form& form, Control& control) { Act(form, [&] { form.Click(control); }); })
      .def("doble_clic", [](Form& form, Control& control) { Act(form, [&] { form.DoubleClick(control); }); })
      .def("clic_celda", [](Form& form, forms::FlexGrid& grid, int row,
                            int col) { Act(form, [&] { form.ClickCell(grid, row, col); }); })
      .def("doble_clic_celda", [](Form& form, forms::FlexGrid& grid, int row,
                                  int col) { Act(form, [&] { form.DoubleClickCell(grid, row, col); }); })
      .def("elige",
           [](Form& form, forms::ComboBox& list, int item) { Act(form, [&] { form.Choose(list, item); }); })
      .def("cierra", [](Form& form) { Act(form, [&] { form.Close(); }); })
      .def("pinta", [](Form& form) { Act(form, [&] { form.Paint(); }); })
      .def("redimensiona",
           [](Form& form, int width, int height) { Act(form, [&] { form.Resize(width, height); }); })
      .def("__getattr__", &Attribute);
}

}  // namespace tarvik::python
