// Reading by key: a page is the rows behind the last key seen, so that the millionth costs what the
// first one does. A search that no index serves advances in steps and shows what it has so far.
#include "desktop/paged_model.h"

#include <algorithm>
#include <utility>

namespace tarvik::desktop {
namespace {

using data::Value;

// A condition that grows, with its values in the order of the text.
struct Condition {
  std::string text;
  std::vector<Value> values;

  void And(const std::string& more, const std::vector<Value>& more_values = {}) {
    if (more.empty()) return;
    if (!text.empty()) text += " AND ";
    text += more;
    values.insert(values.end(), more_values.begin(), more_values.end());
  }
  [[nodiscard]] std::string Where() const { return text.empty() ? "" : " WHERE " + text; }
};

std::string Key(const Listing& listing) { return listing.by_where ? "+" + listing.key : listing.key; }

std::string Direction(const Listing& listing) { return listing.descending ? " DESC" : ""; }

// The keys first, the whole rows behind them: an index often holds all that finding the keys takes.
std::string RowsText(const Listing& listing, const Condition& condition, int limit) {
  std::string text = "SELECT " + listing.columns + " FROM (SELECT " + listing.key + " AS k FROM " +
                     listing.table + condition.Where();
  if (limit > 0) {
    text += " ORDER BY " + Key(listing) + Direction(listing) + " LIMIT " + std::to_string(limit);
  }
  text += ") k JOIN " + listing.table + " d ON d." + listing.key + " = k.k " + listing.joins +
          " ORDER BY d." + listing.key + Direction(listing);
  return listing.more_order.empty() ? text : text + ", " + listing.more_order;
}

int CountKeys(const std::vector<PagedModel::Cells>& rows) {
  int count = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i == 0 || !(rows[i][0] == rows[i - 1][0])) ++count;
  }
  return count;
}

std::int64_t Number(const Value& key) {
  const auto* number = key.As<std::int64_t>();
  return number != nullptr ? *number : static_cast<std::int64_t>(data::ToNumber(key));
}

}  // namespace

struct PagedModel::Cursor {
  Listing listing;
  std::size_t stretch = 0;
  Value behind;  // null: at the beginning of the stretch
  bool end = false;

  [[nodiscard]] Condition Here() const {
    Condition condition;
    condition.And(listing.fixed);
    if (stretch < listing.stretches.size()) {
      const auto& [low, high] = listing.stretches[stretch];
      condition.And(Key(listing) + " >= ? AND " + Key(listing) + " <= ?", {low, high});
    }
    if (!behind.IsNull()) condition.And(Key(listing) + (listing.descending ? " < ?" : " > ?"), {behind});
    return condition;
  }
  void NextStretch() {
    behind = {};
    end = ++stretch >= listing.stretches.size();
  }
  // The last key of the next short step; null if there are no keys left in this stretch.
  Value StepEnd(data::EngineConnection& connection, const Condition& here) const {
    const std::string edge = listing.descending ? "MIN" : "MAX";
    const std::string text = "SELECT " + edge + "(k) AS k FROM (SELECT " + listing.key + " AS k FROM " +
                             listing.table + here.Where() + " ORDER BY " + listing.key + Direction(listing) +
                             " LIMIT " + std::to_string(kStep) + ") s";
    return connection.Run(text, here.values).rows.at(0).at(0);
  }
  [[nodiscard]] std::string UpTo() const { return listing.key + (listing.descending ? " >= ?" : " <= ?"); }

  // Reads at most `limit` keys, and less if the step ends first.
  std::vector<Cells> Read(data::EngineConnection& connection, int limit) {
    Condition condition = Here();
    Value step_end;
    if (listing.scan) {
      step_end = StepEnd(connection, condition);
      if (step_end.IsNull()) {
        NextStretch();
        return {};
      }
      condition.And(UpTo(), {step_end});
    }
    condition.And(listing.where, listing.values);
    auto rows = connection.Run(RowsText(listing, condition, limit), condition.values).rows;
    if (CountKeys(rows) >= limit) {
      behind = rows.back()[0];
    } else if (listing.scan) {
      behind = step_end;
    } else {
      NextStretch();
    }
    return rows;
  }

