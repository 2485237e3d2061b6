// Stock above, and below it the last movements of the chosen row; the kardex of an article takes the place of
// both until it is left.
#include "desktop/lists/stock_view.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSettings>
#include <QSplitter>
#include <QStackedLayout>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "data/number.h"
#include "desktop/lists/kardex_view.h"
#include "desktop/lists/list_frame.h"
#include "desktop/lists/list_tools.h"
#include "desktop/style/key_caps.h"
#include "desktop/style/list_cells.h"
#include "desktop/style/theme.h"
#include "host/anfitrion.h"

namespace tarvik::desktop {

StockView::StockView(Office& office, Reader& reader, QWidget* parent)
    : QWidget(parent),
      office_(office),
      model_(new StockModel(reader, office.host.Ambiente().FormatoCantidad(), this)),
      ledger_(new LedgerModel(reader, office.host.Ambiente().FormatoCantidad(),
                              office.host.Ambiente().FormatoImporte(), this)),
      filter_(new QLineEdit(this)),
      table_(new QTableView(this)),
      ledger_table_(new QTableView(this)),
      ledger_title_(new QLabel(this)),
      count_(new QLabel(this)),
      reason_(new QLabel(this)),
      splitter_(new QSplitter(Qt::Vertical, this)),
      pages_(new QStackedLayout(this)),
      kardex_(new KardexView(office, reader, this)) {
  auto* page = new QWidget(this);
  pages_->setContentsMargins(0, 0, 0, 0);
  pages_->addWidget(page);
  pages_->addWidget(kardex_);
  DressRows();
  count_->setProperty("role", "soft");
  count_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  count_->setAccessibleName(QStringLiteral("Artículos en la lista"));
  tools_ = new ListTools(
      {office, reader, *model_, *table_, QStringLiteral("Existencias"), QStringLiteral("Existencias")},
      count_, *this);
  const auto [column, body] = FrameOfList(*page, Head(), *reason_);
  body->addWidget(splitter_, 1);
  auto* keys = new KeyCaps;
  keys->Show({{tr("Intro"), tr("kardex")},
              {tr("Tab"), tr("movimientos")},
              {tr("F3"), tr("filtros")},
              {tr("F4"), tr("columnas")},
              {tr("Alt+1…9"), tr("ordenar")},
              {tr("F5"), tr("actualizar")}});
  column->addWidget(KeyLine(*keys, &tools_->Foot()));

  Connect();
  setFocusProxy(filter_);
  ShowLedger();
}

QLayout* StockView::Head() {
  auto* head = new QHBoxLayout;
  auto* title = new QLabel(QStringLiteral("Existencias"), this);
  title->setProperty("role", "title");
  head->addWidget(title);
  head->addStretch();
  head->addWidget(tools_->OfferFilters(*filter_));
  filter_->setPlaceholderText(QStringLiteral("Buscar por artículo, descripción, unidad o ubicación"));
  filter_->setAccessibleName(QStringLiteral("Buscar en existencias"));
  filter_->setFixedSize(58 * measure::kGrid, measure::kField);
  head->addWidget(filter_);
  return head;
}

void StockView::DressRows() {
  table_->setModel(model_);
  DressTable(*table_, office_.theme, QStringLiteral("Existencias por artículo y almacén"),
             StockModel::Description);
  SetWidths(*table_, {15, 40, 8, 10, 18, 12, 11});

  splitter_->setChildrenCollapsible(false);
  splitter_->setHandleWidth(measure::kGrid / 8);
  splitter_->addWidget(table_);
  splitter_->addWidget(Below());
  splitter_->setStretchFactor(0, 3);
  splitter_->setStretchFactor(1, 2);
  splitter_->restoreState(office_.settings.value(QStringLiteral("existencias/division")).toByteArray());
}

// The movements of the chosen article.
QWidget* StockView::Below() {
  auto* below = new QWidget(this);
  auto* below_column = new QVBoxLayout(below);
  below_column->setContentsMargins(0, measure::kGrid, 0, 0);
  below_column->setSpacing(measure::kGrid);
  ledger_title_->setProperty("role", "soft");
  below_column->addWidget(ledger_title_);
  ledger_table_->setModel(ledger_);
  DressTable(*ledger_table_, office_.theme, QStringLiteral("Movimientos del artículo"), LedgerModel::Concept);
  SetWidths(*ledger_table_, {11, 6, 11, 9, 30, 10, 10, 0, 12, 13, 9});
  LoadWidths(*ledger_table_, office_.settings, QStringLiteral("UltimosMovimientos"));
  ledger_table_->hideColumn(LedgerModel::Balance);  // the kardex reads the whole ledger for it
  below_column->addWidget(ledger_table_, 1);
  return below;
}

void StockView::Connect() {
  filter_->installEventFilter(this);
  table_->installEventFilter(this);
  ledger_table_->installEventFilter(this);
  connect(filter_, &QLineEdit::textChanged, model_, &StockModel::SetFilter);
  connect(tools_, &ListTools::Sorted, this, [this] { wanted_.clear(); });
  connect(table_, &QTableView::doubleClicked, this, &StockView::OpenKardex);
  connect(kardex_, &KardexView::Left, this, &StockView::LeaveKardex);
  connect(kardex_, &KardexView::DocumentRequested, this, &StockView::DocumentRequested);
  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &StockView::ShowLedger);
  for (auto* table : {table_, ledger_table_}) {
    auto* bar = table->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, table, [table, bar](int value) {
      if (value > bar->maximum() - bar->pageStep()) table->model()->fetchMore({});
    });
  }
  connect(model_, &StockModel::Rested, this, &StockView::OnRested);
  // The row had been dropped from memory and was read again: now its movements can be shown.
  connect(model_, &StockModel::dataChanged, this, [this](const QModelIndex& first, const QModelIndex& last) {
    const int here = table_->currentIndex().row();
    if (here >= first.row() && here <= last.row()) ShowLedger();
  });
  connect(model_, &StockModel::SumsChanged, this, &StockView::ShowSums);
  for (PagedModel* model : {static_cast<PagedModel*>(model_), static_cast<PagedModel*>(ledger_)}) {
    connect(model, &PagedModel::Failed, this, [this](const QString& reason) {
      reason_->setText(
          QStringLiteral("No se pudieron leer las existencias: %1. Los datos están como estaban. "
                         "Pulse F5 para leerlos de nuevo.")
              .arg(reason));
      reason_->show();
    });
  }
}

