// The library makes a session step by step (PQconnectPoll), one host at a time: its own list of hosts would
// wait for ever at one that answers nothing.
#include "data/postgresql/dial.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <vector>

#include "data/error.h"
#include "data/postgresql/reasons.h"
#include "data/postgresql/waiting.h"
#include "data/statement.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

using Clock = Patience::Clock;
using std::chrono::milliseconds;

constexpr milliseconds kOneHost{5000};
constexpr milliseconds kOneOfSeveral{2000};
constexpr milliseconds kSliceAgain{1000};  // of each of several, doubled at each round
constexpr milliseconds kBetweenRounds{50};
constexpr milliseconds kQuick{100};

// What one try came to, without a session.
struct Refusal {
  std::string reason;    // for the operator
  bool passing = false;  // a server that starts, or a standby
  bool away = false;     // no server said no: there was none, or it passes
  bool ended = false;    // the process was asked to end, or no patience is left
};

// The state in a message of the library's in its long form, "FATAL:  28P01: ...", whatever the
// language of the rest.
std::string StateIn(std::string_view message) {
  for (std::size_t at = message.find(":  "); at != std::string_view::npos; at = message.find(":  ", at + 1)) {
    const std::string_view state = message.substr(at + 3, 5);
    const bool five = state.size() == 5 && std::all_of(state.begin(), state.end(), [](char c) {
                        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z');
                      });
    if (five && message.substr(at + 8, 2) == ": ") return std::string(state);
  }
  return {};
}

// The message without what the long form adds to it.
std::string Short(std::string message, const std::string& state) {
  if (!state.empty()) {
    if (const auto at = message.find(":  " + state + ": "); at != std::string::npos) {
      message.erase(at + 3, state.size() + 2);
    }
  }
  // The line of the server's own source, after the text: "LOCATION:  auth_failed, auth.c:326".
  if (const auto at = message.find('\n'); at != std::string::npos && !state.empty()) message.erase(at);
  return OneLine(message.c_str());
}

bool Has(std::string_view text, std::string_view piece) { return text.find(piece) != std::string_view::npos; }

// What can't be trusted, in the operator's words. The library knows no states for it; its texts are in
// English or in Spanish.
std::string_view TrustReason(std::string_view message) {
  if (Has(message, "certificate verify failed") || Has(message, "unknown ca")) {
    return "El certificado del servidor no es de una autoridad conocida";
  }
  if (Has(message, "does not match host name") || Has(message, "no coincide con el nombre")) {
    return "El certificado del servidor es de otro nombre";
  }
  if (Has(message, "root certificate file") || Has(message, "certificado raíz")) {
    return "Falta el archivo de la autoridad que certifica al servidor (sslrootcert)";
  }
  if (Has(message, "does not support SSL") || Has(message, "no soporta SSL")) {
    return "El servidor no admite conexiones cifradas";
  }
  return {};
}

// The library's own words for a server that takes no writes, where one that does is wanted.
bool IsOfStandby(std::string_view message) {
  return Has(message, "is read-only") || Has(message, "hot standby") || Has(message, "es de sólo lectura") ||
         Has(message, "es de solo lectura");
}

Refusal RefusalOf(const PGconn* session, const Address& address) {
  const char* told = PQerrorMessage(session);
  const std::string message = told == nullptr ? "" : told;
  const std::string state = StateIn(message);
  Refusal refusal;
  refusal.passing = state == "57P03" || IsOfStandby(message);
  const std::string_view reason = state.empty() ? TrustReason(message) : Reason(state);
  refusal.away = refusal.passing || (state.empty() && reason.empty());
  refusal.reason =
      address.Scrubbed((reason.empty() ? "" : std::string(reason) + ": ") + Short(message, state));
  return refusal;
}

std::string Seconds(milliseconds time) {
  const auto count = std::chrono::ceil<std::chrono::seconds>(time).count();
  return std::to_string(count) + (count == 1 ? " segundo" : " segundos");
}

class Dialling {
 public:
  Dialling(Place& place, Patience& patience, std::int64_t life, bool spends, bool by_number)
      : place_(place), waiting_(patience, spends), life_(life), by_number_(by_number) {}

