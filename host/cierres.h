// Cierres: how far the finish of each document has come, kept in the base while it is under way, so that
// what did not run of a finish that broke off (catalogue keys, the page) can be said and made up for. It
// posts nothing and fails no step of a screen.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/engine.h"
#include "forms/platform.h"
#include "host/asiento.h"
#include "host/documentos.h"

namespace tarvik::host {

class AmbienteLocal;
class Anfitrion;

inline constexpr std::string_view kImprime = "Imprime";

// A finish that broke off: its program is gone.
struct CierreInterrumpido {
  Tipo tipo;
  std::int32_t documento;
  std::string usuario;
  std::string estacion;
  data::DateTime cuando;
  std::vector<std::string> faltan;  // catalogue keys that did not run, in their order, then kImprime
};

class Cierres {
 public:
  // All outlive this.
  Cierres(data::EngineConnection& connection, forms::Platform& platform, AmbienteLocal& ambiente)
      : connection_(connection), platform_(platform), ambiente_(ambiente) {}

  // A movement is about to be written, in the unit of the caller: if it is the first one of a finish that a
  // screen has under way, the finish is noted with it. Empezado: the unit was committed.
  void Empieza(const Asiento& asiento);
  void Empezado() { noted_ = current_.has_value(); }
  // A key has fired for that screen, and its routine has come back; the page was handed over.
  void Corrio(const forms::Form& screen, std::string_view step);
  // The screen has closed: its finish is whole.
  void Termina(const forms::Form& screen);

 private:
  struct Cierre {
    const forms::Form* screen;  // compared only
    Tipo tipo;
    std::int32_t documento;
    bool imprime;
  };
  [[nodiscard]] std::optional<Cierre> QuienAfecta(const Asiento& asiento) const;
  void Escribe(const Cierre& cierre);

  data::EngineConnection& connection_;
  forms::Platform& platform_;
  AmbienteLocal& ambiente_;
  std::optional<Cierre> current_;
  bool noted_ = false;
};

// The finishes that broke off, oldest first; those of documents that a living screen holds are under way.
// A row without anything left to run is taken away on the way.
std::vector<CierreInterrumpido> CierresInterrumpidos(data::EngineConnection& connection);
// Forgets that of a document: what was missing has been made up for, or is not wanted.
void OlvidaCierre(data::EngineConnection& connection, Tipo tipo, std::int32_t documento);

// Makes up for it: opens the document in consultation, fires with its screen the keys that did not run, in
// their order, prints if the page is missing, and closes the screen. Each step that ran is noted, so that
// none runs twice; with the last one the finish is forgotten. Nothing, if nothing is missing.
// Throws data::Error at the step that fails, or if the document is still posted in part or cannot be opened;
// that step and those behind it stay missing.
void TerminaCierre(Anfitrion& host, Tipo tipo, std::int32_t documento);

}  // namespace tarvik::host
