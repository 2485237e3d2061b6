// Prepared statements that a connection keeps for the next time.
#pragma once

#include <list>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "data/sqlite/handle.h"

namespace tarvik::data::sqlite {

// Prepared statements by their text, the latest used first.
class StatementCache {
 public:
  [[nodiscard]] bool Holds(std::string_view text) const { return by_text_.contains(text); }
  // Takes a statement out; nothing if it is not held.
  Statement Take(std::string_view text) {
    const auto found = by_text_.find(text);
    if (found == by_text_.end()) return nullptr;
    const auto entry = found->second;
    Statement statement = std::move(entry->statement);
    by_text_.erase(found);
    entries_.erase(entry);
    return statement;
  }
  void Keep(std::string_view text, Statement statement) {
    if (text.size() > kKeptLength) return;
    entries_.push_front({std::string(text), std::move(statement)});
    by_text_[entries_.front().text] = entries_.begin();
    if (entries_.size() <= kKeptStatements) return;
    by_text_.erase(entries_.back().text);
    entries_.pop_back();
  }

 private:
  static constexpr std::size_t kKeptStatements = 64;
  static constexpr std::size_t kKeptLength = 4096;  // a longer text is not likely to come again

  struct Entry {
    std::string text;
    Statement statement;
  };
  std::list<Entry> entries_;
  std::unordered_map<std::string_view, std::list<Entry>::iterator> by_text_;
};

// Hands a statement back to the cache, unlocked and without values, however its use ends.
class InUse {
 public:
  InUse(StatementCache& cache, std::string_view text, Statement statement)
      : cache_(cache), text_(text), statement_(std::move(statement)) {}
  InUse(const InUse&) = delete;
  InUse& operator=(const InUse&) = delete;
  ~InUse() {
    sqlite3_reset(statement_.get());
    sqlite3_clear_bindings(statement_.get());
    try {
      cache_.Keep(text_, std::move(statement_));
    } catch (const std::bad_alloc&) {  // the statement is prepared again next time
    }
  }
  [[nodiscard]] sqlite3_stmt* Get() const { return statement_.get(); }

 private:
  StatementCache& cache_;
  std::string_view text_;
  Statement statement_;
};

}  // namespace tarvik::data::sqlite
