#include "host/listado.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "data/text.h"

namespace tarvik::host {
namespace {

using data::Value;

// ---- words ----

constexpr std::array<std::string_view, 5> kParecidas = {"aAáÁàÀäÄâÂ", "eEéÉèÈëËêÊ", "iIíÍìÌïÏîÎ",
                                                        "oOóÓòÒöÖôÔ", "uUúÚùÙüÜûÛ"};

char32_t Minuscula(char32_t letter) {
  const bool ascii = letter >= U'A' && letter <= U'Z';
  const bool western = letter >= 0xc0 && letter <= 0xde && letter != 0xd7;
  return ascii || western ? letter + 32 : letter;
}

// The letters that count as this one; empty for a character that is no letter.
std::string Parecidas(const std::string& one) {
  for (const std::string_view letters : kParecidas) {
    if (letters.find(one) != std::string_view::npos) return std::string(letters);
  }
  const char32_t letter = data::Decode(one);
  if (Minuscula(letter) == 0xf1) return "nNñÑ";
  const char32_t small = Minuscula(letter), large = data::Upper(small);
  if (small == large) return "";
  return data::Encode(small) + data::Encode(large);
}

// The word as patterns of the engine's: an exact one, and a rough one that costs a tenth of it, with any
// character where a letter may have an accent.
struct Patron {
  std::string exacto;
  std::string grueso;
};

Patron PatronDe(const std::string& word, bool sqlite) {
  const std::string_view special = sqlite ? "*?[" : "\\^$.|?*+()[]{}";
  Patron pattern;
  const std::size_t length = data::Length(word);
  for (std::size_t i = 0; i < length; ++i) {
    const std::string one = data::Substring(word, i, 1);
    const std::string alike = Parecidas(one);
    const bool any = data::Length(alike) > 2 || one.size() > 1;
    pattern.grueso += any ? "_" : one;
    if (!alike.empty()) {
      pattern.exacto += "[" + alike + "]";
    } else if (special.find(one) != std::string_view::npos) {
      pattern.exacto += sqlite ? "[" + one + "]" : "\\" + one;
    } else {
      pattern.exacto += one;
    }
  }
  return pattern;
}

// The condition with its placeholders replaced, and its values added.
std::string Expandida(data::Dialect dialect, const Palabra& word, std::vector<Value>& values) {
  const bool sqlite = dialect == data::Dialect::Sqlite;
  const Patron pattern = PatronDe(word.palabra, sqlite);
  std::string text;
  for (std::size_t at = 0; at < word.donde.size(); ++at) {
    if (word.donde[at] != '{') {
      text += word.donde[at];
      continue;
    }
    const std::size_t end = word.donde.find('}', at);
    const std::string column = word.donde.substr(at + 1, end - at - 1);
    at = end;
    if (sqlite) {
      text += "(" + column + " LIKE ? AND " + column + " GLOB ?)";
      values.emplace_back("%" + pattern.grueso + "%");
      values.emplace_back("*" + pattern.exacto + "*");
    } else {
      text += column + " ~ ?";
      values.emplace_back(pattern.exacto);
    }
  }
  return text;
}

// ---- conditions ----

// A condition that grows, with its values in the order of the text.
struct Crecida {
  std::string texto;
  std::vector<Value> valores;

  void Y(const std::string& more, const std::vector<Value>& more_values = {}) {
    if (more.empty()) return;
    if (!texto.empty()) texto += " AND ";
    texto += more;
    valores.insert(valores.end(), more_values.begin(), more_values.end());
  }
  void Condiciones(data::Dialect dialect, const Listado& listing) {
    Y(listing.donde, listing.valores);
    for (const Palabra& word : listing.palabras) {
      std::vector<Value> values;
      const std::string text = Expandida(dialect, word, values);
      Y(text, values);
    }
  }
  [[nodiscard]] std::string Where() const { return texto.empty() ? "" : " WHERE " + texto; }
};

std::string Clave(const Listado& listing) { return listing.por_donde ? "+" + listing.clave : listing.clave; }

std::string Sentido(const Listado& listing) { return listing.descendente ? " DESC" : ""; }

std::string Hasta(const Listado& listing) {
  return listing.clave + (listing.descendente ? " >= ?" : " <= ?");
}

// The keys first, the whole rows after them: an index often holds all that finding the keys takes.
std::string Sentencia(const Listado& listing, const Crecida& condition, int limit) {
  std::string text = "SELECT " + listing.columnas + " FROM (SELECT " + listing.clave + " AS k FROM " +
                     listing.tabla + condition.Where();
  if (limit > 0) text += " ORDER BY " + Clave(listing) + Sentido(listing) + " LIMIT " + std::to_string(limit);
  text += ") k JOIN " + listing.tabla + " d ON d." + listing.clave + " = k.k " + listing.uniones +
          " ORDER BY d." + listing.clave + Sentido(listing);
  return listing.otro_orden.empty() ? text : text + ", " + listing.otro_orden;
}

}  // namespace

struct CursorDeListado::Condicion : Crecida {};

int CuentaClaves(const Renglones& rows) {
  int count = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i == 0 || !(rows[i][0] == rows[i - 1][0])) ++count;
  }
  return count;
}

