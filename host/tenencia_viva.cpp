#include "host/tenencia_viva.h"

namespace tarvik::host {
namespace {

std::string Quien(const data::Value& usuario, const data::Value& estacion) {
  const std::string station = data::ToText(estacion);
  return data::ToText(usuario) + (station.empty() ? "" : " en la estación " + station);
}

}  // namespace

std::optional<std::string> TenenciaViva(data::EngineConnection& connection, Tipo tipo,
                                        std::int32_t documento) {
  const auto leases =
      connection.Run("SELECT usuario, estacion, vida FROM tenencias WHERE tipo = ? AND documento = ?",
                     {std::string(NombreDe(tipo)), documento});
  for (const auto& lease : leases.rows) {
    if (connection.Lives(static_cast<std::int64_t>(data::ToNumber(lease[2]))))
      return Quien(lease[0], lease[1]);
  }
  if (!leases.rows.empty()) return {};
  const Tablas& tables = TablasDe(tipo);
  const auto flag = connection.Run("SELECT ocupado, usuario FROM " + std::string(tables.encabezado) +
                                       " WHERE " + std::string(tables.numero) + " = ?",
                                   {documento});
  if (flag.rows.empty() || !data::IsNonZero(flag.rows[0][0])) return {};
  const auto alone = connection.Run("SELECT valor FROM parametros WHERE lower(nombre) = 'solotarvik'", {});
  if (!alone.rows.empty() && data::ToNumber(alone.rows[0][0]) == 1) return {};
  return Quien(flag.rows[0][1], {});
}

}  // namespace tarvik::host
