// The embedded engine over its C library. One connection is one handle of the library; the whole
// result of a statement is read before a call returns, so no statement stays open between calls.
#include "data/sqlite/sqlite_engine.h"

#include <sqlite3.h>

#include <atomic>
#include <filesystem>
#include <list>
#include <mutex>
#include <optional>
#include <set>
#include <system_error>
#include <unordered_map>

#include "data/error.h"
#include "data/statement.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

constexpr int kBusyTimeout = 5000;           // milliseconds
constexpr std::size_t kKeptStatements = 64;  // prepared ones that a connection keeps
constexpr std::size_t kKeptLength = 4096;    // a longer text is not likely to come again

struct CloseHandle {
  void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
};
using Handle = std::unique_ptr<sqlite3, CloseHandle>;

struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

// What the operator can make sense of; the engine's own text follows it.
std::string_view Reason(int code, std::string_view engine_text) {
  switch (code) {
    case SQLITE_CONSTRAINT_FOREIGNKEY:
      return "El registro depende de otro que no existe o del que otros dependen";
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return "Ya existe un registro con esa clave";
    case SQLITE_CONSTRAINT_NOTNULL:
      return "Falta un dato obligatorio";
    case SQLITE_READONLY_DBMOVED:
      return "El archivo de la base fue movido o borrado";
    default:
      break;
  }
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "La base está ocupada por otro proceso";
    case SQLITE_FULL:
      return "El disco está lleno";
    case SQLITE_READONLY:
      return "La base es de sólo lectura";
    case SQLITE_IOERR:
      return "No se puede leer o escribir el archivo de la base";
    case SQLITE_CANTOPEN:
      return "No se puede abrir el archivo de la base";
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return "No hay permiso para usar la base";
    case SQLITE_CORRUPT:
      return "La base está dañada";
    case SQLITE_NOTADB:
      return "El archivo no es una base de datos";
    case SQLITE_NOMEM:
      return "No hay memoria suficiente";
    case SQLITE_TOOBIG:
      return "El dato o la sentencia es demasiado grande";
    case SQLITE_MISMATCH:
      return "El dato no es del tipo de la columna";
    case SQLITE_CONSTRAINT:
      return "El registro no cumple una regla de la base";
    default:
      break;
  }
  if (engine_text.find("no such table") != std::string_view::npos) return "La tabla no existe";
  if (engine_text.find("no such column") != std::string_view::npos ||
      engine_text.find("has no column named") != std::string_view::npos) {
    return "La columna no existe";
  }
  return "La base rechazó la sentencia";
}

Trouble TroubleOf(int code) {
  switch (code) {
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return Trouble::kDuplicate;
    default:
      break;
  }
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return Trouble::kBusy;
    case SQLITE_INTERRUPT:
      return Trouble::kSlow;
    default:
      return Trouble::kOther;
  }
}

[[noreturn]] void Fail(sqlite3* handle, int code, std::string_view text) {
  const std::string engine_text = RepairUtf8(sqlite3_errmsg(handle));
  const std::string description = std::string(Reason(code, engine_text)) + ": " + engine_text;
  throw Error(description, TroubleOf(code)).With("sentencia", std::string(text));
}

// Runs a statement of the engine's own house-keeping, whose rows don't matter.
int RunPlain(sqlite3* handle, const char* text) {
  return sqlite3_exec(handle, text, nullptr, nullptr, nullptr);
}

// Prepared statements by their text, the latest used first.
class StatementCache {
 public:
  // Takes a statement out; nothing if it is not held.
  Statement Take(std::string_view text) {
    const auto found = by_text_.find(text);
    if (found == by_text_.end()) return nullptr;
    const auto entry = found->second;
    Statement statement = std::move(entry->statement);
    by_text_.erase(found);
    entries_.erase(entry);
    return statement;
  }
  void Keep(std::string_view text, Statement statement) {
    if (text.size() > kKeptLength) return;
    entries_.push_front({std::string(text), std::move(statement)});
    by_text_[entries_.front().text] = entries_.begin();
    if (entries_.size() <= kKeptStatements) return;
    by_text_.erase(entries_.back().text);
    entries_.pop_back();
  }

 private:
  struct Entry {
    std::string text;
    Statement statement;
  };
  std::list<Entry> entries_;
  std::unordered_map<std::string_view, std::list<Entry>::iterator> by_text_;
};

