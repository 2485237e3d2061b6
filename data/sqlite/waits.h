// How a connection waits for the one write lock of a base: in line with all others on this machine, as long
// as the act's patience lasts. The engine's own way of waiting asks ever less often, and so lets those wait
// longest who have waited longest.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "data/patience.h"
#include "data/sqlite/side_file.h"

struct sqlite3;

namespace tarvik::data::sqlite {

// One for each connection. The queue is made of locked bytes of the side file: each one's offset is the time
// at which its owner came, and the lowest is the next. Whoever dies or is cut off leaves the queue at once.
class Waits {
 public:
  // `line` is null where there is no file to queue at: then everybody just asks again and again.
  Waits(Patience& patience, SideFile* line) : patience_(patience), line_(line) {}
  ~Waits() { LeaveLine(); }
  Waits(const Waits&) = delete;
  Waits& operator=(const Waits&) = delete;

  // From here on the engine asks this object whenever the base is busy.
  void Watch(sqlite3* handle);

  // Around one call of the engine that takes the write lock: before it, lets those go first who wait already.
  class Turn {
   public:
    Turn(Waits& waits, bool writes) : waits_(waits) { waits_.Enter(writes); }
    ~Turn() { waits_.LeaveLine(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    // The call got through.
    void Through() { waits_.Through(); }

   private:
    Waits& waits_;
  };

  // The engine said that the base is busy without asking before. Waits a little; false if there is no
  // patience left.
  bool Again();

 private:
  using Clock = std::chrono::steady_clock;

  void Enter(bool writes);
  void Through();
  void LeaveLine() noexcept;
  void JoinLine();
  [[nodiscard]] bool FirstInLine();
  bool Pause(std::chrono::microseconds time);
  bool Asked();

  Patience& patience_;
  SideFile* line_;
  std::optional<std::int64_t> ticket_;
  Clock::time_point first_since_;      // since when we are the first in line
  std::chrono::microseconds owed_{0};  // waited, and not told yet
  bool writes_ = false;                // what is called now
  bool waited_ = false;                // for what is called now
};

}  // namespace tarvik::data::sqlite
