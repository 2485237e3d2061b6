// A document goes from one program to another: asked for in the list, handed over by a button, opened by
// itself.
#include "desktop/frame/requests.h"

#include <QAction>
#include <QPushButton>

#include "desktop/lists/document_list.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

class Peticiones : public Escritorio {
 protected:
  frmEntradasWizard& WithALine() {
    frmEntradasWizard& form = Receiving();
    Line(QString::fromStdString(Article(0)), QStringLiteral("3"));
    Settle();
    return form;
  }
  // The second program comes up when the first has its document: keys go to the window in front.
  void Second() {
    second = std::make_unique<Program>(
        theme2,
        ProgramOptions{Address(), QStringLiteral("BETO"), QStringLiteral("E2"), other.path(), {}, false});
    second->Platform().on_box = [this](forms::BoxKind kind, const std::string& text, int) {
      told.push_back(text);
      return kind != forms::BoxKind::Question;
    };
    second->Window().ask_text = [](const QString&, const QString&) { return QStringLiteral("urge"); };
    second->Window().show();
  }
  QAction* Action(const QString& name) {
    for (auto* action : second->Window().findChildren<QAction*>()) {
      if (action->text().section(QLatin1Char('\t'), 0, 0).remove(QLatin1Char('&')) == name) return action;
    }
    return nullptr;
  }
  // Chooses the document in the list of the second program and asks for it.
  void Ask(int number) {
    Second();
    second->Window().ShowPage("Entradas");
    auto& list = second->Window().List(ListKind::Entradas);
    list.Refresh();
    ASSERT_TRUE(QTest::qWaitFor([&] { return list.Select(number) && list.SelectedHeld(); }));
    QAction* ask = Action(QStringLiteral("Pedir documento"));
    ASSERT_NE(ask, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([&] { return ask->isEnabled(); }));
    ask->trigger();
  }

  QTemporaryDir other;
  Theme theme2{Theme::Mode::Light};
  std::unique_ptr<Program> second;
  std::vector<std::string> told;
};

TEST_F(Peticiones, OnYesTheScreenClosesHereAndOpensThereWithTheLineThatWasBeingTyped) {
  frmEntradasWizard& form = WithALine();
  const int number = form.Entrada;
  Type(QStringLiteral("MAR"));
  Ask(number);
  Requests& bar = program->Window().Asked();
  EXPECT_TRUE(bar.isHidden());
  ASSERT_TRUE(QTest::qWaitFor([&] { return !bar.isHidden(); }, 5000)) << "noticed by itself";
  EXPECT_EQ(bar.Text().toStdString(), "BETO (E2) pide la entrada " + std::to_string(number) + ": urge");
  QTest::mouseClick(&bar.GiveButton(), Qt::LeftButton);
  EXPECT_TRUE(program->Platform().Screens().empty());
  EXPECT_TRUE(bar.isHidden());
  ASSERT_TRUE(QTest::qWaitFor([&] { return !second->Platform().Screens().empty(); }, 5000));
  auto& there = dynamic_cast<frmEntradasWizard&>(*second->Platform().Screens().back());
  EXPECT_EQ(there.Entrada, number);
  EXPECT_EQ(there.CuantasPartidas(), 1);
  EXPECT_EQ(there.txtFields(campo::Articulo).Text(), "MAR");
  EXPECT_TRUE(boxes.empty());
  EXPECT_TRUE(told.empty());
}

TEST_F(Peticiones, OnNoTheScreenStaysAndWhoAskedIsTold) {
  frmEntradasWizard& form = WithALine();
  Ask(form.Entrada);
  Requests& bar = program->Window().Asked();
  bar.Look();
  ASSERT_FALSE(bar.isHidden());
  QTest::mouseClick(&bar.KeepButton(), Qt::LeftButton);
  EXPECT_TRUE(bar.isHidden());
  EXPECT_TRUE(form.Open());
  second->Window().Asked().Look();
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0], "No se cedió la entrada " + std::to_string(form.Entrada));
  second->Window().Asked().Look();
  EXPECT_EQ(told.size(), 1u) << "told once";
}

TEST_F(Peticiones, ADocumentThatItsHolderJustClosesOpensWhereItWasAskedFor) {
  frmEntradasWizard& form = WithALine();
  const int number = form.Entrada;
  Ask(number);
  form.Unload();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !second->Platform().Screens().empty(); }, 5000)) << "by itself";
  EXPECT_EQ(dynamic_cast<frmEntradasWizard&>(*second->Platform().Screens().back()).Entrada, number);
}

// A check that nobody asked for must not delay the next key.
TEST_F(Peticiones, WhileTheBaseIsHeldALookWaitsForNothingAndIsMadeUpForLater) {
  frmEntradasWizard& form = WithALine();
  Ask(form.Entrada);
  Requests& bar = program->Window().Asked();
  data::Patience& patience = program->Host().Conexion().Waiting();
  int turns = 0;
  auto before = std::exchange(patience.turn, [&] {
    ++turns;
    return true;
  });
  const auto holder = program->Host().Base().Connect();
  const bool on_server = holder->Kind() == data::Dialect::Postgresql;
  holder->Begin();
  // In a file who writes keeps no reader out.
  if (on_server) holder->Run("LOCK TABLE peticiones, tenencias IN ACCESS EXCLUSIVE MODE", {});
  bar.Look();
  EXPECT_LT(turns, 5) << "a whole wait has some five hundred";
  EXPECT_EQ(bar.isHidden(), on_server);
  holder->Rollback();
  patience.turn = std::move(before);
  bar.Look();
  EXPECT_FALSE(bar.isHidden());
}

TEST_F(Peticiones, AScreenThatRefusesToCloseIsSaidAndTheRequestWaits) {
  frmEntradasWizard& form = WithALine();
  Ask(form.Entrada);
  program->Host().Gancho("ENTRADA006", [](forms::Form& screen, host::AmbienteLocal&) {
    dynamic_cast<frmEntradasWizard&>(screen).CancelaProceso = true;
  });
  Requests& bar = program->Window().Asked();
  bar.Look();
  QTest::mouseClick(&bar.GiveButton(), Qt::LeftButton);
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_NE(boxes[0].find("no se dejó cerrar"), std::string::npos);
  EXPECT_TRUE(form.Open());
  EXPECT_FALSE(bar.isHidden());
  program->Host().Gancho("ENTRADA006", {});
}

TEST_F(Peticiones, ADocumentThatNobodyHasOpenCannotBeAskedFor) {
  frmEntradasWizard& form = WithALine();
  const int number = form.Entrada;
  form.Unload();
  program->Host().Conexion().Run("UPDATE entradas SET ocupado = 1", {});
  Ask(number);
  ASSERT_EQ(told.size(), 1u);
  EXPECT_NE(told[0].find("Nadie tiene abierta la entrada"), std::string::npos);
}

}  // namespace
}  // namespace tarvik::desktop
