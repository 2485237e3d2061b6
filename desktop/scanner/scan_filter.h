// ScanFilter: tells a scanner from a hand. Keys that come faster than any hand types are held, and are a
// reading if they end as a scanner ends; held keys that are none come out as if nothing had been. It looks at
// the events' own times, so a program that is busy for a while takes neither for the other. What becomes of a
// reading is not its matter.
//
//   ScanFilter filter;                       // on the whole application
//   filter.wanted = [&] { return window.Front() != nullptr; };
//   filter.on_reading = [&](const QString& code) { host.Lectura(code.toStdString()); };
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

class QKeyEvent;

namespace tarvik::desktop {

struct ScanSettings {
  bool on = true;
  // Set, a reading is what stands between the two, of any length; else it is six characters or more, ended by
  // Enter. A suffix may be empty: Enter.
  QString prefix;
  QString suffix;
};

class ScanFilter final : public QObject {
  Q_OBJECT

 public:
  static constexpr int kWithin =
      25;                           // milliseconds between two keys of a scanner, and how long keys are held
  static constexpr int kLeast = 6;  // characters

  explicit ScanFilter(QObject* parent = nullptr);
  ~ScanFilter() override;

  // Both are asked and told on the window's thread. Without `wanted` every reading is.
  std::function<bool()> wanted;
  std::function<void(const QString& code)> on_reading;

  void Set(const ScanSettings& settings);
  [[nodiscard]] const ScanSettings& Settings() const { return settings_; }
  // Keys that are held at this moment, presses alone.
  [[nodiscard]] int Held() const;

 protected:
  // Keys as the window system gives them to a window, before any widget sees them.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool Press(const QKeyEvent& key);
  bool Release(const QKeyEvent& key);
  bool Hold(const QKeyEvent& key);
  bool Ends(const QKeyEvent& key);
  [[nodiscard]] bool CanBecomeAReading() const;
  bool Take();
  void LetGo();

  ScanSettings settings_;
  std::vector<std::unique_ptr<QKeyEvent>> held_;  // presses and releases, as they came
  QString text_;                                  // of the presses
  quint64 last_ = 0;
  QTimer timer_;
  quint64 taken_ = 0;  // when the last reading ended; 0: something else has come since
  bool last_turn_ = false;
  const QEvent* given_ = nullptr;  // a held key on its way out; compared only
};

}  // namespace tarvik::desktop