// Hands a statement back to the cache, unlocked and without values, however its use ends.
class InUse {
 public:
  InUse(StatementCache& cache, std::string_view text, Statement statement)
      : cache_(cache), text_(text), statement_(std::move(statement)) {}
  InUse(const InUse&) = delete;
  InUse& operator=(const InUse&) = delete;
  ~InUse() {
    sqlite3_reset(statement_.get());
    sqlite3_clear_bindings(statement_.get());
    try {
      cache_.Keep(text_, std::move(statement_));
    } catch (const std::bad_alloc&) {  // the statement is prepared again next time
    }
  }
  [[nodiscard]] sqlite3_stmt* Get() const { return statement_.get(); }

 private:
  StatementCache& cache_;
  std::string_view text_;
  Statement statement_;
};

struct Binder {
  sqlite3_stmt* statement;
  int position;

  int operator()(std::monostate) const { return sqlite3_bind_null(statement, position); }
  int operator()(std::int64_t number) const { return sqlite3_bind_int64(statement, position, number); }
  int operator()(double number) const { return sqlite3_bind_double(statement, position, number); }
  int operator()(const std::string& text) const { return Text(text); }
  int operator()(const Date& date) const { return Text(date.Iso()); }
  int operator()(const DateTime& when) const { return Text(when.Iso()); }

 private:
  [[nodiscard]] int Text(const std::string& text) const {
    return sqlite3_bind_text64(statement, position, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  }
};

Value FromText(std::string text, bool date_column) {
  if (date_column) {
    if (text.size() == 10) {
      if (const auto date = Date::Parse(text)) return *date;
    } else if (const auto when = DateTime::Parse(text)) {
      return *when;
    }
  }
  return ValidUtf8(text) ? std::move(text) : RepairUtf8(text);
}

Value ReadColumn(sqlite3_stmt* statement, int column, bool date_column) {
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER:
      return static_cast<std::int64_t>(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement, column);
    default: {
      const void* bytes = sqlite3_column_blob(statement, column);
      const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
      return FromText(size == 0 ? std::string() : std::string(static_cast<const char*>(bytes), size),
                      date_column);
    }
  }
}

class SqliteConnection final : public EngineConnection {
 public:
  SqliteConnection(Handle handle, std::string place) : handle_(std::move(handle)), place_(std::move(place)) {}
  ~SqliteConnection() override { SqliteConnection::Close(); }
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;

  Rows Select(std::string_view text) override {
    RequireOneStatement(text);
    if (!IsSelect(text)) {
      throw Error("Sólo se puede consultar con una sentencia SELECT").With("sentencia", std::string(text));
    }
    return RunChecked(text, {});
  }

  Rows Execute(std::string_view text) override {
    RequireOpen();
    RequireOneStatement(text);
    if (const auto call = ParseExec(text)) {
      const Procedure* found = Find(call->name);
      if (found == nullptr) {
        throw Error("No existe el procedimiento " + call->name).With("sentencia", std::string(text));
      }
      const Procedure procedure = *found;  // it may register another under its own name
      procedure(*this, call->arguments);
      return {};
    }
    return RunChecked(text, {});
  }

  Rows Run(std::string_view text, std::span<const Value> values) override {
    RequireOneStatement(text);
    return RunChecked(text, values);
  }

  void Define(const std::string& text) override {
    RequireOpen();
    Plain(text.c_str());
  }

  std::int64_t Changes() override {
    const Rows rows = RunChecked("PRAGMA data_version", {});
    return static_cast<std::int64_t>(ToNumber(rows.rows.at(0).at(0)));
  }
  void Notify() override {}  // every commit shows in the file

  void Live(std::int64_t number) override {
    RequireOpen();
    const std::lock_guard only(Lives_().lock);
    Lives_().numbers.insert({place_, number});
    life_ = number;
  }
  bool Lives(std::int64_t number) override {
    const std::lock_guard only(Lives_().lock);
    return Lives_().numbers.contains({place_, number});
  }

  void Begin() override {
    RequireOpen();
    if (sqlite3_get_autocommit(handle_.get()) == 0) throw Error("Ya hay una transacción abierta");
    RequireInPlace("BEGIN IMMEDIATE");
    Plain("BEGIN IMMEDIATE");
  }
  void Commit() override {
    RequireOpen();
    // The engine ends a transaction by itself when the disk is full or fails.
    if (sqlite3_get_autocommit(handle_.get()) != 0) throw Error("No hay una transacción abierta");
    Plain("COMMIT");
  }
  void Rollback() noexcept override {
    if (handle_ != nullptr && sqlite3_get_autocommit(handle_.get()) == 0) RunPlain(handle_.get(), "ROLLBACK");
  }

