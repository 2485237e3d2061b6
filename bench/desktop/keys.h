// Keys by the window system's queue, timed from the press to the painted result, and their report.
#pragma once

#include <QApplication>
#include <QString>
#include <string>
#include <vector>

#include "bench/desktop/engine_clock.h"

namespace tarvik::bench {

constexpr double kFrame = 16;

// Tells painting and the time that the window's thread is held.
class Application final : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    const bool outermost = depth_ == 0;
    const bool paints = event->type() == QEvent::UpdateRequest && !painting_;
    const auto since = Clock::now();
    const double engine = engine_ms;
    const double worked = outermost ? Worked() : 0;
    ++depth_;
    if (paints) painting_ = true;
    const bool taken = QApplication::notify(receiver, event);
    --depth_;
    if (paints) {
      painting_ = false;
      paint_ms += Milliseconds(since);
      paint_engine_ms += engine_ms - engine;
    }
    if (event->type() == QEvent::Paint) ++paints_seen;
    if (outermost) {
      held_ms += Milliseconds(since);
      held_work += Worked() - worked;
    }
    return taken;
  }

  double paint_ms = 0;
  double paint_engine_ms = 0;
  double held_ms = 0;
  double held_work = 0;
  int paints_seen = 0;

 private:
  int depth_ = 0;
  bool painting_ = false;
};

inline Application& App() { return *static_cast<Application*>(QCoreApplication::instance()); }

struct Sample {
  double all = 0;
  double engine = 0;
  double paint = 0;
  double work = 0;  // of the processor, outside the engine
};

// The value below which this part of them lies: 0.5 for the median.
double Of(std::vector<double> values, double part);

extern std::string box_shown;  // a box between the keys would be measured with them
extern int over;               // kinds whose 99th is over a frame without the engine

void Headline();
// Two kinds of what is left without the engine: by the clock, which other programs' turns lengthen, and
// what the processor worked on it.
void Report(const std::string& screen, const std::string& key, int lines, const std::vector<Sample>& samples);

// Lets the program do all that it can do at once, painting included.
void Settle();
// Lets it also do what stands behind a pause, or comes from the reader's thread.
void SettleFor(int milliseconds);

Qt::Key KeyOf(QChar letter);
Sample Timed(Qt::Key key, const QString& text = {});
// Unmeasured.
void Press(Qt::Key key);
void Type(const QString& text);

}  // namespace tarvik::bench
