// The lines of a goods-out: corrected and removed in the grid, made in the entry row; presentations, readers,
// addresses.
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>

#include "tests/desktop/screens/salidas_en_el_escritorio.h"

namespace tarvik::desktop {
namespace {

// ---- the grid ----

TEST_F(SalidasEnElEscritorio, AQuantityIsCorrectedByKeyAndAPriceIsNot) {
  frmSalidasWizard& form = Selling();
  Line(QStringLiteral("MAR-16"), QStringLiteral("2"));
  Settle();
  Press(Qt::Key_Up);
  Settle();
  ASSERT_EQ(QApplication::focusWidget(), Grid(form));
  Press(Qt::Key_Right);
  Press(Qt::Key_5);
  Settle();
  QWidget* editor = program->ViewOf(form)->WidgetOf(form.txtEdit);
  ASSERT_TRUE(editor->isVisible());
  EXPECT_EQ(editor->geometry(), Grid(form)->CurrentCell());
  Press(Qt::Key_0);
  Press(Qt::Key_0);
  Press(Qt::Key_Return);
  Settle();
  EXPECT_FALSE(editor->isVisible());
  EXPECT_TRUE(boxes.empty()) << AllSaid();  // the stock is asked only where the old quantity was negative
  EXPECT_EQ(One("SELECT cantidad FROM salpart"), "500");
  EXPECT_EQ(form.fg2.TextMatrix(1, 2), "-400");
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, campo::Articulo));
  Press(Qt::Key_Up);
  Settle();
  form.fg2.MoveTo(1, 3);
  Press(Qt::Key_9);
  Settle();
  EXPECT_FALSE(editor->isVisible());
}

TEST_F(SalidasEnElEscritorio, ANegativeQuantityIsCorrectedOnYesAndKeptOnNo) {
  PendingWith(-2);
  program->Door().ModificaSalida(70);
  frmSalidasWizard& form = Last();
  QWidget* editor = program->ViewOf(form)->WidgetOf(form.txtEdit);
  for (const bool answer : {false, true}) {
    yes = answer;
    boxes.clear();
    ClickOn(form, form.txtFields(campo::Articulo));
    Press(Qt::Key_Up);
    Settle();
    ASSERT_EQ(QApplication::focusWidget(), Grid(form));
    while (form.fg2.Col() < 1) Press(Qt::Key_Right);
    Press(Qt::Key_3);
    Settle();
    ASSERT_TRUE(editor->isVisible());
    Press(Qt::Key_Return);
    Settle();
    EXPECT_FALSE(editor->isVisible());
    ASSERT_EQ(boxes.size(), 1u) << AllSaid();
    EXPECT_EQ(One("SELECT cantidad FROM salpart"), answer ? "3" : "-2");
    EXPECT_EQ(form.fg2.TextMatrix(1, 1), answer ? "3" : "-2");
    EXPECT_EQ(QApplication::focusWidget(),
              answer ? static_cast<QWidget*>(Widget(form, campo::Articulo)) : Grid(form));
  }
}

TEST_F(SalidasEnElEscritorio, ALineIsRemovedByKeyAndTheTotalsFollow) {
  frmSalidasWizard& form = Selling();
  Line(QStringLiteral("MAR-16"), QStringLiteral("2"));
  Line(QStringLiteral("TAL-12"), QStringLiteral("1"));
  Settle();
  EXPECT_EQ(Widget(form, campo::Renglones)->text(), QStringLiteral("2"));
  Press(Qt::Key_Up);
  Settle();
  ASSERT_EQ(form.fg2.Row(), 2);
  Press(Qt::Key_Up);
  Press(Qt::Key_Delete);
  Settle();
  EXPECT_TRUE(boxes.empty()) << AllSaid();
  EXPECT_EQ(One("SELECT articulo FROM salpart"), "TAL-12");
  EXPECT_EQ(One("SELECT COUNT(*) FROM salpart"), "1");
  EXPECT_EQ(Grid(form)->model()->index(0, 0).data().toString(), QStringLiteral("TAL-12"));
  EXPECT_EQ(Widget(form, campo::Renglones)->text(), QStringLiteral("1"));
  EXPECT_EQ(Widget(form, campo::Unidades)->text(), QStringLiteral("1"));
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, campo::Articulo));
  EXPECT_EQ(LabelNamed(form, QStringLiteral("Renglones y estado de lo guardado")), "1 renglón · guardado");
}

