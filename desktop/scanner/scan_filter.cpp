#include "desktop/scanner/scan_filter.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace tarvik::desktop {
namespace {

bool IsEnter(const QKeyEvent& key) { return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter; }

// Shift and the like come between the characters of a scanner too.
bool IsModifier(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
      return true;
    default:
      return false;
  }
}

// Whether it types characters, with nothing held that makes a command of it. AltGr comes as Ctrl and Alt.
bool Types(const QKeyEvent& key) {
  const Qt::KeyboardModifiers held = key.modifiers();
  const bool commands = (held & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) &&
                        !((held & Qt::ControlModifier) && (held & Qt::AltModifier));
  if (commands || key.text().isEmpty()) return false;
  const QString text = key.text();
  return std::all_of(text.begin(), text.end(), [](QChar sign) { return sign.isPrint(); });
}

}  // namespace

ScanFilter::ScanFilter(QObject* parent) : QObject(parent) {
  timer_.setSingleShot(true);
  // When it is time, one more turn of the loop: keys that have come already are looked at first, so that a
  // program that was busy takes no scanner for a hand.
  connect(&timer_, &QTimer::timeout, this, [this] {
    if (std::exchange(last_turn_, true)) return LetGo();
    timer_.start(0);
  });
  QCoreApplication::instance()->installEventFilter(this);
}

ScanFilter::~ScanFilter() = default;

void ScanFilter::Set(const ScanSettings& settings) {
  LetGo();
  settings_ = settings;
}

int ScanFilter::Held() const {
  return static_cast<int>(std::count_if(held_.begin(), held_.end(),
                                        [](const auto& key) { return key->type() == QEvent::KeyPress; }));
}

bool ScanFilter::eventFilter(QObject* watched, QEvent* event) {
  const bool press = event->type() == QEvent::KeyPress;
  if ((!press && event->type() != QEvent::KeyRelease) || event == given_ || !watched->isWindowType())
    return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  if (!settings_.on || (held_.empty() && wanted && !wanted())) return false;
  return press ? Press(key) : Release(key);
}

bool ScanFilter::Press(const QKeyEvent& key) {
  if (IsModifier(key)) return false;
  const bool close = key.timestamp() != 0 && key.timestamp() >= last_ && key.timestamp() - last_ <= kWithin;
  // A key that repeats is a finger that rests on it.
  if (!held_.empty() && (!close || key.isAutoRepeat())) LetGo();
  if (key.timestamp() == 0 || key.isAutoRepeat()) return false;
  last_ = key.timestamp();
  const quint64 taken = std::exchange(taken_, 0);
  // Some scanners end a line twice.
  if (taken != 0 && close && IsEnter(key)) return true;
  if (Ends(key)) return Take();
  if (Types(key)) return Hold(key);
  LetGo();
  return false;
}

// The release of a key that is held stays behind its press.
bool ScanFilter::Release(const QKeyEvent& key) {
  const auto down = std::count_if(held_.begin(), held_.end(), [&](const auto& held) {
    return held->key() == key.key() && held->type() == QEvent::KeyPress;
  });
  const auto up = std::count_if(held_.begin(), held_.end(), [&](const auto& held) {
    return held->key() == key.key() && held->type() == QEvent::KeyRelease;
  });
  if (down <= up || key.isAutoRepeat()) return false;
  held_.emplace_back(key.clone());
  return true;
}

bool ScanFilter::Hold(const QKeyEvent& key) {
  held_.emplace_back(key.clone());
  text_ += key.text();
  if (!CanBecomeAReading()) {
    LetGo();
    return true;  // it has come out with the rest
  }
  if (!settings_.prefix.isEmpty() && !settings_.suffix.isEmpty() && text_.endsWith(settings_.suffix) &&
      text_.size() > settings_.prefix.size() + settings_.suffix.size()) {
    return Take();
  }
  last_turn_ = false;
  timer_.start(kWithin);
  return true;
}

// With a prefix, what doesn't begin by it is no reading and is held no longer.
bool ScanFilter::CanBecomeAReading() const {
  if (settings_.prefix.isEmpty()) return true;
  return settings_.prefix.startsWith(text_.left(settings_.prefix.size()));
}

bool ScanFilter::Ends(const QKeyEvent& key) {
  if (held_.empty() || !IsEnter(key) || key.modifiers() & ~Qt::KeypadModifier) return false;
  if (settings_.prefix.isEmpty()) return text_.size() >= kLeast;
  return settings_.suffix.isEmpty() && text_.size() > settings_.prefix.size();
}

bool ScanFilter::Take() {
  QString code = std::exchange(text_, {}).mid(settings_.prefix.size());
  if (!settings_.prefix.isEmpty()) code.chop(settings_.suffix.size());
  held_.clear();
  timer_.stop();
  taken_ = last_;
  if (on_reading) on_reading(code);
  return true;
}

void ScanFilter::LetGo() {
  timer_.stop();
  text_.clear();
  for (const auto& key : std::exchange(held_, {})) {
    QWindow* window = QGuiApplication::focusWindow();
    if (window == nullptr) continue;
    given_ = key.get();
    QCoreApplication::sendEvent(window, key.get());
  }
  given_ = nullptr;
}

}  // namespace tarvik::desktop
