#include "desktop/style/key_caps.h"

#include <QAction>
#include <QApplication>
#include <QHBoxLayout>
#include <utility>

#include "desktop/style/theme.h"

namespace tarvik::desktop {

namespace {

QString said;  // the current notice

}  // namespace

LineWord::LineWord(QWidget* parent) : QLabel(parent) {
  setProperty("role", "chip");
  setProperty("state", "pendiente");
  setAccessibleName(tr("Aviso del programa"));
  Say(said);
}

void LineWord::SayAll(const QString& words) {
  said = words;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    for (auto* line : window->findChildren<LineWord*>()) line->Say(words);
  }
}

// The line is laid out at once: in the middle of an act the event loop does not run.
void LineWord::Say(const QString& words) {
  setText(words);
  setVisible(!words.isEmpty());
  emit Changed();
  QLayout* around = parentWidget() ? parentWidget()->layout() : nullptr;
  if (around) around->activate();
}

KeyCaps::KeyCaps(QWidget* parent) : QWidget(parent), row_(new QHBoxLayout(this)), word_(new LineWord(this)) {
  row_->setContentsMargins(0, 0, 0, 0);
  row_->setSpacing(measure::kGrid);
  row_->setAlignment(Qt::AlignLeft);
  row_->setSizeConstraint(QLayout::SetNoConstraint);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  row_->addWidget(word_, 0, Qt::AlignVCenter);
  connect(word_, &LineWord::Changed, this, &KeyCaps::Fit);
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
  if (!word_->isHidden()) room -= word_->sizeHint().width() + row_->spacing();
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

void AddKey(QWidget& window, const QKeySequence& key, std::function<void()> act) {
  auto* action = new QAction(&window);
  action->setShortcut(key);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  window.addAction(action);
  QObject::connect(action, &QAction::triggered, &window, std::move(act));
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
