// StockView: stock by article and warehouse, with the movements behind the chosen row, and the kardex of an
// article in their place. It reads only.
#pragma once

#include <QWidget>
#include <functional>

#include "desktop/lists/ledger_model.h"
#include "desktop/lists/stock_model.h"
#include "desktop/office.h"

class QKeyEvent;
class QLabel;
class QLayout;
class QLineEdit;
class QSplitter;
class QStackedLayout;
class QTableView;

namespace tarvik::desktop {

class KardexView;
class ListTools;

class StockView : public QWidget {
  Q_OBJECT

 public:
  StockView(Office& office, Reader& reader, QWidget* parent = nullptr);

  [[nodiscard]] StockModel& Model() const { return *model_; }
  [[nodiscard]] LedgerModel& Ledger() const { return *ledger_; }
  [[nodiscard]] QTableView& Table() const { return *table_; }
  [[nodiscard]] KardexView& Kardex() const { return *kardex_; }
  [[nodiscard]] bool InKardex() const;
  // Of what is on show: stock, or the kardex.
  [[nodiscard]] ListTools& Tools() const;
  [[nodiscard]] QLineEdit& FilterField() const;
  void Refresh();
  void SaveColumns();

 signals:
  void DocumentRequested(const tarvik::host::Retenido& document);

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
  void AskForKardex();
  void OpenKardex();
  void LeaveKardex();
  [[nodiscard]] std::function<void()> ActOf(const QKeyEvent& key, const QObject* watched);
  bool HandedOver(QKeyEvent& key, const QObject* watched);

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
  QStackedLayout* pages_;
  KardexView* kardex_;
  ListTools* tools_ = nullptr;
  bool kardex_asked_ = false;  // waits for the rows that were asked for
  // What is to be chosen when the list has been read again.
  QString wanted_;
  double wanted_warehouse_ = 0;
};

}  // namespace tarvik::desktop
