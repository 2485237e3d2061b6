// Boxes: which buttons a style gives, which key answers what, and the report that can be copied.
#include "desktop/boxes/boxes.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include "data/error.h"
#include "desktop/program/program_log.h"
#include "tests/desktop/support.h"

namespace tarvik::desktop {
namespace {

using forms::BoxKind;

class Boxes : public ::testing::Test {
 protected:
  Boxes() { App(); }

  static QStringList Buttons(const QDialog& box) {
    QStringList captions;
    for (const QPushButton* button : box.findChildren<QPushButton*>()) captions += button->text().remove('&');
    captions.sort();
    return captions;
  }
  static QString Default(const QDialog& box) {
    for (const QPushButton* button : box.findChildren<QPushButton*>()) {
      if (button->isDefault()) return button->text().remove('&');
    }
    return {};
  }
  // Shows the box and gives it one key.
  static bool Answer(BoxKind kind, int style, Qt::Key key) {
    bool shown = false;
    WhenModal([&](QWidget& box) {
      shown = true;
      Press(box, key);
      if (box.isVisible()) box.close();
    });
    const bool answer = ShowBox(nullptr, kind, QStringLiteral("¿Seguir?"), style);
    EXPECT_TRUE(shown);
    return answer;
  }
  static constexpr const char* kReport =
      "14:03:22 Ocurrió un error:\r\nModule: frmEntradasWi\r\nFunction: SalvaEntrada\r\n"
      "Description: La base está ocupada código duro: 0\r\n";
};

TEST_F(Boxes, ABaseThatDoesNotOpenIsToldWithItsReasonToBeReadAndCopied) {
  const auto box = MakeNotOpened(QStringLiteral("La base está dañada.\nRestaure el respaldo de ayer."));
  EXPECT_EQ(Buttons(*box), (QStringList{"Cerrar", "Copiar"}));
  EXPECT_EQ(Default(*box), "Cerrar");
  QStringList words;
  for (const auto* label : box->findChildren<QLabel*>()) words << label->text();
  EXPECT_TRUE(words.contains("El programa no se pudo abrir"));
  EXPECT_TRUE(words.contains("La base está dañada.\nRestaure el respaldo de ayer."));
}

// ---- a box that a hand must mean ----

class BoxesThatMustStand : public Boxes {
 protected:
  BoxesThatMustStand() { BoxesMustStand() = std::chrono::milliseconds(60); }
  ~BoxesThatMustStand() override { BoxesMustStand() = std::chrono::milliseconds(0); }

  static void Down(QWidget& box, Qt::Key key, const QString& text = {}, bool repeated = false) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text, repeated);
    QCoreApplication::sendEvent(box.focusWidget(), &down);
  }
  static void Up(QWidget& box, Qt::Key key) {
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
    QCoreApplication::sendEvent(box.focusWidget() != nullptr ? box.focusWidget() : &box, &up);
  }
  static void Stroke(QWidget& box, Qt::Key key, const QString& text = {}) {
    Down(box, key, text);
    Up(box, key);
  }
  // Shows a question, and gives what became of it: whether it still stood after `hand`, and the kept keys.
  static bool StandsAfter(const std::function<void(QWidget&)>& hand, KeptKeys* kept = nullptr) {
    bool stands = false;
    WhenModal([&](QWidget& box) {
      hand(box);
      stands = box.isVisible();
      if (stands) box.close();
    });
    ShowBox(nullptr, BoxKind::Question, QStringLiteral("¿Afectar el movimiento?"), forms::kBoxYesNo, kept);
    return stands;
  }
};

TEST_F(BoxesThatMustStand, AKeyThatWasOnItsWayDoesNotAnswer) {
  for (const auto& [key, text] : {std::pair{Qt::Key_Return, QStringLiteral("\r")},
                                  {Qt::Key_S, QStringLiteral("s")},
                                  {Qt::Key_N, QStringLiteral("n")},
                                  {Qt::Key_Space, QStringLiteral(" ")},
                                  {Qt::Key_Escape, QString()}}) {
    EXPECT_TRUE(StandsAfter([&, key = key, text = text](QWidget& box) { Stroke(box, key, text); })) << key;
  }
}

TEST_F(BoxesThatMustStand, OnceItHasStoodAKeyAnswers) {
  EXPECT_FALSE(StandsAfter([](QWidget& box) {
    QTest::qWait(80);
    Stroke(box, Qt::Key_Return);
  }));
}

TEST_F(BoxesThatMustStand, AHandThatTypesOnNeverAnswersHoweverLong) {
  EXPECT_TRUE(StandsAfter([](QWidget& box) {
    for (int i = 0; i < 8; ++i) {
      QTest::qWait(20);
      Stroke(box, i == 7 ? Qt::Key_Return : Qt::Key_S, QStringLiteral("s"));
    }
  }));
}

