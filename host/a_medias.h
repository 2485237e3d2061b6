// Documents that were posted in part, and their completion. It reads the ledger by the lines' numbers and
// posts what is missing through the same ledger as the screens' posting; it fires no key and prints nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "data/engine.h"
#include "forms/platform.h"
#include "host/documentos.h"
#include "host/testigo.h"

namespace tarvik::host {

struct DocumentoAMedias {
  Tipo tipo;
  std::int32_t documento;
  std::string estado;  // "CO": lines without their movement; "PE": lines that have moved already
  int renglones;       // lines of the document
  // Numbers of the lines without movement, ascending; of a transfer also of those that left and did not
  // arrive. A line 0 is one whose number could not be drawn.
  std::vector<std::int32_t> faltan;
};

// Numbers of the documents of one kind that are neither whole nor untouched, ascending, whoever holds them.
std::vector<std::int32_t> Parciales(data::EngineConnection& connection, Tipo tipo);
// All of them, goods-in first, by number. A document that somebody alive holds is being posted, and is left
// out.
std::vector<DocumentoAMedias> LeeAMedias(data::EngineConnection& connection);
// The same for one document, whoever holds it; nothing for a whole one, an untouched pending one and one
// that is not there.
std::optional<DocumentoAMedias> LeeAMedias(data::EngineConnection& connection, Tipo tipo,
                                           std::int32_t documento);

// Who completes, for the record of acts and for the movements.
struct Completador {
  data::EngineConnection& connection;
  forms::Platform& plataforma;
  Testigo& testigo;
  std::string clave_local;
  std::string usuario;
  std::string estacion;
};

// Posts the lines of a posted document that have not moved, in one transaction, with what its header and
// its lines say and today's cost; a transfer's arrivals too. Gives how many movements it made: 0 for a
// whole document. Safe to call twice.
// Throws data::Error, with nothing written, for a document that is not there, a pending one, one that
// somebody alive holds, and whatever the base refuses.
int Completa(const Completador& quien, Tipo tipo, std::int32_t documento);

}  // namespace tarvik::host
