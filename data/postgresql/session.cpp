// Exchanges: sent whole, waited for at the socket in turns, given up by way of the server's own cancellation.
#include "data/postgresql/session.h"

#include <poll.h>

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <utility>

#include "data/postgresql/reasons.h"
#include "data/postgresql/waiting.h"

namespace tarvik::data {
namespace {

using Clock = Patience::Clock;
using std::chrono::milliseconds;

constexpr milliseconds kStopAnswer{2000};  // what a server has for the answer to a cancellation
constexpr milliseconds kAtOnce{1};         // no wait: 0 would mean for ever
constexpr milliseconds kCoarse{500};       // how much of the patience may be gone before it is sent

constexpr auto kEndless = Clock::time_point::max() - std::chrono::hours(1);

}  // namespace

// A cancellation takes a connection of its own, which the library opens in one blocking step: on another
// thread, since that may hang.
struct Session::Cancelling {
  std::atomic<bool> done = false;
};

Session::Session(std::shared_ptr<Place> place, Handle session, Patience& patience)
    : place_(std::move(place)), session_(std::move(session)), patience_(patience), locks_(Patience::kWhole) {}

bool Session::Lost() const { return session_ == nullptr || PQstatus(session_.get()) == CONNECTION_BAD; }

bool Session::Sound() {
  // Each look reads what there is; the end itself comes after the server's last message.
  for (int looks = 0; looks < 4 && !Lost(); ++looks) {
    struct pollfd watched {
      PQsocket(session_.get()), POLLIN, 0
    };
    if (::poll(&watched, 1, 0) <= 0) return true;
    PQconsumeInput(session_.get());
    PQisBusy(session_.get());  // parses what came
  }
  return !Lost();
}

std::string Session::Reason() const {
  return session_ == nullptr ? "el servidor no responde"
                             : Where().Scrubbed(OneLine(PQerrorMessage(session_.get())));
}

bool Session::OnStandby() const {
  const char* standby = PQparameterStatus(session_.get(), "in_hot_standby");
  return standby != nullptr && std::string_view(standby) == "on";
}

bool Session::Renew(Patience& patience, std::string& reason) {
  Drop();
  asking_ = true;
  session_ = DialAgain(*place_, patience, life_, reason);
  asking_ = false;
  locks_ = Patience::kWhole;
  return session_ != nullptr;
}

void Session::Drop() {
  session_.reset();
  cancelling_.reset();  // it finds nobody any more
}

Answer Session::Await(int sent, const Terms& terms, bool unit) {
  Answer answer;
  if (sent == 0) return answer;
  asking_ = true;
  const auto begun = Clock::now();
  bool stopped = false;
  int ends = 0;
  while (Arrived(terms, stopped, begun, answer)) {
    Result next(PQgetResult(session_.get()));
    if (next == nullptr) {
      // Each of the two statements ends with one, and a session that was lost answers nothing else.
      if (!unit || Lost() || ++ends > 4) break;
      continue;
    }
    const auto status = PQresultStatus(next.get());
    if (status == PGRES_PIPELINE_SYNC) {
      PQexitPipelineMode(session_.get());
      break;
    }
    if (status == PGRES_COPY_IN) PQputCopyEnd(session_.get(), "no");
    if (status == PGRES_COPY_OUT || status == PGRES_COPY_BOTH) Drop();
    if (status == PGRES_PIPELINE_ABORTED && answer.result != nullptr) continue;
    if (answer.result == nullptr || StateOf(answer.result.get()).empty()) answer.result = std::move(next);
  }
  EndCancelling();
  answer.took = std::chrono::duration_cast<milliseconds>(Clock::now() - begun);
  asking_ = false;
  return answer;
}

bool Session::Arrived(const Terms& terms, bool& stopped, Clock::time_point begun, Answer& answer) {
  if (session_ == nullptr) return false;
  if (PQisBusy(session_.get()) == 0) return true;
  Patience nobody;  // once it is stopped the operator is not asked any more
  std::optional<Waiting> waiting;
  waiting.emplace(stopped ? nobody : patience_, false);
  auto until = stopped ? Clock::now() + kStopAnswer : terms.limit ? begun + *terms.limit : kEndless;
  while (PQisBusy(session_.get()) != 0) {
    const Waiting::Came came = waiting->For(PQsocket(session_.get()), POLLIN, until);
    const bool late = came == Waiting::Came::kTime;
    if (late || came == Waiting::Came::kEnd) {
      if (stopped || (late && !terms.may_cancel)) {
        if (!stopped) answer.stopped = Answer::Stopped::kLimit;
        Drop();
        return false;
      }
      stopped = true;
      answer.stopped = late ? Answer::Stopped::kLimit : Answer::Stopped::kEnd;
      if (terms.may_cancel) Cancel();
      until = Clock::now() + kStopAnswer;
      waiting.emplace(nobody, false);
      continue;
    }
    if (PQconsumeInput(session_.get()) == 0) break;
  }
  return true;
}

void Session::Cancel() {
  PGcancel* request = PQgetCancel(session_.get());
  if (request == nullptr) return;
  cancelling_ = std::make_shared<Cancelling>();
  try {
    std::thread([request, state = cancelling_] {
      char ignored[256];
      PQcancel(request, ignored, sizeof ignored);
      PQfreeCancel(request);
      state->done = true;
    }).detach();
  } catch (const std::system_error&) {  // no more threads: the wait for its answer ends all the same
    PQfreeCancel(request);
    cancelling_->done = true;
  }
}

// A cancellation that is still on its way would hit the next statement.
void Session::EndCancelling() {
  if (cancelling_ == nullptr) return;
  Patience nobody;
  Waiting waiting(nobody, false);
  const auto until = Clock::now() + kStopAnswer;
  while (!cancelling_->done && Clock::now() < until) waiting.For(-1, 0, Clock::now() + milliseconds(1));
  const bool done = cancelling_->done;
  cancelling_.reset();
  if (!done) Drop();
}

bool Session::SendBegin() {
  return PQenterPipelineMode(session_.get()) != 0 &&
         PQsendQueryParams(session_.get(), "BEGIN", 0, nullptr, nullptr, nullptr, nullptr, 0) != 0;
}

bool Session::SendEnd() { return PQpipelineSync(session_.get()) != 0; }

void Session::WaitForLocks(milliseconds left) {
  const milliseconds wanted = left + kCoarse > Patience::kWhole ? Patience::kWhole : std::max(left, kAtOnce);
  if (locks_ == wanted || Lost()) return;
  if (PQtransactionStatus(session_.get()) == PQTRANS_INERROR) return;
  const std::string text = "SET lock_timeout = " + std::to_string(wanted.count());
  const Answer answer = Await(PQsendQuery(session_.get(), text.c_str()), {Patience::kWhole});
  if (PQresultStatus(answer.result.get()) == PGRES_COMMAND_OK) locks_ = wanted;
}

Answer Session::SetUp() {
  locks_ = Patience::kWhole;
  return Await(PQsendQuery(session_.get(), Settings(Where(), life_).c_str()), {Patience::kWhole});
}

}  // namespace tarvik::data
