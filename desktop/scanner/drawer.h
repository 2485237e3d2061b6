// Drawer: what stands beside the lines of a document, and can be shut to a thin strip that still says what is
// in it. It opens and shuts by the operator's hand alone, and where the window is too narrow for it it begins
// shut.
#pragma once

#include <QWidget>

class QAbstractButton;

namespace tarvik::desktop {

class Drawer final : public QWidget {
  Q_OBJECT

 public:
  // Takes the content over. `open`: as it begins.
  Drawer(QWidget* content, const QString& title, bool open, QWidget* parent = nullptr);

  [[nodiscard]] bool Open() const { return open_; }
  void SetOpen(bool open);
  // What the strip says: "Cinta del lector · 2 sin artículo".
  void SetTitle(const QString& title);
  [[nodiscard]] QAbstractButton& Strip() const { return *strip_; }
  [[nodiscard]] QSize sizeHint() const override;

 signals:
  void Turned(bool open, bool by_hand);

 private:
  QWidget* content_;
  QAbstractButton* strip_;
  bool open_;
};

}  // namespace tarvik::desktop
