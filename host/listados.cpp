#include "host/listados.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <regex>
#include <sstream>

#include "data/number.h"
#include "data/text.h"

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
                     "a.descrip, " +
                     ImporteDe(tipo, "d") +
                     " AS vale, d.estado, d.ocupado, d.usuario, r.usuario AS retiene, r.estacion, r.desde";
  listing.uniones =
      "LEFT JOIN tipominv c ON c.tipo_movim = d.tipo_doc LEFT JOIN ALMACEN a ON a.almacen = d.almacen "
      "LEFT JOIN tenencias r ON r.id = (SELECT MAX(t.id) FROM tenencias t WHERE t.tipo = '" +
      std::string(NombreDe(tipo)) + "' AND t.documento = d." + tables.clave + ")";
  listing.suma = ImporteDe(tipo, tables.encabezado);
  if (pendientes) listing.fijo = "estado = 'PE'";
  return listing;
}

const std::pair<Value, Value> kNinguno{1, 0};  // a stretch without any number

bool SonCifras(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// A word that is one of the forms of a date, parsed into the filter.
bool EsFecha(const std::string& word, FiltroDeDocumentos& filter) {
  bool good = false;
  const bool form =
      EsMes(word, filter, good) || EmpiezaPorElAno(word, filter, good) || EmpiezaPorElDia(word, filter, good);
  return form && good;
}

std::string PatronDelDia(const std::pair<int, int>& day_and_month) {
  const auto [day, month] = day_and_month;
  return "____-" + (month == 0 ? std::string("__") : DosCifras(month)) + "-" + DosCifras(day) + "%";
}

// What only a word of figures can be.
std::string DeCifras(Tipo tipo, const std::string& word) {
  const Tablas& tables = TablasDe(tipo);
  std::string text;
  if (SonCifras(word)) {
    text +=
        std::string(" OR {CAST(") + tables.clave + " AS TEXT)} OR {CAST(CAST(almacen AS BIGINT) AS TEXT)}";
  }
  FiltroDeDocumentos date;
  if (EsFecha(word, date)) {
    if (date.fechas) {
      text += " OR (f_emision >= '" + date.fechas->first.Iso() + "' AND f_emision < '" +
              date.fechas->second.PlusDays(1).Iso() + "')";
    } else {
      text += " OR CAST(f_emision AS TEXT) LIKE '" + PatronDelDia(*date.dia_y_mes) + "'";
    }
    return text;
  }
  if (const auto amount = data::ParseNumber(word); amount && std::abs(*amount) < 1e15) {
    text += " OR " + ImporteDe(tipo, tables.encabezado) + " = " + data::PlainNumber(*amount);
  }
  return text;
}

// "pend" is in what the list shows for PE.
std::string DelEstado(const std::string& word) {
  std::string text;
  const std::string small = data::LowerAscii(word);
  if (std::string_view("pendiente").find(small) != std::string_view::npos) text += " OR estado = 'PE'";
  if (std::string_view("afectado").find(small) != std::string_view::npos) text += " OR estado = 'CO'";
  return text;
}

// Where a row of a document may hold the word: whatever the list shows of it.
std::string DondeUnDocumento(Tipo tipo, const std::string& word) {
  return "({observ} OR {tipo_doc} OR tipo_doc IN (SELECT tipo_movim FROM tipominv WHERE {descrip}) OR "
         "almacen "
         "IN (SELECT almacen FROM ALMACEN WHERE {descrip}) OR (ocupado <> 0 AND {usuario}) OR " +
         std::string(TablasDe(tipo).clave) + " IN (SELECT documento FROM tenencias WHERE tipo = '" +
         std::string(NombreDe(tipo)) + "' AND ({usuario} OR {estacion}))" + DelEstado(word) +
         DeCifras(tipo, word) + ")";
}

// In the order of a text, without regard to case and accents.
std::string PorTexto(Listado& listing, const std::string& text) {
  listing.orden_texto = text;
  return "{texto}";
}

void PorClave(Listado& listing, bool descending) {
  if (listing.descendente != descending) std::reverse(listing.tramos.begin(), listing.tramos.end());
  listing.descendente = descending;
  listing.orden.clear();
}

std::string OrdenDe(Listado& listing, Tipo tipo, ColumnaDeDocumento column) {
  switch (column) {
    case ColumnaDeDocumento::kFecha:
      return "COALESCE(d.f_emision, '0001-01-01')";
    case ColumnaDeDocumento::kConcepto:
      return PorTexto(listing, "d.tipo_doc");
    case ColumnaDeDocumento::kObservaciones:
      return PorTexto(listing, "d.observ");
    case ColumnaDeDocumento::kAlmacen:
      return "COALESCE(d.almacen, -1)";
    case ColumnaDeDocumento::kImporte:
      return "COALESCE(" + ImporteDe(tipo, "d") + ", 0)";
    case ColumnaDeDocumento::kTomadoPor:
      return PorTexto(
          listing,
          "COALESCE((SELECT t.usuario FROM tenencias t WHERE t.id = (SELECT MAX(u.id) FROM tenencias u WHERE "
          "u.tipo = '" +
              std::string(NombreDe(tipo)) + "' AND u.documento = d." + std::string(TablasDe(tipo).clave) +
              ")), CASE WHEN d.ocupado <> 0 THEN d.usuario END)");
    default:
      return "COALESCE(d.estado, '')";
  }
}

}  // namespace

