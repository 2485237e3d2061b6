// Whether somebody alive holds a document: a lease whose program runs, or the suite's flag alone where
// other programs work on the base too.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "data/engine.h"
#include "host/documentos.h"

namespace tarvik::host {

// Who it is, as "ANA en la estación E1"; nothing if nobody alive holds it, and for a document that is not
// there. Throws data::Error if the base refuses.
std::optional<std::string> TenenciaViva(data::EngineConnection& connection, Tipo tipo,
                                        std::int32_t documento);

}  // namespace tarvik::host
