// What hands do besides typing: the clipboard, the wheel, composed characters, keys held down, two
// screens at once. The form and what is seen stay the same text.
#include <QAction>
#include <QDateEdit>
#include <QImage>
#include <QInputMethodEvent>
#include <QPainter>
#include <QTextEdit>
#include <QWheelEvent>

#include "desktop/pickers/calculator.h"
#include "desktop/style/cell_text.h"
#include "desktop/windows/help.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

class Manos : public Escritorio {
 protected:
  void ExpectSame(DocumentWizard& form, int field, const char* text) {
    EXPECT_EQ(form.txtFields(field).Text(), text);
    EXPECT_EQ(Widget(form, field)->text(), QString::fromUtf8(text));
  }
};

TEST_F(Manos, AKeyThatIsNoOnesEditsNothing) {
  frmEntradasWizard& form = New();
  form.Enter(form.txtFields(campo::Articulo));
  Settle();
  Type(QStringLiteral("ABC DEF"));
  Press(Qt::Key_Backspace, Qt::ControlModifier);
  Press(Qt::Key_Delete, Qt::ControlModifier);
  Press(Qt::Key_K, Qt::ControlModifier);
  Settle();
  ExpectSame(form, campo::Articulo, "ABC DEF");
  Press(Qt::Key_X, Qt::ControlModifier);  // nothing is selected
  Settle();
  ExpectSame(form, campo::Articulo, "ABC DEF");
}

TEST_F(Manos, ASignOfAnyScriptIsTyped) {
  frmEntradasWizard& form = New();
  form.Enter(form.txtFields(campo::Articulo));
  Settle();
  QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString::fromUtf8("📦"));
  QApplication::sendEvent(QApplication::focusWidget(), &key);
  Settle();
  ExpectSame(form, campo::Articulo, "📦");
}

TEST_F(Manos, AComposedSignReplacesTheSelectionAndWalksTheKeysRoad) {
  frmEntradasWizard& form = New();
  form.txtFields(campo::Concepto).Text("HOLA");
  form.txtFields(campo::Concepto).SelectAll();
  Settle();
  QInputMethodEvent composing(QStringLiteral("´"), {});
  QApplication::sendEvent(QApplication::focusWidget(), &composing);
  QInputMethodEvent composed;
  composed.setCommitString(QStringLiteral("a"));
  QApplication::sendEvent(QApplication::focusWidget(), &composed);
  Settle();
  ExpectSame(form, campo::Concepto, "A");  // capitals, as the field's keys are
}

TEST_F(Manos, AWheelThatScrollsPastChangesNoDate) {
  frmEntradasWizard& form = New();
  const auto before = form.DTPicker1.Value();
  QWidget* date = program->ViewOf(form)->WidgetOf(form.DTPicker1);
  QWheelEvent wheel(QPointF(5, 5), date->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, 120), Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(date, &wheel);
  Settle();
  EXPECT_EQ(form.DTPicker1.Value()->Iso(), before->Iso());
}

TEST_F(Manos, AMessageOfOneDocumentMarksNoFieldOfAnother) {
  frmEntradasWizard& first = New();
  first.Enter(first.txtFields(campo::Articulo));
  Settle();
  frmEntradasWizard& second = New();
  EXPECT_EQ(QApplication::focusWidget(), Widget(second, 0));
  first.Act([&] { first.LlenaPartida(); });  // refused, while the other is in front
  Type(QStringLiteral("C"));
  Settle();
  // The message came up over the second: only what it sent the operator to is marked.
  EXPECT_FALSE(Widget(first, 4)->property("refused").toBool());
}

