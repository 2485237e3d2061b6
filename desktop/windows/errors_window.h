// ErrorsWindow: all errors of a step that met more than one, behind their boxes: time, procedure and text,
// with what is safe and what to do now. It is not modal, takes no key that was meant for a screen, and
// retries nothing.
#pragma once

#include <QWidget>
#include <vector>

#include "desktop/platform/troubles.h"

class QLabel;
class QTableWidget;

namespace tarvik::desktop {

class ErrorsWindow : public QWidget {
  Q_OBJECT

 public:
  explicit ErrorsWindow(QWidget* parent = nullptr);

  // Opens with these errors and leaves the focus where it is; if already open, they are added at the end.
  void List(const std::vector<Trouble>& troubles);
  // Whether there is anything to show; Reach brings the window up with the focus.
  [[nodiscard]] bool Any() const;
  void Reach();

  [[nodiscard]] QTableWidget& Table() const { return *table_; }

 public slots:
  // All of them as text, as the boxes had them.
  void Copy();

 private:
  QLabel* title_;
  QTableWidget* table_;
  std::vector<Trouble> listed_;
};

}  // namespace tarvik::desktop
