// The server's states, in the operator's words.
#include "data/postgresql/reasons.h"

#include <array>

#include "data/text.h"

namespace tarvik::data {

std::string OneLine(const char* text) {
  std::string line = RepairUtf8(text == nullptr ? "" : text);
  while (!line.empty() && (line.back() == '\n' || line.back() == ' ')) line.pop_back();
  for (char& c : line) c = c == '\n' || c == '\t' ? ' ' : c;
  return line;
}

std::string_view StateOf(const PGresult* result) {
  const char* state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
  return state == nullptr ? std::string_view() : state;
}

std::string_view Reason(std::string_view state) {
  struct Known {
    std::string_view state;  // or the class that it begins with
    std::string_view reason;
  };
  static constexpr std::array kKnown = {
      Known{"23503", "El registro depende de otro que no existe o del que otros dependen"},
      Known{"23505", "Ya existe un registro con esa clave"},
      Known{"23502", "Falta un dato obligatorio"},
      Known{"23", "El registro no cumple una regla de la base"},
      Known{"55P03", "La base está ocupada por otro proceso"},
      Known{"40", "La base está ocupada por otro proceso"},
      Known{"42P01", "La tabla no existe"},
      Known{"42703", "La columna no existe"},
      Known{"42501", "No hay permiso para usar la base"},
      Known{"28", "No hay permiso para usar la base"},
      Known{"3D000", "La base no existe en el servidor"},
      Known{"25006", "La base es de sólo lectura"},
      Known{"53100", "El disco está lleno"},
      Known{"53200", "No hay memoria suficiente"},
      Known{"53300", "El servidor no admite más conexiones"},
      Known{"54", "El dato o la sentencia es demasiado grande"},
      Known{"22", "El dato no es del tipo de la columna"},
      Known{"42804", "El dato no es del tipo de la columna"},
      Known{"57014", "La sentencia se detuvo"},
      Known{"57P03", "El servidor de la base aún no atiende"},
      Known{"57P", "El servidor de la base se detuvo"},
      Known{"58", "No se puede leer o escribir el archivo de la base"},
      Known{"XX", "La base está dañada"},
  };
  for (const Known& known : kKnown) {
    if (state.substr(0, known.state.size()) == known.state) return known.reason;
  }
  return "La base rechazó la sentencia";
}

Trouble TroubleOf(std::string_view state) {
  if (state == "55P03" || state.substr(0, 2) == "40") return Trouble::kBusy;
  if (state == "23505") return Trouble::kDuplicate;
  if (state == "57014") return Trouble::kSlow;
  return Trouble::kOther;
}

}  // namespace tarvik::data
