// The module `tarvik` itself, whether it is loaded by an interpreter or built into the program that
// embeds one: the conversions that its parts share, and the parts put together.
#include "python/bind_all.h"

#include <datetime.h>
#include <pybind11/pybind11.h>

#include <cmath>

#include "data/error.h"
#include "data/number.h"
#include "data/text.h"
#include "python/binding.h"
#include "python/descripcion.h"
#include "python/referencia.h"

namespace tarvik::python {

namespace {
std::optional<py::error_already_set> kept;  // guarded by the interpreter's lock
}

void KeepRaised(py::error_already_set& raised) {
  if (!kept) kept.emplace(raised);
}

void RaiseKept() {
  if (!kept) return;
  py::error_already_set raised = *kept;
  kept.reset();
  throw raised;  // NOLINT(misc-throw-by-value-catch-by-reference)
}

std::string TextOf(const py::handle& object) {
  if (object.is_none()) return {};
  if (py::isinstance<py::str>(object)) {
    return py::bytes(object.attr("encode")("utf-8", "surrogateescape"));
  }
  return data::ToText(ValueOf(object));
}

py::str StrOf(std::string_view text) { return py::str(data::RepairUtf8(text)); }

std::optional<data::DateTime> DateTimeOf(const py::handle& object) {
  if (!PyDateTime_Check(object.ptr())) return std::nullopt;
  PyObject* when = object.ptr();
  return data::DateTime{
      {PyDateTime_GET_YEAR(when), PyDateTime_GET_MONTH(when), PyDateTime_GET_DAY(when)},
      {PyDateTime_DATE_GET_HOUR(when), PyDateTime_DATE_GET_MINUTE(when), PyDateTime_DATE_GET_SECOND(when)}};
}

std::optional<data::Date> DateOf(const py::handle& object) {
  if (PyDate_Check(object.ptr())) {
    PyObject* day = object.ptr();
    return data::Date{PyDateTime_GET_YEAR(day), PyDateTime_GET_MONTH(day), PyDateTime_GET_DAY(day)};
  }
  if (py::isinstance<py::str>(object)) return data::Date::Parse(TextOf(object));
  return std::nullopt;
}

data::Value ValueOf(const py::handle& object) {
  if (object.is_none()) return {};
  if (py::isinstance<py::bool_>(object)) return object.cast<bool>();
  if (py::isinstance<py::int_>(object)) return object.cast<std::int64_t>();
  if (py::isinstance<py::float_>(object)) return object.cast<double>();
  if (py::isinstance<py::str>(object)) return TextOf(object);
  if (auto when = DateTimeOf(object)) return *when;
  if (auto day = DateOf(object)) return *day;
  return std::string(py::str(object));
}

py::object ToPython(const data::Value& value) {
  if (const auto* number = value.As<std::int64_t>()) return py::int_(*number);
  if (const auto* number = value.As<double>()) return py::float_(*number);
  if (const auto* text = value.As<std::string>()) return StrOf(*text);
  if (const auto* day = value.As<data::Date>()) {
    return py::reinterpret_steal<py::object>(PyDate_FromDate(day->year, day->month, day->day));
  }
  if (const auto* when = value.As<data::DateTime>()) {
    return py::reinterpret_steal<py::object>(
        PyDateTime_FromDateAndTime(when->date.year, when->date.month, when->date.day, when->time.hour,
                                   when->time.minute, when->time.second, 0));
  }
  return py::none();
}

namespace {
// tarvik.Error. One reference is never given back: a routine's objects may outlive the module.
PyObject* error_type = nullptr;
}  // namespace

void BindAll(py::module_& module) {
  PyDateTime_IMPORT;
  py::options docs;
  docs.disable_function_signatures();  // each row brings its own
  Descritas().clear();                 // of an interpreter before this one
  module.doc() = "Movimientos de inventario: maneja las pantallas sin ventana y las amplía con rutinas.";
  error_type = py::exception<data::Error>(module, "Error").inc_ref().ptr();
  // NOLINTNEXTLINE(performance-unnecessary-value-param): the library hands it over by value
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      if (thrown) std::rethrow_exception(thrown);
    } catch (const py::builtin_exception&) {
      throw;  // IndexError, TypeError and their like stay what they are
    } catch (const py::error_already_set&) {
      throw;
    } catch (const std::exception& failure) {
      PyErr_SetString(error_type, failure.what());
    }
  });
  BindForms(module);
  BindAnfitrion(module);
  BindServicios(module);
  BindReferencia(module);
}

}  // namespace tarvik::python
