// The rest of a goods-out's day in its window: loans, shipments, corrections, presentations, readers,
// what a routine shows, and how the screen looks at the size of a shop's monitor in both themes.
#include <QAbstractItemView>
#include <QAbstractTextDocumentLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QPushButton>
#include <QScrollBar>
#include <QSettings>
#include <QSplitter>
#include <QTextBlock>
#include <QTextTable>
#include <map>

#include "desktop/printing/printing.h"
#include "desktop/screens/goods_out_view.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

class SalidasEnElEscritorio : public Escritorio {
 protected:
  SalidasEnElEscritorio() {
    Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('PRE', 'S', 'Préstamo')");
    for (const char* article : {"MAR-16", "TAL-12", "CIN-AIS", "CAB-12"}) {
      program->Host().Conexion().Run(
          "INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, ?, 100)", {article});
    }
  }

  void Sql(const std::string& text) { program->Host().Conexion().Run(text, {}); }
  void Hook(const std::string& key, std::function<void(frmSalidasWizard&)> routine) {
    program->Host().Gancho(key, [routine = std::move(routine)](forms::Form& form, host::AmbienteLocal&) {
      routine(dynamic_cast<frmSalidasWizard&>(form));
    });
  }
  // A deployment that works with stations and purchases shows what the design hides.
  void ShowHidden() {
    Hook("SALIDAS001", [](frmSalidasWizard& form) {
      form.SSCheck2.Visible(true);
      form.MultiCombo1(6).Visible(true);
      form.txtFields(9).Visible(true);
      form.txtFields(12).Visible(true);
    });
  }
  frmSalidasWizard& Last() {
    Settle();
    return dynamic_cast<frmSalidasWizard&>(*program->Platform().Screens().back());
  }
  frmSalidasWizard& NewOut() {
    program->Door().NuevaSalida();
    frmSalidasWizard& form = Last();
    form.Check2.Value(0);  // no paper: the preview is a window of its own
    return form;
  }
  // A new document with its concept, the hand in the article.
  frmSalidasWizard& Selling() {
    frmSalidasWizard& form = NewOut();
    Type(QStringLiteral("vta"));
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
    EXPECT_EQ(form.ActiveControl(), &form.txtFields(4));
    return form;
  }
  // One line of hammers as another program of the suite left it pending.
  void PendingWith(double quantity) {
    Sql("INSERT INTO salidas (salida, folio, tipo_doc, f_emision, almacen, importe, estado, ocupado) VALUES "
        "(70, 7, 'VTA', '2024-03-05', 1, 0, 'PE', 0)");
    program->Host().Conexion().Run(
        "INSERT INTO salpart (id_salida, salida, tipo_doc, articulo, cantidad, precio) VALUES (701, 70, "
        "'VTA', 'MAR-16', ?, 10)",
        {quantity});
  }

  template <class W>
  W* As(forms::Form& form, const forms::Control& control) {
    return qobject_cast<W*>(program->ViewOf(form)->WidgetOf(control));
  }
  GridView* Grid(frmSalidasWizard& form) { return As<GridView>(form, form.fg2); }
  void ClickOn(forms::Form& form, const forms::Control& control) {
    QTest::mouseClick(program->ViewOf(form)->WidgetOf(control), Qt::LeftButton);
    Settle();
  }
  // Along the keyboard's way until the hand is there.
  static void Walk(frmSalidasWizard& form, const forms::Control& target, bool back = false) {
    for (int steps = 0; steps < 40 && form.ActiveControl() != &target; ++steps) {
      Press(back ? Qt::Key_Backtab : Qt::Key_Tab, back ? Qt::ShiftModifier : Qt::NoModifier);
      Settle();
    }
    ASSERT_EQ(form.ActiveControl(), &target);
  }
  static void Letter(Qt::Key key) {
    Press(key, Qt::AltModifier);
    QTest::qWait(150);  // a box pressed by its letter comes up again first
  }
  std::string LabelNamed(forms::Form& form, const QString& name) {
    QTest::qWait(20);  // what the suite has no control for is read once all is at rest
    for (const QLabel* label : program->ViewOf(form)->findChildren<QLabel*>()) {
      if (label->accessibleName() == name) return label->text().toStdString();
    }
    return "(no está)";
  }
  std::string Chip(forms::Form& form) { return LabelNamed(form, QStringLiteral("Estado del documento")); }
  std::string AllSaid() const {
    std::string all;
    for (const std::string& box : boxes) all += "[" + box + "]\n";
    return all;
  }
  // How many dots of this colour a cell of the grid has.
  int Dots(frmSalidasWizard& form, int row, int col, const QColor& color) {
    GridView* grid = Grid(form);
    const QImage image =
        grid->viewport()->grab(grid->visualRect(grid->model()->index(row - 1, col))).toImage();
    int dots = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) dots += image.pixelColor(x, y).rgb() == color.rgb() ? 1 : 0;
    }
    return dots;
  }
  static QList<PreviewWindow*> Previews() {
    QList<PreviewWindow*> found;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (auto* window = qobject_cast<PreviewWindow*>(widget)) found += window;
    }
    return found;
  }
};

