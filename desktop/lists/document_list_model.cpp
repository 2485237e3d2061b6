// How the cells of a document's row read.
#include "desktop/lists/document_list_model.h"

#include <QDate>

#include "data/number.h"
#include "data/text.h"
#include "desktop/style/list_cells.h"
#include "host/listados.h"

namespace tarvik::desktop {
namespace {

using data::Value;

using host::De;
using Read = host::ColumnaDeDocumento;

QString Text(const Value& value) { return QString::fromStdString(data::ToText(value)); }

QString DateText(const Value& value) {
  const auto date = data::ToDate(value);
  return date ? QDate(date->year, date->month, date->day).toString(QStringLiteral("dd/MM/yyyy")) : QString();
}

QString Joined(const QString& key, const QString& text) {
  return key.isEmpty() || text.isEmpty() ? key + text : key + QStringLiteral("  ") + text;
}

QString Grouped(std::int64_t number) {
  return QString::fromStdString(data::FormatNumber(static_cast<double>(number), "###,###,###,##0"));
}

}  // namespace

std::string_view NameOf(ListKind kind) {
  switch (kind) {
    case ListKind::Entradas:
      return "Entradas";
    case ListKind::EntradasPendientes:
      return "EntradasPendientes";
    case ListKind::Salidas:
      return "Salidas";
    default:
      return "SalidasPendientes";
  }
}

QString TitleOf(ListKind kind) {
  switch (kind) {
    case ListKind::Entradas:
      return QStringLiteral("Entradas");
    case ListKind::EntradasPendientes:
      return QStringLiteral("Entradas pendientes");
    case ListKind::Salidas:
      return QStringLiteral("Salidas");
    default:
      return QStringLiteral("Salidas pendientes");
  }
}

DocumentListModel::DocumentListModel(Reader& reader, ListKind kind, std::string amount_pattern,
                                     QObject* parent)
    : PagedModel(reader, parent), kind_(kind), amount_pattern_(std::move(amount_pattern)) {}

void DocumentListModel::Use(const HalfPosted& half) {
  half_ = &half;
  connect(&half, &HalfPosted::Changed, this, [this] {
    if (rowCount() > 0) emit dataChanged(index(0, State), index(rowCount() - 1, State));
  });
}

const host::DocumentoAMedias* DocumentListModel::Half(int number) const {
  if (half_ == nullptr) return nullptr;
  return half_->Of({TypeOf(kind_), number});
}

void DocumentListModel::SetFilter(const QString& typed) { SetFilterText(typed.simplified()); }

host::Listado DocumentListModel::Wanted(const QString& typed) const {
  if (half_ != nullptr && typed.toLower() == kHalfFilter) {
    std::vector<std::int32_t> numbers;
    for (const auto& [type, number] : half_->ToComplete()) {
      if (type == TypeOf(kind_)) numbers.push_back(number);
    }
    return host::ListadoDeEstos(TypeOf(kind_), IsPending(kind_), numbers);
  }
  return host::ListadoDeDocumentos(TypeOf(kind_), IsPending(kind_), typed.toStdString());
}

int DocumentListModel::NumberAt(int row) const {
  const auto keys_row = Row(row);
  return keys_row != nullptr ? static_cast<int>(data::ToNumber(De(*keys_row, Read::kNumero))) : 0;
}

QString DocumentListModel::CountText() const {
  if (!Total()) return QStringLiteral("Contando…");
  if (Total()->cuantos == 0) return QStringLiteral("Ningún documento");
  if (Total()->cuantos == 1) return QStringLiteral("1 documento");
  return Grouped(Total()->cuantos) + QStringLiteral(" documentos");
}

QString DocumentListModel::TotalText() const {
  return Total() ? QString::fromStdString(data::FormatNumber(Total()->total, amount_pattern_)) : QString();
}

int DocumentListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant DocumentListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::TextAlignmentRole) {
    const bool number = index.column() == Number || index.column() == Amount;
    return QVariant(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
  }
  if (role == CellDelegate::FiguresRole) {
    return index.column() == Number || index.column() == IssueDate || index.column() == Amount;
  }
  const bool chip = role == CellDelegate::ChipRole && index.column() == State;
  if (role == CellDelegate::SoftRole) return index.column() == Holder;
  const bool text = role == Qt::DisplayRole || role == Qt::ToolTipRole || role == Qt::AccessibleTextRole;
  const bool own = role == NumberRole || role == StateRole || role == HeldRole || role == HalfRole;
  if (!text && !chip && !own) return {};
  const Cells* row = Row(index.row());
  if (row == nullptr) return {};
  const Cells& cells = *row;
  const QString state = Text(De(cells, Read::kEstado));
  // A screen may hold it whose save has cleared the flag already.
  const bool held = data::IsNonZero(De(cells, Read::kOcupado)) || !De(cells, Read::kTomadoPor).IsNull();
  const int number = static_cast<int>(data::ToNumber(De(cells, Read::kNumero)));
  const auto* half = index.column() == State || own ? Half(number) : nullptr;
  const bool in_part = half != nullptr && half->estado == "CO" && state == QLatin1String("CO");
  switch (role) {
    case NumberRole:
      return number;
    case HalfRole:
      return in_part;
    case StateRole:
    case CellDelegate::ChipRole:
      if (in_part) return QStringLiteral("medias");
      return state == QLatin1String("PE")   ? QStringLiteral("pendiente")
             : state == QLatin1String("CO") ? QStringLiteral("afectado")
                                            : QString();
    case HeldRole:
      return held;
    case Qt::ToolTipRole:
      if (index.column() == Holder && held && !De(cells, Read::kTomadoPor).IsNull()) {
        const auto since = data::DateTime::Parse(data::ToText(De(cells, Read::kDesde)));
        return QStringLiteral("Tomado por %1 en la estación %2%3")
            .arg(Text(De(cells, Read::kTomadoPor)), Text(De(cells, Read::kEstacion)),
                 since ? QStringLiteral(" desde el %1 a las %2")
                             .arg(DateText(since->date),
                                  QString::fromStdString(since->time.Text().substr(0, 5)))
                       : QString());
      }
      [[fallthrough]];
    default:
      break;
  }
  switch (index.column()) {
    case Number:
      return Text(De(cells, Read::kNumero));
    case IssueDate:
      return DateText(De(cells, Read::kFecha));
    case Concept:
      return Joined(Text(De(cells, Read::kConcepto)), Text(De(cells, Read::kNombreDelConcepto)));
    case Remarks:
      return Text(De(cells, Read::kObservaciones)).simplified();
    case Warehouse:
      return Joined(Text(De(cells, Read::kAlmacen)), Text(De(cells, Read::kNombreDelAlmacen)));
    case Amount:
      return De(cells, Read::kImporte).IsNull()
                 ? QString()
                 : QString::fromStdString(
                       data::FormatNumber(data::ToNumber(De(cells, Read::kImporte)), amount_pattern_));
    case State:
      if (half != nullptr && Text(half->estado) == state) return StateText(*half);
      return state == QLatin1String("PE")   ? QStringLiteral("Pendiente")
             : state == QLatin1String("CO") ? QStringLiteral("Afectado")
                                            : state;
    case Holder: {
      if (!held) return QString();
      // A flag without a lease: a screen of another program, or one that ended badly.
      if (De(cells, Read::kTomadoPor).IsNull()) return Text(De(cells, Read::kUsuario));
      QStringList parts{Text(De(cells, Read::kTomadoPor)), Text(De(cells, Read::kEstacion))};
      parts.removeAll(QString());
      if (const auto since = data::DateTime::Parse(data::ToText(De(cells, Read::kDesde)))) {
        parts += DateText(since->date).left(5) + QLatin1Char(' ') +
                 QString::fromStdString(since->time.Text().substr(0, 5));
      }
      return parts.join(QStringLiteral(" · "));
    }
    default:
      return {};
  }
}

QVariant DocumentListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) {
    const bool number = section == Number || section == Amount;
    return QVariant(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
  }
  if (role != Qt::DisplayRole) return {};
  switch (section) {
    case Number:
      return QStringLiteral("Número");
    case IssueDate:
      return QStringLiteral("Fecha");
    case Concept:
      return QStringLiteral("Concepto");
    case Remarks:
      return QStringLiteral("Observaciones");
    case Warehouse:
      return QStringLiteral("Almacén");
    case Amount:
      return QStringLiteral("Importe");
    case State:
      return QStringLiteral("Estado");
    case Holder:
      return QStringLiteral("Tomado por");
    default:
      return {};
  }
}

}  // namespace tarvik::desktop
