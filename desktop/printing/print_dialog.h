// PrintDialog: which printer, how many copies. It prints nothing, and it offers no file: a page is saved
// by way of "Guardar PDF". The toolkit's own dialog reads the files of the operator's home folder as soon
// as it comes up, and the base may lie there.
#pragma once

#include <QDialog>
#include <QString>
#include <QStringList>

class QCheckBox;
class QComboBox;
class QSpinBox;

namespace tarvik::desktop {

class PrintDialog : public QDialog {
  Q_OBJECT

 public:
  // `printers` has at least one name; the one in hand is `first`, if it is among them.
  PrintDialog(const QStringList& printers, const QString& first, QWidget* parent = nullptr);

  [[nodiscard]] QString Printer() const;
  [[nodiscard]] int Copies() const;
  [[nodiscard]] bool BothSides() const;

 private:
  QComboBox* printer_;
  QSpinBox* copies_;
  QCheckBox* both_sides_;
};

}  // namespace tarvik::desktop
