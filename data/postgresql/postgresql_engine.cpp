// One connection is one session of the server. A statement without values goes as it is; one with values
// is prepared once and kept. Both by the protocol that takes no second statement.
#include "data/postgresql/postgresql_engine.h"

#include <libpq-fe.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <list>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "data/error.h"
#include "data/number.h"
#include "data/postgresql/dialect.h"
#include "data/statement.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

constexpr std::size_t kKeptStatements = 64;  // prepared ones that a connection keeps
constexpr const char* kConnectSeconds = "5";
// A server that did not answer is not asked again for a while: every statement of a screen would wait.
constexpr std::chrono::seconds kPatience{3};
// How long a statement waits for another station's lock, as long as for an embedded base.
constexpr const char* kSettings =
    "SET lock_timeout = 5000; SET standard_conforming_strings = on; SET datestyle = 'ISO, YMD'; "
    "SET client_min_messages = warning; SET intervalstyle = 'postgres'; SET extra_float_digits = 1; "
    "SET default_transaction_isolation = 'read committed'; LISTEN tarvik";
// The host's units of work stand in line behind this number, of our own choosing.
constexpr const char* kWriteLock = "SELECT pg_advisory_xact_lock(7402178)";

// The types of the server's catalogue; their numbers are fixed.
enum Type : Oid {
  kBool = 16,
  kInt8 = 20,
  kInt2 = 21,
  kInt4 = 23,
  kFloat4 = 700,
  kFloat8 = 701,
  kDate = 1082,
  kTimestamp = 1114,
  kTimestampZone = 1184,
  kNumeric = 1700,
};

bool IsNumber(Oid type) {
  return type == kInt8 || type == kInt2 || type == kInt4 || type == kFloat4 || type == kFloat8 ||
         type == kNumeric;
}
bool IsDate(Oid type) { return type == kDate || type == kTimestamp || type == kTimestampZone; }

struct CloseSession {
  void operator()(PGconn* session) const { PQfinish(session); }
};
using Session = std::unique_ptr<PGconn, CloseSession>;

struct ClearResult {
  void operator()(PGresult* result) const { PQclear(result); }
};
using Result = std::unique_ptr<PGresult, ClearResult>;

std::string OneLine(const char* text) {
  std::string line = RepairUtf8(text == nullptr ? "" : text);
  while (!line.empty() && (line.back() == '\n' || line.back() == ' ')) line.pop_back();
  for (char& c : line) c = c == '\n' || c == '\t' ? ' ' : c;
  return line;
}

std::string_view StateOf(const PGresult* result) {
  const char* state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
  return state == nullptr ? std::string_view() : state;
}

// What the operator can make sense of; the server's own text follows it.
std::string_view Reason(std::string_view state) {
  struct Known {
    std::string_view state;  // or the class that it begins with
    std::string_view reason;
  };
  static constexpr std::array kKnown = {
      Known{"23503", "El registro depende de otro que no existe o del que otros dependen"},
      Known{"23505", "Ya existe un registro con esa clave"},
      Known{"23502", "Falta un dato obligatorio"},
      Known{"23", "El registro no cumple una regla de la base"},
      Known{"55P03", "La base está ocupada por otro proceso"},
      Known{"40", "La base está ocupada por otro proceso"},
      Known{"42P01", "La tabla no existe"},
      Known{"42703", "La columna no existe"},
      Known{"42501", "No hay permiso para usar la base"},
      Known{"28", "No hay permiso para usar la base"},
      Known{"25006", "La base es de sólo lectura"},
      Known{"53100", "El disco está lleno"},
      Known{"53200", "No hay memoria suficiente"},
      Known{"53300", "El servidor no admite más conexiones"},
      Known{"54", "El dato o la sentencia es demasiado grande"},
      Known{"22", "El dato no es del tipo de la columna"},
      Known{"42804", "El dato no es del tipo de la columna"},
      Known{"57P", "El servidor de la base se detuvo"},
      Known{"58", "No se puede leer o escribir el archivo de la base"},
      Known{"XX", "La base está dañada"},
  };
  for (const Known& known : kKnown) {
    if (state.substr(0, known.state.size()) == known.state) return known.reason;
  }
  return "La base rechazó la sentencia";
}

