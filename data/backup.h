// The copy that is made of a base before it is brought to a newer version. It makes the copy
// and checks it; whether one is needed is decided in upgrade.cpp.
#pragma once

#include <memory>
#include <string>

#include "data/engine.h"

namespace tarvik::data {

// A copy that was made. It is deleted with this object unless it is kept: an upgrade that did not happen
// leaves nothing behind.
class Backup {
 public:
  virtual ~Backup() = default;
  Backup(const Backup&) = delete;
  Backup& operator=(const Backup&) = delete;

  // Where it is: a file, or a schema of the server.
  [[nodiscard]] const std::string& Where() const { return where_; }
  void Keep() { kept_ = true; }

 protected:
  explicit Backup(std::string where) : where_(std::move(where)) {}
  std::string where_;
  bool kept_ = false;
};

// The file of an embedded base; empty for one in memory, and for a server.
std::string FileOf(EngineConnection& connection);

// Copies the whole base. An embedded one goes into a file beside it, for its owner and group alone, named
// like tienda.db.v2-20241105-140322.respaldo. Another connection copies it, so that the caller may hold the
// write lock; the copy is opened and checked. On a server the tables go into a schema named like
// respaldo_v2_20241105_140322, as they are at one instant, in a transaction of this call.
// Gives nothing for a base in memory. Throws Error, with nothing left behind, if it can't be made.
std::unique_ptr<Backup> BackUp(EngineConnection& connection, int version);

// The system's user to whom a file belongs; its number where that has no name, empty if there is no file.
// `is_us` tells whether it is who runs this program.
std::string OwnerOf(const std::string& file, bool& is_us);

}  // namespace tarvik::data
