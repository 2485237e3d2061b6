#include "data/postgresql/dialect.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <vector>

#include "data/datetime.h"
#include "data/number.h"
#include "data/schema.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

enum class Kind { Word, Number, Text, Mark };

struct Token {
  Kind kind;
  std::string_view text;  // with its quotes
  std::size_t at;         // where in the statement
  int depth;              // of parentheses
};

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool StartsWord(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

// Behind the quoted text or name that begins here. A doubled quote belongs to it.
std::size_t BehindQuotes(std::string_view text, std::size_t at) {
  const char quote = text[at];
  for (++at; at < text.size(); ++at) {
    if (text[at] != quote) continue;
    if (at + 1 < text.size() && text[at + 1] == quote) {
      ++at;
    } else {
      return at + 1;
    }
  }
  return text.size();
}

std::vector<Token> Read(std::string_view text) {
  std::vector<Token> tokens;
  int depth = 0;
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    if (IsSpace(c)) {
      ++at;
      continue;
    }
    std::size_t end = at + 1;
    Kind kind = Kind::Mark;
    if (c == '\'') {
      kind = Kind::Text;
      end = BehindQuotes(text, at);
    } else if (c == '"') {
      kind = Kind::Word;
      end = BehindQuotes(text, at);
    } else if (StartsWord(c)) {
      kind = Kind::Word;
      while (end < text.size() && (StartsWord(text[end]) || IsDigit(text[end]) || text[end] == '$')) ++end;
    } else if (IsDigit(c)) {
      kind = Kind::Number;
      while (end < text.size() && (IsDigit(text[end]) || text[end] == '.')) ++end;
    } else if ((c == '<' || c == '>' || c == '!') && end < text.size() &&
               (text[end] == '=' || (c == '<' && text[end] == '>'))) {
      ++end;
    }
    if (c == ')') --depth;
    tokens.push_back({kind, text.substr(at, end - at), at, depth});
    if (c == '(') ++depth;
    at = end;
  }
  return tokens;
}

bool Is(const Token& token, std::string_view word) {
  return token.kind != Kind::Text && EqualsNoCase(token.text, word);
}

bool IsAny(const Token& token, std::span<const std::string_view> words) {
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) { return Is(token, word); });
}

// --- Texts compared with columns of another type -----------------------------------------------

// Tables of the schema that the statement names.
std::vector<const Table*> TablesOf(const std::vector<Token>& tokens) {
  std::vector<const Table*> tables;
  for (const Token& token : tokens) {
    if (token.kind != Kind::Word) continue;
    const Table* table = FindTable(token.text);
    if (table != nullptr && std::find(tables.begin(), tables.end(), table) == tables.end()) {
      tables.push_back(table);
    }
  }
  return tables;
}

// The type of a column in the first of these tables that has it.
std::optional<ColumnType> TypeOf(std::string_view column, const std::vector<const Table*>& tables) {
  for (const Table* table : tables) {
    if (const Column* found = FindColumn(table->name, column)) return found->type;
  }
  return std::nullopt;
}

std::string WithoutQuotes(std::string_view quoted) {
  std::string text;
  for (std::size_t at = 1; at + 1 < quoted.size(); ++at) {
    text += quoted[at];
    if (quoted[at] == '\'') ++at;
  }
  return text;
}

// Digits with at most one mark and a sign: what the engine itself reads as a number.
bool IsPlainNumber(std::string_view text) {
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  return !text.empty() && IsDigit(text.front()) && IsDigit(text.back()) &&
         std::count(text.begin(), text.end(), '.') <= 1 &&
         std::all_of(text.begin(), text.end(), [](char c) { return IsDigit(c) || c == '.'; });
}

// How a text has to stand to be compared with a column of this type.
std::string Compared(std::string_view quoted, ColumnType type) {
  const std::string text = Trim(WithoutQuotes(quoted));
  switch (type) {
    case ColumnType::Text:
      return std::string(quoted);
    case ColumnType::Date:
      return Date::Parse(text) ? std::string(quoted) : "NULL";
    case ColumnType::Integer:
    case ColumnType::Flag:
    case ColumnType::Number:
      // In parentheses: a sign behind an operator would be read as part of it.
      return IsPlainNumber(text) ? "(" + text + ")" : "NULL";
  }
  return std::string(quoted);
}

constexpr std::array<std::string_view, 7> kComparisons = {"=", "<>", "!=", "<", ">", "<=", ">="};

