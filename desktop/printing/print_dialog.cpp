#include "desktop/printing/print_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/style/theme.h"

namespace tarvik::desktop {

using measure::kGrid;

PrintDialog::PrintDialog(const QStringList& printers, const QString& first, QWidget* parent)
    : QDialog(parent) {
  setWindowTitle(QStringLiteral("Imprimir"));
  setWindowModality(Qt::ApplicationModal);
  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(3 * kGrid, 3 * kGrid, 3 * kGrid, 2 * kGrid);
  outer->setSpacing(3 * kGrid);
  auto* rows = new QFormLayout;
  rows->setSpacing(kGrid);

  printer_ = new QComboBox(this);
  printer_->setAccessibleName(QStringLiteral("Impresora"));
  printer_->addItems(printers);
  printer_->setCurrentIndex(std::max(0, static_cast<int>(printers.indexOf(first))));
  printer_->setMinimumWidth(36 * kGrid);
  rows->addRow(QStringLiteral("I&mpresora"), printer_);

  constexpr int kMost = 99;
  copies_ = new QSpinBox(this);
  copies_->setAccessibleName(QStringLiteral("Copias"));
  copies_->setRange(1, kMost);
  rows->addRow(QStringLiteral("&Copias"), copies_);

  both_sides_ = new QCheckBox(QStringLiteral("Por &las dos caras"), this);
  both_sides_->setAccessibleName(QStringLiteral("Por las dos caras"));
  rows->addRow(QString(), both_sides_);
  outer->addLayout(rows);

  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(kGrid);
  buttons->addStretch(1);
  auto* print = new QPushButton(QStringLiteral("&Imprimir"), this);
  print->setAccessibleName(QStringLiteral("Imprimir"));
  print->setProperty("role", QStringLiteral("primary"));
  print->setDefault(true);
  auto* leave = new QPushButton(QStringLiteral("Ca&ncelar"), this);
  leave->setAccessibleName(QStringLiteral("Cancelar"));
  leave->setAutoDefault(false);
  for (QPushButton* button : {print, leave}) buttons->addWidget(button);
  outer->addLayout(buttons);
  connect(print, &QPushButton::clicked, this, &QDialog::accept);
  connect(leave, &QPushButton::clicked, this, &QDialog::reject);
  printer_->setFocus();
}

QString PrintDialog::Printer() const { return printer_->currentText(); }
int PrintDialog::Copies() const { return copies_->value(); }
bool PrintDialog::BothSides() const { return both_sides_->isChecked(); }

}  // namespace tarvik::desktop
