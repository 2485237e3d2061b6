// What a list offers beside its rows, by the keys of an operator: order, columns, copies, files, filters by
// name.
#include <QClipboard>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QSignalSpy>
#include <QTableView>

#include "desktop/lists/document_list.h"
#include "desktop/lists/list_tools.h"
#include "desktop/lists/saved_filters.h"
#include "desktop/lists/stock_view.h"
#include "tests/desktop/oficina.h"

namespace tarvik::desktop {
namespace {

class Herramientas : public Oficina {
 protected:
  void Muestra(ListKind kind = ListKind::Entradas) {
    lista = std::make_unique<DocumentList>(*oficina, *lector, kind);
    lista->resize(1200, 600);
    lista->show();
    lista->activateWindow();
    lista->FilterField().setFocus();
    ASSERT_TRUE(SumsReady(lista->Model()));
  }
  std::vector<int> Numeros() {
    EXPECT_TRUE(Rests(lista->Model()));
    std::vector<int> numbers;
    for (int row = 0; row < lista->Model().rowCount(); ++row) numbers.push_back(lista->Model().NumberAt(row));
    return numbers;
  }
  void Tecla(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&lista->FilterField(), key, modifiers);
  }
  QString Titulo(int column) {
    return lista->Model().headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  }
  QString Archivo(const QString& name) {
    QFile file(carpeta.filePath(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QStringLiteral("(no está)");
  }

  std::unique_ptr<DocumentList> lista;
};

TEST_F(Herramientas, AKeyOrAClickSortsByAColumnUpDownAndAsAtFirst) {
  Entrada(1, "CO", "COM", "b", {2026, 11, 20}, 30);
  Entrada(2, "CO", "COM", "c", {2026, 11, 18}, 10);
  Entrada(3, "CO", "COM", "a", {2026, 11, 19}, 20);
  Muestra();
  Tecla(Qt::Key_6, Qt::AltModifier);
  EXPECT_EQ(Numeros(), (std::vector<int>{2, 3, 1}));
  EXPECT_TRUE(Titulo(DocumentListModel::Amount).contains(QStringLiteral("▴")));
  EXPECT_EQ(lista->Selected(), 2) << "the first one of the new order";
  Tecla(Qt::Key_6, Qt::AltModifier);
  EXPECT_EQ(Numeros(), (std::vector<int>{1, 3, 2}));
  Tecla(Qt::Key_6, Qt::AltModifier);
  EXPECT_EQ(Numeros(), (std::vector<int>{3, 2, 1}));
  EXPECT_FALSE(Titulo(DocumentListModel::Amount).contains(QStringLiteral("▾")));

  auto* header = lista->Table().horizontalHeader();
  const QPoint at(header->sectionViewportPosition(DocumentListModel::IssueDate) + 20, header->height() / 2);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, at);
  EXPECT_EQ(Numeros(), (std::vector<int>{2, 3, 1}));
  lista->FilterField().setText(QStringLiteral("1"));
  EXPECT_EQ(Numeros(), std::vector<int>{1}) << "a filter and an order go together";
  lista->FilterField().clear();
  Tecla(Qt::Key_0, Qt::AltModifier);
  EXPECT_EQ(Numeros(), (std::vector<int>{3, 2, 1}));
  EXPECT_TRUE(lista->FilterField().text().isEmpty()) << "no figure was typed";
}

TEST_F(Herramientas, AnOrderedListIsReadPageByPageAndReadAgainWhenItIsShownAgain) {
  const int last = PagedModel::kPage * (PagedModel::kKeptPages + 3);
  Entradas(last);
  Sql("UPDATE entradas SET importe = entrada * 7919 % 10007");
  DocumentListModel model(*lector, ListKind::Entradas, "0");
  model.Refresh();
  model.SetSort({DocumentListModel::Amount, false});
  ASSERT_TRUE(Rests(model));
  EXPECT_EQ(model.rowCount(), PagedModel::kPage);
  std::vector<int> first;
  for (int row = 0; row < 10; ++row) first.push_back(model.NumberAt(row));
  while (model.canFetchMore({})) {
    model.fetchMore({});
    ASSERT_TRUE(Rests(model));
  }
  ASSERT_EQ(model.rowCount(), last);
  EXPECT_EQ(model.PagesInMemory(), PagedModel::kKeptPages);
  Sql("DELETE FROM entradas WHERE entrada = ?", {first[3]});  // meanwhile, by another station
  EXPECT_FALSE(model.index(0, 0).data().isValid());
  ASSERT_TRUE(Until([&] { return model.index(0, 0).data().isValid(); }));
  first.erase(first.begin() + 3);
  for (std::size_t row = 0; row < first.size(); ++row) {
    EXPECT_EQ(model.NumberAt(static_cast<int>(row)), first[row]);
  }
  EXPECT_EQ(model.rowCount(), last - 1);
}

TEST_F(Herramientas, RefreshingAnOrderedListStaysOnTheChosenDocument) {
  Entradas(1000);
  Muestra();
  Tecla(Qt::Key_1, Qt::AltModifier);
  ASSERT_TRUE(Rests(lista->Model()));
  EXPECT_EQ(lista->Selected(), 1);
  Sql("UPDATE entradas SET importe = entrada % 7");
  Tecla(Qt::Key_6, Qt::AltModifier);
  ASSERT_TRUE(Rests(lista->Model()));
  while (lista->Model().rowCount() < 600) {
    lista->Model().fetchMore({});
    ASSERT_TRUE(Rests(lista->Model()));
  }
  const int deep = lista->Model().NumberAt(450);
  ASSERT_TRUE(lista->Select(deep));
  Tecla(Qt::Key_F5);
  ASSERT_TRUE(Rests(lista->Model()));
  EXPECT_EQ(lista->Selected(), deep);
}

TEST_F(Herramientas, NothingMovesWhenAFilterOrAnOrderChanges) {
  Entradas(300);
  Muestra();
  const auto places = [&] {
    QList<QRect> all;
    for (auto* widget : lista->findChildren<QWidget*>()) {
      if (widget->isVisible() && !qobject_cast<QLabel*>(widget)) {
        all += QRect(widget->mapTo(lista.get(), QPoint()), widget->size());
      }
    }
    auto* header = lista->Table().horizontalHeader();
    for (int i = 0; i < header->count(); ++i)
      all += QRect(header->sectionPosition(i), 0, header->sectionSize(i), 1);
    return all;
  };
  lista->FilterField().setText(
      QStringLiteral("1"));  // the bar of a long list is there or not: both are short
  ASSERT_TRUE(SumsReady(lista->Model()));
  const auto before = places();
  Tecla(Qt::Key_3, Qt::AltModifier);
  ASSERT_TRUE(Rests(lista->Model()));
  EXPECT_EQ(places(), before);
  const QRect foot(lista->Tools().Foot().mapTo(lista.get(), QPoint()), lista->Tools().Foot().size());
  lista->FilterField().setText(QStringLiteral("nada de esto está"));
  ASSERT_TRUE(SumsReady(lista->Model()));
  EXPECT_EQ(QRect(lista->Tools().Foot().mapTo(lista.get(), QPoint()), lista->Tools().Foot().size()), foot);
  Tecla(Qt::Key_Escape);
  lista->FilterField().setText(QStringLiteral("1"));
  ASSERT_TRUE(SumsReady(lista->Model()));
  EXPECT_EQ(places(), before);
}

TEST_F(Herramientas, ALetterWithAltIsNeverTyped) {
  Entradas(3);
  Muestra();
  QTest::keyClick(&lista->FilterField(), 'k', Qt::AltModifier);
  EXPECT_EQ(lista->FilterField().text(), QString());
  QTest::keyClick(&lista->Table(), 'k', Qt::AltModifier);
  EXPECT_EQ(lista->FilterField().text(), QString());
  QTest::keyClick(&lista->FilterField(), 'k');
  EXPECT_EQ(lista->FilterField().text(), QStringLiteral("k"));
  StockView stock(*oficina, *lector);
  stock.show();
  QTest::keyClick(&stock.FilterField(), 'k', Qt::AltModifier);
  EXPECT_EQ(stock.FilterField().text(), QString());
}

TEST_F(Herramientas, ColumnsAreChosenByKeyAndKept) {
  Entradas(3);
  Muestra();
  Tecla(Qt::Key_F4);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->activeAction()->text(), QStringLiteral("Número"));
  QTest::keyClick(menu, Qt::Key_Down);
  QTest::keyClick(menu, Qt::Key_Space);  // the date
  ASSERT_EQ(QApplication::activePopupWidget(), menu) << "several columns may be chosen";
  QTest::keyClick(menu, Qt::Key_Escape);
  EXPECT_TRUE(lista->Table().isColumnHidden(DocumentListModel::IssueDate));
  lista->Table().setColumnWidth(DocumentListModel::Holder, 133);
  lista->SaveColumns();
  Muestra();
  EXPECT_TRUE(lista->Table().isColumnHidden(DocumentListModel::IssueDate));
  EXPECT_EQ(lista->Table().columnWidth(DocumentListModel::Holder), 133);
  Tecla(Qt::Key_2, Qt::AltModifier);
  EXPECT_EQ(lista->Model().Sorted().column, DocumentListModel::Concept) << "the second one on show";

