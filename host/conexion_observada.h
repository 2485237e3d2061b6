// The connection that the module is given: it tells the witness of each statement, then hands it to
// the engine unchanged. What the host's services send for themselves goes past it, by Engine().
#pragma once

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

 private:
  data::EngineConnection& inner_;
  Testigo& testigo_;
};

}  // namespace tarvik::host
