// Scanning: the scanner in the program put together. Keys that are a reading go to the host for the document
// in front; what becomes of them is shown on its tape and heard. The menu's items for tape, tray and
// settings.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "desktop/office.h"
#include "desktop/scanner/scanner_windows.h"
#include "host/cinta.h"

namespace tarvik::desktop {

class DocumentView;
class MainWindow;

class Scanning final : public QObject {
  Q_OBJECT

 public:
  // Both outlive this.
  Scanning(Office& office, MainWindow& window);
  ~Scanning() override;

  [[nodiscard]] ScanFilter& Filter() { return filter_; }
  [[nodiscard]] const ScannerChoices& Choices() const { return choices_; }
  void Choose(const ScannerChoices& choices);
  [[nodiscard]] TrayWindow& Tray();
  // Sounds a number of tones, one after the other; the system's own, until set otherwise.
  std::function<void(int tones)> sound;

 private:
  [[nodiscard]] bool Wanted() const;
  void Read(const QString& code);
  void Changed(const host::Lectura& reading);
  void ShowTapes();
  void ReachTape();

  Office& office_;
  MainWindow& window_;
  ScannerChoices choices_;
  ScanFilter filter_;
  std::unique_ptr<TrayWindow> tray_;
  bool to_be_shown_ = false;
};

}  // namespace tarvik::desktop
