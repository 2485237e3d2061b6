// Pictures of the screens, for the manual and for looking at: opens the program on a base of its own,
// works a few documents by key, and saves what each window shows, in light and in dark.
//
//   build/release/desktop/tarvik_shots docs/img
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPainter>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <iostream>
#include <vector>

#include "desktop/frame/main_window.h"
#include "desktop/frame/notices.h"
#include "desktop/lists/document_list.h"
#include "desktop/lists/kardex_view.h"
#include "desktop/lists/list_tools.h"
#include "desktop/lists/saved_filters.h"
#include "desktop/lists/stock_view.h"
#include "desktop/platform/qt_platform.h"
#include "desktop/program/program.h"
#include "desktop/reading/half_posted.h"
#include "desktop/screens/screen_view.h"
#include "desktop/style/theme.h"
#include "desktop/windows/errors_window.h"
#include "desktop/windows/revision_window.h"
#include "host/anfitrion.h"
#include "service/door/entradas_salidas.h"
#include "wizard/document_wizard.h"

using namespace tarvik::desktop;

namespace {

void Type(const char* text) {
  for (const char* letter = text; *letter; ++letter) QTest::keyClick(QApplication::focusWidget(), *letter);
}
void Press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

void Line(const char* article, const char* quantity) {
  Type(article);
  Press(Qt::Key_Return);
  Type(quantity);
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
}

void Save(QWidget& window, const QString& path) {
  QTest::qWait(50);
  if (!window.grab().save(path)) std::cerr << "no se pudo guardar " << path.toStdString() << '\n';
}

// A model of the demonstration catalogue, half of it spread over its colours and sizes.
void Matrix(Program& program, const std::function<void()>& look) {
  program.Door().NuevaEntrada();
  QTest::qWait(0);
  auto& wizard = dynamic_cast<tarvik::DocumentWizard&>(*program.Platform().Screens().back());
  Type("COM");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  program.Platform().on_modal = [&](tarvik::forms::Form& form) {
    QTimer::singleShot(100, [&] {
      for (const char* quantity : {"2", "3", "1", "4", "2"}) {
        Type(quantity);
        Press(Qt::Key_Return);
      }
      Type("6");
      look();
      form.Unload();
    });
  };
  Type("CAM");
  Press(Qt::Key_Return);
  Type("24");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  program.Platform().on_modal = nullptr;
  wizard.Unload();
  QTest::qWait(0);
}

// A document that a program left behind in the middle of its posting, and errors of a step in one list.
void LeftBehind(Program& program, const QDir& folder, const QString& name) {
  program.Host().Conexion().Run("DELETE FROM movsinv WHERE operacion = 'EN' AND id_entrada > 2", {});
  MainWindow& window = program.Window();
  window.ShowPage("Entradas");
  window.Half().LookAtAll();
  (void)QTest::qWaitFor([&] { return window.Notices().isVisible(); });
  Save(window, folder.filePath(QStringLiteral("a-medias-") + name));
  program.Door().ConsultaEntrada(1);
  QTest::qWait(50);
  Save(window, folder.filePath(QStringLiteral("a-medias-consulta-") + name));
  const auto trouble = [](const char* time, const char* procedure) {
    const QString text = QStringLiteral("La base está ocupada por otra estación; no se guardó nada");
    return Trouble{QString::fromLatin1(time), QString::fromLatin1(procedure), text, text};
  };
  program.Errors().List({trouble("14:03:22", "SalvaEntrada"), trouble("14:03:27", "AfectaPartidas"),
                         trouble("14:03:27", "AfectaPartidas")});
  Save(program.Errors(), folder.filePath(QStringLiteral("avisos-") + name));
  program.Host().Conexion().Run("UPDATE prods SET alm1 = 77 WHERE articulo = 'MAR-16'", {});
  window.Revision().Reach();
  (void)QTest::qWaitFor([&] { return !window.Revision().Busy(); });
  Save(window.Revision(), folder.filePath(QStringLiteral("revision-") + name));
}

// The window in front, as large as a shop's monitor, its boxes answered.
void ComeUp(Program& program) {
  program.Platform().on_box = [](auto, const auto&, int) { return true; };
  MainWindow& window = program.Window();
  window.resize(1366, 768);
  window.show();
  window.activateWindow();
  (void)QTest::qWaitForWindowActive(&window);
}

std::vector<QByteArray> Articles(Program& program, const char* select) {
  std::vector<QByteArray> keys;
  for (const auto& row : program.Host().Conexion().Run(select, {}).rows) {
    keys.emplace_back(tarvik::data::ToText(row[0]).c_str());
  }
  return keys;
}

// One goods-in posted, one left pending, a third one under way: with an article refused, and with the next
// line.
void GoodsIn(Program& program, const std::function<void(const char*)>& save) {
  for (int document = 0; document < 3; ++document) {
    program.Door().NuevaEntrada();
    QTest::qWait(0);
    Type(document == 1 ? "DEV" : "COM");
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
    const auto articles =
        Articles(program, "SELECT articulo FROM prods WHERE precio1 > 0 ORDER BY descrip LIMIT 6");
    for (std::size_t line = 0; line < articles.size(); ++line) Line(articles[line], line % 2 ? "12" : "3");
    if (document == 2) break;
    if (document == 0) {
      // Without paper: the preview would take the keys that follow.
      dynamic_cast<tarvik::DocumentWizard&>(*program.Platform().Screens().back()).Check2.Value(0);
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_F5);
    }
    if (document == 1) program.Platform().Screens().back()->Unload();
    QTest::qWait(0);
  }
  Type("NO-EXISTE");
  Press(Qt::Key_F9);
  save("entradas-rechazo-");
  for (int back = 0; back < 9; ++back) Press(Qt::Key_Backspace);
  Type(Articles(program, "SELECT articulo FROM prods ORDER BY descrip LIMIT 1 OFFSET 9").front());
  Press(Qt::Key_Return);
  Type("24");
  save("entradas-");
}