Trouble TroubleOf(std::string_view state) {
  if (state == "55P03" || state.substr(0, 2) == "40") return Trouble::kBusy;
  if (state == "23505") return Trouble::kDuplicate;
  if (state == "57014") return Trouble::kSlow;
  return Trouble::kOther;
}

constexpr const char* kUndone = "La base deshizo la transacción: una de sus sentencias falló";

bool BeginsWith(std::string_view text, std::string_view word) {
  const std::size_t begin = std::min(text.find_first_not_of(" \t\r\n"), text.size());
  return EqualsNoCase(text.substr(begin, word.size()), word);
}

std::optional<std::int64_t> WholeNumber(std::string_view text) {
  std::int64_t number = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || rest != text.data() + text.size()) return std::nullopt;
  return number;
}

Value FromServer(std::string_view text, Oid type) {
  switch (type) {
    case kBool:
      return text == "t" ? 1 : 0;
    case kInt2:
    case kInt4:
    case kInt8:
    case kNumeric:  // sums of whole numbers
      if (const auto whole = WholeNumber(text)) return *whole;
      [[fallthrough]];
    case kFloat4:
    case kFloat8: {
      double number = 0;
      const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
      if (error == std::errc{} && rest == text.data() + text.size()) return number;
      break;
    }
    case kDate:
    case kTimestamp:
    case kTimestampZone:
      if (text.size() == 10) {
        if (const auto date = Date::Parse(text)) return *date;
      } else if (const auto when = DateTime::Parse(text)) {
        return *when;
      }
      break;
    default:
      break;
  }
  return RepairUtf8(text);
}

// A value as the server reads it for a parameter of this type; null for no value.
struct Parameter {
  Oid type;
  Mark mark;

  std::optional<std::string> operator()(std::monostate) const { return std::nullopt; }
  std::optional<std::string> operator()(std::int64_t number) const { return std::to_string(number); }
  std::optional<std::string> operator()(double number) const {
    const bool whole = type == kInt2 || type == kInt4 || type == kInt8;
    if (whole && mark == Mark::kCompared && number != std::trunc(number)) return std::nullopt;
    if (type != kFloat8 && type != kNumeric) return PlainNumber(number);
    // The very double, where 15 digits are not all of it.
    std::array<char, 32> text;
    return std::string(text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr);
  }
  std::optional<std::string> operator()(const std::string& text) const {
    if (IsNumber(type) || IsDate(type)) {
      // An empty field is no number and no date; and what is none equals none.
      if (text.empty()) return std::nullopt;
      const bool read = IsDate(type) ? Date::Parse(text).has_value() : ParseNumber(text).has_value();
      if (mark == Mark::kCompared && !read) return std::nullopt;
      if (mark == Mark::kCompared && IsNumber(type)) return (*this)(*ParseNumber(text));
    }
    if (text.find('\0') != std::string::npos) throw Error("El dato contiene un carácter nulo");
    return RepairUtf8(text);
  }
  std::optional<std::string> operator()(const Date& date) const { return date.Iso(); }
  std::optional<std::string> operator()(const DateTime& when) const { return when.Iso(); }
};

class PostgresqlConnection final : public EngineConnection {
 public:
  PostgresqlConnection(Session session, std::string place)
      : session_(std::move(session)), place_(std::move(place)) {}

  Rows Select(std::string_view text) override {
    RequireOpen();
    RequireOneStatement(text);
    if (!IsSelect(text)) {
      throw Error("Sólo se puede consultar con una sentencia SELECT").With("sentencia", std::string(text));
    }
    return Send(ForPostgresql(text), text);
  }

  Rows Execute(std::string_view text) override {
    RequireOpen();
    RequireOneStatement(text);
    if (const auto call = ParseExec(text)) return Call(*call, text);
    return Send(ForPostgresql(text), text);
  }

