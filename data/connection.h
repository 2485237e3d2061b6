// Connection: what the suite's procedures see of a database. Two calls, one statement each.
// There is no transaction here: each statement of the suite stands by itself.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/value.h"

namespace tarvik::data {

class EngineConnection;

// A whole result: read before the call returns, so that walking it holds no lock and cannot fail.
struct Rows {
  std::vector<std::string> columns;      // as the engine names them
  std::vector<std::vector<Value>> rows;  // each as long as columns
};

class Connection {
 public:
  virtual ~Connection() = default;

  // Runs one SELECT and gives its rows, none of them being an ordinary answer.
  // Throws Error, before the engine sees the text, for anything but exactly one SELECT: a second
  // statement, an open quote, a comment mark outside quoted text, invalid UTF-8.
  // Throws Error with the engine's reason if it fails there.
  virtual Rows Select(std::string_view text) = 0;

  // Runs one statement of any kind under the same rules. A SELECT gives its rows; others give none.
  // "exec NAME 'a','b'" runs a procedure of the engine, or one that the host registered by name.
  virtual Rows Execute(std::string_view text) = 0;

  // The engine's own connection behind this one. For the host's services, which number, look up
  // and post with bound parameters; the suite's procedures never ask for it.
  virtual EngineConnection& Engine() = 0;
};

}  // namespace tarvik::data
