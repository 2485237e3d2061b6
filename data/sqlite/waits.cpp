#include "data/sqlite/waits.h"

#include <sqlite3.h>

#include <algorithm>
#include <thread>

namespace tarvik::data::sqlite {
namespace {

using std::chrono::microseconds;

// The first in line asks often at first: most writers are done in a few milliseconds.
constexpr microseconds kOften{250};
constexpr microseconds kSeldom{1000};
constexpr std::chrono::milliseconds kSoon{20};
constexpr microseconds kLongestPause{100'000};
// Nobody waits longer than an act's patience. Whoever is still in the queue then does not run any more: that
// process is stopped, not dead.
constexpr std::chrono::seconds kStopped{6};

std::int64_t Moment() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<microseconds>(now).count();
}

}  // namespace

void Waits::Watch(sqlite3* handle) {
  sqlite3_busy_handler(
      handle, [](void* self, int) { return static_cast<Waits*>(self)->Asked() ? 1 : 0; }, this);
}

void Waits::Enter(bool writes) {
  writes_ = writes;
  waited_ = false;
  owed_ = {};
  if (!writes || line_ == nullptr || !line_->OpenToLock()) return;
  const std::int64_t now = kFirstTicket + Moment();
  if (!line_->HeldByOther(now - microseconds(kStopped).count(), now)) return;
  if (patience_.Left().count() <= 0) return;  // sent all the same: the base may be back
  JoinLine();
  while (!FirstInLine() && Pause(kSeldom)) {
  }
}

void Waits::Through() {
  // A query that needed no wait says nothing about who holds the write lock.
  if (writes_ || waited_) patience_.Well();
}

void Waits::LeaveLine() noexcept {
  if (ticket_) line_->LetGo(*ticket_);
  ticket_.reset();
}

void Waits::JoinLine() {
  if (ticket_ || line_ == nullptr || !line_->OpenToLock()) return;
  constexpr int kSameMoment = 16;  // as many may come in one microsecond
  const std::int64_t now = kFirstTicket + Moment();
  for (std::int64_t place = now; place < now + kSameMoment && !ticket_; ++place) {
    if (line_->Hold(place)) ticket_ = place;
  }
  first_since_ = {};
}

bool Waits::FirstInLine() {
  if (!ticket_) return true;
  const std::int64_t oldest = kFirstTicket + Moment() - microseconds(kStopped).count();
  if (oldest < *ticket_ && line_->HeldByOther(oldest, *ticket_)) return false;
  if (first_since_ == Clock::time_point{}) first_since_ = Clock::now();
  return true;
}

bool Waits::Pause(microseconds time) {
  const auto before = Clock::now();
  std::this_thread::sleep_for(time);
  waited_ = true;
  // A process that was stopped meanwhile, by a closed lid or a debugger, has not waited all that time.
  owed_ += std::min(std::chrono::duration_cast<microseconds>(Clock::now() - before), kLongestPause);
  if (owed_ < Patience::kTurn) return true;
  const auto told = std::chrono::duration_cast<std::chrono::milliseconds>(owed_);
  owed_ -= told;
  return patience_.Waited(told);
}

bool Waits::Asked() {
  if (patience_.Left().count() <= 0) return false;
  if (writes_) JoinLine();
  do {
    const bool soon = ticket_ && FirstInLine() && Clock::now() - first_since_ < kSoon;
    if (!Pause(soon ? kOften : kSeldom)) return false;
  } while (!FirstInLine());
  return true;
}

bool Waits::Again() { return Asked(); }

}  // namespace tarvik::data::sqlite
