// The record of acts: what was done by right or over a refusal, by whom, where and when. Rows are only ever
// added. What an act means, its caller knows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "data/engine.h"
#include "host/documentos.h"

namespace tarvik::host {

struct Acto {
  data::DateTime cuando;
  std::string usuario;
  std::string estacion;
  std::string acto;                   // "libera", "cede", "elimina", "completa", "repara" ...
  std::optional<Retenido> documento;  // nothing where it was about none
  std::string texto;                  // what exactly
};

// Adds a row; inside the connection's transaction, if one is open. Throws data::Error if the base refuses.
void Anota(data::EngineConnection& connection, const Acto& acto);

// The acts from that moment on, oldest first; without one, all.
std::vector<Acto> LeeBitacora(data::EngineConnection& connection,
                              const std::optional<data::DateTime>& desde = {});
// The last act of these on the document; nothing if there is none.
std::optional<Acto> UltimoActo(data::EngineConnection& connection, const Retenido& documento,
                               const std::string& acto, const std::string& o_acto);

// "el 05/03/2024 a las 14:15"
std::string Momento(const data::DateTime& when);

}  // namespace tarvik::host
