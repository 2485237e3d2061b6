// Cierres: how far the finish of each document has come, kept in the base while it is under way, so that
// the rest of a finish that broke off (catalogue keys, the page) can be told and run later. It posts
// nothing. A finish is noted in the unit of its first movement: where that can't be written, neither is
// the movement.
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
  void Empezado();
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
  std::vector<Cierre>::iterator De(const forms::Form& screen);
  [[nodiscard]] std::optional<Cierre> QuienAfecta(const Asiento& asiento) const;
  void Escribe(const Cierre& cierre);

  data::EngineConnection& connection_;
  forms::Platform& platform_;
  AmbienteLocal& ambiente_;
  std::optional<Cierre> beginning_;  // noted in a unit that was not committed yet
  std::vector<Cierre> under_way_;    // one a screen: a routine of one finish may finish another document
};

// The finishes that broke off, oldest first; those of documents that a living screen holds are under way.
// A row with nothing left to run is deleted meanwhile, by whoever may.
std::vector<CierreInterrumpido> CierresInterrumpidos(data::EngineConnection& connection);
// Forgets the finish of a document: what was missing has been run, or is not wanted.
void OlvidaCierre(data::EngineConnection& connection, Tipo tipo, std::int32_t documento);

// Runs what is missing: opens the document in consultation, fires with its screen the keys that did not run,
// in their order, prints if the page is missing, and closes the screen. Each step is noted before it runs, so
// that of two stations one runs it, and taken back if it fails; with the last one the finish is forgotten.
// Nothing, if nothing is missing or another station is at it. Throws data::Error at the step that fails, or
// if the document is still posted in part or cannot be opened; that step and those after it stay missing.
void TerminaCierre(Anfitrion& host, Tipo tipo, std::int32_t documento);

}  // namespace tarvik::host
