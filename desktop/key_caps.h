// KeyCaps: the keys that work here and now, in a quiet row: "Intro siguiente  F9 guardar línea". What
// finds no room is left out, from the end; it never makes a window wider.
#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QWidget>

class QHBoxLayout;
class QLabel;

namespace tarvik::desktop {

using Keys = QList<QPair<QString, QString>>;  // key, what it does

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
  QList<QLabel*> labels_;
  int used_ = 0;  // labels in use, two a key
};

// The line at a screen's foot: keys at the left, what the caller adds at the right.
QWidget* FootLine(KeyCaps& caps, QWidget* at_right = nullptr);
// The same with a ground and a height of its own, for a screen that shows nothing else there.
QWidget* KeyLine(KeyCaps& caps, QWidget* at_right = nullptr);

}  // namespace tarvik::desktop
