// One session with a server, and exchanges on it: each is sent, and its answer waited for in turns. What a
// failure means for a unit of work, and what may be sent once more, is the connection's to decide.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "data/patience.h"
#include "data/postgresql/dial.h"
#include "data/postgresql/library.h"

namespace tarvik::data {

// How long an answer may take.
struct Terms {
  std::optional<std::chrono::milliseconds> limit;  // nothing: as long as it takes
  // A COMMIT that waits for a standby would answer a cancellation with success, and the standby would not
  // have it: such a wait is not cancelled but left.
  bool may_cancel = true;
};

struct Answer {
  enum class Stopped { kNo, kLimit, kEnd };

  Result result;  // the last one, or the first error; null if the session is gone, or nothing could be sent
  Stopped stopped = Stopped::kNo;  // it took too long, or the process was asked to end
  std::chrono::milliseconds took{0};
};

class Session {
 public:
  // `session`: made by DialFirst(). The patience outlives it.
  Session(std::shared_ptr<Place> place, Handle session, Patience& patience);

  [[nodiscard]] PGconn* Get() const { return session_.get(); }
  [[nodiscard]] const Address& Where() const { return place_->address; }
  [[nodiscard]] bool WrittenTo() const { return place_->written_to; }
  [[nodiscard]] bool Asking() const { return asking_; }
  // There is none, as far as is known without looking.
  [[nodiscard]] bool Lost() const;
  // Reads what has come in meanwhile: a server that has ended is noticed before something is sent to it.
  bool Sound();
  // Why it was lost, if the server has told; on one line.
  [[nodiscard]] std::string Reason() const;

  // Made with a standby, which takes no writes.
  [[nodiscard]] bool OnStandby() const;

  // Replaces it, see DialAgain(). False if there is none; `reason` tells why.
  bool Renew(Patience& patience, std::string& reason);
  // Ends it, whatever it was in the middle of: the server undoes what was not committed.
  void Drop();

  // Waits for the answer of what was just sent; `sent` is what the library said of it. With `unit` the answer
  // to a BEGIN comes in front of it, see SendBegin(). After a stop it has either an answer (that the
  // statement was stopped, or that it had been carried out) or no session any more.
  Answer Await(int sent, const Terms& terms, bool unit = false);

  // BEGIN goes out together with the next statement. That one is sent, then SendEnd().
  bool SendBegin();
  bool SendEnd();

  // Statements wait this long for locks from now on. Nothing is sent if they do already.
  void WaitForLocks(std::chrono::milliseconds left);
  // A unit was undone: what was set in it is uncertain.
  void Undone() { locks_ = {}; }

  // The life of this session and of those that replace it, see SessionName().
  [[nodiscard]] std::int64_t Life() const { return life_; }
  void Life(std::int64_t number) { life_ = number; }
  // What is set in each session, once more.
  Answer SetUp();

 private:
  struct Cancelling;

  // Waits until a result can be taken. False if the session was dropped.
  bool Arrived(const Terms& terms, bool& stopped, Patience::Clock::time_point begun, Answer& answer);
  void Cancel();
  void EndCancelling();

  std::shared_ptr<Place> place_;
  Handle session_;
  Patience& patience_;
  std::int64_t life_ = 0;
  std::optional<std::chrono::milliseconds> locks_;  // nothing: not known
  bool asking_ = false;
  std::shared_ptr<Cancelling> cancelling_;
};

}  // namespace tarvik::data
