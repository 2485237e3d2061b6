#include "desktop/windows/errors_window.h"

#include <QApplication>
#include <QClipboard>
#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "desktop/style/key_caps.h"
#include "desktop/style/theme.h"

namespace tarvik::desktop {

namespace {

using measure::kGrid;

enum Column { kTime, kProcedure, kText, kColumns };

QLabel* Words(const QString& text, const char* role) {
  auto* label = new QLabel(text);
  if (role != nullptr) label->setProperty("role", role);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

// What is safe, and what to do.
QWidget* WhatNow() {
  auto* band = new QFrame;
  band->setProperty("role", "band");
  auto* column = new QVBoxLayout(band);
  column->setContentsMargins(2 * kGrid, kGrid + kGrid / 2, 2 * kGrid, kGrid + kGrid / 2);
  column->setSpacing(kGrid / 2);
  const auto say = [&](const QString& text) { column->addWidget(Words(text, nullptr)); };
  say(ErrorsWindow::tr(
      "Lo que está guardado sigue guardado. Cada renglón mueve existencias una sola vez, por "
      "más veces que se oprima F5."));
  say(
      ErrorsWindow::tr("Si el documento quedó pendiente, ábralo, revise sus renglones y finalícelo: se mueve "
                       "sólo lo que falta."));
  say(
      ErrorsWindow::tr("Si se afectó sólo una parte, la lista lo muestra como «Afectado a medias». Elíjalo y "
                       "oprima F7 para completarlo."));
  say(ErrorsWindow::tr(
      "Si los avisos siguen, oprima Copiar y entregue el texto a quien atiende el sistema."));
  return band;
}

QTableWidget* Lines(QWidget* parent) {
  auto* table = new QTableWidget(0, kColumns, parent);
  table->setHorizontalHeaderLabels(
      {ErrorsWindow::tr("Hora"), ErrorsWindow::tr("Procedimiento"), ErrorsWindow::tr("Qué pasó")});
  table->setAccessibleName(ErrorsWindow::tr("Avisos de error del paso"));
  table->setProperty("role", "report");
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setSelectionMode(QAbstractItemView::SingleSelection);
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setAlternatingRowColors(true);
  table->setShowGrid(false);
  table->setWordWrap(true);
  table->setTabKeyNavigation(false);
  table->verticalHeader()->hide();
  table->verticalHeader()->setMinimumSectionSize(measure::kRow);
  auto* header = table->horizontalHeader();
  header->setHighlightSections(false);
  header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  header->setSectionResizeMode(kText, QHeaderView::Stretch);
  table->setColumnWidth(kTime, 10 * kGrid);
  table->setColumnWidth(kProcedure, 20 * kGrid);
  return table;
}

}  // namespace

ErrorsWindow::ErrorsWindow(QWidget* parent)
    : QWidget(parent, Qt::Window), title_(Words({}, "title")), table_(Lines(this)) {
  setWindowTitle(tr("Avisos de error"));
  // Does not take the focus: a scanner that is sending must reach the field that it was aimed at.
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_QuitOnClose, false);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* body = new QVBoxLayout;
  body->setContentsMargins(2 * kGrid, 2 * kGrid, 2 * kGrid, 2 * kGrid);
  body->setSpacing(kGrid + kGrid / 2);
  body->addWidget(title_);
  body->addWidget(WhatNow());
  body->addWidget(table_, 1);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(kGrid);
  buttons->addStretch();
  // No button is the default one, and Enter presses none: only a click, its letter or the space bar do.
  const auto button = [&](const QString& text, const QString& accessible, const char* role, auto&& act) {
    auto* made = new QPushButton(text, this);
    made->setProperty("role", role);
    made->setAccessibleName(accessible);
    made->setAutoDefault(false);
    buttons->addWidget(made);
    connect(made, &QPushButton::clicked, this, act);
  };
  button(tr("&Copiar"), tr("Copiar todos los avisos"), "outlined", [this] { Copy(); });
  button(tr("Ce&rrar"), tr("Cerrar esta ventana"), "primary", [this] { close(); });
  body->addLayout(buttons);
  column->addLayout(body, 1);
  auto* keys = new KeyCaps;
  keys->Show({{tr("↑ ↓"), tr("aviso")}, {tr("Ctrl+C"), tr("copiar todos")}, {tr("Esc"), tr("cerrar")}});
  column->addWidget(KeyLine(*keys));

  AddKey(*this, QKeySequence::Copy, [this] { Copy(); });
  AddKey(*this, QKeySequence(Qt::Key_Escape), [this] { close(); });
  setFocusProxy(table_);
  resize(100 * kGrid, 64 * kGrid);
}

bool ErrorsWindow::Any() const { return !listed_.empty(); }

void ErrorsWindow::List(const std::vector<Trouble>& troubles) {
  if (!isVisible()) {
    listed_.clear();
    table_->setRowCount(0);
  }
  for (const Trouble& trouble : troubles) {
    listed_.push_back(trouble);
    const int row = table_->rowCount();
    table_->insertRow(row);
    table_->setItem(row, kTime, new QTableWidgetItem(trouble.time));
    table_->setItem(row, kProcedure, new QTableWidgetItem(trouble.procedure));
    auto* text = new QTableWidgetItem(trouble.text.simplified());
    text->setToolTip(trouble.text);
    table_->setItem(row, kText, text);
  }
  title_->setText(tr("%1 avisos de error").arg(listed_.size()));
  if (table_->currentRow() < 0) table_->setCurrentCell(0, 0);
  // Some platforms activate every new window, whatever it asks for.
  QWidget* in_hand = QApplication::activeWindow();
  show();
  if (in_hand != nullptr && in_hand != this) in_hand->activateWindow();
  table_->resizeRowsToContents();
}

void ErrorsWindow::Reach() {
  show();
  raise();
  activateWindow();
  table_->setFocus();
}

void ErrorsWindow::Copy() {
  QString text;
  for (const Trouble& trouble : listed_) {
    const bool whole = !trouble.procedure.isEmpty();
    QString report = whole ? trouble.report : trouble.time + QLatin1Char(' ') + trouble.text;
    text += report.remove(QLatin1Char('\r')).trimmed() + QStringLiteral("\n\n");
  }
  QApplication::clipboard()->setText(text);
}

}  // namespace tarvik::desktop
