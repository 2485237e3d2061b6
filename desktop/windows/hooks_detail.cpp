#include "desktop/windows/hooks_detail.h"

#include <QFontDatabase>
#include <QFrame>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QVBoxLayout>

#include "desktop/style/theme.h"
#include "desktop/windows/hooks_looks.h"
#include "desktop/windows/hooks_model.h"

namespace tarvik::desktop::hooks {

namespace {

QString Text(const std::string& text) { return QString::fromStdString(text); }

}  // namespace

Detail::Detail(const Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
  auto* air = new QVBoxLayout(this);
  air->setContentsMargins(0, measure::kGrid, 0, 0);
  auto* panel = new QFrame(this);
  air->addWidget(panel);
  panel->setProperty("role", QStringLiteral("panel"));
  auto* column = new QVBoxLayout(panel);
  column->setContentsMargins(2 * measure::kGrid, measure::kGrid, 2 * measure::kGrid, 2 * measure::kGrid);
  column->setSpacing(measure::kGrid / 2);
  column->addLayout(Heading(panel));
  error_ = new QLabel(panel);
  error_->setTextFormat(Qt::PlainText);
  error_->setWordWrap(true);
  error_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  error_->setAccessibleName(QStringLiteral("Error de la rutina"));
  column->addWidget(error_);
  column->addLayout(WhatItDid(panel), 1);
  column->addStretch();
}

QLayout* Detail::Heading(QWidget* panel) {
  auto* row = new QHBoxLayout;
  row->setSpacing(2 * measure::kGrid);
  title_ = new QLabel(panel);
  title_->setTextFormat(Qt::PlainText);
  QFont bold = font();
  bold.setWeight(QFont::DemiBold);
  title_->setFont(bold);
  place_ = Label("soft", panel);
  place_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  row->addWidget(title_);
  row->addWidget(place_, 1);
  return row;
}

QLayout* Detail::WhatItDid(QWidget* panel) {
  auto* row = new QHBoxLayout;
  row->setSpacing(measure::kGrid);
  changes_ = new QTableWidget(0, 3, panel);
  Dress(*changes_);
  changes_->setSelectionMode(QAbstractItemView::SingleSelection);
  changes_->setHorizontalHeaderLabels(
      {QStringLiteral("Campo"), QStringLiteral("Antes"), QStringLiteral("Después")});
  changes_->setAccessibleName(QStringLiteral("Campos que la rutina cambió"));
  changes_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  trace_ = new QPlainTextEdit(panel);
  trace_->setReadOnly(true);
  trace_->setTabChangesFocus(true);
  trace_->setLineWrapMode(QPlainTextEdit::NoWrap);
  QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  fixed.setPixelSize(measure::kCaption);
  trace_->setFont(fixed);
  trace_->setAccessibleName(QStringLiteral("Rastro del error"));
  row->addWidget(changes_, 1);
  row->addWidget(trace_, 1);
  return row;
}

void Detail::ShowNothing() {
  for (QWidget* part :
       {static_cast<QWidget*>(error_), static_cast<QWidget*>(changes_), static_cast<QWidget*>(trace_)}) {
    part->setVisible(false);
  }
  changes_->setRowCount(0);
  trace_->clear();
  place_->setText({});
  title_->setText(QStringLiteral("Elija un renglón para ver qué hizo su rutina."));
}

void Detail::Show(const Happening& row) {
  ShowNothing();
  const QString moment = row.Cell(kMoment);
  title_->setText(moment.isEmpty() ? row.Cell(kKey) : row.Cell(kKey) + QStringLiteral("  ·  ") + moment);
  QStringList place;
  if (!row.Place().isEmpty()) place << row.Place();
  if (row.run) place << Milliseconds(row.run->milisegundos) + QStringLiteral(" ms");
  if (row.Slow()) place << QStringLiteral("más de un segundo: el operador lo nota");
  if (row.run && row.run->cambios.empty()) place << QStringLiteral("no cambió ningún campo");
  if (!row.routine && !row.failure) place << QStringLiteral("sin rutina");
  place_->setText(place.join(QStringLiteral("  ·  ")));
  ShowError(row);
  if (row.run) ShowRun(*row.run);
}

void Detail::ShowError(const Happening& row) {
  const QString error = row.Error();
  if (error.isEmpty()) return;
  const QString at = row.run && row.run->error
                         ? Text(python::LugarDe(row.run->error->archivo, row.run->error->linea))
                         : row.Place();
  error_->setText(at + QStringLiteral(": ") + error);
  QPalette palette = error_->palette();
  palette.setColor(QPalette::WindowText, theme_.Color(Role::Refused));
  error_->setPalette(palette);
  error_->setVisible(true);
}

void Detail::ShowRun(const python::Corrida& run) {
  if (!run.rastro.empty()) {
    trace_->setPlainText(Text(run.rastro).trimmed());
    trace_->setVisible(true);
  }
  changes_->setVisible(!run.cambios.empty());
  changes_->setRowCount(static_cast<int>(run.cambios.size()));
  int line = 0;
  for (const auto& change : run.cambios) {
    int column = 0;
    for (const std::string* text : {&change.nombre, &change.antes, &change.despues}) {
      auto* item = new QTableWidgetItem(Flat(Text(*text)));
      item->setToolTip(Text(*text));
      changes_->setItem(line, column++, item);
    }
    ++line;
  }
}

}  // namespace tarvik::desktop::hooks
