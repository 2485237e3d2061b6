#include "desktop/screens/choice_ties.h"

#include <QKeyEvent>
#include <QSignalBlocker>

#include "desktop/style/theme.h"
#include "forms/form.h"

namespace tarvik::desktop {

namespace {

// A picker's "no date": the calendar has none, so the earliest day stands for it.
const QDate kNoDate(1800, 1, 1);

QDate ToQt(const std::optional<data::Date>& date) {
  return date ? QDate(date->year, date->month, date->day) : kNoDate;
}

// What a date does with other keys (figures, arrows between its parts) is the widget's.
bool LeavesADate(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab || key == Qt::Key_Backtab ||
         key == Qt::Key_Escape || (key >= Qt::Key_F1 && key <= Qt::Key_F12);
}

// The wheel changes a value only in the focused field.
bool ScrollsPast(const forms::Control& control, QEvent& event) {
  if (control.HasFocus()) return false;
  event.ignore();
  return true;
}

}  // namespace

// ---- buttons ----

ButtonTie::ButtonTie(Hand& hand, forms::Button& control, const QString& role)
    : Tie(hand, control, *new QPushButton(&hand.View())),
      control_(control),
      button_(static_cast<QPushButton&>(Widget())) {
  button_.setProperty("role", role);
  button_.setFocusPolicy(Qt::TabFocus);
  connect(&button_, &QPushButton::clicked, this,
          [this] { TheHand().Act([this](forms::Form& form) { form.Click(control_); }); });
}

void ButtonTie::ShowContents() { button_.setText(QString::fromStdString(control_.Caption())); }

// The form moves the focus as part of the click, once the button has come up again.
bool ButtonTie::MouseDown(const QMouseEvent& /*event*/) { return !control_.CanTakeFocus(); }

// ---- boxes ----

CheckTie::CheckTie(Hand& hand, forms::CheckBox& control, QChar letter)
    : Tie(hand, control, *new QCheckBox(&hand.View())),
      control_(control),
      box_(static_cast<QCheckBox&>(Widget())),
      letter_(letter) {
  box_.setFocusPolicy(Qt::TabFocus);
  // Only a click by the mnemonic comes here: a mouse click is taken by MouseDown.
  connect(&box_, &QCheckBox::clicked, this, [this] {
    TheHand().Act([this](forms::Form& form) {
      form.Click(control_);
      box_.setChecked(control_.Value() == 1);
    });
  });
}

void CheckTie::ShowContents() {
  if (!control_.Caption().empty()) {
    QString caption = QString::fromStdString(control_.Caption());
    const qsizetype at = letter_.isNull() ? -1 : caption.indexOf(letter_);
    box_.setText(at < 0 ? caption : caption.insert(at, QLatin1Char('&')));
  }
  box_.setChecked(control_.Value() == 1);
}

bool CheckTie::MouseDown(const QMouseEvent& event) {
  if (!control_.CanTakeFocus()) return true;
  if (event.button() == Qt::LeftButton && box_.rect().contains(event.pos())) {
    TheHand().Act([this](forms::Form& form) { form.Click(control_); });
  }
  return true;
}

// ---- dates ----

DateTie::DateTie(Hand& hand, forms::DatePicker& control)
    : Tie(hand, control, *new QDateEdit(&hand.View())),
      control_(control),
      date_(static_cast<QDateEdit&>(Widget())) {
  date_.setCalendarPopup(true);
  date_.setDisplayFormat(QStringLiteral("dd/MM/yyyy"));
  date_.setMinimumDate(kNoDate);
  date_.setSpecialValueText(QStringLiteral("sin fecha"));
  date_.setFocusPolicy(Qt::StrongFocus);
  date_.setFixedHeight(measure::kField);
  connect(&date_, &QDateEdit::userDateChanged, this, &DateTie::DayChosen);
}

void DateTie::DayChosen(QDate day) {
  TheHand().Act([&](forms::Form& form) {
    form.Act([&] {
      if (day == kNoDate) {
        control_.Value(std::nullopt);
      } else {
        control_.Value(data::Date{day.year(), day.month(), day.day()});
      }
    });
  });
}

void DateTie::ShowContents() {
  const QSignalBlocker quiet(date_);
  date_.setDate(ToQt(control_.Value()));
}

bool DateTie::KeyDown(QKeyEvent& event) {
  if (LeavesADate(event.key())) return Tie::KeyDown(event);
  // A complete part moves on to the next by itself, so a slash typed after it is ignored.
  const auto part = date_.currentSection();
  const bool moved = std::exchange(part_, part) != part;
  return moved && event.text() == QLatin1String("/");
}

bool DateTie::Scrolled(QEvent& event) { return ScrollsPast(control_, event); }

// ---- lists ----

ComboTie::ComboTie(Hand& hand, forms::ComboBox& control)
    : Tie(hand, control, *new QComboBox(&hand.View())),
      control_(control),
      combo_(static_cast<QComboBox&>(Widget())) {
  combo_.setFocusPolicy(Qt::StrongFocus);
  combo_.setFixedHeight(measure::kField);
  connect(&combo_, &QComboBox::activated, this, [this](int item) {
    TheHand().Act([this, item](forms::Form& form) { form.Choose(control_, item); });
  });
}

void ComboTie::ShowContents() {
  const QSignalBlocker quiet(combo_);
  if (combo_.count() != static_cast<int>(control_.List().size())) {
    combo_.clear();
    for (const auto& item : control_.List()) combo_.addItem(QString::fromStdString(item));
  }
  combo_.setCurrentIndex(control_.ListIndex());
}

// F4 opens the widget's own list.
bool ComboTie::KeyDown(QKeyEvent& event) { return event.key() != Qt::Key_F4 && Tie::KeyDown(event); }

bool ComboTie::Scrolled(QEvent& event) { return ScrollsPast(control_, event); }

}  // namespace tarvik::desktop
