// A goods-in by keyboard alone, with real key events, in the window that an operator sees.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>

#include "desktop/goods_in_view.h"
#include "desktop/grid_view.h"
#include "desktop/main_window.h"
#include "desktop/program.h"
#include "desktop/qt_platform.h"
#include "desktop/theme.h"
#include "host/anfitrion.h"
#include "service/entradas_salidas.h"
#include "tests/desktop/support.h"

namespace tarvik::desktop {
namespace {

class Escritorio : public ::testing::Test {
 protected:
  Escritorio() {
    App();
    program = std::make_unique<Program>(
        theme, ProgramOptions{QStringLiteral("sqlite:") + folder.filePath(QStringLiteral("tienda.db")),
                              QStringLiteral("ANA"),
                              QStringLiteral("E1"),
                              folder.path(),
                              {},
                              true});
    program->Platform().on_box = [this](forms::BoxKind kind, const std::string& text, int) {
      boxes.push_back(text);
      return kind != forms::BoxKind::Question || yes;
    };
    program->Window().resize(1366, 768);
    program->Window().show();
    program->Window().activateWindow();
    (void)QTest::qWaitForWindowActive(&program->Window());
  }

  frmEntradasWizard& New() {
    program->Door().NuevaEntrada();
    Settle();
    auto& form = dynamic_cast<frmEntradasWizard&>(*program->Platform().Screens().back());
    form.Check2.Value(0);  // no paper: the preview is a window of its own
    return form;
  }
  static void Settle() { QTest::qWait(0); }
  static void Type(const QString& text) {
    for (const QChar letter : text) QTest::keyClick(QApplication::focusWidget(), letter.toLatin1());
  }
  static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  static void Line(const QString& article, const QString& quantity) {
    Type(article);
    Press(Qt::Key_Return);
    Type(quantity);
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
  }
  std::string Article(int which) {
    const auto rows = program->Host().Conexion().Run(
        "SELECT articulo FROM prods WHERE precio1 > 0 ORDER BY articulo LIMIT 1 OFFSET ?", {which});
    return data::ToText(rows.rows.at(0)[0]);
  }
  std::string One(const std::string& sql) {
    const auto rows = program->Host().Conexion().Run(sql, {});
    return rows.rows.empty() ? "(nada)" : data::ToText(rows.rows[0][0]);
  }
  QLineEdit* Widget(frmEntradasWizard& form, int index) {
    return qobject_cast<QLineEdit*>(program->ViewOf(form)->WidgetOf(form.txtFields(index)));
  }

