// What the suite's statements take for granted and this engine does not: put right in the text, before
// it is sent. It asks no server and knows of tables only what the schema says.
//
//   - "?" stands for a value;
//   - rows of one table come in the order of its key, however often they were changed;
//   - a bare column outside a GROUP BY is that of the group's first row, and the groups come in order;
//   - a text compared with a number or a date column is read as such; one that is none equals nothing and
//     comes behind every number. An empty or blank text that is set into such a column is no value.
//   - the names of the rows' columns are spelled as they were written.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarvik::data {

// What a mark "?" stands for: a value that is compared with a column, or one that is given to it.
enum class Mark { kCompared, kGiven };
// The marks outside quoted text as $1, $2 ...; tells what each was.
std::string WithNumberedMarks(std::string_view text, std::vector<Mark>& marks);

// One statement of the suite's, as this engine has to be told it. The text has passed
// RequireOneStatement. What it does not understand stays as it is: the engine says what is wrong with it.
//   "SELECT * FROM entpart WHERE entrada = 7"  gives "... ORDER BY entpart.id_entrada"
//   "SELECT * FROM ALMACEN WHERE almacen='X1'" gives "... WHERE almacen=NULL ORDER BY ALMACEN.almacen"
std::string ForPostgresql(std::string_view text);

// Puts right the names of a result's columns, which come back in small letters: a name that the statement
// gives is spelled as there, a column of the schema as the schema does.
void SpellColumns(std::string_view text, std::vector<std::string>& names);

}  // namespace tarvik::data
