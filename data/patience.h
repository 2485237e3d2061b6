// Patience: how long one act of an operator may wait, in all, for a base that is busy or away. It
// measures and asks; the engines do the waiting.
#pragma once

#include <chrono>
#include <functional>

namespace tarvik::data {

// One for each connection. An act has five seconds. Once they are spent the base is known to be in
// trouble: each later statement of the act is still sent, since the base may be back, but waits for
// nothing. A change that succeeds restores the patience. Where no act is under way (a script that
// calls a procedure), it is restored a second after the last wait that was in vain.
class Patience {
 public:
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::milliseconds kWhole{5000};
  static constexpr std::chrono::milliseconds kTurn{10};  // between two turns of a wait

  // Called at each turn of a wait, about every kTurn: it may paint, and runs no event of a screen. False
  // ends the wait at once, for a program that has been asked to end. Empty: nobody watches.
  std::function<bool()> turn;

  void ActBegins() {
    in_act_ = true;
    spent_ = {};
  }
  void ActEnds() {
    in_act_ = false;
    spent_ = {};
  }

  // What an act may still wait; nothing once the base is known to be in trouble.
  [[nodiscard]] std::chrono::milliseconds Left() {
    if (!in_act_ && spent_ >= kWhole && Clock::now() - last_vain_ > kForgets) spent_ = {};
    return spent_ >= kWhole ? std::chrono::milliseconds{0} : kWhole - spent_;
  }
  // This much was waited. Gives whether to wait on: false when nothing is left, or an end was asked for.
  bool Waited(std::chrono::milliseconds time) {
    spent_ += time;
    const bool watched = !turn || turn();
    if (watched && spent_ < kWhole) return true;
    Vain();
    return false;
  }
  // The wait was in vain: nothing is left.
  void Vain() {
    spent_ = kWhole;
    last_vain_ = Clock::now();
  }
  // A change has succeeded: the base is well again.
  void Well() { spent_ = {}; }

 private:
  static constexpr std::chrono::milliseconds kForgets{1000};

  std::chrono::milliseconds spent_{0};
  Clock::time_point last_vain_;
  bool in_act_ = false;
};

}  // namespace tarvik::data
