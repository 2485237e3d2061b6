// Documents as the host speaks of them: kind and number, which of them a screen works on, what is stored
// of one. No lease here (host/tenencias.h) and no statement of the screens'.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "data/engine.h"
#include "forms/form.h"

namespace tarvik {
class DocumentWizard;
}

namespace tarvik::host {

enum class Tipo { Entrada, Salida };

struct Retenido {
  Tipo tipo;
  std::int32_t numero;
  bool operator==(const Retenido&) const = default;
};

// As the host's tables and scripts name the kind: "Entrada", "Salida".
std::string_view NombreDe(Tipo tipo);
// The kind by that name, without regard to case. Throws data::Error for another.
Tipo TipoDe(std::string_view nombre);
// The same; nothing for another name.
std::optional<Tipo> TipoLlamado(std::string_view nombre);
// "la entrada 12"; with a capital where it begins a sentence.
std::string LaDe(const Retenido& documento, bool capital = false);

// "1 movimiento", "3 movimientos".
std::string Movimientos(std::int64_t cuantos);

// Where a kind's documents are stored.
struct Tablas {
  std::string encabezado;  // table of the headers
  std::string clave;       // its key, and the lines' column of that name
  std::string partidas;    // table of the lines
  std::string renglon;     // key of a line; the ledger's column of that name too
  std::string serie;       // of the documents' numbers
  std::string movidos;     // condition on the ledger: the movements of such a line
};
const Tablas& TablasDe(Tipo tipo);
// The text with each placeholder replaced for one kind: {encabezado}, {renglones} the tables,
// {numero}, {id} the columns of document and line, {folio} the header's number in a movement,
// {operaciones} a list of the movements' own.
std::string ConTablas(Tipo tipo, std::string text);

// The document that a screen works on, whatever its mode; nothing for another screen, and for a new document
// that has no number yet.
std::optional<Retenido> DocumentoDe(const forms::Form& screen);
// The same where the screen is open for change: the document that it holds.
std::optional<Retenido> RetenidoPor(const forms::Form& screen);
// The wizard that a form is, or nullptr.
DocumentWizard* AsistenteDe(forms::Form& screen);

// What is stored of a document.
struct Contenido {
  std::string estado;            // "PE", "CO"
  std::int64_t renglones = 0;    // its lines
  std::int64_t movimientos = 0;  // their movements in the ledger, arrivals of a transfer included
};
// Nothing if there is no such document. Throws data::Error if the base refuses.
std::optional<Contenido> ContenidoDe(data::EngineConnection& connection, const Retenido& documento);

}  // namespace tarvik::host
