// A statement without values goes as it is; one with values is prepared once and kept. Both by the protocol
// that takes no second statement. What the stations tell one another is in notices.cpp.
#include "data/postgresql/connection.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include "data/error.h"
#include "data/number.h"
#include "data/postgresql/reasons.h"
#include "data/postgresql/values.h"
#include "data/postgresql/waiting.h"
#include "data/statement.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kReport{120'000};  // for whoever reads a whole base
constexpr milliseconds kUndo{2000};       // then the session is left, which undoes as well

constexpr const char* kUndone = "La base deshizo la transacción: una de sus sentencias falló";

bool BeginsWith(std::string_view text, std::string_view word) { return Lexer(text).Next().Is(word); }

// Another connection changed the table, or someone dropped the statement: it was not carried out.
bool IsStale(std::string_view state) { return state == "0A000" || state == "26000"; }

std::string Seconds(milliseconds time) {
  return PlainNumber(static_cast<double>(time.count()) / 1000) +
         (time == milliseconds(1000) ? " segundo" : " segundos");
}

}  // namespace

// --- Sessions ---

void PostgresqlConnection::RequireOpen() const {
  if (!open_) throw Error("La base está cerrada");
  if (session_.Asking()) throw Error("La base está atendiendo otra sentencia");
}

void PostgresqlConnection::LostInUnit() {
  unit_ = ours_ ? Unit::kBroken : Unit::kNone;  // nobody will end one that a statement began
  throw Error(
      "Se perdió la conexión con la base " + session_.Where().Shown() + " en medio de una transacción",
      Trouble::kLost);
}

void PostgresqlConnection::Ready() {
  if (unit_ == Unit::kBroken) LostInUnit();
  if (session_.Sound()) return;
  if (unit_ == Unit::kOpen) LostInUnit();
  Renew(Waiting());
}

void PostgresqlConnection::Renew(Patience& patience) {
  kept_.ForgetAll();
  std::string reason;
  if (!session_.Renew(patience, reason)) {
    throw Error("No hay conexión con la base " + session_.Where().Shown() + ": " + reason, Trouble::kAway);
  }
  ++changes_;  // what others told meanwhile was not heard
}

void PostgresqlConnection::Close() noexcept {
  kept_.ForgetAll();
  session_.Drop();
  open_ = false;
}

// --- Statements ---

Terms PostgresqlConnection::TermsOf(std::string_view text) const {
  if (!Fences()) return {};  // a routine's own takes as long as it takes
  if (IsSelect(text) && SelectLimit().count() > 0) return {SelectLimit()};
  return {kAnswer};
}

Terms PostgresqlConnection::TermsOfRun(std::string_view text) {
  if (!Waiting().turn) return {};  // no operator waits for it
  return {IsSelect(text) && unit_ == Unit::kNone ? kReport : kAnswer};
}

Rows PostgresqlConnection::Select(std::string_view text) {
  RequireOpen();
  const TakenApart statement(text);
  RequireOneStatement(statement);
  if (!IsSelect(text)) {
    throw Error("Sólo se puede consultar con una sentencia SELECT").With("sentencia", std::string(text));
  }
  if (Fences()) RequireHarmless(statement);
  return Send(ForPostgresql(statement).text, text, TermsOf(text), &statement);
}

Rows PostgresqlConnection::Execute(std::string_view text) {
  RequireOpen();
  const TakenApart statement(text);
  RequireOneStatement(statement);
  if (const auto call = ParseExec(statement)) return Call(*call, text);
  if (Fences()) RequireHarmless(statement);
  Rows rows = Send(ForPostgresql(statement).text, text, TermsOf(text), &statement);
  ForgetIfTold(text);
  return rows;
}

Rows PostgresqlConnection::Run(std::string_view text, std::span<const Value> values) {
  RequireOpen();
  // What is kept has passed the gate, and has been translated.
  const KeptStatements::Kept* kept = kept_.Find(text);
  std::shared_ptr<const Told> told = kept != nullptr ? kept->told : nullptr;
  std::optional<TakenApart> statement;
  if (told == nullptr) {
    statement.emplace(text);
    RequireOneStatement(*statement);
    told = std::make_shared<const Told>(ForPostgresql(*statement, From::kHost));
  }
  if (told->marks.size() != values.size()) {
    throw Error("La sentencia espera " + std::to_string(told->marks.size()) + " valores y recibió " +
                std::to_string(values.size()))
        .With("sentencia", std::string(text));
  }
  if (!values.empty()) return SendWith(told, values, text);
  Rows rows = Send(told->text, text, TermsOfRun(text), &*statement);
  ForgetIfTold(text);
  return rows;
}

