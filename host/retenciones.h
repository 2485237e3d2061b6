// Retenciones: who holds a document, at which station and since when, kept beside the suite's own
// flag `ocupado`. It tells and it frees; it locks nothing: the flag alone decides whether a document
// opens.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "data/engine.h"
#include "forms/form.h"
#include "host/tipo.h"

namespace tarvik::host {

struct Retencion {
  std::string usuario;
  std::string estacion;
  data::DateTime desde;
};

struct Retenido {
  Tipo tipo;
  std::int32_t numero;
  bool operator==(const Retenido&) const = default;
};

// The document that an open screen holds at this moment; nothing for a screen that only reads, for
// a new document without a row, and for any other screen.
std::optional<Retenido> RetenidoPor(const forms::Form& screen);

// A later holder replaces an earlier one. All throw data::Error if the base refuses.
void Toma(data::EngineConnection& connection, Tipo tipo, std::int32_t numero, const std::string& usuario,
          const std::string& estacion, const data::DateTime& desde);
void Suelta(data::EngineConnection& connection, Tipo tipo, std::int32_t numero);
std::optional<Retencion> Lee(data::EngineConnection& connection, Tipo tipo, std::int32_t numero);

// The setting "Liberadores" names the users who may, separated by commas; empty or unset: everybody.
bool PuedeLiberar(data::EngineConnection& connection, const std::string& usuario);
// Lets a document go that a screen left behind: flag and row together or not at all. Throws
// data::Error if the user may not, or if the document is not there.
void Libera(data::EngineConnection& connection, Tipo tipo, std::int32_t numero, const std::string& usuario);

}  // namespace tarvik::host
