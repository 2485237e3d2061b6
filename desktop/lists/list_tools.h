// ListTools: what every list offers beside its rows: another order, columns to choose, the chosen rows
// copied, the whole list as a file, filters with a name. A list lends it its table and its model; it changes
// no data.
//
//   Alt+1 to Alt+9   sort by the first to the ninth column on show: up, down, as at first; Alt+0: as at first
//   F3               filters with a name
//   F4               columns and order; the header's context menu is the same
//   Ctrl+C           the chosen rows, with a line of titles
//   Ctrl+E           the whole list into a file; Esc ends that
#pragma once

#include <QObject>
#include <QString>
#include <functional>

#include "desktop/lists/list_export.h"
#include "desktop/office.h"
#include "desktop/reading/paged_model.h"

class QHeaderView;
class QKeyEvent;
class QLineEdit;
class QMenu;
class QPushButton;
class QTableView;

namespace tarvik::desktop {

class FilterPanel;
struct SavedFilter;

class ListTools final : public QObject {
  Q_OBJECT

 public:
  struct Parts {
    Office& office;
    Reader& reader;
    PagedModel& model;
    QTableView& table;
    QString name;   // of its settings
    QString title;  // what a file of it is called
  };
  // The table has its model and its widths of the first time. `sums` is what its line of keys shows at the
  // right; Foot() takes its place.
  ListTools(const Parts& parts, QWidget* sums, QWidget& page);

  [[nodiscard]] ListExport& Foot() const { return *foot_; }
  // Filters with a name for this field; the button opens them too. Where there is none, F3 does nothing.
  QPushButton* OfferFilters(QLineEdit& field);
  // What the list's own widgets hear goes through here first: true if it was for the tools. With Alt held no
  // letter is typed into a field.
  bool Takes(QObject* watched, QEvent* event);

  void SortBy(int column);
  void ShowColumns();
  QMenu* MakeColumnsMenu();
  FilterPanel* ShowFilters();
  void Copy();
  void Export();
  void SaveColumns();

  // Asks where the file is to stand; an empty text: nowhere. A dialog, until set otherwise.
  std::function<QString(const QString& proposed)> ask_where;

 signals:
  void Sorted();  // the rows will come in another order

 private:
  [[nodiscard]] QHeaderView& Header() const;
  [[nodiscard]] QList<int> ColumnsOnShow() const;  // as they stand
  [[nodiscard]] QString TitleOfColumn(int column) const;
  [[nodiscard]] std::function<void()> ActOf(const QKeyEvent& key, const QObject* watched);
  void MakeOrderMenu(QMenu& menu);
  void UseSort(const PagedModel::Sort& sort);
  void UseFilter(const SavedFilter& filter);

  Parts parts_;
  QWidget& page_;
  ListExport* foot_;
  QLineEdit* field_ = nullptr;
};

}  // namespace tarvik::desktop
