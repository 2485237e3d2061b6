// The ties of texts: a field of one line, the editor that floats over a grid's cell, notes of many lines, and
// a text that is only shown.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QTextEdit>

#include "desktop/screens/tie.h"

namespace tarvik::desktop {

class GridView;

// What all texts that can be typed have in common. The control edits its own text; the widget reports where
// caret and selection were moved by arrow keys or mouse.
class TextTie : public Tie {
 public:
  void Changed(forms::Aspect aspect) override;
  [[nodiscard]] bool HoldsText() const override { return true; }

 protected:
  TextTie(Hand& hand, forms::TextBox& box, QWidget& widget);

  [[nodiscard]] forms::TextBox& Box() const { return box_; }
  // Caret and selection of the control, in the places of the widget.
  [[nodiscard]] int ShownStart() const;
  [[nodiscard]] int ShownEnd() const;
  // The widget's caret and selection moved by themselves.
  void CaretMoved(int start, int end);
  virtual void Copy() = 0;
  virtual bool WalksLines(const QKeyEvent& /*event*/) const { return false; }

  bool KeyDown(QKeyEvent& event) override;
  bool Composed(QInputMethodEvent& event) override;
  bool MouseDown(const QMouseEvent& event) override;
  bool MouseUp(const QMouseEvent& event) override;

 private:
  bool Edits(const QKeyEvent& event);
  bool LeftToTheWidget(const QKeyEvent& event) const;

  forms::TextBox& box_;
  bool following_ = false;  // the change that the control reports came from the widget
};

class LineTie : public TieOf<forms::TextBox, QLineEdit, TextTie> {
 public:
  LineTie(Hand& hand, forms::TextBox& box);

 protected:
  LineTie(Hand& hand, forms::TextBox& box, QLineEdit& line);

  void ShowContents() override;
  void Copy() override { Widget().copy(); }
  bool DoubleClicked() override;
};

// Stands over the grid's current cell while its control is visible.
class CellTie final : public LineTie {
 public:
  CellTie(Hand& hand, forms::TextBox& box, GridView& grid);

  void InHand(bool /*in_hand*/) override {}  // its style is always that of the focused field

 protected:
  void ShowState() override;

 private:
  GridView& grid_;
};

class NotesTie final : public TieOf<forms::TextBox, QTextEdit, TextTie> {
 public:
  NotesTie(Hand& hand, forms::TextBox& box);

 protected:
  void ShowContents() override;
  void Copy() override { Widget().copy(); }
  bool WalksLines(const QKeyEvent& event) const override;
};

// A text box that is only shown: it has no caret to put.
class ShownTextTie final : public TieOf<forms::TextBox, QLabel> {
 public:
  ShownTextTie(Hand& hand, forms::TextBox& box);
  [[nodiscard]] bool HoldsText() const override { return true; }

 protected:
  void ShowContents() override;
  void ShowState() override;
  bool MouseDown(const QMouseEvent& /*event*/) override { return true; }
  bool MouseUp(const QMouseEvent& event) override;
};

}  // namespace tarvik::desktop
