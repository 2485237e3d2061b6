// The embedded engine over its C library. One connection is one handle of the library; the whole
// result of a statement is read before a call returns, so no statement stays open between calls.
#include "data/sqlite/sqlite_engine.h"

#include <sqlite3.h>

#include <mutex>
#include <set>
#include <utility>

#include "data/error.h"
#include "data/number.h"
#include "data/select.h"
#include "data/sqlite/guard.h"
#include "data/sqlite/handle.h"
#include "data/sqlite/kept_statements.h"
#include "data/sqlite/side_file.h"
#include "data/sqlite/values.h"
#include "data/sqlite/waits.h"
#include "data/statement.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

using namespace sqlite;

// Lives on bases in memory, which no other process sees: by the base's own name, and the number.
class LivesInMemory {
 public:
  static LivesInMemory& Of() {
    static LivesInMemory lives;
    return lives;
  }
  bool Begin(const std::string& base, std::int64_t number) {
    const std::lock_guard only(lock_);
    return lives_.insert({base, number}).second;
  }
  void End(const std::string& base, std::int64_t number) {
    const std::lock_guard only(lock_);
    lives_.erase({base, number});
  }
  bool Has(const std::string& base, std::int64_t number) {
    const std::lock_guard only(lock_);
    return lives_.contains({base, number});
  }

 private:
  std::mutex lock_;
  std::set<std::pair<std::string, std::int64_t>> lives_;
};

class SqliteConnection final : public EngineConnection {
 public:
  SqliteConnection(Handle handle, const Place& place)
      : place_(place),
        side_(place.file),
        waits_(Waiting(), LineOf(handle.get(), place)),
        handle_(std::move(handle)) {
    waits_.Watch(handle_.get());
    guard_.Watch(handle_.get());
  }
  ~SqliteConnection() override { SqliteConnection::Close(); }
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;

  Rows Select(std::string_view text) override {
    const TakenApart statement(text);
    RequireOneStatement(statement);
    if (!IsSelect(text)) {
      throw Error("Sólo se puede consultar con una sentencia SELECT").With("sentencia", std::string(text));
    }
    return RunAsked(statement);
  }

  Rows Execute(std::string_view text) override {
    RequireOpen();
    const TakenApart statement(text);
    RequireOneStatement(statement);
    if (const auto call = ParseExec(statement)) {
      const Procedure* found = Find(call->name);
      if (found == nullptr) {
        throw Error("No existe el procedimiento " + call->name).With("sentencia", std::string(text));
      }
      const Procedure procedure = *found;  // it may register another under its own name
      const InProcedure within(procedures_);
      procedure(*this, call->arguments);
      return {};
    }
    return RunAsked(statement);
  }

  Rows Run(std::string_view text, std::span<const Value> values) override {
    if (cache_.Holds(text)) return RunChecked(text, values, false);  // it has passed the gate
    const TakenApart statement(text);
    RequireOneStatement(statement);
    return RunChecked(text, values, false, &statement);
  }

  void Define(const std::string& text) override {
    RequireOpen();
    Plain(text.c_str(), !InTransaction());
  }

  std::int64_t Changes() override {
    const Rows rows = RunChecked("PRAGMA data_version", {}, false, nullptr, true);
    return static_cast<std::int64_t>(ToNumber(rows.rows.at(0).at(0)));
  }
  void Notify() override {}  // every commit shows in the file

  void Live(std::int64_t number) override {
    RequireOpen();
    if (number == life_) return;
    if (number < 1 || number >= kFirstTicket) {
      throw Error("El número " + std::to_string(number) + " no puede ser el de una vida");
    }
    if (!place_.in_memory && !side_.OpenToLock()) {
      throw Error("No se puede anotar quién trabaja en la base; no se puede escribir " +
                  RepairUtf8(side_.Path()) + ": " + side_.Reason());
    }
    const bool taken =
        place_.in_memory ? !LivesInMemory::Of().Begin(place_.file, number) : !side_.Hold(number);
    if (taken) {
      const std::string why =
          place_.in_memory || side_.Reason().empty() ? "ya lo tiene otro" : side_.Reason();
      throw Error("No se puede anotar quién trabaja en la base, con el número " + std::to_string(number) +
                  ": " + why);
    }
    EndLife();
    life_ = number;
  }
  bool Lives(std::int64_t number) override {
    RequireOpen();
    if (number < 1 || number >= kFirstTicket) return false;
    if (number == life_) return true;
    if (place_.in_memory) return LivesInMemory::Of().Has(place_.file, number);
    return side_.OpenToLook() && side_.HeldByOther(number, number + 1).has_value();
  }

