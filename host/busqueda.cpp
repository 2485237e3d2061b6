// Searches by title. Each stage asks for no more rows than are still wanted, so that the usual case,
// the beginning of a key, reads a few entries of an index.
#include "host/busqueda.h"

#include <set>
#include <utility>

#include "data/error.h"
#include "data/schema.h"
#include "data/text.h"

namespace tarvik::host {
namespace {

std::string Mayusculas(std::string_view text) {
  std::string upper;
  while (!text.empty()) {
    const std::string first = data::Substring(text, 0, 1);
    upper += data::Encode(data::Upper(data::Decode(first)));
    text.remove_prefix(std::min(text.size(), first.size()));
  }
  return upper;
}

// For LIKE with ESCAPE '!'.
std::string Escapado(const std::string& text) {
  std::string escaped;
  for (const char character : text) {
    if (character == '%' || character == '_' || character == '!') escaped += '!';
    escaped += character;
  }
  return escaped;
}

std::vector<std::string> Palabras(const std::string& text) {
  std::vector<std::string> words;
  std::string word;
  for (const char character : text + " ") {
    if (character != ' ') {
      word += character;
    } else if (!word.empty()) {
      words.push_back(std::exchange(word, ""));
    }
  }
  return words;
}

// One search under way: what is found so far, and the statements that go on from there.
class Consulta {
 public:
  Consulta(data::EngineConnection& connection, const Busqueda& what, std::size_t limit)
      : connection_(connection), what_(what), limit_(limit) {}

  [[nodiscard]] bool Llena() const { return found_.size() >= limit_; }
  std::vector<Hallazgo> Resultado() && { return std::move(found_); }

  // Rows of the search's own table.
  void Donde(const std::string& condition, std::vector<data::Value> values, std::string_view order) {
    if (Llena()) return;
    std::string text = "SELECT " + std::string(what_.clave) + ", " + std::string(what_.descripcion) + ", " +
                       (what_.extra.empty() ? "''" : std::string(what_.extra)) + " FROM " +
                       std::string(what_.tabla) + " WHERE " + condition;
    if (!what_.ent_sal.empty()) {
      text += " AND ent_sal = ?";
      values.emplace_back(std::string(what_.ent_sal));
    }
    Agrega(text + " ORDER BY " + std::string(order) + " LIMIT ?", std::move(values));
  }

  // Any rows of key, description and extra; the statement ends with its LIMIT.
  void Agrega(const std::string& text, std::vector<data::Value> values) {
    if (Llena()) return;
    values.emplace_back(limit_);  // some may be known already
    for (const auto& row : connection_.Run(text, values).rows) {
      if (Llena()) return;
      Hallazgo hit{data::ToText(row[0]), data::ToText(row[1]), data::ToText(row[2])};
      if (known_.insert(hit.clave).second) found_.push_back(std::move(hit));
    }
  }

  struct Condicion {
    std::string texto;
    std::vector<data::Value> valores;
  };
  // Keys of a column that begin with the text, as typed or in capitals: one condition after the
  // other, each served by the column's index in its order.
  [[nodiscard]] std::vector<Condicion> Comienza(const std::string& column, const std::string& typed) const {
    const std::string upper = Mayusculas(typed);
    // The engines compare texts character by character, so that a beginning is a range.
    const std::string range = column + " >= ? AND " + column + " < ?";
    const std::string last = data::Encode(0x10FFFF);
    std::vector<Condicion> conditions = {{range, {typed, typed + last}}};
    if (upper != typed) conditions.push_back({range, {upper, upper + last}});
    return conditions;
  }

 private:
  data::EngineConnection& connection_;
  const Busqueda& what_;
  std::size_t limit_;
  std::vector<Hallazgo> found_;
  std::set<std::string> known_;
};

}  // namespace

const std::vector<Busqueda>& Busquedas() {
  static const std::vector<Busqueda> all = {
      {"Conceptos de entrada al inventario", "tipominv", "tipo_movim", "descrip", "", "E"},
      {"Conceptos de salidas de inventario", "tipominv", "tipo_movim", "descrip", "", "S"},
      {"Almacenes", "ALMACEN", "almacen", "descrip", "", ""},
      {"Articulos", "prods", "articulo", "descrip", "unidad", ""},
      {"Claves adicionales de articulos", "clavesadd", "clave", "Dato1", "articulo", ""},
      {"Clientes", "clients", "cliente", "nombre", "", ""},
      {"Empleados", "empleados", "empleado", "nombre", "", ""},
      {"Estaciones", "ESTACIONES", "ESTACION", "descrip", "", ""},
      {"Impuestos por porcentaje", "impuestos", "impuesto", "descrip", "valor", ""},
      {"sucursales", "sucursal", "sucursal", "descrip", "", ""},
  };
  return all;
}

const Busqueda* BusquedaPor(std::string_view titulo) {
  for (const auto& known : Busquedas()) {
    if (data::EqualsNoCase(known.titulo, titulo)) return &known;
  }
  return nullptr;
}

std::vector<Hallazgo> Busca(data::EngineConnection& connection, std::string_view titulo,
                            const std::string& typed, std::size_t limit) {
  const Busqueda* what = BusquedaPor(titulo);
  if (what == nullptr) throw data::Error("No existe la búsqueda \"" + std::string(titulo) + "\"");
  Consulta search(connection, *what, limit);
  const std::string text = data::Trim(typed);
  const std::string key(what->clave);
  const std::string description(what->descripcion);
  if (text.empty()) {
    search.Donde("1 = 1", {}, key);
    return std::move(search).Resultado();
  }

  const data::Column* column = data::FindColumn(what->tabla, what->clave);
  if (column != nullptr && column->type == data::ColumnType::Text) {
    search.Donde(key + " IN (?, ?)", {text, Mayusculas(text)}, key);
    for (auto& [condition, values] : search.Comienza(key, text)) {
      search.Donde(condition, std::move(values), key);
    }
  } else {
    // Numbers: their digits as they are read, whatever the engine's own way to write them.
    const bool embedded = connection.Kind() == data::Dialect::Sqlite;
    const std::string whole =
        embedded ? "CAST(" + key + " AS INTEGER)" : "CAST(TRUNC(" + key + ") AS NUMERIC)";
    const std::string digits = "CAST(" + whole + " AS VARCHAR(20))";
    search.Donde(digits + " = ?", {text}, key);
    search.Donde(digits + " LIKE ? ESCAPE '!'", {Escapado(text) + "%"}, key);
  }

  std::string every;
  std::vector<data::Value> values;
  const std::string like = connection.Kind() == data::Dialect::Sqlite ? " LIKE " : " ILIKE ";  // "A" for "a"
  for (const std::string& word : Palabras(text)) {
    if (!every.empty()) every += " AND ";
    every += description + like + "? ESCAPE '!'";
    values.emplace_back("%" + Escapado(word) + "%");
  }
  search.Donde(every, std::move(values), description + ", " + key);

  if (what->tabla == "prods") {
    for (auto& [condition, second] : search.Comienza("clavesadd.clave", text)) {
      search.Agrega(
          "SELECT prods.articulo, prods.descrip, clavesadd.clave FROM clavesadd "
          "INNER JOIN prods ON prods.articulo = clavesadd.articulo WHERE " +
              condition + " ORDER BY clavesadd.clave LIMIT ?",
          std::move(second));
    }
  }
  return std::move(search).Resultado();
}

}  // namespace tarvik::host