void StockView::OnRested() {
  if (!model_->Failing()) reason_->hide();
  if (!table_->currentIndex().isValid() && model_->rowCount() > 0) {
    table_->setCurrentIndex(model_->index(WantedRow(), 0));
  }
  ShowLedger();
  if (std::exchange(kardex_asked_, false) && !model_->Failing()) OpenKardex();
}

// Enter right after the text, as a scanner sends it, applies to the rows that are still being read.
void StockView::AskForKardex() {
  if (model_->Busy() && (model_->Stale() || !table_->currentIndex().isValid())) {
    kardex_asked_ = true;
  } else {
    OpenKardex();
  }
}

void StockView::OpenKardex() {
  const QModelIndex current = table_->currentIndex();
  if (!current.isValid() || !current.data(StockModel::ArticleRole).isValid()) return;
  const double warehouse = current.data(StockModel::WarehouseRole).toDouble();
  kardex_->Show(
      {current.data(StockModel::ArticleRole).toString(),
       current.siblingAtColumn(StockModel::Description).data().toString(), warehouse,
       warehouse == 0 ? QString() : current.siblingAtColumn(StockModel::Warehouse).data().toString()});
  pages_->setCurrentWidget(kardex_);
  setFocusProxy(kardex_);
  kardex_->setFocus();
}

void StockView::LeaveKardex() {
  pages_->setCurrentIndex(0);
  setFocusProxy(filter_);
  table_->setFocus();
}

bool StockView::InKardex() const { return pages_->currentWidget() == kardex_; }

ListTools& StockView::Tools() const { return InKardex() ? kardex_->Tools() : *tools_; }

QLineEdit& StockView::FilterField() const { return InKardex() ? kardex_->From() : *filter_; }

// The article in its warehouse, or at least the article; else the first row.
int StockView::WantedRow() const {
  int row = -1;
  for (int i = 0; i < model_->rowCount() && !wanted_.isEmpty(); ++i) {
    const QModelIndex at = model_->index(i, 0);
    if (at.data(StockModel::ArticleRole).toString() != wanted_) {
      if (row >= 0) break;
      continue;
    }
    if (at.data(StockModel::WarehouseRole).toDouble() == wanted_warehouse_) return i;
    if (row < 0) row = i;
  }
  return std::max(row, 0);
}