// ---- whole documents ----

TEST_F(SalidasEnElEscritorio, ALoanToAnEmployeeIsWrittenByKeyWithItsDayOfReturn) {
  frmSalidasWizard& form = NewOut();
  Type(QStringLiteral("pre"));
  EXPECT_EQ(form.RichTextBox3.Text(), "Préstamo");
  Letter(Qt::Key_A);
  ASSERT_EQ(form.Check1.Value(), 1);
  EXPECT_TRUE(As<QCheckBox>(form, form.Check1)->isChecked());
  Walk(form, form.DTPicker2, true);
  ASSERT_EQ(QApplication::focusWidget(), As<QDateEdit>(form, form.DTPicker2));
  Type(QStringLiteral("24122031"));
  Settle();
  EXPECT_EQ(form.DTPicker2.Value(), (data::Date{2031, 12, 24}));
  Walk(form, form.txtFields(16));
  Type(QStringLiteral("e09"));
  Press(Qt::Key_Return);
  Settle();
  EXPECT_EQ(form.ActiveControl(), &form.txtFields(4));
  Line(QStringLiteral("MAR-16"), QStringLiteral("2"));
  Press(Qt::Key_F5);
  Settle();
  ASSERT_EQ(boxes.size(), 2u) << AllSaid();
  EXPECT_EQ(boxes[1], "No se encuentra el empleado indicado");
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, 16));
  Press(Qt::Key_Backspace);  // arriving selects the whole text
  Type(QStringLiteral("e02"));
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(One("SELECT estado FROM salidas"), "CO");
  EXPECT_EQ(One("SELECT paraempleado FROM salidas"), "1");
  EXPECT_EQ(One("SELECT empleado FROM salidas"), "E02");
  EXPECT_EQ(One("SELECT fecharetorno FROM salidas"), "2031-12-24");
  EXPECT_EQ(One("SELECT existencia FROM existenciaalmacen WHERE articulo = 'MAR-16'"), "98");
}

TEST_F(SalidasEnElEscritorio, ADateIsTypedWithOrWithoutTheStrokesBetweenItsParts) {
  for (const char* text : {"05032031", "05/03/2031", "5/3/2031"}) {
    frmSalidasWizard& form = NewOut();
    form.Enter(form.DTPicker2);
    Settle();
    Type(QString::fromUtf8(text));
    Settle();
    ASSERT_TRUE(form.DTPicker2.Value());
    EXPECT_EQ(form.DTPicker2.Value()->Iso(), "2031-03-05") << text;
    form.Close();
  }
}

TEST_F(SalidasEnElEscritorio, EnterInTheDayOfReturnGoesToTheArticle) {
  frmSalidasWizard& form = NewOut();
  ClickOn(form, form.DTPicker2);
  ASSERT_EQ(form.ActiveControl(), &form.DTPicker2);
  Press(Qt::Key_Return);
  Settle();
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, 4));
}

