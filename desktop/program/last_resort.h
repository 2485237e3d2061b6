// LastResort: the end of a process that has been told to end while a routine of the deployer's holds it
// and can't be stopped, because it waits inside a library that never returns to the interpreter. What
// was stored stays stored: for the base it is as if the machine had been switched off. It ends nothing
// else: the program's own work, however long, is let finish.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace tarvik::desktop {

class LastResort {
 public:
  // Both run on a thread of this object. `told`: was the program told to end? `ends` ends it, and does not
  // return.
  LastResort(std::function<bool()> told, std::chrono::milliseconds within, std::function<void()> ends);
  ~LastResort();
  LastResort(const LastResort&) = delete;
  LastResort& operator=(const LastResort&) = delete;

  // A routine begins and ends; they nest. When one ends, the time of those around it starts again.
  void Begins();
  void Ends();

 private:
  void Watch();

  std::function<bool()> told_;
  std::chrono::milliseconds within_;
  std::function<void()> ends_;
  std::mutex mutex_;
  std::condition_variable wake_;
  int running_ = 0;
  bool anew_ = false;
  bool over_ = false;
  std::thread thread_;  // last: it uses the others
};

}  // namespace tarvik::desktop
