// How the cells of a row of stock read.
#include "desktop/lists/stock_model.h"

#include <array>

#include "desktop/lists/cell_values.h"
#include "desktop/style/list_cells.h"
#include "host/listados.h"

namespace tarvik::desktop {

using data::Value;
using host::De;
using StockRead = host::ColumnaDeExistencia;

StockModel::StockModel(Reader& reader, std::string quantity_pattern, QObject* parent)
    : PagedModel(reader, parent), quantity_pattern_(std::move(quantity_pattern)) {}

host::Listado StockModel::Wanted(const QString& filter) const {
  return host::ListadoDeExistencias(filter.toStdString());
}

void StockModel::PutInOrder(host::Listado& listing, const Sort& sort) const {
  static constexpr std::array kReads{StockRead::kArticulo,  StockRead::kDescripcion, StockRead::kUnidad,
                                     StockRead::kUbicacion, StockRead::kAlmacen,     StockRead::kExistencia,
                                     StockRead::kPorSurtir};
  host::Ordena(listing, kReads.at(static_cast<std::size_t>(sort.column)), sort.descending);
}

std::function<Value(const PagedModel::Cells&)> StockModel::ValueOf(int column) const {
  switch (column) {
    case Article:
      return [](const Cells& cells) { return De(cells, StockRead::kArticulo); };
    case Description:
      return [](const Cells& cells) { return De(cells, StockRead::kDescripcion); };
    case Unit:
      return [](const Cells& cells) { return De(cells, StockRead::kUnidad); };
    case Place:
      return [](const Cells& cells) { return De(cells, StockRead::kUbicacion); };
    case Warehouse:
      return [](const Cells& cells) -> Value {
        return Joined(Text(De(cells, StockRead::kAlmacen)), Text(De(cells, StockRead::kNombreDelAlmacen)))
            .toStdString();
      };
    case Stock:
      return [](const Cells& cells) -> Value { return data::ToNumber(De(cells, StockRead::kExistencia)); };
    default:
      return [](const Cells& cells) { return De(cells, StockRead::kPorSurtir); };
  }
}

int StockModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant StockModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const int column = index.column();
  const bool number = column == Stock || column == Reserved;
  if (role == Qt::TextAlignmentRole) return AlignedAs(number);
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
      return Joined(Text(De(cells, StockRead::kAlmacen)), Text(De(cells, StockRead::kNombreDelAlmacen)));
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
  if (role == Qt::TextAlignmentRole) return AlignedAs(section == Stock || section == Reserved);
  if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole) return {};
  static const QStringList kTitles = {QStringLiteral("Artículo"),  QStringLiteral("Descripción"),
                                      QStringLiteral("Unidad"),    QStringLiteral("Ubicación"),
                                      QStringLiteral("Almacén"),   QStringLiteral("Existencia"),
                                      QStringLiteral("Por surtir")};
  const QString title = kTitles.value(section);
  return role == Qt::DisplayRole ? Titled(title, section, section == Stock || section == Reserved) : title;
}

}  // namespace tarvik::desktop
