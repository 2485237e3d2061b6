// KeyCaps: the keys that work here and now, in a quiet row: "Intro siguiente  F9 guardar línea". What
// finds no room is left out, from the end; it never makes a window wider.
#pragma once

#include <QKeySequence>
#include <QLabel>
#include <QList>
#include <QPair>
#include <QString>
#include <QWidget>
#include <functional>

class QHBoxLayout;

namespace tarvik::desktop {

using Keys = QList<QPair<QString, QString>>;  // key, what it does

// A notice in the line of keys while an act runs: that the base is waited for, or how many errors occurred.
// Without a notice it takes no room, and it never moves anything outside the line.
class LineWord final : public QLabel {
  Q_OBJECT

 public:
  explicit LineWord(QWidget* parent = nullptr);
  // Sets the notice of all lines of all windows, also of those made later; an empty text removes it.
  static void SayAll(const QString& words);

 signals:
  void Changed();

 private:
  void Say(const QString& words);
};

class KeyCaps final : public QWidget {
  Q_OBJECT

 public:
  explicit KeyCaps(QWidget* parent = nullptr);
  void Show(const Keys& keys);
  [[nodiscard]] QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Fit();

  QHBoxLayout* row_;
  LineWord* word_;  // in front of the keys
  QList<QLabel*> labels_;
  int used_ = 0;  // labels in use, two a key
};

// A key that works wherever in the window the focus is.
void AddKey(QWidget& window, const QKeySequence& key, std::function<void()> act);

// The line at a screen's foot: keys at the left, what the caller adds at the right.
QWidget* FootLine(KeyCaps& caps, QWidget* at_right = nullptr);
// The same with a ground and a height of its own, for a screen that shows nothing else there.
QWidget* KeyLine(KeyCaps& caps, QWidget* at_right = nullptr);

}  // namespace tarvik::desktop
