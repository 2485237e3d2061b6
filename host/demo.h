// The demonstration catalogue: a hardware and clothing shop to try the screens on.
#pragma once

#include "data/engine.h"

namespace tarvik::host {

// Fills a base that has no article, in one transaction; leaves any other base as it is.
void PonDemostracion(data::EngineConnection& connection);

}  // namespace tarvik::host
