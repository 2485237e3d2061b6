// Finding the engine for an address, and the procedures that a connection knows by name.
// What an engine does with a statement is in its own folder.
#include "data/engine.h"

#include <array>

#include "data/error.h"
#include "data/postgresql/postgresql_engine.h"
#include "data/sqlite/sqlite_engine.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

struct KnownEngine {
  std::string_view scheme;
  std::unique_ptr<Base> (*open)(std::string_view address);
};

constexpr std::array kEngines = {KnownEngine{kSqliteScheme, &OpenSqlite},
                                 KnownEngine{kPostgresqlScheme, &OpenPostgresql}};

}  // namespace

void EngineConnection::Register(std::string_view name, Procedure procedure) {
  procedures_.insert_or_assign(LowerAscii(name), std::move(procedure));
}

const EngineConnection::Procedure* EngineConnection::Find(std::string_view name) const {
  const auto found = procedures_.find(LowerAscii(name));
  return found == procedures_.end() ? nullptr : &found->second;
}

std::unique_ptr<Base> OpenBase(std::string_view address) {
  for (const KnownEngine& engine : kEngines) {
    if (address.substr(0, engine.scheme.size()) == engine.scheme) return engine.open(address);
  }
  // Only what is before the colon is shown: after it there may be a password.
  const std::size_t colon = address.find(':');
  if (colon == std::string_view::npos || colon == 0) {
    throw Error("La dirección de la base no dice su motor; por ejemplo, sqlite:almacen.db");
  }
  throw Error("Este programa no incluye el motor de base " + RepairUtf8(address.substr(0, colon)));
}

}  // namespace tarvik::data
