// The record of acts: what was done by right or over a refusal, by whom, where and when. It is only ever
// added to.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "data/datetime.h"
#include "data/engine.h"
#include "host/tipo.h"

namespace tarvik::host {

struct Acto {
  data::DateTime cuando;
  std::string usuario;
  std::string estacion;
  std::string acto;  // "libera", "cede", "elimina", "completa", "repara" ...
  std::optional<Tipo> tipo = {};
  std::optional<std::int32_t> documento = {};
  std::string texto = {};
};

// Adds an act; inside the caller's unit, if one is open. Throws data::Error if the base refuses.
void Anota(data::EngineConnection& connection, const Acto& acto);

// The acts, oldest first; with `desde` those from that moment on.
std::vector<Acto> LeeBitacora(data::EngineConnection& connection,
                              const std::optional<data::DateTime>& desde = std::nullopt);

}  // namespace tarvik::host
