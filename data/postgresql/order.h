// The order in which the embedded engine gives rows, groups and null values.
#pragma once

#include "data/postgresql/edits.h"
#include "data/postgresql/sources.h"
#include "data/select.h"

namespace tarvik::data {

// A bare column outside a GROUP BY as that of its group's first row, or of the row with the greatest or the
// least value where one MAX or MIN is asked for; and the groups in their order.
void FirstOfGroups(const Select& select, const Sources& sources, Edits& edits);

// In an ORDER BY of the statement's own: null comes before every value.
void NoValueFirst(const Select& select, const Sources& sources, Edits& edits);

// The order of a table's rows, where the statement has none.
void RowsInOrder(const Select& select, Edits& edits);

}  // namespace tarvik::data