std::string ImporteDe(Tipo tipo, const std::string& fila) {
  const Tablas& tables = TablasDe(tipo);
  const std::string key(tables.clave);
  return "CASE WHEN " + fila + ".estado = 'PE' THEN COALESCE((SELECT SUM(p.cantidad * p.precio) FROM " +
         std::string(tables.partidas) + " p WHERE p." + key + " = " + fila + "." + key + "), 0) ELSE " +
         fila + ".importe END";
}

FiltroDeDocumentos EntiendeFiltro(const std::string& escrito) {
  FiltroDeDocumentos filter;
  std::vector<std::string> words = Palabras(escrito);
  if (words.size() == 1) {
    const std::string& text = words.front();
    if (SonCifras(text)) {
      filter.numero = text;
      return filter;
    }
    if (EsFecha(text, filter)) return filter;
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
    listing.por_pasos = true;
    listing.donde = "CAST(f_emision AS TEXT) LIKE ?";
    listing.valores = {PatronDelDia(*filter.dia_y_mes)};
  }
  for (const std::string& word : filter.palabras) {
    listing.por_pasos = true;
    listing.palabras.push_back({DondeUnDocumento(tipo, word), word});
  }
  return listing;
}

Listado ListadoDeEstos(Tipo tipo, bool pendientes, const std::vector<std::int32_t>& numeros) {
  Listado listing = DeDocumentos(tipo, pendientes);
  for (const std::int32_t number : numeros) listing.tramos.insert(listing.tramos.begin(), {number, number});
  if (listing.tramos.empty()) listing.tramos.push_back(kNinguno);
  return listing;
}

void Ordena(Listado& listado, Tipo tipo, ColumnaDeDocumento columna, bool descendente) {
  if (columna == ColumnaDeDocumento::kNumero) return PorClave(listado, descendente);
  listado.orden = OrdenDe(listado, tipo, columna);
  listado.orden_descendente = descendente;
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
    listing.palabras.push_back({"({articulo} OR {descrip} OR {unidad} OR {ubicacion})", word});
    listing.por_pasos = true;
  }
  return listing;
}

void Ordena(Listado& listado, ColumnaDeExistencia columna, bool descendente) {
  if (columna == ColumnaDeExistencia::kArticulo) return PorClave(listado, descendente);
  listado.orden_descendente = descendente;
  listado.uniones_del_orden = "LEFT JOIN existenciaalmacen e ON e.articulo = d.articulo";
  listado.segunda = "COALESCE(e.almacen, -1)";
  listado.columna_segunda = static_cast<int>(ColumnaDeExistencia::kAlmacen);
  switch (columna) {
    case ColumnaDeExistencia::kUnidad:
      listado.orden = PorTexto(listado, "d.unidad");
      break;
    case ColumnaDeExistencia::kUbicacion:
      listado.orden = PorTexto(listado, "d.ubicacion");
      break;
    case ColumnaDeExistencia::kAlmacen:
      listado.orden = listado.segunda;
      break;
    case ColumnaDeExistencia::kExistencia:
      listado.orden = "COALESCE(e.existencia, 0)";
      break;
    case ColumnaDeExistencia::kPorSurtir:
      listado.orden = "COALESCE(d.Por_Surt, 0)";
      break;
    default:
      listado.orden = PorTexto(listado, "d.descrip");
      break;
  }
}

}  // namespace tarvik::host
