// The house's own rules: no file includes upward, nothing below the door includes it, only an
// engine's file sees its C library, and the outside world is reached through the platform alone.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

namespace tarvik::tests {
namespace {

namespace fs = std::filesystem;

const fs::path kRaiz = TARVIK_SOURCE_DIR;

// The floor of a file, by its folder; the door is a floor of its own.
int Floor(const std::string& file) {
  if (file.starts_with("service/door/")) return 6;
  static const std::map<std::string, int> floors{
      {"data", 0},      {"forms", 1},    {"service", 2}, {"wizard", 3}, {"matrix", 4}, {"goods_in", 5},
      {"goods_out", 5}, {"stations", 5}, {"members", 7}, {"host", 8},   {"python", 9}, {"desktop", 10}};
  auto found = floors.find(file.substr(0, file.find('/')));
  return found == floors.end() ? -1 : found->second;
}

struct Source {
  std::string name;  // from the root
  std::vector<std::string> lines;
};

std::vector<Source> Sources() {
  std::vector<Source> sources;
  for (const char* folder : {"data", "forms", "service", "wizard", "matrix", "goods_in", "goods_out",
                             "stations", "members", "host", "python", "desktop"}) {
    if (!fs::exists(kRaiz / folder)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(kRaiz / folder)) {
      const std::string extension = entry.path().extension();
      if (extension != ".h" && extension != ".cpp") continue;
      Source source{fs::relative(entry.path(), kRaiz).generic_string(), {}};
      std::ifstream file(entry.path());
      for (std::string line; std::getline(file, line);) source.lines.push_back(line);
      sources.push_back(std::move(source));
    }
  }
  return sources;
}

TEST(Floors, NoFileIncludesUpward) {
  const std::regex include("^\\s*#include \"([^\"]+)\"");
  int seen = 0;
  for (const Source& source : Sources()) {
    for (const std::string& line : source.lines) {
      std::smatch match;
      if (!std::regex_search(line, match, include)) continue;
      const std::string included = match[1];
      ASSERT_GE(Floor(included), 0) << source.name << " includes " << included
                                    << ", which stands on no floor";
      EXPECT_GE(Floor(source.name), Floor(included)) << source.name << " includes " << included;
      const std::string own = source.name.substr(0, source.name.find('/'));
      if (Floor(source.name) == 5) {
        EXPECT_TRUE(Floor(included) < 5 || included.starts_with(own))
            << source.name << " includes another screen: " << included;
      }
      ++seen;
    }
  }
  EXPECT_GT(seen, 100);
}

// Each pattern stands only in files whose name begins with one of these.
struct Fence {
  const char* pattern;
  std::vector<const char*> allowed;
};

TEST(Floors, WhatIsFencedInStaysBehindItsFence) {
  const std::vector<Fence> fences{
      {"#include <sqlite3", {"data/sqlite/"}},
      {"#include <libpq", {"data/postgresql/"}},
      {"#include <Q[A-Z]", {"desktop/"}},
      // Whatever looks into files on its own account: the base's are the engine's alone.
      {"QFileDialog|QFileSystemModel|QFileIconProvider|QMimeDatabase|QPrintDialog|QDesktopServices|QDirModel",
       {"desktop/boxes/file_dialog.cpp"}},
      {"#include <pybind11|#include <Python", {"python/"}},
      {"system_clock|localtime", {"forms/headless_platform.cpp", "data/backup.cpp", "desktop/"}},
      {"sleep_for|usleep|nanosleep", {"desktop/", "data/sqlite/waits", "host/ordenes"}},
      {"std::cout|std::cerr|printf\\(", {"host/main", "desktop/"}},
      {"Begin\\(\\)|Transaction ", {"data/", "host/"}},
  };
  for (const Fence& fence : fences) {
    const std::regex pattern(fence.pattern);
    for (const Source& source : Sources()) {
      bool allowed = false;
      for (const char* place : fence.allowed) allowed = allowed || source.name.starts_with(place);
      if (allowed) continue;
      for (const std::string& line : source.lines) {
        EXPECT_FALSE(std::regex_search(line, pattern)) << source.name << ": " << line;
      }
    }
  }
}

// What is true of a document, a stock or a listing is asked of the host; a window shows it.
TEST(Floors, NoWindowSpeaksToTheBaseInItsOwnWords) {
  const std::regex statement(R"re("[^"]*\b(SELECT|INSERT INTO|UPDATE \w+ SET|DELETE FROM|LEFT JOIN|WHERE) )re"
                             R"re(|Dialect|Sqlite|Postgresql)re");
  int seen = 0;
  for (const Source& source : Sources()) {
    if (!source.name.starts_with("desktop/")) continue;
    for (const std::string& line : source.lines) {
      EXPECT_FALSE(std::regex_search(line, statement)) << source.name << ": " << line;
      ++seen;
    }
  }
  EXPECT_GT(seen, 1000);
}

}  // namespace
}  // namespace tarvik::tests
