// The main window: pages, screens as tabs and windows, holders, deletion through the door, the host's
// list form, themes and what is remembered.
#include "desktop/frame/main_window.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTabBar>
#include <QTableView>

#include "desktop/lists/document_list.h"
#include "desktop/lists/stock_view.h"
#include "desktop/screens/screen_view.h"
#include "goods_in/frm_entradas_wizard.h"
#include "tests/desktop/oficina.h"

namespace tarvik::desktop {
namespace {

class VentanaDePrueba : public Oficina {
 protected:
  void SetUp() override {
    Oficina::SetUp();
    Entrada(1, "CO");
    Entrada(2, "PE");
    Entrada(3, "PE");
    Salida(5, "PE");
  }
  void TearDown() override {
    const auto screens = plataforma.Screens();
    for (const auto& screen : screens) screen->Discard();
    ventana.reset();
  }
  void Abre(int width = 1366) {
    ventana = std::make_unique<MainWindow>(*oficina, *puerta);
    ventana->resize(width, 768);
    ventana->show();
    ventana->activateWindow();
    QCoreApplication::processEvents();
    ASSERT_TRUE(SumsReady(ventana->List(ListKind::Entradas).Model()));
  }
  DocumentList& Lista(ListKind kind = ListKind::Entradas) { return ventana->List(kind); }
  host::FormaMaestra& Parent() { return anfitrion->Parent(); }
  QTabBar& Pestanas() { return *ventana->findChild<QTabBar*>(); }
  QAction* Accion(const QString& text) {
    for (auto* action : ventana->findChildren<QAction*>()) {
      if (action->text().remove(QLatin1Char('&')).section(QLatin1Char('\t'), 0, 0) == text) return action;
    }
    return nullptr;
  }
  // A screen as the program opens one: loaded, its view made, brought up by the window.
  ScreenView* Pantalla(int number, bool read_only = false, bool modal = false) {
    if (read_only) {
      puerta->ConsultaEntrada(number);
    } else if (number == 0) {
      puerta->NuevaEntrada();
    } else {
      puerta->ModificaEntrada(number);
    }
    auto* view = new ScreenView(*oficina, *plataforma.Screens().back());
    ventana->Adopt(*view, modal);
    QTest::qWait(0);
    return view;
  }

