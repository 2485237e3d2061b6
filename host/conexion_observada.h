// The connection that the module is given: it tells the witness of each statement, then hands it to
// the engine, inside a fence: a statement that a screen built from typed text may read for a limited time,
// and call no function but the harmless ones. While a routine of the deployer's runs the fence
// is open: what it sends is its own. On a modal screen that the routine shows an operator types again, and
// the fence is closed. What the host's services send for themselves goes past this, by MotorDe().
#pragma once

#include <chrono>
#include <functional>
#include <string_view>
#include <utility>

#include "data/engine.h"
#include "forms/platform.h"
#include "host/testigo.h"

namespace tarvik::host {

// Stands between the module's statements and the engine: it may do something of the host's around one, and
// hold back what a screen may no longer write.
class Guardia {
 public:
  virtual ~Guardia() = default;
  // `envia` sends the statement, once, and gives its rows; what it throws is the statement's failure.
  virtual data::Rows Ejecuta(std::string_view text, const std::function<data::Rows()>& envia) = 0;
};

// All references must outlive it.
class ConexionObservada : public data::Connection {
 public:
  ConexionObservada(data::EngineConnection& inner, Testigo& testigo, const forms::Platform& platform)
      : inner_(inner), testigo_(testigo), platform_(platform) {}

  data::Rows Select(std::string_view text) override;
  data::Rows Execute(std::string_view text) override;
  // The engine's own connection.
  [[nodiscard]] data::EngineConnection& Motor() { return inner_; }
  // Outlives this; nullptr removes it.
  void PonGuardia(Guardia* guardia) { guardia_ = guardia; }

  static constexpr std::chrono::milliseconds kLimite{5000};  // of one SELECT of a screen

  // While it lives a routine runs, and what comes is sent as it is.
  class Rutina {
   public:
    explicit Rutina(ConexionObservada& connection)
        : connection_(connection),
          before_(std::exchange(connection.open_below_, connection.platform_.Modals() + 1)) {}
    ~Rutina() { connection_.open_below_ = before_; }
    Rutina(const Rutina&) = delete;
    Rutina& operator=(const Rutina&) = delete;

   private:
    ConexionObservada& connection_;
    int before_;
  };

 private:
  template <class Send>
  data::Rows Fenced(Send send) {
    if (platform_.Modals() < open_below_) return send();
    const data::Fence fence(inner_, kLimite);
    return send();
  }

  int open_below_ = 0;  // so many modal screens close the fence; 0: no routine runs
  data::EngineConnection& inner_;
  Testigo& testigo_;
  const forms::Platform& platform_;
  Guardia* guardia_ = nullptr;
};

// The engine's connection of one that a service was given: that of its Ambiente, be it this host's or
// another one's of this program. The contract knows no engine, so a foreign host's connection has none, and
// throws data::Error: numbers and movements of a base that this host did not open are not its to write.
data::EngineConnection& MotorDe(data::Connection& connection);

}  // namespace tarvik::host
