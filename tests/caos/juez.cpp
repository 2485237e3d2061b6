#include "tests/caos/juez.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <initializer_list>

#include "data/number.h"
#include "data/value.h"
#include "tests/caos/tienda.h"

namespace tarvik::caos {

using host::Tipo;

namespace {

std::vector<std::string> Palabras(const std::string& linea) {
  std::vector<std::string> palabras;
  for (std::size_t desde = 0; desde <= linea.size();) {
    const std::size_t hasta = std::min(linea.find('\t', desde), linea.size());
    palabras.push_back(linea.substr(desde, hasta - desde));
    desde = hasta + 1;
  }
  return palabras;
}

std::int32_t Entero(const std::string& texto) { return static_cast<std::int32_t>(std::atol(texto.c_str())); }

std::string Dicho(const std::optional<double>& cantidad) {
  return cantidad ? data::PlainNumber(*cantidad) : "quitado";
}

// Every row that a statement gives is a fault.
void Faltas(data::EngineConnection& conexion, Fallas& fallas, const std::string& que,
            const std::string& sentencia) {
  const data::Rows filas = conexion.Run(sentencia, {});
  for (std::size_t i = 0; i < filas.rows.size() && i < 5; ++i) {
    std::string texto = que + ":";
    for (const auto& valor : filas.rows[i]) texto += " " + (valor.IsNull() ? "(nulo)" : data::ToText(valor));
    fallas.push_back(texto);
  }
  if (filas.rows.size() > 5) fallas.push_back(que + ": " + std::to_string(filas.rows.size()) + " en total");
}

}  // namespace

void Acuses::Oye(const std::string& linea) {
  const std::vector<std::string> p = Palabras(linea);
  if (p.size() < 3 || (p[1] != "Entrada" && p[1] != "Salida")) return;
  const Tipo tipo = host::TipoDe(p[1]);
  if (p[0] == "afectado") {
    afectados_.emplace(tipo, Entero(p[2]));
    return;
  }
  if (p.size() < 4) return;
  Renglon& renglon = renglones_[{tipo, Entero(p[3])}];
  if (p[0] == "renglon" && p.size() == 6) {
    renglon = {Entero(p[2]), p[4], std::atof(p[5].c_str()), {}};
  } else if (p[0] == "quitado") {
    renglon = {Entero(p[2]), renglon.articulo, std::nullopt, {}};
  } else if (p[0] == "quiere" && p.size() == 5) {
    renglon.o_bien.push_back(p[4] == "-" ? std::nullopt : std::optional(std::atof(p[4].c_str())));
  }
}

namespace {

void JuzgaRenglon(data::EngineConnection& conexion, const Acuses::Clave& clave, const Acuses::Renglon& dicho,
                  Fallas& fallas) {
  const bool entrada = clave.first == Tipo::Entrada;
  const std::string nombre = std::string(NombreDe(clave.first)) + " " + std::to_string(dicho.documento) +
                             ", renglón " + std::to_string(clave.second);
  const data::Rows filas =
      conexion.Run(entrada ? "SELECT entrada, articulo, cantidad FROM entpart WHERE id_entrada = ?"
                           : "SELECT salida, articulo, cantidad FROM salpart WHERE id_salida = ?",
                   {clave.second});
  std::optional<double> hay;
  if (!filas.rows.empty()) hay = data::ToNumber(filas.rows[0][2]);
  const auto es = [&](const std::optional<double>& cantidad) {
    return cantidad.has_value() == hay.has_value() && (!hay || std::abs(*cantidad - *hay) < 1e-9);
  };
  if (!es(dicho.cantidad) && std::none_of(dicho.o_bien.begin(), dicho.o_bien.end(), es)) {
    fallas.push_back(nombre + ": se acusó " + Dicho(dicho.cantidad) + " y hay " + Dicho(hay));
    return;
  }
  if (!hay) return;
  if (data::ToNumber(filas.rows[0][0]) != dicho.documento ||
      data::ToText(filas.rows[0][1]) != dicho.articulo) {
    fallas.push_back(nombre + ": se acusó " + dicho.articulo + " y hay " + data::ToText(filas.rows[0][1]) +
                     " del documento " + data::ToText(filas.rows[0][0]));
  }
}

// The lines that have moved, by their operation.
std::string Movidos(const std::string& columna, const std::string& operacion) {
  return "(SELECT " + columna + " FROM movsinv WHERE operacion = '" + operacion + "' AND " + columna +
         " IS NOT NULL)";
}

// Lines of posted documents without their movement: kind, document, line, operation that is missing. A line
// without an article has nothing to move.
std::string Faltantes() {
  const auto salidas = [](const std::string& operacion, const std::string& cuales) {
    return " UNION ALL SELECT 'Salida', s.salida, p.id_salida, '" + operacion +
           "' FROM salidas s INNER JOIN salpart p ON p.salida = s.salida WHERE s.estado = 'CO'" + cuales +
           " AND COALESCE(p.articulo, '') <> '' AND p.id_salida NOT IN " + Movidos("id_salida", operacion);
  };
  return "SELECT 'Entrada' AS tipo, e.entrada AS documento, p.id_entrada AS renglon, 'EN' AS operacion FROM "
         "entradas e INNER JOIN entpart p ON p.entrada = e.entrada WHERE e.estado = 'CO' AND "
         "COALESCE(p.articulo, "
         "'') <> '' AND p.id_entrada NOT IN " +
         Movidos("id_entrada", "EN") + salidas("SA", "") + salidas("T+", " AND s.estraspaso = 1");
}

// Pending documents with a line that has moved.
std::string Adelantados() {
  return "SELECT DISTINCT 'Entrada' AS tipo, e.entrada AS documento FROM entradas e INNER JOIN entpart p ON "
         "p.entrada "
         "= e.entrada WHERE e.estado <> 'CO' AND p.id_entrada IN " +
         Movidos("id_entrada", "EN") +
         " UNION ALL SELECT DISTINCT 'Salida', s.salida FROM salidas s INNER JOIN salpart p ON p.salida = "
         "s.salida "
         "WHERE s.estado <> 'CO' AND (p.id_salida IN " +
         Movidos("id_salida", "SA") + " OR p.id_salida IN " + Movidos("id_salida", "T+") + ")";
}

void JuzgaExistencias(data::EngineConnection& conexion, Fallas& fallas) {
  const std::string libro =
      "SELECT articulo, almacen, SUM(CASE WHEN ent_sal = 'E' THEN cantidad ELSE -cantidad END) AS suma FROM "
      "movsinv GROUP BY articulo, almacen";
  Faltas(conexion, fallas, "La existencia no es la suma de sus movimientos",
         "SELECT l.articulo, l.almacen, l.suma, x.existencia FROM (" + libro +
             ") l LEFT JOIN existenciaalmacen x ON x.articulo = l.articulo AND x.almacen = l.almacen WHERE "
             "ABS(COALESCE(x.existencia, 0) - l.suma) > 0.000001");
  Faltas(conexion, fallas, "Hay existencia sin movimientos",
         "SELECT x.articulo, x.almacen, x.existencia FROM existenciaalmacen x LEFT JOIN (" + libro +
             ") l ON l.articulo = x.articulo AND l.almacen = x.almacen WHERE l.articulo IS NULL AND "
             "ABS(COALESCE(x.existencia, 0)) > 0.000001");
  for (int almacen = 1; almacen <= kAlmacenes; ++almacen) {
    const std::string n = std::to_string(almacen);
    Faltas(conexion, fallas, "La columna ALM" + n + " no es la existencia",
           "SELECT p.articulo, p.ALM" + n +
               ", x.existencia FROM prods p LEFT JOIN existenciaalmacen x ON x.articulo = p.articulo AND "
               "x.almacen = " +
               n + " WHERE ABS(COALESCE(p.ALM" + n + ", 0) - COALESCE(x.existencia, 0)) > 0.000001");
  }
}

void JuzgaNumeros(data::EngineConnection& conexion, Fallas& fallas) {
  Faltas(conexion, fallas, "Un folio dos veces en una estación",
         "SELECT estacion, folio, COUNT(*) FROM salidas WHERE folio IS NOT NULL GROUP BY estacion, folio "
         "HAVING COUNT(*) > 1");
  Faltas(conexion, fallas, "Un número de traspaso dos veces",
         "SELECT traspaso, COUNT(*) FROM salidas WHERE traspaso > 0 GROUP BY traspaso HAVING COUNT(*) > 1");
  for (const auto& [tabla, columna, serie] : {std::tuple{"entradas", "entrada", "MovEnt"},
                                              {"salidas", "salida", "Salida"},
                                              {"entpart", "id_entrada", "entpart"},
                                              {"salpart", "id_salida", "salpart"}}) {
    const std::string de = std::string(columna) + " FROM " + tabla;
    Faltas(conexion, fallas, std::string("Un número menor que 1 en ") + tabla,
           "SELECT " + de + " WHERE " + columna + " < 1");
    Faltas(conexion, fallas, std::string("Un número sobre su serie en ") + tabla,
           "SELECT " + de + " WHERE " + columna + " > (SELECT MAX(valor) FROM series WHERE nombre = '" +
               serie + "')");
  }
}

// A movement is what its line and its header say.
void JuzgaDistintos(data::EngineConnection& conexion, Fallas& fallas) {
  const auto distinto = [](const char* lado, const char* numero, const char* encabezado, const char* partidas,
                           const char* operacion, const char* almacen) {
    const std::string n = numero;
    return "SELECT m." + ("id_" + n) +
           ", m.articulo, p.articulo, m.cantidad, p.cantidad, m.almacen FROM movsinv m "
           "LEFT JOIN " +
           partidas + " p ON p.id_" + n + " = m.id_" + n + " LEFT JOIN " + encabezado + " h ON h." + n +
           " = p." + n + " WHERE m.operacion = '" + operacion + "' AND (h." + n +
           " IS NULL OR m.articulo <> p.articulo OR ABS(m.cantidad - p.cantidad) > 0.000001 OR "
           "m.ent_sal <> '" +
           lado + "' OR m.almacen <> h." + almacen + ")";
  };
  Faltas(conexion, fallas, "Un movimiento distinto de su renglón",
         distinto("E", "entrada", "entradas", "entpart", "EN", "almacen"));
  Faltas(conexion, fallas, "Un movimiento distinto de su renglón",
         distinto("S", "salida", "salidas", "salpart", "SA", "almacen"));
  Faltas(conexion, fallas, "Una llegada distinta de su renglón",
         distinto("E", "salida", "salidas", "salpart", "T+", "almt"));
}

}  // namespace

Fallas JuzgaAcuses(data::EngineConnection& conexion, const Acuses& acuses) {
  Fallas fallas;
  for (const auto& [clave, dicho] : acuses.Renglones()) {
    // Only a change was asked for, of a line that another station made: nothing was acknowledged.
    if (dicho.articulo.empty()) continue;
    JuzgaRenglon(conexion, clave, dicho, fallas);
  }
  std::set<Acuses::Clave> faltos;
  for (const auto& fila : conexion.Run(Faltantes(), {}).rows) {
    faltos.emplace(host::TipoDe(data::ToText(fila[0])), static_cast<std::int32_t>(data::ToNumber(fila[1])));
  }
  for (const auto& [tipo, documento] : acuses.Afectados()) {
    const std::string nombre = std::string(NombreDe(tipo)) + " " + std::to_string(documento);
    const data::Rows estado =
        conexion.Run(tipo == Tipo::Entrada ? "SELECT estado FROM entradas WHERE entrada = ?"
                                           : "SELECT estado FROM salidas WHERE salida = ?",
                     {documento});
    if (estado.rows.empty() || data::ToText(estado.rows[0][0]) != "CO") {
      fallas.push_back(nombre + ": se acusó afectada y no lo está");
    }
    if (faltos.contains({tipo, documento}))
      fallas.push_back(nombre + ": se acusó afectada y le faltan movimientos");
  }
  return fallas;
}

Fallas JuzgaLibros(data::EngineConnection& conexion) {
  Fallas fallas;
  for (const char* columna : {"id_entrada", "id_salida"}) {
    const std::string c = columna;
    Faltas(conexion, fallas, "Un renglón se movió dos veces",
           "SELECT operacion, " + c + ", COUNT(*) FROM movsinv WHERE " + c + " >= 1 AND operacion " +
               (c == "id_entrada" ? "= 'EN'" : "IN ('SA', 'T+')") + " GROUP BY operacion, " + c +
               " HAVING COUNT(*) > 1");
  }
  Faltas(
      conexion, fallas, "Un renglón sin encabezado",
      "SELECT p.id_entrada FROM entpart p LEFT JOIN entradas e ON e.entrada = p.entrada WHERE e.entrada IS "
      "NULL UNION ALL SELECT p.id_salida FROM salpart p LEFT JOIN salidas s ON s.salida = p.salida WHERE "
      "s.salida IS NULL");
  JuzgaExistencias(conexion, fallas);
  JuzgaDistintos(conexion, fallas);
  JuzgaNumeros(conexion, fallas);
  if (conexion.Kind() == data::Dialect::Sqlite) {
    const std::string dice = data::ToText(conexion.Run("PRAGMA integrity_check", {}).rows.at(0).at(0));
    if (dice != "ok") fallas.push_back("El motor dice: " + dice);
  }
  return fallas;
}

Fallas JuzgaEnteros(data::EngineConnection& conexion) {
  Fallas fallas;
  Faltas(conexion, fallas, "A un documento afectado le falta un movimiento", Faltantes());
  Faltas(conexion, fallas, "Un documento pendiente tiene renglones movidos", Adelantados());
  Faltas(conexion, fallas, "Lo que salió de un traspaso no es lo que llegó",
         "SELECT s.salida, SUM(m.salio), SUM(m.llego) FROM (SELECT id_salida, SUM(CASE WHEN operacion = 'SA' "
         "THEN "
         "cantidad ELSE 0 END) AS salio, SUM(CASE WHEN operacion = 'T+' THEN cantidad ELSE 0 END) AS llego "
         "FROM movsinv "
         "WHERE operacion IN ('SA', 'T+') GROUP BY id_salida) m INNER JOIN salpart p ON p.id_salida = "
         "m.id_salida INNER "
         "JOIN salidas s ON s.salida = p.salida WHERE s.estraspaso = 1 GROUP BY s.salida HAVING "
         "ABS(SUM(m.salio) - "
         "SUM(m.llego)) > 0.000001");
  return fallas;
}

}  // namespace tarvik::caos