CursorDeListado::Condicion CursorDeListado::Aqui() const {
  Condicion condition;
  const std::string key = Clave(listado_);
  condition.Y(listado_.fijo);
  if (tramo_ < listado_.tramos.size()) {
    const auto& [low, high] = listado_.tramos[tramo_];
    condition.Y(key + " >= ? AND " + key + " <= ?", {low, high});
  }
  if (!detras_.IsNull()) condition.Y(key + (listado_.descendente ? " < ?" : " > ?"), {detras_});
  return condition;
}

bool CursorDeListado::LlegoA(std::int64_t clave) const {
  if (detras_.IsNull()) return !listado_.descendente;
  const auto seen = static_cast<std::int64_t>(data::ToNumber(detras_));
  return listado_.descendente ? seen <= clave : seen >= clave;
}

void CursorDeListado::OtroTramo() {
  detras_ = {};
  termino_ = ++tramo_ >= listado_.tramos.size();
}

// The last key of the next short step; null if there are no keys left in this stretch.
Value CursorDeListado::FinDelPaso(data::EngineConnection& connection, const Condicion& here) const {
  const std::string edge = listado_.descendente ? "MIN" : "MAX";
  const std::string text = "SELECT " + edge + "(k) AS k FROM (SELECT " + listado_.clave + " AS k FROM " +
                           listado_.tabla + here.Where() + " ORDER BY " + listado_.clave + Sentido(listado_) +
                           " LIMIT " + std::to_string(kPaso) + ") s";
  return connection.Run(text, here.valores).rows.at(0).at(0);
}

Renglones CursorDeListado::Lee(data::EngineConnection& connection, int cuantas) {
  Condicion condition = Aqui();
  Value step_end;
  if (listado_.por_pasos) {
    step_end = FinDelPaso(connection, condition);
    if (step_end.IsNull()) {
      OtroTramo();
      return {};
    }
    condition.Y(Hasta(listado_), {step_end});
  }
  condition.Condiciones(connection.Kind(), listado_);
  Renglones rows = connection.Run(Sentencia(listado_, condition, cuantas), condition.valores).rows;
  if (CuentaClaves(rows) >= cuantas) {
    detras_ = rows.back()[0];
  } else if (listado_.por_pasos) {
    detras_ = step_end;
  } else {
    OtroTramo();
  }
  return rows;
}

void CursorDeListado::Suma(data::EngineConnection& connection, Sumas& sumas) {
  Condicion condition = Aqui();
  Value step_end;
  if (!listado_.por_donde) {
    step_end = FinDelPaso(connection, condition);
    if (step_end.IsNull()) return OtroTramo();
    condition.Y(Hasta(listado_), {step_end});
  }
  condition.Condiciones(connection.Kind(), listado_);
  const std::string total = listado_.suma.empty() ? "0" : "SUM(" + listado_.suma + ")";
  const auto found =
      connection.Run("SELECT COUNT(*) AS n, " + total + " AS t FROM " + listado_.tabla + condition.Where(),
                     condition.valores);
  sumas.cuantos += static_cast<std::int64_t>(data::ToNumber(found.rows.at(0).at(0)));
  sumas.total += data::ToNumber(found.rows.at(0).at(1));
  if (listado_.por_donde) return OtroTramo();
  detras_ = step_end;
}

Renglones RenglonesEntre(data::EngineConnection& connection, const Listado& listado, const Value& primera,
                         const Value& ultima) {
  Crecida condition;
  condition.Y(listado.fijo);
  condition.Y(
      listado.clave + " >= ? AND " + listado.clave + " <= ?",
      listado.descendente ? std::vector<Value>{ultima, primera} : std::vector<Value>{primera, ultima});
  // A page may hold the end of one stretch and the beginning of the next.
  Crecida stretches;
  for (const auto& [low, high] : listado.tramos) {
    stretches.texto += (stretches.texto.empty() ? "(" : " OR ") + listado.clave + " BETWEEN ? AND ?";
    stretches.valores.insert(stretches.valores.end(), {low, high});
  }
  if (!stretches.texto.empty()) condition.Y(stretches.texto + ")", stretches.valores);
  condition.Condiciones(connection.Kind(), listado);
  return connection.Run(Sentencia(listado, condition, 0), condition.valores).rows;
}

}  // namespace tarvik::host