  void Begin() override {
    RequireOpen();
    if (sqlite3_get_autocommit(handle_.get()) == 0) throw Error("Ya hay una transacción abierta");
    RequireInPlace("BEGIN IMMEDIATE");
    Plain("BEGIN IMMEDIATE", true);
  }
  void Commit() override {
    RequireOpen();
    // The engine ends a transaction by itself when the disk is full or fails.
    if (sqlite3_get_autocommit(handle_.get()) != 0) throw Error("No hay una transacción abierta");
    Plain("COMMIT", false);
  }
  void Rollback() noexcept override {
    if (handle_ != nullptr && sqlite3_get_autocommit(handle_.get()) == 0) RunPlain(handle_.get(), "ROLLBACK");
  }

  [[nodiscard]] bool InTransaction() const override {
    return handle_ != nullptr && sqlite3_get_autocommit(handle_.get()) == 0;
  }

  void Close() noexcept override {
    EndLife();
    cache_ = {};
    fenced_cache_ = {};
    handle_.reset();
    side_.Close();
  }

  [[nodiscard]] Dialect Kind() const override { return Dialect::Sqlite; }

  std::vector<std::string> Columns(std::string_view table) override {
    std::vector<std::string> names;
    const Value name = std::string(table);
    const Rows rows = Run("SELECT name FROM pragma_table_info(?)", {&name, 1});
    for (const auto& row : rows.rows) {
      names.push_back(LowerAscii(ToText(row[0])));
    }
    return names;
  }

 private:
  // What a procedure sends is its own, whoever called it.
  class InProcedure {
   public:
    explicit InProcedure(int& depth) : depth_(depth) { ++depth_; }
    ~InProcedure() { --depth_; }
    InProcedure(const InProcedure&) = delete;
    InProcedure& operator=(const InProcedure&) = delete;

   private:
    int& depth_;
  };

  SideFile* LineOf(sqlite3* handle, const Place& place) {
    return place.in_memory || sqlite3_db_readonly(handle, "main") != 0 ? nullptr : &side_;
  }

  void RequireOpen() const {
    if (handle_ == nullptr) throw Error("La base está cerrada");
  }

  void EndLife() noexcept {
    if (life_ == 0) return;
    if (place_.in_memory) {
      LivesInMemory::Of().End(place_.file, life_);
    } else {
      side_.LetGo(life_);
    }
    life_ = 0;
  }