void PostgresqlConnection::Define(const std::string& text) {
  RequireOpen();
  Send(text, text, {});
}

Rows PostgresqlConnection::Send(const std::string& statement, std::string_view text, const Terms& terms,
                                const TakenApart* parts) {
  const auto send_it = [&](bool begins) {
    return Sent{Exchange(begins, terms, [&] {
      return PQsendQueryParams(session_.Get(), statement.c_str(), 0, nullptr, nullptr, nullptr, nullptr, 0);
    })};
  };
  return Again(text, terms, send_it, parts);
}

Rows PostgresqlConnection::SendWith(const std::shared_ptr<const Told>& told, std::span<const Value> values,
                                    std::string_view text) {
  const Terms terms = TermsOfRun(text);
  const auto send_it = [&](bool begins) {
    const KeptStatements::Kept* kept = kept_.Find(text);
    if (kept == nullptr) {
      Sent prepared = Prepare(text, told);
      kept = kept_.Find(text);
      if (kept == nullptr) return prepared;
    }
    std::vector<std::optional<std::string>> held;
    std::vector<const char*> given;
    held.reserve(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
      held.push_back(ToServer(values[i], kept->types.at(i), told->marks[i]));
      given.push_back(held.back() ? held.back()->c_str() : nullptr);
    }
    Sent sent{Exchange(begins, terms, [&] {
      return PQsendQueryPrepared(session_.Get(), kept->name.c_str(), static_cast<int>(given.size()),
                                 given.data(), nullptr, nullptr, 0);
    })};
    if (IsStale(StateOf(sent.answer.result.get()))) kept_.Forget(text);
    return sent;
  };
  return Again(text, terms, send_it, nullptr);
}

template <class Put>
Answer PostgresqlConnection::Exchange(bool begins, const Terms& terms, Put put) {
  bool sent = !begins || session_.SendBegin();
  sent = sent && put() != 0;
  sent = sent && (!begins || session_.SendEnd());
  if (!sent && begins) session_.Drop();  // half of it may have been sent, and will be undone
  return session_.Await(sent ? 1 : 0, terms, begins);
}

template <class SendIt>
Rows PostgresqlConnection::Again(std::string_view text, const Terms& terms, SendIt send_it,
                                 const TakenApart* parts) {
  for (bool again = false;; again = true) {
    Ready();
    session_.WaitForLocks(Waiting().Left());
    const bool begins = unit_ == Unit::kBegun;
    const bool in_unit = unit_ != Unit::kNone;
    NoteSent(!IsSelect(text));
    Sent sent = send_it(begins);
    if (!again && MayBeSentAgain(sent, text, begins)) continue;
    NoteUnit();
    return RowsOf(Check(std::move(sent), text, terms, in_unit).get(), text, parts);
  }
}

bool PostgresqlConnection::MayBeSentAgain(const Sent& sent, std::string_view text, bool begins) {
  if (unit_ == Unit::kOpen || sent.answer.stopped != Answer::Stopped::kNo) return false;
  // A unit that has just begun cannot have stored anything: its end was never sent.
  if (session_.Lost()) return begins || !sent.carried || IsSelect(text);
  const std::string_view state = StateOf(sent.answer.result.get());
  if (IsAway(state)) {
    session_.Drop();
    return true;
  }
  if (!IsStale(state) || !sent.carried) return false;
  if (begins) session_.Await(PQsendQuery(session_.Get(), "ROLLBACK"), {kUndo});
  return true;
}

