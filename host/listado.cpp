#include "host/listado.h"

#include <algorithm>
#include <array>
#include <map>
#include <span>
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

// The stretches, for a reading that may begin in one and end in another.
void Tramos(const Listado& listing, Crecida& condition) {
  Crecida stretches;
  for (const auto& [low, high] : listing.tramos) {
    stretches.texto += (stretches.texto.empty() ? "(" : " OR ") + listing.clave + " BETWEEN ? AND ?";
    stretches.valores.insert(stretches.valores.end(), {low, high});
  }
  if (!stretches.texto.empty()) condition.Y(stretches.texto + ")", stretches.valores);
}

std::string Segunda(const Listado& listing) { return listing.segunda.empty() ? "0" : listing.segunda; }

// A text as it is put in order: small letters without accents, and "ñ" after "n". The engines know case for
// ASCII alone; the embedded one looks for letters beyond it only where there are any.
std::string Plegado(data::Dialect dialect, const std::string& column) {
  const std::string text = "COALESCE(" + column + ", '')";
  if (dialect == data::Dialect::Postgresql) {
    return "REPLACE(TRANSLATE(LOWER(" + text + "), 'áéíóúüÁÉÍÓÚÜÑ', 'aeiouuaeiouuñ'), 'ñ', 'n~')";
  }
  const auto replaced = [](std::string folded,
                           std::initializer_list<std::pair<const char*, const char*>> pairs) {
    for (const auto& [letter, plain] : pairs) {
      folded = "REPLACE(" + folded + ", '" + letter + "', '" + plain + "')";
    }
    return folded;
  };
  const std::string small = "LOWER(" + text + ")";
  const std::string plain =
      replaced(small, {{"á", "a"}, {"é", "e"}, {"í", "i"}, {"ó", "o"}, {"ú", "u"}, {"ü", "u"}, {"ñ", "n~"}});
  const std::string both =
      replaced(plain, {{"Á", "a"}, {"É", "e"}, {"Í", "i"}, {"Ó", "o"}, {"Ú", "u"}, {"Ü", "u"}, {"Ñ", "n~"}});
  return "CASE WHEN LENGTH(" + text + ") = LENGTH(CAST(" + text + " AS BLOB)) THEN " + small + " WHEN " +
         text + " GLOB '*[ÁÉÍÓÚÜÑ]*' THEN " + both + " ELSE " + plain + " END";
}

std::string Orden(data::Dialect dialect, const Listado& listing) {
  constexpr std::string_view kText = "{texto}";
  std::string order = listing.orden;
  const std::size_t at = order.find(kText);
  if (at != std::string::npos) order.replace(at, kText.size(), Plegado(dialect, listing.orden_texto));
  return order;
}

