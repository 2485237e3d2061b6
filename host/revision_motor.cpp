// What the engine's own checks say of the base, in its own words.
#include "data/error.h"
#include "data/schema.h"
#include "host/revision_interno.h"

namespace tarvik::host::revision {
namespace {

void Di(const std::string& text, Observaciones& found) { found.push_back({.clase = "motor", .texto = text}); }

constexpr const char* kRespaldo = ". Haga una copia de la base como está y vuelva al último respaldo sano";

void Archivo(data::EngineConnection& connection, bool quick, Observaciones& found) {
  for (const auto& row : connection.Run(quick ? "PRAGMA quick_check" : "PRAGMA integrity_check", {}).rows) {
    const std::string word = data::ToText(row.at(0));
    if (word != "ok") Di("El motor dice: " + word + kRespaldo, found);
  }
  if (quick) return;
  for (const auto& row : connection.Run("PRAGMA foreign_key_check", {}).rows) {
    const std::string table = data::ToText(row.at(0));
    // Lines without a header are reported one by one, elsewhere.
    if (table == TablasDe(Tipo::Entrada).partidas || table == TablasDe(Tipo::Salida).partidas) continue;
    Di("El motor dice: un registro de " + table + " depende de otro de " + data::ToText(row.at(2)) +
           " que no existe",
       found);
  }
}

void Servidor(data::EngineConnection& connection, bool quick, Observaciones& found) {
  const std::string ours =
      " AND c.relnamespace = (SELECT v.relnamespace FROM pg_catalog.pg_class v WHERE v.oid = "
      "to_regclass('version_esquema')) ORDER BY 1, 2";
  for (const auto& row :
       connection
           .Run(
               "SELECT c.relname, t.relname FROM pg_catalog.pg_index i JOIN pg_catalog.pg_class c ON c.oid = "
               "i.indexrelid JOIN pg_catalog.pg_class t ON t.oid = i.indrelid WHERE NOT (i.indisvalid AND "
               "i.indisready)" +
                   ours,
               {})
           .rows) {
    Di("El índice " + data::ToText(row[0]) + " de la tabla " + data::ToText(row[1]) +
           " no es válido. Que el dueño de la base lo reconstruya (REINDEX)",
       found);
  }
  for (const auto& row : connection
                             .Run("SELECT k.conname, c.relname FROM pg_catalog.pg_constraint k JOIN "
                                  "pg_catalog.pg_class c ON c.oid = "
                                  "k.conrelid WHERE NOT k.convalidated" +
                                      ours,
                                  {})
                             .rows) {
    Di("La regla " + data::ToText(row[0]) + " de la tabla " + data::ToText(row[1]) +
           " no se ha comprobado con todos los registros",
       found);
  }
  for (const data::Table& table : data::Schema()) {
    if (quick) break;
    try {
      connection.Run("SELECT COUNT(*) AS cuantos FROM " + std::string(table.name), {});
    } catch (const data::Error& error) {
      if (error.Passing()) throw;
      Di("No se puede leer la tabla " + std::string(table.name) + ": " + error.what() + kRespaldo, found);
    }
  }
}

}  // namespace

void Motor(const Revisor& revisor, bool rapida, Observaciones& found) {
  if (revisor.conexion.Kind() == data::Dialect::Sqlite) {
    Archivo(revisor.conexion, rapida, found);
  } else {
    Servidor(revisor.conexion, rapida, found);
  }
}

}  // namespace tarvik::host::revision
