// Reading the texts of the statement builder and of the public class.
#include "host/sentencias_de_documento.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string>

#include "data/text.h"

namespace tarvik::host {
namespace {

using Clase = SentenciaDeDocumento::Clase;

constexpr Tipo kTipos[] = {Tipo::Entrada, Tipo::Salida};

// The whole number at the front of a text, which is left with the rest.
std::optional<std::int32_t> LeeNumero(std::string_view& text) {
  std::int32_t number = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{}) return {};
  text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
  return number;
}

bool Quita(std::string_view& text, std::string_view beginning) {
  if (!text.starts_with(beginning)) return false;
  text.remove_prefix(beginning.size());
  return true;
}

// "WHERE [table.]column = 7" at the end of a text.
std::optional<std::int32_t> AlFinal(std::string_view text, const std::string& table,
                                    const std::string& column) {
  const std::size_t where = text.rfind(" WHERE ");
  if (where == std::string_view::npos) return {};
  std::string_view condition = text.substr(where + 7);
  Quita(condition, table + ".");
  if (!Quita(condition, column + " = ")) return {};
  const auto number = LeeNumero(condition);
  return condition.empty() ? number : std::nullopt;
}

// How long the literal at the front is: a quoted text with its quotes, or what stands before the next mark.
std::size_t LargoDeLiteral(std::string_view values) {
  if (!values.starts_with('\'')) return std::min(values.find_first_of(",)"), values.size());
  std::size_t end = 1;
  while (end < values.size()) {
    if (values[end] != '\'') {
      ++end;
    } else if (values.substr(end + 1).starts_with('\'')) {
      end += 2;
    } else {
      return end + 1;
    }
  }
  return end;
}

// The literal of a column of "INSERT INTO t (a, b) VALUES (1, 'x')"; nothing if it isn't there.
std::optional<std::string_view> DeInsert(std::string_view text, std::string_view column) {
  const std::size_t open = text.find('(');
  const std::size_t close = text.find(") VALUES (");
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) return {};
  std::string_view names = text.substr(open + 1, close - open - 1);
  std::string_view values = text.substr(close + 10);
  for (;;) {
    const std::size_t comma = std::min(names.find(", "), names.size());
    const std::size_t length = LargoDeLiteral(values);
    if (names.substr(0, comma) == column) return values.substr(0, length);
    values.remove_prefix(length);
    if (comma == names.size() || !Quita(values, ", ")) return {};
    names.remove_prefix(comma + 2);
  }
}

std::optional<std::int32_t> EnteroDeInsert(std::string_view text, std::string_view column) {
  auto literal = DeInsert(text, column);
  return literal ? LeeNumero(*literal) : std::nullopt;
}

double UnidadesDe(std::string_view literal) {
  double units = 0;
  std::from_chars(literal.data(), literal.data() + literal.size(), units);
  return units;
}

// "... (((column) = 7))", as the class deletes.
std::optional<std::int32_t> EntreParentesis(std::string_view text, std::string_view beginning) {
  if (!Quita(text, beginning)) return {};
  const auto number = LeeNumero(text);
  return text == "))" ? number : std::nullopt;
}

SentenciaDeDocumento Hecha(Clase clase, Tipo tipo, std::int32_t numero) {
  return {.clase = clase, .documento = {tipo, numero}};
}

SentenciaDeDocumento DeInsercion(std::string_view text) {
  for (const Tipo tipo : kTipos) {
    const Tablas& tables = TablasDe(tipo);
    if (text.starts_with("INSERT INTO " + tables.encabezado + " (")) {
      if (const auto number = EnteroDeInsert(text, tables.clave)) return Hecha(Clase::Crea, tipo, *number);
    }
    if (text.starts_with("INSERT INTO " + tables.partidas + " (")) {
      const auto number = EnteroDeInsert(text, tables.clave);
      if (!number) continue;
      return {.clase = Clase::Escribe,
              .documento = {tipo, *number},
              .renglon = EnteroDeInsert(text, tables.renglon).value_or(0),
              .unidades = UnidadesDe(DeInsert(text, "cantidad").value_or(""))};
    }
  }
  return {};
}

SentenciaDeDocumento DeCambio(std::string_view text) {
  for (const Tipo tipo : kTipos) {
    const Tablas& tables = TablasDe(tipo);
    std::string_view rest = text;
    if (Quita(rest, "UPDATE " + tables.encabezado + " SET ")) {
      const auto number = AlFinal(rest, tables.encabezado, tables.clave);
      if (!number) return {};
      const bool flag = rest.find(" WHERE ") == std::string_view("ocupado = 1").size();
      if (flag && rest.starts_with("ocupado = 1")) return Hecha(Clase::Toma, tipo, *number);
      if (flag && rest.starts_with("ocupado = 0")) return Hecha(Clase::Suelta, tipo, *number);
      return Hecha(Clase::Guarda, tipo, *number);
    }
    if (text.starts_with("UPDATE " + tables.partidas + " SET ")) {
      const auto line = AlFinal(text, tables.partidas, tables.renglon);
      if (!line) continue;
      rest = text;
      const bool adds = Quita(rest, "UPDATE " + tables.partidas + " SET cantidad = cantidad + ");
      return {.clase = Clase::Corrige,
              .documento = {tipo, 0},
              .renglon = *line,
              .unidades = adds ? UnidadesDe(rest) : 0};
    }
  }
  return {};
}

SentenciaDeDocumento DeBorrado(std::string_view text) {
  struct {
    Tipo tipo;
    Clase clase;
    std::string_view beginning;
  } const known[] = {
      {Tipo::Entrada, Clase::QuitaPartidas, "DELETE FROM entpart WHERE (((entpart.entrada) = "},
      {Tipo::Entrada, Clase::QuitaDocumento, "DELETE FROM entradas WHERE (((entradas.entrada) = "},
      {Tipo::Salida, Clase::QuitaPartidas, "DELETE FROM salpart WHERE (((Salida) = "},
      {Tipo::Salida, Clase::QuitaDocumento, "DELETE FROM salidas WHERE (((salida) = "}};
  for (const auto& [tipo, clase, beginning] : known) {
    if (const auto number = EntreParentesis(text, beginning)) return Hecha(clase, tipo, *number);
  }
  for (const Tipo tipo : kTipos) {
    const Tablas& tables = TablasDe(tipo);
    if (!text.starts_with("DELETE FROM " + tables.partidas + " ")) continue;
    if (const auto line = AlFinal(text, tables.partidas, tables.renglon))
      return {.clase = Clase::Corrige, .documento = {tipo, 0}, .renglon = *line};
  }
  return {};
}

// "exec TKCreaEntradaTYC '7'"
SentenciaDeDocumento DeProcedimiento(std::string_view text) {
  for (const Tipo tipo : kTipos) {
    std::string_view rest = text;
    if (!Quita(rest, "exec TKCrea" + std::string(NombreDe(tipo)) + "TYC '")) continue;
    const auto number = LeeNumero(rest);
    if (number && rest == "'") return Hecha(Clase::Escribe, tipo, *number);
  }
  return {};
}

}  // namespace

SentenciaDeDocumento Reconoce(std::string_view text) {
  if (text.starts_with("INSERT INTO ")) return DeInsercion(text);
  if (text.starts_with("UPDATE ")) return DeCambio(text);
  if (text.starts_with("DELETE FROM ")) return DeBorrado(text);
  if (text.starts_with("exec TKCrea")) return DeProcedimiento(text);
  return {};
}

}  // namespace tarvik::host