  [[nodiscard]] bool InTransaction() const override {
    return handle_ != nullptr && sqlite3_get_autocommit(handle_.get()) == 0;
  }

  void Close() noexcept override {
    if (life_ != 0) {
      const std::lock_guard only(Lives_().lock);
      Lives_().numbers.erase({place_, std::exchange(life_, 0)});
    }
    cache_ = {};
    handle_.reset();
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
  struct LivesOfProcess {
    std::mutex lock;
    std::set<std::pair<std::string, std::int64_t>> numbers;
  };
  static LivesOfProcess& Lives_() {
    static LivesOfProcess lives;
    return lives;
  }

  void RequireOpen() const {
    if (handle_ == nullptr) throw Error("La base está cerrada");
  }

  // The engine would go on writing into a file that has lost its name, and nobody would see it.
  void RequireInPlace(std::string_view text) {
    int moved = 0;
    if (sqlite3_file_control(handle_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK &&
        moved != 0) {
      throw Error("El archivo de la base fue movido o borrado: " + place_)
          .With("sentencia", std::string(text));
    }
  }

  void Plain(const char* text) {
    const int code = RunPlain(handle_.get(), text);
    if (code != SQLITE_OK) Fail(handle_.get(), sqlite3_extended_errcode(handle_.get()), text);
  }

  Statement Prepare(std::string_view text) {
    if (Statement kept = cache_.Take(text)) return kept;
    sqlite3_stmt* prepared = nullptr;
    const char* tail = nullptr;
    const int code = sqlite3_prepare_v3(handle_.get(), text.data(), static_cast<int>(text.size()),
                                        SQLITE_PREPARE_PERSISTENT, &prepared, &tail);
    Statement statement(prepared);
    if (code != SQLITE_OK) Fail(handle_.get(), code, text);
    const std::string_view rest = text.substr(static_cast<std::size_t>(tail - text.data()));
    if (statement == nullptr || rest.find_first_not_of(" \t\r\n\f\v;") != std::string_view::npos) {
      throw Error("La sentencia contiene otra detrás de un punto y coma")
          .With("sentencia", std::string(text));
    }
    return statement;
  }

  Rows RunChecked(std::string_view text, std::span<const Value> values) {
    RequireOpen();
    if (text.size() > static_cast<std::size_t>(sqlite3_limit(handle_.get(), SQLITE_LIMIT_SQL_LENGTH, -1))) {
      throw Error("La sentencia es demasiado grande");
    }
    RequireInPlace(text);
    const InUse use(cache_, text, Prepare(text));
    sqlite3_stmt* statement = use.Get();

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

    // The columns are asked for behind the first step: only there has the engine noticed that
    // another connection changed the table.
    int code = sqlite3_step(statement);
    Rows rows;
    std::vector<bool> dates;
    if (code == SQLITE_ROW || code == SQLITE_DONE) {
      const int columns = sqlite3_column_count(statement);
      for (int i = 0; i < columns; ++i) {
        rows.columns.emplace_back(sqlite3_column_name(statement, i));
        const char* type = sqlite3_column_decltype(statement, i);
        dates.push_back(type != nullptr && EqualsNoCase(type, "DATE"));
      }
    }
    for (; code == SQLITE_ROW; code = sqlite3_step(statement)) {
      std::vector<Value>& row = rows.rows.emplace_back();
      row.reserve(rows.columns.size());
      for (std::size_t i = 0; i < dates.size(); ++i) {
        row.push_back(ReadColumn(statement, static_cast<int>(i), dates[i]));
      }
    }
    if (code != SQLITE_DONE) Fail(handle_.get(), code, text);
    return rows;
  }

  std::int64_t life_ = 0;
  Handle handle_;  // closed last: the statements go first
  std::string place_;
  StatementCache cache_;
};

// How a base is opened, whoever asks for the connection.
struct Place {
  std::string name;  // for the operator
  std::string file;  // for the engine
  int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
  bool in_memory = false;
};

[[noreturn]] void FailToOpen(sqlite3* handle, int code, const Place& place) {
  const std::string engine_text =
      RepairUtf8(handle != nullptr ? sqlite3_errmsg(handle) : sqlite3_errstr(code));
  if ((code & 0xFF) == SQLITE_NOTADB) {
    throw Error("El archivo no es una base de datos: " + place.name).With("motor", engine_text);
  }
  std::string reason = engine_text;
  if ((code & 0xFF) == SQLITE_CANTOPEN) {
    const std::filesystem::path path(place.file);
    std::error_code failed;
    if (!std::filesystem::exists(path.parent_path(), failed)) {
      reason = "no existe la carpeta";
    } else {
      reason = std::filesystem::is_directory(path, failed) ? "es una carpeta" : "no hay permiso";
    }
  }
  throw Error("No se puede abrir la base " + place.name + ": " + reason).With("motor", engine_text);
}

// True for a base with no table at all and for one of this program. Reads the file's header, so
// this is also where a file that is no base shows.
bool IsOursOrEmpty(sqlite3* handle, const Place& place) {
  sqlite3_stmt* prepared = nullptr;
  int code = sqlite3_prepare_v2(
      handle, "SELECT count(*) = 0 OR total(lower(name) = 'version_esquema') > 0 FROM sqlite_master", -1,
      &prepared, nullptr);
  const Statement statement(prepared);
  if (code != SQLITE_OK) FailToOpen(handle, code, place);
  code = sqlite3_step(statement.get());
  if (code != SQLITE_ROW) FailToOpen(handle, code, place);
  return sqlite3_column_int(statement.get(), 0) != 0;
}

// The engine takes a file too short for a header for an empty base, and would write over it.
void RequireRoomForHeader(const Place& place) {
  constexpr std::uintmax_t kHeader = 100;
  std::error_code failed;
  const std::uintmax_t size = place.in_memory ? 0 : std::filesystem::file_size(place.file, failed);
  if (!failed && size > 0 && size < kHeader) {
    throw Error("El archivo no es una base de datos: " + place.name);
  }
}

Handle OpenHandle(const Place& place) {
  RequireRoomForHeader(place);
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(place.file.c_str(), &opened, place.flags, nullptr);
  Handle handle(opened);
  if (code != SQLITE_OK) FailToOpen(opened, code, place);
  sqlite3_extended_result_codes(opened, 1);
  sqlite3_busy_timeout(opened, kBusyTimeout);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_ENABLE_FKEY, 1, nullptr);
  // "..." is a name and never a text, so that a mistyped name is an error.
  sqlite3_db_config(opened, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);

  const bool may_change = IsOursOrEmpty(opened, place) && sqlite3_db_readonly(opened, "main") == 0;
  if (may_change && !place.in_memory) {
    const int changed = RunPlain(opened, "PRAGMA journal_mode = WAL");
    // Busy: another connection opens the same new file and makes the same change.
    if (changed != SQLITE_OK && (changed & 0xFF) != SQLITE_BUSY) FailToOpen(opened, changed, place);
  }
  const int synced = RunPlain(opened, "PRAGMA synchronous = FULL");
  if (synced != SQLITE_OK) FailToOpen(opened, synced, place);
  return handle;
}

class SqliteBase final : public Base {
 public:
  SqliteBase(std::string address, Place place) : address_(std::move(address)), place_(std::move(place)) {
    Handle first = OpenHandle(place_);
    if (place_.in_memory) anchor_ = std::move(first);
  }

