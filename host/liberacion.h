// Who holds which document, and letting one go: by right, or because whoever held it is gone. Flag and leases
// together or not at all, and recorded. It asks the base alone: what becomes of a screen that has lost its
// document is in host/tenencias.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/bitacora.h"
#include "host/documentos.h"

namespace tarvik::host {

// A document that is open for change.
struct Tenencia {
  Tipo tipo;
  std::int32_t documento;
  std::string usuario;
  std::string estacion;
  std::optional<data::DateTime> desde;  // nothing where a flag alone tells
  bool viva;                            // whether the holder's program is still there
};

// The leases, and the flags without a lease, whose user the header names. Such a flag is
// dead where the setting "SoloTarvik" is 1, since all who work on that base keep leases; elsewhere another
// program may have set it. All throw data::Error if the base refuses.
std::vector<Tenencia> LeeTenencias(data::EngineConnection& connection);
// Those of one document.
std::vector<Tenencia> LeeTenencias(data::EngineConnection& connection, const Retenido& documento);

// The setting "Liberadores" names the users who may, separated by commas; empty or unset: everybody.
bool PuedeLiberar(data::EngineConnection& connection, const std::string& usuario);
// Lets a document go, whoever holds it. `firma` says who does it, where and when. Gives false, with nothing
// written, if it is free. Throws data::Error, with nothing changed, if that user may not, or if there is no
// such document.
bool Libera(data::EngineConnection& connection, Acto firma, const Retenido& documento,
            const std::string& motivo);

// Lets a document go of which no holder is alive; checked again in the same transaction. Gives what the
// operator is to be told; nothing, with nothing written, where no holder is dead, or one is alive.
std::optional<std::string> SueltaDeMuertos(data::EngineConnection& connection, Acto firma,
                                           const Retenido& documento);

}  // namespace tarvik::host
