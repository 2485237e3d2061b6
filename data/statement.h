// The last gate before an engine: a statement is one statement, with its quotes closed and no
// comment. The suite joins what an operator types into its texts; this is where injection ends.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/lexer.h"

namespace tarvik::data {

// Throws Error (Spanish, for the operator) if the text is empty, holds a second statement after
// a semicolon, leaves a quote open, has "--" or "/*" outside quoted text, holds a NUL or is no
// valid UTF-8. A single semicolon at the end is allowed.
void RequireOneStatement(const TakenApart& statement);

// Throws Error for what no screen's own statement holds and typed text may bring: a second SELECT (a UNION, a
// subquery), WITH, TABLE, FOR (a lock on rows), and any function but these: SUM, COUNT,
// MIN, MAX, AVG, UPPER, LOWER, TRIM, LENGTH, ABS, ROUND, COALESCE, CAST, SUBSTR, REPLACE. What stands in
// quotes is data; quotes that the engines do not read alike (E'', $$, a bracket with a quote or a parenthesis
// inside) are refused. The text has passed RequireOneStatement.
void RequireHarmless(const TakenApart& statement);

// True if the text's first word is SELECT, without regard to case.
bool IsSelect(std::string_view text);

struct ProcedureCall {
  std::string name;
  std::vector<std::string> arguments;  // without their quotes, '' read as one quote
};
// The parts of "exec NAME 'a','b'"; nothing if the first word is not EXEC. Throws Error for a call
// that does not follow this form. The text has passed RequireOneStatement.
std::optional<ProcedureCall> ParseExec(const TakenApart& statement);

// Doubles the quotes and puts quotes around: O'Hara gives 'O''Hara'.
std::string Quoted(std::string_view text);
// The text between a part's quotes: 'O''Hara' gives O'Hara.
std::string Unquoted(std::string_view quoted);

}  // namespace tarvik::data
