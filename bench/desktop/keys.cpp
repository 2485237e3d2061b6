#include "bench/desktop/keys.h"

#include <QTest>
#include <QWindow>
#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace tarvik::bench {

double Of(std::vector<double> values, double part) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const auto place = static_cast<std::size_t>(part * static_cast<double>(values.size()));
  return values[std::min(place, values.size() - 1)];
}

std::string box_shown;

int over = 0;

void Headline() {
  std::printf("%-12s %-30s %5s %4s | %7s %7s %7s | %7s %7s | %7s %7s %7s | %7s %7s | %7s\n", "screen", "key",
              "lines", "n", "median", "99th", "worst", "engine", "99th", "rest", "99th", "worst", "cpu",
              "99th", "paint");
}

void Report(const std::string& screen, const std::string& key, int lines,
            const std::vector<Sample>& samples) {
  std::vector<double> all, engine, rest, work, paint;
  for (const Sample& sample : samples) {
    all.push_back(sample.all);
    engine.push_back(sample.engine);
    rest.push_back(sample.all - sample.engine);
    work.push_back(sample.work);
    paint.push_back(sample.paint);
  }
  const bool slow = Of(rest, 0.99) > kFrame;
  over += slow;
  std::printf(
      "%-12s %-30s %5d %4zu | %7.2f %7.2f %7.2f | %7.2f %7.2f | %7.2f %7.2f %7.2f | %7.2f %7.2f | %7.2f%s\n",
      screen.c_str(), key.c_str(), lines, samples.size(), Of(all, 0.5), Of(all, 0.99), Of(all, 1),
      Of(engine, 0.5), Of(engine, 0.99), Of(rest, 0.5), Of(rest, 0.99), Of(rest, 1), Of(work, 0.5),
      Of(work, 0.99), Of(paint, 0.5), slow ? "  over a frame" : "");
  std::fflush(stdout);
}

void Settle() {
  for (int quiet = 0; quiet < 2;) {
    const double held = App().held_ms;
    QCoreApplication::processEvents();
    quiet = App().held_ms == held ? quiet + 1 : 0;
  }
}

void SettleFor(int milliseconds) {
  QTest::qWait(milliseconds);
  Settle();
}

namespace {

void Send(Qt::Key key, const QString& text) {
  QWindow* window = QGuiApplication::focusWindow();
  if (window == nullptr) throw std::runtime_error("no window has the keyboard");
  QTest::simulateEvent(window, true, key, Qt::NoModifier, text, false);
}

void Release(Qt::Key key, const QString& text) {
  if (QWindow* window = QGuiApplication::focusWindow()) {
    QTest::simulateEvent(window, false, key, Qt::NoModifier, text, false);
  }
}

}  // namespace

Qt::Key KeyOf(QChar letter) { return static_cast<Qt::Key>(letter.toUpper().unicode()); }

Sample Timed(Qt::Key key, const QString& text) {
  Settle();
  const double engine = engine_ms;
  const double work = Worked() - engine_work;
  const double paint = App().paint_ms - App().paint_engine_ms;
  const int seen = App().paints_seen;
  const auto since = Clock::now();
  Send(key, text);
  Release(key, text);
  Clock::time_point done = Clock::now();
  int counted = seen;
  for (int quiet = 0; quiet < 2;) {
    const double held = App().held_ms;
    QCoreApplication::processEvents();
    const bool worked = App().held_ms != held;
    if (worked) done = Clock::now();
    counted = App().paints_seen;
    quiet = worked ? 0 : quiet + 1;
  }
  if (!box_shown.empty()) throw std::runtime_error("a box in the middle of the keys: " + box_shown);
  if (counted == seen) throw std::runtime_error("a key after which nothing was painted");
  return {std::chrono::duration<double, std::milli>(done - since).count(), engine_ms - engine,
          App().paint_ms - App().paint_engine_ms - paint, Worked() - engine_work - work};
}

void Press(Qt::Key key) {
  Send(key, {});
  Release(key, {});
  Settle();
}

void Type(const QString& text) {
  for (const QChar letter : text) {
    Send(KeyOf(letter), letter);
    Release(KeyOf(letter), letter);
  }
  Settle();
}

}  // namespace tarvik::bench