  // One try with each host, the one that was there last first. `each`: the time for one of them; `until`:
  // for all.
  Handle Round(milliseconds each, Clock::time_point until, Refusal& refusal) {
    const auto& hosts = place_.address.Hosts();
    const std::size_t first = place_.latest;
    refusal = {};
    bool passing = false, away = false;
    std::string reasons;
    for (std::size_t i = 0; i < hosts.size(); ++i) {
      const std::size_t which = (first + i) % hosts.size();
      const auto end = std::min(until, Clock::now() + each);
      if (Handle session = One(which, end, refusal)) {
        place_.latest = which;
        place_.numbers.Note(which, PQhostaddr(session.get()));
        return session;
      }
      passing = passing || refusal.passing;
      away = away || refusal.away;
      if (!Has(reasons, refusal.reason)) reasons += (reasons.empty() ? "" : "; ") + refusal.reason;
      if (refusal.ended || Clock::now() >= until) break;
    }
    refusal.reason = reasons;
    refusal.passing = passing;
    refusal.away = away;
    return nullptr;
  }

  // Just time. False if there is none left.
  bool Pause(Clock::time_point until) {
    return waiting_.For(-1, 0, std::min(until, Clock::now() + kBetweenRounds)) != Waiting::Came::kEnd &&
           Clock::now() < until;
  }

  [[nodiscard]] Clock::duration Lasted() const { return waiting_.Lasted(); }

 private:
  Handle One(std::size_t which, Clock::time_point until, Refusal& refusal) {
    const auto begun = Clock::now();
    Handle session = Start(which);
    PostgresPollingStatusType wants = PGRES_POLLING_WRITING;
    while (PQstatus(session.get()) != CONNECTION_BAD && wants != PGRES_POLLING_OK) {
      const short events = wants == PGRES_POLLING_READING ? POLLIN : POLLOUT;
      if (!Waits(session.get(), events, until, begun, refusal)) return nullptr;
      wants = PQconnectPoll(session.get());
      if (wants == PGRES_POLLING_FAILED) break;
    }
    if (PQstatus(session.get()) != CONNECTION_OK) {
      refusal = RefusalOf(session.get(), place_.address);
      return nullptr;
    }
    PQsetErrorVerbosity(session.get(), PQERRORS_DEFAULT);
    if (!Suits(session.get(), refusal)) return nullptr;
    if (!SetUp(session.get(), until, begun, refusal)) return nullptr;
    return session;
  }

  Handle Start(std::size_t which) {
    const Host& host = place_.address.Hosts()[which];
    const std::string number = host.numeric.empty() && by_number_ ? place_.numbers.Of(which) : host.numeric;
    // What the address says overrides our wishes, but not what we cannot do without.
    static constexpr std::array<std::pair<const char*, const char*>, 4> kWishes = {
        {{"application_name", "tarvik"},
         {"keepalives_idle", "15"},
         {"keepalives_interval", "5"},
         {"tcp_user_timeout", "20000"}}};
    std::vector<const char*> names, values;
    const auto put = [&](const char* name, const char* value) {
      names.push_back(name);
      values.push_back(value);
    };
    const Address& address = place_.address;
    for (const auto& [name, value] : kWishes) put(name, value);
    for (const auto& [name, value] : address.Secret()) put(name.c_str(), value.c_str());
    put("client_encoding", "UTF8");
    if (!host.name.empty()) put("host", host.name.c_str());
    if (!number.empty()) put("hostaddr", number.c_str());
    if (!host.port.empty()) put("port", host.port.c_str());
    // With one host at a time nothing can be preferred: whatever comes first is taken.
    const bool prefers = address.Wanted() == "prefer-standby";
    if (!address.Wanted().empty()) put("target_session_attrs", prefers ? "any" : address.Wanted().c_str());
    put(nullptr, nullptr);
    Handle session(PQconnectStartParams(names.data(), values.data(), 0));
    if (session == nullptr) throw Error("No hay memoria suficiente");
    PQsetErrorVerbosity(session.get(), PQERRORS_VERBOSE);  // for the state in it
    PQsetNoticeProcessor(
        session.get(), [](void*, const char*) {}, nullptr);
    return session;
  }

  bool Waits(PGconn* session, short events, Clock::time_point until, Clock::time_point begun,
             Refusal& refusal) {
    const Waiting::Came came = waiting_.For(PQsocket(session), events, until);
    if (came == Waiting::Came::kSomething && Clock::now() < until) return true;
    refusal = {};
    refusal.away = true;
    refusal.ended = came == Waiting::Came::kEnd;
    refusal.reason =
        "El servidor no respondió en " + Seconds(std::chrono::ceil<milliseconds>(Clock::now() - begun));
    return false;
  }

  // Whether it takes writes, where that is needed.
  bool Suits(const PGconn* session, Refusal& refusal) {
    const char* standby = PQparameterStatus(session, "in_hot_standby");
    const bool is_standby = standby != nullptr && std::string_view(standby) == "on";
    if (!is_standby) {
      place_.written_to = true;
      return true;
    }
    const std::string& wanted = place_.address.Wanted();
    if (!place_.written_to || wanted == "any" || wanted == "standby" || wanted == "read-only") return true;
    refusal = {"La base es de sólo lectura: el servidor es una copia de otro", true, true, false};
    return false;
  }

