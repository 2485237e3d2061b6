// A first day at the counter: from the list to a posted, printed receipt and back to the list, by
// keyboard alone. Every key goes to whatever has the focus; nothing here reaches past the window.
#include <QTableView>

#include "data/number.h"
#include "desktop/printing/preview_window.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

class PrimerDia : public Escritorio {
 protected:
  static void Keys(std::initializer_list<Qt::Key> keys) {
    for (Qt::Key key : keys) {
      Press(key);
      Settle();
    }
  }
  frmEntradasWizard& Receipt() {
    return dynamic_cast<frmEntradasWizard&>(*program->Platform().Screens().back());
  }
  // Eight typed lines, one scan, one box by its second key.
  void TenLines() {
    for (int line = 0; line < 8; ++line) Line(QString::fromStdString(Article(line)), QStringLiteral("3"));
    Keys({Qt::Key_F3});
    Type(QStringLiteral("7501206600016"));
    Keys({Qt::Key_Return, Qt::Key_F3});
    Type(QStringLiteral("CIN-AIS-C12"));
    Keys({Qt::Key_Return});  // the article is known, and the box is in hand
    EXPECT_EQ(Receipt().txtFields(campo::Articulo).Text(), "CIN-AIS");
    EXPECT_EQ(Receipt().txtFields(campo::Cantidad).Text(), "12");
    for (int press = 0; press < 4 && Receipt().CuantasPartidas() < 10; ++press) Keys({Qt::Key_Return});
    ASSERT_EQ(Receipt().CuantasPartidas(), 10);
    EXPECT_EQ(One("SELECT cantidad FROM entpart WHERE articulo = 'CIN-AIS'"), "12");
    EXPECT_EQ(One("SELECT cantidad FROM entpart WHERE articulo = 'MAR-16'"), "1");
  }
  static PreviewWindow* Preview() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (auto* preview = qobject_cast<PreviewWindow*>(window); preview && preview->isVisible())
        return preview;
    }
    return nullptr;
  }
};

TEST_F(PrimerDia, AReceiptOfTenLinesFromTheListAndBackToIt) {
  ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::focusWidget() != nullptr; }));
  Keys({Qt::Key_Insert});
  ASSERT_EQ(program->Platform().Screens().size(), 1u);
  Type(QStringLiteral("com"));
  Keys({Qt::Key_Return, Qt::Key_Return});

  TenLines();

  // The last line was meant to be two boxes; the first is taken away.
  Press(Qt::Key_Up, Qt::AltModifier);
  Settle();
  Keys({Qt::Key_Right});
  Type(QStringLiteral("24"));
  Keys({Qt::Key_Return});
  EXPECT_EQ(One("SELECT cantidad FROM entpart WHERE articulo = 'CIN-AIS'"), "24");
  Keys({Qt::Key_Left, Qt::Key_PageUp, Qt::Key_Delete});
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "9");
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart WHERE articulo = '" + Article(0) + "'"), "0");
  const std::string total = Receipt().txtFields(campo::Total).Text();

  // Back to the entry row, and F5 asks, posts, shows the paper, closes.
  Press(Qt::Key_Down, Qt::AltModifier);
  Keys({Qt::Key_F5});
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv"), "9");
  EXPECT_EQ(One("SELECT existencia FROM existenciaalmacen WHERE articulo = 'CIN-AIS' AND almacen = 1"), "24");
  ASSERT_TRUE(QTest::qWaitFor([] { return Preview() != nullptr; }));
  QTest::keyClick(Preview(), Qt::Key_Escape);
  ASSERT_TRUE(QTest::qWaitFor([] { return Preview() == nullptr; }));

  // Found again by its number, and opened to be read.
  program->Window().activateWindow();
  (void)QTest::qWaitForWindowActive(&program->Window());
  Press(Qt::Key_F, Qt::ControlModifier);
  Type(QString::fromStdString(One("SELECT entrada FROM entradas")));
  QTableView* table = nullptr;
  for (auto* candidate : program->Window().findChildren<QTableView*>()) {
    if (candidate->isVisible()) table = candidate;
  }
  ASSERT_NE(table, nullptr);
  ASSERT_TRUE(QTest::qWaitFor([&] { return table->model()->rowCount() == 1; }));
  Keys({Qt::Key_Return});
  ASSERT_TRUE(QTest::qWaitFor([&] { return program->Platform().Screens().size() == 1; }));
  EXPECT_EQ(Receipt().Modo, "CONSULTA");
  EXPECT_EQ(Receipt().CuantasPartidas(), 9);
  EXPECT_EQ(Receipt().txtFields(campo::Total).Text(), total);
  EXPECT_EQ(data::ParseNumber(total), data::ParseNumber(One("SELECT importe FROM entradas")));
}

TEST_F(PrimerDia, TheLinesAreTwoKeysAwayAndBack) {
  Keys({Qt::Key_Insert});
  Type(QStringLiteral("COM"));
  Keys({Qt::Key_Return, Qt::Key_Return});
  Line(QString::fromStdString(Article(0)), QStringLiteral("3"));
  Press(Qt::Key_Up, Qt::AltModifier);
  EXPECT_EQ(Receipt().ActiveControl(), &Receipt().fg2);
  EXPECT_EQ(Receipt().fg2.Row(), 1);
  Press(Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(Receipt().ActiveControl(), &Receipt().txtFields(campo::Articulo));
}

}  // namespace
}  // namespace tarvik::desktop
