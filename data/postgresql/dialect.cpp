#include "data/postgresql/dialect.h"

#include <algorithm>
#include <utility>

#include "data/postgresql/comparisons.h"
#include "data/postgresql/edits.h"
#include "data/postgresql/order.h"
#include "data/postgresql/sources.h"
#include "data/select.h"
#include "data/text.h"
#include "data/tokens.h"

namespace tarvik::data {
namespace {

// Whether a value here is compared: beside a comparison operator, in a BETWEEN or in the list of an IN.
bool IsCompared(const Tokens& tokens, std::size_t at) {
  const auto is = [&](std::size_t before, std::string_view word) {
    return at >= before && tokens[at - before].Is(word);
  };
  if ((at > 0 && IsComparison(tokens[at - 1])) || (at + 1 < tokens.size() && IsComparison(tokens[at + 1])))
    return true;
  if (is(1, "BETWEEN") || (is(1, "AND") && is(3, "BETWEEN"))) return true;
  for (std::size_t open = at; open-- > 1;) {
    if (tokens[open].depth < tokens[at].depth) return tokens[open].Is("(") && tokens[open - 1].Is("IN");
  }
  return false;
}

void NumberMarks(const Tokens& tokens, Edits& edits, std::vector<Mark>& marks) {
  Setting setting;
  bool sets = false;  // the sign before this token
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const bool given = std::exchange(sets, setting(tokens, i));
    if (!tokens[i].Is("?")) continue;
    marks.push_back(!given && IsCompared(tokens, i) ? Mark::kCompared : Mark::kGiven);
    edits.Replace(i, i, "$" + std::to_string(marks.size()));
  }
}

}  // namespace

Told ForPostgresql(const TakenApart& statement, From from) {
  Told told;
  const Tokens tokens = TokensOf(statement);
  Edits edits(statement.text, tokens);
  if (from == From::kHost) NumberMarks(tokens, edits, told.marks);
  if (!tokens.empty() && statement.ReadAlike()) {
    const Sources sources(tokens);
    ReadLiterals(tokens, sources, edits);
    const Select select(tokens);
    if (select.single && select.from < tokens.size()) {
      FirstOfGroups(select, sources, edits);
      RowsInOrder(select, edits);
    }
    if (from == From::kSuite) NoValueFirst(select, sources, edits);
  }
  told.text = edits.Made();
  return told;
}

void SpellColumns(const TakenApart& statement, std::vector<std::string>& names) {
  const Tokens tokens = TokensOf(statement);
  const Sources sources(tokens);
  for (std::string& name : names) {
    const auto given =
        std::adjacent_find(tokens.begin(), tokens.end(), [&](const Token& as, const Token& word) {
          return as.Is("AS") && word.IsName() && EqualsNoCase(word.text, name);
        });
    if (given != tokens.end()) {
      name = std::next(given)->text;
    } else if (const auto spelled = sources.Spelled(name); !spelled.empty()) {
      name = spelled;
    }
  }
}

}  // namespace tarvik::data