  bool SetUp(PGconn* session, Clock::time_point until, Clock::time_point begun, Refusal& refusal) {
    bool sound = PQsendQuery(session, Settings(place_.address, life_).c_str()) != 0;
    while (sound && PQisBusy(session) != 0) {
      if (!Waits(session, POLLIN, until, begun, refusal)) return false;
      sound = PQconsumeInput(session) != 0;
    }
    while (const Result answer{PQgetResult(session)}) {
      sound = sound && PQresultStatus(answer.get()) == PGRES_COMMAND_OK;
      while (sound && PQisBusy(session) != 0) {
        if (!Waits(session, POLLIN, until, begun, refusal)) return false;
        sound = PQconsumeInput(session) != 0;
      }
    }
    if (!sound) refusal = RefusalOf(session, place_.address);
    return sound;
  }

  Place& place_;
  Waiting waiting_;
  std::int64_t life_;
  bool by_number_;
};

}  // namespace

void Numbers::Note(std::size_t host, const char* number) {
  if (number == nullptr || *number == '\0') return;
  const std::lock_guard lock(guard_);
  if (known_.size() <= host) known_.resize(host + 1);
  known_[host] = number;
}

std::string Numbers::Of(std::size_t host) {
  const std::lock_guard lock(guard_);
  return host < known_.size() ? known_[host] : std::string();
}

void Numbers::Forget() {
  const std::lock_guard lock(guard_);
  known_.clear();
}

std::string SessionName(const Address& address, std::int64_t life) {
  std::string name = address.Application();
  if (life == 0) return name;
  // A server truncates names: the end is what must stay.
  return Substring(name, 0, 40) + " #" + std::to_string(life);
}

std::string Settings(const Address& address, std::int64_t life) {
  // A statement waits for another station's lock as long as an act's whole patience. A station whose machine
  // has vanished is gone within ten seconds, and with it its locks and its life (see Live).
  return "SET lock_timeout = " + std::to_string(Patience::kWhole.count()) +
         "; SET standard_conforming_strings = on; SET datestyle = 'ISO, YMD'; "
         "SET client_min_messages = warning; SET intervalstyle = 'postgres'; SET extra_float_digits = 1; "
         "SET default_transaction_isolation = 'read committed'; SET tcp_keepalives_idle = 4; "
         "SET tcp_keepalives_interval = 2; SET tcp_keepalives_count = 2; SET tcp_user_timeout = 8000; "
         "SET application_name = " +
         Quoted(SessionName(address, life)) + "; LISTEN tarvik";
}

Handle DialFirst(Place& place) {
  const Address& address = place.address;
  const milliseconds each = address.Timeout().value_or(
      std::chrono::duration_cast<std::chrono::seconds>(address.Several() ? kOneOfSeveral : kOneHost));
  Patience patience;  // nobody watches yet
  Dialling dialling(place, patience, 0, false, false);
  const auto until = Clock::now() + each * static_cast<long>(address.Hosts().size()) + Patience::kWhole;
  Refusal refusal;
  for (;;) {
    if (Handle session = dialling.Round(each, until, refusal)) return session;
    if (!refusal.passing || dialling.Lasted() > Patience::kWhole || !dialling.Pause(until)) break;
  }
  throw Error("No se puede abrir la base " + address.Shown() + ": " + refusal.reason,
              refusal.away ? Trouble::kAway : Trouble::kOther);
}

Handle DialAgain(Place& place, Patience& patience, std::int64_t life, std::string& reason) {
  const milliseconds left = patience.Left();
  const bool quick = left.count() == 0;
  Dialling dialling(place, patience, life, !quick, true);
  const auto until = Clock::now() + (quick ? kQuick : left);
  milliseconds slice = place.address.Several() ? kSliceAgain : left;
  if (quick) slice = kQuick;
  Refusal refusal;
  for (;;) {
    Handle session = dialling.Round(slice, until, refusal);
    if (session != nullptr) return session;
    reason = refusal.reason;
    if (quick || refusal.ended || !dialling.Pause(until)) break;
    slice = std::min<milliseconds>(2 * slice, Patience::kWhole);
  }
  if (!quick) {
    patience.Vain();
    place.numbers.Forget();  // it may have moved to another
  }
  // The next one is asked first, where the time was not enough for all.
  place.latest = (place.latest + 1) % place.address.Hosts().size();
  return nullptr;
}

}  // namespace tarvik::data
