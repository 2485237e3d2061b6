// A goods-out by keyboard alone, with real key events, in the window that an operator sees.
#include "desktop/screens/goods_out_view.h"

#include <QTextBrowser>

#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

class EscritorioDeSalidas : public Escritorio {
 protected:
  frmSalidasWizard& NewOut() {
    program->Door().NuevaSalida();
    Settle();
    auto& form = dynamic_cast<frmSalidasWizard&>(*program->Platform().Screens().back());
    form.Check2.Value(0);
    return form;
  }
};

TEST_F(EscritorioDeSalidas, EveryControlHasItsPlaceInTheViewAndAName) { ExpectWhole(NewOut()); }

TEST_F(EscritorioDeSalidas, NothingMovesUnderTheHand) { ExpectStill(NewOut()); }

TEST_F(EscritorioDeSalidas, ATransferOfFiveLinesIsMadeByKeyAndBothWarehousesShowIt) {
  frmSalidasWizard& form = NewOut();
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, campo::Concepto));
  Type(QStringLiteral("tra"));
  // The mark by its letter, the warehouse, and F2 goes on to the articles.
  Press(Qt::Key_T, Qt::AltModifier);
  QTest::qWait(150);  // a box pressed by its letter comes up again first
  ASSERT_EQ(form.SSCheck1.Value(), 1);
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, campo::AlmacenDestino));
  Type(QStringLiteral("2"));
  Press(Qt::Key_F2);
  Settle();
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, campo::Articulo));
  for (int line = 0; line < 5; ++line) Line(QString::fromStdString(Article(line)), QStringLiteral("3"));
  EXPECT_EQ(form.CuantasPartidas(), 5);
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(One("SELECT estado FROM salidas"), "CO");
  EXPECT_EQ(One("SELECT COUNT(*) FROM existenciaalmacen WHERE almacen = 1 AND existencia = -3"), "5");
  EXPECT_EQ(One("SELECT COUNT(*) FROM existenciaalmacen WHERE almacen = 2 AND existencia = 3"), "5");
  EXPECT_TRUE(program->Platform().Screens().empty());
}

TEST_F(EscritorioDeSalidas, AScreenThatComesInFrontLeavesTheOtherOneAsItWas) {
  frmEntradasWizard& first = New();
  first.Enter(first.txtFields(campo::Articulo));
  Settle();
  Type(QStringLiteral("A"));
  frmSalidasWizard& second = NewOut();
  EXPECT_EQ(first.ActiveControl(), &first.txtFields(campo::Articulo));
  EXPECT_EQ(QApplication::focusWidget(), Widget(second, 0));
  Type(QStringLiteral("VTA"));
  EXPECT_EQ(second.txtFields(campo::Concepto).Text(), "VTA");
  EXPECT_EQ(first.txtFields(campo::Articulo).Text(), "A");
}

TEST_F(EscritorioDeSalidas, TheSheetBesideTheLinesIsTheFilesPage) {
  frmSalidasWizard& form = NewOut();
  std::string heading = "Reparto del norte";
  form.CreaHTML(heading, "");
  const auto* sheet = qobject_cast<QTextBrowser*>(program->ViewOf(form)->WidgetOf(form.wb));
  ASSERT_NE(sheet, nullptr);
  EXPECT_TRUE(sheet->toPlainText().contains(QStringLiteral("Reparto del norte")));
}

}  // namespace
}  // namespace tarvik::desktop
