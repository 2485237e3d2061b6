// What a statement that was built from typed text may do in the engine, and for how long. data/statement.h
// has checked the text before; this checks what the engine has understood.
#pragma once

#include <chrono>

struct sqlite3;

namespace tarvik::data::sqlite {

// One for each connection. The engine asks it about each part of each statement while it prepares it; outside
// a Watched everything is allowed. It is never removed, since installing it would make the engine prepare
// every kept statement again.
class Guard {
 public:
  void Watch(sqlite3* handle);

  // While it lives, what is prepared and run is held to the limits. With a limit of nothing it may take as
  // long as it takes.
  class Watched {
   public:
    Watched(Guard& guard, bool on, std::chrono::milliseconds limit);
    ~Watched();
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;
    // The engine was stopped because the time was up.
    [[nodiscard]] bool TimeUp() const { return guard_.time_up_; }

   private:
    Guard& guard_;
    bool on_;
    int length_ = 0;  // what the longest text was limited to before
  };

 private:
  using Clock = std::chrono::steady_clock;

  static int Authorise(void* self, int action, const char* first, const char* second, const char* base,
                       const char* within);
  bool Progress();

  sqlite3* handle_ = nullptr;
  bool on_ = false;
  bool time_up_ = false;
  std::chrono::milliseconds limit_{0};
  Clock::time_point began_;
};

}  // namespace tarvik::data::sqlite
