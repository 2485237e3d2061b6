// Recordset: a read-only cursor over rows that were read whole when it opened. Cursor and lock
// types are accepted, since the suite's callers set them, and change nothing in what is read.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "data/connection.h"

namespace tarvik::data {

inline constexpr int kAsSet = -1;  // "as set before" for a type; "none" for the options
inline constexpr int kKeysetCursor = 1;
inline constexpr int kOptimisticLock = 3;
inline constexpr int kTextCommand = 1;

class Recordset {
 public:
  Recordset() = default;
  explicit Recordset(Rows rows) : rows_(std::move(rows)), open_(true) {}

  void CursorType(int type) { cursor_type_ = type; }
  void LockType(int type) { lock_type_ = type; }
  [[nodiscard]] int CursorType() const { return cursor_type_; }
  [[nodiscard]] int LockType() const { return lock_type_; }

  // Reads the rows of one SELECT; the first is the current one. If it throws, the recordset is left closed.
  void Open(std::string_view source, Connection& connection, int cursor_type = kAsSet, int lock_type = kAsSet,
            int options = kAsSet);

  [[nodiscard]] bool IsOpen() const { return open_; }

  // All of these throw Error on a closed recordset.
  [[nodiscard]] bool Eof() const;  // true without rows and after the last
  [[nodiscard]] int RecordCount() const;
  // A column of the current row, by name without regard to case. Throws Error for a column that is
  // not there and when there is no current row. Valid until the recordset is opened again or dies.
  [[nodiscard]] const Value& Fields(std::string_view name) const;
  void MoveNext();  // throws Error at the end

  [[nodiscard]] const Rows& All() const { return rows_; }

 private:
  void RequireOpen() const;

  Rows rows_;
  std::size_t current_ = 0;
  bool open_ = false;
  int cursor_type_ = 0;
  int lock_type_ = 1;
};

// A variable that holds a recordset or nothing. Copies share the recordset. Using it while it
// holds nothing throws Error, as any use of an unset object does.
class RecordsetRef {
 public:
  RecordsetRef() = default;
  RecordsetRef(std::shared_ptr<Recordset> recordset) : held_(std::move(recordset)) {}  // NOLINT

  Recordset* operator->() const;
  Recordset& operator*() const { return *operator->(); }
  explicit operator bool() const { return held_ != nullptr; }
  [[nodiscard]] const std::shared_ptr<Recordset>& Shared() const { return held_; }  // may be nullptr

 private:
  std::shared_ptr<Recordset> held_;
};

}  // namespace tarvik::data
