// How the cells of a movement read.
#include "desktop/lists/ledger_model.h"

#include <algorithm>
#include <cmath>

#include "desktop/lists/cell_values.h"
#include "desktop/style/list_cells.h"
#include "host/listados.h"

namespace tarvik::desktop {
namespace {

using data::Value;
using host::De;
using LedgerRead = host::ColumnaDeMovimiento;
using Cells = PagedModel::Cells;

QString OperationText(const Value& operation) {
  const QString code = Text(operation);
  if (code == QLatin1String("EN")) return QStringLiteral("Entrada");
  if (code == QLatin1String("SA")) return QStringLiteral("Salida");
  if (code == QLatin1String("T+")) return QStringLiteral("Traspaso");
  return code;
}

// The document's own number; that of the ledger where the document is gone.
const Value& NumberOf(const Cells& cells) {
  const Value& own = De(cells, LedgerRead::kNumero);
  return own.IsNull() ? De(cells, LedgerRead::kDocumento) : own;
}

QString ConceptText(const Cells& cells) {
  return Joined(Text(De(cells, LedgerRead::kConcepto)), Text(De(cells, LedgerRead::kNombreDelConcepto)));
}

// What came in, or went out; nothing where it was the other.
Value Moved(const Cells& cells, bool in) {
  const double change = data::ToNumber(De(cells, LedgerRead::kCambio));
  return (change >= 0) == in ? Value(std::abs(change)) : Value();
}

Value BalanceOf(const LedgerModel::Points& points, const Cells& cells) {
  if (!points) return {};
  const auto id = static_cast<std::int64_t>(data::ToNumber(De(cells, LedgerRead::kId)));
  const auto at = std::lower_bound(points->begin(), points->end(), id,
                                   [](const auto& point, std::int64_t wanted) { return point.id < wanted; });
  return at != points->end() && at->id == id ? Value(at->saldo) : Value();
}

bool IsNumber(int column) {
  return column == LedgerModel::Document || (column >= LedgerModel::In && column <= LedgerModel::Amount);
}

}  // namespace

LedgerModel::LedgerModel(Reader& reader, std::string quantity_pattern, std::string amount_pattern,
                         QObject* parent)
    : PagedModel(reader, parent),
      quantity_pattern_(std::move(quantity_pattern)),
      amount_pattern_(std::move(amount_pattern)) {}

void LedgerModel::Show(const host::FiltroDeKardex& filter) {
  filter_ = filter;
  Refresh();
}

void LedgerModel::ShowNone() {
  filter_ = {};
  points_.reset();
  Clear();
}

void LedgerModel::UseBalances(Points points) {
  points_ = std::move(points);
  if (rowCount() > 0) emit dataChanged(index(0, Balance), index(rowCount() - 1, Balance));
}

host::Listado LedgerModel::Wanted(const QString&) const { return host::ListadoDeMovimientos(filter_); }

std::optional<host::Retenido> LedgerModel::DocumentAt(int row) const {
  const Cells* cells = Row(row);
  return cells == nullptr ? std::nullopt : host::DocumentoDelMovimiento(*cells);
}

std::optional<data::Date> LedgerModel::DateAt(int row) const {
  const Cells* cells = Row(row);
  return cells == nullptr ? std::nullopt : data::ToDate(De(*cells, LedgerRead::kFecha));
}

std::function<Value(const PagedModel::Cells&)> LedgerModel::ValueOf(int column) const {
  switch (column) {
    case IssueDate:
      return [](const Cells& cells) { return De(cells, LedgerRead::kFecha); };
    case Hour:
      return [](const Cells& cells) { return De(cells, LedgerRead::kHora); };
    case Operation:
      return [](const Cells& cells) -> Value {
        return OperationText(De(cells, LedgerRead::kOperacion)).toStdString();
      };
    case Document:
      return [](const Cells& cells) { return NumberOf(cells); };
    case Concept:
      return [](const Cells& cells) -> Value { return ConceptText(cells).toStdString(); };
    case In:
      return [](const Cells& cells) { return Moved(cells, true); };
    case Out:
      return [](const Cells& cells) { return Moved(cells, false); };
    case Balance:
      return [points = points_](const Cells& cells) { return BalanceOf(points, cells); };
    case Price:
      return [](const Cells& cells) { return De(cells, LedgerRead::kPrecio); };
    case Amount:
      return [](const Cells& cells) { return De(cells, LedgerRead::kImporte); };
    default:
      return [](const Cells& cells) { return De(cells, LedgerRead::kUsuario); };
  }
}

int LedgerModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant LedgerModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const int column = index.column();
  if (role == Qt::TextAlignmentRole) return AlignedAs(IsNumber(column));
  if (role == CellDelegate::FiguresRole) return IsNumber(column) || column == IssueDate || column == Hour;
  if (role == CellDelegate::SoftRole) return column == Hour || column == User;
  if (role != Qt::DisplayRole && role != CellDelegate::BelowZeroRole) return {};
  const Cells* cells = Row(index.row());
  if (cells == nullptr) return {};
  if (role == CellDelegate::BelowZeroRole)
    return column == Balance && data::ToNumber(BalanceOf(points_, *cells)) < 0;
  return TextOf(*cells, column);
}

QVariant LedgerModel::TextOf(const Cells& cells, int column) const {
  switch (column) {
    case IssueDate:
      return DateText(De(cells, LedgerRead::kFecha));
    case Hour:
      return Text(De(cells, LedgerRead::kHora)).left(5);
    case Operation:
      return OperationText(De(cells, LedgerRead::kOperacion));
    case Document:
      return Text(NumberOf(cells));
    case Concept:
      return ConceptText(cells);
    case In:
      return Number(Moved(cells, true), quantity_pattern_);
    case Out:
      return Number(Moved(cells, false), quantity_pattern_);
    case Balance:
      return Number(BalanceOf(points_, cells), quantity_pattern_);
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
  if (role == Qt::TextAlignmentRole) return AlignedAs(IsNumber(section));
  if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole) return {};
  static const QStringList kTitles = {
      QStringLiteral("Fecha"),   QStringLiteral("Hora"),     QStringLiteral("Movimiento"),
      QStringLiteral("Número"),  QStringLiteral("Concepto"), QStringLiteral("Entra"),
      QStringLiteral("Sale"),    QStringLiteral("Saldo"),    QStringLiteral("Precio"),
      QStringLiteral("Importe"), QStringLiteral("Usuario")};
  return kTitles.value(section);
}

}  // namespace tarvik::desktop
