// Comparisons of columns with literals, rewritten so that a server answers as the embedded engine does, which
// compares by classes of values. Where a comparison can hold for no value, or holds for every one, it becomes
// false or true where the column has a value and null where it has none, so that what is around it (NOT,
// AND, OR) has the same effect on both.
#pragma once

#include "data/postgresql/edits.h"
#include "data/postgresql/sources.h"
#include "data/tokens.h"

namespace tarvik::data {

// Of a column with a literal on either side, in parentheses or not: = == <> != < > <= >=, IN, BETWEEN, LIKE;
// and the literals that are set into columns by an UPDATE or an INSERT.
void ReadLiterals(const Tokens& tokens, const Sources& sources, Edits& edits);

// Tells, token by token, whether an equals sign there assigns a column its value rather than comparing it.
class Setting {
 public:
  bool operator()(const Tokens& tokens, std::size_t at) {
    const Token& token = tokens[at];
    if (token.depth != 0) return false;
    if (token.Is("SET")) setting_ = true;
    if (token.IsAny({"WHERE", "FROM", "RETURNING"})) setting_ = false;
    if (!setting_ || at < 2 || !token.Is("=")) return false;
    const std::size_t column = at >= 4 && tokens[at - 2].Is(".") ? at - 3 : at - 1;
    return tokens[column - 1].IsAny({"SET", ","});
  }

 private:
  bool setting_ = false;
};

bool IsComparison(const Token& token);

}  // namespace tarvik::data
