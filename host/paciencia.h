// An act of a service that is safe to do twice, tried again while the base is busy or its session is being
// replaced.
#pragma once

#include <utility>

#include "data/engine.h"
#include "data/error.h"

namespace tarvik::host {

// Gives what `act` gives. After a passing trouble (data::Error::Passing) it is tried again as long as the
// connection's patience lasts; any other failure, and the last one, is thrown as it is. Inside the caller's
// unit of work it is tried once: what the unit has done so far would be lost.
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
