#include "host/listados.h"

#include <algorithm>
#include <limits>
#include <regex>
#include <sstream>

namespace tarvik::host {
namespace {

using data::Value;

std::vector<std::string> Palabras(const std::string& text) {
  std::istringstream words(text);
  std::vector<std::string> all;
  for (std::string word; words >> word;) all.push_back(word);
  return all;
}

std::optional<data::Date> Valida(int year, int month, int day) {
  const data::Date date{year, month, day};
  return date.Valid() ? std::optional(date) : std::nullopt;
}

std::pair<data::Date, data::Date> Mes(const data::Date& first) {
  return {first, first.PlusMonths(1).PlusDays(-1)};
}

// "11/2026"
bool EsMes(const std::string& text, FiltroDeDocumentos& filter, bool& good) {
  static const std::regex form("(\\d{1,2})[/.](\\d{4})");
  std::smatch found;
  if (!std::regex_match(text, found, form)) return false;
  const auto first = Valida(std::stoi(found[2]), std::stoi(found[1]), 1);
  if (first) filter.fechas = Mes(*first);
  good = first.has_value();
  return true;
}

// "2026-", "2026-11", "2026-11-21"
bool EmpiezaPorElAno(const std::string& text, FiltroDeDocumentos& filter, bool& good) {
  static const std::regex form("(\\d{4})-(?:(\\d{1,2})(?:-(\\d{1,2})?)?)?");
  std::smatch found;
  if (!std::regex_match(text, found, form)) return false;
  const int year = std::stoi(found[1]);
  const std::string month = found[2], day = found[3];
  if (month.empty()) {
    good = Valida(year, 1, 1).has_value();
    if (good) filter.fechas = {{data::Date{year, 1, 1}, data::Date{year, 12, 31}}};
    return true;
  }
  const auto date = Valida(year, std::stoi(month), day.empty() ? 1 : std::stoi(day));
  if (date) filter.fechas = day.empty() ? Mes(*date) : std::pair{*date, *date};
  good = date.has_value();
  return true;
}

// "21/", "21/11", "21/11/2026"
bool EmpiezaPorElDia(const std::string& text, FiltroDeDocumentos& filter, bool& good) {
  static const std::regex form("(\\d{1,2})[/.](?:(\\d{1,2})(?:[/.](\\d{0,4}))?)?");
  std::smatch found;
  if (!std::regex_match(text, found, form)) return false;
  const int day = std::stoi(found[1]);
  const int month = found[2].length() == 0 ? 0 : std::stoi(found[2]);
  const std::string year = found[3];
  good = day >= 1 && day <= 31 && month <= 12 && (month != 0 || found[2].length() == 0);
  if (!good) return true;
  // A year that is half typed means nothing yet.
  if (year.size() == 4 || year.size() == 2) {
    const auto date = Valida(std::stoi(year) + (year.size() == 2 ? 2000 : 0), month, day);
    if (date) filter.fechas = {*date, *date};
    good = date.has_value();
  } else {
    filter.dia_y_mes = {day, month};
  }
  return true;
}

std::string DosCifras(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

Listado DeDocumentos(Tipo tipo, bool pendientes) {
  Listado listing;
  const Tablas& tables = TablasDe(tipo);
  listing.tabla = tables.encabezado;
  listing.clave = tables.clave;
  listing.descendente = true;
  listing.con_numero = true;
  listing.columnas = "d." + tables.clave +
                     ", d.f_emision, d.tipo_doc, COALESCE(c.descrip, d.datos), d.observ, d.almacen, "
                     "a.descrip, d.importe, d.estado, d.ocupado, d.usuario, r.usuario AS retiene, "
                     "r.estacion, r.desde";
  listing.uniones =
      "LEFT JOIN tipominv c ON c.tipo_movim = d.tipo_doc LEFT JOIN ALMACEN a ON a.almacen = d.almacen "
      "LEFT JOIN tenencias r ON r.id = (SELECT MAX(t.id) FROM tenencias t WHERE t.tipo = '" +
      std::string(NombreDe(tipo)) + "' AND t.documento = d." + tables.clave + ")";
  listing.suma = "importe";
  if (pendientes) listing.fijo = "estado = 'PE'";
  return listing;
}

const std::pair<Value, Value> kNinguno{1, 0};  // a stretch without any number

}  // namespace

FiltroDeDocumentos EntiendeFiltro(const std::string& escrito) {
  FiltroDeDocumentos filter;
  std::vector<std::string> words = Palabras(escrito);
  if (words.size() == 1) {
    const std::string& text = words.front();
    if (std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
      filter.numero = text;
      return filter;
    }
    bool good = false;
    const bool date = EsMes(text, filter, good) || EmpiezaPorElAno(text, filter, good) ||
                      EmpiezaPorElDia(text, filter, good);
    if (date && good) return filter;
  }
  filter.palabras = std::move(words);
  return filter;
}

std::vector<std::pair<Value, Value>> NumerosQueEmpiezanCon(const std::string& cifras) {
  constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();
  std::vector<std::pair<Value, Value>> stretches;
  const std::size_t first = cifras.find_first_not_of('0');
  if (first != std::string::npos && cifras.size() - first <= 10) {
    std::int64_t low = std::stoll(cifras.substr(first));
    for (std::int64_t high = low; low <= kHighest; low *= 10, high = high * 10 + 9) {
      stretches.emplace_back(low, std::min(high, kHighest));
    }
    std::reverse(stretches.begin(), stretches.end());
  }
  if (stretches.empty()) stretches.push_back(kNinguno);
  return stretches;
}

Listado ListadoDeDocumentos(Tipo tipo, bool pendientes, const std::string& escrito) {
  Listado listing = DeDocumentos(tipo, pendientes);
  const FiltroDeDocumentos filter = EntiendeFiltro(escrito);
  if (filter.numero) listing.tramos = NumerosQueEmpiezanCon(*filter.numero);
  if (filter.fechas) {
    listing.por_donde = true;
    listing.donde = "f_emision >= ? AND f_emision < ?";
    listing.valores = {filter.fechas->first, filter.fechas->second.PlusDays(1)};
  }
  if (filter.dia_y_mes) {
    const auto [day, month] = *filter.dia_y_mes;
    listing.por_pasos = true;
    listing.donde = "CAST(f_emision AS TEXT) LIKE ?";
    listing.valores = {"____-" + (month == 0 ? std::string("__") : DosCifras(month)) + "-" + DosCifras(day) +
                       "%"};
  }
  for (const std::string& word : filter.palabras) {
    listing.por_pasos = true;
    listing.palabras.push_back(
        {"({observ} OR {tipo_doc} OR tipo_doc IN (SELECT tipo_movim FROM tipominv "
         "WHERE {descrip}))",
         word});
  }
  return listing;
}

Listado ListadoDeEstos(Tipo tipo, bool pendientes, const std::vector<std::int32_t>& numeros) {
  Listado listing = DeDocumentos(tipo, pendientes);
  for (const std::int32_t number : numeros) listing.tramos.insert(listing.tramos.begin(), {number, number});
  if (listing.tramos.empty()) listing.tramos.push_back(kNinguno);
  return listing;
}

Listado ListadoDeExistencias(const std::string& escrito) {
  Listado listing;
  listing.tabla = "prods";
  listing.clave = "articulo";
  listing.columnas =
      "d.articulo, d.descrip, d.unidad, d.ubicacion, e.almacen, a.descrip, e.existencia, d.Por_Surt";
  listing.uniones =
      "LEFT JOIN existenciaalmacen e ON e.articulo = d.articulo LEFT JOIN ALMACEN a ON a.almacen = e.almacen";
  listing.otro_orden = "e.almacen";
  for (const std::string& word : Palabras(escrito)) {
    listing.palabras.push_back({"({articulo} OR {descrip})", word});
    listing.por_pasos = true;
  }
  return listing;
}

Listado ListadoDeMovimientos(const std::string& articulo, double almacen) {
  Listado listing;
  listing.tabla = "movsinv";
  listing.clave = "id";
  listing.descendente = true;
  listing.con_numero = true;
  listing.columnas =
      "d.id, d.f_movim, d.usuhora, d.operacion, d.movimiento, d.tipo_doc, c.descrip, d.ent_sal, d.cantidad, "
      "d.Precio, d.importe, d.usuario";
  listing.uniones = "LEFT JOIN tipominv c ON c.tipo_movim = d.tipo_doc";
  listing.donde = "articulo = ? AND almacen = ?";
  listing.valores = {articulo, almacen};
  listing.por_donde = true;
  return listing;
}

}  // namespace tarvik::host