  std::unique_ptr<EngineConnection> Connect() override {
    return std::make_unique<SqliteConnection>(OpenHandle(place_), place_.name);
  }
  [[nodiscard]] std::string Address() const override { return address_; }

 private:
  std::string address_;
  Place place_;
  Handle anchor_;  // keeps a base in memory alive between its connections
};

Place FindPlace(std::string_view path) {
  Place place;
  if (path == ":memory:") {
    static std::atomic<unsigned> count = 0;
    place.name = ":memory:";
    place.file = "file:/tarvik-" + std::to_string(++count) + "?vfs=memdb";
    place.flags |= SQLITE_OPEN_URI;
    place.in_memory = true;
    return place;
  }
  if (path.empty()) throw Error("La dirección de la base no dice el archivo; por ejemplo, sqlite:almacen.db");
  if (path.find('\0') != std::string_view::npos) throw Error("La ruta de la base contiene un carácter nulo");
  place.name = RepairUtf8(path);
  // The whole path, so that it holds when the process changes its folder, and so that no name has
  // a meaning of its own for the engine.
  std::error_code failed;
  place.file = std::filesystem::absolute(std::filesystem::path(path), failed).string();
  if (failed) throw Error("No se puede abrir la base " + place.name + ": " + failed.message());
  return place;
}

}  // namespace

std::unique_ptr<Base> OpenSqlite(std::string_view address) {
  return std::make_unique<SqliteBase>(std::string(address), FindPlace(address.substr(kSqliteScheme.size())));
}

}  // namespace tarvik::data
