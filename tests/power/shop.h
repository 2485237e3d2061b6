// A shop on a disk of the tests' own: its base, its host, and an operator who receives and sends goods by
// keyboard. And what the books of its base say, behind whatever happened to the disk.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

#include "data/engine.h"
#include "tests/data/support.h"
#include "tests/goods_out/support.h"
#include "tests/power/disk.h"

namespace tarvik::tests {

// The host and the operator's hands, on a base of this path. A disk is in place.
class Shop {
 public:
  Shop(const std::string& path, const TempFolder& folder);
  ~Shop();
  Shop(const Shop&) = delete;
  Shop& operator=(const Shop&) = delete;

  // The catalogue of the usual shop, on a base that has none.
  void Catalogue();
  // A goods-in of so many lines, posted; a screen that could not be opened or would not close is left.
  void Receives(int lines = 3);
  // A goods-out of so many lines, posted.
  void Sends(int lines = 2);

  // The reports of failed steps, each without its first line's time.
  [[nodiscard]] std::vector<std::string> Reports() const;
  [[nodiscard]] data::EngineConnection& Connection() { return host_->Conexion(); }
  Bitacora record;

 private:
  forms::HeadlessPlatform platform_;
  std::unique_ptr<host::Anfitrion> host_;
  std::unique_ptr<EntradasSalidas> movements_;
};

// Every row of every table, as one text. Two bases with the same text hold the same.
std::string Books(sqlite3* handle);
std::string Books(const std::string& path);
// What is wrong with a base by its engine and by its books: stock apart from the ledger. Empty if it is
// sound.
std::string Unsound(data::EngineConnection& connection);

// What the base held after each commit, and how far the disk had come when that commit was acknowledged.
struct Commit {
  std::size_t acts;
  std::string books;
};

// While it lives, it listens to every connection that is opened from then on, once it is told to begin.
class Commits {
 public:
  // With so many pages in the log its contents are taken over into the base; the engine's own figure is 1000.
  Commits(const Disk& disk, int pages);
  ~Commits();
  Commits(const Commits&) = delete;
  Commits& operator=(const Commits&) = delete;

  void Begin(const std::string& path);
  [[nodiscard]] const std::vector<Commit>& All() const { return all_; }

 private:
  static int Opened(sqlite3* handle, const char** error, const void* api);
  static int Closed(unsigned what, void* self, void* handle, void*);
  static int Committed(void* self, sqlite3* handle, const char* base, int pages);

  const Disk& disk_;
  int pages_;
  std::vector<sqlite3*> open_;
  std::vector<Commit> all_;
};

}  // namespace tarvik::tests