  // The engine would go on writing into a file that has lost its name, and nobody would see it.
  void RequireInPlace(std::string_view text) {
    int moved = 0;
    if (sqlite3_file_control(handle_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK &&
        moved != 0) {
      throw Error("El archivo de la base fue movido o borrado: " + place_.name)
          .With("sentencia", std::string(text));
    }
  }

  // One call of the engine, again and again while the base is busy and there is patience. Inside a unit of
  // work that has already read there is no asking again: what it has read no longer holds.
  template <class Call>
  int Patiently(bool writes, Call call) {
    Waits::Turn turn(waits_, writes);
    for (;;) {
      const int code = call();
      if (!IsBusy(code)) {
        if (code == SQLITE_OK || code == SQLITE_ROW || code == SQLITE_DONE) turn.Through();
        return code;
      }
      if (sqlite3_txn_state(handle_.get(), "main") == SQLITE_TXN_READ && InTransaction()) return code;
      if (!waits_.Again()) return code;
    }
  }

  void Plain(const char* text, bool writes) {
    const int code = Patiently(writes, [&] {
      const int failed = RunPlain(handle_.get(), text);
      return failed == SQLITE_OK ? failed : sqlite3_extended_errcode(handle_.get());
    });
    if (code != SQLITE_OK) Fail(handle_.get(), code, text);
  }

  Statement Prepare(StatementCache& cache, std::string_view written, const TakenApart* parts) {
    if (Statement kept = cache.Take(written)) return kept;
    const std::string text = parts != nullptr ? InReadingOrder(*parts) : std::string(written);
    Statement statement;
    const char* tail = nullptr;
    const int code = Patiently(false, [&] {
      sqlite3_stmt* prepared = nullptr;
      const int failed = sqlite3_prepare_v3(handle_.get(), text.data(), static_cast<int>(text.size()),
                                            SQLITE_PREPARE_PERSISTENT, &prepared, &tail);
      statement.reset(prepared);
      return failed;
    });
    if (code != SQLITE_OK) Fail(handle_.get(), code, written);
    const std::string_view rest = std::string_view(text).substr(static_cast<std::size_t>(tail - text.data()));
    if (statement == nullptr || rest.find_first_not_of(" \t\r\n\f\v;") != std::string_view::npos) {
      throw Error("La sentencia contiene otra detrás de un punto y coma")
          .With("sentencia", std::string(written));
    }
    return statement;
  }

  // What comes from above, inside a Fence or not.
  Rows RunAsked(const TakenApart& statement) {
    const bool fenced = Fenced() && procedures_ == 0;
    if (fenced) RequireHarmless(statement);
    return RunChecked(statement.text, {}, fenced, &statement);
  }

  void Bind(sqlite3_stmt* statement, std::string_view text, std::span<const Value> values) {
    const int expected = sqlite3_bind_parameter_count(statement);
    if (static_cast<std::size_t>(expected) != values.size()) {
      throw Error("La sentencia espera " + std::to_string(expected) + " valores y recibió " +
                  std::to_string(values.size()))
          .With("sentencia", std::string(text));
    }
    for (int i = 0; i < expected; ++i) {
      const int code = values[static_cast<std::size_t>(i)].Visit(Binder{statement, i + 1});
      if (code != SQLITE_OK) Fail(handle_.get(), code, text);
    }
  }

  // `parts`: the text taken apart, unless it is a kept one or needs no order of rows. `own`: a look at the
  // file's head, which nobody asked for.
  Rows RunChecked(std::string_view text, std::span<const Value> values, bool fenced,
                  const TakenApart* parts = nullptr, bool own = false) {
    RequireOpen();
    if (text.size() > static_cast<std::size_t>(sqlite3_limit(handle_.get(), SQLITE_LIMIT_SQL_LENGTH, -1))) {
      throw Error("La sentencia es demasiado grande");
    }
    RequireInPlace(text);
    const std::chrono::milliseconds limit{fenced && IsSelect(text) ? SelectLimit().count() : 0};
    const sqlite::Guard::Watched watched(guard_, fenced, limit);
    // What was prepared outside a fence has not been asked about, so it is not run inside.
    StatementCache& cache = fenced ? fenced_cache_ : cache_;
    const InUse use(cache, text, Prepare(cache, text, parts));
    sqlite3_stmt* statement = use.Get();
    Bind(statement, text, values);

    int code = SQLITE_OK;
    const bool changes = sqlite3_stmt_readonly(statement) == 0;
    if (!own) NoteSent(changes);
    const bool writes = changes && !InTransaction();
    code = Patiently(writes, [&] {
      const int stepped = sqlite3_step(statement);
      if (IsBusy(stepped)) sqlite3_reset(statement);
      return stepped;
    });
    Rows rows;
    if (code == SQLITE_ROW || code == SQLITE_DONE) code = ReadRows(statement, code, rows);
    if (code == SQLITE_INTERRUPT && watched.TimeUp()) FailAsSlow(limit, text);
    if (code != SQLITE_DONE) Fail(handle_.get(), code, text);
    return rows;
  }

  [[noreturn]] static void FailAsSlow(std::chrono::milliseconds limit, std::string_view text) {
    const double seconds = static_cast<double>(limit.count()) / 1000;
    throw Error("La consulta tardó más de " + PlainNumber(seconds) +
                    (seconds == 1 ? " segundo" : " segundos") + " y se detuvo",
                Trouble::kSlow)
        .With("sentencia", std::string(text));
  }

  // Reads from after the first step on, until there is no further row; gives what ended it. The columns are
  // asked for here: only after the first step has the engine noticed that another connection changed the
  // table.
  static int ReadRows(sqlite3_stmt* statement, int code, Rows& rows) {
    std::vector<bool> dates;
    const int columns = sqlite3_column_count(statement);
    for (int i = 0; i < columns; ++i) {
      rows.columns.emplace_back(sqlite3_column_name(statement, i));
      const char* type = sqlite3_column_decltype(statement, i);
      dates.push_back(type != nullptr && EqualsNoCase(type, "DATE"));
    }
    for (; code == SQLITE_ROW; code = sqlite3_step(statement)) {
      std::vector<Value>& row = rows.rows.emplace_back();
      row.reserve(rows.columns.size());
      for (std::size_t i = 0; i < dates.size(); ++i) {
        row.push_back(ReadColumn(statement, static_cast<int>(i), dates[i]));
      }
    }
    return code;
  }

  Place place_;
  SideFile side_;
  Waits waits_;
  sqlite::Guard guard_;
  Handle handle_;  // closed last but for those that it asks: the statements go first
  StatementCache cache_;
  StatementCache fenced_cache_;
  std::int64_t life_ = 0;
  int procedures_ = 0;  // of those that are running now
};

class SqliteBase final : public Base {
 public:
  SqliteBase(std::string address, Place place) : address_(std::move(address)), place_(std::move(place)) {
    Handle first = OpenHandle(place_);
    if (place_.in_memory) anchor_ = std::move(first);
  }

  std::unique_ptr<EngineConnection> Connect() override {
    return std::make_unique<SqliteConnection>(OpenHandle(place_), place_);
  }
  [[nodiscard]] std::string Address() const override { return address_; }

 private:
  std::string address_;
  Place place_;
  Handle anchor_;  // keeps a base in memory alive between its connections
};

}  // namespace

std::unique_ptr<Base> OpenSqlite(std::string_view address) {
  return std::make_unique<SqliteBase>(std::string(address), FindPlace(address.substr(kSqliteScheme.size())));
}

}  // namespace tarvik::data
