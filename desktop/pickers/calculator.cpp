// Reads an expression by the usual precedence and shows it beside its result.
#include "desktop/pickers/calculator.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "data/number.h"
#include "data/text.h"
#include "desktop/style/theme.h"

namespace tarvik::desktop {

namespace {

using measure::kGrid;

// Thrown for an expression that can't be read.
struct Refused {
  std::string reason;  // empty: it only ends too early
};

// A parenthesis key that is held down must not overflow the stack.
constexpr int kDeepest = 100;
// From here on a number is written with an exponent, which no field reads.
constexpr double kLargest = 1e15;

class Reader {
 public:
  explicit Reader(std::string_view text) {
    // One sign for each operation. A blank ends a number and means nothing more.
    while (!text.empty()) {
      const char32_t character = data::Decode(text);
      text.remove_prefix(std::min(text.size(), std::max<std::size_t>(1, data::Encode(character).size())));
      if (character == U'×' || character == U'x' || character == U'X') {
        signs_ += U'*';
      } else if (character == U'÷' || character == U':') {
        signs_ += U'/';
      } else if (character == U'−') {
        signs_ += U'-';
      } else {
        signs_ += character;
      }
    }
  }

  double All() {
    if (signs_.empty()) throw Refused{};
    const double value = Sum();
    if (At() == U')') throw Refused{"Hay un paréntesis de más."};
    if (At() != 0) throw Refused{"No se entiende \"" + data::Encode(At()) + "\"."};
    if (!(std::abs(value) < kLargest)) throw Refused{"El resultado es demasiado grande."};
    return value;
  }

 private:
  // The sign at hand, behind blanks.
  [[nodiscard]] char32_t At() {
    while (at_ < signs_.size() && signs_[at_] == U' ') ++at_;
    return at_ < signs_.size() ? signs_[at_] : 0;
  }
  bool Skip(char32_t sign) {
    if (At() != sign) return false;
    ++at_;
    return true;
  }

  double Sum() {
    double value = Product().value;
    while (At() == U'+' || At() == U'-') {
      const bool minus = At() == U'-';
      ++at_;
      const Part part = Product();
      const double amount = part.percentage ? value * part.value : part.value;
      value += minus ? -amount : amount;
    }
    return value;
  }

  struct Part {
    double value;
    bool percentage;  // of what stands before it
  };

  Part Product() {
    Part part = Factor();
    while (At() == U'*' || At() == U'/') {
      const bool divide = At() == U'/';
      ++at_;
      const double other = Factor().value;
      if (divide && other == 0) throw Refused{"No se puede dividir entre cero."};
      part = {divide ? part.value / other : part.value * other, false};
    }
    return part;
  }

  Part Factor() {
    if (++depth_ > kDeepest) throw Refused{"La cuenta es demasiado larga."};
    Part part{0, false};
    if (Skip(U'-')) {
      part = Factor();
      part.value = -part.value;
    } else if (Skip(U'+')) {
      part = Factor();
    } else {
      part.value = Skip(U'(') ? Inside() : Number();
      while (Skip(U'%')) part = {part.value / 100, true};
    }
    --depth_;
    return part;
  }

  double Inside() {
    const double value = Sum();
    if (!Skip(U')')) {
      if (At() == 0) throw Refused{};
      throw Refused{"No se entiende \"" + data::Encode(At()) + "\"."};
    }
    return value;
  }

  double Number() {
    std::string digits;
    auto of_a_number = [](char32_t sign) {
      return (sign >= U'0' && sign <= U'9') || sign == U'.' || sign == U',';
    };
    (void)At();
    for (; at_ < signs_.size() && of_a_number(signs_[at_]); ++at_) digits += static_cast<char>(signs_[at_]);
    if (digits.empty() || digits == ".") {
      if (At() == 0) throw Refused{};
      throw Refused{"No se entiende \"" + data::Encode(At()) + "\"."};
    }
    const auto value = data::ParseNumber(digits);
    if (!value) throw Refused{"\"" + digits + "\" no es un número."};
    return *value;
  }

