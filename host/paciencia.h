// An act of a service that is safe to do twice, tried again while the base is busy or its session is being
// made anew.
#pragma once

#include <utility>

#include "data/engine.h"
#include "data/error.h"

namespace tarvik::host {

// Gives what `act` gives. A passing trouble (data::Error::Passing) has it tried again as long as the
// connection's patience lasts; any other failure, and the last one, comes out as it is. Inside a unit of
// somebody else's it is tried once: what the unit has done so far would be gone.
template <class Act>
auto ConPaciencia(data::EngineConnection& connection, Act&& act) {
  const bool once = connection.InTransaction();
  for (;;) {
    try {
      return act();
    } catch (const data::Error& error) {
      if (once || !error.Passing() || !connection.Waiting().Waited(data::Patience::kTurn)) throw;
    }
  }
}

}  // namespace tarvik::host
