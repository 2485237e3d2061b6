// NoticeStrip: cards above the lists for matters that can wait. A card is not modal and takes no key: its
// buttons are reached by Tab and by their mnemonics, and Enter presses none.
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QWidget>
#include <functional>

class QPushButton;
class QVBoxLayout;

namespace tarvik::desktop {

struct NoticeChoice {
  QString caption;
  std::function<void()> act;
  bool filled = false;
};

class NoticeStrip : public QWidget {
  Q_OBJECT

 public:
  explicit NoticeStrip(QWidget* parent = nullptr);

  // A card of that name, in place of the one before. One that was hidden by hand stays so until its text
  // is another.
  void Put(const QString& name, const QString& text, const QList<NoticeChoice>& choices);
  void Remove(const QString& name);
  // The text of a card; empty for none.
  [[nodiscard]] QString TextOf(const QString& name) const;
  // The button of a card by its caption, without the mark of its letter; nullptr for none.
  [[nodiscard]] QPushButton* Button(const QString& name, const QString& caption) const;

 private:
  [[nodiscard]] QWidget* Card(const QString& name) const;
  void Take(const QString& name);

  QVBoxLayout* column_;
  QHash<QString, QString> hidden_;  // by hand, with the text that they had
};

}  // namespace tarvik::desktop