// The text with each compared literal as its column wants it, and with the empty texts that are set
// into a number or a date as no value.
std::string WithReadLiterals(std::string_view text) {
  const std::vector<Token> tokens = Read(text);
  const std::vector<const Table*> tables = TablesOf(tokens);
  std::string result;
  std::size_t copied = 0;
  bool setting = false;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (token.depth == 0 && Is(token, "SET")) setting = true;
    if (Is(token, "WHERE")) setting = false;
    if (i < 2 || token.kind != Kind::Text || !IsAny(tokens[i - 1], kComparisons)) continue;
    const Token& column = tokens[i - 2];
    if (column.kind != Kind::Word) continue;
    const auto type = TypeOf(column.text, tables);
    if (!type || *type == ColumnType::Text) continue;
    // A value that is set and can't be read is for the engine to refuse: nothing is lost unsaid.
    if (setting && token.text != "''") continue;
    result += text.substr(copied, token.at - copied);
    result += Compared(token.text, *type);
    copied = token.at + token.text.size();
  }
  return result.append(text.substr(copied));
}

// --- Groups and the order of rows --------------------------------------------------------------

constexpr std::array<std::string_view, 5> kAggregates = {"COUNT", "SUM", "MIN", "MAX", "AVG"};

// The parts of a SELECT, as positions among its tokens; the end where there is none.
struct Select {
  std::vector<Token> tokens;
  std::size_t from = 0;
  std::size_t where = 0;
  std::size_t group = 0;
  std::size_t behind_group = 0;  // HAVING, LIMIT ...
  bool simple = false;           // no ORDER BY, no DISTINCT, no UNION and the like

  explicit Select(std::string_view text) : tokens(Read(text)) {
    while (!tokens.empty() && Is(tokens.back(), ";")) tokens.pop_back();
    from = where = group = behind_group = tokens.size();
    if (tokens.empty() || !Is(tokens.front(), "SELECT")) return;
    simple = true;
    static constexpr std::array<std::string_view, 7> kOther = {"ORDER",     "DISTINCT", "UNION", "EXCEPT",
                                                               "INTERSECT", "WINDOW",   "FOR"};
    static constexpr std::array<std::string_view, 4> kEnds = {"HAVING", "LIMIT", "OFFSET", "FETCH"};
    for (std::size_t i = 1; i < tokens.size(); ++i) {
      if (tokens[i].depth != 0) continue;
      if (IsAny(tokens[i], kOther)) simple = false;
      if (from == tokens.size() && Is(tokens[i], "FROM")) from = i;
      if (where == tokens.size() && Is(tokens[i], "WHERE")) where = i;
      if (group == tokens.size() && Is(tokens[i], "GROUP")) group = i;
      if (behind_group == tokens.size() && IsAny(tokens[i], kEnds)) behind_group = i;
    }
  }

  // The text between two tokens, without what stands between the parts.
  [[nodiscard]] std::string_view Between(std::string_view text, std::size_t first, std::size_t end) const {
    if (first >= end) return {};
    const std::size_t begin = tokens[first].at;
    return text.substr(begin, tokens[end - 1].at + tokens[end - 1].text.size() - begin);
  }
  [[nodiscard]] bool Aggregates() const {
    for (std::size_t i = 1; i + 1 < from; ++i) {
      if (IsAny(tokens[i], kAggregates) && Is(tokens[i + 1], "(")) return true;
    }
    return false;
  }
};

// Tokens from first to end, parted at the commas outside parentheses.
std::vector<std::pair<std::size_t, std::size_t>> Parted(const std::vector<Token>& tokens, std::size_t first,
                                                        std::size_t end) {
  std::vector<std::pair<std::size_t, std::size_t>> parts;
  std::size_t begin = first;
  for (std::size_t i = first; i <= end; ++i) {
    if (i < end && !(tokens[i].depth == 0 && Is(tokens[i], ","))) continue;
    parts.emplace_back(begin, i);
    begin = i + 1;
  }
  return parts;
}

// One column of a grouped SELECT: as it is if it is grouped by or adds up, else that of the first row.
std::string GroupedColumn(const Select& select, std::string_view text, std::size_t first, std::size_t end,
                          const std::vector<std::string>& grouped) {
  const std::vector<Token>& tokens = select.tokens;
  std::size_t expression_end = end;
  std::string name;
  if (end - first >= 3 && Is(tokens[end - 2], "AS")) {
    expression_end = end - 2;
    name = tokens[end - 1].text;
  }
  const std::string expression{select.Between(text, first, expression_end)};
  const auto whole = std::string(select.Between(text, first, end));
  const bool adds = std::any_of(tokens.begin() + static_cast<std::ptrdiff_t>(first),
                                tokens.begin() + static_cast<std::ptrdiff_t>(expression_end),
                                [](const Token& token) { return IsAny(token, kAggregates); });
  const bool is_grouped = std::any_of(grouped.begin(), grouped.end(),
                                      [&](const std::string& by) { return EqualsNoCase(by, expression); });
  if (adds || is_grouped || expression.find('*') != std::string::npos) return whole;
  if (name.empty()) name = tokens[expression_end - 1].text;
  return "(ARRAY_AGG(" + expression + "))[1] AS " + name;
}

