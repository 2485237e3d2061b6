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
    : TieOf(hand, control, *new QPushButton(&hand.View())) {
  Widget().setProperty("role", role);
  Widget().setFocusPolicy(Qt::TabFocus);
  connect(&Widget(), &QPushButton::clicked, this,
          [this] { TheHand().Act([this](forms::Form& form) { form.Click(Control()); }); });
}

void ButtonTie::ShowContents() { Widget().setText(QString::fromStdString(Control().Caption())); }

// The form moves the focus as part of the click, once the button has come up again.
bool ButtonTie::MouseDown(const QMouseEvent& /*event*/) { return !Control().CanTakeFocus(); }

// ---- boxes ----

CheckTie::CheckTie(Hand& hand, forms::CheckBox& control, QChar letter)
    : TieOf(hand, control, *new QCheckBox(&hand.View())), letter_(letter) {
  Widget().setFocusPolicy(Qt::TabFocus);
  // Only a click by the mnemonic comes here: a mouse click is taken by MouseDown.
  connect(&Widget(), &QCheckBox::clicked, this, [this] {
    TheHand().Act([this](forms::Form& form) {
      form.Click(Control());
      Widget().setChecked(Control().Value() == 1);
    });
  });
}

void CheckTie::ShowContents() {
  if (!Control().Caption().empty()) {
    QString caption = QString::fromStdString(Control().Caption());
    const qsizetype at = letter_.isNull() ? -1 : caption.indexOf(letter_);
    Widget().setText(at < 0 ? caption : caption.insert(at, QLatin1Char('&')));
  }
  Widget().setChecked(Control().Value() == 1);
}

bool CheckTie::MouseDown(const QMouseEvent& event) {
  if (!Control().CanTakeFocus()) return true;
  if (event.button() == Qt::LeftButton && Widget().rect().contains(event.pos())) {
    TheHand().Act([this](forms::Form& form) { form.Click(Control()); });
  }
  return true;
}

// ---- dates ----

DateTie::DateTie(Hand& hand, forms::DatePicker& control)
    : TieOf(hand, control, *new QDateEdit(&hand.View())) {
  Widget().setCalendarPopup(true);
  Widget().setDisplayFormat(QStringLiteral("dd/MM/yyyy"));
  Widget().setMinimumDate(kNoDate);
  Widget().setSpecialValueText(QStringLiteral("sin fecha"));
  Widget().setFocusPolicy(Qt::StrongFocus);
  Widget().setFixedHeight(measure::kField);
  connect(&Widget(), &QDateEdit::userDateChanged, this, &DateTie::DayChosen);
}

void DateTie::DayChosen(QDate day) {
  TheHand().Act([&](forms::Form& form) {
    form.Act([&] {
      if (day == kNoDate) {
        Control().Value(std::nullopt);
      } else {
        Control().Value(data::Date{day.year(), day.month(), day.day()});
      }
    });
  });
}

void DateTie::ShowContents() {
  const QSignalBlocker quiet(Widget());
  Widget().setDate(ToQt(Control().Value()));
}

bool DateTie::KeyDown(QKeyEvent& event) {
  if (LeavesADate(event.key())) return Tie::KeyDown(event);
  // A complete part moves on to the next by itself, so a slash typed after it is ignored.
  const auto part = Widget().currentSection();
  const bool moved = std::exchange(part_, part) != part;
  return moved && event.text() == QLatin1String("/");
}

bool DateTie::Scrolled(QEvent& event) { return ScrollsPast(Control(), event); }

// ---- lists ----

ComboTie::ComboTie(Hand& hand, forms::ComboBox& control)
    : TieOf(hand, control, *new QComboBox(&hand.View())) {
  Widget().setFocusPolicy(Qt::StrongFocus);
  Widget().setFixedHeight(measure::kField);
  connect(&Widget(), &QComboBox::activated, this, [this](int item) {
    TheHand().Act([this, item](forms::Form& form) { form.Choose(Control(), item); });
  });
}

void ComboTie::ShowContents() {
  const QSignalBlocker quiet(Widget());
  if (Widget().count() != static_cast<int>(Control().List().size())) {
    Widget().clear();
    for (const auto& item : Control().List()) Widget().addItem(QString::fromStdString(item));
  }
  Widget().setCurrentIndex(Control().ListIndex());
}

// F4 opens the widget's own list.
bool ComboTie::KeyDown(QKeyEvent& event) { return event.key() != Qt::Key_F4 && Tie::KeyDown(event); }

bool ComboTie::Scrolled(QEvent& event) { return ScrollsPast(Control(), event); }

}  // namespace tarvik::desktop
