// A goods-in by keyboard alone, with real key events, in the window that an operator sees.
#include <QProgressBar>

#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

TEST_F(Escritorio, AWholeReceiptIsMadePostedAndFoundAgainWithoutTheMouse) {
  frmEntradasWizard& form = New();
  EXPECT_EQ(QApplication::focusWidget(), Widget(form, campo::Concepto));
  Type(QStringLiteral("com"));
  EXPECT_EQ(Widget(form, campo::Concepto)->text(), QStringLiteral("COM"));
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
  form.Enter(form.txtFields(campo::Articulo));
  Settle();
  Type(QStringLiteral("NADA"));
  Press(Qt::Key_F9);
  Settle();
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_TRUE(Widget(form, campo::Articulo)->property("refused").toBool());
  EXPECT_FALSE(Widget(form, campo::Articulo)->accessibleDescription().isEmpty());
  Press(Qt::Key_Backspace);
  EXPECT_FALSE(Widget(form, campo::Articulo)->property("refused").toBool());
}

TEST_F(Escritorio, EveryControlHasItsPlaceInTheViewAndAName) { ExpectWhole(New()); }

TEST_F(Escritorio, NothingMovesUnderTheHand) { ExpectStill(New()); }

TEST_F(Escritorio, APastedPageGoesInAsOneChangeWithoutItsLineEnds) {
  frmEntradasWizard& form = New();
  form.Enter(form.txtFields(campo::Articulo));
  Settle();
  QApplication::clipboard()->setText(QString(4000, QLatin1Char('x')) + QStringLiteral("\nmás"));
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Widget(form, campo::Articulo)->text().size(), 4003);
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

TEST_F(Escritorio, ThePostingOfEachLineMovesTheBarAndNobodyElsesWordsDo) {
  frmEntradasWizard& form = Receiving();
  Line(QString::fromStdString(Article(0)), QStringLiteral("3"));
  Line(QString::fromStdString(Article(1)), QStringLiteral("4"));
  auto* bar = program->ViewOf(form)->findChild<QProgressBar*>();
  ASSERT_NE(bar, nullptr);
  form.RichTextBox1.Text("Afectando: lo que sea 1");  // a routine of the business may write there too
  EXPECT_FALSE(bar->isVisible());
  std::vector<std::pair<int, int>> seen;
  form.RichTextBox1.OnChange = [&] {
    EXPECT_TRUE(bar->isVisible());
    seen.emplace_back(bar->value(), bar->maximum());
  };
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(seen, (std::vector<std::pair<int, int>>{{1, 2}, {2, 2}}));
  EXPECT_EQ(One("SELECT estado FROM entradas"), "CO");
}

TEST_F(Escritorio, AConceptThatARoutineBlocksMakesNoDocumentReadOnly) {
  frmEntradasWizard& form = Receiving();
  form.txtFields(campo::Concepto).Enabled(false);
  Line(QString::fromStdString(Article(0)), QStringLiteral("3"));
  Settle();
  const auto chip = [&]() -> std::string {
    for (const QLabel* label : program->ViewOf(form)->findChildren<QLabel*>()) {
      if (label->accessibleName() == QStringLiteral("Estado del documento"))
        return label->text().toStdString();
    }
    return "(no está)";
  };
  EXPECT_EQ(chip(), "Pendiente");
  const Keys keys = program->ViewOf(form)->KeysNow();
  EXPECT_TRUE(std::any_of(keys.begin(), keys.end(), [](const auto& key) { return key.first == "F5"; }));
  form.DejaEnConsulta();
  program->ViewOf(form)->Refresh();
  Settle();
  EXPECT_EQ(chip(), "Sólo lectura");
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