TEST_F(SalidasEnElEscritorio, AShipmentToABranchAgainstAPurchaseIsAssignedAndSent) {
  int sent = 0;
  ShowHidden();
  Hook("SALIDAS005", [&](frmSalidasWizard&) { ++sent; });
  frmSalidasWizard& form = NewOut();
  Type(QStringLiteral("tra"));
  ClickOn(form, form.txtFields(3));
  Type(QStringLiteral("nte"));
  EXPECT_TRUE(As<QCheckBox>(form, form.Check5)->isChecked());
  ClickOn(form, form.txtFields(12));
  Type(QStringLiteral("9"));
  Press(Qt::Key_F2);
  Settle();
  Line(QStringLiteral("MAR-16"), QStringLiteral("2"));
  Line(QStringLiteral("TAL-12"), QStringLiteral("1"));
  Line(QStringLiteral("MAR-16"), QStringLiteral("3"));
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, 12)) << AllSaid();
  Type(QStringLiteral("1"));
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(One("SELECT estado FROM salidas"), "CO") << AllSaid();
  EXPECT_EQ(One("SELECT cantidad FROM compras2sucursal WHERE id_partida = 1"), "5");
  EXPECT_EQ(One("SELECT cantidad FROM compras2sucursal WHERE id_partida = 2"), "1");
  EXPECT_EQ(One("SELECT COUNT(*) FROM compras2sucursal WHERE sucursal = 'NTE'"), "2");
  EXPECT_EQ(sent, 1);
}

TEST_F(SalidasEnElEscritorio, LeftPendingTodayItIsPostedAnotherMorningUnderANewFolio) {
  {
    frmSalidasWizard& form = Selling();
    Line(QStringLiteral("MAR-16"), QStringLiteral("2"));
    Settle();
    EXPECT_EQ(Chip(form), "Pendiente");
    ClickOn(form, form.Check3);
    ASSERT_EQ(form.Check3.Value(), 1);
    Press(Qt::Key_F5);
    Settle();
  }
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_TRUE(boxes.empty()) << AllSaid();
  EXPECT_EQ(One("SELECT estado FROM salidas"), "PE");
  EXPECT_EQ(One("SELECT folio FROM salidas"), "1");
  EXPECT_EQ(One("SELECT existencia FROM existenciaalmacen WHERE articulo = 'MAR-16'"), "100");
  Start();  // another morning
  program->Door().ModificaSalida(1);
  frmSalidasWizard& form = Last();
  form.Check2.Value(0);
  EXPECT_EQ(Chip(form), "Pendiente");
  EXPECT_FALSE(As<QCheckBox>(form, form.Check3)->isChecked());
  EXPECT_EQ(Grid(form)->model()->index(0, 0).data().toString(), QStringLiteral("MAR-16"));
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(boxes.size(), 1u) << AllSaid();
  EXPECT_EQ(One("SELECT estado FROM salidas"), "CO");
  EXPECT_EQ(One("SELECT folio FROM salidas"), "2");
  EXPECT_EQ(One("SELECT existencia FROM existenciaalmacen WHERE articulo = 'MAR-16'"), "98");
}

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
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, 4));
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
    ClickOn(form, form.txtFields(4));
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
    EXPECT_EQ(QApplication::focusWidget(), answer ? static_cast<QWidget*>(Widget(form, 4)) : Grid(form));
  }
}

