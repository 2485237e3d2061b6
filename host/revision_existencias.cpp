// Stock against the ledger, and the warehouses' columns against stock: one reading of the whole ledger, in
// the engine, never row by row.
#include <cmath>
#include <map>

#include "data/error.h"
#include "data/text.h"
#include "host/revision_interno.h"

namespace tarvik::host::revision {
namespace {

// A movement that AbreSaldos has entered. It comes late and stands for what was there before all others.
constexpr std::string_view kApertura = "AP";

// What a movement changes. Rows of other programs may lack the direction; the suite's operations have one.
const std::string kCambio =
    "CASE WHEN ent_sal = 'E' THEN COALESCE(cantidad, 0) WHEN ent_sal = 'S' THEN -COALESCE(cantidad, 0) WHEN "
    "operacion IN ('EN', 'T+') THEN COALESCE(cantidad, 0) WHEN operacion = 'SA' THEN -COALESCE(cantidad, 0) "
    "ELSE "
    "0 END";

// Each movement of an article, with the warehouse as the stock has it. Adding up allows for a billionth of
// the larger of 1 and the amounts moved.
const std::string kLibro =
    "libro AS (SELECT id, articulo, COALESCE(almacen, 0) AS almacen, operacion, saldo, " + kCambio +
    " AS cambio, CASE WHEN COALESCE(id_entrada, 0) < 1 AND COALESCE(id_salida, 0) < 1 AND "
    "COALESCE(movimiento, 0) "
    "< 1 AND COALESCE(documento, '') = '' THEN 1 ELSE 0 END AS apertura FROM movsinv WHERE articulo IS NOT "
    "NULL "
    "AND " +
    std::string(kSinMarcas) + ")";

// By expressions on purpose: in the order of an index the embedded engine would look each row up by itself.
const std::string kSumas =
    "sumas AS (SELECT articulo, almacen, suma, 0.000000001 * CASE WHEN movido > 1 THEN movido ELSE 1 END AS "
    "margen "
    "FROM (SELECT articulo || '' AS articulo, COALESCE(almacen, 0) AS almacen, SUM(" +
    kCambio + ") AS suma, SUM(ABS(" + kCambio +
    ")) AS movido FROM movsinv WHERE COALESCE(articulo, '') <> '' AND " + std::string(kSinMarcas) +
    " GROUP BY articulo || '', COALESCE(almacen, 0)) t)";

// The pairs that differ and have movements.
const std::string kMalos =
    "malos AS MATERIALIZED (SELECT s.articulo, s.almacen, s.suma, s.margen, COALESCE(e.existencia, 0) AS "
    "existencia "
    "FROM sumas s LEFT JOIN existenciaalmacen e ON e.almacen = s.almacen AND e.articulo = s.articulo WHERE "
    "ABS(COALESCE(e.existencia, 0) - s.suma) > s.margen)";

struct Diferencia {
  std::string articulo;
  double almacen;
  double existencia;
  double suma;
  double margen;
};

std::vector<Diferencia> Diferencias(data::EngineConnection& connection) {
  const data::Rows rows = connection.Run("WITH " + kSumas + ", " + kMalos +
                                             " SELECT articulo, almacen, existencia, suma, margen FROM malos "
                                             "UNION ALL SELECT e.articulo, e.almacen, "
                                             "e.existencia, 0, 0.000000001 FROM existenciaalmacen e LEFT "
                                             "JOIN sumas s ON s.articulo = e.articulo AND "
                                             "s.almacen = e.almacen WHERE s.articulo IS NULL AND "
                                             "ABS(COALESCE(e.existencia, 0)) > 0.000000001 ORDER BY "
                                             "1, 2",
                                         {});
  std::vector<Diferencia> found;
  for (const auto& row : rows.rows) {
    found.push_back({data::ToText(row[0]), data::ToNumber(row[1]), data::ToNumber(row[2]),
                     data::ToNumber(row[3]), data::ToNumber(row[4])});
  }
  return found;
}

// What the ledger tells of one article and warehouse that differ.
struct Historia {
  bool abierta = false;              // its opening is in the ledger
  std::optional<std::int64_t> malo;  // the first movement that is wrong
};

using Par = std::pair<std::string, double>;

// A movement keeps the stock that it left. What that is apart from the movements added up so far must not
// change from one to the next; where the opening is in the ledger it is 0 from the start. Where the
// last of them agrees with the stock, those after it that keep none have not moved it.
const std::string kHistorias =
    ", pasos AS (SELECT l.articulo, l.almacen, l.id, l.saldo, b.margen, b.existencia, SUM(l.cambio) OVER w "
    "AS "
    "acumulado, ROW_NUMBER() OVER w AS n, COUNT(l.saldo) OVER w AS vistos, FIRST_VALUE(CASE WHEN l.apertura "
    "= 1 OR "
    "ABS(l.saldo - l.cambio) <= b.margen THEN 1 ELSE 0 END) OVER w AS abierta FROM libro l JOIN malos b ON "
    "b.articulo "
    "= l.articulo AND b.almacen = l.almacen WINDOW w AS (PARTITION BY l.articulo, l.almacen ORDER BY CASE "
    "WHEN "
    "l.operacion = '" +
    std::string(kApertura) +
    "' THEN 1 - l.apertura ELSE 1 END, l.id)), apartes AS (SELECT articulo, almacen, id, saldo, margen, "
    "existencia, "
    "vistos, abierta, saldo - acumulado AS aparte, LAG(saldo - acumulado) OVER (PARTITION BY articulo, "
    "almacen, CASE "
    "WHEN saldo IS NULL THEN 0 ELSE 1 END ORDER BY n) AS antes, MAX(vistos) OVER (PARTITION BY articulo, "
    "almacen) AS "
    "todos FROM pasos) SELECT articulo, almacen, MAX(abierta) AS abierta, MIN(CASE WHEN saldo IS NOT NULL "
    "AND "
    "ABS(aparte - CASE WHEN antes IS NOT NULL THEN antes WHEN abierta = 1 THEN 0 ELSE aparte END) > margen "
    "THEN id "
    "END) AS malo, MIN(CASE WHEN saldo IS NULL AND vistos > 0 AND vistos = todos THEN id END) AS mudo, "
    "MAX(CASE WHEN "
    "saldo IS NOT NULL AND vistos = todos THEN ABS(saldo - existencia) - margen END) AS lejos FROM apartes "
    "GROUP BY "
    "articulo, almacen";

std::map<Par, Historia> Historias(data::EngineConnection& connection) {
  const data::Rows rows = connection.Run("WITH " + kLibro + ", " + kSumas + ", " + kMalos + kHistorias, {});
  std::map<Par, Historia> found;
  for (const auto& row : rows.rows) {
    Historia& story = found[{data::ToText(row[0]), data::ToNumber(row[1])}];
    story.abierta = data::IsNonZero(row[2]);
    if (!row[3].IsNull()) {
      story.malo = Entero(row[3]);
    } else if (!row[4].IsNull() && data::ToNumber(row[5]) <= 0) {
      story.malo = Entero(row[4]);
    }
  }
  return found;
}

Observacion Dicha(const Diferencia& difference, const Historia& story) {
  Observacion which{.clase = "existencia",
                    .renglon = story.malo,
                    .articulo = difference.articulo,
                    .almacen = difference.almacen,
                    .reparable = story.abierta};
  which.texto = "La existencia de " + difference.articulo + " en el almacén " + Cifra(difference.almacen) +
                " es " + Cifra(difference.existencia) + " y sus movimientos suman " + Cifra(difference.suma);
  if (story.malo) which.texto += "; difieren desde el movimiento " + std::to_string(*story.malo);
  which.texto += story.abierta ? ". Puede ponerse la existencia en lo que suman sus movimientos"
                               : ". Su saldo de apertura no consta en los movimientos: la diferencia (" +
                                     Cifra(difference.existencia - difference.suma) +
                                     ") puede asentarse como movimiento de apertura";
  return which;
}

// The article's own column for a warehouse; empty if it has none.
std::string ColumnaDe(const std::vector<std::string>& columns, double warehouse) {
  if (warehouse != std::trunc(warehouse) || std::abs(warehouse) > 1e9) return {};
  std::string name = "alm" + std::to_string(static_cast<long>(warehouse));
  for (const std::string& column : columns) {
    if (column == name) return name;
  }
  return {};
}

// The stock as it is, its row held to the end of the transaction on a server.
std::optional<double> Existencia(data::EngineConnection& connection, const Observacion& which) {
  const std::string hold = connection.Kind() == data::Dialect::Postgresql ? " FOR UPDATE" : "";
  const data::Rows rows =
      connection.Run("SELECT existencia FROM existenciaalmacen WHERE almacen = ? AND articulo = ?" + hold,
                     {*which.almacen, *which.articulo});
  if (rows.rows.empty()) return {};
  return data::ToNumber(rows.rows[0][0]);
}

// The balances that the movements keep, as they add up: the next damage is then named where it is, and not
// where this one was.
void PonSaldos(data::EngineConnection& connection, const Observacion& which) {
  const data::Rows rows = connection.Run(
      "WITH " + kLibro + " SELECT id, saldo, SUM(cambio) OVER (ORDER BY CASE WHEN operacion = '" +
          std::string(kApertura) +
          "' THEN 1 - apertura ELSE 1 END, id) AS acumulado FROM libro WHERE articulo = ? AND almacen = ? "
          "ORDER "
          "BY id",
      {*which.articulo, *which.almacen});
  for (const auto& row : rows.rows) {
    if (row[1].IsNull()) continue;
    const double sum = data::ParseNumber(Cifra(data::ToNumber(row[2]))).value_or(0);
    if (data::ToNumber(row[1]) == sum) continue;
    connection.Run("UPDATE movsinv SET saldo = ? WHERE id = ?", {sum, row[0]});
  }
}

void PonColumna(data::EngineConnection& connection, const Observacion& which, double stock) {
  const std::string column = ColumnaDe(connection.Columns("prods"), *which.almacen);
  if (column.empty()) return;
  connection.Run("UPDATE prods SET " + column + " = ? WHERE articulo = ?", {stock, *which.articulo});
}

}  // namespace

void Existencias(const Revisor& revisor, Observaciones& found) {
  const std::vector<Diferencia> differences = Diferencias(revisor.conexion);
  if (differences.empty()) return;
  const std::map<Par, Historia> stories = Historias(revisor.conexion);
  for (const Diferencia& difference : differences) {
    const auto story = stories.find({difference.articulo, difference.almacen});
    found.push_back(Dicha(difference, story == stories.end() ? Historia{} : story->second));
  }
}

void ReparaExistencia(const Revisor& revisor, const Observacion& which) {
  data::EngineConnection& connection = revisor.conexion;
  data::Transaction whole(connection);
  connection.Run(
      "INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (?, ?, 0) ON CONFLICT (almacen, "
      "articulo) DO NOTHING",
      {*which.almacen, *which.articulo});
  const double before = Existencia(connection, which).value_or(0);
  const data::Rows rows =
      connection.Run("SELECT SUM(" + kCambio +
                         ") AS suma FROM movsinv WHERE articulo = ? AND COALESCE(almacen, 0) = "
                         "? AND " +
                         std::string(kSinMarcas),
                     {*which.articulo, *which.almacen});
  // Kept as posting keeps it.
  const double sum = data::ParseNumber(Cifra(data::ToNumber(rows.rows.at(0).at(0)))).value_or(0);
  connection.Run("UPDATE existenciaalmacen SET existencia = ? WHERE almacen = ? AND articulo = ?",
                 {sum, *which.almacen, *which.articulo});
  PonColumna(connection, which, sum);
  PonSaldos(connection, which);
  AnotaReparacion(revisor, which,
                  "La existencia de " + *which.articulo + " en el almacén " + Cifra(*which.almacen) +
                      " pasó de " + Cifra(before) + " a " + Cifra(sum));
  whole.Commit();
}

void Columnas(const Revisor& revisor, Observaciones& found) {
  std::string text;
  for (const std::string& column : revisor.conexion.Columns("prods")) {
    const auto warehouse = column.starts_with("alm") ? data::ParseNumber(column.substr(3)) : std::nullopt;
    if (!warehouse || ColumnaDe({column}, *warehouse) != column) continue;
    const std::string own = "COALESCE(p." + column + ", 0)";
    if (!text.empty()) text += " UNION ALL ";
    text +=
        "SELECT " + Cifra(*warehouse) + " AS almacen, p.articulo, " + own +
        " AS columna, COALESCE(e.existencia, 0) AS existencia FROM prods p LEFT JOIN existenciaalmacen e ON "
        "e.almacen = " +
        Cifra(*warehouse) + " AND e.articulo = p.articulo WHERE ABS(" + own +
        " - COALESCE(e.existencia, 0)) > 0.000000001 * CASE WHEN ABS(e.existencia) > 1 THEN "
        "ABS(e.existencia) "
        "ELSE 1 END";
  }
  if (text.empty()) return;
  const data::Rows rows = revisor.conexion.Run(text + " ORDER BY 2, 1", {});
  for (const auto& row : rows.rows) {
    Observacion which{.clase = "columna",
                      .articulo = data::ToText(row[1]),
                      .almacen = data::ToNumber(row[0]),
                      .reparable = true};
    which.texto = "La columna ALM" + Cifra(*which.almacen) + " del artículo " + *which.articulo + " dice " +
                  Cifra(data::ToNumber(row[2])) + " y su existencia es " + Cifra(data::ToNumber(row[3])) +
                  ". Puede ponerse la columna en lo que dice la existencia";
    found.push_back(std::move(which));
  }
}

void ReparaColumna(const Revisor& revisor, const Observacion& which) {
  data::Transaction whole(revisor.conexion);
  const double stock = Existencia(revisor.conexion, which).value_or(0);
  PonColumna(revisor.conexion, which, stock);
  AnotaReparacion(revisor, which,
                  "La columna ALM" + Cifra(*which.almacen) + " del artículo " + *which.articulo +
                      " quedó en su existencia, " + Cifra(stock));
  whole.Commit();
}

}  // namespace tarvik::host::revision