TEST_F(Manos, ADocumentThatIsOnlyReadOffersNoKeyThatDoesNothing) {
  frmEntradasWizard& form = New();
  Type(QStringLiteral("COM"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  Line(QString::fromStdString(Article(0)), QStringLiteral("1"));
  Press(Qt::Key_F5);
  Settle();
  (void)form;
  program->Door().ConsultaEntrada(1);
  Settle();
  const Keys keys = program->ViewOf(*program->Platform().Screens().back())->KeysNow();
  ASSERT_EQ(keys.size(), 1);
  EXPECT_EQ(keys[0].first, QStringLiteral("F1"));
}

TEST_F(Manos, ADocumentThatAnotherStationLetGoOfSaysSo) {
  frmEntradasWizard& form = New();
  Type(QStringLiteral("COM"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  Line(QString::fromStdString(Article(0)), QStringLiteral("1"));
  Settle();
  auto says = [&](const char* words) {
    for (const QLabel* label : program->ViewOf(form)->findChildren<QLabel*>()) {
      if (label->text().contains(QString::fromUtf8(words))) return true;
    }
    return false;
  };
  EXPECT_FALSE(says("Liberado"));
  program->Host().Conexion().Run("UPDATE entradas SET ocupado = 0", {});
  Type(QStringLiteral("X"));
  Settle();
  EXPECT_TRUE(says("Liberado"));
  EXPECT_TRUE(says("ábralo de nuevo"));
}

TEST_F(Manos, FromAScreenInAWindowOfItsOwnTheNextDocumentIsAKeyAway) {
  for (QAction* action : program->Window().findChildren<QAction*>()) {
    if (action->text().remove(QLatin1Char('&')).startsWith(QStringLiteral("Pantallas en ventanas"))) {
      action->setChecked(true);
    }
  }
  frmEntradasWizard& form = New();
  ScreenView* view = program->ViewOf(form);
  ASSERT_TRUE(view->isWindow());
  view->activateWindow();
  (void)QTest::qWaitForWindowActive(view);
  QTest::keyClick(view, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
  Settle();
  EXPECT_EQ(program->Platform().Screens().size(), 2u);
}

TEST_F(Manos, ANumberTooWideForItsColumnIsSeenToBeCutOff) {
  auto inked = [](const QString& text, int width) {
    QImage picture(width, 24, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    DrawFigures(painter, picture.rect(), text, true);
    painter.end();
    return picture;
  };
  // "0,000.00" alone would look like the end of "1,250,000.00": the cut must not.
  const int width = QFontMetrics(QApplication::font()).horizontalAdvance(QStringLiteral("00,000.00"));
  EXPECT_NE(inked(QStringLiteral("1,250,000.00"), width), inked(QStringLiteral("0,000.00"), width));
}

TEST_F(Manos, FiguresOfOneLengthTakeOneWidth) {
  auto left_edge = [](const QString& text) {
    QImage picture(160, 24, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setFont(QFont(QStringLiteral("Inter")));
    DrawFigures(painter, picture.rect(), text, true);
    painter.end();
    for (int x = 0; x < picture.width(); ++x) {
      for (int y = 0; y < picture.height(); ++y) {
        if (picture.pixelColor(x, y).lightness() < 200) return x;
      }
    }
    return -1;
  };
  const int ones = left_edge(QStringLiteral("-111,111.11"));
  const int eights = left_edge(QStringLiteral("-888,888.88"));
  ASSERT_GE(ones, 0);
  EXPECT_LE(std::abs(ones - eights), 1);
}

TEST_F(Manos, ARemarkOfTwoLinesStandsInOneAndEndsWhereItsCellEnds) {
  auto drawn = [](const QString& text, int width) {
    QImage picture(400, 24, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    DrawCellText(painter, QRect(0, 0, width, 24), text);
    painter.end();
    return picture;
  };
  auto right_edge = [](const QImage& picture) {
    for (int x = picture.width() - 1; x >= 0; --x) {
      for (int y = 0; y < picture.height(); ++y) {
        if (picture.pixelColor(x, y).lightness() < 200) return x;
      }
    }
    return -1;
  };
  const QImage two = drawn(QStringLiteral("entregar\nen la tarde\tal encargado"), 400);
  EXPECT_EQ(two, drawn(QStringLiteral("entregar en la tarde al encargado"), 400));
  const QImage cut = drawn(QStringLiteral("entregar en la tarde al encargado"), 90);
  EXPECT_GT(right_edge(two), 90);
  EXPECT_LT(right_edge(cut), 90);
  EXPECT_GT(right_edge(cut), 60);
  // Kept from before, the same picture.
  EXPECT_EQ(cut, drawn(QStringLiteral("entregar en la tarde al encargado"), 90));
  EXPECT_EQ(right_edge(drawn({}, 90)), -1);
}

TEST_F(Manos, AnEnterHeldDownOnTheListOpensOneDocument) {
  program->Host().Conexion().Run("INSERT INTO entradas (entrada, tipo_doc, estado) VALUES (41, 'COM', 'PE')",
                                 {});
  program->Host().Conexion().Run("INSERT INTO entradas (entrada, tipo_doc, estado) VALUES (42, 'COM', 'PE')",
                                 {});
  Press(Qt::Key_F5);
  QTest::qWait(100);
  // As a scanner sends it: the number and Enter in one go.
  Type(QStringLiteral("41"));
  Press(Qt::Key_Return);
  QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
  if (QApplication::focusWidget()) QApplication::sendEvent(QApplication::focusWidget(), &again);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !program->Platform().Screens().empty(); }));
  QTest::qWait(50);
  ASSERT_EQ(program->Platform().Screens().size(), 1u);
  EXPECT_EQ(dynamic_cast<frmEntradasWizard&>(*program->Platform().Screens().back()).Entrada, 41);
}

}  // namespace
}  // namespace tarvik::desktop
