// The sub-commands about one document before and after its posting: what they write to a console, and the
// code that they end with (see ordenes.h). Each throws data::Error for a refusal.
#pragma once

#include <iosfwd>

#include "host/anfitrion.h"

namespace tarvik::host {

int OrdenAlcanza(Anfitrion& host, std::ostream& salida, const Retenido& documento);
int OrdenAvisos(Anfitrion& host, std::ostream& salida, const Retenido& documento);
int OrdenImprime(Anfitrion& host, std::ostream& salida, const Retenido& documento);

}  // namespace tarvik::host
