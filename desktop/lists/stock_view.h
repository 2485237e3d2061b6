// StockView: stock by article and warehouse, with the movements behind the chosen row. It reads only.
#pragma once

#include <QWidget>

#include "desktop/office.h"
#include "desktop/reading/paged_model.h"

class QLabel;
class QLayout;
class QLineEdit;
class QSplitter;
class QTableView;

namespace tarvik::desktop {

class StockModel : public PagedModel {
  Q_OBJECT

 public:
  enum Column { Article, Description, Unit, Place, Warehouse, Stock, Reserved, ColumnCount };
  enum DataRole { ArticleRole = Qt::UserRole, WarehouseRole, StockRole };

  StockModel(Reader& reader, std::string quantity_pattern, QObject* parent = nullptr);
  void SetFilter(const QString& typed) { SetFilterText(typed); }

  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 protected:
  host::Listado Wanted(const QString& filter) const override;

 private:
  std::string quantity_pattern_;
};

// The movements of one article in one warehouse, latest first.
class LedgerModel : public PagedModel {
  Q_OBJECT

 public:
  enum Column { IssueDate, Hour, Operation, Document, Concept, In, Out, Price, Amount, User, ColumnCount };

  LedgerModel(Reader& reader, std::string quantity_pattern, std::string amount_pattern,
              QObject* parent = nullptr);
  void ShowArticle(const std::string& article, double warehouse);
  void ShowNone();

  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 protected:
  host::Listado Wanted(const QString& filter) const override;
  bool WantsSums() const override { return false; }

 private:
  std::string quantity_pattern_;
  std::string amount_pattern_;
  std::string article_;
  double warehouse_ = 0;
};

class StockView : public QWidget {
  Q_OBJECT

 public:
  StockView(Office& office, Reader& reader, QWidget* parent = nullptr);

  [[nodiscard]] StockModel& Model() const { return *model_; }
  [[nodiscard]] LedgerModel& Ledger() const { return *ledger_; }
  [[nodiscard]] QTableView& Table() const { return *table_; }
  [[nodiscard]] QLineEdit& FilterField() const { return *filter_; }
  void Refresh();
  void SaveColumns();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  QLayout* Head();
  void DressRows();
  QWidget* Below();
  void Connect();
  void OnRested();
  [[nodiscard]] int WantedRow() const;
  void ShowSums();
  void ShowLedger();

  Office& office_;
  StockModel* model_;
  LedgerModel* ledger_;
  QLineEdit* filter_;
  QTableView* table_;
  QTableView* ledger_table_;
  QLabel* ledger_title_;
  QLabel* count_;
  QLabel* reason_;
  QSplitter* splitter_;
  // What is to be chosen when the list has been read again.
  QString wanted_;
  double wanted_warehouse_ = 0;
};

}  // namespace tarvik::desktop
