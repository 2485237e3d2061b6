// Connection: what the suite's procedures see of a database. Two calls, one statement each.
// There is no transaction here: each statement of the suite is on its own, and is committed once its call
// has returned. A program with a base of its own implements this class and no other of data/.
//
// The statements are plain SQL on the tables of docs/schema.md: SELECT with INNER JOIN, SUM and GROUP BY;
// INSERT and UPDATE as the program's own service::Query writes them; DELETE; "exec" of a procedure. Names
// come in any mixture of capitals. What an operator typed is in them unchanged, which is why an
// implementation lets one statement through and no more: RequireOneStatement of data/statement.h tells.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/value.h"

namespace tarvik::data {

// A whole result: read before the call returns, so that walking it holds no lock and cannot fail.
struct Rows {
  std::vector<std::string> columns;  // as the engine names them; read without regard to case
  // Each as long as columns. NULL is a null value, a flag 1 or 0, a date a Date or a text "2024-03-05".
  std::vector<std::vector<Value>> rows;
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
};

}  // namespace tarvik::data
