// What the stations tell one another by way of the server: that something has changed, and who is alive.
#include <algorithm>
#include <string>

#include "data/error.h"
#include "data/postgresql/connection.h"
#include "data/postgresql/waiting.h"

namespace tarvik::data {
namespace {

constexpr std::chrono::milliseconds kHeard{100};  // in which a notice reaches all who listen
// Of a station that does nothing: how long a try for a new session may take, and the pauses between tries.
constexpr std::chrono::milliseconds kIdleTry{400};
constexpr std::chrono::seconds kLookAgain{1};
constexpr std::chrono::seconds kLookAgainAtMost{8};

}  // namespace

// The server passes a notice on a moment later. The one who sent it may look at once whether the others
// have noticed.
void PostgresqlConnection::LetItBeHeard() {
  data::Waiting moment(Waiting(), false);
  moment.For(-1, 0, Patience::Clock::now() + kHeard);
}

std::int64_t PostgresqlConnection::Changes() {
  if (!open_) throw Error("La base está cerrada");
  if (session_.Asking()) return changes_;
  if (!session_.Sound() && unit_ == Unit::kNone && Patience::Clock::now() >= look_again_) {
    // A station that does nothing would otherwise look dead to the others until its next key.
    Patience little;
    little.Waited(Patience::kWhole - kIdleTry);
    try {
      Renew(little);
      look_pause_ = kLookAgain;
    } catch (const Error&) {  // the next statement tells
      look_pause_ = std::min(2 * look_pause_, kLookAgainAtMost);
    }
    look_again_ = Patience::Clock::now() + look_pause_;
  }
  while (PGnotify* told = session_.Lost() ? nullptr : PQnotifies(session_.Get())) {
    ++changes_;
    PQfreemem(told);
  }
  return changes_;
}

void PostgresqlConnection::Notify() {
  RequireOpen();
  const bool at_once = unit_ == Unit::kNone;
  Send("NOTIFY tarvik", "NOTIFY tarvik", {kAnswer});
  if (at_once) {
    LetItBeHeard();
  } else {
    told_ = true;
  }
}

// The life is in the session's name, which every role can read without a lock or a function. The server
// removes the name with the session, and a pooler with its client.
void PostgresqlConnection::Live(std::int64_t number) {
  RequireOpen();
  if (unit_ != Unit::kNone) throw Error("Una vida no empieza dentro de una transacción");
  session_.Life(number);
  if (session_.Sound()) {
    Sent sent{session_.SetUp()};
    if (!session_.Lost()) {
      Check(std::move(sent), "SET application_name", {}, false);
      return;
    }
  }
  Renew(Waiting());
}

bool PostgresqlConnection::Lives(std::int64_t number) {
  return !EngineConnection::Run(
              "SELECT 1 FROM pg_catalog.pg_stat_activity WHERE datname = current_database() AND "
              "application_name LIKE ? LIMIT 1",
              {"% #" + std::to_string(number)})
              .rows.empty();
}

}  // namespace tarvik::data
