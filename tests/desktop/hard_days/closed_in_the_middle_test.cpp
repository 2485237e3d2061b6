// A window that is closed, or a document that another hand opens, in the middle of the work.
#include <QPointer>

#include "tests/desktop/hard_days/dia_dificil.h"

namespace tarvik::desktop {
namespace {

TEST_F(DiaDificil, ClosingTheProgramsWindowWithAnEditOpenKeepsWhatWasStored) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  form.fg2.MoveTo(1, 1);
  form.Enter(form.fg2);
  Settle();
  Press(Qt::Key_9);
  Settle();
  ASSERT_TRUE(form.txtEdit.Visible());
  program->Window().close();
  QTest::qWait(100);
  EXPECT_FALSE(program->Window().isVisible());
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_EQ(One("SELECT cantidad FROM entpart"), "3");
  EXPECT_EQ(One("SELECT estado FROM entradas"), "PE");
  EXPECT_EQ(One("SELECT ocupado FROM entradas"), "0");
  EXPECT_EQ(One("SELECT COUNT(*) FROM tenencias"), "0");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
}

}  // namespace
}  // namespace tarvik::desktop
