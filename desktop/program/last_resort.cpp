#include "desktop/program/last_resort.h"

#include <utility>

namespace tarvik::desktop {

LastResort::LastResort(std::function<bool()> told, std::chrono::milliseconds within,
                       std::function<void()> ends)
    : told_(std::move(told)), within_(within), ends_(std::move(ends)), thread_([this] { Watch(); }) {}

LastResort::~LastResort() {
  {
    const std::lock_guard lock(mutex_);
    over_ = true;
  }
  wake_.notify_all();
  thread_.join();
}

void LastResort::Begins() {
  const std::lock_guard lock(mutex_);
  ++running_;
}

void LastResort::Ends() {
  const std::lock_guard lock(mutex_);
  --running_;
  anew_ = true;
}

void LastResort::Watch() {
  using Clock = std::chrono::steady_clock;
  Clock::time_point since =
      Clock::now();  // since when the program has been told to end while one and the same routine runs
  std::unique_lock lock(mutex_);
  while (!wake_.wait_for(lock, within_ / 20, [this] { return over_; })) {
    if (std::exchange(anew_, false) || running_ == 0 || !told_()) {
      since = Clock::now();
    } else if (Clock::now() - since > within_) {
      ends_();
    }
  }
}

}  // namespace tarvik::desktop
