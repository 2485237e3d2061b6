// How the cells of a document's row read.
#include "desktop/lists/document_list_model.h"

#include <array>

#include "desktop/lists/cell_values.h"
#include "desktop/style/list_cells.h"
#include "host/listados.h"
#include "wizard/modos.h"

namespace tarvik::desktop {
namespace {

using data::Value;

using host::De;
using Read = host::ColumnaDeDocumento;

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

bool IsNumber(int column) {
  return column == DocumentListModel::Number || column == DocumentListModel::Amount;
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

void DocumentListModel::PutInOrder(host::Listado& listing, const Sort& sort) const {
  static constexpr std::array kReads{Read::kNumero,  Read::kFecha,   Read::kConcepto, Read::kObservaciones,
                                     Read::kAlmacen, Read::kImporte, Read::kEstado,   Read::kTomadoPor};
  host::Ordena(listing, TypeOf(kind_), kReads.at(static_cast<std::size_t>(sort.column)), sort.descending);
}

std::function<Value(const PagedModel::Cells&)> DocumentListModel::ValueOf(int column) const {
  const auto text = [](QString (*of)(const Cells&)) {
    return [of](const Cells& cells) -> Value { return of(cells).toStdString(); };
  };
  switch (column) {
    case Number:
      return [](const Cells& cells) { return De(cells, Read::kNumero); };
    case IssueDate:
      return [](const Cells& cells) { return De(cells, Read::kFecha); };
    case Concept:
      return text([](const Cells& cells) {
        return Joined(Text(De(cells, Read::kConcepto)), Text(De(cells, Read::kNombreDelConcepto)));
      });
    case Remarks:
      return [](const Cells& cells) { return De(cells, Read::kObservaciones); };
    case Warehouse:
      return text([](const Cells& cells) {
        return Joined(Text(De(cells, Read::kAlmacen)), Text(De(cells, Read::kNombreDelAlmacen)));
      });
    case Amount:
      return [](const Cells& cells) { return De(cells, Read::kImporte); };
    case State:
      return text([](const Cells& cells) {
        const QString state = Text(De(cells, Read::kEstado));
        return Named(state, QStringLiteral("Pendiente"), QStringLiteral("Afectado"), state);
      });
    default:
      return text(HolderText);
  }
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
  if (role == Qt::TextAlignmentRole) return AlignedAs(IsNumber(column));
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
      return desktop::Number(De(cells, Read::kImporte), amount_pattern_);
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
  if (role == Qt::TextAlignmentRole) return AlignedAs(IsNumber(section));
  if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole) return {};
  static const QStringList kTitles = {QStringLiteral("Número"),   QStringLiteral("Fecha"),
                                      QStringLiteral("Concepto"), QStringLiteral("Observaciones"),
                                      QStringLiteral("Almacén"),  QStringLiteral("Importe"),
                                      QStringLiteral("Estado"),   QStringLiteral("Tomado por")};
  const QString title = kTitles.value(section);
  return role == Qt::DisplayRole ? Titled(title, section, IsNumber(section)) : title;
}

}  // namespace tarvik::desktop