TEST_F(SalidasEnElEscritorio, ALineIsRemovedByKeyAndTheTotalsFollow) {
  frmSalidasWizard& form = Selling();
  Line(QStringLiteral("MAR-16"), QStringLiteral("2"));
  Line(QStringLiteral("TAL-12"), QStringLiteral("1"));
  Settle();
  EXPECT_EQ(Widget(form, 10)->text(), QStringLiteral("2"));
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
  EXPECT_EQ(Widget(form, 10)->text(), QStringLiteral("1"));
  EXPECT_EQ(Widget(form, 8)->text(), QStringLiteral("1"));
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, 4));
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
    EXPECT_GT(Dots(form, 1, 2, alarm), 5) << static_cast<int>(mode);
    EXPECT_EQ(Dots(form, 2, 2, alarm), 0) << static_cast<int>(mode);
    EXPECT_EQ(Dots(form, 1, 1, alarm), 0) << static_cast<int>(mode);
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
  EXPECT_EQ(Widget(form, 4)->text(), QStringLiteral("CIN-AIS"));
  EXPECT_EQ(Widget(form, 24)->text(), QStringLiteral("CIN-AIS-C12"));
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, 28));
  EXPECT_EQ(Widget(form, 28)->selectedText(), QStringLiteral("1"));
  Type(QStringLiteral("3"));
  EXPECT_EQ(Widget(form, 5)->text(), QStringLiteral("36"));
  ClickOn(form, form.txtFields(5));
  Type(QStringLiteral("7"));
  EXPECT_EQ(Widget(form, 5)->text(), QStringLiteral("36"));
  Press(Qt::Key_F9);
  Settle();
  EXPECT_EQ(One("SELECT cantidad FROM salpart"), "36");
  EXPECT_EQ(One("SELECT prcantidad FROM salpart"), "3");
  EXPECT_EQ(form.fg2.TextMatrix(1, 7), "Caja con 12");
  EXPECT_EQ(form.fg2.TextMatrix(1, 8), "3");
  EXPECT_TRUE(Widget(form, 28)->text().isEmpty());
}

TEST_F(SalidasEnElEscritorio, AFreePresentationLeavesTheQuantityToTheHand) {
  frmSalidasWizard& form = Selling();
  Type(QStringLiteral("CAB-12-MED"));
  Press(Qt::Key_Return);
  Settle();
  EXPECT_EQ(Widget(form, 4)->text(), QStringLiteral("CAB-12"));
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, 5));
  Type(QStringLiteral("7.5"));
  EXPECT_EQ(Widget(form, 5)->text(), QStringLiteral("7.5"));
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
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, 24));
  Type(QStringLiteral("FOC-9W-C12"));
  EXPECT_EQ(Widget(form, 4)->text(), QStringLiteral("FOC-9W"));
  Press(Qt::Key_F8);
  Settle();
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, 28));
  Type(QStringLiteral("2"));
  Press(Qt::Key_Return);
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, 29));
  Press(Qt::Key_Return);
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, 6));
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
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, 4));
  for (const char* code : {"7501206600016", "7501206600016", "7501206622254"}) {
    Type(QString::fromUtf8(code));
    Press(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), Widget(form, 4));
    EXPECT_TRUE(Widget(form, 4)->text().isEmpty());
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
  ClickOn(form, form.txtFields(13));
  Type(QStringLiteral("c00"));
  auto* addresses = As<QComboBox>(form, form.Combo1);
  EXPECT_TRUE(Widget(form, 15)->text().isEmpty());
  EXPECT_EQ(addresses->count(), 0);
  Type(QStringLiteral("1"));
  Settle();
  EXPECT_EQ(Widget(form, 15)->text(), QStringLiteral("Constructora del Valle, S.A. de C.V."));
  EXPECT_EQ(addresses->count(), 4);
  Press(Qt::Key_Return);
  Settle();
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, 17));
  Walk(form, form.Combo1, true);
  Press(Qt::Key_F4);
  Settle();
  ASSERT_TRUE(addresses->view()->isVisible());
  QTest::keyClick(addresses->view(), Qt::Key_Down);
  QTest::keyClick(addresses->view(), Qt::Key_Return);
  Settle();
  EXPECT_FALSE(addresses->view()->isVisible());
  EXPECT_EQ(Widget(form, 17)->text().toStdString(), form.Combo1.Text());
  EXPECT_FALSE(form.Combo1.Text().empty());
  ClickOn(form, form.txtFields(17));
  Press(Qt::Key_End);
  Type(QStringLiteral(", planta alta"));
  Walk(form, form.Command5);
  const std::string chosen = form.txtFields(17).Text();
  EXPECT_TRUE(chosen.ends_with(", planta alta"));
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(One("SELECT direccionembarque FROM salidas"), chosen);
  EXPECT_EQ(One("SELECT cliente FROM salidas"), "C001");
}

// ---- reading, sending, routines ----

