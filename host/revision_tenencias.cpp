// What is held by nobody alive, and letting go of it.
#include <map>

#include "data/error.h"
#include "host/revision_interno.h"

namespace tarvik::host::revision {
namespace {

struct Tenencia {
  std::int64_t id;
  std::string tipo;
  std::int32_t documento;
  std::string quien;  // for a person
  bool viva;
};

std::vector<Tenencia> Todas(data::EngineConnection& connection) {
  std::map<std::int64_t, bool> lives;
  std::vector<Tenencia> found;
  const data::Rows rows = connection.Run(
      "SELECT id, tipo, documento, usuario, estacion, desde, vida FROM tenencias ORDER BY tipo, documento, "
      "id",
      {});
  for (const auto& row : rows.rows) {
    if (!TipoLlamado(data::ToText(row[1]))) continue;  // of no document
    const std::int64_t life = Entero(row[6]);
    if (!lives.contains(life)) lives[life] = life >= 1 && connection.Lives(life);
    found.push_back(
        {Entero(row[0]), data::ToText(row[1]), Documento(row[2]),
         data::ToText(row[3]) + " en la estación " + data::ToText(row[4]) + " desde " + data::ToText(row[5]),
         lives[life]});
  }
  return found;
}

bool SoloTarvik(data::EngineConnection& connection) {
  const data::Rows rows =
      connection.Run("SELECT valor FROM parametros WHERE lower(nombre) = 'solotarvik'", {});
  return !rows.rows.empty() && data::ToNumber(rows.rows[0][0]) == 1;
}

}  // namespace

void Tenencias(const Revisor& revisor, Observaciones& found) {
  for (const Tenencia& lease : Todas(revisor.conexion)) {
    if (lease.viva) continue;
    found.push_back({.clase = "tenencia",
                     .tipo = lease.tipo,
                     .documento = lease.documento,
                     .texto = lease.tipo + " " + std::to_string(lease.documento) + ": la tomó " +
                              lease.quien + ", y ese programa ya no está. Puede liberarse",
                     .reparable = true});
  }
  if (!SoloTarvik(revisor.conexion)) return;
  for (const Tipo tipo : kTipos) {
    const data::Rows rows =
        revisor.conexion.Run(De(tipo,
                                "SELECT d.{numero} AS numero, d.usuario FROM {encabezado} d LEFT JOIN "
                                "(SELECT DISTINCT documento FROM "
                                "tenencias WHERE tipo = ?) t ON t.documento = d.{numero} WHERE d.ocupado <> "
                                "0 AND t.documento IS NULL ORDER "
                                "BY d.{numero}"),
                             {std::string(NombreDe(tipo))});
    for (const auto& row : rows.rows) {
      found.push_back({.clase = "tenencia",
                       .tipo = std::string(NombreDe(tipo)),
                       .documento = Documento(row[0]),
                       .texto = std::string(NombreDe(tipo)) + " " + data::ToText(row[0]) +
                                ": está marcada como ocupada y nadie la tiene" +
                                (row[1].IsNull() ? "" : "; la guardó " + data::ToText(row[1])) +
                                ". Puede liberarse",
                       .reparable = true});
    }
  }
}

void ReparaTenencia(const Revisor& revisor, const Observacion& which) {
  data::EngineConnection& connection = revisor.conexion;
  const Tipo tipo = *TipoLlamado(*which.tipo);
  data::Transaction whole(connection);
  bool held = false;
  for (const Tenencia& lease : Todas(connection)) {
    if (lease.tipo != *which.tipo || lease.documento != *which.documento) continue;
    held = held || lease.viva;
    if (!lease.viva) connection.Run("DELETE FROM tenencias WHERE id = ?", {lease.id});
  }
  // Another screen may hold it too, and its flag with it.
  if (!held) {
    connection.Run(De(tipo, "UPDATE {encabezado} SET ocupado = 0 WHERE {numero} = ?"), {*which.documento});
  }
  AnotaReparacion(revisor, which,
                  "Se liberó la " + Llamado(tipo, *which.documento) + ": su programa ya no estaba");
  whole.Commit();
}

}  // namespace tarvik::host::revision
