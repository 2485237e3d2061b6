// Screens, controls and records as Python objects. Their members come from the table in members/; here stand
// the classes themselves, and what is Python's own about them.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <memory>

#include "data/error.h"
#include "data/recordset.h"
#include "forms/auto_resizer.h"
#include "forms/flex_grid.h"
#include "goods_in/frm_entradas_wizard.h"
#include "goods_out/frm_salidas_wizard.h"
#include "matrix/frm_malla_modelos.h"
#include "python/binding.h"
#include "python/descripcion.h"
#include "python/members_binding.h"
#include "python/nombres.h"
#include "stations/frm_mov_estaciones.h"

namespace tarvik::python {

namespace {

using forms::Control;
using forms::Form;

// All controls of one name: forma.txtFields[4], forma.txtFields(4).
struct ControlGroup {
  std::shared_ptr<Form> form;
  std::string_view name;  // its array's

  [[nodiscard]] py::object At(int index) const {
    Control* found = form->Find(name, index);
    if (!found) {
      throw data::Error("No existe el control " + std::string(name) + "(" + std::to_string(index) + ")");
    }
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

// A class whose members are those of its table; the first base comes in its turn before it.
template <class T, class... Base, class... Extra>
py::class_<T, Base..., std::shared_ptr<T>> Bind(py::module_& module, const char* name,
                                                const Extra&... extra) {
  const members::Class& table = *members::ClassNamed(name);
  py::class_<T, Base..., std::shared_ptr<T>> type(module, name, std::string(table.line).c_str(), extra...);
  AgregaMiembros(type, table);
  return type;
}

void BindControls(py::module_& module) {
  Bind<Control>(module, "Control", DiceLoParecido())
      .def("__eq__",
           [](const Control& a, const py::object& b) {
             return py::isinstance<Control>(b) && &a == b.cast<Control*>();
           })
      .def("__hash__", [](const Control& control) { return std::hash<const void*>{}(&control); })
      .def("__repr__", [](const Control& control) { return "<" + control.FullName() + ">"; });
  Bind<forms::Label, Control>(module, "Label");
  Bind<forms::Button, Control>(module, "Button");
  Bind<forms::CheckBox, Control>(module, "CheckBox");
  Bind<forms::TextBox, Control>(module, "TextBox");
  Bind<forms::RichTextBox, forms::TextBox>(module, "RichTextBox");
  Bind<forms::DatePicker, Control>(module, "DatePicker");
  Bind<forms::ComboBox, Control>(module, "ComboBox");
  Bind<forms::PictureBox, Control>(module, "PictureBox");
  Bind<forms::SearchBox, Control>(module, "SearchBox");
  Bind<forms::Timer, Control>(module, "Timer");
  Bind<forms::WebBrowser, Control>(module, "WebBrowser");
  Bind<forms::AutoResizer, Control>(module, "AutoResizer");
  Bind<forms::FlexGrid, Control>(module, "FlexGrid");
}

void BindArray(py::module_& module) {
  Clase<ControlGroup> type(
      module, "ControlArray",
      "Los controles de un mismo nombre. Uno se pide por su índice: forma.txtFields[4] o "
      "forma.txtFields(4).");
  type.Lee("Count", "int", "Cuántos controles hay.",
           [](const ControlGroup& group) { return group.All().size(); })
      .Hace("__getitem__", "_Control", "El control de ese índice.", &ControlGroup::At, Toma{"index", "int"})
      .Hace("__call__", "_Control", "El control de ese índice.", &ControlGroup::At, Toma{"index", "int"})
      .Hace(
          "__contains__", "bool", "Si hay un control con ese índice.",
          [](const ControlGroup& group, int index) { return group.form->Find(group.name, index) != nullptr; },
          Toma{"index", "int"})
      .Hace("__len__", "int", "Cuántos controles hay.",
            [](const ControlGroup& group) { return group.All().size(); })
      .Hace("__iter__", "Iterator[_Control]", "Los controles, en su orden.", [](const ControlGroup& group) {
        py::list members;
        for (Control* control : group.All()) members.append(ControlObject(*control));
        return py::iter(members);
      });
}

// One without a base of its own, and without a form that keeps it.
template <class T, class... Holder>
py::class_<T, Holder...> BindAlone(py::module_& module, const char* name) {
  const members::Class& table = *members::ClassNamed(name);
  py::class_<T, Holder...> type(module, name, std::string(table.line).c_str(), DiceLoParecido());
  AgregaMiembros(type, table);
  return type;
}

void BindRecords(py::module_& module) {
  using data::Recordset;
  BindAlone<members::Field>(module, "Field");
  const MiembroDescrito item{"__getitem__",
                             members::Kind::Procedure,
                             "Valor",
                             {{"name", "str"}},
                             "El valor de una columna del renglón actual."};
  BindAlone<Recordset, std::shared_ptr<Recordset>>(module, "Recordset")
      .def(
          "__getitem__",
          [](const Recordset& self, const std::string& name) { return ToPython(self.Fields(name)); },
          item.Doc().c_str());
  Descrita("Recordset").miembros.push_back(item);
  BindAlone<service::Query, std::shared_ptr<service::Query>>(module, "Query");
}

void BindScreens(py::module_& module) {
  Bind<Form>(module, "Forma", DiceLoParecido());
  Bind<DocumentWizard, Form>(module, "DocumentWizard");
  Bind<frmEntradasWizard, DocumentWizard>(module, "frmEntradasWizard");
  Bind<frmSalidasWizard, DocumentWizard>(module, "frmSalidasWizard");
  Bind<frmMallaModelos, Form>(module, "frmMallaModelos");
  Bind<frmMovEstaciones, Form>(module, "frmMovEstaciones");
}

}  // namespace

py::object FormObject(forms::Form& form) { return py::cast(form.shared_from_this()); }

py::object ControlObject(Control& control) {
  return py::cast(std::shared_ptr<Control>(control.Owner().shared_from_this(), &control));
}

py::object ArrayObject(Form& form, std::string_view name) {
  return py::cast(ControlGroup{form.shared_from_this(), name});
}

void BindForms(py::module_& module) {
  BindControls(module);
  BindArray(module);
  BindRecords(module);
  BindScreens(module);
}

}  // namespace tarvik::python