TEST_F(SalidasEnElEscritorio, AReadDocumentLooksReadOnlyTakesNoKeyAndIsSentAgain) {
  PendingWith(2);
  int sent = 0;
  Hook("SALIDAS005", [&](frmSalidasWizard&) { ++sent; });
  program->Door().ConsultaSalida(70);
  frmSalidasWizard& form = Last();
  EXPECT_EQ(Chip(form), "Sólo lectura");
  for (const int field : {0, 2, 3, 4, 5, 6, 13, 14, 16, 17, 24, 28}) {
    EXPECT_FALSE(Widget(form, field)->isEnabled()) << field;
  }
  for (const forms::CheckBox* box : {&form.SSCheck1, &form.Check5, &form.Check1, &form.Check3}) {
    EXPECT_FALSE(As<QCheckBox>(form, *box)->isEnabled()) << box->Name();
  }
  EXPECT_FALSE(As<QPushButton>(form, form.Command5)->isEnabled());
  EXPECT_TRUE(As<QPushButton>(form, form.Command1)->isEnabled());
  ASSERT_EQ(QApplication::focusWidget(), Grid(form));
  Press(Qt::Key_Delete);
  Press(Qt::Key_Right);
  Press(Qt::Key_9);
  Letter(Qt::Key_T);
  ClickOn(form, form.txtFields(13));
  Type(QStringLiteral("c001"));
  Settle();
  EXPECT_FALSE(program->ViewOf(form)->WidgetOf(form.txtEdit)->isVisible());
  EXPECT_EQ(form.SSCheck1.Value(), 0);
  EXPECT_EQ(form.txtFields(13).Text(), "");
  EXPECT_EQ(One("SELECT cantidad FROM salpart"), "2");
  Press(Qt::Key_F6);
  ClickOn(form, form.Command1);
  EXPECT_EQ(sent, 2);
  Letter(Qt::Key_C);
  Settle();
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_EQ(One("SELECT ocupado FROM salidas"), "0");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
}

TEST_F(SalidasEnElEscritorio, F6SendsFromWhereverTheHandIsAndLeavesItThere) {
  int sent = 0;
  Hook("SALIDAS005", [&](frmSalidasWizard&) { ++sent; });
  frmSalidasWizard& form = Selling();
  Press(Qt::Key_F6);
  EXPECT_EQ(sent, 1);
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, 4));
  Line(QStringLiteral("MAR-16"), QStringLiteral("1"));
  Press(Qt::Key_Up);
  Settle();
  Press(Qt::Key_F6);
  EXPECT_EQ(sent, 2);
  EXPECT_EQ(QApplication::focusWidget(), Grid(form));
}

TEST_F(SalidasEnElEscritorio, TheScreensPaintingIsToldAsItsWindowComesUpAndComesBack) {
  int painted = 0;
  Hook("SALIDAS007", [&](frmSalidasWizard&) { ++painted; });
  frmSalidasWizard& form = NewOut();
  QTest::qWait(20);
  const int first = painted;
  EXPECT_GE(first, 1);
  Type(QStringLiteral("vta"));
  Settle();
  EXPECT_EQ(painted, first);  // a key is no painting
  New();
  QTest::qWait(20);
  EXPECT_EQ(painted, first);
  program->Platform().Screens().back()->Close();
  QTest::qWait(20);
  for (int tabs = 0; tabs < 3 && !program->ViewOf(form)->isVisible(); ++tabs) {
    Press(Qt::Key_Tab, Qt::ControlModifier);
    QTest::qWait(20);
  }
  ASSERT_TRUE(program->ViewOf(form)->isVisible());
  EXPECT_EQ(painted, first + 1);
}

