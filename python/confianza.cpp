#include "python/confianza.h"

#include <pybind11/eval.h>

#include <filesystem>

#include "data/error.h"
#include "python/procedencia.h"

namespace tarvik::python {

namespace {

constexpr const char* kCargador = R"(
from importlib.machinery import FileFinder, SourceFileLoader

class Cargador(SourceFileLoader):
    def get_data(self, path):
        return lee(path)

    def get_code(self, fullname):
        return self.source_to_code(lee(self.path), self.path)

def en_la_carpeta(ruta):
    if ruta != carpeta and not ruta.startswith(carpeta + '/'):
        raise ImportError
    return FileFinder(ruta, (Cargador, ['.py']))
)";

}  // namespace

Confianza::Confianza(const std::string& folder)
    : rehusada_(py::reinterpret_steal<py::object>(
          PyErr_NewException("tarvik.NoSeCarga", PyExc_ImportError, nullptr))),
      motivos_(std::make_shared<std::map<std::string, std::string>>()) {
  py::dict names;
  names["__name__"] = "tarvik.cargador";
  names["carpeta"] = folder;
  names["lee"] = py::cpp_function([reasons = motivos_, refused = rehusada_](const py::object& given) {
    const std::string path = TextOf(given);
    try {
      const std::string text = LeeRutina(path);
      reasons->erase(path);
      return py::bytes(text);
    } catch (const data::Error& error) {
      (*reasons)[path] = error.what();
      const std::string name = std::filesystem::path(path).filename().string();
      PyErr_SetString(refused.ptr(), (name + " " + error.what()).c_str());
      throw py::error_already_set();
    }
  });
  py::exec(kCargador, names);
  cargador_ = names["Cargador"];
  py::module_ sys = py::module_::import("sys");
  sys.attr("path_hooks").attr("insert")(0, names["en_la_carpeta"]);
  sys.attr("path").attr("append")(folder);
}

py::object Confianza::Ejecuta(const std::string& name, const std::string& path) {
  const py::module_ util = py::module_::import("importlib.util");
  const py::object loader = cargador_(name, path);
  const py::object spec = util.attr("spec_from_file_location")(name, path, py::arg("loader") = loader);
  py::object module = util.attr("module_from_spec")(spec);
  py::module_::import("sys").attr("modules")[py::str(name)] = module;
  loader.attr("exec_module")(module);
  return module;
}

std::optional<std::string> Confianza::Rehusado(const std::string& path) const {
  const auto found = motivos_->find(path);
  if (found == motivos_->end()) return {};
  return found->second;
}

}  // namespace tarvik::python
