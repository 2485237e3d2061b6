// The ties of what is pressed, ticked or chosen: buttons, boxes, dates, lists.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QPushButton>

#include "desktop/screens/tie.h"

namespace tarvik::desktop {

class ButtonTie final : public Tie {
 public:
  using ControlKind = forms::Button;

  // `role` as the theme has it: primary, outlined, quiet.
  ButtonTie(Hand& hand, forms::Button& control, const QString& role);
  [[nodiscard]] QPushButton& Button() const { return button_; }

 protected:
  void ShowContents() override;
  bool KeyUp() override { return true; }  // the form has clicked when the key went down
  bool MouseDown(const QMouseEvent& event) override;

 private:
  forms::Button& control_;
  QPushButton& button_;
};

class CheckTie final : public Tie {
 public:
  using ControlKind = forms::CheckBox;

  // Alt and the letter, underlined where the caption has it, click the box.
  CheckTie(Hand& hand, forms::CheckBox& control, QChar letter);
  [[nodiscard]] QCheckBox& Box() const { return box_; }

 protected:
  void ShowContents() override;
  bool KeyUp() override { return true; }
  bool MouseDown(const QMouseEvent& event) override;

 private:
  forms::CheckBox& control_;
  QCheckBox& box_;
  QChar letter_;
};

class DateTie final : public Tie {
 public:
  using ControlKind = forms::DatePicker;

  DateTie(Hand& hand, forms::DatePicker& control);
  [[nodiscard]] QDateEdit& Date() const { return date_; }

 protected:
  void ShowContents() override;
  bool KeyDown(QKeyEvent& event) override;
  bool Scrolled(QEvent& event) override;

 private:
  void DayChosen(QDate day);

  forms::DatePicker& control_;
  QDateEdit& date_;
  QDateTimeEdit::Section part_ = QDateTimeEdit::NoSection;  // that the last key was typed into
};

class ComboTie final : public Tie {
 public:
  using ControlKind = forms::ComboBox;

  ComboTie(Hand& hand, forms::ComboBox& control);
  [[nodiscard]] QComboBox& Combo() const { return combo_; }

 protected:
  void ShowContents() override;
  bool KeyDown(QKeyEvent& event) override;
  bool Scrolled(QEvent& event) override;

 private:
  forms::ComboBox& control_;
  QComboBox& combo_;
};

}  // namespace tarvik::desktop
