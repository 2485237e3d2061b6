// The small calculator: an expression typed by keyboard, its result as one types, and the tape of
// what was worked out before. It puts nothing into a field.
#pragma once

#include <QDialog>
#include <QString>
#include <optional>
#include <string>
#include <string_view>

class QLabel;
class QLayout;
class QLineEdit;
class QListWidget;

namespace tarvik::desktop {

struct Calculation {
  std::optional<double> result;
  std::string reason;  // why there is none, for the operator; empty while the expression is unfinished
};

// + - * / × ÷, parentheses, signs, "." as the decimal mark, "," between thousands. A percentage takes
// its share of what stands before it: 200+10% is 220, 200*10% is 20.
Calculation Calculate(std::string_view expression);

class CalculatorDialog : public QDialog {
  Q_OBJECT

 public:
  // Keys: "=" works out and goes on with the result, Enter works out and takes it, Esc leaves,
  // arrow up brings the expression before.
  explicit CalculatorDialog(const QString& start, QWidget* parent = nullptr);

  [[nodiscard]] const QString& Result() const { return result_; }  // once accepted

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeTape();
  QLayout* Foot();
  void Show();
  bool WorkOut();
  void Take();

  QLineEdit* expression_;
  QLabel* value_;
  QLabel* reason_;
  QListWidget* tape_;
  QString result_;
  bool fresh_ = true;  // the line holds a result: a digit starts anew, an operator goes on
};

}  // namespace tarvik::desktop
