// The first contents of a new base: message texts, printing formats, the matrix signal, settings.
// No article, warehouse, concept, user or customer: those the shop enters.
#pragma once

#include "data/engine.h"

namespace tarvik::host {

// Puts the first contents into a base that has none of them, in one transaction. A base that has
// any of them is left as it is. So a base whose preparation broke off is completed at the next start, and
// of two stations that start together only one writes.
void PonPrimerosContenidos(data::EngineConnection& connection);

// Inside a unit: from here to its end no other station fills this base. In a file the unit alone does that.
void UnaALaVez(data::EngineConnection& connection);

}  // namespace tarvik::host
