// Two hands on one document: who comes second may read it, and is told who has it.
#include "tests/desktop/hard_days/dia_dificil.h"

namespace tarvik::desktop {
namespace {

TEST_F(DiaDificil, TheSameHandOpensItsDocumentOnce) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  program->Door().ModificaEntrada(form.Entrada);
  Settle();
  ASSERT_EQ(boxes.size(), 1u) << AllSaid();
  EXPECT_EQ(boxes[0], "Usted mismo tiene ocupada esta entrada.");
  EXPECT_EQ(program->Platform().Screens().size(), 1u);

  // The same user at another desk.
  const auto second = Start("ANA", "E2");
  std::vector<std::string> told;
  second->Platform().on_box = [&](forms::BoxKind, const std::string& text, int) {
    told.push_back(text);
    return true;
  };
  second->Door().ModificaEntrada(form.Entrada);
  Settle();
  EXPECT_EQ(told, std::vector<std::string>{"Usted mismo tiene ocupada esta entrada."});
  EXPECT_TRUE(second->Platform().Screens().empty());
  EXPECT_EQ(One("SELECT ocupado FROM entradas"), "1");
}

TEST_F(DiaDificil, AnotherHandReadsTheDocumentAndChangesItOnlyWhenItIsFree) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  const int number = form.Entrada;
  const auto second = Start("BETO", "E2");
  std::vector<std::string> told;
  second->Platform().on_box = [&](forms::BoxKind, const std::string& text, int) {
    told.push_back(text);
    return true;
  };
  second->Door().ModificaEntrada(number);
  Settle();
  EXPECT_EQ(told, std::vector<std::string>{"La entrada está ocupada por el usuario ANA. Intente más tarde."});
  EXPECT_TRUE(second->Platform().Screens().empty());

  second->Window().show();
  second->Door().ConsultaEntrada(number);
  Settle();
  ASSERT_EQ(second->Platform().Screens().size(), 1u);
  EXPECT_EQ(dynamic_cast<frmEntradasWizard&>(*second->Platform().Screens().back()).Modo, "CONSULTA");
  second->Platform().Screens().back()->Close();
  QTest::qWait(50);
  EXPECT_TRUE(second->Platform().Screens().empty());
  EXPECT_EQ(One("SELECT ocupado FROM entradas"), "1") << "who only reads frees nothing";

  // The first hand goes on and leaves; now the second one has it, and the first is told so.
  program->Window().activateWindow();
  (void)QTest::qWaitForWindowActive(&program->Window());
  form.Enter(form.txtFields(campo::Articulo));
  Settle();
  Article(1, "4");
  form.Close();
  QTest::qWait(50);
  told.clear();
  second->Door().ModificaEntrada(number);
  Settle();
  EXPECT_TRUE(told.empty());
  ASSERT_EQ(second->Platform().Screens().size(), 1u);
  EXPECT_EQ(dynamic_cast<frmEntradasWizard&>(*second->Platform().Screens().back()).CuantasPartidas(), 2);
  boxes.clear();
  program->Door().ModificaEntrada(number);
  Settle();
  EXPECT_EQ(boxes.size(), 1u) << AllSaid();
  EXPECT_TRUE(program->Platform().Screens().empty());
  // The message goes by who made the document; who has it now stands beside it, for the list.
  const auto held = program->Host().Tenencias();
  ASSERT_EQ(held.size(), 1u);
  EXPECT_EQ(held[0].usuario, "BETO");
  EXPECT_EQ(held[0].estacion, "E2");
}

}  // namespace
}  // namespace tarvik::desktop
