// Requests: somebody asks for a document that another screen holds; its holder hands it over or says no. Rows
// of `peticiones`, which both sides read. No window here.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "forms/platform.h"
#include "host/documentos.h"
#include "host/tenencias.h"

namespace tarvik::host {

class ServicioDePeticiones;

// What has become of a request, for whoever asks.
struct Desenlace {
  enum class Clase {
    kEspera,  // its holder has not answered
    kAbre,    // the document can be opened: it was handed over, or closed as pending without an answer
    kNo,      // it can't, and `texto` says why
  };
  Clase clase = Clase::kEspera;
  std::string texto;  // "No se cedió la entrada 1: la termino yo"
};

// One request, on either side. Valid as long as its host.
class Peticion {
 public:
  std::int64_t id = 0;
  Retenido documento{};
  std::string usuario;  // who asks, and where
  std::string estacion;
  std::string mensaje;
  data::DateTime cuando;

  // As it is now: "pedida", "cedida", "negada"; and why it was refused. Throw data::Error if the base can't
  // be asked.
  [[nodiscard]] std::string Estado() const;
  [[nodiscard]] std::string Motivo() const;
  // Never waits for ever: a holder who closes the document, or is gone, need not have answered. Throws
  // data::Error if the base can't be asked.
  [[nodiscard]] Desenlace Mira() const;

  // The holder's answers to a request that waits. Throw data::Error, and the request waits on, if it has
  // been answered already, if this program doesn't hold the document, if the screen is in the middle of an
  // act, if the header can't be saved, or if the screen refuses to close.
  // On yes the header is stored as pending, the screen closes, the document is free, and what was
  // unfinished in the entry row waits for whoever asked.
  void Cede();
  void Niega(const std::string& motivo = "");

 private:
  friend class ServicioDePeticiones;
  ServicioDePeticiones* servicio_ = nullptr;
};

class ServicioDePeticiones {
 public:
  // All outlive this.
  ServicioDePeticiones(data::EngineConnection& connection, forms::Platform& platform, Custodia& custodia)
      : connection_(connection), platform_(platform), custodia_(custodia) {}

  // A second request of the same program for the same document only changes the message of the first. Throws
  // data::Error if nobody whose program lives has it open.
  Peticion Pide(const Retenido& documento, const std::string& mensaje);
  // The requests that wait for this program's answer, oldest first; not those of programs that are gone.
  std::vector<Peticion> Pedidas();
  // This program has opened a document: it no longer asks for it, and if it was handed over, its unfinished
  // entry row appears here.
  void AlAbrir(forms::Form& screen);

 private:
  friend class Peticion;
  struct Respuesta {
    std::string estado;
    std::string motivo;
  };
  [[nodiscard]] Respuesta Lee(const Peticion& peticion) const;
  [[nodiscard]] Desenlace Mira(const Peticion& peticion) const;
  [[nodiscard]] bool HayQuienConteste(const Retenido& documento) const;
  [[noreturn]] static void YaNoLaTiene(const Retenido& documento);
  void RequierePedida(const Peticion& peticion) const;
  void Cede(const Peticion& peticion);
  void Entrega(const Peticion& peticion, const data::Rows& leases, const std::string& row);
  void Niega(const Peticion& peticion, const std::string& motivo);
  Peticion De(const std::vector<data::Value>& row);

  data::EngineConnection& connection_;
  forms::Platform& platform_;
  Custodia& custodia_;
  std::set<std::pair<Tipo, std::int32_t>> pedidas_;  // by this program
};

}  // namespace tarvik::host
