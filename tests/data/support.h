// What several tests of this floor use: a folder of its own for one test, removed at its end with
// all that is in it; files read and written whole; the text of an expected error.
#pragma once

#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "data/error.h"

namespace tarvik::tests {

class TempFolder {
 public:
  TempFolder() {
    static std::atomic<int> count = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("tarvik-data-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  [[nodiscard]] std::string File(const std::string& name) const { return (path_ / name).string(); }
  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

inline std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

// The description of the Error that a call throws; "no error" if it throws none.
template <class Call>
std::string ErrorOf(Call&& call) {
  try {
    call();
  } catch (const data::Error& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace tarvik::tests