  QTemporaryDir folder;
  Theme theme{Theme::Mode::Light};
  std::unique_ptr<Program> program;
  std::vector<std::string> boxes;
  bool yes = true;
};

TEST_F(Escritorio, AWholeReceiptIsMadePostedAndFoundAgainWithoutTheMouse) {
  frmEntradasWizard& form = New();
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, 0));
  Type(QStringLiteral("com"));
  EXPECT_EQ(Widget(form, 0)->text(), QStringLiteral("COM"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  for (int line = 0; line < 10; ++line) Line(QString::fromStdString(Article(line)), QStringLiteral("3"));
  EXPECT_EQ(form.CuantasPartidas(), 10);
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "10");
  Settle();
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv"), "10");
  EXPECT_TRUE(program->Platform().Screens().empty());
  ASSERT_EQ(boxes.size(), 1u);  // the question
}

TEST_F(Escritorio, ACellIsCorrectedAndALineRemovedByKey) {
  frmEntradasWizard& form = New();
  Type(QStringLiteral("COM"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  Line(QString::fromStdString(Article(0)), QStringLiteral("3"));
  Line(QString::fromStdString(Article(1)), QStringLiteral("4"));
  form.Enter(form.fg2);
  Settle();
  auto* grid = qobject_cast<GridView*>(program->ViewOf(form)->WidgetOf(form.fg2));
  ASSERT_EQ(QApplication::focusWidget(), grid);
  form.fg2.MoveTo(1, 1);
  Press(Qt::Key_7);
  Settle();
  auto* editor = program->ViewOf(form)->WidgetOf(form.txtEdit);
  ASSERT_TRUE(editor->isVisible());
  EXPECT_EQ(QApplication::focusWidget(), editor);
  EXPECT_EQ(editor->geometry(), grid->CurrentCell());
  Press(Qt::Key_5);
  Press(Qt::Key_Return);
  Settle();
  EXPECT_FALSE(editor->isVisible());
  EXPECT_EQ(form.fg2.TextMatrix(1, 1), "75");
  EXPECT_EQ(One("SELECT cantidad FROM entpart ORDER BY id_entrada"), "75");
  Press(Qt::Key_Down);
  Press(Qt::Key_Left);
  Press(Qt::Key_Delete);
  EXPECT_EQ(form.CuantasPartidas(), 1);
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
}

TEST_F(Escritorio, ARefusedFieldIsMarkedWithItsReasonUntilMended) {
  frmEntradasWizard& form = New();
  form.Enter(form.txtFields(4));
  Settle();
  Type(QStringLiteral("NADA"));
  Press(Qt::Key_F9);
  Settle();
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_TRUE(Widget(form, 4)->property("refused").toBool());
  EXPECT_FALSE(Widget(form, 4)->accessibleDescription().isEmpty());
  Press(Qt::Key_Backspace);
  EXPECT_FALSE(Widget(form, 4)->property("refused").toBool());
}

TEST_F(Escritorio, EveryControlHasItsPlaceInTheViewAndAName) {
  frmEntradasWizard& form = New();
  ScreenView* view = program->ViewOf(form);
  const QStringList bound = view->Bound();
  for (const forms::Control* control : form.Controls()) {
    const QString name = QString::fromStdString(control->FullName());
    EXPECT_TRUE(bound.contains(name)) << control->FullName() << " has no place in the view";
    const QWidget* widget = view->WidgetOf(*control);
    if (widget && control->Focusable()) {
      EXPECT_FALSE(widget->accessibleName().isEmpty()) << control->FullName();
    }
  }
}

TEST_F(Escritorio, APastedPageGoesInAsOneChangeWithoutItsLineEnds) {
  frmEntradasWizard& form = New();
  form.Enter(form.txtFields(4));
  Settle();
  QApplication::clipboard()->setText(QString(4000, QLatin1Char('x')) + QStringLiteral("\nmás"));
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Widget(form, 4)->text().size(), 4003);
  EXPECT_TRUE(program->Platform().Screens().size() == 1);
}

TEST_F(Escritorio, ClosingWithAnEditOpenLosesNothingStoredAndFreesTheDocument) {
  frmEntradasWizard& form = New();
  Type(QStringLiteral("COM"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  Line(QString::fromStdString(Article(0)), QStringLiteral("3"));
  form.fg2.MoveTo(1, 1);
  form.Enter(form.fg2);
  Settle();
  Press(Qt::Key_9);
  form.Close();
  QTest::qWait(60);
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_EQ(One("SELECT cantidad FROM entpart"), "3");
  EXPECT_EQ(One("SELECT ocupado FROM entradas"), "0");
}

TEST(Palette, EveryTextStandsOutFromItsGroundInBothThemes) {
  auto luminance = [](const QColor& color) {
    auto part = [](double value) {
      return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
  };
  for (const bool dark : {false, true}) {
    for (const Pair& pair : kTextOnGround) {
      double text = luminance(Theme::Color(pair.text, dark));
      double ground = luminance(Theme::Color(pair.ground, dark));
      if (text < ground) std::swap(text, ground);
      EXPECT_GE((text + 0.05) / (ground + 0.05), 4.5)
          << static_cast<int>(pair.text) << " on " << static_cast<int>(pair.ground)
          << (dark ? ", dark" : ", light");
    }
  }
}

}  // namespace
}  // namespace tarvik::desktop