TEST_F(SalidasEnElEscritorio, StockBelowZeroStandsInItsColourInBothThemes) {
  frmSalidasWizard& form = Selling();
  Line(QStringLiteral("MAR-16"), QStringLiteral("150"));  // asked about, and answered yes
  Line(QStringLiteral("TAL-12"), QStringLiteral("1"));
  Settle();
  ASSERT_EQ(form.fg2.TextMatrix(1, 2), "-50");
  ASSERT_EQ(form.fg2.TextMatrix(2, 2), "99");
  for (const auto mode : {Theme::Mode::Light, Theme::Mode::Dark}) {
    theme.Set(mode);
    theme.ApplyTo(App());
    Settle();
    const QColor alarm = theme.Color(Role::Refused);
    EXPECT_GT(Dots(form, campo::Descripcion, 2, alarm), 5) << static_cast<int>(mode);
    EXPECT_EQ(Dots(form, campo::AlmacenDestino, 2, alarm), 0) << static_cast<int>(mode);
    EXPECT_EQ(Dots(form, campo::Descripcion, 1, alarm), 0) << static_cast<int>(mode);
  }
  theme.Set(Theme::Mode::Light);
  theme.ApplyTo(App());
}

TEST_F(SalidasEnElEscritorio, ColumnsWithoutAWidthStayHidden) {
  const auto expect = [&](frmSalidasWizard& form) {
    for (int column = 0; column < form.fg2.Cols(); ++column) {
      const bool hidden = column == 4 || column == 6 || column == 9 || column == 10;
      EXPECT_EQ(Grid(form)->isColumnHidden(column), hidden) << column;
    }
  };
  frmSalidasWizard& form = Selling();
  expect(form);
  Line(QStringLiteral("MAR-16"), QStringLiteral("2"));
  Settle();
  expect(form);
  Grid(form)->horizontalHeader()->resizeSection(1, 120);  // as by the header's edge
  form.fg2.TopRow(1);
  program->Window().resize(1500, 900);
  Settle();
  expect(form);
  form.Close();
  Start();  // another morning
  frmSalidasWizard& again = NewOut();
  expect(again);
  EXPECT_EQ(Grid(again)->columnWidth(1), 120);
}

// ---- the entry row ----

TEST_F(SalidasEnElEscritorio, APresentationThatFixesItsUnitsIsCountedAndItsQuantityIsNotTyped) {
  frmSalidasWizard& form = Selling();
  Type(QStringLiteral("CIN-AIS-C12"));
  Press(Qt::Key_Return);
  Settle();
  EXPECT_EQ(Widget(form, campo::Articulo)->text(), QStringLiteral("CIN-AIS"));
  EXPECT_EQ(Widget(form, campo::SegundaClave)->text(), QStringLiteral("CIN-AIS-C12"));
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, campo::Presentaciones));
  EXPECT_EQ(Widget(form, campo::Presentaciones)->selectedText(), QStringLiteral("1"));
  Type(QStringLiteral("3"));
  EXPECT_EQ(Widget(form, campo::Cantidad)->text(), QStringLiteral("36"));
  ClickOn(form, form.txtFields(campo::Cantidad));
  Type(QStringLiteral("7"));
  EXPECT_EQ(Widget(form, campo::Cantidad)->text(), QStringLiteral("36"));
  Press(Qt::Key_F9);
  Settle();
  EXPECT_EQ(One("SELECT cantidad FROM salpart"), "36");
  EXPECT_EQ(One("SELECT prcantidad FROM salpart"), "3");
  EXPECT_EQ(form.fg2.TextMatrix(1, 7), "Caja con 12");
  EXPECT_EQ(form.fg2.TextMatrix(1, 8), "3");
  EXPECT_TRUE(Widget(form, campo::Presentaciones)->text().isEmpty());
}

