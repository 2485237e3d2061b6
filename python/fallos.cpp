#include "python/fallos.h"

#include <filesystem>

#include "data/text.h"

namespace tarvik::python {

namespace {

namespace fs = std::filesystem;

// The text of any object; empty if it can't even give that.
std::string TextoSeguro(const py::handle& object) {
  try {
    return data::RepairUtf8(TextOf(py::str(object)));
  } catch (const py::error_already_set&) {
    return {};
  }
}

bool EsDe(py::error_already_set& raised, PyObject* type) { return raised.matches(type); }

// In the folder's own files, the innermost call; outside of them nobody can mend anything.
void PonLugar(py::error_already_set& raised, const std::string& folder, Fallo& failure) {
  if (!raised.trace()) return;
  for (const auto& frame : py::module_::import("traceback").attr("extract_tb")(raised.trace())) {
    const std::string file = TextOf(frame.attr("filename"));
    if (fs::path(file).parent_path() != fs::path(folder)) continue;
    failure.archivo = file;
    failure.linea = frame.attr("lineno").is_none() ? 0 : frame.attr("lineno").cast<int>();
  }
}

constexpr const char* kPidioTerminar = "la rutina pidió terminar el programa; el programa sigue abierto";

std::string EnComillas(const std::string& text) { return "«" + text + "»"; }

}  // namespace

std::string Atributo(const py::handle& object, const char* name) {
  if (!py::hasattr(object, name)) return {};
  const py::object held = object.attr(name);
  return held.is_none() ? std::string() : TextoSeguro(held);
}

Explicada Explica(py::error_already_set& raised, const std::string& folder, Fallo failure) {
  Explicada explained{std::move(failure), {}};
  explained.fallo.texto = TextoSeguro(raised.value());
  try {
    if (explained.fallo.texto.empty()) explained.fallo.texto = Atributo(raised.type(), "__name__");
    if (EsDe(raised, PyExc_SystemExit) || EsDe(raised, PyExc_KeyboardInterrupt)) {
      explained.fallo.texto = kPidioTerminar;
    }
    PonLugar(raised, folder, explained.fallo);
    const py::object lines =
        py::module_::import("traceback")
            .attr("format_exception")(raised.type(), raised.value(),
                                      raised.trace() ? py::object(raised.trace()) : py::none());
    explained.rastro = TextoSeguro(py::str("").attr("join")(lines));
  } catch (const std::exception&) {  // an exception that fails to describe itself: its text will do
  }
  return explained;
}

Fallo FalloDeCarga(py::error_already_set& raised, const std::string& folder, const std::string& file,
                   const py::tuple& own) {
  Fallo failure = Explica(raised, folder, {file, 0, {}}).fallo;
  const std::string said = failure.texto;
  if (raised.matches(own)) return failure;
  try {
    const py::object value = raised.value();
    if (EsDe(raised, PyExc_SyntaxError)) {
      const std::string where = Atributo(value, "filename");
      if (fs::path(where).parent_path() == fs::path(folder)) failure.archivo = where;
      if (py::isinstance<py::int_>(value.attr("lineno"))) failure.linea = value.attr("lineno").cast<int>();
      const bool indent = EsDe(raised, PyExc_IndentationError);
      failure.texto = std::string(indent ? "la sangría no es correcta" : "error de sintaxis") + " (" +
                      Atributo(value, "msg") + ")";
    } else if (EsDe(raised, PyExc_ModuleNotFoundError)) {
      failure.texto = "no se encuentra el módulo " + EnComillas(Atributo(value, "name"));
    } else if (EsDe(raised, PyExc_ImportError)) {
      failure.texto = "no se puede importar lo que pide (" + said + ")";
    } else if (EsDe(raised, PyExc_NameError)) {
      failure.texto = "no existe el nombre " + EnComillas(Atributo(value, "name"));
    } else if (EsDe(raised, PyExc_OSError)) {
      failure.texto = "no se puede leer un archivo (" + said + ")";
    } else if (!EsDe(raised, PyExc_SystemExit) && !EsDe(raised, PyExc_KeyboardInterrupt)) {
      failure.texto = Atributo(raised.type(), "__name__") + ": " + said;
    }
  } catch (const std::exception&) {
    failure.texto = said;
  }
  return failure;
}

}  // namespace tarvik::python
