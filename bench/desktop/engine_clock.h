// The time that the embedded engine takes on the thread that calls it: each of its calls is clocked where the
// linker puts a wrapper in front of it.
#pragma once

#include <chrono>

namespace tarvik::bench {

using Clock = std::chrono::steady_clock;

inline double Milliseconds(Clock::time_point since) {
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

// What this thread had of the processor: other programs' turns are not in it.
double Worked();

// What the engine took on this thread. Its calls don't nest, but for what it calls itself, unseen here.
extern thread_local double engine_ms;
extern thread_local double engine_work;

}  // namespace tarvik::bench