namespace tarvik::host {

using namespace revision;

std::vector<Observacion> AbreSaldos(const Revisor& revisor) {
  data::EngineConnection& connection = revisor.conexion;
  Observaciones entered;
  data::Transaction whole(connection);
  // Of two who do it at once the second one sees what the first has entered.
  connection.Run(
      "INSERT INTO series (nombre, valor) VALUES ('Apertura', 0) ON CONFLICT (nombre) DO UPDATE SET valor = "
      "series.valor",
      {});
  const std::vector<Diferencia> differences = Diferencias(connection);
  const std::map<Par, Historia> stories =
      differences.empty() ? std::map<Par, Historia>{} : Historias(connection);
  for (const Diferencia& difference : differences) {
    const auto story = stories.find({difference.articulo, difference.almacen});
    if (story != stories.end() && story->second.abierta) continue;
    const double opening = difference.existencia - difference.suma;
    // Dated like the first of the movements that it precedes. It keeps no balance: the stock of its day
    // is unknown.
    connection.Run(
        "INSERT INTO movsinv (operacion, ent_sal, articulo, almacen, cantidad, f_movim, cerrado, tipo_doc, "
        "Observ, "
        "usuario, usuhora, importe, Precio) SELECT ?, ?, ?, ?, ?, COALESCE(MIN(f_movim), ?), 0, ?, ?, ?, ?, "
        "0, 0 "
        "FROM movsinv WHERE articulo = ? AND COALESCE(almacen, 0) = ? AND " +
            std::string(kSinMarcas),
        {std::string(kApertura), opening > 0 ? "E" : "S", difference.articulo, difference.almacen,
         std::abs(opening), revisor.ahora.date, std::string(kApertura), "Saldo de apertura", revisor.usuario,
         revisor.ahora.time.Text(), difference.articulo, difference.almacen});
    Observacion which{.clase = "existencia",
                      .articulo = difference.articulo,
                      .almacen = difference.almacen,
                      .reparable = true,
                      .reparado = true};
    which.texto = "Se asentó el saldo de apertura de " + difference.articulo + " en el almacén " +
                  Cifra(difference.almacen) + ": " + Cifra(opening);
    AnotaReparacion(revisor, which, which.texto);
    entered.push_back(std::move(which));
  }
  whole.Commit();
  return entered;
}

}  // namespace tarvik::host
