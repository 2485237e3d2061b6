// A key that sticks, or is held down for a minute.
#include <QElapsedTimer>

#include "tests/desktop/hard_days/dia_dificil.h"

namespace tarvik::desktop {
namespace {

// A minute of a keyboard that repeats 33 times a second.
constexpr int kHeld = 2000;
constexpr int kMinute = 60000;

TEST_F(DiaDificil, ALetterHeldForAMinuteIsAllThereAndGoesAgain) {
  frmEntradasWizard& form = Receiving();
  QElapsedTimer clock;
  clock.start();
  Hold(Qt::Key_A, kHeld, QStringLiteral("a"));
  EXPECT_LT(clock.restart(), kMinute);
  EXPECT_EQ(form.txtFields(campo::Articulo).Text().size(), static_cast<std::size_t>(kHeld));
  EXPECT_EQ(Widget(form, campo::Articulo)->text().size(), kHeld);
  Hold(Qt::Key_Backspace, kHeld);
  EXPECT_LT(clock.elapsed(), kMinute);
  EXPECT_EQ(form.txtFields(campo::Articulo).Text(), "");
  Article(0, "3");
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
}

TEST_F(DiaDificil, EnterHeldInTheArticleStoresNothingThatWasNotAsked) {
  frmEntradasWizard& form = Receiving();
  Type(QString::fromStdString(Escritorio::Article(0)));
  QElapsedTimer clock;
  clock.start();
  Hold(Qt::Key_Return, kHeld);
  EXPECT_LT(clock.elapsed(), kMinute);
  ASSERT_FALSE(boxes.empty());
  for (const std::string& box : boxes) ASSERT_EQ(box, "La cantidad debe ser mayor que cero.");
  EXPECT_EQ(One("SELECT COUNT(*) FROM entradas"), "0");
  form.Enter(form.txtFields(campo::Cantidad));
  Settle();
  Type(QStringLiteral("3"));
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
}

TEST_F(DiaDificil, EnterHeldInThePriceMakesOneLine) {
  Receiving();
  Type(QString::fromStdString(Escritorio::Article(0)));
  Press(Qt::Key_Return);
  Type(QStringLiteral("3"));
  Press(Qt::Key_Return);
  Hold(Qt::Key_Return, kHeld);
  EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
  ASSERT_FALSE(boxes.empty());
  for (const std::string& box : boxes) ASSERT_EQ(box, "Indique la clave del artículo.");
}

TEST_F(DiaDificil, AFinishKeyHeldOverItsQuestionPostsOnce) {
  Receiving();
  Article(0, "3");
  Article(1, "4");
  program->Platform().on_box = nullptr;
  Lector reader({Qt::Key_Return});
  reader.before = [](QWidget&) { Hold(Qt::Key_F5, kHeld); };
  Press(Qt::Key_F5);
  Settle();
  ASSERT_EQ(reader.read.size(), 1) << reader.read.join('|').toStdString();
  EXPECT_TRUE(reader.read[0].contains(QStringLiteral("¿Desea afectar la entrada?")));
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv"), "2");
  EXPECT_TRUE(program->Platform().Screens().empty());
}

TEST_F(DiaDificil, AFinishKeyHeldOnIntoTheListPostsOnce) {
  Receiving();
  Article(0, "3");
  QElapsedTimer clock;
  clock.start();
  Hold(Qt::Key_F5, kHeld);
  EXPECT_LT(clock.elapsed(), kMinute);
  EXPECT_EQ(boxes.size(), 1u) << AllSaid();
  EXPECT_EQ(One("SELECT COUNT(*) FROM entradas"), "1");
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv"), "1");
  EXPECT_TRUE(program->Platform().Screens().empty());
}

TEST_F(DiaDificil, AnArrowHeldWalksTheGridAndBackWithItsCellInSight) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  form.fg2.MoveTo(1, 1);
  form.Enter(form.fg2);
  Settle();
  auto* grid = qobject_cast<GridView*>(program->ViewOf(form)->WidgetOf(form.fg2));
  QElapsedTimer clock;
  clock.start();
  Hold(Qt::Key_Down, kHeld);
  EXPECT_LT(clock.restart(), kMinute);
  EXPECT_EQ(form.fg2.Row(), kHeld + 1);
  EXPECT_TRUE(grid->viewport()->rect().contains(grid->CurrentCell()));
  Hold(Qt::Key_Up, kHeld + 5);
  EXPECT_LT(clock.elapsed(), kMinute);
  EXPECT_EQ(form.fg2.Row(), 1);
  EXPECT_TRUE(grid->viewport()->rect().contains(grid->CurrentCell()));
  EXPECT_EQ(One("SELECT cantidad FROM entpart"), "3");
  EXPECT_TRUE(boxes.empty()) << AllSaid();
}

}  // namespace
}  // namespace tarvik::desktop
