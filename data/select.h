// The parts of a SELECT on which the order of its rows depends; and that order, which is the same on every
// engine. It understands the suite's own statements and leaves any other alone.
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
  // It has only columns and literals: no aggregate.
  [[nodiscard]] bool Plain() const;

 private:
  std::size_t having_;
};

// The order in which a table's rows are read, as "prods.color NULLS FIRST, prods.talla NULLS FIRST, ...".
// `name`: what the statement calls it. `filtered`: by the column that its own order is about.
std::string ReadingOrder(const Table& table, std::string_view name, bool filtered);
// The same of the first row of a group: by the order in which rows were stored where the table keeps it.
std::string GroupOrder(const Table& table, std::string_view name, bool filtered);
// Whether there is a condition "column = ..." on the column that the table's own order is about, or rows are
// grouped by it alone.
bool IsFiltered(const Table& table, const Select& select);

// The table of a plain SELECT that has no order of its own, and what the statement calls it; no table for any
// other statement.
struct Plainly {
  const Table* table = nullptr;
  std::string_view name;
};
Plainly PlainTable(const Select& select);
// What such a statement lacks: " ORDER BY ...", to go before its limit; empty for any other.
std::string MissingOrder(const Select& select);

// The text with that order, for the embedded engine. A condition on a table with a number as its key gets
// none: the engine answers it in the order of the key or of the best index. Asked for the key's order it
// would leave the index of a large table unused.
std::string InReadingOrder(const TakenApart& statement);

}  // namespace tarvik::data
