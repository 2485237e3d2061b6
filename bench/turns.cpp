// Many programs on one base in a file, none of which ever pauses: how long the one that waits longest waits,
// and whether anybody is refused. Each program is a process, as the stations of a shop are.
//   bench_turns [PROGRAMS] [LINES] [FOLDER]     8, 800, the folder for temporary files
// The folder should be on the disk that a shop would use: each commit waits for it.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "data/engine.h"
#include "data/error.h"

namespace {

using Clock = std::chrono::steady_clock;
namespace data = tarvik::data;

double Since(Clock::time_point began) {
  return std::chrono::duration<double, std::milli>(Clock::now() - began).count();
}

// One program's day: its lines, each a commit of its own, or each a unit of a number, two rows and a sum, as
// entering and posting are.
std::vector<double> Works(const std::string& address, int who, int lines, bool units, int& refused) {
  const auto connection = data::OpenBase(address)->Connect();
  std::vector<double> waits;
  for (int line = 0; line < lines; ++line) {
    const auto began = Clock::now();
    try {
      if (!units) {
        connection->Run("INSERT INTO t VALUES (?, ?)", {who, line});
      } else {
        data::Transaction unit(*connection);
        connection->Run("UPDATE s SET n = n + 1 RETURNING n", {});
        for (int row = 0; row < 2; ++row) connection->Run("INSERT INTO t VALUES (?, ?)", {who, line});
        connection->Run("SELECT COUNT(*) FROM t WHERE who = ? AND line > ?", {who, line - 5});
        unit.Commit();
      }
    } catch (const data::Error&) {
      ++refused;
    }
    waits.push_back(Since(began));
  }
  return waits;
}

void Measure(const std::string& file, int programs, int lines, bool units) {
  const std::string address = "sqlite:" + file;
  {
    const auto connection = data::OpenBase(address)->Connect();
    connection->Execute("CREATE TABLE t (who INTEGER, line INTEGER)");
    connection->Execute("CREATE INDEX i ON t (who, line)");
    connection->Execute("CREATE TABLE s (n INTEGER)");
    connection->Execute("INSERT INTO s VALUES (0)");
  }
  int ends[2];
  if (pipe(ends) != 0) return;
  const auto began = Clock::now();
  for (int who = 0; who < programs; ++who) {
    if (fork() != 0) continue;
    int refused = 0;
    auto waits = Works(address, who, lines, units, refused);
    std::sort(waits.begin(), waits.end());
    const double said[4] = {waits.back(), waits[waits.size() / 2], waits[waits.size() * 99 / 100],
                            static_cast<double>(refused)};
    _exit(write(ends[1], said, sizeof said) == sizeof said ? 0 : 1);
  }
  double longest = 0;
  double median = 0;
  double slow = 0;
  int refused = 0;
  for (int who = 0; who < programs; ++who) {
    double said[4] = {};
    if (read(ends[0], said, sizeof said) != sizeof said) break;
    longest = std::max(longest, said[0]);
    median = std::max(median, said[1]);
    slow = std::max(slow, said[2]);
    refused += static_cast<int>(said[3]);
  }
  while (wait(nullptr) > 0) {
  }
  close(ends[0]);
  close(ends[1]);
  const double all = Since(began);
  std::printf("%-16s %6.0f lines/s   median %7.1f ms   99 of 100 %7.1f ms   longest %7.1f ms   refused %d\n",
              units ? "units" : "single commits", programs * lines / all * 1000, median, slow, longest,
              refused);
}

}  // namespace

int main(int count, char** arguments) {
  const int programs = count > 1 ? std::atoi(arguments[1]) : 8;
  const int lines = count > 2 ? std::atoi(arguments[2]) : 800;
  const std::filesystem::path folder =
      (count > 3 ? std::filesystem::path(arguments[3]) : std::filesystem::temp_directory_path()) /
      ("tarvik-turnos-" + std::to_string(getpid()));
  std::filesystem::create_directories(folder);
  Measure((folder / "uno.db").string(), programs, lines, false);
  Measure((folder / "dos.db").string(), programs, lines, true);
  std::filesystem::remove_all(folder);
}