TEST_F(SalidasEnElEscritorio, AFreePresentationLeavesTheQuantityToTheHand) {
  frmSalidasWizard& form = Selling();
  Type(QStringLiteral("CAB-12-MED"));
  Press(Qt::Key_Return);
  Settle();
  EXPECT_EQ(Widget(form, campo::Articulo)->text(), QStringLiteral("CAB-12"));
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, campo::Cantidad));
  Type(QStringLiteral("7.5"));
  EXPECT_EQ(Widget(form, campo::Cantidad)->text(), QStringLiteral("7.5"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  Settle();
  EXPECT_EQ(One("SELECT cantidad FROM salpart"), "7.5");
  EXPECT_EQ(One("SELECT claveadd FROM salpart"), "CAB-12-MED");
}

TEST_F(SalidasEnElEscritorio, F8WalksToTheSecondKeyAndItsPresentation) {
  frmSalidasWizard& form = Selling();
  Press(Qt::Key_F8);
  Settle();
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, campo::SegundaClave));
  Type(QStringLiteral("FOC-9W-C12"));
  EXPECT_EQ(Widget(form, campo::Articulo)->text(), QStringLiteral("FOC-9W"));
  Press(Qt::Key_F8);
  Settle();
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, campo::Presentaciones));
  Type(QStringLiteral("2"));
  Press(Qt::Key_Return);
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, campo::UnidadDePresentacion));
  Press(Qt::Key_Return);
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, campo::Precio));
  Press(Qt::Key_Return);
  Settle();
  EXPECT_EQ(One("SELECT cantidad FROM salpart"), "24");
}

TEST_F(SalidasEnElEscritorio, AReaderMakesALineOfOneAtEachScan) {
  frmSalidasWizard& form = NewOut();
  Type(QStringLiteral("vta"));
  Press(Qt::Key_F3);
  Settle();
  EXPECT_TRUE(As<QCheckBox>(form, form.Check4)->isChecked());
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, campo::Articulo));
  for (const char* code : {"7501206600016", "7501206600016", "7501206622254"}) {
    Type(QString::fromUtf8(code));
    Press(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), Widget(form, campo::Articulo));
    EXPECT_TRUE(Widget(form, campo::Articulo)->text().isEmpty());
  }
  Settle();
  EXPECT_TRUE(boxes.empty()) << AllSaid();
  EXPECT_EQ(One("SELECT COUNT(*) FROM salpart"), "2");
  EXPECT_EQ(One("SELECT cantidad FROM salpart WHERE articulo = 'MAR-16'"), "2");
  EXPECT_EQ(One("SELECT cantidad FROM salpart WHERE articulo = 'TAL-12'"), "1");
  Press(Qt::Key_F3);
  EXPECT_FALSE(As<QCheckBox>(form, form.Check4)->isChecked());
}

TEST_F(SalidasEnElEscritorio, ACustomersNameAndTheAddressesComeUpAsItIsTyped) {
  frmSalidasWizard& form = NewOut();
  Type(QStringLiteral("vta"));
  ClickOn(form, form.txtFields(campo::Cliente));
  Type(QStringLiteral("c00"));
  auto* addresses = As<QComboBox>(form, form.Combo1);
  EXPECT_TRUE(Widget(form, campo::NombreDelCliente)->text().isEmpty());
  EXPECT_EQ(addresses->count(), 0);
  Type(QStringLiteral("1"));
  Settle();
  EXPECT_EQ(Widget(form, campo::NombreDelCliente)->text(),
            QStringLiteral("Constructora del Valle, S.A. de C.V."));
  EXPECT_EQ(addresses->count(), 4);
  Press(Qt::Key_Return);
  Settle();
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, campo::DireccionDeEmbarque));
  Walk(form, form.Combo1, true);
  Press(Qt::Key_F4);
  Settle();
  ASSERT_TRUE(addresses->view()->isVisible());
  QTest::keyClick(addresses->view(), Qt::Key_Down);
  QTest::keyClick(addresses->view(), Qt::Key_Return);
  Settle();
  EXPECT_FALSE(addresses->view()->isVisible());
  EXPECT_EQ(Widget(form, campo::DireccionDeEmbarque)->text().toStdString(), form.Combo1.Text());
  EXPECT_FALSE(form.Combo1.Text().empty());
  ClickOn(form, form.txtFields(campo::DireccionDeEmbarque));
  Press(Qt::Key_End);
  Type(QStringLiteral(", planta alta"));
  Walk(form, form.Command5);
  const std::string chosen = form.txtFields(campo::DireccionDeEmbarque).Text();
  EXPECT_TRUE(chosen.ends_with(", planta alta"));
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(One("SELECT direccionembarque FROM salidas"), chosen);
  EXPECT_EQ(One("SELECT cliente FROM salidas"), "C001");
}

}  // namespace
}  // namespace tarvik::desktop
