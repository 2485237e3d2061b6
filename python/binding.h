// What the parts of the module share: conversions between the library's values and Python's, and
// the parts themselves. No rule of the suite lives in python/.
#pragma once

#include <pybind11/pybind11.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>

#include "data/value.h"
#include "forms/control.h"
#include "forms/form.h"
#include "service/contract/host_services.h"

namespace tarvik::python {

namespace py = pybind11;

void BindForms(py::module_& module);
void BindAnfitrion(py::module_& module);
void BindServicios(py::module_& module);  // after the Ambiente that it adds to

// A number is its plain text, None the empty text; lone surrogates (bytes that were no UTF-8) are
// handed on as the bytes that they stand for.
std::string TextOf(const py::handle& object);
data::Value ValueOf(const py::handle& object);
py::object ToPython(const data::Value& value);
std::optional<data::Date> DateOf(const py::handle& object);
std::optional<data::DateTime> DateTimeOf(const py::handle& object);
// Text that may hold bytes which are no UTF-8: those come as U+FFFD.
py::str StrOf(std::string_view text);

// An exception that a script's function raised inside the system, where it could not leave as such:
// kept, and raised when the script's own call returns. The first one wins.
void KeepRaised(py::error_already_set& raised);
void RaiseKept();
// Runs a call of the script's, then raises what was kept meanwhile.
template <class Call>
auto Called(Call&& call) {
  if constexpr (std::is_void_v<decltype(call())>) {
    call();
    RaiseKept();
  } else {
    auto result = call();
    RaiseKept();
    return result;
  }
}

// Who is told how long a routine has stood before a box: nobody, if it is empty. With the interpreter's
// lock held.
void AlEsperarAlOperador(std::function<void(std::chrono::steady_clock::duration)> listener);

// The host's objects as a script sees them; None while unset.
py::object AmbienteObject(service::Ambiente* ambiente, forms::Form& form);
py::object ParentObject(service::LateBound* parent, forms::Form& form);
service::Ambiente* AmbienteOf(const py::object& object);
service::LateBound* ParentOf(const py::object& object);

// The same Python object for the same form, of its own class.
py::object FormObject(forms::Form& form);
// The control as an object of its kind; it keeps its form.
py::object ControlObject(forms::Control& control);
// The controls of one name, which is that of their array and lives as long as the form.
py::object ArrayObject(forms::Form& form, std::string_view name);

}  // namespace tarvik::python
