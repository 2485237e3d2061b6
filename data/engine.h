// Engines: what a database engine supplies, and how a base is found by its address.
// Nothing above data/ includes an engine's own header.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"

namespace tarvik::data {

enum class Dialect { Sqlite, Postgresql };

// A connection with what the host's services need beyond the suite's two calls.
// One thread at a time; every connection of a base sees what the others have committed.
class EngineConnection : public Connection {
 public:
  // A procedure called by "exec NAME 'a','b'": gets the arguments as texts, without their quotes.
  using Procedure = std::function<void(EngineConnection&, const std::vector<std::string>&)>;

  // Runs one statement with a "?" for each value, on every engine. Gives the rows, if any.
  // Throws Error as Execute() does, and when the number of values differs.
  virtual Rows Run(std::string_view text, std::span<const Value> values) = 0;
  Rows Run(std::string_view text, std::initializer_list<Value> values) {
    return Run(text, std::span<const Value>(values.begin(), values.size()));
  }

  // For the host's posting only: a unit that holds whole or not at all. See Transaction.
  // Begin takes the write lock at once and throws Error if another holds it too long.
  virtual void Begin() = 0;
  virtual void Commit() = 0;
  virtual void Rollback() noexcept = 0;
  // Whether such a unit is open: this one's, or one that a statement began.
  [[nodiscard]] virtual bool InTransaction() const = 0;

  // Lets go of the base. Every later use throws Error; closing again does nothing.
  virtual void Close() noexcept = 0;

  [[nodiscard]] virtual Dialect Kind() const = 0;
  // Column names of a table in lower case, in order; empty if there is no such table.
  virtual std::vector<std::string> Columns(std::string_view table) = 0;

  // Registers a procedure; a later one of the same name (without regard to case) replaces it.
  void Register(std::string_view name, Procedure procedure);

  EngineConnection& Engine() override { return *this; }

 protected:
  // The registered procedure, or nullptr.
  [[nodiscard]] const Procedure* Find(std::string_view name) const;

 private:
  std::map<std::string, Procedure, std::less<>> procedures_;
};

// Rolls back at the end of its scope unless Commit() was called and returned.
class Transaction {
 public:
  explicit Transaction(EngineConnection& connection) : connection_(connection) { connection_.Begin(); }
  ~Transaction() {
    if (open_) connection_.Rollback();
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit() {
    connection_.Commit();
    open_ = false;
  }

 private:
  EngineConnection& connection_;
  bool open_ = true;
};

// A database by its address. Connections that it gives outlive it, except of "sqlite::memory:",
// which is one base for all connections of this object and ends with the last of them.
class Base {
 public:
  virtual ~Base() = default;
  // Opens one more connection. Throws Error if the engine refuses.
  virtual std::unique_ptr<EngineConnection> Connect() = 0;
  // The address as it was given, without a password: for the status line.
  [[nodiscard]] virtual std::string Address() const = 0;
};

// "sqlite:PATH" (the file is created if missing, its folder is not), "sqlite::memory:", or
// "postgresql://...". Throws Error, with nothing written, for an address that no engine of this
// build serves, a file that cannot be opened, and a file that is no database.
std::unique_ptr<Base> OpenBase(std::string_view address);

}  // namespace tarvik::data
