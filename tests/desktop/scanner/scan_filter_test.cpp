// A scanner told from a hand, by the times of its keys.
#include "desktop/scanner/scan_filter.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QWindow>

#include "tests/desktop/support.h"

namespace tarvik::desktop {
namespace {

class Scanner : public ::testing::Test {
 protected:
  Scanner() {
    filter.on_reading = [this](const QString& code) { readings += code; };
    field.show();
    field.activateWindow();
    (void)QTest::qWaitForWindowActive(&field);
    field.setFocus();
  }
  // A key as the window system gives it, so many milliseconds after the one before.
  void Key(int after, const QString& text, Qt::Key key = Qt::Key_unknown, bool repeated = false) {
    now += static_cast<quint64>(after);
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(
          type,
          key == Qt::Key_unknown ? static_cast<int>(text.at(0).toUpper().unicode()) : static_cast<int>(key),
          Qt::NoModifier, text, repeated);
      event.setTimestamp(now);
      QCoreApplication::sendEvent(field.windowHandle(), &event);
    }
  }
  void Keys(const QString& text, int apart) {
    for (const QChar sign : text) Key(apart, QString(sign));
  }
  void Enter(int after) { Key(after, QStringLiteral("\r"), Qt::Key_Return); }
  void Scan(const QString& code) {
    Keys(code, 3);
    Enter(3);
  }
  static void Rest() { QTest::qWait(80); }

  QApplication& app = App();  // first of all
  quint64 now = 100000;
  ScanFilter filter;
  QLineEdit field;
  QStringList readings;
};

TEST_F(Scanner, FastKeysEndedByEnterAreAReadingAndReachNoField) {
  int entered = 0;
  QObject::connect(&field, &QLineEdit::returnPressed, [&] { ++entered; });
  Scan(QStringLiteral("750100"));
  Rest();
  EXPECT_EQ(readings, QStringList{"750100"});
  EXPECT_EQ(field.text(), "");
  EXPECT_EQ(entered, 0);
}

TEST_F(Scanner, AHandLosesNoKey) {
  Keys(QStringLiteral("750100"), 60);
  Enter(60);
  Rest();
  EXPECT_TRUE(readings.isEmpty());
  EXPECT_EQ(field.text(), "750100");
}

TEST_F(Scanner, FiveCharactersAreAHandHoweverFast) {
  Scan(QStringLiteral("75010"));
  Rest();
  EXPECT_TRUE(readings.isEmpty());
  EXPECT_EQ(field.text(), "75010");
}

TEST_F(Scanner, TwentyFiveMillisecondsAreAScannerAndTwentySixAHand) {
  Keys(QStringLiteral("750100"), 25);
  Enter(25);
  EXPECT_EQ(readings, QStringList{"750100"});
  Keys(QStringLiteral("750100"), 26);
  Enter(26);
  Rest();
  EXPECT_EQ(readings.size(), 1);
  EXPECT_EQ(field.text(), "750100");
}

TEST_F(Scanner, HeldKeysComeOutAfterAMomentInTheirOrder) {
  Keys(QStringLiteral("abc"), 2);
  EXPECT_EQ(field.text(), "");
  EXPECT_EQ(filter.Held(), 3);
  Rest();
  EXPECT_EQ(field.text(), "abc");
  EXPECT_EQ(filter.Held(), 0);
}

TEST_F(Scanner, AKeyThatIsNoCharacterLetsTheOthersOutFirst) {
  Keys(QStringLiteral("ab"), 2);
  Key(2, QString(), Qt::Key_Home);
  Keys(QStringLiteral("x"), 60);
  Rest();
  EXPECT_EQ(field.text(), "xab");
}

TEST_F(Scanner, OneWithoutItsEndIsTyped) {
  Keys(QStringLiteral("7501000"), 2);
  Rest();
  EXPECT_TRUE(readings.isEmpty());
  EXPECT_EQ(field.text(), "7501000");
}

TEST_F(Scanner, AProgramThatWasBusyTakesItForAScannerAllTheSame) {
  // The keys lie in the queue while something else runs for long; their own times tell.
  for (const QChar sign : QStringLiteral("750100")) {
    Key(3, QString(sign));
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(40);
    while (std::chrono::steady_clock::now() < until) {
    }
  }
  Enter(3);
  EXPECT_EQ(readings, QStringList{"750100"});
}

TEST_F(Scanner, AFingerThatRestsOnAKeyIsNoScanner) {
  for (int i = 0; i < 12; ++i) Key(20, QStringLiteral("8"), Qt::Key_8, i > 0);
  Enter(20);
  Rest();
  EXPECT_TRUE(readings.isEmpty());
  EXPECT_EQ(field.text(), QString(12, QLatin1Char('8')));
}

TEST_F(Scanner, ALineThatEndsTwiceIsOneReading) {
  int entered = 0;
  QObject::connect(&field, &QLineEdit::returnPressed, [&] { ++entered; });
  Scan(QStringLiteral("750100"));
  Enter(4);
  EXPECT_EQ(readings.size(), 1);
  EXPECT_EQ(entered, 0);
  Enter(400);
  Rest();
  EXPECT_EQ(entered, 1) << "a hand's Enter later on is an Enter";
}

TEST_F(Scanner, FiveHundredCharactersAreOneReading) {
  const QString code(500, QLatin1Char('9'));
  Scan(code);
  EXPECT_EQ(readings, QStringList{code});
}

TEST_F(Scanner, ManyInARowKeepTheirOrder) {
  QStringList sent;
  for (int i = 0; i < 200; ++i) {
    sent += QStringLiteral("75%1").arg(i, 5, 10, QLatin1Char('0'));
    Scan(sent.last());
  }
  EXPECT_EQ(readings, sent);
  EXPECT_EQ(field.text(), "");
}

// Two at once give one text that nobody knows: it is kept whole, and touches no field.
TEST_F(Scanner, TwoAtOnceAreOneReadingThatNobodyKnows) {
  const QString one = QStringLiteral("111111");
  const QString two = QStringLiteral("222222");
  for (int i = 0; i < 6; ++i) {
    Key(2, QString(one[i]));
    Key(2, QString(two[i]));
  }
  Enter(2);
  Enter(2);
  Rest();
  EXPECT_EQ(readings, QStringList{"121212121212"});
  EXPECT_EQ(field.text(), "");
}

TEST_F(Scanner, BetweenAPrefixAndASuffixAnyLengthIsAReading) {
  filter.Set({true, QStringLiteral("~["), QStringLiteral("]")});
  Keys(QStringLiteral("~[7]"), 3);
  EXPECT_EQ(readings, QStringList{"7"});
  Keys(QStringLiteral("750100"), 3);
  Enter(3);
  Rest();
  EXPECT_EQ(readings.size(), 1) << "without the prefix it is typing";
  EXPECT_EQ(field.text(), "750100");
  field.clear();
  filter.Set({true, QStringLiteral("~"), {}});
  Keys(QStringLiteral("~12"), 3);
  Enter(3);
  EXPECT_EQ(readings.last(), "12");
}

TEST_F(Scanner, SwitchedOffAndWhereNoneIsWantedAllIsTyping) {
  filter.Set({false, {}, {}});
  Scan(QStringLiteral("750100"));
  EXPECT_EQ(field.text(), "750100");
  filter.Set({});
  filter.wanted = [] { return false; };
  field.clear();
  Scan(QStringLiteral("750100"));
  EXPECT_EQ(field.text(), "750100");
  EXPECT_TRUE(readings.isEmpty());
}

}  // namespace
}  // namespace tarvik::desktop