TEST_F(SalidasEnElEscritorio, WhatARoutineShowsHasItsPlaceAndItsLetter) {
  {
    frmSalidasWizard& form = NewOut();
    for (const forms::Control* control : std::initializer_list<const forms::Control*>{
             &form.SSCheck2, &form.txtFields(9), &form.txtFields(12)}) {
      EXPECT_FALSE(program->ViewOf(form)->WidgetOf(*control)->isVisible()) << control->FullName();
    }
    form.Close();
  }
  ShowHidden();
  frmSalidasWizard& form = NewOut();
  ExpectWhole(form);
  for (const forms::Control* control : std::initializer_list<const forms::Control*>{
           &form.SSCheck2, &form.txtFields(9), &form.txtFields(12)}) {
    EXPECT_TRUE(program->ViewOf(form)->WidgetOf(*control)->isVisible()) << control->FullName();
  }
  Type(QStringLiteral("tra"));
  Letter(Qt::Key_E);
  ASSERT_EQ(form.SSCheck2.Value(), 1);
  Walk(form, form.txtFields(9));
  Type(QStringLiteral("e9"));
  ClickOn(form, form.txtFields(4));
  Line(QStringLiteral("MAR-16"), QStringLiteral("1"));
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(boxes.back(), "No existe la estación de trabajo");
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, 9));
  Type(QStringLiteral("e2"));
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(One("SELECT estaciontraspaso FROM salidas"), "E2");
}

// ---- the look ----

TEST_F(SalidasEnElEscritorio, TheSplitterIsRememberedAndMayBeShut) {
  const auto sizes = [&](frmSalidasWizard& form) {
    return program->ViewOf(form)->findChild<QSplitter*>()->sizes();
  };
  const auto drag = [&](frmSalidasWizard& form, int by) {
    auto* splitter = program->ViewOf(form)->findChild<QSplitter*>();
    QWidget* handle = splitter->handle(1);
    const QPoint from = handle->rect().center();
    QTest::mousePress(handle, Qt::LeftButton, {}, from);
    QTest::mouseMove(handle, from + QPoint(by, 0));
    QTest::mouseRelease(handle, Qt::LeftButton, {}, from + QPoint(by, 0));
    Settle();
  };
  QList<int> wide;
  {
    frmSalidasWizard& form = NewOut();
    const QList<int> before = sizes(form);
    drag(form, -120);
    wide = sizes(form);
    EXPECT_EQ(wide[1] - before[1], 120);
    frmSalidasWizard& other = NewOut();
    EXPECT_EQ(sizes(other), wide);
    other.Close();
    form.Close();
  }
  Start();  // another morning
  {
    frmSalidasWizard& form = NewOut();
    EXPECT_EQ(sizes(form), wide);
    drag(form, 1000);
    EXPECT_EQ(sizes(form)[1], 0);
    form.Close();
  }
  Start();  // another morning
  frmSalidasWizard& form = NewOut();
  EXPECT_EQ(sizes(form)[1], 0);
  drag(form, -1200);
  EXPECT_GT(sizes(form)[0], 0);  // the lines can't be shut
}

class MonitorDeTienda : public SalidasEnElEscritorio {
 protected:
  // As the program starts: fonts and paddings are the theme's.
  MonitorDeTienda() { theme.ApplyTo(App()); }
  void ExpectFits(frmSalidasWizard& form, int controls);
};

void MonitorDeTienda::ExpectFits(frmSalidasWizard& form, int controls) {
  Settle();
  EXPECT_EQ(program->Window().width(), 1366);
  EXPECT_EQ(program->Window().height(), 768);
  ScreenView* view = program->ViewOf(form);
  const QRect room = view->rect();
  int seen = 0;
  for (const forms::Control* control : form.Controls()) {
    const QWidget* widget = view->WidgetOf(*control);
    if (!widget || !widget->isVisible()) continue;
    const QRect place(widget->mapTo(view, QPoint(0, 0)), widget->size());
    EXPECT_TRUE(room.contains(place)) << control->FullName();
    EXPECT_GT(place.width() * place.height(), 0) << control->FullName();
    ++seen;
    const auto* label = qobject_cast<const QLabel*>(widget);
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    if (label || button) {
      EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << control->FullName();
    }
  }
  EXPECT_GT(seen, controls);
  EXPECT_EQ(Grid(form)->horizontalScrollBar()->maximum(), 0);
  // Seven lines stand there before any scrolls, as the screen counts them.
  EXPECT_GE(Grid(form)->viewport()->height() / measure::kRow, 7);
}

