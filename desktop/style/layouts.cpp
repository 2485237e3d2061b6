#include "desktop/style/layouts.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "desktop/style/theme.h"

namespace tarvik::desktop {

QWidget* Band(QBoxLayout** layout) {
  auto* band = new QFrame;
  band->setProperty("role", "band");
  auto* row = new QHBoxLayout(band);
  row->setContentsMargins(measure::kGrid * 2, measure::kGrid, measure::kGrid * 2, measure::kGrid);
  row->setSpacing(measure::kGrid * 3 / 2);
  row->setAlignment(Qt::AlignTop);
  *layout = row;
  return band;
}

QWidget* Under(QWidget* caption, QWidget* field, int width) {
  auto* box = new QWidget;
  auto* column = new QVBoxLayout(box);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  column->addWidget(caption);
  column->addWidget(field);
  column->addStretch();
  if (width > 0) box->setFixedWidth(width);
  return box;
}

QWidget* AtRight(std::initializer_list<QWidget*> buttons) {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(measure::kGrid * 2);
  layout->addStretch();
  for (QWidget* button : buttons) layout->addWidget(button);
  return row;
}

QWidget* BlankCaption() {
  auto* label = new QLabel(QStringLiteral(" "));
  label->setProperty("role", "caption");
  return label;
}

}  // namespace tarvik::desktop