  Rows Run(std::string_view text, std::span<const Value> values) override {
    RequireOpen();
    RequireOneStatement(text);
    std::vector<Mark> marks;
    const std::string numbered = WithNumberedMarks(ForPostgresql(text), marks);
    if (marks.size() != values.size()) {
      throw Error("La sentencia espera " + std::to_string(marks.size()) + " valores y recibió " +
                  std::to_string(values.size()))
          .With("sentencia", std::string(text));
    }
    return values.empty() ? Send(numbered, text) : SendWith(numbered, values, marks, text);
  }

  void Define(const std::string& text) override { Send(text, text); }

  std::int64_t Changes() override {
    RequireOpen();
    PQconsumeInput(session_.get());
    while (PGnotify* told = PQnotifies(session_.get())) {
      ++changes_;
      PQfreemem(told);
    }
    return changes_;
  }
  void Notify() override { Send("NOTIFY tarvik", "NOTIFY tarvik"); }

  void Live(std::int64_t number) override {
    EngineConnection::Run("SELECT pg_advisory_lock_shared(7402179, CAST(? AS INTEGER))", {number});
  }
  bool Lives(std::int64_t number) override {
    return !EngineConnection::Run(
                "SELECT 1 FROM pg_catalog.pg_locks WHERE locktype = 'advisory' AND classid = 7402179 AND "
                "objid = "
                "CAST(? AS OID) AND granted",
                {number})
                .rows.empty();
  }

  void Begin() override {
    RequireOpen();
    Reconnect();
    if (in_unit_) throw Error("Ya hay una transacción abierta");
    try {
      Plain("BEGIN");
    } catch (const Error&) {  // lost between two keys; a beginning does no harm
      if (PQstatus(session_.get()) != CONNECTION_BAD) throw;
      Reconnect();
      Plain("BEGIN");
    }
    ours_ = true;
    try {
      Plain(kWriteLock);
    } catch (const Error&) {
      Rollback();
      throw;
    }
  }
  void Commit() override {
    RequireOpen();
    if (!in_unit_) throw Error("No hay una transacción abierta");
    if (PQtransactionStatus(session_.get()) == PQTRANS_INERROR) {
      // The server would answer a COMMIT with a rollback, as if nothing were wrong.
      Rollback();
      throw Error(kUndone);
    }
    if (PQstatus(session_.get()) == CONNECTION_BAD) {
      in_unit_ = ours_ = false;
      throw Error("Se perdió la conexión con la base " + place_ + " en medio de una transacción");
    }
    Plain("COMMIT");
    ours_ = in_unit_;
  }
  void Rollback() noexcept override {
    if (session_ == nullptr || !in_unit_) return;
    Result(PQexec(session_.get(), "ROLLBACK"));
    in_unit_ = ours_ = false;
  }

  [[nodiscard]] bool InTransaction() const override { return session_ != nullptr && in_unit_; }

  void Close() noexcept override {
    Forget();
    session_.reset();
  }

  [[nodiscard]] Dialect Kind() const override { return Dialect::Postgresql; }

  std::vector<std::string> Columns(std::string_view table) override {
    std::vector<std::string> names;
    const Rows rows = EngineConnection::Run(
        "SELECT attname FROM pg_catalog.pg_attribute WHERE attrelid = to_regclass(quote_ident(?)) AND "
        "attnum > 0 AND NOT attisdropped ORDER BY attnum",
        {Value(LowerAscii(table))});
    for (const auto& row : rows.rows) names.push_back(LowerAscii(ToText(row[0])));
    return names;
  }

 private:
  struct Prepared {
    std::string text;
    std::string name;
    std::vector<Oid> types;  // of its values
  };

  void RequireOpen() const {
    if (session_ == nullptr) throw Error("La base está cerrada");
  }

