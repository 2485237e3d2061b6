// The connection that the module is given: it tells the witness of each statement, then hands it to
// the engine, inside a fence: what a screen has joined together from typed text may read for so long and
// no longer, and calls no function but the harmless ones. While a routine of the deployer's runs the fence
// is open: what it sends is its own. What the host's services send for themselves goes past this, by
// Engine().
#pragma once

#include <chrono>
#include <string_view>

#include "data/engine.h"
#include "host/testigo.h"

namespace tarvik::host {

// Both references must outlive it.
class ConexionObservada : public data::Connection {
 public:
  ConexionObservada(data::EngineConnection& inner, Testigo& testigo) : inner_(inner), testigo_(testigo) {}

  data::Rows Select(std::string_view text) override;
  data::Rows Execute(std::string_view text) override;
  data::EngineConnection& Engine() override { return inner_; }

  static constexpr std::chrono::milliseconds kLimite{5000};  // of one SELECT of a screen

  // While it lives a routine runs, and what comes is sent as it is.
  class Rutina {
   public:
    explicit Rutina(ConexionObservada& connection) : connection_(connection) { ++connection_.routines_; }
    ~Rutina() { --connection_.routines_; }
    Rutina(const Rutina&) = delete;
    Rutina& operator=(const Rutina&) = delete;

   private:
    ConexionObservada& connection_;
  };

 private:
  template <class Send>
  data::Rows Fenced(Send send) {
    if (routines_ > 0) return send();
    const data::Fence fence(inner_, kLimite);
    return send();
  }

  int routines_ = 0;
  data::EngineConnection& inner_;
  Testigo& testigo_;
};

}  // namespace tarvik::host