std::string WithFirstOfGroup(const Select& select, std::string_view text) {
  const std::vector<Token>& tokens = select.tokens;
  if (select.group + 2 > select.behind_group || !Is(tokens[select.group + 1], "BY")) return std::string(text);
  std::vector<std::string> grouped;
  for (const auto& [first, end] : Parted(tokens, select.group + 2, select.behind_group)) {
    grouped.emplace_back(select.Between(text, first, end));
  }
  std::string result = "SELECT ";
  bool more = false;
  for (const auto& [first, end] : Parted(tokens, 1, select.from)) {
    if (more) result += ", ";
    more = true;
    result += GroupedColumn(select, text, first, end, grouped);
  }
  result += ' ';
  // HAVING belongs before the order, a limit behind it.
  std::size_t limit = select.behind_group;
  while (limit < tokens.size() &&
         (tokens[limit].depth != 0 ||
          !(Is(tokens[limit], "LIMIT") || Is(tokens[limit], "OFFSET") || Is(tokens[limit], "FETCH")))) {
    ++limit;
  }
  result += select.Between(text, select.from, limit);
  result += " ORDER BY ";
  for (std::size_t i = 0; i < grouped.size(); ++i) result += (i > 0 ? ", " : "") + grouped[i];
  if (limit < tokens.size()) {
    result += ' ';
    result += select.Between(text, limit, tokens.size());
  }
  return result;
}

std::string WithOrder(const Select& select, std::string_view text) {
  const std::vector<Token>& tokens = select.tokens;
  const std::size_t tables_end = std::min(select.where, select.behind_group);
  // One table, with a name of its own or not.
  const std::size_t words = tables_end - select.from - 1;
  if (select.from + 1 >= tables_end || words > 2 || select.Aggregates()) return std::string(text);
  const Table* table = FindTable(tokens[select.from + 1].text);
  if (table == nullptr || table->key.empty() || tokens[tables_end - 1].kind != Kind::Word) {
    return std::string(text);
  }
  std::string result{select.Between(text, 0, select.behind_group)};
  result += " ORDER BY ";
  for (std::size_t i = 0; i < table->key.size(); ++i) {
    if (i > 0) result += ", ";
    result += tokens[tables_end - 1].text;
    result += '.';
    result += table->key[i];
  }
  if (select.behind_group < tokens.size()) {
    result += ' ';
    result += select.Between(text, select.behind_group, tokens.size());
  }
  return result;
}

}  // namespace

std::string WithNumberedMarks(std::string_view text, int& marks) {
  std::string result;
  result.reserve(text.size() + 16);
  marks = 0;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == '\'' || text[at] == '"') {
      const std::size_t end = BehindQuotes(text, at);
      result += text.substr(at, end - at);
      at = end;
    } else if (text[at] == '?') {
      result += '$' + std::to_string(++marks);
      ++at;
    } else {
      result += text[at++];
    }
  }
  return result;
}

void SpellColumns(std::string_view text, std::vector<std::string>& names) {
  const std::vector<Token> tokens = Read(text);
  const std::vector<const Table*> tables = TablesOf(tokens);
  for (std::string& name : names) {
    const auto given =
        std::adjacent_find(tokens.begin(), tokens.end(), [&](const Token& as, const Token& word) {
          return Is(as, "AS") && word.kind == Kind::Word && EqualsNoCase(word.text, name);
        });
    if (given != tokens.end()) {
      name = std::next(given)->text;
      continue;
    }
    for (const Table* table : tables) {
      if (const Column* column = FindColumn(table->name, name)) {
        name = column->name;
        break;
      }
    }
  }
}

std::string ForPostgresql(std::string_view text) {
  const std::string read = WithReadLiterals(text);
  const Select select(read);
  if (!select.simple || select.from == select.tokens.size()) return read;
  return select.group < select.tokens.size() ? WithFirstOfGroup(select, read) : WithOrder(select, read);
}

}  // namespace tarvik::data