  // A session that was lost is made again, but never in the middle of a transaction: that one is gone, and
  // what was to follow belongs to nothing.
  void Reconnect() {
    if (PQstatus(session_.get()) != CONNECTION_BAD) return;
    if (in_unit_) throw Error("Se perdió la conexión con la base " + place_ + " en medio de una transacción");
    const std::string reason = "No hay conexión con la base " + place_;
    if (std::chrono::steady_clock::now() < ask_again_) throw Error(reason);
    Forget();
    PQreset(session_.get());
    if (PQstatus(session_.get()) == CONNECTION_BAD) {
      ask_again_ = std::chrono::steady_clock::now() + kPatience;
      throw Error(reason + ": " + OneLine(PQerrorMessage(session_.get())));
    }
    Result(PQexec(session_.get(), kSettings));
  }

  void Forget() noexcept {
    by_text_.clear();
    prepared_.clear();
  }

  [[noreturn]] void Fail(const PGresult* result, std::string_view text) {
    const std::string_view state = StateOf(result);
    const char* told = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
    std::string description;
    const bool lost = PQstatus(session_.get()) == CONNECTION_BAD;
    if (lost) {
      if (!ours_) in_unit_ = false;  // a statement began it, and nobody will end it
      description = "Se perdió la conexión con la base " + place_ + ": " +
                    OneLine(told != nullptr ? told : PQerrorMessage(session_.get()));
    } else {
      description = std::string(Reason(state)) + ": " +
                    OneLine(told != nullptr ? told : PQerrorMessage(session_.get()));
    }
    throw Error(description, lost ? Trouble::kLost : TroubleOf(state)).With("sentencia", std::string(text));
  }

  // Gives the result, or throws what the server says of the statement.
  Result Check(Result result, std::string_view text) {
    const auto unit = PQtransactionStatus(session_.get());
    if (unit != PQTRANS_UNKNOWN) in_unit_ = unit != PQTRANS_IDLE;
    const auto status = PQresultStatus(result.get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) Fail(result.get(), text);
    // The answer to the COMMIT of a transaction of which a statement failed.
    if (std::string_view(PQcmdStatus(result.get())) == "ROLLBACK" && !BeginsWith(text, "ROLLBACK") &&
        !BeginsWith(text, "ABORT")) {
      throw Error(kUndone).With("sentencia", std::string(text));
    }
    return result;
  }

  void Plain(const char* text) { Check(Result(PQexec(session_.get(), text)), text); }

  // `text` is the statement as the caller wrote it.
  static Rows Read(const PGresult* result, std::string_view text) {
    Rows rows;
    const int columns = PQnfields(result);
    const int count = PQntuples(result);
    rows.rows.reserve(static_cast<std::size_t>(count));
    for (int column = 0; column < columns; ++column) rows.columns.emplace_back(PQfname(result, column));
    if (columns > 0) SpellColumns(text, rows.columns);
    for (int i = 0; i < count; ++i) {
      std::vector<Value>& row = rows.rows.emplace_back();
      row.reserve(static_cast<std::size_t>(columns));
      for (int column = 0; column < columns; ++column) {
        if (PQgetisnull(result, i, column) != 0) {
          row.emplace_back();
          continue;
        }
        row.push_back(FromServer(
            {PQgetvalue(result, i, column), static_cast<std::size_t>(PQgetlength(result, i, column))},
            PQftype(result, column)));
      }
    }
    return rows;
  }

  Rows Send(const std::string& statement, std::string_view text) {
    return Again(text, [&] {
      return Result(
          PQexecParams(session_.get(), statement.c_str(), 0, nullptr, nullptr, nullptr, nullptr, 0));
    });
  }

  Rows SendWith(const std::string& statement, std::span<const Value> values, const std::vector<Mark>& marks,
                std::string_view text) {
    return Again(text, [&] {
      const Prepared& prepared = Prepare(statement, text);
      std::vector<std::optional<std::string>> held;
      std::vector<const char*> given;
      held.reserve(values.size());
      for (std::size_t i = 0; i < values.size(); ++i) {
        held.push_back(values[i].Visit(Parameter{prepared.types.at(i), marks[i]}));
        given.push_back(held.back() ? held.back()->c_str() : nullptr);
      }
      const int count = static_cast<int>(given.size());
      if (in_unit_) {
        // By its text: a kept statement that the server no longer takes would cost the whole unit.
        return Result(PQexecParams(session_.get(), statement.c_str(), count, prepared.types.data(),
                                   given.data(), nullptr, nullptr, 0));
      }
      Result result(
          PQexecPrepared(session_.get(), prepared.name.c_str(), count, given.data(), nullptr, nullptr, 0));
      // Another connection changed the table, or someone dropped the statement: it was not carried out.
      const std::string_view state = StateOf(result.get());
      if (state == "0A000" || state == "26000") Drop(by_text_.at(statement));
      return result;
    });
  }

