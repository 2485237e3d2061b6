// Values into the engine's statements and out of its rows.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <utility>

#include "data/text.h"
#include "data/value.h"

namespace tarvik::data::sqlite {

struct Binder {
  sqlite3_stmt* statement;
  int position;

  int operator()(std::monostate) const { return sqlite3_bind_null(statement, position); }
  int operator()(std::int64_t number) const { return sqlite3_bind_int64(statement, position, number); }
  int operator()(double number) const { return sqlite3_bind_double(statement, position, number); }
  int operator()(const std::string& text) const { return Text(text); }
  int operator()(const Date& date) const { return Text(date.Iso()); }
  int operator()(const DateTime& when) const { return Text(when.Iso()); }

 private:
  [[nodiscard]] int Text(const std::string& text) const {
    return sqlite3_bind_text64(statement, position, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  }
};

inline Value FromText(std::string text, bool date_column) {
  if (date_column) {
    if (text.size() == 10) {
      if (const auto date = Date::Parse(text)) return *date;
    } else if (const auto when = DateTime::Parse(text)) {
      return *when;
    }
  }
  return ValidUtf8(text) ? std::move(text) : RepairUtf8(text);
}

inline Value ReadColumn(sqlite3_stmt* statement, int column, bool date_column) {
  switch (sqlite3_column_type(statement, column)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER:
      return static_cast<std::int64_t>(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement, column);
    default: {
      const void* bytes = sqlite3_column_blob(statement, column);
      const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
      return FromText(size == 0 ? std::string() : std::string(static_cast<const char*>(bytes), size),
                      date_column);
    }
  }
}

}  // namespace tarvik::data::sqlite
