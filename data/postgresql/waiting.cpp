// The turns of a wait: ten milliseconds each once it can be felt, none before.
#include "data/postgresql/waiting.h"

#include <poll.h>

#include <algorithm>

namespace tarvik::data {
namespace {

using std::chrono::milliseconds;

// Where nobody watches the socket alone ends a wait; still looked up now and then.
constexpr milliseconds kUnwatched{200};

}  // namespace

bool Waiting::Turn(Clock::time_point now) {
  const auto passed = std::chrono::duration_cast<milliseconds>(now - counted_);
  counted_ += passed;
  try {
    if (spends_) return patience_.Waited(passed);
    return !patience_.turn || patience_.turn();
  } catch (...) {  // painting failed: nothing that a wait could mend
    return false;
  }
}

Waiting::Came Waiting::For(int socket, short events, Clock::time_point until) {
  for (;;) {
    const auto now = Clock::now();
    const auto lasted = now - begun_;
    auto turn = patience_.turn || spends_ ? milliseconds(Patience::kTurn) : kUnwatched;
    if (lasted < kMoment) turn = std::chrono::ceil<milliseconds>(kMoment - lasted);
    const auto left = std::chrono::ceil<milliseconds>(until - now);
    const auto time = std::clamp(left, milliseconds{0}, turn);

    struct pollfd watched {
      socket, events, 0
    };
    const int came = ::poll(&watched, socket < 0 ? 0 : 1, static_cast<int>(time.count()));
    const auto after = Clock::now();
    if (after - begun_ >= kMoment && after - counted_ >= Patience::kTurn && !Turn(after)) return Came::kEnd;
    if (came > 0) return Came::kSomething;
    if (after >= until) return Came::kTime;
    // The library may hold what the socket no longer does.
    if (socket >= 0 && lasted >= kMoment) return Came::kSomething;
  }
}

}  // namespace tarvik::data
