// What the suite's statements take for granted and this engine does not do: translated in the text
// before it is sent. It asks no server and knows of tables only what the schema says.
//
//   - "?" stands for a value;
//   - rows of one table come in the order of its key, or in the table's own order (see data/select.h),
//     however often they were changed;
//   - a bare column outside a GROUP BY is that of the group's first row, and the groups come in order; no
//     value comes before every value;
//   - a literal that is compared with a column is read as the column's type; a text that is no number
//     equals none and comes after all, a text that is no date is sorted among them as a text. A number
//     that is compared with a text is its text. An empty or blank text that is set into a number, a date or a
//     flag is no value;
//   - LIKE makes no difference between A and a;
//   - the names of the rows' columns are spelled as they were written.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/lexer.h"

namespace tarvik::data {

// What a mark "?" stands for: a value that is compared with a column, or one that is given to it.
enum class Mark { kCompared, kGiven };

struct Told {
  std::string text;
  std::vector<Mark> marks;  // numbered from 1 in the text; empty unless they were asked for
};

// Whose text it is: a screen's or a routine's, or one with a mark for each value. The latter says by itself
// where no value is to come in its own ORDER BY: such an order would not be served by an index.
enum class From { kSuite, kHost };

// One statement of the suite's, translated for this engine. The text has passed
// RequireOneStatement. What it does not understand stays as it is: the engine says what is wrong with it.
// So does a text in which the engines see different quotes, but for its marks.
//   "SELECT * FROM entpart WHERE entrada = 7" gives "... ORDER BY entpart.id_entrada"
//   "... WHERE NOT almacen = 'X1'"            gives "... WHERE NOT (almacen IS NULL AND NULL)"
Told ForPostgresql(const TakenApart& statement, From from = From::kSuite);

// Restores the spelling of a result's column names, which come back in small letters: a name that the
// statement gives is spelled as there, a column of the schema as in the schema.
void SpellColumns(const TakenApart& statement, std::vector<std::string>& names);

}  // namespace tarvik::data
