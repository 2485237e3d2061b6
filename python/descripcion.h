// What the module offers, described: each class with its members, their types and a line of Spanish. The rows
// of members/ come in as they are; what only a script sees is described where it is bound, by Clase. The
// documentation strings, the stub and the pages of reference come from here.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "members/member.h"
#include "python/binding.h"
#include "python/nombres.h"

namespace tarvik::python {

struct ParametroDescrito {
  std::string nombre;
  std::string tipo;                         // as a script's own annotation: "int", "str | None"
  std::optional<std::string> omision = {};  // what it is without being given, as a script writes it
};

struct MiembroDescrito {
  std::string nombre;
  members::Kind clase;
  std::string tipo;
  std::vector<ParametroDescrito> parametros = {};
  std::string linea;
  std::vector<members::Place> lugares = {};

  // For the interpreter: the signature, and the line; nothing without a line.
  [[nodiscard]] std::string Doc() const;
};

struct ClaseDescrita {
  std::string nombre;
  std::string linea;
  std::string base;
  std::vector<MiembroDescrito> miembros;
};

// In the order in which they were bound; of the interpreter that runs.
std::vector<ClaseDescrita>& Descritas();
// REQUIRES: it has been described.
ClaseDescrita& Descrita(std::string_view name);

// Whether a parameter of it may be given by either of two names.
bool TieneDosNombres(const members::Member& member);
// A row of the table, as a script sees it. `corto`: by the other names of its parameters.
MiembroDescrito Descrito(const members::Member& member, bool corto = false);
ClaseDescrita& Describe(const members::Class& table);

// Parameters of a row of Clase.
struct Toma {
  const char* nombre;
  const char* tipo;
};
struct Puede {
  const char* nombre;
  const char* tipo;
  py::object omision;
};
inline py::arg Atributo(const Toma& parameter) { return py::arg(parameter.nombre); }
inline py::arg_v Atributo(const Puede& parameter) { return py::arg(parameter.nombre) = parameter.omision; }
inline ParametroDescrito Como(const Toma& parameter) { return {parameter.nombre, parameter.tipo}; }
inline ParametroDescrito Como(const Puede& parameter) {
  return {parameter.nombre, parameter.tipo, std::string(py::str(py::repr(parameter.omision)))};
}

// A class that is bound and described at once: each member is one row.
//
//   Clase<Acto>(module, "Acto", "Un acto de la bitácora.")
//       .Lee("texto", "str", "Qué se hizo, exactamente.", &TextoDelActo);
template <class T, class... Options>
class Clase {
 public:
  template <class... Extra>
  Clase(py::module_& module, const char* name, const char* line, const Extra&... extra)
      : type_(module, name, line, DiceLoParecido(), extra...), name_(name) {
    Descritas().push_back({name, line, {}, {}});
  }
  // More rows of a class that was made by another file.
  Clase(py::module_& module, const char* name)
      : type_(py::reinterpret_borrow<py::class_<T, Options...>>(module.attr(name))), name_(name) {}

  template <class Getter>
  Clase& Lee(const char* name, const char* type, const char* line, Getter&& getter) {
    type_.def_property_readonly(name, std::forward<Getter>(getter), line);
    return Row({name, members::Kind::ReadOnly, type, {}, line});
  }
  template <class Getter, class Setter>
  Clase& Tiene(const char* name, const char* type, const char* line, Getter&& getter, Setter&& setter) {
    type_.def_property(name, std::forward<Getter>(getter), std::forward<Setter>(setter), line);
    return Row({name, members::Kind::Property, type, {}, line});
  }
  template <class Function, class... Parameters>
  Clase& Hace(const char* name, const char* result, const char* line, Function&& function,
              const Parameters&... parameters) {
    MiembroDescrito row{name, members::Kind::Procedure, result, {Como(parameters)...}, line};
    type_.def(name, std::forward<Function>(function), Atributo(parameters)..., row.Doc().c_str());
    return Row(std::move(row));
  }
  // How an object is made.
  template <class Init, class... Parameters>
  Clase& Nace(const char* line, Init&& init, const Parameters&... parameters) {
    MiembroDescrito row{"__init__", members::Kind::Procedure, "None", {Como(parameters)...}, line};
    type_.def(std::forward<Init>(init), Atributo(parameters)..., row.Doc().c_str());
    return Row(std::move(row));
  }
  // The same with what keeps an object alive.
  template <class Keep, class Function>
  Clase& HaceY(const char* name, const char* result, const char* line, const Keep& keep,
               Function&& function) {
    MiembroDescrito row{name, members::Kind::Procedure, result, {}, line};
    type_.def(name, std::forward<Function>(function), keep, row.Doc().c_str());
    return Row(std::move(row));
  }
  // A row of something that is bound by itself.
  Clase& Row(MiembroDescrito row) {
    Descrita(name_).miembros.push_back(std::move(row));
    return *this;
  }
  py::class_<T, Options...>& Tipo() { return type_; }

 private:
  py::class_<T, Options...> type_;
  const char* name_;
};

}  // namespace tarvik::python
