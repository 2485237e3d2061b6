// How the cells of a document's row read.
#include "desktop/lists/document_list_model.h"

#include <QDate>

#include "data/number.h"
#include "data/text.h"
#include "desktop/style/list_cells.h"
#include "host/listados.h"
#include "wizard/modos.h"

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

// A screen may still hold the document after its save has cleared the flag.
bool Held(const DocumentListModel::Cells& cells) {
  return data::IsNonZero(De(cells, Read::kOcupado)) || !De(cells, Read::kTomadoPor).IsNull();
}

QString HolderText(const DocumentListModel::Cells& cells) {
  if (!Held(cells)) return {};
  // Marked as held, but without a lease: a screen of another program, or one that crashed.
  if (De(cells, Read::kTomadoPor).IsNull()) return Text(De(cells, Read::kUsuario));
  QStringList parts{Text(De(cells, Read::kTomadoPor)), Text(De(cells, Read::kEstacion))};
  parts.removeAll(QString());
  if (const auto since = data::DateTime::Parse(data::ToText(De(cells, Read::kDesde)))) {
    parts += DateText(since->date).left(5) + QLatin1Char(' ') +
             QString::fromStdString(since->time.Text().substr(0, 5));
  }
  return parts.join(QStringLiteral(" · "));
}

QString HolderTip(const DocumentListModel::Cells& cells) {
  const auto since = data::DateTime::Parse(data::ToText(De(cells, Read::kDesde)));
  return QStringLiteral("Tomado por %1 en la estación %2%3")
      .arg(Text(De(cells, Read::kTomadoPor)), Text(De(cells, Read::kEstacion)),
           since ? QStringLiteral(" desde el %1 a las %2")
                       .arg(DateText(since->date), QString::fromStdString(since->time.Text().substr(0, 5)))
                 : QString());
}

QVariant AlignmentOf(int column) {
  const bool number = column == DocumentListModel::Number || column == DocumentListModel::Amount;
  return QVariant(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
}

// "PE" and "CO" as the chip and a reader have them.
QString Named(const QString& state, const QString& pending, const QString& posted, const QString& other) {
  return state == QLatin1String(estado::kPendiente)  ? pending
         : state == QLatin1String(estado::kAfectado) ? posted
                                                     : other;
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
  const int column = index.column();
  if (role == Qt::TextAlignmentRole) return AlignmentOf(column);
  if (role == CellDelegate::FiguresRole) return column == Number || column == IssueDate || column == Amount;
  if (role == CellDelegate::SoftRole) return column == Holder;
  const bool chip = role == CellDelegate::ChipRole && column == State;
  const bool text = role == Qt::DisplayRole || role == Qt::ToolTipRole || role == Qt::AccessibleTextRole;
  const bool own = role == NumberRole || role == StateRole || role == HeldRole || role == HalfRole;
  if (!text && !chip && !own) return {};
  const Cells* cells = Row(index.row());
  if (cells == nullptr) return {};
  if (!text) return Own(*cells, role);
  const bool tip = role == Qt::ToolTipRole && column == Holder && !De(*cells, Read::kTomadoPor).IsNull();
  return tip ? HolderTip(*cells) : TextOf(*cells, column);
}

// What is asked of a row by the windows and by the painter of chips.
QVariant DocumentListModel::Own(const Cells& cells, int role) const {
  const int number = static_cast<int>(data::ToNumber(De(cells, Read::kNumero)));
  if (role == NumberRole) return number;
  if (role == HeldRole) return Held(cells);
  const QString state = Text(De(cells, Read::kEstado));
  const auto* half = Half(number);
  const bool in_part =
      half != nullptr && half->estado == estado::kAfectado && state == QLatin1String(estado::kAfectado);
  if (role == HalfRole) return in_part;
  return in_part ? QStringLiteral("medias")
                 : Named(state, QStringLiteral("pendiente"), QStringLiteral("afectado"), {});
}

QString DocumentListModel::StateOf(const Cells& cells) const {
  const QString state = Text(De(cells, Read::kEstado));
  const auto* half = Half(static_cast<int>(data::ToNumber(De(cells, Read::kNumero))));
  if (half != nullptr && Text(half->estado) == state) return StateText(*half);
  return Named(state, QStringLiteral("Pendiente"), QStringLiteral("Afectado"), state);
}

QVariant DocumentListModel::TextOf(const Cells& cells, int column) const {
  switch (column) {
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
      return StateOf(cells);
    case Holder:
      return HolderText(cells);
    default:
      return {};
  }
}

QVariant DocumentListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) return AlignmentOf(section);
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
