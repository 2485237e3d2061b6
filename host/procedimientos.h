// The bodies of the suite's three procedures for the colour and size matrix, registered on a
// connection. They move no stock: the lines that they make are posted with their document.
#pragma once

#include "data/engine.h"
#include "forms/platform.h"

namespace tarvik::host {

// The platform outlives the connection.
//   TKMallaParam 'user','model','concept','document','origin'   what the matrix is asked to fill
//   TKCreaEntradaTYC 'document'   the cells that it left become lines, and ledger rows marked '999'
//   TKCreaSalidaTYC 'document'    the same for goods-out
void RegistraProcedimientos(data::EngineConnection& connection, forms::Platform& platform);

}  // namespace tarvik::host
