// The kardex of an article as an operator reaches it from stock, and leaves it again.
#include <QLineEdit>
#include <QSignalSpy>
#include <QTableView>

#include "desktop/lists/kardex_view.h"
#include "desktop/lists/list_tools.h"
#include "desktop/lists/stock_chart.h"
#include "desktop/lists/stock_view.h"
#include "tests/desktop/escritorio.h"
#include "tests/desktop/oficina.h"

namespace tarvik::desktop {
namespace {

class KardexDePrueba : public Oficina {
 protected:
  void SetUp() override {
    Oficina::SetUp();
    Sql("DELETE FROM prods WHERE articulo NOT IN ('MAR-16', 'TAL-12')");
    Sql("INSERT INTO existenciaalmacen VALUES (1, 'MAR-16', 6), (1, 'TAL-12', 1)");
    Entrada(7);
    Salida(8);
    Sql("INSERT INTO entpart (id_entrada, entrada) VALUES (1, 7)");
    Sql("INSERT INTO salpart (id_salida, salida) VALUES (1, 8)");
    Movimiento("EN", 10, "2026-10-20", 1, 0);
    Movimiento("SA", 5, "2026-11-03", 0, 1);
    Movimiento("EN", 1, "2026-11-20", 99, 0);  // of a document that is gone
    vista = std::make_unique<StockView>(*oficina, *lector);
    vista->resize(1200, 700);
    vista->show();
    vista->activateWindow();
    ASSERT_TRUE(SumsReady(vista->Model()));
  }
  void Movimiento(const char* operation, double quantity, const char* date, int in_line, int out_line) {
    Sql("INSERT INTO movsinv (operacion, ent_sal, movimiento, articulo, cantidad, almacen, tipo_doc, "
        "f_movim, "
        "id_entrada, id_salida) VALUES (?, ?, 500, 'MAR-16', ?, 1, 'COM', ?, ?, ?)",
        {operation, std::string(operation) == "SA" ? "S" : "E", quantity, date, in_line, out_line});
  }
  void Entra() {
    QTest::keyClick(&vista->FilterField(), Qt::Key_Return);
    ASSERT_TRUE(vista->InKardex());
    ASSERT_TRUE(Until([&] { return Saldo(0) != QString() && Rests(vista->Kardex().Model()); }));
  }
  QString Celda(int row, int column) { return vista->Kardex().Model().index(row, column).data().toString(); }
  QString Saldo(int row) { return Celda(row, LedgerModel::Balance); }