TEST_F(BoxesThatMustStand, AKeyThatIsHeldDownNeverAnswers) {
  EXPECT_TRUE(StandsAfter([](QWidget& box) {
    for (int i = 0; i < 6; ++i) {
      QTest::qWait(30);
      Down(box, Qt::Key_Return, QStringLiteral("\r"), true);
    }
  }));
  // Nor does another beside it.
  EXPECT_TRUE(StandsAfter([](QWidget& box) {
    Down(box, Qt::Key_A, QStringLiteral("a"));
    QTest::qWait(80);
    Stroke(box, Qt::Key_Return);
  }));
}

TEST_F(BoxesThatMustStand, WhatCameTooEarlyIsKeptInOrderAndRepeatsAreNot) {
  KeptKeys kept;
  StandsAfter(
      [](QWidget& box) {
        Down(box, Qt::Key_7, QStringLiteral("7"));
        Down(box, Qt::Key_7, QStringLiteral("7"), true);
        Up(box, Qt::Key_7);
        Stroke(box, Qt::Key_5, QStringLiteral("5"));
        QTest::qWait(80);
        Stroke(box, Qt::Key_Return);
      },
      &kept);
  ASSERT_EQ(kept.size(), 2U) << "the key that answered is the box's";
  EXPECT_EQ(kept[0]->text(), "7");
  EXPECT_EQ(kept[1]->text(), "5");
  QLineEdit field;
  field.show();
  field.activateWindow();
  field.setFocus();
  (void)QTest::qWaitForWindowActive(&field);
  GiveBack(kept);
  EXPECT_EQ(field.text(), "75");
  EXPECT_TRUE(kept.empty());
}

TEST_F(Boxes, AMessageHasOneButtonWhateverItsIcon) {
  for (const int style : {forms::kBoxPlain, forms::kBoxStop, forms::kBoxInformation}) {
    const auto box = MakeBox(nullptr, BoxKind::Message, QStringLiteral("Texto"), style);
    EXPECT_EQ(Buttons(*box), QStringList{"Aceptar"}) << style;
    EXPECT_EQ(Default(*box), "Aceptar") << style;
  }
}

TEST_F(Boxes, AQuestionHasTwoAndStyleOneIsAQuestionToo) {
  for (const int style : {1, 2, forms::kBoxYesNo, forms::kBoxYesNo + forms::kBoxQuestion}) {
    const auto box = MakeBox(nullptr, BoxKind::Question, QStringLiteral("Texto"), style);
    EXPECT_EQ(Buttons(*box), (QStringList{"No", "Sí"})) << style;
    EXPECT_EQ(Default(*box), "Sí") << style;
  }
  const auto plain = MakeBox(nullptr, BoxKind::Message, QStringLiteral("Texto"), forms::kBoxYesNo);
  EXPECT_EQ(Buttons(*plain).size(), 2);
}

TEST_F(Boxes, TheSecondButtonIsTheDefaultWhenTheStyleSaysSo) {
  const int style = forms::kBoxYesNo + forms::kBoxQuestion + forms::kBoxSecondDefault;
  EXPECT_EQ(Default(*MakeBox(nullptr, BoxKind::Question, QStringLiteral("Texto"), style)), "No");
  EXPECT_FALSE(Answer(BoxKind::Question, style, Qt::Key_Return));
  EXPECT_TRUE(Answer(BoxKind::Question, style, Qt::Key_S));
}

TEST_F(Boxes, KeysAnswerAQuestion) {
  EXPECT_TRUE(Answer(BoxKind::Question, 1, Qt::Key_Return));
  EXPECT_TRUE(Answer(BoxKind::Question, 1, Qt::Key_S));
  EXPECT_FALSE(Answer(BoxKind::Question, 1, Qt::Key_N));
  EXPECT_FALSE(Answer(BoxKind::Question, 1, Qt::Key_Escape));
}

TEST_F(Boxes, AKeyStillHeldDownWhenTheBoxComesUpAnswersNothing) {
  const auto box = MakeBox(nullptr, BoxKind::Question, QStringLiteral("¿Afectar?"), 1);
  box->show();
  QApplication::processEvents();
  for (Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_S, Qt::Key_Escape}) {
    for (QWidget* target :
         {static_cast<QWidget*>(box->findChild<QPushButton*>()), static_cast<QWidget*>(box.get())}) {
      QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier,
                     key == Qt::Key_S ? QStringLiteral("s") : QString(), true);
      QApplication::sendEvent(target, &held);
    }
    EXPECT_TRUE(box->isVisible()) << key;
  }
  QTest::keyClick(box.get(), Qt::Key_S);
  EXPECT_FALSE(box->isVisible());
}

TEST_F(Boxes, AnArrowGoesToTheOtherButton) {
  WhenModal([](QWidget& box) {
    Press(box, Qt::Key_Right);
    Press(box, Qt::Key_Return);
  });
  EXPECT_FALSE(ShowBox(nullptr, BoxKind::Question, QStringLiteral("¿Seguir?"), 1));
}

