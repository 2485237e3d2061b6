// Rows of other programs may lack the direction of a movement; the suite's operations have one by themselves.
#include "host/kardex.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "data/number.h"
#include "host/listados.h"

namespace tarvik::host {
namespace {

const std::string kCambio =
    "CASE WHEN {d}ent_sal = 'E' THEN COALESCE({d}cantidad, 0) WHEN {d}ent_sal = 'S' THEN "
    "-COALESCE({d}cantidad, 0) WHEN {d}operacion IN ('EN', 'T+') THEN COALESCE({d}cantidad, 0) WHEN "
    "{d}operacion = 'SA' THEN -COALESCE({d}cantidad, 0) ELSE 0 END";

std::string Cambio(const std::string& row) {
  std::string text = kCambio;
  for (std::size_t at = text.find("{d}"); at != std::string::npos; at = text.find("{d}"))
    text.replace(at, 3, row);
  return text;
}

// At 15 significant digits, as stock is kept, so that what is added up here reads as what was stored.
double AQuinceCifras(double number) { return data::ParseNumber(data::PlainNumber(number)).value_or(number); }

bool EntraEn(const std::optional<data::Date>& date, const FiltroDeKardex& filter) {
  if (filter.desde && (!date || *date < *filter.desde)) return false;
  return !filter.hasta || (date && *date <= *filter.hasta);
}

}  // namespace

Listado ListadoDeMovimientos(const FiltroDeKardex& filtro) {
  Listado listing;
  listing.tabla = "movsinv";
  listing.clave = "id";
  listing.descendente = true;
  listing.con_numero = true;
  // A goods-out's folio is no number of a document: its line is asked.
  listing.columnas =
      "d.id, d.f_movim, d.usuhora, d.operacion, d.movimiento, d.tipo_doc, c.descrip, " + Cambio("d.") +
      " AS cambio, d.Precio, d.importe, d.usuario, CASE WHEN d.operacion = 'EN' THEN 'Entrada' WHEN "
      "d.operacion IN ('SA', 'T+') THEN 'Salida' END AS clase, CASE WHEN d.operacion = 'EN' THEN pe.entrada "
      "ELSE ps.salida END AS numero";
  listing.uniones =
      "LEFT JOIN tipominv c ON c.tipo_movim = d.tipo_doc LEFT JOIN entpart pe ON pe.id_entrada = "
      "d.id_entrada "
      "LEFT JOIN salpart ps ON ps.id_salida = d.id_salida";
  listing.donde = "articulo = ? AND almacen = ?";
  listing.valores = {filtro.articulo, filtro.almacen};
  if (filtro.desde) {
    listing.donde += " AND f_movim >= ?";
    listing.valores.emplace_back(*filtro.desde);
  }
  if (filtro.hasta) {
    listing.donde += " AND f_movim < ?";
    listing.valores.emplace_back(filtro.hasta->PlusDays(1));
  }
  listing.por_donde = true;
  return listing;
}

std::optional<Retenido> DocumentoDelMovimiento(const std::vector<data::Value>& renglon) {
  using Columna = ColumnaDeMovimiento;
  const auto type = TipoLlamado(data::ToText(De(renglon, Columna::kTipo)));
  const auto number = static_cast<std::int32_t>(data::ToNumber(De(renglon, Columna::kNumero)));
  if (!type || number < 1) return {};
  return Retenido{*type, number};
}

bool LecturaDeKardex::Paso(data::EngineConnection& connection) {
  if (!despues_) {
    const auto stock = connection.Run(
        "SELECT existencia FROM existenciaalmacen WHERE almacen = ? AND articulo = ?", {almacen_, articulo_});
    despues_ = stock.rows.empty() ? 0 : data::ToNumber(stock.rows[0][0]);
  }
  // "+id": by the index on article and warehouse, not through the whole ledger.
  std::string text = "SELECT id, f_movim, " + Cambio("") +
                     " AS cambio, saldo FROM movsinv WHERE articulo = ? AND almacen = ?";
  std::vector<data::Value> values = {articulo_, almacen_};
  if (antes_de_ != 0) {
    text += " AND +id < ?";
    values.emplace_back(antes_de_);
  }
  const auto found = connection.Run(text + " ORDER BY +id DESC LIMIT " + std::to_string(kPaso), values);
  for (const auto& row : found.rows) {
    PuntoDeKardex point;
    point.id = static_cast<std::int64_t>(data::ToNumber(row[0]));
    point.fecha = data::ToDate(row[1]);
    point.cambio = data::ToNumber(row[2]);
    point.saldo = AQuinceCifras(row[3].IsNull() ? *despues_ : data::ToNumber(row[3]));
    despues_ = point.saldo - point.cambio;
    antes_de_ = point.id;
    puntos_.push_back(point);
  }
  return static_cast<int>(found.rows.size()) == kPaso;
}

std::vector<PuntoDeKardex> LecturaDeKardex::Puntos() && {
  std::reverse(puntos_.begin(), puntos_.end());
  return std::move(puntos_);
}

SumasDeKardex SumaKardex(const std::vector<PuntoDeKardex>& puntos, const FiltroDeKardex& filtro) {
  SumasDeKardex sums;
  for (const PuntoDeKardex& point : puntos) {
    if (!EntraEn(point.fecha, filtro)) continue;
    ++sums.cuantos;
    (point.cambio >= 0 ? sums.entra : sums.sale) += std::abs(point.cambio);
  }
  return sums;
}

std::vector<DiaDeKardex> ExistenciaPorDia(const std::vector<PuntoDeKardex>& puntos) {
  if (puntos.empty()) return {};
  double stock = puntos.back().saldo;
  std::map<data::Date, double> changes;
  for (const PuntoDeKardex& point : puntos) {
    if (!point.fecha) continue;
    changes[*point.fecha] += point.cambio;
    stock -= point.cambio;
  }
  std::vector<DiaDeKardex> days;
  for (const auto& [date, change] : changes) {
    stock = AQuinceCifras(stock + change);
    days.push_back({date, stock});
  }
  return days;
}

}  // namespace tarvik::host
