// A transfer between stations by keyboard alone, in the window that an operator sees. What a transfer
// does is its routines' business: here they are a few lines of this test's.
#include "desktop/screens/stations_view.h"

#include <QHeaderView>
#include <QPushButton>
#include <QSpinBox>

#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

class EscritorioDeEstaciones : public Escritorio {
 protected:
  frmMovEstaciones& Transfer() {
    program->Door().movimientoEstacion(1, false);
    Settle();
    return dynamic_cast<frmMovEstaciones&>(*program->Platform().Screens().back());
  }
  void Routine(const char* key, std::function<void(frmMovEstaciones&)> does) {
    program->Host().Gancho(key, [does = std::move(does)](forms::Form& form, host::AmbienteLocal&) {
      does(dynamic_cast<frmMovEstaciones&>(form));
    });
  }
  // Routines that set up the grid and add a line to it.
  void TwoColumns() {
    Routine("MOVESTACIONES001", [](frmMovEstaciones& form) {
      form.grid.Cols(2);
      form.grid.Rows(1);
      form.grid.FixedRows(1);
      form.grid.TextMatrix(0, 0, "Artículo");
      form.grid.TextMatrix(0, 1, "Cantidad");
    });
    Routine("MOVESTACIONES003", [](frmMovEstaciones& form) {
      form.grid.AddItem(form.txtFields(campo_de_traspaso::Articulo).Text());
      form.grid.TextMatrix(form.grid.Rows() - 1, 1, form.txtFields(campo_de_traspaso::Cantidad).Text());
      form.txtFields(campo_de_traspaso::Articulo).Text("");
      form.txtFields(campo_de_traspaso::Cantidad).Text("");
      form.ColocaFoco(form.txtFields(campo_de_traspaso::Articulo));
    });
  }
  QLineEdit* FieldOf(frmMovEstaciones& form, int index) {
    return qobject_cast<QLineEdit*>(program->ViewOf(form)->WidgetOf(form.txtFields(index)));
  }
  GridView* Lines(frmMovEstaciones& form) {
    return qobject_cast<GridView*>(program->ViewOf(form)->WidgetOf(form.grid));
  }
};

TEST_F(EscritorioDeEstaciones, EveryControlHasItsPlaceInTheViewAndAName) { ExpectWhole(Transfer()); }

TEST_F(EscritorioDeEstaciones, NothingMovesUnderTheHand) { ExpectStill(Transfer()); }