  // Sends, and sends once more what was certainly not carried out, or does no harm if it was: a kept
  // statement that the server no longer takes, and a question to a server that was started again.
  template <class SendIt>
  Rows Again(std::string_view text, SendIt send_it) {
    Reconnect();
    Result result;
    try {
      result = send_it();
    } catch (const Error&) {  // lost while it was being prepared
      if (in_unit_ || PQstatus(session_.get()) != CONNECTION_BAD) throw;
      Reconnect();
      result = send_it();
    }
    const std::string_view state = StateOf(result.get());
    const bool lost = PQstatus(session_.get()) == CONNECTION_BAD && IsSelect(text);
    if (!in_unit_ && (lost || state == "0A000" || state == "26000")) {
      if (lost) Reconnect();
      result = send_it();
    }
    return Read(Check(std::move(result), text).get(), text);
  }

  const Prepared& Prepare(const std::string& statement, std::string_view text) {
    if (const auto found = by_text_.find(statement); found != by_text_.end()) {
      prepared_.splice(prepared_.begin(), prepared_, found->second);
      return prepared_.front();
    }
    const std::string name = "t" + std::to_string(++names_);
    Check(Result(PQprepare(session_.get(), name.c_str(), statement.c_str(), 0, nullptr)), text);
    const Result described = Check(Result(PQdescribePrepared(session_.get(), name.c_str())), text);
    std::vector<Oid> types;
    for (int i = 0; i < PQnparams(described.get()); ++i) types.push_back(PQparamtype(described.get(), i));
    prepared_.push_front({statement, name, std::move(types)});
    by_text_[prepared_.front().text] = prepared_.begin();
    if (prepared_.size() > kKeptStatements) Drop(std::prev(prepared_.end()));
    return prepared_.front();
  }

  void Drop(std::list<Prepared>::iterator prepared) {
    Result(PQexec(session_.get(), ("DEALLOCATE " + prepared->name).c_str()));
    by_text_.erase(prepared->text);
    prepared_.erase(prepared);
  }

  Rows Call(const ProcedureCall& call, std::string_view text) {
    if (const Procedure* found = Find(call.name)) {
      const Procedure procedure = *found;  // it may register another under its own name
      procedure(*this, call.arguments);
      return {};
    }
    // One that was made on this server: a procedure or a function.
    const Rows known = EngineConnection::Run(
        "SELECT prokind FROM pg_catalog.pg_proc WHERE proname = ? AND pronargs = ? AND "
        "pronamespace <> 'pg_catalog'::regnamespace AND pg_catalog.pg_function_is_visible(oid) LIMIT 1",
        {Value(LowerAscii(call.name)), Value(static_cast<std::int64_t>(call.arguments.size()))});
    if (known.rows.empty()) {
      throw Error("No existe el procedimiento " + call.name).With("sentencia", std::string(text));
    }
    std::string statement = ToText(known.rows[0][0]) == "p" ? "CALL " : "SELECT ";
    statement += LowerAscii(call.name) + "(";
    for (std::size_t i = 0; i < call.arguments.size(); ++i) {
      statement += (i > 0 ? ", " : "") + Quoted(call.arguments[i]);
    }
    Send(statement + ")", text);
    return {};
  }

  Session session_;
  std::string place_;
  std::list<Prepared> prepared_;  // the latest used first
  std::unordered_map<std::string_view, std::list<Prepared>::iterator> by_text_;
  unsigned long names_ = 0;
  bool in_unit_ = false;  // of work: a transaction
  bool ours_ = false;     // Begin() made it
  std::int64_t changes_ = 0;
  std::chrono::steady_clock::time_point ask_again_;
};

