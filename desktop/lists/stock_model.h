// StockModel: stock by article and warehouse, by page and filter. It reads only.
#pragma once

#include "desktop/reading/paged_model.h"

namespace tarvik::desktop {

class StockModel : public PagedModel {
  Q_OBJECT

 public:
  enum Column { Article, Description, Unit, Place, Warehouse, Stock, Reserved, ColumnCount };
  enum DataRole { ArticleRole = Qt::UserRole, WarehouseRole, StockRole };

  StockModel(Reader& reader, std::string quantity_pattern, QObject* parent = nullptr);
  void SetFilter(const QString& typed) { SetFilterText(typed); }

  bool SortsBy(int column) const override { return column < ColumnCount; }
  std::function<data::Value(const Cells&)> ValueOf(int column) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 protected:
  host::Listado Wanted(const QString& filter) const override;
  void PutInOrder(host::Listado& listing, const Sort& sort) const override;

 private:
  std::string quantity_pattern_;
};

}  // namespace tarvik::desktop
