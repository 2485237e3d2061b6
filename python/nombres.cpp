#include "python/nombres.h"

#include "members/member.h"

namespace tarvik::python {

namespace {

// "La pantalla frmEntradasWizard", "El control txtFields(4)", "Ambiente".
std::string Quien(const py::handle& self) {
  if (py::isinstance<forms::Form>(self)) return "La pantalla " + self.cast<const forms::Form&>().Name();
  if (py::isinstance<forms::Control>(self)) {
    return "El control " + self.cast<const forms::Control&>().FullName();
  }
  return TextOf(py::type::handle_of(self).attr("__name__"));
}

void NoTiene(const py::handle& self, const std::string& name) {
  std::vector<std::string> names;
  for (const auto& item : py::reinterpret_steal<py::list>(PyObject_Dir(py::type::handle_of(self).ptr()))) {
    std::string known = TextOf(item);
    if (!known.starts_with("_")) names.push_back(std::move(known));
  }
  const std::string meant = members::Closest(name, names);
  const std::string text = Quien(self) + " no tiene " + name + (meant.empty() ? "" : "; ¿" + meant + "?");
  PyErr_SetString(PyExc_AttributeError, text.c_str());
}

// A property that can only be told something.
bool SoloSeEscribe(const py::handle& type, const std::string& name) {
  const py::object property = py::getattr(type, name.c_str(), py::none());
  return PyObject_TypeCheck(property.ptr(), &PyProperty_Type) && property.attr("fget").is_none();
}

// The interpreter's own words about a name, in ours where we have better ones.
void Explica(PyObject* object, PyObject* attribute, bool assigned) {
  PyObject *error, *value, *trace;
  PyErr_Fetch(&error, &value, &trace);
  try {
    const py::handle self(object);
    const py::handle type = py::type::handle_of(self);
    const std::string name = TextOf(py::handle(attribute));
    const bool known = PyObject_HasAttr(type.ptr(), attribute) == 1;
    if (name.starts_with("__")) {  // the interpreter's own questions
    } else if (!known) {
      NoTiene(self, name);
    } else if (assigned || SoloSeEscribe(type, name)) {
      const std::string text = Quien(self) + ": " + name + (assigned ? " sólo se lee" : " sólo se escribe");
      PyErr_SetString(PyExc_AttributeError, text.c_str());
    }
  } catch (const std::exception&) {  // what the interpreter says will do
    PyErr_Clear();
  }
  if (!PyErr_Occurred()) return PyErr_Restore(error, value, trace);
  Py_XDECREF(error);
  Py_XDECREF(value);
  Py_XDECREF(trace);
}

PyObject* Lee(PyObject* self, PyObject* name) {
  PyObject* found = PyObject_GenericGetAttr(self, name);
  if (!found && PyErr_ExceptionMatches(PyExc_AttributeError)) Explica(self, name, false);
  return found;
}

int Pone(PyObject* self, PyObject* name, PyObject* value) {
  const int failed = PyObject_GenericSetAttr(self, name, value);
  if (failed && PyErr_ExceptionMatches(PyExc_AttributeError)) Explica(self, name, true);
  return failed;
}

}  // namespace

py::custom_type_setup DiceLoParecido() {
  return py::custom_type_setup([](PyHeapTypeObject* type) {
    type->ht_type.tp_getattro = Lee;
    type->ht_type.tp_setattro = Pone;
  });
}

}  // namespace tarvik::python
