// What a statement of the screens or of the public class does to which document, told by its text alone.
// Their texts are fixed; a statement that is written differently is not recognised.
#pragma once

#include <cstdint>
#include <string_view>

#include "host/documentos.h"

namespace tarvik::host {

struct SentenciaDeDocumento {
  enum class Clase {
    Otra,            // none of those below
    Crea,            // the header's INSERT
    Toma,            // a load sets `ocupado`
    Suelta,          // an unloading clears `ocupado`
    Guarda,          // an UPDATE of the header
    Escribe,         // a line is stored; the matrix of another program is asked for lines
    Corrige,         // a line, named by its own number, is changed or removed
    QuitaPartidas,   // the class deletes a document: its lines first,
    QuitaDocumento,  // then its header
  };
  Clase clase = Clase::Otra;
  Retenido documento{};      // of Corrige the kind alone
  std::int32_t renglon = 0;  // of Corrige, and of Escribe where it is one line; else 0
  double unidades = 0;       // that such a line is made with, or that Corrige adds to it; else 0
};

// Costs a look at the first word where the text is none of these.
SentenciaDeDocumento Reconoce(std::string_view text);

}  // namespace tarvik::host
