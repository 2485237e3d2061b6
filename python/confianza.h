// Confianza: the interpreter's way to the files of the routines' folder, those that they import from one
// another among them. It runs what LeeRutina gives and nothing else: no compiled copy, no library.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "python/binding.h"

namespace tarvik::python {

class Confianza {
 public:
  // With the interpreter's lock held, before anything of the folder is imported. From here on an
  // import of the interpreter's own comes first, so that a file hides none of its modules.
  explicit Confianza(const std::string& folder);

  // Runs the file as the module of that name, and enters it among the interpreter's modules. Throws
  // py::error_already_set; the name is then entered all the same.
  py::object Ejecuta(const std::string& name, const std::string& path);
  // Why a file could not be read or is not to be run; nothing if it was.
  [[nodiscard]] std::optional<std::string> Rehusado(const std::string& path) const;
  // What the interpreter is told then; its text is for an operator.
  [[nodiscard]] const py::object& Excepcion() const { return rehusada_; }

 private:
  py::object rehusada_;
  py::object cargador_;
  std::shared_ptr<std::map<std::string, std::string>> motivos_;  // by path
};

}  // namespace tarvik::python
