// LedgerModel: the movements of one article in one warehouse, latest first, with the stock after each where
// it was handed over. It reads only.
#pragma once

#include <memory>
#include <optional>

#include "desktop/reading/paged_model.h"
#include "host/kardex.h"

namespace tarvik::desktop {

class LedgerModel : public PagedModel {
  Q_OBJECT

 public:
  enum Column {
    IssueDate,
    Hour,
    Operation,
    Document,
    Concept,
    In,
    Out,
    Balance,
    Price,
    Amount,
    User,
    ColumnCount
  };
  // In the order of posting.
  using Points = std::shared_ptr<const std::vector<host::PuntoDeKardex>>;

  LedgerModel(Reader& reader, std::string quantity_pattern, std::string amount_pattern,
              QObject* parent = nullptr);
  void Show(const host::FiltroDeKardex& filter);
  void ShowArticle(const std::string& article, double warehouse) { Show({article, warehouse}); }
  void ShowNone();
  // The stock after each movement, as far as it is known.
  void UseBalances(Points points);
  // The document of a row; nothing where the base does not have it.
  [[nodiscard]] std::optional<host::Retenido> DocumentAt(int row) const;
  [[nodiscard]] std::optional<data::Date> DateAt(int row) const;

  std::function<data::Value(const Cells&)> ValueOf(int column) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 protected:
  host::Listado Wanted(const QString& filter) const override;
  bool WantsSums() const override { return false; }

 private:
  [[nodiscard]] QVariant TextOf(const Cells& cells, int column) const;

  std::string quantity_pattern_;
  std::string amount_pattern_;
  host::FiltroDeKardex filter_;
  Points points_;
};

}  // namespace tarvik::desktop
