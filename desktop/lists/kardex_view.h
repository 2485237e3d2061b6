// KardexView: the ledger of one article in one warehouse: stock over time above, the movements below with the
// stock after each, between two dates where wanted. It reads only.
#pragma once

#include <QWidget>
#include <memory>

#include "desktop/lists/ledger_model.h"
#include "desktop/office.h"

class QLabel;
class QLayout;
class QLineEdit;
class QTableView;

namespace tarvik::desktop {

class ListTools;
class StockChart;

class KardexView final : public QWidget {
  Q_OBJECT

 public:
  struct Article {
    QString key;
    QString description;
    double warehouse = 0;
    QString place;  // the warehouse as it is read; empty: the article never moved
  };

  KardexView(Office& office, Reader& reader, QWidget* parent = nullptr);
  ~KardexView() override;

  // Begins anew, without dates.
  void Show(const Article& article);
  void Refresh();
  void SaveColumns();

  [[nodiscard]] LedgerModel& Model() const { return *model_; }
  [[nodiscard]] QTableView& Table() const { return *table_; }
  [[nodiscard]] StockChart& Chart() const { return *chart_; }
  [[nodiscard]] QLineEdit& From() const { return *from_; }
  [[nodiscard]] QLineEdit& To() const { return *to_; }
  [[nodiscard]] ListTools& Tools() const { return *tools_; }
  [[nodiscard]] QString SumsText() const;

 signals:
  void Left();  // Esc
  void DocumentRequested(const tarvik::host::Retenido& document);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLayout* Head();
  QWidget* Sums();
  void Connect();
  void TakeDates(bool left);
  void ReadBalances();
  void ShowBalances();
  void Open();
  void Fail(const QString& reason);

  Office& office_;
  Reader& reader_;
  LedgerModel* model_;
  QLabel* title_;
  QLabel* aside_;
  QLineEdit* from_;
  QLineEdit* to_;
  QLabel* reason_;
  StockChart* chart_;
  QTableView* table_;
  QLabel* sums_;
  ListTools* tools_ = nullptr;
  host::FiltroDeKardex filter_;
  LedgerModel::Points points_;
  Reader::TaskRef task_;
};

}  // namespace tarvik::desktop