TEST_F(Boxes, WhereThereIsNothingToRefuseEscapeIsAccept) {
  EXPECT_TRUE(Answer(BoxKind::Message, forms::kBoxInformation, Qt::Key_Escape));
  EXPECT_TRUE(Answer(BoxKind::Message, forms::kBoxInformation, Qt::Key_Return));
  EXPECT_TRUE(Answer(BoxKind::Plain, forms::kBoxPlain, Qt::Key_Escape));
}

TEST_F(Boxes, TheTextStandsAsItIsWithNoMarkup) {
  const auto box = MakeBox(nullptr, BoxKind::Message, QStringLiteral("<b>5 & 6</b>\r\notro"), 64);
  bool found = false;
  for (const QLabel* label : box->findChildren<QLabel*>()) {
    if (label->text() != QStringLiteral("<b>5 & 6</b>\notro")) continue;
    found = true;
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
  }
  EXPECT_TRUE(found);
}

TEST_F(Boxes, AReportShowsItsTextAndCopiesItUnchanged) {
  const QString text = QString::fromUtf8(kReport);
  WhenModal([&](QWidget& box) {
    const auto* shown = box.findChild<QPlainTextEdit*>();
    ASSERT_NE(shown, nullptr);
    EXPECT_TRUE(
        shown->toPlainText().startsWith(QStringLiteral("14:03:22 Ocurrió un error:\nModule: frmEntradasWi")));
    QApplication::clipboard()->clear();
    for (QPushButton* button : box.findChildren<QPushButton*>()) {
      if (button->text() == QStringLiteral("&Copiar")) QTest::keyClick(button, Qt::Key_Space);
    }
    EXPECT_TRUE(box.isVisible());
    EXPECT_EQ(QApplication::clipboard()->text(), text);
    Press(box, Qt::Key_Escape);
  });
  EXPECT_TRUE(ShowBox(nullptr, BoxKind::Plain, text, 0));
}

TEST_F(Boxes, APlainTextThatIsNoReportIsNotDressedAsOne) {
  const auto box = MakeBox(nullptr, BoxKind::Plain, QStringLiteral("Ocurrió un error: otro"), 0);
  EXPECT_EQ(box->findChild<QPlainTextEdit*>(), nullptr);
  EXPECT_EQ(Buttons(*box), QStringList{"Aceptar"});
}

TEST_F(Boxes, AnErrorWithNoTrapSaysWhatIsSafe) {
  const auto box = MakeUnhandled(nullptr, QStringLiteral("No existe el control x"), true);
  QString words;
  for (const QLabel* label : box->findChildren<QLabel*>()) words += label->text();
  EXPECT_TRUE(words.contains(QStringLiteral("sigue abierta con sus datos")));
  EXPECT_EQ(box->findChild<QPlainTextEdit*>()->toPlainText(), QStringLiteral("No existe el control x"));
  EXPECT_EQ(Buttons(*box), (QStringList{"Aceptar", "Copiar"}));
}

TEST_F(Boxes, EveryButtonHasAnAccessibleName) {
  for (const auto& box : {MakeBox(nullptr, BoxKind::Question, QStringLiteral("x"), 1),
                          MakeBox(nullptr, BoxKind::Plain, QString::fromUtf8(kReport), 0)}) {
    for (const QPushButton* button : box->findChildren<QPushButton*>()) {
      EXPECT_FALSE(button->accessibleName().isEmpty()) << button->text().toStdString();
    }
  }
}

// ---- the program's own log ----

QString Contents(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

TEST(ProgramLogFile, ABlockHasWhoWhereAndTheErrorsContext) {
  const QTemporaryDir folder;
  ProgramLog log(folder.filePath(QStringLiteral("nueva")).toStdString(), "ANA", "E1");
  EXPECT_TRUE(log.Write(QStringLiteral("frmEntradasWizard"),
                        data::Error("La base está ocupada").With("sentencia", "SELECT 1")));
  EXPECT_TRUE(log.Write({}, QStringLiteral("uno\r\ndos")));
  const QStringList lines = Contents(log.Path()).split('\n');
  ASSERT_EQ(lines.size(), 7);
  EXPECT_TRUE(lines[0].endsWith(QStringLiteral(" ANA E1 frmEntradasWizard"))) << lines[0].toStdString();
  EXPECT_EQ(lines[1], QStringLiteral("  La base está ocupada"));
  EXPECT_EQ(lines[2], QStringLiteral("  sentencia: SELECT 1"));
  EXPECT_TRUE(lines[3].endsWith(QStringLiteral(" ANA E1")));
  EXPECT_EQ(lines[4], QStringLiteral("  uno"));
  EXPECT_EQ(lines[5], QStringLiteral("  dos"));
  EXPECT_TRUE(log.Path().endsWith(QStringLiteral("/programa.log")));
}

TEST(ProgramLogFile, OneThatCannotBeWrittenIsNoError) {
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("archivo"));
  QFile blocker(file);
  ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
  ProgramLog log(file.toStdString());  // a file where the folder should be
  EXPECT_FALSE(log.Write({}, QStringLiteral("texto")));
}

}  // namespace
}  // namespace tarvik::desktop