  // Adds up one step.
  void Add(data::EngineConnection& connection, Sums& sums) {
    Condition condition = Here();
    Value step_end;
    if (!listing.by_where) {
      step_end = StepEnd(connection, condition);
      if (step_end.IsNull()) return NextStretch();
      condition.And(UpTo(), {step_end});
    }
    condition.And(listing.where, listing.values);
    const std::string total = listing.sum.empty() ? "0" : "SUM(" + listing.sum + ")";
    const auto found =
        connection.Run("SELECT COUNT(*) AS n, " + total + " AS t FROM " + listing.table + condition.Where(),
                       condition.values);
    sums.count += Number(found.rows.at(0).at(0));
    sums.total += data::ToNumber(found.rows.at(0).at(1));
    if (listing.by_where) return NextStretch();
    behind = step_end;
  }
};

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

void PagedModel::Refresh(std::optional<std::int64_t> reach) {
  for (auto* task : {&page_task_, &sum_task_, &again_task_}) {
    if (*task) (*task)->Drop();
    *task = std::make_shared<Reader::Task>();
  }
  cursor_ = std::make_shared<Cursor>();
  cursor_->listing = Wanted(reader_.Kind(), filter_);
  numbered_ = cursor_->listing.numbered;
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
    auto rows = cursor->Read(connection, reach && !cursor->listing.scan ? kReach / 10 : left);
    const int keys = CountKeys(rows);
    left -= keys;
    all += keys;
    bool reached = true;
    if (reach && !cursor->end && all < kReach) {
      const auto seen = cursor->behind.IsNull() ? reach.value() + 1 : Number(cursor->behind);
      reached = cursor->listing.descending ? seen <= *reach : seen >= *reach;
    }
    const bool rests = cursor->end || (left <= 0 && reached);
    if (left <= 0) left = kPage;
    reader.Deliver(task, [this, rows = std::move(rows), rests, end = cursor->end]() mutable {
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
  auto cursor = std::make_shared<Cursor>();
  cursor->listing = Wanted(reader_.Kind(), filter_);
  auto step = [this, &reader = reader_, task = sum_task_, cursor,
               sums = Sums()](data::EngineConnection& connection) mutable {
    cursor->Add(connection, sums);
    if (!cursor->end) return true;
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
  if (!pages_.empty() && !pages_.back().cells.empty()) keys = CountKeys(pages_.back().cells);
  for (auto& row : rows) {
    const bool new_key = pages_.empty() || !(pages_.back().last == row[0]);
    if (new_key && ++keys > kPage) {
      pages_.emplace_back();
      pages_.back().first = row[0];
      keys = 1;
    }
    Page& page = pages_.back();
    if (new_key && numbered_) page.keys.push_back(Number(row[0]));
    page.last = row[0];
    page.used = ++clock_;
    page.cells.push_back(std::move(row));
    ++page.rows;
  }
  Renumber();
  Evict();
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
    const_cast<PagedModel*>(this)->ReadAgain(page.first);
  }
  return nullptr;
}

void PagedModel::ReadAgain(const Value& first) {
  const auto found =
      std::find_if(pages_.begin(), pages_.end(), [&](const Page& page) { return page.first == first; });
  if (found == pages_.end() || !cursor_) return;
  Listing listing = Wanted(reader_.Kind(), filter_);
  Condition condition;
  condition.And(listing.fixed);
  condition.And(listing.key + " >= ? AND " + listing.key + " <= ?",
                listing.descending ? std::vector<Value>{found->last, found->first}
                                   : std::vector<Value>{found->first, found->last});
  // A page may hold the end of one stretch and the beginning of the next.
  Condition stretches;
  for (const auto& [low, high] : listing.stretches) {
    stretches.text += (stretches.text.empty() ? "(" : " OR ") + listing.key + " BETWEEN ? AND ?";
    stretches.values.insert(stretches.values.end(), {low, high});
  }
  if (!stretches.text.empty()) condition.And(stretches.text + ")", stretches.values);
  condition.And(listing.where, listing.values);
  auto step = [this, &reader = reader_, task = again_task_, first, text = RowsText(listing, condition, 0),
               values = condition.values](data::EngineConnection& connection) {
    auto rows = connection.Run(text, values).rows;
    reader.Deliver(task,
                   [this, first, rows = std::move(rows)]() mutable { Replace(first, std::move(rows)); });
    return false;
  };
  reader_.Run(again_task_, Urgency::Page, std::move(step), [this](const QString& reason) { Fail(reason); });
}

void PagedModel::Replace(const Value& first, std::vector<Cells> rows) {
  const auto found =
      std::find_if(pages_.begin(), pages_.end(), [&](const Page& page) { return page.first == first; });
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
    if (numbered_) {
      for (const Cells& row : rows) found->keys.push_back(Number(row[0]));
      found->keys.erase(std::unique(found->keys.begin(), found->keys.end()), found->keys.end());
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