struct FreeOptions {
  void operator()(PQconninfoOption* options) const { PQconninfoFree(options); }
};

// The address without what nobody should read over an operator's shoulder: put together anew from what
// the library has understood, since a password may stand in more than one place of it.
std::string Shown(const std::string& address) {
  char* reason = nullptr;
  const std::unique_ptr<PQconninfoOption, FreeOptions> options(PQconninfoParse(address.c_str(), &reason));
  PQfreemem(reason);  // it repeats the address
  if (options == nullptr || !address.starts_with("postgresql://")) {
    throw Error("No se entiende la dirección de la base; por ejemplo, postgresql://usuario@servidor/base");
  }
  std::string user, host, port, base, others;
  for (const PQconninfoOption* option = options.get(); option->keyword != nullptr; ++option) {
    const std::string_view name = option->keyword;
    if (option->val == nullptr || option->dispchar[0] == '*') continue;
    const std::string value = RepairUtf8(option->val);
    if (name == "user") {
      user = value + "@";
    } else if (name == "host" && !value.starts_with('/')) {
      host = value;
    } else if (name == "port") {
      port = ":" + value;
    } else if (name == "dbname") {
      base = value;
    } else if (name != "passfile") {
      others += (others.empty() ? "?" : "&") + std::string(name) + "=" + value;
    }
  }
  return "postgresql://" + user + host + port + "/" + base + others;
}

class PostgresqlBase final : public Base {
 public:
  explicit PostgresqlBase(std::string_view address) : address_(address), shown_(Shown(address_)) {
    first_ = Open();  // an address that leads nowhere shows here
  }

  std::unique_ptr<EngineConnection> Connect() override {
    Session session;
    {
      const std::lock_guard only(lock_);
      session = std::move(first_);
    }
    if (session == nullptr) session = Open();
    return std::make_unique<PostgresqlConnection>(std::move(session), shown_);
  }
  [[nodiscard]] std::string Address() const override { return shown_; }

 private:
  [[nodiscard]] Session Open() const {
    // What stands in the address comes behind our wishes, and before what we cannot do without.
    static constexpr std::array<std::pair<const char*, const char*>, 5> kWishes = {
        {{"connect_timeout", kConnectSeconds},
         {"application_name", "tarvik"},
         {"keepalives_idle", "15"},
         {"keepalives_interval", "5"},
         {"tcp_user_timeout", "20000"}}};
    std::vector<const char*> names, values;
    const auto put = [&](const char* name, const char* value) {
      names.push_back(name);
      values.push_back(value);
    };
    for (const auto& [name, value] : kWishes) put(name, value);
    put("dbname", address_.c_str());
    put("client_encoding", "UTF8");
    put(nullptr, nullptr);
    Session session(PQconnectdbParams(names.data(), values.data(), 1));
    if (session == nullptr) throw Error("No hay memoria suficiente");
    if (PQstatus(session.get()) != CONNECTION_OK) {
      throw Error("No se puede abrir la base " + shown_ + ": " + OneLine(PQerrorMessage(session.get())));
    }
    PQsetNoticeProcessor(
        session.get(), [](void*, const char*) {}, nullptr);
    const Result set(PQexec(session.get(), kSettings));
    if (PQresultStatus(set.get()) != PGRES_COMMAND_OK) {
      throw Error("No se puede abrir la base " + shown_ + ": " + OneLine(PQerrorMessage(session.get())));
    }
    return session;
  }

  std::string address_;
  std::string shown_;
  std::mutex lock_;
  Session first_;  // until somebody takes it
};

}  // namespace

std::unique_ptr<Base> OpenPostgresql(std::string_view address) {
  if (address.find('\0') != std::string_view::npos) {
    throw Error("La dirección de la base contiene un carácter nulo");
  }
  return std::make_unique<PostgresqlBase>(address);
}

}  // namespace tarvik::data
