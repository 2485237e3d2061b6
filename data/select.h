// What a SELECT is made of, as far as the order of its rows hangs on it; and that order, which is the same on
// every engine. It understands the suite's own statements and leaves any other alone.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "data/schema.h"
#include "data/tokens.h"

namespace tarvik::data {

// The parts of a SELECT, as positions among its tokens; the number of tokens where there is none.
struct Select {
  const Tokens& tokens;
  std::size_t from;
  std::size_t where;
  std::size_t group;
  std::size_t order;
  std::size_t limit;     // LIMIT, OFFSET or FETCH
  bool single = false;   // a SELECT, and no UNION and the like, no DISTINCT, no lock
  bool locks = false;    // it has a FOR UPDATE or the like at its end
  bool grouped = false;  // it has a GROUP BY

  explicit Select(const Tokens& of);

  // Where its condition ends: at a GROUP BY, HAVING, ORDER BY or LIMIT.
  [[nodiscard]] std::size_t BehindWhere() const;
  // It has columns and literals alone: nothing that might add up.
  [[nodiscard]] bool Plain() const;

 private:
  std::size_t having_;
};

// The order in which a table's rows are read, as "prods.color NULLS FIRST, prods.talla NULLS FIRST, ...".
// `name`: what the statement calls it. `filtered`: by the column that its own order is about.
std::string ReadingOrder(const Table& table, std::string_view name, bool filtered);
// The same of the first row of a group: by the order in which rows were stored where the table keeps it.
std::string GroupOrder(const Table& table, std::string_view name, bool filtered);
// Whether a condition "column = ..." stands on the column that the table's own order is about, or rows are
// grouped by it alone.
bool IsFiltered(const Table& table, const Select& select);

// The table of a plain SELECT that has no order of its own, and what the statement calls it; no table for any
// other statement.
struct Plainly {
  const Table* table = nullptr;
  std::string_view name;
};
Plainly PlainTable(const Select& select);
// What such a statement lacks: " ORDER BY ...", to stand before its limit; empty for any other.
std::string MissingOrder(const Select& select);

// The text with it, as the embedded engine is told it. A condition on a table with a number as its key stays
// without: the engine answers it in the order of the key or of the index that serves it best, and asked for
// the key's order it would leave the index of a large table unused.
std::string InReadingOrder(const TakenApart& statement);

}  // namespace tarvik::data