  std::unique_ptr<MainWindow> ventana;
};

TEST_F(VentanaDePrueba, TheListOnShowIsTheHostsCatalogue) {
  Abre();
  EXPECT_EQ(Parent().catalogo_activo, "Entradas");
  for (const char* name : {"EntradasPendientes", "Salidas", "SalidasPendientes", "Entradas"}) {
    ASSERT_TRUE(ventana->ShowPage(name));
    EXPECT_EQ(Parent().catalogo_activo, name);
  }
  ASSERT_TRUE(ventana->ShowPage("Existencias"));
  EXPECT_EQ(Parent().catalogo_activo, "");
  EXPECT_FALSE(ventana->ShowPage("Compras"));
}

TEST_F(VentanaDePrueba, EachPageHasAKeyAndStandsInTheMenu) {
  Abre();
  QTest::keyClick(ventana.get(), Qt::Key_4, Qt::ControlModifier);
  EXPECT_EQ(Parent().catalogo_activo, "SalidasPendientes");
  QTest::keyClick(ventana.get(), Qt::Key_5, Qt::ControlModifier);
  EXPECT_TRUE(ventana->Stock().isVisible());
  QTest::keyClick(ventana.get(), Qt::Key_1, Qt::ControlModifier);
  EXPECT_TRUE(Lista().isVisible());
  for (auto* menu : ventana->menuBar()->actions()) {
    if (!menu->isVisible()) continue;
    for (auto* action : menu->menu()->actions()) {
      if (action->isSeparator() || action->menu() != nullptr) continue;
      EXPECT_TRUE(action->text().contains(QLatin1Char('\t'))) << action->text().toStdString();
    }
  }
}

TEST_F(VentanaDePrueba, DeletingAsksAndTakesTheRowOut) {
  Abre();
  ASSERT_TRUE(Lista().Select(2));
  respuesta = false;
  QTest::keyClick(&Lista().FilterField(), Qt::Key_Delete);
  ASSERT_EQ(cajas.size(), 1u);
  ASSERT_TRUE(Rests(Lista().Model()));
  EXPECT_EQ(Dato("SELECT COUNT(*) FROM entradas"), data::Value(3));
  EXPECT_EQ(Lista().Model().rowCount(), 3);
  EXPECT_EQ(Lista().Selected(), 2);

  respuesta = true;
  QTest::keyClick(&Lista().FilterField(), Qt::Key_Delete);
  EXPECT_EQ(cajas.size(), 2u);
  EXPECT_EQ(Dato("SELECT COUNT(*) FROM entradas WHERE entrada = 2"), data::Value(0));
  EXPECT_EQ(Lista().Model().RowOfKey(2), -1);
  EXPECT_EQ(Lista().Model().RowOfKey(3), 0);
  EXPECT_EQ(Parent().elementos, (std::vector<data::Value>{3, 1}));
}

TEST_F(VentanaDePrueba, AHeldDocumentIsNotDeleted) {
  Sql("UPDATE entradas SET ocupado = 1 WHERE entrada = 3");
  Abre();
  ASSERT_TRUE(Lista().Select(3));
  respuesta = true;
  QTest::keyClick(&Lista().FilterField(), Qt::Key_Delete);
  EXPECT_EQ(cajas.size(), 1u);
  EXPECT_EQ(Dato("SELECT COUNT(*) FROM entradas WHERE entrada = 3"), data::Value(1));
  EXPECT_EQ(Lista().Model().RowOfKey(3), 0);
}

TEST_F(VentanaDePrueba, TheKeysOfAListOpenThroughTheDoor) {
  Abre();
  ASSERT_TRUE(Lista().Select(3));
  QTest::keyClick(&Lista().FilterField(), Qt::Key_Return);
  ASSERT_EQ(plataforma.Screens().size(), 1u);
  auto* change = dynamic_cast<frmEntradasWizard*>(plataforma.Screens().back().get());
  ASSERT_NE(change, nullptr);
  EXPECT_EQ(change->Modo, "MODIFICACION");
  EXPECT_EQ(change->Entrada, 3);
  ASSERT_TRUE(Lista().Select(1));
  QTest::keyClick(&Lista().FilterField(), Qt::Key_Return, Qt::ControlModifier);
  ASSERT_EQ(plataforma.Screens().size(), 2u);
  EXPECT_EQ(dynamic_cast<frmEntradasWizard&>(*plataforma.Screens().back()).Modo, "CONSULTA");
  QTest::keyClick(&Lista().FilterField(), Qt::Key_Insert);
  ASSERT_EQ(plataforma.Screens().size(), 3u);
  EXPECT_EQ(dynamic_cast<frmEntradasWizard&>(*plataforma.Screens().back()).Modo, "ALTA");
}

TEST_F(VentanaDePrueba, ScreensStandAsTabsSeveralAtOnce) {
  Abre();
  EXPECT_FALSE(Pestanas().isVisible());
  ScreenView* first = Pantalla(2);
  ScreenView* second = Pantalla(3);
  EXPECT_EQ(ventana->Open(), (std::vector<ScreenView*>{first, second}));
  EXPECT_TRUE(Pestanas().isVisible());
  ASSERT_EQ(Pestanas().count(), 3);
  EXPECT_EQ(Pestanas().currentIndex(), 2);
  EXPECT_EQ(Pestanas().tabText(1), QStringLiteral("Entrada: 2"));
  EXPECT_TRUE(second->isVisible());
  EXPECT_FALSE(first->isVisible());
  QTest::keyClick(ventana.get(), Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_TRUE(first->isVisible());

  QSignalSpy deleted(first, &QObject::destroyed);
  first->Screen().Unload();
  EXPECT_EQ(Pestanas().count(), 2);
  EXPECT_EQ(ventana->Open(), std::vector<ScreenView*>{second});
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(deleted.size(), 1);
  second->Screen().Unload();
  EXPECT_FALSE(Pestanas().isVisible());
  EXPECT_TRUE(Lista().isVisible());
}

TEST_F(VentanaDePrueba, TheChoiceOfWindowsIsRemembered) {
  Abre();
  Accion(QStringLiteral("Pantallas en ventanas propias"))->trigger();
  EXPECT_TRUE(ajustes->value(QStringLiteral("pantallas/ventanas")).toBool());
  ScreenView* view = Pantalla(2);
  EXPECT_TRUE(view->isWindow());
  EXPECT_TRUE(view->isVisible());
  EXPECT_EQ(view->windowTitle(), QStringLiteral("Entrada: 2"));
  EXPECT_EQ(Pestanas().count(), 1);
  view->Screen().Unload();
  EXPECT_TRUE(ventana->Open().empty());
  ventana.reset();
  Abre();
  EXPECT_TRUE(Accion(QStringLiteral("Pantallas en ventanas propias"))->isChecked());
}

TEST_F(VentanaDePrueba, AModalScreenStandsBeforeTheOthers) {
  Abre();
  ScreenView* view = Pantalla(2, false, true);
  EXPECT_TRUE(view->isWindow());
  EXPECT_EQ(view->windowModality(), Qt::ApplicationModal);
  view->Screen().Unload();
  EXPECT_TRUE(ventana->Open().empty());
}

TEST_F(VentanaDePrueba, WhoHoldsADocumentIsShownAndOneThatIsReadIsHeldByNobody) {
  Abre();
  ScreenView* view = Pantalla(2);
  Pestanas().setCurrentIndex(0);
  Lista().Refresh();
  ASSERT_TRUE(Rests(Lista().Model()));
  ASSERT_TRUE(Lista().Select(2));
  EXPECT_TRUE(Lista().SelectedHeld());
  view->Screen().Unload();
  Pantalla(1, true);
  EXPECT_EQ(Dato("SELECT COUNT(*) FROM tenencias"), data::Value(0)) << "who only reads holds nothing";
  Pantalla(0);
  EXPECT_EQ(Dato("SELECT COUNT(*) FROM tenencias"), data::Value(0)) << "a new document has no row yet";
}

TEST_F(VentanaDePrueba, ADocumentLeftBehindIsFreedAfterAQuestionAndWithAMotive) {
  Sql("UPDATE entradas SET ocupado = 1 WHERE entrada = 3");
  Sql("INSERT INTO tenencias (tipo, documento, usuario, estacion, desde, vida) VALUES ('Entrada', 3, 'BETO', "
      "'E2', '2026-11-20 09:00:00', 99)");
  Abre();
  ASSERT_TRUE(Lista().Select(2));
  auto* release = Accion(QStringLiteral("Liberar documento"));
  EXPECT_FALSE(release->isEnabled()) << "nobody holds it";
  ASSERT_TRUE(Lista().Select(3));
  ASSERT_TRUE(release->isEnabled());
  release->trigger();
  ASSERT_EQ(cajas.size(), 1u);
  EXPECT_NE(cajas[0].find("La tiene BETO en la estación E2; su programa ya no está abierto."),
            std::string::npos)
      << cajas[0];
  EXPECT_EQ(Dato("SELECT ocupado FROM entradas WHERE entrada = 3"), data::Value(1));
  respuesta = true;
  ventana->ask_text = [](const QString&, const QString&) { return std::nullopt; };
  release->trigger();
  EXPECT_EQ(Dato("SELECT ocupado FROM entradas WHERE entrada = 3"), data::Value(1)) << "thought better of it";
  ventana->ask_text = [](const QString&, const QString&) { return QStringLiteral("se fue"); };
  release->trigger();
  EXPECT_EQ(Dato("SELECT ocupado FROM entradas WHERE entrada = 3"), data::Value(0));
  EXPECT_EQ(Dato("SELECT COUNT(*) FROM tenencias"), data::Value(0));
  EXPECT_NE(anfitrion->Bitacora().at(0).texto.find("se fue"), std::string::npos);
  ASSERT_TRUE(Rests(Lista().Model()));
  EXPECT_FALSE(release->isEnabled());
}

TEST_F(VentanaDePrueba, BeforeADeletionTheWindowSaysWhatWouldStayBehind) {
  Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad) VALUES (31, 2, 'MAR-16', 3)");
  Sql("INSERT INTO movsinv (operacion, ent_sal, articulo, cantidad, almacen, id_entrada) VALUES ('EN', 'E', "
      "'MAR-16', "
      "3, 1, 31)");
  Abre();
  ASSERT_TRUE(Lista().Select(2));
  Accion(QStringLiteral("Eliminar"))->trigger();
  ASSERT_EQ(cajas.size(), 1u) << "declined: the class is not asked";
  EXPECT_NE(cajas[0].find("1 movimiento en el inventario"), std::string::npos) << cajas[0];
  EXPECT_EQ(Dato("SELECT COUNT(*) FROM entradas WHERE entrada = 2"), data::Value(1));
  respuesta = true;
  Accion(QStringLiteral("Eliminar"))->trigger();
  EXPECT_EQ(cajas.size(), 3u) << "the class asks as it always does";
  EXPECT_EQ(Dato("SELECT COUNT(*) FROM entradas WHERE entrada = 2"), data::Value(0));
  EXPECT_EQ(anfitrion->Bitacora().at(0).acto, "elimina");
}

TEST_F(VentanaDePrueba, WhoMayNotFreeIsToldSoAndNothingChanges) {
  anfitrion->Ambiente().Parametro("Liberadores", "CARLA");
  Sql("UPDATE entradas SET ocupado = 1 WHERE entrada = 3");
  Abre();
  ASSERT_TRUE(Lista().Select(3));
  respuesta = true;
  ventana->ask_text = [](const QString&, const QString&) { return QString(); };
  Accion(QStringLiteral("Liberar documento"))->trigger();
  ASSERT_EQ(cajas.size(), 2u);
  EXPECT_NE(cajas[1].find("no tiene permiso"), std::string::npos);
  EXPECT_EQ(Dato("SELECT ocupado FROM entradas WHERE entrada = 3"), data::Value(1));
}

TEST_F(VentanaDePrueba, TheHostsRefillChoosesTheDocument) {
  Abre();
  Entrada(40, "CO");
  Parent().Call("LlenaEntradas", {40});
  ASSERT_TRUE(Rests(Lista().Model()));
  EXPECT_EQ(Lista().Selected(), 40);
  EXPECT_EQ(Lista().Model().rowCount(), 4);
  for (const char* call : {"CreaMenuPopUp", "ReseteaMenus", "EstableceMenus"}) Parent().Call(call, {});
}

TEST_F(VentanaDePrueba, TheHostsFocusBringsTheListsBack) {
  Abre();
  Pantalla(2);
  ASSERT_EQ(Pestanas().currentIndex(), 1);
  Parent().Call("SetFocus", {});
  EXPECT_EQ(Pestanas().currentIndex(), 0);
}

TEST_F(VentanaDePrueba, AKeyOfTheListsLeavesAScreenAlone) {
  Abre();
  Pantalla(2);
  EXPECT_FALSE(Accion(QStringLiteral("Eliminar"))->isEnabled());
  EXPECT_FALSE(Accion(QStringLiteral("Actualizar"))->isEnabled());
  EXPECT_TRUE(Accion(QStringLiteral("Cerrar pantalla"))->isEnabled());
  EXPECT_TRUE(Accion(QStringLiteral("Eliminar"))->shortcut().isEmpty());
  EXPECT_TRUE(Accion(QStringLiteral("Actualizar"))->shortcut().isEmpty());
}

TEST_F(VentanaDePrueba, TheRailCountsWhatWaitsAndIsNarrowInANarrowWindow) {
  Abre();
  auto* rail = ventana->findChild<Rail*>();
  ASSERT_TRUE(
      Until([&] { return rail->Items()[1]->accessibleName() == QStringLiteral("Pendientes, 2 en espera"); }));
  EXPECT_EQ(rail->Items()[3]->accessibleName(), QStringLiteral("Pendientes, 1 en espera"));
  EXPECT_FALSE(rail->Narrow());
  ventana->resize(measure::kNarrowWindow - 1, 700);
  QCoreApplication::processEvents();
  EXPECT_TRUE(rail->Narrow());
  EXPECT_EQ(rail->width(), measure::kRailNarrow);
  EXPECT_EQ(rail->Items()[1]->toolTip(), QStringLiteral("Pendientes, 2 en espera"));
}

TEST_F(VentanaDePrueba, AToolStandsInMenuAndRail) {
  Abre();
  auto* action = ventana->AddTool(QStringLiteral("&Otra cosa"), QKeySequence(QStringLiteral("Ctrl+Shift+O")),
                                  Glyph::Review);
  QSignalSpy triggered(action, &QAction::triggered);
  auto* item = ventana->findChild<Rail*>()->Items().last();
  EXPECT_EQ(item->accessibleName(), QStringLiteral("Otra cosa"));
  item->click();
  EXPECT_EQ(triggered.size(), 1);
  QTest::keyClick(ventana.get(), Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(triggered.size(), 2);
}

TEST_F(VentanaDePrueba, HelpAndHooksAreAskedForByKey) {
  Abre();
  QSignalSpy help(ventana.get(), &MainWindow::HelpRequested);
  QSignalSpy hooks(ventana.get(), &MainWindow::HooksRequested);
  QTest::keyClick(&Lista().FilterField(), Qt::Key_F1);
  QTest::keyClick(&Lista().FilterField(), Qt::Key_G, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(help.size(), 1);
  EXPECT_EQ(hooks.size(), 1);
}

TEST_F(VentanaDePrueba, ThemeAndPageAreRemembered) {
  Abre();
  QSignalSpy changed(ventana.get(), &MainWindow::ThemeChanged);
  Accion(QStringLiteral("Oscuro"))->trigger();
  EXPECT_EQ(changed.size(), 1);
  EXPECT_TRUE(tema.Dark());
  ventana->ShowPage("Salidas");
  ventana->close();
  ventana.reset();
  tema.Set(Theme::Mode::Light);
  ventana = std::make_unique<MainWindow>(*oficina, *puerta);
  EXPECT_TRUE(tema.Dark());
  EXPECT_EQ(Parent().catalogo_activo, "Salidas");
  EXPECT_TRUE(Accion(QStringLiteral("Oscuro"))->isChecked());
}

TEST_F(VentanaDePrueba, ColumnWidthsAreRemembered) {
  Abre();
  Lista().Table().setColumnWidth(DocumentListModel::Concept, 333);
  ventana->close();
  ventana.reset();
  Abre();
  EXPECT_EQ(Lista().Table().columnWidth(DocumentListModel::Concept), 333);
}

TEST_F(VentanaDePrueba, TheStatusLineSaysBaseUserStationAndDate) {
  Abre();
  QStringList texts;
  for (auto* label : ventana->findChildren<QLabel*>()) texts += label->text();
  for (const char* text :
       {"Base: sqlite::memory:", "Usuario: ANA", "Estación: E1", "Fecha de trabajo: 21/11/2026"}) {
    EXPECT_TRUE(texts.contains(QString::fromUtf8(text))) << text;
  }
}

TEST_F(VentanaDePrueba, ClosingTheWindowClosesTheScreensFirst) {
  Abre();
  Pantalla(2);
  ventana->close();
  plataforma.Advance(50);  // a screen may go a moment after it is asked
  ASSERT_TRUE(Until([&] { return !ventana->isVisible(); }));
  EXPECT_TRUE(ventana->Open().empty());
  EXPECT_EQ(Dato("SELECT ocupado FROM entradas WHERE entrada = 2"), data::Value(0));
}

TEST_F(VentanaDePrueba, TheWindowLeavesNothingBehindInTheHost) {
  Abre();
  ventana.reset();
  EXPECT_FALSE(Parent().al_llamar);
  Parent().Call("LlenaEntradas", {1});
}

}  // namespace
}  // namespace tarvik::desktop
