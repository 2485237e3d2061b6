#include "bench/desktop/engine_clock.h"

#include <sqlite3.h>

#include <ctime>

namespace tarvik::bench {

double Worked() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

thread_local double engine_ms = 0;
thread_local double engine_work = 0;

namespace {

class InEngine {
 public:
  InEngine() = default;
  ~InEngine() {
    engine_ms += Milliseconds(since_);
    engine_work += Worked() - worked_;
  }
  InEngine(const InEngine&) = delete;
  InEngine& operator=(const InEngine&) = delete;

 private:
  Clock::time_point since_ = Clock::now();
  double worked_ = Worked();
};

}  // namespace
}  // namespace tarvik::bench

using tarvik::bench::InEngine;

// The linker puts these in front of the engine's own.
extern "C" {
int __real_sqlite3_prepare_v3(sqlite3*, const char*, int, unsigned, sqlite3_stmt**, const char**);
int __wrap_sqlite3_prepare_v3(sqlite3* base, const char* text, int size, unsigned flags, sqlite3_stmt** made,
                              const char** tail) {
  const InEngine clock;
  return __real_sqlite3_prepare_v3(base, text, size, flags, made, tail);
}
int __real_sqlite3_step(sqlite3_stmt*);
int __wrap_sqlite3_step(sqlite3_stmt* statement) {
  const InEngine clock;
  return __real_sqlite3_step(statement);
}
int __real_sqlite3_reset(sqlite3_stmt*);
int __wrap_sqlite3_reset(sqlite3_stmt* statement) {
  const InEngine clock;
  return __real_sqlite3_reset(statement);
}
int __real_sqlite3_finalize(sqlite3_stmt*);
int __wrap_sqlite3_finalize(sqlite3_stmt* statement) {
  const InEngine clock;
  return __real_sqlite3_finalize(statement);
}
int __real_sqlite3_exec(sqlite3*, const char*, int (*)(void*, int, char**, char**), void*, char**);
int __wrap_sqlite3_exec(sqlite3* base, const char* text, int (*row)(void*, int, char**, char**), void* with,
                        char** error) {
  const InEngine clock;
  return __real_sqlite3_exec(base, text, row, with, error);
}
int __real_sqlite3_file_control(sqlite3*, const char*, int, void*);
int __wrap_sqlite3_file_control(sqlite3* base, const char* name, int what, void* with) {
  const InEngine clock;
  return __real_sqlite3_file_control(base, name, what, with);
}
}
