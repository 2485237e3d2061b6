// Waiting at a server's socket: nothing is sent here, and nothing decided. While a wait lasts the window's
// turn is called, so that it paints.
#pragma once

#include <chrono>

#include "data/patience.h"

namespace tarvik::data {

class Waiting {
 public:
  using Clock = Patience::Clock;
  enum class Came { kSomething, kTime, kEnd };

  // `spends`: what is waited is the act's patience, and a patience that is spent ends the wait (kEnd).
  Waiting(Patience& patience, bool spends)
      : patience_(patience), spends_(spends), begun_(Clock::now()), counted_(begun_) {}

  // Until the socket can be read or written, or until then, or until the process is asked to end. It may
  // come back early with kSomething. No socket (-1): just the time.
  Came For(int socket, short events, Clock::time_point until);

  [[nodiscard]] Clock::duration Lasted() const { return Clock::now() - begun_; }

  // A wait that nobody sees: no turn is called in its first moment.
  static constexpr std::chrono::milliseconds kMoment{50};

 private:
  // Tells the patience of the time since the last turn. False: no more.
  bool Turn(Clock::time_point now);

  Patience& patience_;
  bool spends_;
  Clock::time_point begun_;
  Clock::time_point counted_;
};

}  // namespace tarvik::data