void StockView::ShowSums() {
  if (!model_->Total()) return count_->setText(QStringLiteral("Contando…"));
  const auto articles = model_->Total()->cuantos;
  count_->setText(articles == 1 ? QStringLiteral("1 artículo")
                                : QString::fromStdString(
                                      data::FormatNumber(static_cast<double>(articles), "###,###,###,##0")) +
                                      QStringLiteral(" artículos"));
}

void StockView::Refresh() {
  const QModelIndex current = table_->currentIndex();
  if (current.isValid()) {
    wanted_ = current.data(StockModel::ArticleRole).toString();
    wanted_warehouse_ = current.data(StockModel::WarehouseRole).toDouble();
  }
  model_->Refresh();
  if (InKardex()) kardex_->Refresh();
}

void StockView::SaveColumns() {
  tools_->SaveColumns();
  kardex_->SaveColumns();
  SaveWidths(*ledger_table_, office_.settings, QStringLiteral("UltimosMovimientos"));
  office_.settings.setValue(QStringLiteral("existencias/division"), splitter_->saveState());
}

void StockView::ShowLedger() {
  const QModelIndex current = table_->currentIndex();
  if (!current.isValid()) {
    ledger_title_->setText(QStringLiteral("Movimientos: elija un artículo."));
    return ledger_->ShowNone();
  }
  const QString article = current.data(StockModel::ArticleRole).toString();
  const double warehouse = current.data(StockModel::WarehouseRole).toDouble();
  const QString place = current.siblingAtColumn(StockModel::Warehouse).data().toString().simplified();
  ledger_title_->setText(warehouse == 0
                             ? QStringLiteral("Movimientos de %1").arg(article)
                             : QStringLiteral("Movimientos de %1 en el almacén %2").arg(article, place));
  ledger_->ShowArticle(article.toStdString(), warehouse);
}

void StockView::showEvent(QShowEvent* event) {
  Refresh();
  QWidget::showEvent(event);
}

bool StockView::eventFilter(QObject* watched, QEvent* event) {
  if (tools_->Takes(watched, event)) return true;
  const bool pressed = event->type() == QEvent::KeyPress;
  if (!pressed && event->type() != QEvent::ShortcutOverride) return QWidget::eventFilter(watched, event);
  auto& key = static_cast<QKeyEvent&>(*event);
  if (const auto act = ActOf(key, watched)) {
    event->accept();
    if (pressed) act();
    return true;
  }
  return (pressed && HandedOver(key, watched)) || QWidget::eventFilter(watched, event);
}

// What a key does to the page; nothing for a key that is none of its own.
std::function<void()> StockView::ActOf(const QKeyEvent& key, const QObject* watched) {
  if ((key.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return {};
  switch (key.key()) {
    case Qt::Key_F5:
      return [this] { Refresh(); };
    case Qt::Key_Escape:
      if (filter_->text().isEmpty()) return {};
      return [this] {
        filter_->clear();
        filter_->setFocus();
      };
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (key.isAutoRepeat()) return [] {};
      if (watched != ledger_table_) return [this] { AskForKardex(); };
      return [this] {
        const auto document = ledger_->DocumentAt(ledger_table_->currentIndex().row());
        if (document) emit DocumentRequested(*document);
      };
    default:
      return {};
  }
}

// The arrows in the field walk the rows; what is typed on the rows goes into the field.
bool StockView::HandedOver(QKeyEvent& key, const QObject* watched) {
  const auto modifiers = key.modifiers() & ~Qt::KeypadModifier;
  const bool plain = modifiers == Qt::NoModifier;
  if (watched == filter_) {
    const bool moves = key.key() == Qt::Key_Up || key.key() == Qt::Key_Down || key.key() == Qt::Key_PageUp ||
                       key.key() == Qt::Key_PageDown;
    if (!moves || (!plain && modifiers != Qt::ShiftModifier)) return false;
    QCoreApplication::sendEvent(table_, &key);
    return true;
  }
  const bool types = !key.text().isEmpty() && key.text().at(0).isPrint() &&
                     !(modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
  if (watched != table_ || (!types && !(plain && key.key() == Qt::Key_Backspace))) return false;
  filter_->setFocus();
  filter_->end(false);
  QCoreApplication::sendEvent(filter_, &key);
  return true;
}

}  // namespace tarvik::desktop