PostgresqlConnection::Sent PostgresqlConnection::Prepare(std::string_view text,
                                                         const std::shared_ptr<const Told>& told) {
  KeptStatements::Kept kept{std::string(text), told, kept_.NewName(), {}};
  const Terms terms{kAnswer};
  Answer answer =
      session_.Await(PQsendPrepare(session_.Get(), kept.name.c_str(), told->text.c_str(), 0, nullptr), terms);
  if (PQresultStatus(answer.result.get()) != PGRES_COMMAND_OK) return {std::move(answer), false};
  answer = session_.Await(PQsendDescribePrepared(session_.Get(), kept.name.c_str()), terms);
  if (PQresultStatus(answer.result.get()) != PGRES_COMMAND_OK) return {std::move(answer), false};
  for (int i = 0; i < PQnparams(answer.result.get()); ++i) {
    kept.types.push_back(PQparamtype(answer.result.get(), i));
  }
  kept_.Put(std::move(kept));
  Deallocate(kept_.TooMany());
  return {std::move(answer), false};
}

void PostgresqlConnection::Deallocate(const std::string& name) {
  if (name.empty() || session_.Lost()) return;
  session_.Await(PQsendQuery(session_.Get(), ("DEALLOCATE " + name).c_str()), {kAnswer});
}

// A routine's statement may undo what this connection has set or kept.
void PostgresqlConnection::ForgetIfTold(std::string_view text) {
  const bool all = BeginsWith(text, "DISCARD") || BeginsWith(text, "RESET");
  if (!all && !BeginsWith(text, "DEALLOCATE")) return;
  kept_.ForgetAll();
  if (all) session_.SetUp();
}

// --- Failures ---

void PostgresqlConnection::NoteUnit() {
  if (session_.Lost()) {
    if (unit_ != Unit::kNone) unit_ = ours_ ? Unit::kBroken : Unit::kNone;
    return;
  }
  const auto status = PQtransactionStatus(session_.Get());
  if (status == PQTRANS_UNKNOWN) return;
  // One that could not even be prepared has left its unit unsent.
  if (status == PQTRANS_IDLE && unit_ == Unit::kBegun) return;
  unit_ = status == PQTRANS_IDLE ? Unit::kNone : Unit::kOpen;
}

bool PostgresqlConnection::IsAway(std::string_view state) const {
  if (state != "25006") return false;
  return session_.Where().Several() || (session_.WrittenTo() && session_.OnStandby());
}

Result PostgresqlConnection::Check(Sent sent, std::string_view text, const Terms& terms, bool in_unit) {
  if (sent.answer.stopped != Answer::Stopped::kNo) CheckStopped(sent, text, terms, in_unit);
  const auto status = PQresultStatus(sent.answer.result.get());
  if (!sent.carried || (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)) Fail(sent, text, in_unit);
  // A change has succeeded. Of a unit only its COMMIT counts: before it the same trouble may come again.
  if (BeginsWith(text, "COMMIT") || (!in_unit && !IsSelect(text))) Waiting().Well();
  // The answer to the COMMIT of a transaction of which a statement failed.
  if (std::string_view(PQcmdStatus(sent.answer.result.get())) == "ROLLBACK" &&
      !BeginsWith(text, "ROLLBACK") && !BeginsWith(text, "ABORT")) {
    throw Error(kUndone).With("sentencia", std::string(text));
  }
  return std::move(sent.answer.result);
}

void PostgresqlConnection::CheckStopped(const Sent& sent, std::string_view text, const Terms& terms,
                                        bool in_unit) {
  const std::string_view state = StateOf(sent.answer.result.get());
  const bool lost = session_.Lost();
  if (!lost && state != "57014") {
    // It was faster than its cancellation. A change may then be on this server alone, where a standby should
    // have it too: that is not said to be stored. One in a unit waits for the unit's end.
    if (in_unit || IsSelect(text) || !state.empty()) return;
  }
  const bool nothing = (!lost && state == "57014") || in_unit || IsSelect(text) || !sent.carried;
  if (lost) Waiting().Vain();
  std::string description;
  if (sent.answer.stopped == Answer::Stopped::kEnd) {
    description = "La sentencia se detuvo: el programa está terminando";
  } else if (IsSelect(text) && Fences()) {
    description = "La consulta tardó más de " + Seconds(*terms.limit) + " y se detuvo";
  } else {
    description = "El servidor de la base no respondió en " + Seconds(terms.limit.value_or(kAnswer)) +
                  (nothing ? " y la sentencia se detuvo" : "; no se sabe si llevó a cabo la sentencia");
  }
  throw Error(description, nothing ? Trouble::kSlow : Trouble::kLost).With("sentencia", std::string(text));
}

