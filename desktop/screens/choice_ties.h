// The ties of what is pressed, ticked or chosen: buttons, boxes, dates, lists.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QPushButton>

#include "desktop/screens/tie.h"

namespace tarvik::desktop {

class ButtonTie final : public TieOf<forms::Button, QPushButton> {
 public:
  // `role` as the theme has it: primary, outlined, quiet.
  ButtonTie(Hand& hand, forms::Button& control, const QString& role);

 protected:
  void ShowContents() override;
  bool KeyUp() override { return true; }  // the form has clicked when the key went down
  bool MouseDown(const QMouseEvent& event) override;
};

class CheckTie final : public TieOf<forms::CheckBox, QCheckBox> {
 public:
  // Alt and the letter, underlined where the caption has it, click the box.
  CheckTie(Hand& hand, forms::CheckBox& control, QChar letter);

 protected:
  void ShowContents() override;
  bool KeyUp() override { return true; }
  bool MouseDown(const QMouseEvent& event) override;

 private:
  QChar letter_;
};

class DateTie final : public TieOf<forms::DatePicker, QDateEdit> {
 public:
  DateTie(Hand& hand, forms::DatePicker& control);

 protected:
  void ShowContents() override;
  bool KeyDown(QKeyEvent& event) override;
  bool Scrolled(QEvent& event) override;

 private:
  void DayChosen(QDate day);

  QDateTimeEdit::Section part_ = QDateTimeEdit::NoSection;  // that the last key was typed into
};

class ComboTie final : public TieOf<forms::ComboBox, QComboBox> {
 public:
  ComboTie(Hand& hand, forms::ComboBox& control);

 protected:
  void ShowContents() override;
  bool KeyDown(QKeyEvent& event) override;
  bool Scrolled(QEvent& event) override;
};

}  // namespace tarvik::desktop
