// Documents that were posted in part, as the operator meets them: announced when the program opens, marked in
// list and screen, completed with one key; steps of the finish that did not run are named and run.
#include "desktop/reading/half_posted.h"

#include <QLabel>
#include <QPushButton>
#include <QTableView>

#include "desktop/frame/notices.h"
#include "desktop/lists/document_list.h"
#include "desktop/screens/goods_out_view.h"
#include "desktop/style/key_caps.h"
#include "desktop/style/list_cells.h"
#include "host/bitacora.h"
#include "tests/desktop/escritorio.h"

namespace tarvik::desktop {
namespace {

using host::Tipo;

class Mitades : public Escritorio {
 protected:
  // Posted by hand, so many lines.
  void Afectada(int lines) {
    New();
    Type("COM");
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
    for (int line = 0; line < lines; ++line) Line(line % 2 ? "CIN-AIS" : "MAR-16", "2");
    Press(Qt::Key_F5);
    Settle();
    boxes.clear();
  }
  // As if the program had been killed when so many lines of the document had moved.
  void Queda(int document, int moved) {
    const std::string gone =
        "id_entrada IN (SELECT id_entrada FROM entpart WHERE entrada = " + std::to_string(document) +
        ") AND id_entrada > (SELECT MIN(id_entrada) + " + std::to_string(moved) +
        " - 1 FROM entpart WHERE entrada = " + std::to_string(document) + ")";
    auto& base = program->Host().Conexion();
    base.Run(
        "UPDATE existenciaalmacen SET existencia = existencia - COALESCE((SELECT SUM(m.cantidad) FROM "
        "movsinv m WHERE m.almacen = existenciaalmacen.almacen AND m.articulo = "
        "existenciaalmacen.articulo AND m." +
            gone + "), 0)",
        {});
    base.Run("DELETE FROM movsinv WHERE " + gone, {});
  }
  template <class Condition>
  static bool Until(Condition&& condition) {
    return QTest::qWaitFor(std::forward<Condition>(condition), 10000);
  }
  NoticeStrip& Notices() { return program->Window().Notices(); }
  DocumentList& List() { return program->Window().List(ListKind::Entradas); }
  // The state of the chosen document, as the list has it, once it has been looked at.
  QString State() {
    return List().Model().index(List().SelectedRow(), DocumentListModel::State).data().toString();
  }
  bool StateIs(const QString& state) {
    return Until([&] { return State() == state; });
  }
  static QStringList KeysOf(const QWidget& widget) {
    QStringList keys;
    for (const auto* label : widget.findChildren<QLabel*>()) {
      if (label->property("role") == QLatin1String("keycap") && !label->isHidden()) keys << label->text();
    }
    return keys;
  }
  void LookAtList() {
    program->Window().ShowPage("Entradas");
    List().Refresh();
    ASSERT_TRUE(Until([&] { return !List().Model().Busy() && List().Selected() != 0; }));
  }
  std::string Stock() {
    return One("SELECT existencia FROM existenciaalmacen WHERE articulo = 'MAR-16' AND almacen = 1");
  }
};

TEST_F(Mitades, ASoundShopIsToldOfNothing) {
  Afectada(2);
  Start();
  LookAtList();
  EXPECT_TRUE(StateIs("Afectado"));
  EXPECT_FALSE(Notices().isVisible());
  EXPECT_FALSE(KeysOf(List()).contains("F7"));
  Press(Qt::Key_F7);
  EXPECT_TRUE(boxes.empty());
}

TEST_F(Mitades, OneThatWasLeftIsToldAtTheOpeningAndCompletedFromItsCard) {
  Afectada(5);
  const std::string stock = Stock();
  Queda(1, 2);
  EXPECT_NE(Stock(), stock);
  Start();
  ASSERT_TRUE(Until([&] { return Notices().isVisible(); }));
  EXPECT_TRUE(boxes.empty()) << "a card, and no box that a scanner answers";
  EXPECT_TRUE(Notices().TextOf("a medias").startsWith("La entrada 1 quedó a medias"));
  QPushButton* complete = Notices().Button("a medias", "Completar");
  ASSERT_NE(complete, nullptr);
  EXPECT_FALSE(complete->hasFocus());
  QTest::keyClick(complete, Qt::Key_Return);
  EXPECT_TRUE(boxes.empty()) << "a scanner's Enter presses nothing";
  QTest::keyClick(complete, Qt::Key_Space);
  ASSERT_EQ(boxes.size(), 2U);
  EXPECT_NE(boxes[0].find("2 de sus 5 renglones"), std::string::npos) << boxes[0];
  EXPECT_EQ(boxes[1], "Se completaron 3 movimientos de la entrada 1.");
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv WHERE operacion = 'EN'"), "5");
  EXPECT_EQ(Stock(), stock);
  EXPECT_TRUE(Until([&] { return !Notices().isVisible(); }));
  const auto acts = program->Host().Bitacora();
  ASSERT_FALSE(acts.empty());
  EXPECT_EQ(acts.back().acto, "completa");
}

TEST_F(Mitades, TheListShowsHowFarItCameAndOneKeyCompletesIt) {
  Afectada(5);
  Queda(1, 2);
  Start();
  LookAtList();
  ASSERT_TRUE(StateIs("Afectado a medias · 2 de 5"));
  const QModelIndex cell = List().Model().index(0, DocumentListModel::State);
  EXPECT_EQ(cell.data(CellDelegate::ChipRole).toString(), "medias");
  EXPECT_TRUE(KeysOf(List()).contains("F7"));
  yes = false;
  Press(Qt::Key_F7);
  EXPECT_EQ(boxes.size(), 1U);
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv WHERE operacion = 'EN'"), "2") << "it was only asked";
  yes = true;
  boxes.clear();
  Press(Qt::Key_F7);
  ASSERT_EQ(boxes.size(), 2U);
  EXPECT_EQ(boxes[1], "Se completaron 3 movimientos de la entrada 1.");
  EXPECT_TRUE(StateIs("Afectado"));
  EXPECT_FALSE(KeysOf(List()).contains("F7"));
  EXPECT_EQ(List().Selected(), 1);
}

TEST_F(Mitades, TheScreenThatReadsItShowsItAndCompletesItToo) {
  Afectada(3);
  Queda(1, 1);
  program->Door().ConsultaEntrada(1);
  QTest::qWait(50);
  auto& form = dynamic_cast<frmEntradasWizard&>(*program->Platform().Screens().back());
  ScreenView* view = program->ViewOf(form);
  const auto chip = [&] {
    for (const auto* label : view->findChildren<QLabel*>()) {
      if (label->property("role") == QLatin1String("chip") &&
          label->accessibleName() == "Estado del documento")
        return label->text();
    }
    return QString();
  };
  ASSERT_TRUE(Until([&] { return chip() == "Afectado a medias · 1 de 3"; })) << chip().toStdString();
  EXPECT_TRUE(view->KeysNow().contains({"F7", "completar"}));
  QTest::keyClick(view, Qt::Key_F7);
  ASSERT_EQ(boxes.size(), 2U);
  EXPECT_EQ(boxes[1], "Se completaron 2 movimientos de la entrada 1.");
  EXPECT_TRUE(Until([&] { return chip() == "Sólo lectura"; })) << chip().toStdString();
  EXPECT_FALSE(view->KeysNow().contains({"F7", "completar"}));
  QTest::keyClick(view, Qt::Key_F7);
  EXPECT_EQ(boxes.size(), 2U) << "there is nothing left to complete";
}

TEST_F(Mitades, OneLeftByTheFinishOfNowShowsAsSoonAsItsScreenHasClosed) {
  New();
  Type("COM");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  for (int line = 0; line < 3; ++line) Line("MAR-16", "2");
  int lines = 0;
  auto before = program->Platform().on_repaint;
  program->Platform().on_repaint = [&](forms::Form& form) {
    before(form);
    // The ledger's table is gone after the first line.
    if (++lines == 2) program->Host().Conexion().Define("ALTER TABLE movsinv RENAME TO aparte");
  };
  // It is back before the screen closes, which is when the list looks.
  program->Host().Gancho("ENTRADA014", [&](forms::Form&, host::AmbienteLocal&) {
    program->Host().Conexion().Define("ALTER TABLE aparte RENAME TO movsinv");
  });
  Press(Qt::Key_F5);
  program->Platform().on_repaint = before;
  Settle();
  LookAtList();
  EXPECT_TRUE(StateIs("Afectado a medias · 1 de 3"));
}

TEST_F(Mitades, SeveralAreCompletedTogetherAndFoundByTheirCard) {
  for (int document = 0; document < 3; ++document) Afectada(3);
  Queda(1, 1);
  Queda(3, 2);
  Start();
  ASSERT_TRUE(Until([&] { return Notices().isVisible(); }));
  EXPECT_TRUE(
      Notices().TextOf("a medias").startsWith("2 documentos quedaron afectados a medias (2 entradas)"));
  Notices().Button("a medias", "Ver")->click();
  ASSERT_TRUE(Until([&] { return !List().Model().Busy() && List().Model().rowCount() == 2; }));
  EXPECT_EQ(List().Model().NumberAt(0), 3);
  EXPECT_EQ(List().Model().NumberAt(1), 1);
  Notices().Button("a medias", "Completar todos")->click();
  ASSERT_EQ(boxes.size(), 2U);
  EXPECT_EQ(boxes[1], "Se completaron 3 movimientos de 2 documentos.");
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv WHERE operacion = 'EN'"), "9");
  EXPECT_TRUE(Until([&] { return !Notices().isVisible(); }));
}

TEST_F(Mitades, ACardThatWasPutAwayStaysAway) {
  Afectada(2);
  Queda(1, 1);
  Start();
  ASSERT_TRUE(Until([&] { return Notices().isVisible(); }));
  Notices().Button("a medias", "×")->click();
  EXPECT_FALSE(Notices().isVisible());
  program->Window().Half().LookAtAll();
  QTest::qWait(200);
  EXPECT_FALSE(Notices().isVisible());
}

TEST_F(Mitades, APendingOneWithLinesThatHaveMovedSaysSo) {
  Afectada(3);
  Queda(1, 2);
  program->Host().Conexion().Run("UPDATE entradas SET estado = 'PE'", {});
  Start();
  LookAtList();
  ASSERT_TRUE(StateIs("Pendiente · 2 ya movidos"));
  EXPECT_FALSE(KeysOf(List()).contains("F7")) << "it is finished, not completed";
  QTest::qWait(100);
  EXPECT_FALSE(Notices().isVisible());
  // Finished by hand it moves the rest.
  Press(Qt::Key_Return);
  Settle();
  Press(Qt::Key_F5);
  Settle();
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv WHERE operacion = 'EN'"), "3");
}

TEST_F(Mitades, WhatTheBaseRefusesIsToldWithWhatIsSafe) {
  Afectada(3);
  Queda(1, 1);
  Start();
  LookAtList();
  ASSERT_TRUE(StateIs("Afectado a medias · 1 de 3"));
  program->Host().Conexion().Define("ALTER TABLE bitacora RENAME TO otra");
  Press(Qt::Key_F7);
  program->Host().Conexion().Define("ALTER TABLE otra RENAME TO bitacora");
  ASSERT_EQ(boxes.size(), 2U);
  EXPECT_TRUE(boxes[1].starts_with("No se pudo completar la entrada 1: ")) << boxes[1];
  EXPECT_NE(boxes[1].find("nada se movió dos veces"), std::string::npos);
  EXPECT_EQ(One("SELECT COUNT(*) FROM movsinv WHERE operacion = 'EN'"), "1");
}

// ---- what did not run behind the posting ----

class Cortados : public Mitades {
 protected:
  // The finish of the document broke off behind so much.
  void Cortado(int document, const std::string& done) {
    program->Host().Conexion().Run(
        "INSERT INTO cierres (tipo, documento, usuario, estacion, cuando, imprime, hecho) VALUES ('Entrada', "
        "?, "
        "'ANA', 'E1', '2026-11-20 10:00:00', 0, ?)",
        {document, done});
  }
  void ConRutina() {
    program->Host().Gancho("ENTRADA014", [this](forms::Form& form, host::AmbienteLocal&) {
      fired.push_back(dynamic_cast<frmEntradasWizard&>(form).Entrada);
    });
  }
  std::string Cierres() { return One("SELECT COUNT(*) FROM cierres"); }
  std::vector<int> fired;
};

TEST_F(Cortados, ItIsSaidAndDoneWhenAsked) {
  Afectada(2);
  ConRutina();
  Cortado(1, "");
  program->Window().Half().LookAtAll();
  ASSERT_TRUE(Until([&] { return Notices().isVisible(); }));
  EXPECT_NE(Notices().TextOf("cierre").indexOf("la rutina ENTRADA014 (después de afectar)"), -1)
      << Notices().TextOf("cierre").toStdString();
  Notices().Button("cierre", "Hacerlo ahora")->click();
  EXPECT_EQ(fired, std::vector<int>{1});
  EXPECT_EQ(Cierres(), "0");
  EXPECT_TRUE(program->Platform().Screens().empty()) << "its screen came and went";
  EXPECT_TRUE(Until([&] { return !Notices().isVisible(); }));
}

TEST_F(Cortados, WhoDoesNotWantItIsAskedNoMore) {
  Afectada(2);
  ConRutina();
  Cortado(1, "");
  program->Window().Half().LookAtAll();
  ASSERT_TRUE(Until([&] { return Notices().isVisible(); }));
  Notices().Button("cierre", "No hacerlo")->click();
  EXPECT_TRUE(fired.empty());
  EXPECT_EQ(Cierres(), "0");
  EXPECT_TRUE(Until([&] { return !Notices().isVisible(); }));
}

TEST_F(Cortados, BehindACompletionItIsOffered) {
  Afectada(3);
  ConRutina();
  Queda(1, 1);
  Cortado(1, "");
  program->Window().Half().LookAtAll();
  ASSERT_TRUE(Until([&] { return Notices().isVisible(); }));
  EXPECT_TRUE(Notices().TextOf("cierre").isEmpty()) << "the lines come first";
  Notices().Button("a medias", "Completar")->click();
  ASSERT_EQ(boxes.size(), 2U);
  EXPECT_TRUE(boxes[1].starts_with("Se completaron 2 movimientos de la entrada 1. Al interrumpirse"))
      << boxes[1];
  EXPECT_EQ(fired, std::vector<int>{1});
  EXPECT_EQ(Cierres(), "0");
}

TEST_F(Cortados, WhereNoRoutineStandsThereIsNothingToSay) {
  Afectada(2);
  Cortado(1, "");
  program->Window().Half().LookAtAll();
  QTest::qWait(300);
  EXPECT_FALSE(Notices().isVisible());
}

TEST_F(Cortados, ARoutineThatFailsIsToldAndStaysOffered) {
  Afectada(2);
  program->Host().Gancho("ENTRADA014",
                         [](forms::Form&, host::AmbienteLocal&) { throw data::Error("sin red"); });
  Cortado(1, "");
  program->Window().Half().LookAtAll();
  ASSERT_TRUE(Until([&] { return Notices().isVisible(); }));
  Notices().Button("cierre", "Hacerlo ahora")->click();
  ASSERT_EQ(boxes.size(), 1U);
  EXPECT_TRUE(boxes[0].starts_with("No se pudo terminar el cierre de la entrada 1: sin red.")) << boxes[0];
  EXPECT_EQ(Cierres(), "1");
  QTest::qWait(200);
  EXPECT_TRUE(Notices().isVisible());
}

TEST_F(Mitades, WhatCannotBeLookedAtIsToldAsDamage) {
  Afectada(2);
  auto& base = program->Host().Conexion();
  base.Execute("ALTER TABLE cierres RENAME TO apartados");
  HalfPosted& half = program->Window().Half();
  half.LookAtOpening();
  ASSERT_TRUE(Until([&] { return !half.Damage().empty(); }));
  EXPECT_TRUE(half.Damage().front().texto.starts_with("No se pudieron revisar los documentos: "))
      << half.Damage().front().texto;
  base.Execute("ALTER TABLE apartados RENAME TO cierres");
}

}  // namespace
}  // namespace tarvik::desktop
