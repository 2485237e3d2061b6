// What the benchmarks share: a base of their own in a folder of their own, the host on it, and the
// same engine with nothing around it.
#pragma once

#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>

#include "forms/headless_platform.h"
#include "host/anfitrion.h"

namespace tarvik::bench {

using Clock = std::chrono::steady_clock;

inline double Seconds(Clock::time_point since) {
  return std::chrono::duration<double>(Clock::now() - since).count();
}

struct Folder {
  std::filesystem::path path;
  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "tarvik-bench-XXXXXX").string();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    path = name;
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
};

// The host on a new demonstration base.
inline std::unique_ptr<host::Anfitrion> Open(const Folder& folder, forms::HeadlessPlatform& platform,
                                             host::Testigo* witness) {
  host::Opciones options;
  options.base = "sqlite:" + (folder.path / "base.db").string();
  options.usuario = "ANA";
  options.estacion = "E1";
  options.ruta = folder.path.string();
  options.demo = true;
  options.plataforma = &platform;
  options.testigo = witness;
  return std::make_unique<host::Anfitrion>(options);
}

// The engine alone, on the base that a host has left in the folder.
class BareBase {
 public:
  explicit BareBase(const Folder& folder) {
    if (sqlite3_open((folder.path / "base.db").c_str(), &db_) != SQLITE_OK)
      throw std::runtime_error("no base");
    Send("PRAGMA journal_mode=WAL");
    Send("PRAGMA synchronous=FULL");
  }
  ~BareBase() { sqlite3_close(db_); }
  BareBase(const BareBase&) = delete;
  BareBase& operator=(const BareBase&) = delete;

  // Prepared, stepped to the end with every column read, finalised.
  void Send(const std::string& text) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, text.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      throw std::runtime_error(text + ": " + sqlite3_errmsg(db_));
    }
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int column = 0; column < sqlite3_column_count(statement); ++column) {
        read_ += static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
      }
    }
    sqlite3_finalize(statement);
  }
  [[nodiscard]] std::size_t BytesRead() const { return read_; }

 private:
  sqlite3* db_ = nullptr;
  std::size_t read_ = 0;
};

}  // namespace tarvik::bench