TEST_F(MonitorDeTienda, ShowsTheScreenWholeWithoutScrolling) {
  frmSalidasWizard& form = Selling();
  Line(QStringLiteral("MAR-16"), QStringLiteral("150"));
  ExpectFits(form, 40);
}

TEST_F(MonitorDeTienda, ShowsWhatARoutineAddsWithoutGrowingBeyondIt) {
  ShowHidden();
  frmSalidasWizard& form = Selling();
  Line(QStringLiteral("MAR-16"), QStringLiteral("150"));
  ExpectFits(form, 43);
}

// A field beside its mark as well as one under its caption.
TEST_F(SalidasEnElEscritorio, ARefusedFieldBesideItsMarkIsMarkedWithItsReasonUntilMended) {
  ShowHidden();
  frmSalidasWizard& form = Selling();
  form.Check3.Value(1);
  const auto refused = [&](int field, forms::CheckBox* mark) {
    if (mark != nullptr) form.Click(*mark);
    form.Enter(form.txtFields(field));
    Settle();
    Type(QStringLiteral("99"));
    Press(Qt::Key_F5);
    QTest::qWait(20);
    ASSERT_EQ(QApplication::focusWidget(), Widget(form, field)) << AllSaid();
    EXPECT_TRUE(Widget(form, field)->property("refused").toBool()) << field;
    EXPECT_FALSE(Widget(form, field)->accessibleDescription().isEmpty()) << field;
    Press(Qt::Key_Backspace);
    EXPECT_FALSE(Widget(form, field)->property("refused").toBool()) << field;
    Press(Qt::Key_Backspace);
    if (mark != nullptr && mark->Value() == 1) form.Click(*mark);
    Settle();
  };
  refused(13, nullptr);
  form.txtFields(13).Text("");
  refused(2, &form.SSCheck1);
  refused(9, &form.SSCheck2);
  form.txtFields(9).Text("");
  refused(16, &form.Check1);
  refused(12, nullptr);
  form.txtFields(12).Text("");
  refused(3, nullptr);
}

TEST_F(SalidasEnElEscritorio, EveryTextCanBeReadInBothThemes) {
  ShowHidden();
  frmSalidasWizard& form = Selling();
  Line(QStringLiteral("CIN-AIS-C12"), QStringLiteral("2"));
  Press(Qt::Key_F9);
  Settle();
  form.txtFields(17).Text("Obra Los Encinos");
  form.txtFields(2).Text("2");
  const auto luminance = [](const QColor& color) {
    const auto part = [](double value) {
      return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
  };
  for (const auto mode : {Theme::Mode::Light, Theme::Mode::Dark}) {
    theme.Set(mode);
    theme.ApplyTo(App());
    QTest::qWait(20);
    int read = 0;
    ScreenView* view = program->ViewOf(form);
    for (const forms::Control* control : form.Controls()) {
      QWidget* widget = view->WidgetOf(*control);
      if (!widget || !widget->isVisible() || widget == Grid(form)) continue;
      QString text;
      if (const auto* line = qobject_cast<QLineEdit*>(widget)) text = line->text();
      if (const auto* label = qobject_cast<QLabel*>(widget)) text = label->text();
      if (const auto* button = qobject_cast<QAbstractButton*>(widget)) text = button->text();
      if (text.trimmed().isEmpty()) continue;
      // Out of the window, so that a label stands on its band; without the border.
      const QRect place(widget->mapTo(view, QPoint(0, 0)), widget->size());
      const QImage image = view->grab(place.adjusted(3, 3, -3, -3)).toImage();
      double least = 1;
      double most = 0;
      for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
          const double light = luminance(image.pixelColor(x, y));
          least = std::min(least, light);
          most = std::max(most, light);
        }
      }
      EXPECT_GE((most + 0.05) / (least + 0.05), 4.0)  // thin strokes are smoothed by a little
          << control->FullName() << (mode == Theme::Mode::Dark ? ", dark" : ", light");
      ++read;
    }
    EXPECT_GT(read, 25);
    const double ground = luminance(view->grab(QRect(2, 2, 4, 4)).toImage().pixelColor(1, 1));
    if (mode == Theme::Mode::Dark) {
      EXPECT_LT(ground, 0.1);
    } else {
      EXPECT_GT(ground, 0.7);
    }
    // The field in hand, by its tint as well as by its border.
    QWidget* hand = QApplication::focusWidget();
    ASSERT_EQ(hand, Widget(form, 4));
    const QImage field = hand->grab().toImage();
    EXPECT_EQ(field.pixelColor(field.width() - 8, field.height() / 2).rgb(),
              theme.Color(Role::AccentTint).rgb());
    EXPECT_NE(Widget(form, 5)->grab().toImage().pixelColor(8, 8).rgb(), theme.Color(Role::AccentTint).rgb());
  }
  theme.Set(Theme::Mode::Light);
  theme.ApplyTo(App());
}