  std::u32string signs_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

bool Operator(QChar sign) { return QStringLiteral("+-*/×÷−%xX").contains(sign); }

}  // namespace

Calculation Calculate(std::string_view expression) {
  try {
    return {Reader(expression).All(), ""};
  } catch (const Refused& refused) {
    return {std::nullopt, refused.reason};
  }
}

CalculatorDialog::CalculatorDialog(const QString& start, QWidget* parent) : QDialog(parent) {
  setWindowTitle(QStringLiteral("Calculadora"));
  setWindowModality(Qt::ApplicationModal);
  setFixedWidth(52 * kGrid);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(2 * kGrid, 2 * kGrid, 2 * kGrid, 2 * kGrid);
  layout->setSpacing(kGrid);

  MakeTape();
  layout->addWidget(tape_);

  value_ = new QLabel(this);
  value_->setProperty("role", QStringLiteral("total"));
  value_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  value_->setAccessibleName(QStringLiteral("Resultado"));
  layout->addWidget(value_);

  expression_ = new QLineEdit(start.trimmed(), this);
  expression_->setAlignment(Qt::AlignRight);
  expression_->setFixedHeight(measure::kField);
  expression_->setMaxLength(200);
  expression_->setAccessibleName(QStringLiteral("Cuenta"));
  expression_->setPlaceholderText(QStringLiteral("12 × 8 + 10 %"));
  expression_->installEventFilter(this);
  layout->addWidget(expression_);

  reason_ = new QLabel(this);
  reason_->setProperty("role", QStringLiteral("reason"));
  reason_->setAlignment(Qt::AlignRight);
  layout->addWidget(reason_);

  layout->addLayout(Foot());

  connect(expression_, &QLineEdit::textChanged, this, &CalculatorDialog::Show);
  expression_->setFocus();
  expression_->selectAll();
  Show();
}

void CalculatorDialog::MakeTape() {
  tape_ = new QListWidget(this);
  tape_->setAccessibleName(QStringLiteral("Cinta de cuentas"));
  tape_->setFocusPolicy(Qt::NoFocus);
  tape_->setSelectionMode(QAbstractItemView::NoSelection);
  tape_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  tape_->setFixedHeight(20 * kGrid);
  tape_->setWordWrap(true);
  tape_->setProperty("role", QStringLiteral("tape"));
  tape_->setSpacing(kGrid / 4);
}

QLayout* CalculatorDialog::Foot() {
  auto* foot = new QHBoxLayout;
  foot->setSpacing(kGrid);
  for (const auto& [key, what] : {std::pair{"=", "seguir"}, {"↑", "anterior"}, {"Esc", "dejar"}}) {
    auto* cap = new QLabel(QString::fromUtf8(key), this);
    cap->setProperty("role", QStringLiteral("keycap"));
    auto* text = new QLabel(QString::fromUtf8(what), this);
    text->setProperty("role", QStringLiteral("caption"));
    foot->addWidget(cap, 0, Qt::AlignVCenter);
    foot->addWidget(text, 0, Qt::AlignVCenter);
  }
  foot->addStretch(1);
  auto* take = new QPushButton(QStringLiteral("&Tomar (Intro)"), this);
  take->setAccessibleName(QStringLiteral("Tomar el resultado"));
  take->setProperty("role", QStringLiteral("primary"));
  take->setAutoDefault(false);
  connect(take, &QPushButton::clicked, this, &CalculatorDialog::Take);
  foot->addWidget(take);
  return foot;
}

void CalculatorDialog::Show() {
  const Calculation done = Calculate(expression_->text().toStdString());
  // The last good result stays while an expression is unfinished.
  if (done.result) {
    // Fifteen digits and no patterns of a screen: what is shown is what the field will get.
    value_->setText(QString::fromStdString(data::PlainNumber(*done.result)));
  } else if (expression_->text().trimmed().isEmpty()) {
    value_->setText(QStringLiteral("0"));
  } else if (!done.reason.empty()) {
    value_->setText(QStringLiteral("–"));
  }
  reason_->setText(QString::fromStdString(done.reason));
  const bool refused = !done.reason.empty();
  if (expression_->property("refused").toBool() != refused) {
    expression_->setProperty("refused", refused);
    Restyle(*expression_);
  }
}

// Moves the expression to the tape and puts its result in its place.
bool CalculatorDialog::WorkOut() {
  const QString text = expression_->text().trimmed();
  const Calculation done = Calculate(text.toStdString());
  if (!done.result) {
    if (done.reason.empty() && !text.isEmpty())
      reason_->setText(QStringLiteral("La cuenta no está completa."));
    return false;
  }
  const QString result = QString::fromStdString(data::PlainNumber(*done.result));
  if (text != result) {
    QString shown = text;
    shown.replace(QLatin1Char('*'), QChar(u'×')).replace(QLatin1Char('/'), QChar(u'÷'));
    auto* line = new QListWidgetItem(QStringLiteral("%1  =  %2").arg(shown, result), tape_);
    line->setData(Qt::UserRole, text);
    line->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    tape_->scrollToBottom();
  }
  expression_->setText(result);
  fresh_ = true;
  return true;
}

void CalculatorDialog::Take() {
  if (!WorkOut()) return;
  result_ = expression_->text();
  accept();
}

bool CalculatorDialog::eventFilter(QObject* watched, QEvent* event) {
  if (watched != expression_ || event->type() != QEvent::KeyPress)
    return QDialog::eventFilter(watched, event);
  auto* key = static_cast<QKeyEvent*>(event);
  switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Take();
      return true;
    case Qt::Key_Equal:
      WorkOut();
      return true;
    case Qt::Key_Up:
      if (tape_->count() > 0) {
        expression_->setText(tape_->item(tape_->count() - 1)->data(Qt::UserRole).toString());
        fresh_ = false;
      }
      return true;
    default:
      break;
  }
  const QString typed = key->text();
  if (typed.isEmpty() || !typed.front().isPrint()) {
    if (key->key() == Qt::Key_Left || key->key() == Qt::Key_Right || key->key() == Qt::Key_End)
      fresh_ = false;
    return QDialog::eventFilter(watched, event);
  }
  if (fresh_) {
    // A result in the line: an operation goes on from it, anything else begins anew.
    if (Operator(typed.front())) {
      expression_->deselect();
      expression_->end(false);
    } else {
      expression_->clear();
    }
    fresh_ = false;
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace tarvik::desktop
