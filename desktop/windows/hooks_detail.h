// Detail: what the routine of one row did: where it stands, how long it took, what it changed, how it failed.
#pragma once

#include <QWidget>

class QLabel;
class QLayout;
class QPlainTextEdit;
class QTableWidget;

namespace tarvik::python {
struct Corrida;
}

namespace tarvik::desktop {

class Theme;

namespace hooks {

struct Happening;

class Detail : public QWidget {
 public:
  Detail(const Theme& theme, QWidget* parent);

  void Show(const Happening& row);
  void ShowNothing();

 private:
  QLayout* Heading(QWidget* panel);
  QLayout* WhatItDid(QWidget* panel);
  void ShowError(const Happening& row);
  void ShowRun(const python::Corrida& run);

  const Theme& theme_;
  QLabel* title_ = nullptr;
  QLabel* place_ = nullptr;
  QLabel* error_ = nullptr;
  QTableWidget* changes_ = nullptr;
  QPlainTextEdit* trace_ = nullptr;
};

}  // namespace hooks

}  // namespace tarvik::desktop
