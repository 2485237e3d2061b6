// What a typed filter means, the one statement behind each list, and how its cells read.
#include "desktop/document_list_model.h"

#include <QDate>
#include <QRegularExpression>
#include <algorithm>
#include <limits>

#include "data/number.h"
#include "data/text.h"
#include "desktop/list_cells.h"
#include "host/documentos.h"

namespace tarvik::desktop {
namespace {

using data::Value;

// What the listing gives, in the order of its columns.
enum Read {
  kNumber,
  kDate,
  kConcept,
  kConceptText,
  kRemarks,
  kWarehouse,
  kWarehouseText,
  kTotal,
  kState,
  kHeld,
  kLastUser,
  kHolder,
  kStation,
  kSince
};

constexpr const char* kColumns =
    "d.f_emision, d.tipo_doc, COALESCE(c.descrip, d.datos), d.observ, d.almacen, a.descrip, d.importe, "
    "d.estado, "
    "d.ocupado, d.usuario, r.usuario AS retiene, r.estacion, r.desde";

QString Text(const Value& value) { return QString::fromStdString(data::ToText(value)); }

QString DateText(const Value& value) {
  const auto date = data::ToDate(value);
  return date ? QDate(date->year, date->month, date->day).toString(QStringLiteral("dd/MM/yyyy")) : QString();
}

QString Joined(const QString& key, const QString& text) {
  return key.isEmpty() || text.isEmpty() ? key + text : key + QStringLiteral("  ") + text;
}

std::optional<data::Date> ValidDate(int year, int month, int day) {
  const data::Date date{year, month, day};
  if (!date.Valid()) return {};
  return date;
}

std::pair<data::Date, data::Date> Month(const data::Date& first) {
  return {first, first.PlusMonths(1).PlusDays(-1)};
}

// True if the text is a date, or part of one.
bool UnderstandDate(const QString& text, DocumentFilter& filter) {
  static const QRegularExpression day_first(
      QStringLiteral("^(\\d{1,2})[/.](?:(\\d{1,2})(?:[/.](\\d{0,4}))?)?$"));
  static const QRegularExpression month_year(QStringLiteral("^(\\d{1,2})[/.](\\d{4})$"));
  static const QRegularExpression year_first(QStringLiteral("^(\\d{4})-(?:(\\d{1,2})(?:-(\\d{1,2})?)?)?$"));
  if (const auto found = month_year.match(text); found.hasMatch()) {
    const auto first = ValidDate(found.captured(2).toInt(), found.captured(1).toInt(), 1);
    if (first) filter.dates = Month(*first);
    return first.has_value();
  }
  if (const auto found = year_first.match(text); found.hasMatch()) {
    const int year = found.captured(1).toInt();
    const QString month = found.captured(2);
    const QString day = found.captured(3);
    if (month.isEmpty()) {
      if (!ValidDate(year, 1, 1)) return false;
      filter.dates = {{data::Date{year, 1, 1}, data::Date{year, 12, 31}}};
      return true;
    }
    const auto date = ValidDate(year, month.toInt(), day.isEmpty() ? 1 : day.toInt());
    if (date) filter.dates = day.isEmpty() ? Month(*date) : std::pair{*date, *date};
    return date.has_value();
  }
  if (const auto found = day_first.match(text); found.hasMatch()) {
    const int day = found.captured(1).toInt();
    const int month = found.captured(2).toInt();
    const QString year = found.captured(3);
    if (day < 1 || day > 31 || month > 12 || (month == 0 && !found.captured(2).isEmpty())) return false;
    // Half a year's figures tell nothing yet.
    if (year.size() == 4 || year.size() == 2) {
      const auto date = ValidDate(year.toInt() + (year.size() == 2 ? 2000 : 0), month, day);
      if (date) filter.dates = {*date, *date};
      return date.has_value();
    }
    filter.day_month = {day, month};
    return true;
  }
  return false;
}

QString TwoDigits(int number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); }

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

DocumentFilter UnderstandFilter(const QString& typed) {
  DocumentFilter filter;
  const QString text = typed.simplified();
  if (text.isEmpty()) return filter;
  static const QRegularExpression digits(QStringLiteral("^[0-9]+$"));
  if (digits.match(text).hasMatch()) {
    filter.number = text.toStdString();
    return filter;
  }
  if (UnderstandDate(text, filter)) return filter;
  for (const QString& word : text.split(QLatin1Char(' '))) filter.words.push_back(word.toStdString());
  return filter;
}

std::vector<std::pair<Value, Value>> NumbersBeginningWith(const std::string& digits) {
  constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();
  std::vector<std::pair<Value, Value>> stretches;
  const std::size_t first = digits.find_first_not_of('0');
  if (first != std::string::npos && digits.size() - first <= 10) {
    std::int64_t low = std::stoll(digits.substr(first));
    for (std::int64_t high = low; low <= kHighest; low *= 10, high = high * 10 + 9) {
      stretches.emplace_back(low, std::min(high, kHighest));
    }
    std::reverse(stretches.begin(), stretches.end());
  }
  if (stretches.empty()) stretches.emplace_back(1, 0);  // no document has such a number
  return stretches;
}

std::pair<std::string, std::vector<Value>> HoldsWord(data::Dialect dialect, const std::string& column,
                                                     const std::string& word) {
  static const QStringList kAlike = {QStringLiteral("aAáÁàÀäÄâÂ"), QStringLiteral("eEéÉèÈëËêÊ"),
                                     QStringLiteral("iIíÍìÌïÏîÎ"), QStringLiteral("oOóÓòÒöÖôÔ"),
                                     QStringLiteral("uUúÚùÙüÜûÛ")};
  const bool sqlite = dialect == data::Dialect::Sqlite;
  QString pattern;
  QString rough;  // where a letter may have an accent: any character
  for (const QChar character : QString::fromStdString(word)) {
    QString alike;
    for (const QString& letters : kAlike) {
      if (letters.contains(character)) alike = letters;
    }
    if (character.toLower() == QChar(0xf1)) alike = QStringLiteral("nNñÑ");
    const bool any = !alike.isEmpty() || character.unicode() > 127;
    rough += any ? QLatin1Char('_') : character;
    if (alike.isEmpty() && character.isLetter()) {
      alike = QString(character.toLower());
      if (character.toUpper() != character.toLower()) alike += character.toUpper();
    }
    const bool special = QString::fromLatin1(sqlite ? "*?[" : "\\^$.|?*+()[]{}").contains(character);
    if (!alike.isEmpty()) {
      pattern += QLatin1Char('[') + alike + QLatin1Char(']');
    } else if (special) {
      pattern += sqlite ? QStringLiteral("[%1]").arg(character) : QStringLiteral("\\%1").arg(character);
    } else {
      pattern += character;
    }
  }
  if (!sqlite) return {column + " ~ ?", {pattern.toStdString()}};
  // The rough test costs a tenth of the exact one, and most rows fail it.
  return {
      "(" + column + " LIKE ? AND " + column + " GLOB ?)",
      {QStringLiteral("%%1%").arg(rough).toStdString(), QStringLiteral("*%1*").arg(pattern).toStdString()}};
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
  return half_->Of({IsGoodsIn(kind_) ? host::Tipo::Entrada : host::Tipo::Salida, number});
}

void DocumentListModel::SetFilter(const QString& typed) { SetFilterText(typed.simplified()); }

Listing DocumentListModel::Wanted(data::Dialect dialect, const QString& typed) const {
  const bool goods_in = IsGoodsIn(kind_);
  const std::string kind{host::NombreDe(goods_in ? host::Tipo::Entrada : host::Tipo::Salida)};
  Listing listing;
  listing.table = goods_in ? "entradas" : "salidas";
  listing.key = goods_in ? "entrada" : "salida";
  listing.descending = true;
  listing.numbered = true;
  listing.columns = "d." + listing.key + ", " + kColumns;
  listing.joins =
      "LEFT JOIN tipominv c ON c.tipo_movim = d.tipo_doc LEFT JOIN ALMACEN a ON a.almacen = d.almacen "
      "LEFT JOIN tenencias r ON r.id = (SELECT MAX(t.id) FROM tenencias t WHERE t.tipo = '" +
      kind + "' AND t.documento = d." + listing.key + ")";
  listing.sum = "importe";
  if (IsPending(kind_)) listing.fixed = "estado = 'PE'";

  if (half_ != nullptr && typed.toLower() == kHalfFilter) {
    const host::Tipo type = goods_in ? host::Tipo::Entrada : host::Tipo::Salida;
    for (const auto& [of, number] : half_->ToComplete()) {
      if (of == type) listing.stretches.insert(listing.stretches.begin(), {number, number});
    }
    if (listing.stretches.empty()) listing.stretches.emplace_back(1, 0);
    return listing;
  }
  const DocumentFilter filter = UnderstandFilter(typed);
  if (filter.number) listing.stretches = NumbersBeginningWith(*filter.number);
  if (filter.dates) {
    listing.by_where = true;
    listing.where = "f_emision >= ? AND f_emision < ?";
    listing.values = {filter.dates->first, filter.dates->second.PlusDays(1)};
  }
  if (filter.day_month) {
    const auto [day, month] = *filter.day_month;
    listing.scan = true;
    listing.where = "CAST(f_emision AS TEXT) LIKE ?";
    const QString month_text = month == 0 ? QStringLiteral("__") : TwoDigits(month);
    listing.values = {QStringLiteral("____-%1-%2%").arg(month_text, TwoDigits(day)).toStdString()};
  }
  for (const std::string& word : filter.words) {
    listing.scan = true;
    const auto [remarks, values] = HoldsWord(dialect, "observ", word);
    if (!listing.where.empty()) listing.where += " AND ";
    listing.where += "(" + remarks + " OR " + HoldsWord(dialect, "tipo_doc", word).first +
                     " OR tipo_doc IN (SELECT tipo_movim FROM tipominv WHERE " +
                     HoldsWord(dialect, "descrip", word).first + "))";
    for (int i = 0; i < 3; ++i) listing.values.insert(listing.values.end(), values.begin(), values.end());
  }
  return listing;
}

int DocumentListModel::NumberAt(int row) const {
  const auto keys_row = Row(row);
  return keys_row != nullptr ? static_cast<int>(data::ToNumber((*keys_row)[kNumber])) : 0;
}

QString DocumentListModel::CountText() const {
  if (!Total()) return QStringLiteral("Contando…");
  if (Total()->count == 0) return QStringLiteral("Ningún documento");
  if (Total()->count == 1) return QStringLiteral("1 documento");
  return Grouped(Total()->count) + QStringLiteral(" documentos");
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
  const QString state = Text(cells[kState]);
  // A screen may hold it whose save has cleared the flag already.
  const bool held = data::IsNonZero(cells[kHeld]) || !cells[kHolder].IsNull();
  const int number = static_cast<int>(data::ToNumber(cells[kNumber]));
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
      if (index.column() == Holder && held && !cells[kHolder].IsNull()) {
        const auto since = data::DateTime::Parse(data::ToText(cells[kSince]));
        return QStringLiteral("Tomado por %1 en la estación %2%3")
            .arg(Text(cells[kHolder]), Text(cells[kStation]),
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
      return Text(cells[kNumber]);
    case IssueDate:
      return DateText(cells[kDate]);
    case Concept:
      return Joined(Text(cells[kConcept]), Text(cells[kConceptText]));
    case Remarks:
      return Text(cells[kRemarks]).simplified();
    case Warehouse:
      return Joined(Text(cells[kWarehouse]), Text(cells[kWarehouseText]));
    case Amount:
      return cells[kTotal].IsNull()
                 ? QString()
                 : QString::fromStdString(data::FormatNumber(data::ToNumber(cells[kTotal]), amount_pattern_));
    case State:
      if (half != nullptr && Text(half->estado) == state) return StateText(*half);
      return state == QLatin1String("PE")   ? QStringLiteral("Pendiente")
             : state == QLatin1String("CO") ? QStringLiteral("Afectado")
                                            : state;
    case Holder: {
      if (!held) return QString();
      // A flag without a lease: a screen of another program, or one that ended badly.
      if (cells[kHolder].IsNull()) return Text(cells[kLastUser]);
      QStringList parts{Text(cells[kHolder]), Text(cells[kStation])};
      parts.removeAll(QString());
      if (const auto since = data::DateTime::Parse(data::ToText(cells[kSince]))) {
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
