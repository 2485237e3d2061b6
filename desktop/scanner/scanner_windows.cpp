#include "desktop/scanner/scanner_windows.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>

#include "desktop/scanner/tape_panel.h"
#include "desktop/style/layouts.h"
#include "desktop/style/theme.h"

namespace tarvik::desktop {
namespace {

using measure::kGrid;

const QString kOn = QStringLiteral("lector/reconoce");
const QString kPrefix = QStringLiteral("lector/prefijo");
const QString kSuffix = QStringLiteral("lector/sufijo");
const QString kSound = QStringLiteral("lector/sonido");

QLabel* Soft(const QString& text) {
  auto* label = new QLabel(text);
  label->setProperty("role", "soft");
  label->setWordWrap(true);
  return label;
}

QLabel* CaptionOf(const QString& text) {
  auto* label = new QLabel(text);
  label->setProperty("role", "caption");
  return label;
}

}  // namespace

ScannerChoices LoadScanner(QSettings& settings) {
  ScannerChoices choices;
  choices.recognition.on = settings.value(kOn, true).toBool();
  choices.recognition.prefix = settings.value(kPrefix).toString();
  choices.recognition.suffix = settings.value(kSuffix).toString();
  choices.sound = settings.value(kSound, true).toBool();
  return choices;
}

void SaveScanner(QSettings& settings, const ScannerChoices& choices) {
  settings.setValue(kOn, choices.recognition.on);
  settings.setValue(kPrefix, choices.recognition.prefix);
  settings.setValue(kSuffix, choices.recognition.suffix);
  settings.setValue(kSound, choices.sound);
}

TrayWindow::TrayWindow(Office& office, QWidget* parent) : QDialog(parent) {
  setWindowTitle(tr("Lecturas por atender"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(2 * kGrid, 2 * kGrid, 2 * kGrid, 2 * kGrid);
  tray_ = new TapePanel(
      office, nullptr, [this] { close(); }, this);
  column->addWidget(tray_);
  resize(70 * kGrid, 64 * kGrid);
}

ScannerDialog::ScannerDialog(const ScannerChoices& choices, QWidget* parent)
    : QDialog(parent),
      on_(new QCheckBox(tr("&Reconocer las lecturas del lector"))),
      prefix_(new QLineEdit(choices.recognition.prefix)),
      suffix_(new QLineEdit(choices.recognition.suffix)),
      sound_(new QCheckBox(tr("&Sonar al leer: un tono si entró, tres si no"))) {
  setWindowTitle(tr("Lector de esta estación"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(3 * kGrid, 3 * kGrid, 3 * kGrid, 2 * kGrid);
  column->setSpacing(kGrid * 3 / 2);
  on_->setChecked(choices.recognition.on);
  sound_->setChecked(choices.sound);
  column->addWidget(on_);
  column->addWidget(
      Soft(tr("Una lectura son seis caracteres o más, seguidos y terminados con Intro. Si el lector "
              "manda un prefijo, lo que hay entre el prefijo y el sufijo es la lectura, de cualquier "
              "largo; sin sufijo la termina Intro.")));
  auto* marks = new QHBoxLayout;
  prefix_->setAccessibleName(tr("Prefijo del lector"));
  suffix_->setAccessibleName(tr("Sufijo del lector"));
  marks->addWidget(Under(CaptionOf(tr("Prefijo")), prefix_));
  marks->addWidget(Under(CaptionOf(tr("Sufijo")), suffix_));
  column->addLayout(marks);
  column->addWidget(sound_);
  auto* accept = new QPushButton(tr("&Guardar"));
  accept->setProperty("role", "primary");
  accept->setDefault(true);
  auto* cancel = new QPushButton(tr("&Cancelar"));
  cancel->setProperty("role", "outlined");
  column->addWidget(AtRight({cancel, accept}));
  connect(accept, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(on_, &QCheckBox::toggled, this, &ScannerDialog::FitFields);
  connect(prefix_, &QLineEdit::textChanged, this, &ScannerDialog::FitFields);
  FitFields();
  setMinimumWidth(58 * kGrid);
}

void ScannerDialog::FitFields() {
  prefix_->setEnabled(on_->isChecked());
  suffix_->setEnabled(on_->isChecked() && !prefix_->text().isEmpty());
}

ScannerChoices ScannerDialog::Choices() const {
  ScannerChoices choices;
  choices.recognition.on = on_->isChecked();
  choices.recognition.prefix = prefix_->text();
  if (!prefix_->text().isEmpty()) choices.recognition.suffix = suffix_->text();
  choices.sound = sound_->isChecked();
  return choices;
}

}  // namespace tarvik::desktop
