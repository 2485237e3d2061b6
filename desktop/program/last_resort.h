// LastResort: the end of a process that has been told to end while a routine of the deployer's holds it
// and can't be stopped, since it waits in a library's own code, where the interpreter never comes. What
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
  // `told` is asked on a thread of this object's, `ends` called there: it does not return.
  LastResort(std::function<bool()> told, std::chrono::milliseconds within, std::function<void()> ends);
  ~LastResort();
  LastResort(const LastResort&) = delete;
  LastResort& operator=(const LastResort&) = delete;

  // A routine begins and ends; they nest. One that ends gives those around it their time anew.
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