// ---- the paper ----

TEST_F(SalidasEnElEscritorio, OnPaperEveryMarkLeavesRoomForTheLinesAndTheSignaturesStandByTheTotals) {
  ShowHidden();
  for (const int lines : {1, 60}) {
    program->Door().NuevaSalida();
    frmSalidasWizard& form = Last();
    program->Window().activateWindow();
    (void)QTest::qWaitForWindowActive(&program->Window());
    Type(QStringLiteral("tra"));
    for (const auto& [field, text] : {std::pair{13, "C001"},
                                      {17, "Obra Los Encinos, lote 12"},
                                      {2, "2"},
                                      {3, "NTE"},
                                      {9, "E2"},
                                      {16, "E02"}}) {
      form.txtFields(field).Text(text);
    }
    for (forms::CheckBox* box : {&form.SSCheck1, &form.SSCheck2, &form.Check1}) form.Click(*box);
    form.RichTextBox2.Text("Entregar antes de las 10.");
    form.Acumulado = false;
    for (int line = 0; line < lines; ++line) {
      form.txtFields(4).Text(Article(line % 30));
      form.PonDescripcion();
      form.txtFields(5).Text("2");
      form.LlenaPartida();
    }
    form.Enter(form.txtFields(4));
    Settle();
    Press(Qt::Key_F5);
    QTest::qWait(5);
    ASSERT_EQ(Previews().size(), 1);
    PreviewWindow* window = Previews().front();
    for (const auto size : {QPageSize::Letter, QPageSize::A4}) {
      window->UsePaper(size);
      const QTextDocument& page = window->Page().Document();
      EXPECT_EQ(window->Page().Pages(), lines == 1 ? 1 : 3) << lines;
      const QString text = page.toPlainText();
      for (const char* word : {"C001 Constructora del Valle", "Obra Los Encinos, lote 12", "2 Piso de venta",
                               "E2 Mostrador", "NTE Norte", "E02 Patricia", "Folio", "Entregar antes"}) {
        EXPECT_TRUE(text.contains(QString::fromUtf8(word))) << word;
      }
      int headers = 0;
      for (const QTextFrame* frame : page.rootFrame()->childFrames()) {
        const auto* table = qobject_cast<const QTextTable*>(frame);
        if (table && table->rows() == lines + 1) headers = table->format().headerRowCount();
      }
      EXPECT_EQ(headers, 1);  // repeated on every page
      const double height = page.pageSize().height();
      std::map<std::string, int> where;
      for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
        const double top = page.documentLayout()->blockBoundingRect(block).top();
        where[block.text().toStdString().substr(0, 7)] = static_cast<int>(std::floor(top / height));
      }
      for (const char* word : {"Renglon", "Unidade", "Recibi", "Elabor"}) {
        int found = -1;
        for (const auto& [begin, number] : where) {
          if (begin.starts_with(word)) found = number;
        }
        EXPECT_EQ(found, window->Page().Pages() - 1) << word << " with " << lines;
      }
    }
    EXPECT_TRUE(window->SavePdfTo(folder.filePath(QStringLiteral("salida.pdf"))));
    window->close();
    QTest::qWait(5);
  }
}

}  // namespace
}  // namespace tarvik::desktop
