#include "desktop/frame/notices.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "desktop/style/theme.h"

namespace tarvik::desktop {

using measure::kGrid;

NoticeStrip::NoticeStrip(QWidget* parent) : QWidget(parent), column_(new QVBoxLayout(this)) {
  column_->setContentsMargins(2 * kGrid, 0, 2 * kGrid, 0);
  column_->setSpacing(kGrid);
  hide();
}

QWidget* NoticeStrip::Card(const QString& name) const {
  return findChild<QFrame*>(name, Qt::FindDirectChildrenOnly);
}

void NoticeStrip::Put(const QString& name, const QString& text, const QList<NoticeChoice>& choices) {
  if (hidden_.value(name) == text || TextOf(name) == text) return;
  Take(name);
  auto* card = new QFrame(this);
  card->setObjectName(name);
  card->setProperty("role", "notice");
  auto* row = new QHBoxLayout(card);
  row->setContentsMargins(2 * kGrid, kGrid, kGrid, kGrid);
  row->setSpacing(kGrid);
  auto* words = new QLabel(text, card);
  words->setTextFormat(Qt::PlainText);
  words->setWordWrap(true);
  words->setAccessibleName(text);
  row->addWidget(words, 1);
  for (const NoticeChoice& choice : choices) {
    auto* button = new QPushButton(choice.caption, card);
    button->setProperty("role", choice.filled ? "primary" : "outlined");
    button->setAccessibleName(QString(choice.caption).remove(QLatin1Char('&')));
    button->setAutoDefault(false);
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, choice.act);
  }
  auto* close = new QPushButton(QStringLiteral("×"), card);
  close->setProperty("role", "quiet");
  close->setAccessibleName(tr("Ocultar este aviso"));
  close->setAutoDefault(false);
  row->addWidget(close);
  connect(close, &QPushButton::clicked, this, [this, name, text] {
    hidden_.insert(name, text);
    Take(name);
  });
  column_->addWidget(card);
  column_->setContentsMargins(2 * kGrid, 2 * kGrid, 2 * kGrid, 0);
  card->show();
  show();
}

void NoticeStrip::Remove(const QString& name) {
  hidden_.remove(name);
  Take(name);
}

void NoticeStrip::Take(const QString& name) {
  QWidget* card = Card(name);
  if (card == nullptr) return;
  // The card may be removed by a click on one of its own buttons.
  card->setObjectName({});
  column_->removeWidget(card);
  card->hide();
  card->deleteLater();
  if (column_->isEmpty()) hide();
}

QString NoticeStrip::TextOf(const QString& name) const {
  const QWidget* card = Card(name);
  return card ? card->findChild<QLabel*>()->text() : QString();
}

QPushButton* NoticeStrip::Button(const QString& name, const QString& caption) const {
  const QWidget* card = Card(name);
  if (card == nullptr) return nullptr;
  for (auto* button : card->findChildren<QPushButton*>()) {
    if (button->text().remove(QLatin1Char('&')) == caption) return button;
  }
  return nullptr;
}

}  // namespace tarvik::desktop
