// The scanner's two windows: the tray of readings that wait for a person, and how this station recognises its
// scanner. Neither reads a key of a scanner itself.
#pragma once

#include <QDialog>
#include <functional>

#include "desktop/office.h"
#include "desktop/scanner/scan_filter.h"

class QCheckBox;
class QLineEdit;
class QSettings;

namespace tarvik::desktop {

class TapePanel;

// What this station has set: in the program's settings, for it alone.
struct ScannerChoices {
  ScanSettings recognition;
  bool sound = true;  // one tone for a reading that came in, three for one that did not
};
ScannerChoices LoadScanner(QSettings& settings);
void SaveScanner(QSettings& settings, const ScannerChoices& choices);

class TrayWindow final : public QDialog {
  Q_OBJECT

 public:
  TrayWindow(Office& office, QWidget* parent);
  [[nodiscard]] TapePanel& Tray() const { return *tray_; }

 private:
  TapePanel* tray_;
};

class ScannerDialog final : public QDialog {
  Q_OBJECT

 public:
  ScannerDialog(const ScannerChoices& choices, QWidget* parent);
  [[nodiscard]] ScannerChoices Choices() const;

 private:
  void FitFields();

  QCheckBox* on_;
  QLineEdit* prefix_;
  QLineEdit* suffix_;
  QCheckBox* sound_;
};

}  // namespace tarvik::desktop
