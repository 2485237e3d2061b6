// Two listings on one page: stock above, and below it the movements of the chosen row.
#include "desktop/lists/stock_view.h"

#include <QCoreApplication>
#include <QDate>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSettings>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "data/number.h"
#include "data/text.h"
#include "desktop/lists/document_list_model.h"
#include "desktop/lists/list_frame.h"
#include "desktop/style/key_caps.h"
#include "desktop/style/list_cells.h"
#include "desktop/style/theme.h"
#include "host/anfitrion.h"
#include "host/listados.h"

namespace tarvik::desktop {
namespace {

using data::Value;

using host::De;
using StockRead = host::ColumnaDeExistencia;
using LedgerRead = host::ColumnaDeMovimiento;

QString Text(const Value& value) { return QString::fromStdString(data::ToText(value)); }

QString Number(const Value& value, const std::string& pattern) {
  return value.IsNull() ? QString()
                        : QString::fromStdString(data::FormatNumber(data::ToNumber(value), pattern));
}

QString DateText(const Value& value) {
  const auto date = data::ToDate(value);
  return date ? QDate(date->year, date->month, date->day).toString(QStringLiteral("dd/MM/yyyy")) : QString();
}

QVariant Alignment(bool number) {
  return QVariant(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
}

QString OperationText(const Value& operation) {
  const QString code = Text(operation);
  if (code == QLatin1String("EN")) return QStringLiteral("Entrada");
  if (code == QLatin1String("SA")) return QStringLiteral("Salida");
  if (code == QLatin1String("T+")) return QStringLiteral("Traspaso");
  return code;
}

}  // namespace

StockModel::StockModel(Reader& reader, std::string quantity_pattern, QObject* parent)
    : PagedModel(reader, parent), quantity_pattern_(std::move(quantity_pattern)) {}

host::Listado StockModel::Wanted(const QString& filter) const {
  return host::ListadoDeExistencias(filter.toStdString());
}

int StockModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant StockModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const int column = index.column();
  const bool number = column == Stock || column == Reserved;
  if (role == Qt::TextAlignmentRole) return Alignment(number);
  if (role == CellDelegate::FiguresRole) return number;
  if (role == CellDelegate::SoftRole) return column == Unit || column == Place;
  const Cells* row = Row(index.row());
  if (row == nullptr) return {};
  const Cells& cells = *row;
  switch (role) {
    case ArticleRole:
      return Text(De(cells, StockRead::kArticulo));
    case WarehouseRole:
      return data::ToNumber(De(cells, StockRead::kAlmacen));
    case StockRole:
      return data::ToNumber(De(cells, StockRead::kExistencia));
    case CellDelegate::BelowZeroRole:
      return column == Stock && data::ToNumber(De(cells, StockRead::kExistencia)) < 0;
    case Qt::DisplayRole:
      break;
    default:
      return {};
  }
  switch (column) {
    case Article:
      return Text(De(cells, StockRead::kArticulo));
    case Description:
      return Text(De(cells, StockRead::kDescripcion));
    case Unit:
      return Text(De(cells, StockRead::kUnidad));
    case Place:
      return Text(De(cells, StockRead::kUbicacion));
    case Warehouse:
      if (De(cells, StockRead::kAlmacen).IsNull()) return QStringLiteral("Sin movimientos");
      return QString(Text(De(cells, StockRead::kAlmacen)) + QStringLiteral("  ") +
                     Text(De(cells, StockRead::kNombreDelAlmacen)));
    case Stock:
      return Number(De(cells, StockRead::kExistencia).IsNull() ? Value(0) : De(cells, StockRead::kExistencia),
                    quantity_pattern_);
    case Reserved:
      return data::ToNumber(De(cells, StockRead::kPorSurtir)) == 0
                 ? QString()
                 : Number(De(cells, StockRead::kPorSurtir), quantity_pattern_);
    default:
      return {};
  }
}

QVariant StockModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) return Alignment(section == Stock || section == Reserved);
  if (role != Qt::DisplayRole) return {};
  static const QStringList kTitles = {QStringLiteral("Artículo"),  QStringLiteral("Descripción"),
                                      QStringLiteral("Unidad"),    QStringLiteral("Ubicación"),
                                      QStringLiteral("Almacén"),   QStringLiteral("Existencia"),
                                      QStringLiteral("Por surtir")};
  return kTitles.value(section);
}

LedgerModel::LedgerModel(Reader& reader, std::string quantity_pattern, std::string amount_pattern,
                         QObject* parent)
    : PagedModel(reader, parent),
      quantity_pattern_(std::move(quantity_pattern)),
      amount_pattern_(std::move(amount_pattern)) {}

void LedgerModel::ShowArticle(const std::string& article, double warehouse) {
  article_ = article;
  warehouse_ = warehouse;
  Refresh();
}

void LedgerModel::ShowNone() {
  article_.clear();
  Clear();
}

host::Listado LedgerModel::Wanted(const QString&) const {
  return host::ListadoDeMovimientos(article_, warehouse_);
}

int LedgerModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant LedgerModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const int column = index.column();
  const bool number =
      column == Document || column == In || column == Out || column == Price || column == Amount;
  if (role == Qt::TextAlignmentRole) return Alignment(number);
  if (role == CellDelegate::FiguresRole) return number || column == IssueDate || column == Hour;
  if (role == CellDelegate::SoftRole) return column == Hour || column == User;
  if (role != Qt::DisplayRole) return {};
  const Cells* row = Row(index.row());
  if (row == nullptr) return {};
  const Cells& cells = *row;
  const bool inflow = Text(De(cells, LedgerRead::kSentido)) == QLatin1String("E");
  switch (column) {
    case IssueDate:
      return DateText(De(cells, LedgerRead::kFecha));
    case Hour:
      return Text(De(cells, LedgerRead::kHora)).left(5);
    case Operation:
      return OperationText(De(cells, LedgerRead::kOperacion));
    case Document:
      return Text(De(cells, LedgerRead::kDocumento));
    case Concept: {
      const QString text = Text(De(cells, LedgerRead::kNombreDelConcepto));
      return text.isEmpty() ? Text(De(cells, LedgerRead::kConcepto))
                            : QString(Text(De(cells, LedgerRead::kConcepto)) + QStringLiteral("  ") + text);
    }
    case In:
      return inflow ? Number(De(cells, LedgerRead::kCantidad), quantity_pattern_) : QString();
    case Out:
      return inflow ? QString() : Number(De(cells, LedgerRead::kCantidad), quantity_pattern_);
    case Price:
      return Number(De(cells, LedgerRead::kPrecio), amount_pattern_);
    case Amount:
      return Number(De(cells, LedgerRead::kImporte), amount_pattern_);
    case User:
      return Text(De(cells, LedgerRead::kUsuario));
    default:
      return {};
  }
}

QVariant LedgerModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) {
    return Alignment(section == Document || section == In || section == Out || section == Price ||
                     section == Amount);
  }
  if (role != Qt::DisplayRole) return {};
  static const QStringList kTitles = {QStringLiteral("Fecha"),      QStringLiteral("Hora"),
                                      QStringLiteral("Movimiento"), QStringLiteral("Número"),
                                      QStringLiteral("Concepto"),   QStringLiteral("Entra"),
                                      QStringLiteral("Sale"),       QStringLiteral("Precio"),
                                      QStringLiteral("Importe"),    QStringLiteral("Usuario")};
  return kTitles.value(section);
}

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
      splitter_(new QSplitter(Qt::Vertical, this)) {
  const auto [column, body] = FrameOfList(*this, Head(), *reason_);

  DressRows();
  body->addWidget(splitter_, 1);

  count_->setProperty("role", "soft");
  count_->setAccessibleName(QStringLiteral("Artículos en la lista"));
  auto* keys = new KeyCaps;
  keys->Show({{tr("↑ ↓"), tr("artículo")},
              {tr("Tab"), tr("movimientos")},
              {tr("Esc"), tr("ver todo")},
              {tr("F5"), tr("actualizar")}});
  column->addWidget(KeyLine(*keys, count_));

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
  filter_->setPlaceholderText(QStringLiteral("Buscar por artículo o descripción"));
  filter_->setAccessibleName(QStringLiteral("Buscar en existencias"));
  filter_->setMinimumWidth(54 * measure::kGrid);
  filter_->setFixedHeight(measure::kField);
  head->addWidget(filter_);
  return head;
}

void StockView::DressRows() {
  table_->setModel(model_);
  DressTable(*table_, office_.theme, QStringLiteral("Existencias por artículo y almacén"),
             StockModel::Description);
  SetWidths(*table_, {15, 40, 8, 10, 18, 12, 11});
  LoadWidths(*table_, office_.settings, QStringLiteral("Existencias"));

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
  SetWidths(*ledger_table_, {11, 6, 11, 9, 30, 10, 10, 12, 13, 9});
  LoadWidths(*ledger_table_, office_.settings, QStringLiteral("Movimientos"));
  below_column->addWidget(ledger_table_, 1);
  return below;
}

void StockView::Connect() {
  filter_->installEventFilter(this);
  table_->installEventFilter(this);
  ledger_table_->installEventFilter(this);
  connect(filter_, &QLineEdit::textChanged, model_, &StockModel::SetFilter);
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
}

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
}

void StockView::SaveColumns() {
  SaveWidths(*table_, office_.settings, QStringLiteral("Existencias"));
  SaveWidths(*ledger_table_, office_.settings, QStringLiteral("Movimientos"));
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
  if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) {
    return QWidget::eventFilter(watched, event);
  }
  auto* key = static_cast<QKeyEvent*>(event);
  const bool pressed = event->type() == QEvent::KeyPress;
  const bool plain = (key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (plain && (key->key() == Qt::Key_F5 || (key->key() == Qt::Key_Escape && !filter_->text().isEmpty()))) {
    event->accept();
    if (!pressed) return true;
    if (key->key() == Qt::Key_F5) {
      Refresh();
    } else {
      filter_->clear();
      filter_->setFocus();
    }
    return true;
  }
  if (!pressed) return QWidget::eventFilter(watched, event);
  if (watched == filter_ && plain) {
    switch (key->key()) {
      case Qt::Key_Up:
      case Qt::Key_Down:
      case Qt::Key_PageUp:
      case Qt::Key_PageDown:
        QCoreApplication::sendEvent(table_, event);
        return true;
      default:
        break;
    }
  }
  const bool types = !key->text().isEmpty() && key->text().at(0).isPrint() &&
                     !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
  if (watched == table_ && (types || (plain && key->key() == Qt::Key_Backspace))) {
    filter_->setFocus();
    filter_->end(false);
    QCoreApplication::sendEvent(filter_, event);
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace tarvik::desktop
