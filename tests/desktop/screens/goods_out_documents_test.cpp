// Whole goods-outs: loans, shipments, documents left pending; reading, sending again, what a routine shows.
#include <QCheckBox>
#include <QDateEdit>
#include <QPushButton>

#include "tests/desktop/screens/salidas_en_el_escritorio.h"

namespace tarvik::desktop {
namespace {

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
  Walk(form, form.txtFields(campo::Empleado));
  Type(QStringLiteral("e09"));
  Press(Qt::Key_Return);
  Settle();
  EXPECT_EQ(form.ActiveControl(), &form.txtFields(campo::Articulo));
  Line(QStringLiteral("MAR-16"), QStringLiteral("2"));
  Press(Qt::Key_F5);
  Settle();
  ASSERT_EQ(boxes.size(), 2u) << AllSaid();
  EXPECT_EQ(boxes[1], "No se encuentra el empleado indicado");
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, campo::Empleado));
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
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, campo::Articulo));
}

TEST_F(SalidasEnElEscritorio, AShipmentToABranchAgainstAPurchaseIsAssignedAndSent) {
  int sent = 0;
  ShowHidden();
  Hook("SALIDAS005", [&](frmSalidasWizard&) { ++sent; });
  frmSalidasWizard& form = NewOut();
  Type(QStringLiteral("tra"));
  ClickOn(form, form.txtFields(campo::Sucursal));
  Type(QStringLiteral("nte"));
  EXPECT_TRUE(As<QCheckBox>(form, form.Check5)->isChecked());
  ClickOn(form, form.txtFields(campo::Compra));
  Type(QStringLiteral("9"));
  Press(Qt::Key_F2);
  Settle();
  Line(QStringLiteral("MAR-16"), QStringLiteral("2"));
  Line(QStringLiteral("TAL-12"), QStringLiteral("1"));
  Line(QStringLiteral("MAR-16"), QStringLiteral("3"));
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, campo::Compra)) << AllSaid();
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
  ClickOn(form, form.txtFields(campo::Cliente));
  Type(QStringLiteral("c001"));
  Settle();
  EXPECT_FALSE(program->ViewOf(form)->WidgetOf(form.txtEdit)->isVisible());
  EXPECT_EQ(form.SSCheck1.Value(), 0);
  EXPECT_EQ(form.txtFields(campo::Cliente).Text(), "");
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
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, campo::Articulo));
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
             &form.SSCheck2, &form.txtFields(campo::EstacionDestino), &form.txtFields(campo::Compra)}) {
      EXPECT_FALSE(program->ViewOf(form)->WidgetOf(*control)->isVisible()) << control->FullName();
    }
    form.Close();
  }
  ShowHidden();
  frmSalidasWizard& form = NewOut();
  ExpectWhole(form);
  for (const forms::Control* control : std::initializer_list<const forms::Control*>{
           &form.SSCheck2, &form.txtFields(campo::EstacionDestino), &form.txtFields(campo::Compra)}) {
    EXPECT_TRUE(program->ViewOf(form)->WidgetOf(*control)->isVisible()) << control->FullName();
  }
  Type(QStringLiteral("tra"));
  Letter(Qt::Key_E);
  ASSERT_EQ(form.SSCheck2.Value(), 1);
  Walk(form, form.txtFields(campo::EstacionDestino));
  Type(QStringLiteral("e9"));
  ClickOn(form, form.txtFields(campo::Articulo));
  Line(QStringLiteral("MAR-16"), QStringLiteral("1"));
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(boxes.back(), "No existe la estación de trabajo");
  ASSERT_EQ(QApplication::focusWidget(), Widget(form, campo::EstacionDestino));
  Type(QStringLiteral("e2"));
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(One("SELECT estaciontraspaso FROM salidas"), "E2");
}

}  // namespace
}  // namespace tarvik::desktop
