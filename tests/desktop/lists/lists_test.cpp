// The lists: what a typed filter means, paging by key, the bounded cache, sums, keys, stock.
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTableView>

#include "desktop/lists/document_list.h"
#include "desktop/lists/stock_view.h"
#include "desktop/style/list_cells.h"
#include "tests/desktop/oficina.h"

namespace tarvik::desktop {
namespace {

std::vector<int> Numbers(const DocumentListModel& model) {
  std::vector<int> numbers;
  for (int row = 0; row < model.rowCount(); ++row) numbers.push_back(model.NumberAt(row));
  return numbers;
}

class ListasDePrueba : public Oficina {
 protected:
  void Abre(ListKind kind = ListKind::Entradas) {
    modelo = std::make_unique<DocumentListModel>(*lector, kind, "###,###,##0.00");
    modelo->Refresh();
    ASSERT_TRUE(SumsReady(*modelo));
  }
  std::vector<int> Con(const char* filter) {
    modelo->SetFilter(QString::fromUtf8(filter));
    EXPECT_TRUE(SumsReady(*modelo));
    EXPECT_EQ(modelo->Total()->cuantos, modelo->rowCount()) << filter;
    return Numbers(*modelo);
  }

  std::unique_ptr<DocumentListModel> modelo;
};

TEST_F(ListasDePrueba, NewestFirstWithWhatAnOperatorReads) {
  Entrada(7, "CO", "COM", "Remisión 88", {2026, 11, 19}, 1234.5);
  Entrada(12, "PE", "DEV", "", {2026, 11, 20}, 999);
  Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad, precio) VALUES (1, 12, 'MAR-16', 4, "
      "2.5)");
  Abre();
  EXPECT_EQ(Numbers(*modelo), (std::vector<int>{12, 7}));
  const auto text = [&](int row, int column) {
    return modelo->index(row, column).data().toString().toStdString();
  };
  EXPECT_EQ(text(1, DocumentListModel::Number), "7");
  EXPECT_EQ(text(1, DocumentListModel::IssueDate), "19/11/2026");
  EXPECT_EQ(text(1, DocumentListModel::Concept), "COM  Compra a proveedor");
  EXPECT_EQ(text(1, DocumentListModel::Remarks), "Remisión 88");
  EXPECT_EQ(text(1, DocumentListModel::Warehouse), "1  Almacén central");
  EXPECT_EQ(text(1, DocumentListModel::Amount), "1,234.50");
  EXPECT_EQ(text(1, DocumentListModel::State), "Afectado");
  EXPECT_EQ(text(0, DocumentListModel::State), "Pendiente");
  EXPECT_EQ(text(0, DocumentListModel::Amount), "10.00") << "a pending one is worth its lines";
  EXPECT_EQ(modelo->index(0, DocumentListModel::State).data(CellDelegate::ChipRole),
            QStringLiteral("pendiente"));
  EXPECT_EQ(text(0, DocumentListModel::Holder), "");
  EXPECT_EQ(modelo->CountText().toStdString(), "2 documentos");
  EXPECT_EQ(modelo->TotalText().toStdString(), "1,244.50");
}

TEST_F(ListasDePrueba, TheHolderIsWhoHasALeaseAndElseWhoseFlagItIs) {
  Entrada(1, "PE");
  Entrada(2, "PE");
  Entrada(3, "PE");
  Sql("UPDATE entradas SET ocupado = 1 WHERE entrada < 3");
  Sql("INSERT INTO tenencias (tipo, documento, usuario, estacion, desde, vida) VALUES ('Entrada', 1, 'ANA', "
      "'E1', '2026-11-21 12:31:00', 1)");
  Sql("INSERT INTO tenencias (tipo, documento, usuario, estacion, desde, vida) VALUES ('Entrada', 1, 'EVA', "
      "'E9', '2026-11-21 12:40:00', 2)");
  Abre();
  const auto holder = [&](int row) {
    return modelo->index(row, DocumentListModel::Holder).data().toString();
  };
  EXPECT_EQ(holder(0), QString());
  EXPECT_EQ(holder(1), QStringLiteral("BETO")) << "the last to save, where nothing else is known";
  EXPECT_EQ(holder(2), QStringLiteral("EVA · E9 · 21/11 12:40")) << "of two the later; one row all the same";
  EXPECT_EQ(modelo->rowCount(), 3);
  EXPECT_TRUE(modelo->index(2, 0).data(DocumentListModel::HeldRole).toBool());
  EXPECT_FALSE(modelo->index(0, 0).data(DocumentListModel::HeldRole).toBool());
}

TEST_F(ListasDePrueba, PendingListsHoldPendingDocumentsAlone) {
  Entrada(1, "PE");
  Entrada(2, "CO");
  Salida(1, "CO");
  Salida(5, "PE");
  Abre(ListKind::EntradasPendientes);
  EXPECT_EQ(Numbers(*modelo), std::vector<int>{1});
  Abre(ListKind::SalidasPendientes);
  EXPECT_EQ(Numbers(*modelo), std::vector<int>{5});
  Abre(ListKind::Salidas);
  EXPECT_EQ(Numbers(*modelo), (std::vector<int>{5, 1}));
}

TEST_F(ListasDePrueba, EachKindOfFilterFindsItsDocuments) {
  Entrada(10, "CO", "COM", "Remisión urgente", {2026, 11, 19});
  Entrada(104, "CO", "DEV", "caja con señal", {2026, 11, 20});
  Entrada(1042, "PE", "A++", "100% REMISIÓN", {2025, 11, 20});
  Entrada(2104, "CO", "COM", "", {2026, 10, 20});
  Abre();
  EXPECT_EQ(Con("104"), (std::vector<int>{1042, 104}));
  EXPECT_EQ(Con("1"), (std::vector<int>{1042, 104, 10}));
  EXPECT_EQ(Con("0"), std::vector<int>{});
  EXPECT_EQ(Con("11/2026"), (std::vector<int>{104, 10}));
  EXPECT_EQ(Con("20/11/2026"), std::vector<int>{104});
  EXPECT_EQ(Con("20/11"), (std::vector<int>{1042, 104}));
  EXPECT_EQ(Con("remision"), (std::vector<int>{1042, 10}));
  EXPECT_EQ(Con("remisión URG"), std::vector<int>{10});
  EXPECT_EQ(Con("devolucion"), std::vector<int>{104}) << "by the concept's description";
  EXPECT_EQ(Con("com"), (std::vector<int>{2104, 10})) << "by the concept";
  EXPECT_EQ(Con("SEÑAL"), std::vector<int>{104});
  EXPECT_EQ(Con("100%"), std::vector<int>{1042}) << "a mark of the pattern's is a character like others";
  EXPECT_EQ(Con("r*n"), std::vector<int>{});
  EXPECT_EQ(Con("a++"), std::vector<int>{1042});
  EXPECT_EQ(Con("' OR 1=1 --"), std::vector<int>{});
  EXPECT_EQ(Con("proveedor 2"), std::vector<int>{2104}) << "one word in the concept, the other in the number";
  EXPECT_EQ(Con("almacen pendiente"), std::vector<int>{1042});
  EXPECT_EQ(Con(""), (std::vector<int>{2104, 1042, 104, 10}));
}

TEST_F(ListasDePrueba, PagesFollowEachOtherWithoutGapOrRepetition) {
  Entradas(1050);
  Abre();
  EXPECT_EQ(modelo->rowCount(), PagedModel::kPage);
  EXPECT_EQ(modelo->Total()->cuantos, 1050);
  EXPECT_DOUBLE_EQ(modelo->Total()->total, 10500);
  while (modelo->canFetchMore({})) {
    modelo->fetchMore({});
    EXPECT_FALSE(modelo->canFetchMore({})) << "one page at a time";
    ASSERT_TRUE(Rests(*modelo));
  }
  ASSERT_EQ(modelo->rowCount(), 1050);
  EXPECT_TRUE(modelo->Complete());
  for (int row = 0; row < 1050; ++row) ASSERT_EQ(modelo->NumberAt(row), 1050 - row);
}

TEST_F(ListasDePrueba, OldPagesLeaveMemoryAndComeBackWhenShown) {
  Entradas(PagedModel::kPage * (PagedModel::kKeptPages + 5));
  Abre();
  while (modelo->canFetchMore({})) {
    modelo->fetchMore({});
    ASSERT_TRUE(Rests(*modelo));
  }
  EXPECT_EQ(modelo->PagesInMemory(), PagedModel::kKeptPages);
  const int last = modelo->rowCount();
  EXPECT_EQ(modelo->Keys().size(), static_cast<std::size_t>(last));
  EXPECT_EQ(modelo->Keys().front(), last);
  Sql("DELETE FROM entradas WHERE entrada = ?", {last - 3});  // meanwhile, by another station
  EXPECT_FALSE(modelo->index(0, 0).data().isValid());
  ASSERT_TRUE(Until([&] { return modelo->index(0, 0).data().isValid(); }));
  EXPECT_EQ(modelo->NumberAt(0), last);
  EXPECT_EQ(modelo->NumberAt(3), last - 4);
  EXPECT_EQ(modelo->rowCount(), last - 1);
  EXPECT_EQ(modelo->RowOfKey(1), last - 2);
  EXPECT_LE(modelo->PagesInMemory(), PagedModel::kKeptPages);
}

TEST_F(ListasDePrueba, ASearchGoesThroughTheWholeTable) {
  Entradas(2 * host::CursorDeListado::kPaso + 10);
  Sql("UPDATE entradas SET observ = 'la primera' WHERE entrada = 1");
  Sql("UPDATE entradas SET observ = 'la primera de todas' WHERE entrada = ?", {host::CursorDeListado::kPaso});
  Abre();
  EXPECT_EQ(Con("primera"), (std::vector<int>{host::CursorDeListado::kPaso, 1}));
}

TEST_F(ListasDePrueba, TheLastOfSeveralFiltersCounts) {
  Entradas(3000);
  Abre();
  for (const char* typed : {"1", "12", "123"}) modelo->SetFilter(QString::fromUtf8(typed));
  EXPECT_FALSE(modelo->Total()) << "what was added up belongs to another filter";
  ASSERT_TRUE(SumsReady(*modelo));
  EXPECT_EQ(modelo->Total()->cuantos, 11);  // 123 and 1230 to 1239
  EXPECT_EQ(modelo->NumberAt(0), 1239);
}

TEST_F(ListasDePrueba, ARowThatIsRemovedLeavesRowsAndSums) {
  Entradas(5);
  Abre();
  modelo->RemoveKey(3);
  modelo->RemoveKey(99);
  EXPECT_EQ(Numbers(*modelo), (std::vector<int>{5, 4, 2, 1}));
  Sql("DELETE FROM entradas WHERE entrada = 3");
  modelo->Refresh();
  ASSERT_TRUE(Until([&] { return modelo->Total()->cuantos == 4; }));
}

TEST_F(ListasDePrueba, AReadingThatFailsSaysWhyAndEndsQuietly) {
  Entradas(3);
  Abre();
  Sql("ALTER TABLE ALMACEN RENAME TO ALMACENES");
  QSignalSpy failed(modelo.get(), &PagedModel::Failed);
  modelo->Refresh();
  ASSERT_TRUE(Rests(*modelo));
  ASSERT_EQ(failed.size(), 1);
  EXPECT_TRUE(failed[0][0].toString().contains(QStringLiteral("La tabla no existe")));
  EXPECT_FALSE(modelo->canFetchMore({}));
  EXPECT_EQ(modelo->rowCount(), 3) << "what was on show stays";
  Sql("ALTER TABLE ALMACENES RENAME TO ALMACEN");
  modelo->Refresh();
  ASSERT_TRUE(Rests(*modelo));
  EXPECT_FALSE(modelo->Failing());
}

TEST_F(ListasDePrueba, AModelMayDieWhileItReads) {
  Entradas(5000);
  for (int i = 0; i < 20; ++i) {
    DocumentListModel short_lived(*lector, ListKind::Entradas, "0");
    short_lived.Refresh();
  }
  Abre();  // the reader goes on
  EXPECT_EQ(modelo->Total()->cuantos, 5000);
}

class ListaDePrueba : public ListasDePrueba {
 protected:
  void Muestra() {
    lista = std::make_unique<DocumentList>(*oficina, *lector, ListKind::Entradas);
    lista->resize(1200, 600);
    lista->show();
    lista->activateWindow();
    lista->FilterField().setFocus();
    ASSERT_TRUE(SumsReady(lista->Model()));
  }
  std::unique_ptr<DocumentList> lista;
};

TEST_F(ListaDePrueba, TheKeysTellWhatIsWantedOfTheChosenDocument) {
  Entradas(30);
  Muestra();
  EXPECT_EQ(lista->Selected(), 30);
  QSignalSpy opened(lista.get(), &DocumentList::OpenRequested);
  QSignalSpy read(lista.get(), &DocumentList::ReadRequested);
  QSignalSpy made(lista.get(), &DocumentList::NewRequested);
  QSignalSpy deleted(lista.get(), &DocumentList::DeleteRequested);
  auto* field = &lista->FilterField();
  QTest::keyClick(field, Qt::Key_Down);
  QTest::keyClick(field, Qt::Key_Down);
  EXPECT_EQ(lista->Selected(), 28);
  QTest::keyClick(field, Qt::Key_Return);
  QTest::keyClick(field, Qt::Key_Return, Qt::ControlModifier);
  QTest::keyClick(field, Qt::Key_Insert);
  QTest::keyClick(field, Qt::Key_Delete);
  ASSERT_EQ(opened.size(), 1);
  EXPECT_EQ(opened[0][0].toInt(), 28);
  ASSERT_EQ(read.size(), 1);
  EXPECT_EQ(read[0][0].toInt(), 28);
  EXPECT_EQ(made.size(), 1);
  ASSERT_EQ(deleted.size(), 1);
  EXPECT_EQ(deleted[0][0].toInt(), 28);

  auto* table = &lista->Table();
  table->setFocus();
  QTest::keyClick(table, Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(opened.size(), 2);
}

TEST_F(ListaDePrueba, TypingGoesToTheFilterFromTheTableToo) {
  Entradas(30);
  Muestra();
  lista->Table().setFocus();
  QTest::keyClicks(&lista->Table(), QStringLiteral("1"));
  QTest::keyClicks(&lista->FilterField(), QStringLiteral("2"));
  EXPECT_EQ(lista->FilterField().text(), QStringLiteral("12"));
  ASSERT_TRUE(SumsReady(lista->Model()));
  EXPECT_EQ(Numbers(lista->Model()), std::vector<int>{12});
  EXPECT_EQ(lista->Selected(), 12);
  QSignalSpy deleted(lista.get(), &DocumentList::DeleteRequested);
  QTest::keyClick(&lista->FilterField(), Qt::Key_Home);
  QTest::keyClick(&lista->FilterField(), Qt::Key_Delete);
  EXPECT_EQ(deleted.size(), 0) << "the key is the text's";
  EXPECT_EQ(lista->FilterField().text(), QStringLiteral("2"));
  QTest::keyClick(&lista->FilterField(), Qt::Key_Escape);
  EXPECT_EQ(lista->FilterField().text(), QString());
  ASSERT_TRUE(SumsReady(lista->Model()));
  EXPECT_EQ(lista->Model().rowCount(), 30);
}

TEST_F(ListaDePrueba, RefreshingStaysOnTheChosenDocumentHoweverDeep) {
  Entradas(1000);
  Muestra();
  while (lista->Model().rowCount() < 600) {
    lista->Model().fetchMore({});
    ASSERT_TRUE(Rests(lista->Model()));
  }
  ASSERT_TRUE(lista->Select(450));
  Entrada(1001);
  QTest::keyClick(&lista->FilterField(), Qt::Key_F5);
  ASSERT_TRUE(Rests(lista->Model()));
  EXPECT_EQ(lista->Model().NumberAt(0), 1001);
  EXPECT_EQ(lista->Selected(), 450);
  lista->Refresh(1001);
  ASSERT_TRUE(Rests(lista->Model()));
  EXPECT_EQ(lista->Selected(), 1001);
}

TEST_F(ListaDePrueba, EveryControlHasANameToBeRead) {
  Muestra();
  EXPECT_FALSE(lista->FilterField().accessibleName().isEmpty());
  EXPECT_FALSE(lista->Table().accessibleName().isEmpty());
}

TEST_F(ListasDePrueba, StockShowsEachWarehouseAndArticlesWithoutAny) {
  Sql("DELETE FROM prods WHERE articulo NOT IN ('MAR-16', 'TAL-12', 'PIN-EL8')");
  Sql("INSERT INTO existenciaalmacen VALUES (1, 'MAR-16', 5), (2, 'MAR-16', -2.5), (1, 'TAL-12', 1)");
  StockModel stock(*lector, "###,###,##0.####");
  stock.Refresh();
  ASSERT_TRUE(SumsReady(stock));
  ASSERT_EQ(stock.rowCount(), 4);
  EXPECT_EQ(stock.Total()->cuantos, 3);
  EXPECT_EQ(stock.index(0, StockModel::Warehouse).data().toString(), QStringLiteral("1  Almacén central"));
  EXPECT_EQ(stock.index(1, StockModel::Stock).data().toString(), QStringLiteral("-2.5"));
  EXPECT_TRUE(stock.index(1, StockModel::Stock).data(CellDelegate::BelowZeroRole).toBool());
  EXPECT_EQ(stock.index(2, StockModel::Article).data().toString(), QStringLiteral("PIN-EL8"));
  EXPECT_EQ(stock.index(2, StockModel::Stock).data().toString(), QStringLiteral("0"));
  stock.SetFilter(QStringLiteral("uña martillo"));
  ASSERT_TRUE(SumsReady(stock));
  EXPECT_EQ(stock.rowCount(), 2);
}

TEST_F(ListasDePrueba, TheLedgerIsOfTheChosenArticleAndWarehouse) {
  Sql("DELETE FROM prods WHERE articulo <> 'MAR-16'");
  Sql("INSERT INTO existenciaalmacen VALUES (1, 'MAR-16', 5), (2, 'MAR-16', 3)");
  for (int i = 1; i <= 3; ++i) {
    Sql("INSERT INTO movsinv (operacion, movimiento, articulo, cantidad, ent_sal, almacen, tipo_doc, "
        "f_movim) "
        "VALUES (?, ?, 'MAR-16', 4, ?, ?, 'COM', '2026-11-20')",
        {i == 2 ? "SA" : "EN", i, i == 2 ? "S" : "E", i == 3 ? 2.0 : 1.0});
  }
  StockView view(*oficina, *lector);
  view.resize(1200, 700);
  view.show();
  ASSERT_TRUE(Until([&] { return view.Ledger().rowCount() == 2; }));
  EXPECT_EQ(view.Ledger().index(0, LedgerModel::Document).data().toString(), QStringLiteral("2"));
  EXPECT_EQ(view.Ledger().index(0, LedgerModel::Out).data().toString(), QStringLiteral("4"));
  EXPECT_EQ(view.Ledger().index(0, LedgerModel::In).data().toString(), QString());
  EXPECT_EQ(view.Ledger().index(1, LedgerModel::In).data().toString(), QStringLiteral("4"));
  QTest::keyClick(&view.FilterField(), Qt::Key_Down);
  ASSERT_TRUE(Until([&] { return view.Ledger().rowCount() == 1; }));
  EXPECT_EQ(view.Ledger().index(0, LedgerModel::Document).data().toString(), QStringLiteral("3"));

  // Read again, with a movement of another station: the same warehouse is still the chosen one.
  Sql("INSERT INTO movsinv (operacion, movimiento, articulo, cantidad, ent_sal, almacen, f_movim) "
      "VALUES ('EN', 4, 'MAR-16', 1, 'E', 2, '2026-11-20')");
  QTest::keyClick(&view.FilterField(), Qt::Key_F5);
  ASSERT_TRUE(Until([&] { return view.Ledger().rowCount() == 2; }));
  EXPECT_EQ(view.Ledger().index(0, LedgerModel::Document).data().toString(), QStringLiteral("4"));
  EXPECT_EQ(view.Ledger().index(1, LedgerModel::Document).data().toString(), QStringLiteral("3"));
}

}  // namespace
}  // namespace tarvik::desktop
