// Other programs on the same base, for tests that need them: a child process that runs a function and says
// what it has to say through a pipe. It is ended at the end of the test, whatever it does.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <utility>

namespace tarvik::tests {

// Made before the test itself opens a base: what is open is inherited, and would live on in the child.
class OtherProgram {
 public:
  // `work` gets a function that says something to the test, one line each.
  using Say = std::function<void(const std::string&)>;
  explicit OtherProgram(const std::function<void(const Say&)>& work) {
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0) return;
    child_ = ::fork();
    if (child_ == 0) {
      ::close(ends[0]);
      const Say say = [&](const std::string& text) {
        const std::string line = text + "\n";
        if (::write(ends[1], line.data(), line.size()) < 0) ::_exit(2);
      };
      try {
        work(say);
      } catch (const std::exception& error) {
        say(std::string("error: ") + error.what());
      }
      ::_exit(0);  // nothing of the test's own is taken down here
    }
    ::close(ends[1]);
    heard_ = ends[0];
  }
  ~OtherProgram() {
    Kill();
    if (heard_ >= 0) ::close(heard_);
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

  // The next line that it says; empty once it is at its end.
  std::string Hear() {
    std::string line;
    for (char c = 0; ::read(heard_, &c, 1) == 1 && c != '\n';) line += c;
    return line;
  }
  void Kill() { End(SIGKILL); }
  void Stop() { ::kill(child_, SIGSTOP); }
  void GoOn() { ::kill(child_, SIGCONT); }

 private:
  void End(int signal) {
    if (child_ <= 0) return;
    ::kill(child_, signal);
    ::waitpid(std::exchange(child_, -1), nullptr, 0);
  }

  pid_t child_ = -1;
  int heard_ = -1;
};

}  // namespace tarvik::tests