TEST_F(EscritorioDeEstaciones, ATransferIsWrittenByKeyAndConfirmed) {
  TwoColumns();
  int confirmed = 0;
  Routine("MOVESTACIONES006", [&](frmMovEstaciones& form) { confirmed = form.grid.Rows() - 1; });
  frmMovEstaciones& form = Transfer();
  EXPECT_EQ(QApplication::focusWidget(), FieldOf(form, campo_de_traspaso::Entrega));
  Type(QStringLiteral("E1"));
  Press(Qt::Key_Return);
  Type(QStringLiteral("E2"));
  Press(Qt::Key_Return);  // to the date
  Press(Qt::Key_Return);  // to the article
  EXPECT_EQ(form.txtFields(campo_de_traspaso::Entrega).Text(), "E1");
  EXPECT_EQ(form.txtFields(campo_de_traspaso::Recibe).Text(), "E2");
  for (const char* article : {"MAR-16", "MAR-20"}) {
    EXPECT_EQ(QApplication::focusWidget(), FieldOf(form, campo_de_traspaso::Articulo));
    Type(QString::fromUtf8(article));
    Press(Qt::Key_Return);
    Type(QStringLiteral("3"));
    Press(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), program->ViewOf(form)->WidgetOf(form.Command1));
    Press(Qt::Key_Return);
    Settle();
  }
  EXPECT_EQ(Lines(form)->model()->rowCount(), 2);
  EXPECT_EQ(Lines(form)->model()->index(1, 0).data().toString(), QStringLiteral("MAR-20"));
  EXPECT_EQ(Lines(form)->model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Cantidad"));
  // What holds nothing but numbers stands at the right, as its heading does.
  EXPECT_TRUE(Lines(form)->model()->index(0, 1).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
  EXPECT_FALSE(Lines(form)->model()->index(0, 0).data(Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
  for (int tab = 0; tab < 3; ++tab) Press(Qt::Key_Tab);  // quantity, line entry, confirm
  EXPECT_EQ(QApplication::focusWidget(), program->ViewOf(form)->WidgetOf(form.cmdConfirmar));
  Press(Qt::Key_Space);
  Settle();
  EXPECT_EQ(confirmed, 2);
  EXPECT_TRUE(program->Platform().Screens().empty());
}

TEST_F(EscritorioDeEstaciones, TheNamesOfTheStationsStandBesideTheirKeys) {
  frmMovEstaciones& form = Transfer();
  Type(QStringLiteral("E1"));
  Press(Qt::Key_Return);
  Settle();
  bool named = false;
  const QString name = QString::fromStdString(One("SELECT descrip FROM ESTACIONES WHERE ESTACION = 'E1'"));
  for (const QLabel* label : program->ViewOf(form)->findChildren<QLabel*>())
    named = named || label->text() == name;
  EXPECT_TRUE(named) << name.toStdString();
}

TEST_F(EscritorioDeEstaciones, DeleteTakesALineAwayAfterItsQuestion) {
  TwoColumns();
  frmMovEstaciones& form = Transfer();
  form.grid.AddItem("MAR-16");
  form.grid.AddItem("MAR-20");
  form.Enter(form.grid);
  Settle();
  yes = false;
  Press(Qt::Key_Delete);
  EXPECT_EQ(Lines(form)->model()->rowCount(), 2);
  yes = true;
  Press(Qt::Key_Delete);
  EXPECT_EQ(Lines(form)->model()->rowCount(), 1);
  EXPECT_EQ(Lines(form)->model()->index(0, 0).data().toString(), QStringLiteral("MAR-20"));
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_EQ(boxes.back(), "Esta seguro de querer borrar la partida");
}

TEST_F(EscritorioDeEstaciones, ARoutineThatRefusesKeepsTheWindowOpen) {
  Routine("MOVESTACIONES007", [](frmMovEstaciones& form) { form.CancelaProceso = true; });
  frmMovEstaciones& form = Transfer();
  program->ViewOf(form)->close();
  Settle();
  EXPECT_TRUE(form.Open());
  EXPECT_TRUE(program->ViewOf(form)->isVisible());
}

TEST_F(EscritorioDeEstaciones, ATransferLeftPendingIsOpenedAgainByItsNumber) {
  std::int32_t opened = 0;
  Routine("MOVESTACIONES001", [&](frmMovEstaciones& form) { opened = form.Id; });
  auto ask = [this](std::function<void(QWidget&)> answer) {
    program->Window().activateWindow();
    (void)QTest::qWaitForWindowActive(&program->Window());
    WhenModal(std::move(answer));
    QTest::keyClick(&program->Window(), Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
  };
  ask([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });  // changed his mind
  EXPECT_TRUE(program->Platform().Screens().empty());
  ask([](QWidget& dialog) {
    auto* number = dialog.findChild<QSpinBox*>();
    number->selectAll();
    QTest::keyClicks(number, QStringLiteral("37"));
    QTest::keyClick(number, Qt::Key_Return);
  });
  EXPECT_EQ(opened, 37);
  EXPECT_EQ(program->Platform().Screens().size(), 1u);
}

TEST_F(EscritorioDeEstaciones, AModalTransferWaitsInAWindowOfItsOwn) {
  bool own_window = false;
  program->Platform().on_modal = [&](forms::Form& form) {
    own_window = program->ViewOf(form)->isWindow() && program->ViewOf(form)->isVisible();
    form.Unload();
  };
  program->Door().movimientoEstacion(1, true);
  EXPECT_TRUE(own_window);
}

}  // namespace
}  // namespace tarvik::desktop
