// Values as a server writes and reads them, by the types of its catalogue. All go as text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "data/postgresql/dialect.h"
#include "data/postgresql/library.h"
#include "data/value.h"

namespace tarvik::data {

// A value that is to stand for a parameter of this type; nothing for no value. Throws Error for a text that
// no server takes.
std::optional<std::string> ToServer(const Value& value, Oid type, Mark mark);

// All rows of a result. `text` is the statement as its caller wrote it: it spells the columns. `parts`: the
// same, already split, where the caller has it.
Rows RowsOf(const PGresult* result, std::string_view text, const TakenApart* parts = nullptr);

}  // namespace tarvik::data
