// Engines: what a database engine supplies, and how a base is found by its address.
// Nothing above data/ includes an engine's own header.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/connection.h"
#include "data/patience.h"

namespace tarvik::data {

enum class Dialect { Sqlite, Postgresql };

// What a connection has sent.
struct Traffic {
  std::int64_t statements = 0;
  std::int64_t changes = 0;  // of these, the ones that may have changed something
};

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

  // A statement of the schema's own, such as a trigger whose body has semicolons: it passes no gate. Never
  // for a text that anybody typed. Throws Error as Execute() does.
  virtual void Define(const std::string& text) = 0;

  // For the host's services, never for a screen: a unit that holds whole or not at all. See Transaction.
  // Begin makes no other unit wait on a server, where rows are locked one by one: whoever takes several
  // takes them in the order of their keys. The embedded engine has one writer; there it takes the write
  // lock at once and throws Error (kBusy) if another holds it too long.
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

  // A number that has changed once others have committed something. On a server it costs no statement, and
  // counts only what Notify() has told. For whoever must notice soon without asking at every key.
  virtual std::int64_t Changes() = 0;
  // Tells the other connections of the base that something they should look at was written; with the unit
  // that is open, or at once. Needed on a server only.
  virtual void Notify() = 0;

  // A sign of life that ends with this connection: to anybody else Lives(number) is true as long as this
  // process and its session exist, however they end. One number for each connection; the caller draws it,
  // never twice in a base. When a server's session is made again it is set again too. Throws Error if it
  // can't be set.
  virtual void Live(std::int64_t number) = 0;
  [[nodiscard]] virtual bool Lives(std::int64_t number) = 0;

  // What it has sent so far.
  [[nodiscard]] const Traffic& SoFar() const { return traffic_; }

  // How this connection waits for a base that is busy or away.
  [[nodiscard]] Patience& Waiting() { return patience_; }

  // Registers a procedure; a later one of the same name (without regard to case) replaces it.
  void Register(std::string_view name, Procedure procedure);

 protected:
  // The registered procedure, or nullptr.
  [[nodiscard]] const Procedure* Find(std::string_view name) const;
  // Inside a Fence, and the time that one of its SELECTs may take; nothing: as long as it takes.
  [[nodiscard]] bool Fenced() const { return fences_ > 0; }
  [[nodiscard]] std::chrono::milliseconds SelectLimit() const { return select_limit_; }

  // Called by the engine for each statement that it is about to send.
  void NoteSent(bool changes) {
    ++traffic_.statements;
    if (changes) ++traffic_.changes;
  }

 private:
  friend class Fence;

  std::map<std::string, Procedure, std::less<>> procedures_;
  Patience patience_;
  Traffic traffic_;
  int fences_ = 0;
  std::chrono::milliseconds select_limit_{0};
};

// While it lives, the connection's Select and Execute take only what a screen may build from typed text: no
// second SELECT inside, and no function but the few harmless ones (see RequireHarmless). A SELECT that takes
// longer than `limit` is stopped and throws Error (kSlow). "exec" of a procedure is not restricted, nor is
// Run(), which is the host's own.
class Fence {
 public:
  Fence(EngineConnection& connection, std::chrono::milliseconds limit)
      : connection_(connection), before_(connection.select_limit_) {
    ++connection_.fences_;
    connection_.select_limit_ = limit;
  }
  ~Fence() {
    --connection_.fences_;
    connection_.select_limit_ = before_;
  }
  Fence(const Fence&) = delete;
  Fence& operator=(const Fence&) = delete;

 private:
  EngineConnection& connection_;
  std::chrono::milliseconds before_;
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
