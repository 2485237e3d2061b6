#include "host/tenencia_viva.h"

#include "host/liberacion.h"

namespace tarvik::host {

std::optional<std::string> TenenciaViva(data::EngineConnection& connection, Tipo tipo,
                                        std::int32_t documento) {
  for (const Tenencia& lease : LeeTenencias(connection, Retenido{tipo, documento})) {
    if (lease.viva)
      return lease.usuario + (lease.estacion.empty() ? "" : " en la estación " + lease.estacion);
  }
  return {};
}

}  // namespace tarvik::host