void GoodsOut(Program& program, const std::vector<QByteArray>& stocked) {
  program.Door().NuevaSalida();
  QTest::qWait(0);
  Type("VTA");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  for (const QByteArray& article : stocked) Line(article, "2");
  Line(stocked[0], "40");
}

// A goods-out by scanner: lines, a code that nobody knows, one that is being bound, and one without stock.
void Tape(Program& program, const std::vector<QByteArray>& stocked,
          const std::function<void(const char*)>& save) {
  program.Door().NuevaSalida();
  QTest::qWait(0);
  auto& form = dynamic_cast<tarvik::DocumentWizard&>(*program.Platform().Screens().back());
  Type("VTA");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  form.Check4.Value(1);
  for (const QByteArray& article : stocked) program.Host().Lectura(article.toStdString());
  program.Host().Lectura(stocked[4].toStdString());
  program.Host().Lectura("7501055300120");
  program.Host().Lectura(stocked[0].toStdString());
  QTest::qWait(100);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_T, Qt::ControlModifier);
  QTest::qWait(50);
  save("cinta-");
  Press(Qt::Key_Return);
  Type("BOT");
  QTest::qWait(200);
  save("cinta-asigna-");
  form.Unload();
  QTest::qWait(0);
}

void Transfer(Program& program, const std::vector<QByteArray>& stocked) {
  program.Door().movimientoEstacion(0, false);
  QTest::qWait(0);
  Type("E1");
  Press(Qt::Key_Return);
  Type("E2");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  for (const QByteArray& article : stocked) {
    Line(article, "2");
    QTest::qWait(0);
  }
  Type(stocked[1]);
  Press(Qt::Key_Return);
  Type("1");
}

// What lies over the window as well.
void SaveWithPopup(QWidget& window, const QString& path) {
  QTest::qWait(50);
  QPixmap picture = window.grab();
  if (QWidget* over = QApplication::activePopupWidget()) {
    QPainter(&picture).drawPixmap(over->mapToGlobal(QPoint()) - window.mapToGlobal(QPoint()), over->grab());
    over->close();
  }
  if (!picture.save(path)) std::cerr << "no se pudo guardar " << path.toStdString() << '\n';
}

