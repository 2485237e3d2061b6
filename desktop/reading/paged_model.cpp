// Reads by key: a page is the rows after the last key seen, so a page far down costs no more than the first.
// A search that no index serves advances in steps and shows what it has so far.
#include "desktop/reading/paged_model.h"

#include <algorithm>
#include <utility>

namespace tarvik::desktop {
namespace {

using data::Value;

std::int64_t Number(const Value& key) {
  const auto* number = key.As<std::int64_t>();
  return number != nullptr ? *number : static_cast<std::int64_t>(data::ToNumber(key));
}

}  // namespace

PagedModel::PagedModel(Reader& reader, QObject* parent) : QAbstractTableModel(parent), reader_(reader) {}

PagedModel::~PagedModel() {
  for (const auto& task : {page_task_, sum_task_, again_task_}) {
    if (task) task->Drop();
  }
}

void PagedModel::SetFilterText(const QString& filter) {
  if (filter == filter_ && started_) return;
  filter_ = filter;
  if (sums_) {
    sums_.reset();
    emit SumsChanged();
  }
  Refresh();
}

void PagedModel::SetSort(const Sort& sort) {
  if (sort == sort_ || (sort.column >= 0 && !SortsBy(sort.column))) return;
  sort_ = sort;
  emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
  if (started_) Refresh();
}

host::Listado PagedModel::Listing() const {
  host::Listado listing = Wanted(filter_);
  if (sort_.column >= 0) PutInOrder(listing, sort_);
  return listing;
}

QString PagedModel::Titled(const QString& title, int column, bool at_right) const {
  const QString mark = column != sort_.column ? QStringLiteral("\u2003")
                       : sort_.descending     ? QStringLiteral("▾")
                                              : QStringLiteral("▴");
  return at_right ? mark + QLatin1Char(' ') + title : title + QLatin1Char(' ') + mark;
}

void PagedModel::Refresh(std::optional<std::int64_t> reach) {
  for (auto* task : {&page_task_, &sum_task_, &again_task_}) {
    if (*task) (*task)->Drop();
    *task = std::make_shared<Reader::Task>();
  }
  listing_ = Listing();
  cursor_ = std::make_shared<host::CursorDeListado>(listing_);
  started_ = true;
  fresh_ = true;
  complete_ = false;
  failed_ = false;
  reading_ = false;
  ReadOn(reach);
  if (WantsSums()) StartSums();
}

void PagedModel::Clear() {
  for (const auto& task : {page_task_, sum_task_, again_task_}) {
    if (task) task->Drop();
  }
  beginResetModel();
  pages_.clear();
  Renumber();
  endResetModel();
  started_ = false;
  reading_ = false;
}

void PagedModel::ReadOn(std::optional<std::int64_t> reach) {
  reading_ = true;
  // The cursor is the reader's until this reading rests.
  auto step = [this, &reader = reader_, task = page_task_, cursor = cursor_, reach, left = kPage,
               all = 0](data::EngineConnection& connection) mutable {
    auto rows = cursor->Lee(connection, reach && !cursor->PorPasos() ? kReach / 10 : left);
    const int keys = host::CuentaClaves(rows);
    left -= keys;
    all += keys;
    bool reached = true;
    if (reach && !cursor->Termino() && all < kReach) reached = cursor->LlegoA(*reach);
    const bool rests = cursor->Termino() || (left <= 0 && reached);
    if (left <= 0) left = kPage;
    reader.Deliver(task, [this, rows = std::move(rows), rests, end = cursor->Termino()]() mutable {
      Take(std::move(rows), rests, end);
    });
    return !rests;
  };
  reader_.Run(page_task_, Urgency::Page, std::move(step), [this](const QString& reason) { Fail(reason); });
}

void PagedModel::Fail(const QString& reason) {
  reading_ = false;
  failed_ = true;
  emit Failed(reason);
  emit Rested();
}

void PagedModel::StartSums() {
  if (sum_task_) sum_task_->Drop();
  sum_task_ = std::make_shared<Reader::Task>();
  auto cursor = std::make_shared<host::CursorDeListado>(Wanted(filter_));
  auto step = [this, &reader = reader_, task = sum_task_, cursor,
               sums = host::Sumas()](data::EngineConnection& connection) mutable {
    cursor->Suma(connection, sums);
    if (!cursor->Termino()) return true;
    reader.Deliver(task, [this, sums] {
      sums_ = sums;
      emit SumsChanged();
    });
    return false;
  };
  // A listing whose sums fail is still of use; its rows tell of the failure.
  reader_.Run(sum_task_, Urgency::Sum, std::move(step), [](const QString&) {});
}

void PagedModel::Take(std::vector<Cells> rows, bool rests, bool end) {
  if (fresh_) {
    fresh_ = false;
    beginResetModel();
    pages_.clear();
    Renumber();
    if (!rows.empty()) Append(std::move(rows));
    endResetModel();
  } else if (!rows.empty()) {
    beginInsertRows({}, rows_, rows_ + static_cast<int>(rows.size()) - 1);
    Append(std::move(rows));
    endInsertRows();
  }
  if (!rests) return;
  complete_ = end;
  reading_ = false;
  emit Rested();
}

void PagedModel::Append(std::vector<Cells> rows) {
  int keys = kPage;
  if (!pages_.empty() && !pages_.back().cells.empty()) keys = host::CuentaClaves(pages_.back().cells);
  for (auto& row : rows) {
    const bool new_key = pages_.empty() || !(pages_.back().last == row[0]);
    if (new_key && ++keys > kPage) {
      pages_.emplace_back();
      pages_.back().number = ++clock_;
      pages_.back().first = row[0];
      keys = 1;
    }
    Page& page = pages_.back();
    NoteRow(page, row, new_key);
    page.last = row[0];
    page.used = ++clock_;
    page.cells.push_back(std::move(row));
    ++page.rows;
  }
  Renumber();
  Evict();
}

// What it takes to find the row again, and to know it without its cells.
void PagedModel::NoteRow(Page& page, const Cells& row, bool new_key) {
  if (new_key && listing_.con_numero) page.keys.push_back(Number(row[0]));
  if (!listing_.orden.empty()) page.which.push_back(host::IdentidadDe(listing_, row));
}

void PagedModel::Renumber() {
  starts_.clear();
  rows_ = 0;
  for (const Page& page : pages_) {
    starts_.push_back(rows_);
    rows_ += page.rows;
  }
}

void PagedModel::Evict() {
  for (int held = PagesInMemory(); held > kKeptPages; --held) {
    Page* oldest = nullptr;
    for (Page& page : pages_) {
      if (!page.cells.empty() && (oldest == nullptr || page.used < oldest->used)) oldest = &page;
    }
    std::vector<Cells>().swap(oldest->cells);
    oldest->asked = false;
  }
}

int PagedModel::PagesInMemory() const {
  return static_cast<int>(
      std::count_if(pages_.begin(), pages_.end(), [](const Page& page) { return !page.cells.empty(); }));
}

std::pair<std::size_t, int> PagedModel::Place(int row) const {
  const auto after = std::upper_bound(starts_.begin(), starts_.end(), row);
  const auto page = static_cast<std::size_t>(after - starts_.begin()) - 1;
  return {page, row - starts_[page]};
}

const PagedModel::Cells* PagedModel::Row(int row) const {
  if (row < 0 || row >= rows_) return nullptr;
  const auto [number, at] = Place(row);
  const Page& page = pages_[number];
  page.used = ++clock_;
  if (!page.cells.empty()) return &page.cells[static_cast<std::size_t>(at)];
  if (!page.asked) {
    page.asked = true;
    const_cast<PagedModel*>(this)->ReadAgain(page.number);
  }
  return nullptr;
}

std::vector<PagedModel::Page>::iterator PagedModel::PageOf(std::uint64_t number) {
  return std::find_if(pages_.begin(), pages_.end(),
                      [number](const Page& page) { return page.number == number; });
}

void PagedModel::ReadAgain(std::uint64_t number) {
  const auto found = PageOf(number);
  if (found == pages_.end() || !cursor_) return;
  auto step = [this, &reader = reader_, task = again_task_, listing = listing_, number, which = found->which,
               first = found->first, last = found->last](data::EngineConnection& connection) {
    auto rows = which.empty() ? host::RenglonesEntre(connection, listing, first, last)
                              : host::RenglonesDe(connection, listing, which);
    reader.Deliver(task,
                   [this, number, rows = std::move(rows)]() mutable { Replace(number, std::move(rows)); });
    return false;
  };
  reader_.Run(again_task_, Urgency::Page, std::move(step), [this](const QString& reason) { Fail(reason); });
}

void PagedModel::Replace(std::uint64_t number, std::vector<Cells> rows) {
  const auto found = PageOf(number);
  if (found == pages_.end()) return;
  const int start = starts_[static_cast<std::size_t>(found - pages_.begin())];
  const int before = found->rows;
  const int now = static_cast<int>(rows.size());
  // Others may have deleted documents since, or made some in between.
  if (now < before) beginRemoveRows({}, start + now, start + before - 1);
  if (now > before) beginInsertRows({}, start + before, start + now - 1);
  if (rows.empty()) {
    pages_.erase(found);
  } else {
    found->keys.clear();
    found->which.clear();
    for (std::size_t i = 0; i < rows.size(); ++i) {
      NoteRow(*found, rows[i], i == 0 || !(rows[i][0] == rows[i - 1][0]));
    }
    found->first = rows.front()[0];
    found->last = rows.back()[0];
    found->rows = now;
    found->cells = std::move(rows);
    found->used = ++clock_;
    found->asked = false;
  }
  Renumber();
  if (now < before) endRemoveRows();
  if (now > before) endInsertRows();
  if (now > 0) emit dataChanged(index(start, 0), index(start + std::min(before, now) - 1, columnCount() - 1));
  Evict();
}

std::vector<std::int64_t> PagedModel::Keys() const {
  std::vector<std::int64_t> keys;
  keys.reserve(static_cast<std::size_t>(rows_));
  for (const Page& page : pages_) keys.insert(keys.end(), page.keys.begin(), page.keys.end());
  return keys;
}

int PagedModel::RowOfKey(std::int64_t key) const {
  for (std::size_t i = 0; i < pages_.size(); ++i) {
    const auto& keys = pages_[i].keys;
    const auto found = std::find(keys.begin(), keys.end(), key);
    if (found != keys.end()) return starts_[i] + static_cast<int>(found - keys.begin());
  }
  return -1;
}

void PagedModel::RemoveKey(std::int64_t key) {
  const int row = RowOfKey(key);
  if (row < 0) return;
  const auto [number, at] = Place(row);
  beginRemoveRows({}, row, row);
  Page& page = pages_[number];
  if (--page.rows == 0) {
    pages_.erase(pages_.begin() + static_cast<std::ptrdiff_t>(number));
  } else {
    page.keys.erase(page.keys.begin() + at);
    if (!page.which.empty()) page.which.erase(page.which.begin() + at);
    if (!page.cells.empty()) page.cells.erase(page.cells.begin() + at);
    page.first = page.keys.front();
    page.last = page.keys.back();
  }
  Renumber();
  endRemoveRows();
  if (WantsSums()) StartSums();
}

int PagedModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

bool PagedModel::canFetchMore(const QModelIndex& parent) const {
  return !parent.isValid() && started_ && !reading_ && !complete_ && !failed_ && !fresh_;
}

void PagedModel::fetchMore(const QModelIndex& parent) {
  if (canFetchMore(parent)) ReadOn();
}

}  // namespace tarvik::desktop