  std::unique_ptr<StockView> vista;
};

TEST_F(KardexDePrueba, EnterShowsTheMovementsWithTheStockAfterEachAndEscComesBack) {
  Entra();
  ASSERT_EQ(vista->Kardex().Model().rowCount(), 3);
  EXPECT_EQ(Saldo(0), QStringLiteral("6"));
  EXPECT_EQ(Saldo(1), QStringLiteral("5"));
  EXPECT_EQ(Saldo(2), QStringLiteral("10"));
  EXPECT_EQ(Celda(1, LedgerModel::Out), QStringLiteral("5"));
  EXPECT_EQ(Celda(1, LedgerModel::In), QString());
  EXPECT_EQ(Celda(1, LedgerModel::Document), QStringLiteral("8")) << "the document, not its folio";
  EXPECT_EQ(Celda(0, LedgerModel::Document), QStringLiteral("500")) << "where it is gone, the ledger's";
  EXPECT_EQ(vista->Kardex().SumsText(), QStringLiteral("3 movimientos    entra 11    sale 5"));
  QTest::keyClick(&vista->Kardex().Table(), Qt::Key_Escape);
  EXPECT_FALSE(vista->InKardex());
  EXPECT_EQ(vista->Table().currentIndex().data(StockModel::ArticleRole).toString(), QStringLiteral("MAR-16"));
  EXPECT_TRUE(vista->Table().hasFocus());
}

TEST_F(KardexDePrueba, EnterOnAMovementOpensItsDocument) {
  Entra();
  QSignalSpy asked(vista.get(), &StockView::DocumentRequested);
  auto& table = vista->Kardex().Table();
  QTest::keyClick(&table, Qt::Key_Return);
  EXPECT_EQ(asked.size(), 0);
  EXPECT_TRUE(vista->Kardex().Tools().Foot().Said().contains(QStringLiteral("ya no está")));
  QTest::keyClick(&table, Qt::Key_Down);
  QTest::keyClick(&table, Qt::Key_Return);
  QTest::keyClick(&table, Qt::Key_Down);
  QTest::keyClick(&table, Qt::Key_Return);
  ASSERT_EQ(asked.size(), 2);
  EXPECT_EQ(asked[0][0].value<host::Retenido>(), (host::Retenido{host::Tipo::Salida, 8}));
  EXPECT_EQ(asked[1][0].value<host::Retenido>(), (host::Retenido{host::Tipo::Entrada, 7}));
}

TEST_F(KardexDePrueba, DatesNarrowItAndTheStockStaysTheSame) {
  Entra();
  auto& kardex = vista->Kardex();
  QTest::keyClicks(&kardex.From(), QStringLiteral("11/2026"));
  ASSERT_TRUE(Until([&] { return kardex.Model().rowCount() == 2; }));
  EXPECT_EQ(Saldo(1), QStringLiteral("5"));
  QTest::keyClicks(&kardex.To(), QStringLiteral("3/11/2026"));
  ASSERT_TRUE(Until([&] { return kardex.Model().rowCount() == 1; }));
  EXPECT_EQ(kardex.SumsText(), QStringLiteral("1 movimiento    entra 0    sale 5"));
  EXPECT_EQ(kardex.Chart().Told(), QStringLiteral("03/11/2026:  5"));
  kardex.To().setFocus();
  kardex.To().setText(QStringLiteral("ayer"));
  QTest::keyClick(&kardex.To(), Qt::Key_Return);
  EXPECT_TRUE(kardex.To().property("refused").toBool());
  EXPECT_EQ(kardex.Model().rowCount(), 1) << "what was asked for before";
  QTest::keyClick(&kardex.Table(), Qt::Key_Escape);
  Entra();
  EXPECT_EQ(kardex.Model().rowCount(), 3) << "begun anew";
}

TEST_F(KardexDePrueba, TheChartTellsTheStockOfTheDay) {
  Entra();
  auto& kardex = vista->Kardex();
  EXPECT_EQ(kardex.Chart().Told(), QStringLiteral("20/11/2026:  6"));
  QTest::keyClick(&kardex.Table(), Qt::Key_End, Qt::ControlModifier);
  ASSERT_TRUE(Until([&] { return kardex.Chart().Told() == QStringLiteral("20/10/2026:  10"); }))
      << kardex.Chart().Told().toStdString();
  const QPoint middle(kardex.Chart().width() / 2, kardex.Chart().height() / 2);
  QTest::mouseMove(&kardex.Chart(), middle);
  ASSERT_TRUE(Until([&] { return kardex.Chart().Told().endsWith(QStringLiteral(":  5")); }))
      << kardex.Chart().Told().toStdString();
}

TEST_F(KardexDePrueba, TheKardexBecomesAFileWithItsStock) {
  Entra();
  auto& tools = vista->Kardex().Tools();
  tools.ask_where = [&](const QString&) { return carpeta.filePath(QStringLiteral("kardex.csv")); };
  QTest::keyClick(&vista->Kardex().Table(), Qt::Key_E, Qt::ControlModifier);
  ASSERT_TRUE(Until([&] { return !tools.Foot().UnderWay(); }));
  QFile file(carpeta.filePath(QStringLiteral("kardex.csv")));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QStringList lines = QString::fromUtf8(file.readAll()).split(QStringLiteral("\r\n"));
  ASSERT_EQ(lines.size(), 5);
  EXPECT_TRUE(lines[0].startsWith(QStringLiteral("Fecha,Hora,Movimiento,Número,Concepto,Entra,Sale,Saldo")));
  EXPECT_TRUE(lines[2].startsWith(QStringLiteral("2026-11-03,,Salida,8,COM  Compra a proveedor,,5,5,")));
}

TEST_F(KardexDePrueba, AScannersEnterWaitsForItsArticle) {
  auto& field = vista->FilterField();
  QTest::keyClicks(&field, QStringLiteral("TAL-12"));
  QTest::keyClick(&field, Qt::Key_Return);
  ASSERT_TRUE(Until([&] { return vista->InKardex(); }));
  EXPECT_EQ(vista->Table().currentIndex().data(StockModel::ArticleRole).toString(), QStringLiteral("TAL-12"));
}

// In the whole program: goods are received and posted, and later looked up from stock.
class KardexEnElPrograma : public Escritorio {};

TEST_F(KardexEnElPrograma, FromStockToTheDocumentThatMovedItAndBackByKeysAlone) {
  const std::string article = Article(0);
  Receiving();
  Line(QString::fromStdString(article), QStringLiteral("7"));
  Press(Qt::Key_F5);
  Settle();
  MainWindow& window = program->Window();
  QTest::keyClick(&window, Qt::Key_5, Qt::ControlModifier);
  StockView& stock = window.Stock();
  ASSERT_TRUE(stock.isVisible());
  Type(QString::fromStdString(article));
  Press(Qt::Key_Return);
  ASSERT_TRUE(QTest::qWaitFor([&] { return stock.InKardex() && stock.Kardex().Model().rowCount() == 1; }));
  ASSERT_TRUE(QTest::qWaitFor([&] { return stock.Kardex().Table().currentIndex().isValid(); }));
  EXPECT_EQ(QApplication::focusWidget(), &stock.Kardex().Table());

  Press(Qt::Key_Return);
  Settle();
  ASSERT_FALSE(program->Platform().Screens().empty());
  auto& opened = dynamic_cast<DocumentWizard&>(*program->Platform().Screens().back());
  EXPECT_EQ(host::DocumentoDe(opened), (host::Retenido{host::Tipo::Entrada, 1}));
  EXPECT_TRUE(opened.SoloLectura()) << "posted: to be read, not changed";
  QTest::keyClick(&window, Qt::Key_W, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([&] { return program->Platform().Screens().empty(); }));
  EXPECT_TRUE(stock.InKardex()) << "where one came from";
  ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == &stock.Kardex().Table(); }));
  Press(Qt::Key_Escape);
  EXPECT_FALSE(stock.InKardex());
  EXPECT_EQ(stock.Table().currentIndex().data(StockModel::ArticleRole).toString().toStdString(), article);
}

}  // namespace
}  // namespace tarvik::desktop
