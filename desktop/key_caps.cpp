#include "desktop/key_caps.h"

#include <QHBoxLayout>
#include <QLabel>

#include "desktop/theme.h"

namespace tarvik::desktop {

KeyCaps::KeyCaps(QWidget* parent) : QWidget(parent), row_(new QHBoxLayout(this)) {
  row_->setContentsMargins(0, 0, 0, 0);
  row_->setSpacing(measure::kGrid);
  row_->setAlignment(Qt::AlignLeft);
  row_->setSizeConstraint(QLayout::SetNoConstraint);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void KeyCaps::Show(const Keys& keys) {
  while (labels_.size() < keys.size() * 2) {
    auto* cap = new QLabel(this);
    cap->setProperty("role", "keycap");
    row_->addWidget(cap, 0, Qt::AlignVCenter);
    auto* text = new QLabel(this);
    text->setProperty("role", "soft");
    row_->addWidget(text, 0, Qt::AlignVCenter);
    labels_ += {cap, text};
  }
  used_ = static_cast<int>(keys.size()) * 2;
  for (int item = 0; item < used_; ++item) {
    labels_[item]->setText(item % 2 == 0 ? keys[item / 2].first : keys[item / 2].second);
  }
  Fit();
}

void KeyCaps::Fit() {
  int room = width();
  bool fits = true;
  for (int item = 0; item < labels_.size(); item += 2) {
    if (item < used_) {
      room -= labels_[item]->sizeHint().width() + labels_[item + 1]->sizeHint().width() + 2 * row_->spacing();
      fits = fits && room + row_->spacing() >= 0;
    }
    for (int half : {0, 1}) labels_[item + half]->setVisible(fits && item < used_);
  }
}

void KeyCaps::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Fit();
}

QWidget* FootLine(KeyCaps& caps, QWidget* at_right) {
  auto* line = new QWidget;
  auto* row = new QHBoxLayout(line);
  row->setContentsMargins(measure::kGrid * 2, 0, measure::kGrid * 2, 0);
  row->addWidget(&caps, 1);
  if (at_right) row->addWidget(at_right);
  return line;
}

QWidget* KeyLine(KeyCaps& caps, QWidget* at_right) {
  QWidget* line = FootLine(caps, at_right);
  line->setProperty("role", "keyline");
  line->setAttribute(Qt::WA_StyledBackground);
  line->setFixedHeight(measure::kGrid * 5);
  return line;
}

}  // namespace tarvik::desktop
