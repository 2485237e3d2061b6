// Documents against the ledger: what is missing of one, what moved twice, wrongly, or without a document. A
// line and its movement are tied by the line's number and the operation.
#include "data/error.h"
#include "host/a_medias.h"
#include "host/revision_interno.h"
#include "wizard/modos.h"

namespace tarvik::host::revision {
namespace {

void Di(const DocumentoAMedias& partial, Observaciones& found) {
  const std::string document = std::string(NombreDe(partial.tipo)) + " " + std::to_string(partial.documento);
  const std::string of = " de " + std::to_string(partial.renglones);
  const auto missing = static_cast<int>(partial.faltan.size());
  Observacion which{.tipo = std::string(NombreDe(partial.tipo)), .documento = partial.documento};
  if (partial.estado == estado::kAfectado) {
    which.clase = "a medias";
    which.reparable = true;
    which.texto = document + ": afectada a medias, " + std::to_string(partial.renglones - missing) + of +
                  " renglones; falta desde el renglón " + std::to_string(partial.faltan.front()) +
                  ". Puede completarse";
  } else {
    which.clase = "adelantado";
    which.texto = document + ": está pendiente y ya se movieron renglones; faltan " +
                  std::to_string(missing) + of + ". Ábrala y finalícela: se moverán sólo los que faltan";
  }
  found.push_back(std::move(which));
}

}  // namespace

void AMedias(const Revisor& revisor, Observaciones& found) {
  for (const DocumentoAMedias& partial : LeeAMedias(revisor.conexion)) Di(partial, found);
}

void ReparaAMedias(const Revisor& revisor, const Observacion& which) {
  if (!revisor.completa) throw data::Error("Aquí no se pueden completar documentos");
  const Retenido document = *RetenidoDe(which);
  const int made = revisor.completa(document.tipo, document.numero);
  AnotaReparacion(revisor, which, "Se completó " + LaDe(document) + " con " + Movimientos(made));
}

void Dobles(const Revisor& revisor, Observaciones& found) {
  for (const Tipo tipo : kTipos) {
    const data::Rows rows = revisor.conexion.Run(
        ConTablas(
            tipo,
            "SELECT t.linea, t.operacion, t.veces, t.primero, t.ultimo, m.articulo, m.almacen, p.{numero} AS "
            "documento "
            "FROM (SELECT {id} AS linea, operacion, COUNT(*) AS veces, MIN(id) AS primero, MAX(id) AS ultimo "
            "FROM "
            "movsinv WHERE {id} >= 1 AND operacion IN ({operaciones}) AND " +
                std::string(kSinMarcas) +
                " GROUP BY {id}, operacion HAVING COUNT(*) > 1) t JOIN movsinv m ON m.id = t.ultimo LEFT "
                "JOIN "
                "{renglones} p ON p.{id} = t.linea ORDER BY t.linea, t.operacion"),
        {});
    for (const auto& row : rows.rows) {
      Observacion which{.clase = "doble",
                        .tipo = std::string(NombreDe(tipo)),
                        .renglon = Entero(row[0]),
                        .articulo = data::ToText(row[5]),
                        .almacen = data::ToNumber(row[6])};
      if (!row[7].IsNull()) which.documento = Documento(row[7]);
      which.texto = "El renglón " + std::to_string(*which.renglon) + " (" + *which.articulo + ") se movió " +
                    std::to_string(Entero(row[2])) + " veces con la operación " + data::ToText(row[1]) +
                    ": del movimiento " + std::to_string(Entero(row[3])) + " al " +
                    std::to_string(Entero(row[4])) +
                    ". Compruebe lo que hay y haga el documento contrario por lo que sobra";
      found.push_back(std::move(which));
    }
  }
}

namespace {

// How a movement and its line differ, for a person.
std::string EnQue(const std::vector<data::Value>& row) {
  std::string text;
  const auto add = [&](const std::string& what) { text += (text.empty() ? "" : ", ") + what; };
  if (data::ToText(row[4]) != data::ToText(row[9])) {
    add("artículo " + data::ToText(row[4]) + " y el renglón " + data::ToText(row[9]));
  }
  const double moved = data::ToNumber(row[5]);
  const double wanted = data::ToNumber(row[10]);
  if (moved != wanted) add("cantidad " + Cifra(moved) + " y el renglón " + Cifra(wanted));
  if (data::ToNumber(row[6]) != data::ToNumber(row[12])) {
    add("almacén " + Cifra(data::ToNumber(row[6])) + " y el documento " + Cifra(data::ToNumber(row[12])));
  }
  return text;
}

// A movement that disagrees with its line or document.
Observacion Desdicho(Tipo tipo, const std::vector<data::Value>& row) {
  Observacion which{.clase = "distinto",
                    .tipo = std::string(NombreDe(tipo)),
                    .renglon = Entero(row[2]),
                    .articulo = data::ToText(row[4]),
                    .almacen = data::ToNumber(row[6])};
  const std::string movement = "El movimiento " + std::to_string(Entero(row[0])) + " (" +
                               data::ToText(row[1]) + ", " + *which.articulo + ", " +
                               Cifra(data::ToNumber(row[5])) + ")";
  const bool issue = tipo == Tipo::Salida;
  const bool line = !row[7].IsNull();
  const bool header = !row[11].IsNull();
  if (line) which.documento = Documento(row[8]);
  if (line && header) {
    which.texto = movement + " no es como su renglón " + std::to_string(*which.renglon) + " de la " +
                  (issue ? "salida " : "entrada ") + std::to_string(*which.documento) + ": lleva " +
                  EnQue(row) + ". Corrija la existencia con un documento por la diferencia";
    return which;
  }
  which.clase = "huerfano";
  // A goods-in movement names its document by itself; a goods-out one its printed number.
  if (!line && !issue && !row[3].IsNull()) which.documento = Documento(row[3]);
  which.texto = movement +
                (line ? " es de un documento que no existe: " : " es de un renglón que no existe: ") +
                (line ? std::to_string(which.documento.value_or(0)) : std::to_string(*which.renglon)) +
                (row[3].IsNull() ? "" : (issue ? ", folio " : ", entrada ") + data::ToText(row[3])) +
                ". La bitácora dice si el documento se eliminó";
  return which;
}

}  // namespace

void Distintos(const Revisor& revisor, Observaciones& found) {
  for (const Tipo tipo : kTipos) {
    const bool issue = tipo == Tipo::Salida;
    const std::string warehouse =
        issue ? "(CASE WHEN m.operacion = 'T+' THEN d.almt ELSE d.almacen END)" : "d.almacen";
    const data::Rows rows = revisor.conexion.Run(
        ConTablas(tipo,
                  "WITH m AS (SELECT id, operacion, {id} AS linea, movimiento, articulo, "
                  "cantidad, almacen FROM movsinv WHERE "
                  "{id} >= 1 AND operacion IN ({operaciones}) AND " +
                      std::string(kSinMarcas) +
                      ") SELECT m.id, m.operacion, m.linea, m.movimiento, m.articulo, "
                      "m.cantidad, m.almacen, p.{id} AS "
                      "renglon, p.{numero} AS documento, p.articulo AS suyo, p.cantidad AS "
                      "suya, d.{numero} AS encabezado, " +
                      warehouse +
                      " AS su_almacen FROM m LEFT JOIN {renglones} p ON p.{id} = m.linea LEFT "
                      "JOIN {encabezado} d ON "
                      "d.{numero} = p.{numero} WHERE p.{id} IS NULL OR d.{numero} IS NULL OR "
                      "COALESCE(m.articulo, '') <> "
                      "COALESCE(p.articulo, '') OR ABS(COALESCE(m.cantidad, 0) - "
                      "COALESCE(p.cantidad, 0)) > 0.000000001 * "
                      "CASE WHEN ABS(p.cantidad) > 1 THEN ABS(p.cantidad) ELSE 1 END OR "
                      "COALESCE(m.almacen, 0) <> COALESCE(" +
                      warehouse + " + 0, 0) ORDER BY m.id"),  // one that was left empty is a text in a file
        {});
    for (const auto& row : rows.rows) found.push_back(Desdicho(tipo, row));
  }
}

// Movements of a deleted document that name no line.
void SinDocumento(const Revisor& revisor, Observaciones& found) {
  for (const Tipo tipo : kTipos) {
    const data::Rows rows = revisor.conexion.Run(
        ConTablas(
            tipo,
            "SELECT m.id, m.operacion, m.movimiento, m.articulo, m.cantidad, m.almacen FROM movsinv m LEFT "
            "JOIN {encabezado} d ON d.{folio} = m.movimiento WHERE (m.{id} IS NULL OR m.{id} < 1) AND "
            "m.operacion IN ({operaciones}) AND m.movimiento >= 1 AND d.{numero} IS NULL AND (m.claveadd "
            "IS NULL OR m.claveadd <> '999' OR m.almacen IS NOT NULL) ORDER BY m.id"),
        {});
    for (const auto& row : rows.rows) {
      Observacion which{.clase = "huerfano",
                        .tipo = std::string(NombreDe(tipo)),
                        .articulo = data::ToText(row[3]),
                        .almacen = data::ToNumber(row[5])};
      if (tipo == Tipo::Entrada) which.documento = Documento(row[2]);
      which.texto = "El movimiento " + std::to_string(Entero(row[0])) + " (" + data::ToText(row[1]) + ", " +
                    *which.articulo + ", " + Cifra(data::ToNumber(row[4])) +
                    ") es de un documento que no existe: " + (tipo == Tipo::Entrada ? "entrada " : "folio ") +
                    data::ToText(row[2]) + ". La bitácora dice si el documento se eliminó";
      found.push_back(std::move(which));
    }
  }
}

void Sueltos(const Revisor& revisor, Observaciones& found) {
  for (const Tipo tipo : kTipos) {
    const data::Rows rows =
        revisor.conexion.Run(ConTablas(tipo,
                                       "SELECT p.{id} AS linea, p.{numero} AS documento, p.articulo FROM "
                                       "{renglones} p LEFT JOIN {encabezado} d ON "
                                       "d.{numero} = p.{numero} WHERE d.{numero} IS NULL ORDER BY p.{id}"),
                             {});
    for (const auto& row : rows.rows) {
      Observacion which{.clase = "suelto",
                        .tipo = std::string(NombreDe(tipo)),
                        .renglon = Entero(row[0]),
                        .articulo = data::ToText(row[2])};
      if (!row[1].IsNull()) which.documento = Documento(row[1]);
      which.texto = "El renglón " + std::to_string(*which.renglon) + " (" + *which.articulo + ") es de la " +
                    (tipo == Tipo::Salida ? "salida " : "entrada ") +
                    (row[1].IsNull() ? "(ninguna)" : data::ToText(row[1])) +
                    ", que no existe. Ningún documento lo muestra ni lo mueve";
      found.push_back(std::move(which));
    }
  }
}

}  // namespace tarvik::host::revision