// Documents of a year, of which one article's movements go up and down.
void AYear(Program& program) {
  auto& base = program.Host().Conexion();
  const std::string days = "date('2026-11-20', '-' || (400 - i * 4) || ' days')";
  base.Run(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 90) INSERT INTO entradas "
      "(entrada, tipo_doc, f_emision, almacen, importe, estado, ocupado, observ, usuario) SELECT i + 100, "
      "CASE "
      "WHEN i % 4 = 0 THEN 'DEV' ELSE 'COM' END, " +
          days + ", 1, (i * 7919) % 9973, 'CO', 0, 'Remisión ' || (i * 31 % 997), 'ANA' FROM n",
      {});
  base.Run(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 90) INSERT INTO movsinv "
      "(operacion, ent_sal, movimiento, articulo, cantidad, almacen, tipo_doc, f_movim, usuhora, usuario, "
      "Precio, importe) SELECT CASE WHEN i % 6 = 1 THEN 'EN' ELSE 'SA' END, CASE WHEN i % 6 = 1 THEN 'E' "
      "ELSE "
      "'S' END, i + 100, 'MAR-16', CASE WHEN i % 6 = 1 THEN 40 + i % 5 ELSE 5 + i * 7 % 6 END, 1, CASE WHEN "
      "i "
      "% 6 = 1 THEN 'COM' ELSE 'VTA' END, " +
          days + ", '10:30:00', 'ANA', 120.5, 602.5 FROM n",
      {});
  base.Run("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, 'MAR-16', 31)", {});
}

// A list in another order, its filters and columns; stock, and from there the kardex of an article.
void ListsAtWork(Program& program, const QDir& folder, const QString& name) {
  MainWindow& window = program.Window();
  AYear(program);
  DocumentList& list = window.List(ListKind::Entradas);
  const auto path = [&](const char* what) { return folder.filePath(QString::fromUtf8(what) + name); };
  window.ShowPage("Entradas");
  list.Refresh();
  Press(Qt::Key_Escape);
  list.Tools().SortBy(DocumentListModel::Amount);
  list.Tools().SortBy(DocumentListModel::Amount);
  for (const auto& [filter, called] :
       {std::pair{"compra 11/2026", "Compras del mes"}, std::pair{"devolución", "Devoluciones"}}) {
    list.FilterField().setText(QString::fromUtf8(filter));
    auto* panel = list.Tools().ShowFilters();
    panel->NewName().setText(QString::fromUtf8(called));
    QTest::keyClick(&panel->NewName(), Qt::Key_Return);
  }
  list.FilterField().setText(QStringLiteral("proveedor 2"));
  QTest::qWait(200);
  Save(window, path("lista-orden-"));
  list.Tools().ShowFilters();
  SaveWithPopup(window, path("lista-filtros-"));
  list.Tools().ShowColumns();
  SaveWithPopup(window, path("lista-columnas-"));
  list.FilterField().clear();
  list.Tools().SortBy(DocumentListModel::Amount);
  window.ShowPage("Existencias");
  window.Stock().FilterField().setText(QStringLiteral("mar-16"));
  QTest::qWait(200);
  Save(window, path("existencias-"));
  QTest::keyClick(&window.Stock().FilterField(), Qt::Key_Return);
  QTest::qWait(300);
  Save(window, path("kardex-"));
  QTest::keyClick(&window.Stock().Kardex().Table(), Qt::Key_Escape);
  window.Stock().FilterField().clear();
}

void Shoot(QApplication& application, const QDir& folder, Theme::Mode mode, const QString& name) {
  QTemporaryDir place;
  QDir::setCurrent(place.path());  // the base's name in the status line, not where it lies
  Theme theme(mode);
  theme.ApplyTo(application);
  Program program(
      theme, {QStringLiteral("sqlite:tienda.db"), QStringLiteral("ANA"), QStringLiteral("E1"), place.path(),
              QStringLiteral(TARVIK_SOURCE_DIR "/examples/ganchos_estaciones"), true});
  ComeUp(program);
  MainWindow& window = program.Window();
  const auto save = [&](const char* what) { Save(window, folder.filePath(QString::fromUtf8(what) + name)); };
  GoodsIn(program, save);
  const auto stocked = Articles(
      program, "SELECT articulo FROM existenciaalmacen WHERE existencia > 0 ORDER BY articulo LIMIT 5");
  GoodsOut(program, stocked);
  save("salidas-");
  Tape(program, stocked, save);
  Matrix(program,
         [&] { Save(*QApplication::activeWindow(), folder.filePath(QStringLiteral("modelos-") + name)); });
  Transfer(program, stocked);
  save("estaciones-");
  window.ShowPage("Entradas");
  save("lista-");
  ListsAtWork(program, folder, name);
  LeftBehind(program, folder, name);
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  const QDir folder(
      QFileInfo(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral(".")).absoluteFilePath());
  if (!folder.mkpath(QStringLiteral("."))) return 2;
  Shoot(application, folder, Theme::Mode::Light, QStringLiteral("claro.png"));
  Shoot(application, folder, Theme::Mode::Dark, QStringLiteral("oscuro.png"));
  return 0;
}
