// Troubles: what the operator sees of trouble with the base while an act runs. During a wait the windows keep
// painting and the line of keys says so. Error reports are counted there, and handed on as a list when an act
// that met several has ended. No event is let through and no box is answered.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <functional>
#include <string>
#include <vector>

namespace tarvik::desktop {

// One error report, taken apart.
struct Trouble {
  QString time;       // "14:03:22"
  QString procedure;  // "SalvaEntrada"; empty for an error that no trap took
  QString text;       // what the base or the routine said
  QString report;     // as the box had it
};

// A report's parts; an error that is no report has its text alone. `now` stands for a time that it lacks.
Trouble TakenApart(const QString& report, const QString& now);

class Troubles : public QObject {
  Q_OBJECT

 public:
  // More than one error came up in one act, which has ended.
  std::function<void(const std::vector<Trouble>&)> on_several;

  // One turn of a wait for the base: paints the visible windows at most ten times a second, and says the
  // word once the wait has lasted. Nothing else runs: keys, clicks, timers and posted functions wait.
  void Turn();
  // The act goes on: the notice of the wait is removed.
  void GoesOn();
  // An error is about to be shown. `acting`: in an operator's act, whose end StepOver tells; otherwise the
  // step is over at the next turn of the loop that no box holds.
  void Add(Trouble trouble, bool acting);
  void StepOver();

  // Lives while a box is shown: the wait is over, and no step ends before the box is closed.
  class Standing {
   public:
    explicit Standing(Troubles& troubles) : troubles_(troubles) {
      troubles_.GoesOn();
      ++troubles_.boxes_;
    }
    ~Standing() { --troubles_.boxes_; }
    Standing(const Standing&) = delete;
    Standing& operator=(const Standing&) = delete;

   private:
    Troubles& troubles_;
  };

 private:
  void Say();
  void TellLater();

  QElapsedTimer wait_;     // since the wait began
  QElapsedTimer turn_;     // since its last turn
  QElapsedTimer painted_;  // since the windows were painted
  bool waiting_ = false;   // the notice is shown
  int boxes_ = 0;
  std::vector<Trouble> now_;   // of the step under way
  std::vector<Trouble> told_;  // of steps that are over, to be listed
};

}  // namespace tarvik::desktop
