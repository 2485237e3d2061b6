#include "desktop/platform/troubles.h"

#include <QApplication>
#include <QRegularExpression>
#include <QTimer>
#include <QWidget>
#include <utility>

#include "desktop/style/key_caps.h"

namespace tarvik::desktop {

namespace {

constexpr int kWordAfter = 300;   // milliseconds: a shorter wait is not announced
constexpr int kPaintEvery = 100;  // milliseconds
constexpr int kAnother =
    250;                    // milliseconds without a turn after which the next turn belongs to another wait
constexpr int kAgain = 50;  // milliseconds between two checks whether the box is closed

}  // namespace

Trouble TakenApart(const QString& report, const QString& now) {
  static const QRegularExpression shape(
      QStringLiteral(
          "^(\\d\\d:\\d\\d:\\d\\d) Ocurrió un error:\\r?\\nModule: .*?\\r?\\nFunction: (.*?)\\r?\\n"
          "Description: (.*?)(?: código duro: \\d+)?\\s*$"),
      QRegularExpression::DotMatchesEverythingOption);
  const auto parts = shape.match(report);
  if (!parts.hasMatch()) return {now, {}, report.trimmed(), report};
  return {parts.captured(1), parts.captured(2), parts.captured(3).trimmed(), report};
}

void Troubles::Turn() {
  if (!turn_.isValid() || turn_.hasExpired(kAnother)) {
    wait_.start();
    painted_.start();
  }
  turn_.start();
  if (!painted_.hasExpired(kPaintEvery)) return;
  if (!waiting_ && wait_.hasExpired(kWordAfter)) {
    waiting_ = true;
    Say();
    // Outside an act the wait is over as soon as the event loop runs again.
    QTimer::singleShot(0, this, &Troubles::GoesOn);
  }
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible()) window->repaint();
  }
  painted_.start();
}

void Troubles::GoesOn() {
  turn_.invalidate();
  if (std::exchange(waiting_, false)) Say();
}

void Troubles::Add(Trouble trouble, bool acting) {
  now_.push_back(std::move(trouble));
  Say();
  if (!acting && now_.size() == 1) TellLater();
}

void Troubles::StepOver() {
  GoesOn();
  if (now_.empty()) return;
  auto step = std::exchange(now_, {});
  Say();
  if (step.size() < 2) return;
  told_.insert(told_.end(), std::make_move_iterator(step.begin()), std::make_move_iterator(step.end()));
  TellLater();
}

void Troubles::TellLater() {
  QTimer::singleShot(0, this, [this] {
    if (boxes_ > 0) return QTimer::singleShot(kAgain, this, &Troubles::TellLater);
    if (!told_.empty()) {
      const auto told = std::exchange(told_, {});
      if (on_several) on_several(told);
    } else {
      StepOver();
    }
  });
}

void Troubles::Say() {
  QString words;
  if (waiting_) {
    words = tr("Esperando a la base de datos…");
  } else if (!now_.empty()) {
    words = now_.size() == 1 ? tr("1 aviso de error en este paso")
                             : tr("%1 avisos de error en este paso").arg(now_.size());
  }
  LineWord::SayAll(words);
}

}  // namespace tarvik::desktop
