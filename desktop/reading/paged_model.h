// PagedModel: a table over a listing of any length. It reads page by page behind the last key seen,
// in the background, keeps a bounded number of pages and reads an older one again when it is shown.
// What a list reads and how a cell looks is the derived model's.
#pragma once

#include <QAbstractTableModel>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "desktop/reading/reader.h"
#include "host/listado.h"

namespace tarvik::desktop {

class PagedModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  using Cells = std::vector<data::Value>;

  static constexpr int kPage = 200;      // keys of one page
  static constexpr int kKeptPages = 40;  // pages with their cells in memory
  static constexpr int kReach = 10000;

  // By which column the rows stand; -1: in the listing's own order.
  struct Sort {
    int column = -1;
    bool descending = false;
    bool operator==(const Sort&) const = default;
  };

  // The reader outlives the model.
  explicit PagedModel(Reader& reader, QObject* parent = nullptr);
  ~PagedModel() override;

  // Reads from the first page again. The old rows stay to be seen until the first new ones are there.
  // With `reach` it reads on at once to the row of that key, as far as kReach keys.
  void Refresh(std::optional<std::int64_t> reach = {});

  // Reads from the first page again in that order. A column that can't be sorted by is ignored.
  void SetSort(const Sort& sort);
  [[nodiscard]] const Sort& Sorted() const { return sort_; }
  [[nodiscard]] virtual bool SortsBy(int) const { return false; }
  // All that is on show, in its order.
  [[nodiscard]] host::Listado Listing() const;
  // A column's value of a row, for a file: on any thread, as long as it lives.
  [[nodiscard]] virtual std::function<data::Value(const Cells&)> ValueOf(int) const { return {}; }

  [[nodiscard]] bool Busy() const { return reading_; }  // a page is under way
  // What is on show is not yet what was asked for.
  [[nodiscard]] bool Stale() const { return fresh_ && reading_; }
  [[nodiscard]] bool Failing() const { return failed_; }     // the last reading failed
  [[nodiscard]] bool Complete() const { return complete_; }  // the last page has been read
  [[nodiscard]] const std::optional<host::Sumas>& Total() const {
    return sums_;
  }  // nothing until they are ready
  [[nodiscard]] int PagesInMemory() const;
  // The keys of the rows read so far, for a listing by number.
  [[nodiscard]] std::vector<std::int64_t> Keys() const;
  [[nodiscard]] int RowOfKey(std::int64_t key) const;  // -1: not among them
  void RemoveKey(std::int64_t key);

  int rowCount(const QModelIndex& parent = {}) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;

 signals:
  void Rested();  // what was asked for has been read
  void SumsChanged();
  void Failed(const QString& reason);

 protected:
  // What to read now. Its conditions may change between calls of Refresh.
  [[nodiscard]] virtual host::Listado Wanted(const QString& filter) const = 0;
  // Puts the listing in the order of one of the columns.
  virtual void PutInOrder(host::Listado&, const Sort&) const {}
  // A header's title with a mark for the order. The mark's room is there without it too: no title moves.
  [[nodiscard]] QString Titled(const QString& title, int column, bool at_right) const;
  [[nodiscard]] virtual bool WantsSums() const { return true; }
  // The cells of a row, by the listing's columns; nullptr while the page is read again.
  [[nodiscard]] const Cells* Row(int row) const;
  void SetFilterText(const QString& filter);
  [[nodiscard]] const QString& FilterText() const { return filter_; }
  // Reads nothing until the first Refresh; empties the model.
  void Clear();

 private:
  struct Page {
    std::uint64_t number = 0;
    std::vector<std::int64_t> keys;      // of a listing by number
    std::vector<host::Identidad> which;  // of one in another order than the key's
    data::Value first;
    data::Value last;
    int rows = 0;
    std::vector<Cells> cells;  // empty: not in memory
    mutable std::uint64_t used = 0;
    mutable bool asked = false;
  };

  void ReadOn(std::optional<std::int64_t> reach = {});
  void StartSums();
  void Take(std::vector<Cells> rows, bool rests, bool end);
  void Append(std::vector<Cells> rows);
  void ReadAgain(std::uint64_t number);
  void Replace(std::uint64_t number, std::vector<Cells> rows);
  void NoteRow(Page& page, const Cells& row, bool new_key);
  std::vector<Page>::iterator PageOf(std::uint64_t number);
  void Renumber();
  void Evict();
  void Fail(const QString& reason);
  [[nodiscard]] std::pair<std::size_t, int> Place(int row) const;

  Reader& reader_;
  QString filter_;
  Sort sort_;
  host::Listado listing_;  // what the pages are of
  std::vector<Page> pages_;
  std::vector<int> starts_;  // first row of each page
  int rows_ = 0;
  std::shared_ptr<host::CursorDeListado> cursor_;
  Reader::TaskRef page_task_;
  Reader::TaskRef sum_task_;
  Reader::TaskRef again_task_;
  std::optional<host::Sumas> sums_;
  bool started_ = false;
  bool fresh_ = false;  // the next rows replace what is on show
  bool reading_ = false;
  bool complete_ = false;
  bool failed_ = false;
  mutable std::uint64_t clock_ = 0;
};

}  // namespace tarvik::desktop
