// Screens that go while something is under way: an act that closes its own screen, a close box in the
// middle of a step, a routine that fails on every closing. Nothing is left behind, and nothing crashes.
#include <QCloseEvent>
#include <QTimer>

#include "desktop/screens/matrix_view.h"
#include "stations/frm_mov_estaciones.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

class Cierre : public Escritorio {
 protected:
  Cierre() {
    // As the real boxes do: the loop goes on while one stands.
    program->Platform().on_box = [this](forms::BoxKind kind, const std::string& text, int) {
      boxes.push_back(text);
      QTest::qWait(30);
      return kind != forms::BoxKind::Question || yes;
    };
  }
  void Routine(const char* key, std::function<void(forms::Form&)> does) {
    program->Host().Gancho(key,
                           [does = std::move(does)](forms::Form& form, host::AmbienteLocal&) { does(form); });
  }
  static qsizetype Views() {
    QTest::qWait(0);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    qsizetype views = 0;
    for (QWidget* widget : QApplication::allWidgets()) views += qobject_cast<ScreenView*>(widget) ? 1 : 0;
    return views;
  }
};

TEST_F(Cierre, ARoutineMayCloseTheScreenWhoseKeyIsBeingWorkedOff) {
  frmEntradasWizard& form = New();
  auto held = form.shared_from_this();
  Type(QStringLiteral("COM"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  Press(Qt::Key_F3);  // the reader: a whole line follows the article's key
  Routine("ENTRADA012", [](forms::Form& screen) { screen.Unload(); });
  Type(QStringLiteral("NO-HAY"));
  Press(Qt::Key_Return);
  Settle();
  EXPECT_FALSE(form.Open());
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "0");
  held.reset();
  EXPECT_EQ(Views(), 0);
}

TEST_F(Cierre, ACloseBoxDuringTheMatrixsBuildTakesTheDocumentAndTheMatrix) {
  frmEntradasWizard& form = New();
  Type(QStringLiteral("COM"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  Type(QStringLiteral("CAM"));
  Press(Qt::Key_Return);
  Type(QStringLiteral("9"));
  Press(Qt::Key_Return);
  program->ViewOf(form)->close();  // its timer's tick is due while the matrix is being built
  QTest::qSleep(15);
  Press(Qt::Key_Return);
  QTest::qWait(120);
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "0");
  EXPECT_EQ(Views(), 0);
}

TEST_F(Cierre, ACloseInsideAStepWaitsForItsEnd) {
  program->Door().movimientoEstacion(1, false);
  Settle();
  auto& form = dynamic_cast<frmMovEstaciones&>(*program->Platform().Screens().back());
  bool open_inside = false;
  Routine("MOVESTACIONES003", [&](forms::Form&) {
    QTimer::singleShot(0, [&] { program->ViewOf(form)->close(); });
    program->Platform().ProcessEvents();
    open_inside = form.Open();
  });
  form.Click(form.Command1);
  EXPECT_TRUE(open_inside);
  ASSERT_TRUE(QTest::qWaitFor([&] { return program->Platform().Screens().empty(); }));
  EXPECT_EQ(Views(), 0);
}

TEST_F(Cierre, ScreensThatNeverCameUpLeaveNoView) {
  Routine("MOVESTACIONES001", [](forms::Form&) { throw data::Error("Falla del negocio"); });
  for (int time = 0; time < 3; ++time)
    EXPECT_THROW(program->Door().movimientoEstacion(1, false), data::Error);
  Routine("ENTRADA001",
          [](forms::Form& screen) { dynamic_cast<DocumentWizard&>(screen).CancelaProceso = true; });
  for (int time = 0; time < 3; ++time) program->Door().NuevaEntrada();
  QTest::qWait(150);
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_EQ(Views(), 0);
}

TEST_F(Cierre, ARoutineThatFailsOnEveryClosingDoesNotKeepTheProgramOpen) {
  Routine("MOVESTACIONES007", [](forms::Form&) { throw data::Error("Falla del negocio"); });
  program->Door().movimientoEstacion(1, false);
  Settle();
  yes = false;
  EXPECT_FALSE(program->Window().close());
  EXPECT_EQ(program->Platform().Screens().size(), 1u);
  ASSERT_EQ(boxes.size(), 2u);  // the failure, and the question
  EXPECT_NE(boxes[1].find("¿Cerrarla de todos modos?"), std::string::npos) << boxes[1];
  QTest::qWait(1100);  // the window has given up closing
  yes = true;
  program->Window().close();
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_EQ(Views(), 0);
}

TEST_F(Cierre, ARoutineThatRefusesIsObeyedWithoutAQuestion) {
  Routine("MOVESTACIONES007",
          [](forms::Form& screen) { dynamic_cast<frmMovEstaciones&>(screen).CancelaProceso = true; });
  program->Door().movimientoEstacion(1, false);
  Settle();
  EXPECT_FALSE(program->Window().close());
  EXPECT_TRUE(boxes.empty());
  EXPECT_EQ(program->Platform().Screens().size(), 1u);
}

TEST_F(Cierre, WhatIsOnlyShownTakesNoCaret) {
  frmEntradasWizard& form = New();
  Type(QStringLiteral("COM"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  program->Platform().on_modal = [this](forms::Form& matrix) {
    QTimer::singleShot(0, [this, &matrix] {
      Settle();
      ScreenView* view = program->ViewOf(matrix);
      for (const char* name : {"txtRemanente", "txtDescrip"}) {
        QTest::mouseClick(view->WidgetOf(*matrix.Find(name)), Qt::LeftButton);
        EXPECT_EQ(matrix.ActiveControl(), matrix.Find("fg2")) << name;
      }
      for (int tab = 0; tab < 5; ++tab) {
        Press(Qt::Key_Tab);
        EXPECT_NE(matrix.ActiveControl(), matrix.Find("txtRemanente"));
        EXPECT_NE(matrix.ActiveControl(), matrix.Find("txtDescrip"));
      }
      matrix.Unload();
    });
  };
  Type(QStringLiteral("CAM"));
  Press(Qt::Key_Return);
  Type(QStringLiteral("9"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  program->Platform().on_modal = nullptr;
  EXPECT_TRUE(form.Open());
}

}  // namespace
}  // namespace tarvik::desktop