  std::unique_ptr<QMenu> all(lista->Tools().MakeColumnsMenu());
  for (QAction* action : all->actions()) {
    if (action->isCheckable() && action->isChecked()) action->trigger();
  }
  int shown = 0;
  for (int column = 0; column < DocumentListModel::ColumnCount; ++column) {
    shown += lista->Table().isColumnHidden(column) ? 0 : 1;
  }
  EXPECT_EQ(shown, 1) << "the last one stays";
}

TEST_F(Herramientas, TheChosenRowsAreCopiedWithTheirTitles) {
  Entrada(1, "CO", "COM", "con\ttabulador");
  Entrada(2);
  Entrada(3);
  Muestra();
  Tecla(Qt::Key_Down);
  Tecla(Qt::Key_Down, Qt::ShiftModifier);
  Tecla(Qt::Key_C, Qt::ControlModifier);
  const QStringList lines = QApplication::clipboard()->text().split(QLatin1Char('\n'));
  ASSERT_EQ(lines.size(), 4);
  EXPECT_TRUE(lines[0].startsWith(QStringLiteral("Número\tFecha\tConcepto\tObservaciones\t")));
  EXPECT_TRUE(lines[1].startsWith(QStringLiteral("2\t20/11/2026\tCOM  Compra a proveedor\t")));
  EXPECT_TRUE(lines[2].startsWith(QStringLiteral("1\t20/11/2026\tCOM  Compra a proveedor\tcon tabulador\t")));
  EXPECT_EQ(lista->Tools().Foot().Said(), QStringLiteral("Se copiaron 2 renglones"));
  lista->FilterField().setText(QStringLiteral("100"));
  lista->FilterField().selectAll();
  Tecla(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("100")) << "chosen text is the field's";
}

TEST_F(Herramientas, TheWholeFilteredListBecomesAFileAsItStands) {
  Entradas(450);
  Sql("UPDATE entradas SET observ = '=HOY()' WHERE entrada = 42");
  Muestra();
  lista->Tools().ask_where = [&](const QString& proposed) {
    EXPECT_TRUE(proposed.endsWith(QStringLiteral("entradas.csv"))) << proposed.toStdString();
    return carpeta.filePath(QStringLiteral("todas.csv"));
  };
  lista->Table().hideColumn(DocumentListModel::Concept);
  Tecla(Qt::Key_1, Qt::AltModifier);
  Tecla(Qt::Key_E, Qt::ControlModifier);
  EXPECT_TRUE(lista->Tools().Foot().UnderWay());
  ASSERT_TRUE(Until([&] { return !lista->Tools().Foot().UnderWay(); }));
  EXPECT_EQ(lista->Tools().Foot().Said(), QStringLiteral("Se exportaron 450 renglones a todas.csv"));
  const QStringList lines = Archivo(QStringLiteral("todas.csv")).split(QStringLiteral("\r\n"));
  ASSERT_EQ(lines.size(), 452);  // titles, rows, the end of the last
  EXPECT_EQ(lines[0], QStringLiteral("Número,Fecha,Observaciones,Almacén,Importe,Estado,Tomado por"));
  EXPECT_EQ(lines[1], QStringLiteral("1,2026-11-20,,1  Almacén central,10,Afectado,"));
  EXPECT_TRUE(lines[42].startsWith(QStringLiteral("42,2026-11-20,'=HOY(),")));
  Tecla(Qt::Key_Down);
  EXPECT_EQ(lista->Tools().Foot().Said(), QString()) << "the next key puts the sums back";
}

TEST_F(Herramientas, EscEndsAnExportAndNoFileIsWritten) {
  Entradas(30000);
  Muestra();
  lista->Tools().ask_where = [&](const QString&) { return carpeta.filePath(QStringLiteral("media.csv")); };
  Tecla(Qt::Key_E, Qt::ControlModifier);
  ASSERT_TRUE(lista->Tools().Foot().UnderWay());
  Tecla(Qt::Key_Escape);
  EXPECT_FALSE(lista->Tools().Foot().UnderWay());
  EXPECT_TRUE(lista->Tools().Foot().Said().contains(QStringLiteral("cancelada")));
  const auto written = [&] { return QFile::exists(carpeta.filePath(QStringLiteral("media.csv"))); };
  EXPECT_FALSE(QTest::qWaitFor(written, 1500)) << "it would have been there by now";
}

TEST_F(Herramientas, AFolderThatIsNotThereIsSaid) {
  Entradas(3);
  Muestra();
  lista->Tools().ask_where = [&](const QString&) {
    return carpeta.filePath(QStringLiteral("no/esta/lista.csv"));
  };
  Tecla(Qt::Key_E, Qt::ControlModifier);
  ASSERT_TRUE(Until([&] { return !lista->Tools().Foot().UnderWay(); }));
  EXPECT_TRUE(lista->Tools().Foot().Said().startsWith(QStringLiteral("No se exportó:")))
      << lista->Tools().Foot().Said().toStdString();
}

TEST_F(Herramientas, AFilterIsKeptByNameUsedAndDropped) {
  Entradas(120);
  Muestra();
  lista->FilterField().setText(QStringLiteral("11"));
  Tecla(Qt::Key_1, Qt::AltModifier);
  Tecla(Qt::Key_F3);
  auto* panel = qobject_cast<FilterPanel*>(QApplication::activePopupWidget());
  ASSERT_NE(panel, nullptr);
  QTest::keyClicks(&panel->NewName(), QStringLiteral("Los once"));
  QTest::keyClick(&panel->NewName(), Qt::Key_Return);
  lista->FilterField().clear();
  Tecla(Qt::Key_0, Qt::AltModifier);
  EXPECT_EQ(Numeros().front(), 120);

  Tecla(Qt::Key_F3);
  panel = qobject_cast<FilterPanel*>(QApplication::activePopupWidget());
  ASSERT_NE(panel, nullptr);
  ASSERT_EQ(panel->Names().count(), 1);
  QTest::keyClick(&panel->Names(), Qt::Key_Return);
  EXPECT_EQ(lista->FilterField().text(), QStringLiteral("11"));
  EXPECT_EQ(Numeros().front(), 11) << "with its order";

  FilterStore of_other(*ajustes, QStringLiteral("EVA"), QStringLiteral("Entradas"));
  EXPECT_TRUE(of_other.All().isEmpty()) << "each user has his own";
  FilterStore own(*ajustes, QStringLiteral("ANA"), QStringLiteral("Entradas"));
  own.Save({QStringLiteral("LOS ONCE"), QStringLiteral("x")});
  ASSERT_EQ(own.All().size(), 1) << "the same name is the same filter";
  Tecla(Qt::Key_F3);
  panel = qobject_cast<FilterPanel*>(QApplication::activePopupWidget());
  QTest::keyClick(&panel->Names(), Qt::Key_Delete);
  EXPECT_TRUE(own.All().isEmpty());
  panel->close();
}

}  // namespace
}  // namespace tarvik::desktop