void PostgresqlConnection::Fail(const Sent& sent, std::string_view text, bool in_unit) {
  const PGresult* result = sent.answer.result.get();
  const std::string_view state = StateOf(result);
  const char* told = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
  const std::string words = told != nullptr ? session_.Where().Scrubbed(OneLine(told)) : session_.Reason();
  const auto fail = [&](const std::string& description, Trouble trouble) {
    throw Error(description, trouble).With("sentencia", std::string(text));
  };
  if (session_.Lost()) {
    fail("Se perdió la conexión con la base " + session_.Where().Shown() + ": " + words,
         sent.carried ? Trouble::kLost : Trouble::kAway);
  }
  Trouble trouble = TroubleOf(state);
  if (IsAway(state)) {  // the standby was not promoted: it is not a server for this base
    session_.Drop();
    NoteUnit();
    trouble = Trouble::kAway;
  } else if (in_unit && IsStale(state)) {
    trouble = Trouble::kBusy;  // the whole unit, begun again, meets the table as it is now
  }
  if (trouble == Trouble::kBusy) {
    Waiting().Waited(sent.answer.took);
  }
  fail(std::string(Reason(state)) + ": " + words, trouble);
  std::abort();
}

// --- Units of work ---

void PostgresqlConnection::Begin() {
  RequireOpen();
  if (unit_ != Unit::kNone) throw Error("Ya hay una transacción abierta");
  unit_ = Unit::kBegun;
  ours_ = true;
}

void PostgresqlConnection::Commit() {
  RequireOpen();
  if (unit_ == Unit::kNone) throw Error("No hay una transacción abierta");
  const Unit unit = std::exchange(unit_, Unit::kNone);
  ours_ = false;
  if (unit == Unit::kBegun) return;
  if (unit == Unit::kBroken || !session_.Sound()) LostInUnit();
  if (PQtransactionStatus(session_.Get()) == PQTRANS_INERROR) {
    // The server would answer a COMMIT with a rollback, as if nothing were wrong.
    unit_ = Unit::kOpen;
    Rollback();
    throw Error(kUndone);
  }
  const Terms terms{kAnswer, false};
  Sent sent{session_.Await(PQsendQuery(session_.Get(), "COMMIT"), terms)};
  if (session_.Lost() && sent.answer.stopped != Answer::Stopped::kNo) Waiting().Vain();
  sent.answer.stopped = Answer::Stopped::kNo;
  Check(std::move(sent), "COMMIT", terms, false);
  if (std::exchange(told_, false)) LetItBeHeard();
}

void PostgresqlConnection::Rollback() noexcept {
  ours_ = false;
  told_ = false;
  if (!open_ || std::exchange(unit_, Unit::kNone) != Unit::kOpen || session_.Lost()) return;
  const Answer answer = session_.Await(PQsendQuery(session_.Get(), "ROLLBACK"), {kUndo, false});
  if (PQresultStatus(answer.result.get()) != PGRES_COMMAND_OK) session_.Drop();
  session_.Undone();
}

// --- Procedures ---

Rows PostgresqlConnection::Call(const ProcedureCall& call, std::string_view text) {
  if (const Procedure* found = Find(call.name)) {
    const Procedure procedure = *found;  // it may register another under its own name
    struct Running {
      explicit Running(int& of) : count(of) { ++count; }
      ~Running() { --count; }
      int& count;
    };
    const Running running(procedures_);
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
  Send(statement + ")", text, {});
  return {};
}

// --- What the host asks of the base itself ---

std::vector<std::string> PostgresqlConnection::Columns(std::string_view table) {
  std::vector<std::string> names;
  const Rows rows = EngineConnection::Run(
      "SELECT attname FROM pg_catalog.pg_attribute WHERE attrelid = to_regclass(quote_ident(?)) AND "
      "attnum > 0 AND NOT attisdropped ORDER BY attnum",
      {Value(LowerAscii(table))});
  for (const auto& row : rows.rows) names.push_back(LowerAscii(ToText(row[0])));
  return names;
}

}  // namespace tarvik::data