// The name of a row, to find it among others.
std::string Nombre(const Identidad& which) {
  return data::ToText(which.first) + '\x1f' + data::ToText(which.second);
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

// A place for each of these rows, empty where the row is gone.
Renglones EstosRenglones(data::EngineConnection& connection, const Listado& listing,
                         std::span<const Identidad> which) {
  std::map<std::string, std::size_t> places;
  std::vector<Value> keys;
  std::string marks;
  for (std::size_t i = 0; i < which.size(); ++i) {
    places.emplace(Nombre(which[i]), i);
    keys.push_back(which[i].first);
    marks += marks.empty() ? "?" : ", ?";
  }
  auto found = connection.Run("SELECT " + listing.columnas + " FROM " + listing.tabla + " d " +
                                  listing.uniones + " WHERE d." + listing.clave + " IN (" + marks + ")",
                              keys);
  Renglones in_order(which.size());
  for (auto& row : found.rows) {
    const auto place = places.find(Nombre(IdentidadDe(listing, row)));
    if (place != places.end()) in_order[place->second] = std::move(row);
  }
  return in_order;
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
  if (!listado_.orden.empty()) {
    constexpr std::size_t kNext = 10000;
    const auto end = std::min(orden_.size(), leidos_ + kNext);
    for (std::size_t i = leidos_; i < end; ++i) {
      if (data::ToNumber(orden_[i].first) == static_cast<double>(clave)) return false;
    }
    return true;
  }
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

// The identities of the next rows in the listing's order, behind the last one known: one statement for many
// pages, since without an index on the order it goes through the whole table.
void CursorDeListado::OrdenaMas(data::EngineConnection& connection) {
  Crecida condition;
  condition.Y(listado_.fijo);
  Tramos(listado_, condition);
  condition.Condiciones(connection.Kind(), listado_);
  std::string text = "SELECT k, s, o FROM (SELECT d." + listado_.clave + " AS k, " + Segunda(listado_) +
                     " AS s, " + Orden(connection.Kind(), listado_) + " AS o FROM " + listado_.tabla + " d " +
                     listado_.uniones_del_orden;
  if (!condition.texto.empty()) {
    text += " WHERE d." + listado_.clave + " IN (SELECT " + listado_.clave + " FROM " + listado_.tabla +
            condition.Where() + ")";
  }
  text += ") t";
  std::vector<Value> values = condition.valores;
  if (!orden_.empty()) {
    const Identidad& which = orden_.back();
    text += std::string(" WHERE o ") + (listado_.orden_descendente ? "<" : ">") + " ? OR (o = ? AND (k " +
            (listado_.descendente ? "<" : ">") + " ? OR (k = ? AND s > ?)))";
    values.insert(values.end(), {ultimo_, ultimo_, which.first, which.first, which.second});
  }
  text += std::string(" ORDER BY o") + (listado_.orden_descendente ? " DESC" : "") + ", k" +
          Sentido(listado_) + ", s LIMIT " + std::to_string(kOrden + 1);
  auto rows = connection.Run(text, values).rows;
  orden_completo_ = static_cast<int>(rows.size()) <= kOrden;
  if (!orden_completo_) rows.pop_back();  // it only tells that there are more
  if (!rows.empty()) ultimo_ = std::move(rows.back()[2]);
  orden_.clear();
  orden_.reserve(rows.size());
  for (auto& row : rows) orden_.emplace_back(std::move(row[0]), std::move(row[1]));
  leidos_ = 0;
}

Renglones CursorDeListado::LeeEnOrden(data::EngineConnection& connection, int cuantas) {
  if (leidos_ == orden_.size() && !orden_completo_) OrdenaMas(connection);
  const std::size_t end = std::min(orden_.size(), leidos_ + static_cast<std::size_t>(std::max(cuantas, 0)));
  std::vector<Identidad> which;
  for (std::size_t i = leidos_; i < end; ++i) which.push_back(orden_[i]);
  Renglones rows = RenglonesDe(connection, listado_, which);
  leidos_ = end;
  termino_ = leidos_ == orden_.size() && orden_completo_;
  return rows;
}

Renglones CursorDeListado::Lee(data::EngineConnection& connection, int cuantas) {
  if (!listado_.orden.empty()) return LeeEnOrden(connection, cuantas);
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

Identidad IdentidadDe(const Listado& listado, const std::vector<Value>& renglon) {
  if (listado.columna_segunda < 0) return {renglon[0], 0};
  const Value& second = renglon[static_cast<std::size_t>(listado.columna_segunda)];
  return {renglon[0], second.IsNull() ? Value(-1) : second};
}

Renglones RenglonesDe(data::EngineConnection& connection, const Listado& listado,
                      const std::vector<Identidad>& cuales) {
  // Not all at once: an engine takes so many values in a statement.
  constexpr std::size_t kAtOnce = 500;
  Renglones all;
  for (std::size_t first = 0; first < cuales.size(); first += kAtOnce) {
    const std::size_t count = std::min(kAtOnce, cuales.size() - first);
    for (auto& row : EstosRenglones(connection, listado, std::span(cuales).subspan(first, count))) {
      if (!row.empty()) all.push_back(std::move(row));
    }
  }
  return all;
}

Renglones RenglonesEntre(data::EngineConnection& connection, const Listado& listado, const Value& primera,
                         const Value& ultima) {
  Crecida condition;
  condition.Y(listado.fijo);
  condition.Y(
      listado.clave + " >= ? AND " + listado.clave + " <= ?",
      listado.descendente ? std::vector<Value>{ultima, primera} : std::vector<Value>{primera, ultima});
  Tramos(listado, condition);
  condition.Condiciones(connection.Kind(), listado);
  return connection.Run(Sentencia(listado, condition, 0), condition.valores).rows;
}

}  // namespace tarvik::host
