#include "desktop/pickers/picker.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>

#include "desktop/pickers/calculator.h"
#include "desktop/style/theme.h"
#include "forms/control.h"

namespace tarvik::desktop {

namespace {

using measure::kGrid;

void AddKey(QHBoxLayout& line, const QString& key, const QString& what, QWidget* parent) {
  auto* cap = new QLabel(key, parent);
  cap->setProperty("role", QStringLiteral("keycap"));
  auto* text = new QLabel(what, parent);
  text->setProperty("role", QStringLiteral("caption"));
  line.addWidget(cap, 0, Qt::AlignVCenter);
  line.addWidget(text, 0, Qt::AlignVCenter);
  line.addSpacing(kGrid);
}

}  // namespace

PickerDialog::PickerDialog(SearchSource source, QWidget* parent) : QDialog(parent) {
  setWindowTitle(source.title);
  setWindowModality(Qt::ApplicationModal);
  resize(96 * kGrid, 66 * kGrid);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(3 * kGrid, 2 * kGrid, 3 * kGrid, 2 * kGrid);
  layout->setSpacing(3 * kGrid / 2);
  auto* title = new QLabel(source.title, this);
  title->setProperty("role", QStringLiteral("title"));
  layout->addWidget(title);
  panel_ = new SearchPanel(std::move(source), false, this);
  layout->addWidget(panel_, 1);

  auto* foot = new QHBoxLayout;
  foot->setSpacing(kGrid);
  AddKey(*foot, QStringLiteral("Intro"), QStringLiteral("tomar"), this);
  AddKey(*foot, QStringLiteral("↑ ↓"), QStringLiteral("renglón"), this);
  AddKey(*foot, QStringLiteral("Esc"), QStringLiteral("dejar como estaba"), this);
  foot->addStretch(1);
  auto* leave = new QPushButton(QStringLiteral("&Cancelar"), this);
  auto* take = new QPushButton(QStringLiteral("&Tomar"), this);
  leave->setAccessibleName(QStringLiteral("Cancelar"));
  take->setAccessibleName(QStringLiteral("Tomar el renglón"));
  take->setProperty("role", QStringLiteral("primary"));
  for (QPushButton* button : {leave, take}) {
    button->setAutoDefault(false);
    foot->addWidget(button);
  }
  layout->addLayout(foot);

  const auto accept_key = [this](const QString& key) {
    chosen_ = key;
    accept();
  };
  connect(panel_, &SearchPanel::Taken, this, accept_key);
  connect(panel_, &SearchPanel::Left, this, &QDialog::reject);
  connect(leave, &QPushButton::clicked, this, &QDialog::reject);
  connect(take, &QPushButton::clicked, this, [this, accept_key] {
    const QString key = panel_->Current();
    if (!key.isEmpty()) accept_key(key);
  });
  panel_->Filter().setFocus();
}

bool DesktopSelector::Elige(const std::string& clase, const std::string& titulo, forms::TextBox& campo,
                            std::string& elegido) {
  if (office_ == nullptr) return false;
  QWidget* over = QApplication::activeWindow();
  const QString held = QString::fromStdString(campo.Text());
  if (clase == "AuxiliarNumerico") {
    CalculatorDialog calculator(held, over);
    if (calculator.exec() != QDialog::Accepted) return false;
    elegido = calculator.Result().toStdString();
    return true;
  }
  // The list of articles comes without a title, or with an internal one that means nothing to an operator.
  const bool articles = clase == "ListaArticulos" && host::BusquedaPor(titulo) == nullptr;
  PickerDialog picker(SourceFor(office_->host.Conexion(), articles ? "Articulos" : titulo), over);
  const QString place = QStringLiteral("selector/tamaño");
  const QSize size = office_->settings.value(place).toSize();
  if (size.isValid()) picker.resize(size);
  picker.Panel().Start(held);
  const bool taken = picker.exec() == QDialog::Accepted;
  office_->settings.setValue(place, picker.size());
  if (taken) elegido = picker.Chosen().toStdString();
  return taken;
}

}  // namespace tarvik::desktop
