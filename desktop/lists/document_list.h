// DocumentList: one list on show: filter, table, sums, context menu. It tells what the operator wants
// done with which document; it does nothing to a document.
#pragma once

#include <QWidget>
#include <functional>

#include "desktop/lists/document_list_model.h"
#include "desktop/office.h"

class QKeyEvent;
class QLabel;
class QLayout;
class QLineEdit;
class QMenu;
class QTableView;

namespace tarvik::desktop {

class KeyCaps;
class ListTools;

class DocumentList : public QWidget {
  Q_OBJECT

 public:
  DocumentList(Office& office, Reader& reader, ListKind kind, QWidget* parent = nullptr);

  [[nodiscard]] ListKind Kind() const { return model_->Kind(); }
  [[nodiscard]] DocumentListModel& Model() const { return *model_; }
  [[nodiscard]] QTableView& Table() const { return *table_; }
  [[nodiscard]] QLineEdit& FilterField() const { return *filter_; }

  [[nodiscard]] ListTools& Tools() const { return *tools_; }

  // The chosen document; 0 for none.
  [[nodiscard]] int Selected() const;
  [[nodiscard]] int SelectedRow() const;  // from 0; -1 for none
  // True if a screen holds the chosen document.
  [[nodiscard]] bool SelectedHeld() const;
  bool Select(int number);
  // Reads again and stays on the chosen document, or on `number` if given.
  void Refresh(int number = 0);
  // Says which documents are not whole; outlives the list.
  void Use(const HalfPosted& half);
  // True if the chosen document was posted in part.
  [[nodiscard]] bool SelectedHalf() const;
  // What a click with the right button shows; the window owns the actions.
  void SetMenu(QMenu* menu) { menu_ = menu; }
  void SaveColumns();

 signals:
  void NewRequested();
  void OpenRequested(int number);
  void ReadRequested(int number);
  void DeleteRequested(int number);
  void CompleteRequested(int number);
  void RefreshRequested();  // by hand: what stands beside the list is to be read too
  void SelectionChanged();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  QLayout* Head();
  void DressRows();
  QWidget* Sums();
  void Connect();
  bool AtTheRows(QEvent& event);
  [[nodiscard]] std::function<void()> ActOf(const QKeyEvent& key, bool in_filter);
  bool HandedOver(QKeyEvent& key, bool in_filter);
  void Ask(void (DocumentList::*what)(int));
  void (DocumentList::*asked_)(int) = nullptr;  // waits for the rows that were asked for
  void ShowSums();
  void ShowKeys();
  void OnRested();

  Office& office_;
  DocumentListModel* model_;
  QLineEdit* filter_;
  QTableView* table_;
  QWidget* empty_;
  QLabel* empty_text_;
  QLabel* count_;
  QLabel* total_;
  QLabel* reason_;
  KeyCaps* keys_;
  ListTools* tools_ = nullptr;
  QMenu* menu_ = nullptr;
  int wanted_ = 0;   // to be chosen when it has been read
  int offset_ = -1;  // rows between the first one seen and the chosen one
  bool shown_ = false;
};

}  // namespace tarvik::desktop
