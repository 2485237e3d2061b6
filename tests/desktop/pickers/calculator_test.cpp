// The small calculator: what an expression gives, why it gives nothing, and its keys.
#include "desktop/pickers/calculator.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>

#include "tests/desktop/support.h"

namespace tarvik::desktop {
namespace {

TEST(Calculations, FollowTheUsualOrder) {
  const std::pair<const char*, double> cases[] = {
      {"2+3*4", 14},         {"(2+3)*4", 20},  {"2 + 3 × 4", 14},    {"10÷4", 2.5},    {"-5+2", -3},
      {"2*-3", -6},          {"--2", 2},       {"1,250.50*2", 2501}, {".5+.5", 1},     {"8/2/2", 2},
      {"10-4-3", 3},         {"200+10%", 220}, {"200-10%", 180},     {"200*10%", 20},  {"10%", 0.1},
      {"100+5%+5%", 110.25}, {"(50+50)%", 1},  {"200/50%", 400},     {"((((7))))", 7}, {"3x4", 12}};
  for (const auto& [expression, expected] : cases) {
    const Calculation done = Calculate(expression);
    ASSERT_TRUE(done.result.has_value()) << expression << ": " << done.reason;
    EXPECT_NEAR(*done.result, expected, 1e-9) << expression;
    EXPECT_EQ(done.reason, "") << expression;
  }
}

TEST(Calculations, SayWhyThereIsNone) {
  const std::pair<const char*, const char*> cases[] = {
      {"1/0", "No se puede dividir entre cero."},
      {"1/(2-2)", "No se puede dividir entre cero."},
      {"2)", "Hay un paréntesis de más."},
      {"2a", "No se entiende \"a\"."},
      {"é", "No se entiende \"é\"."},
      {"1.2.3", "\"1.2.3\" no es un número."},
      {"12,5", "\"12,5\" no es un número."},  // 125 would be worse than a refusal
      {"1,2,3", "\"1,2,3\" no es un número."},
      {"12 5", "No se entiende \"5\"."},
      {"999999999*999999999", "El resultado es demasiado grande."}};
  for (const auto& [expression, reason] : cases) {
    const Calculation done = Calculate(expression);
    EXPECT_FALSE(done.result.has_value()) << expression;
    EXPECT_EQ(done.reason, reason) << expression;
  }
  // Unfinished is not wrong.
  for (const char* expression : {"", "  ", "2+", "(2", "2*(", "-"}) {
    EXPECT_FALSE(Calculate(expression).result.has_value()) << expression;
    EXPECT_EQ(Calculate(expression).reason, "") << expression;
  }
  EXPECT_EQ(Calculate(std::string(100000, '(')).reason, "La cuenta es demasiado larga.");
  EXPECT_EQ(Calculate(std::string(100000, '-')).reason, "La cuenta es demasiado larga.");
}

class CalculatorKeys : public ::testing::Test {
 protected:
  CalculatorKeys() { App(); }

  static void Open(CalculatorDialog& dialog) {
    dialog.show();
    QApplication::processEvents();
  }
  static QString Line(const CalculatorDialog& dialog) { return dialog.findChild<QLineEdit*>()->text(); }
};

TEST_F(CalculatorKeys, EnterTakesTheResult) {
  CalculatorDialog dialog(QStringLiteral("116.00"));
  Open(dialog);
  Type(dialog, QStringLiteral("250*1.16"));
  EXPECT_EQ(Line(dialog), "250*1.16");  // a digit begins anew over what the field held
  Press(dialog, Qt::Key_Return);
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(dialog.Result(), "290");
}

TEST_F(CalculatorKeys, AnOperationGoesOnFromWhatTheFieldHeld) {
  CalculatorDialog dialog(QStringLiteral("1,200"));
  Open(dialog);
  Type(dialog, QStringLiteral("/4"));
  Press(dialog, Qt::Key_Enter);
  EXPECT_EQ(dialog.Result(), "300");
}

TEST_F(CalculatorKeys, EqualsGoesOnAndTheTapeKeepsTheSums) {
  CalculatorDialog dialog({});
  Open(dialog);
  Type(dialog, QStringLiteral("12*3="));
  EXPECT_EQ(Line(dialog), "36");
  Type(dialog, QStringLiteral("+4="));
  EXPECT_EQ(Line(dialog), "40");
  Type(dialog, QStringLiteral("7"));
  EXPECT_EQ(Line(dialog), "7");
  const auto* tape = dialog.findChild<QListWidget*>();
  ASSERT_EQ(tape->count(), 2);
  EXPECT_EQ(tape->item(0)->text(), QStringLiteral("12×3  =  36"));
  EXPECT_EQ(tape->item(1)->text(), QStringLiteral("36+4  =  40"));
  Press(dialog, Qt::Key_Up);
  EXPECT_EQ(Line(dialog), "36+4");
}

TEST_F(CalculatorKeys, EscapeLeavesAndAFaultIsNotTaken) {
  CalculatorDialog dialog(QStringLiteral("5"));
  Open(dialog);
  Type(dialog, QStringLiteral("5/0"));
  Press(dialog, Qt::Key_Return);
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(Line(dialog), "5/0");
  Press(dialog, Qt::Key_Escape);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.result(), QDialog::Rejected);
  EXPECT_TRUE(dialog.Result().isEmpty());
}

}  // namespace
}  // namespace tarvik::desktop
