// The engine's connection: statements, units of work, and what becomes of both when the session is lost.
// See postgresql_engine.h for what is asked again and what is thrown.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "data/engine.h"
#include "data/postgresql/dialect.h"
#include "data/postgresql/kept_statements.h"
#include "data/postgresql/session.h"
#include "data/statement.h"

namespace tarvik::data {

class PostgresqlConnection final : public EngineConnection {
 public:
  PostgresqlConnection(std::shared_ptr<Place> place, Handle session)
      : session_(std::move(place), std::move(session), Waiting()) {}

  Rows Select(std::string_view text) override;
  Rows Execute(std::string_view text) override;
  Rows Run(std::string_view text, std::span<const Value> values) override;
  void Define(const std::string& text) override;

  void Begin() override;
  void Commit() override;
  void Rollback() noexcept override;
  [[nodiscard]] bool InTransaction() const override { return open_ && unit_ != Unit::kNone; }
  void Close() noexcept override;

  [[nodiscard]] Dialect Kind() const override { return Dialect::Postgresql; }
  std::vector<std::string> Columns(std::string_view table) override;

  std::int64_t Changes() override;
  void Notify() override;
  void Live(std::int64_t number) override;
  bool Lives(std::int64_t number) override;

 private:
  // What a server has for its answer to one of the suite's or the host's statements: far more than any of
  // them takes, since a lock is waited for five seconds.
  static constexpr std::chrono::milliseconds kAnswer{30'000};

  enum class Unit {
    kNone,
    kBegun,   // Begin() was called, and nothing sent yet
    kOpen,    // on the server
    kBroken,  // Begin()'s, lost with its session: until its Rollback() or Commit()
  };
  // One statement, sent.
  struct Sent {
    Answer answer;
    bool carried = true;  // the statement itself went out, not only its preparation
  };

  void RequireOpen() const;
  // A session that a statement can be sent on. Throws Error (kAway, or kLost in the middle of a unit).
  void Ready();
  void Renew(Patience& patience);
  [[noreturn]] void LostInUnit();
  void LetItBeHeard();

  [[nodiscard]] bool Fences() const { return Fenced() && procedures_ == 0; }
  [[nodiscard]] Terms TermsOf(std::string_view text) const;  // of a Select or an Execute
  [[nodiscard]] Terms TermsOfRun(std::string_view text);     // of a Run

  // `parts`: the text, already split, where the caller has it.
  Rows Send(const std::string& statement, std::string_view text, const Terms& terms,
            const TakenApart* parts = nullptr);
  Rows SendWith(const std::shared_ptr<const Told>& told, std::span<const Value> values,
                std::string_view text);
  // Sends one, with the BEGIN of its unit in front if there is one to be sent.
  template <class SendIt>
  Rows Again(std::string_view text, const Terms& terms, SendIt send_it, const TakenApart* parts);
  template <class Put>
  Answer Exchange(bool begins, const Terms& terms, Put put);
  // Whether what came back may be sent once more: it was certainly not carried out, or changes nothing.
  bool MayBeSentAgain(const Sent& sent, std::string_view text, bool begins);

  Sent Prepare(std::string_view text, const std::shared_ptr<const Told>& told);
  void Deallocate(const std::string& name);
  void ForgetIfTold(std::string_view text);

  void NoteUnit();
  // Gives the result, or throws what the server says of the statement.
  Result Check(Sent sent, std::string_view text, const Terms& terms, bool in_unit);
  [[noreturn]] void Fail(const Sent& sent, std::string_view text, bool in_unit);
  // What was stopped: throws, unless it had been carried out and that is known for certain.
  void CheckStopped(const Sent& sent, std::string_view text, const Terms& terms, bool in_unit);
  [[nodiscard]] bool IsAway(std::string_view state) const;

  Rows Call(const ProcedureCall& call, std::string_view text);

  bool open_ = true;
  Session session_;
  KeptStatements kept_;
  Unit unit_ = Unit::kNone;
  bool ours_ = false;   // Begin() made it
  int procedures_ = 0;  // that are running
  bool told_ = false;   // the unit that is open tells the others something
  std::int64_t changes_ = 0;
  Patience::Clock::time_point look_again_;
  std::chrono::seconds look_pause_{1};
};

}  // namespace tarvik::data
