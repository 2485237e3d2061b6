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

// What a statement reads or writes: its tables, each with the name that its columns may be told by.
struct Source {
  const Table* table;  // nullptr: not the schema's, or no table at all
  std::string_view name;
  std::string_view alias;
};

constexpr std::array<std::string_view, 4> kBeforeTable = {"FROM", "JOIN", "INTO", "UPDATE"};
constexpr std::array<std::string_view, 17> kNoAlias = {"WHERE", "SET",    "VALUES", "GROUP", "ORDER", "LIMIT",
                                                       "ON",    "INNER",  "LEFT",   "RIGHT", "FULL",  "CROSS",
                                                       "JOIN",  "SELECT", "USING",  "UNION", "HAVING"};

std::vector<Source> SourcesOf(const std::vector<Token>& tokens) {
  std::vector<Source> sources;
  int list = -1;  // depth of the FROM whose list goes on
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const bool opens = IsAny(tokens[i], kBeforeTable);
    const bool goes_on = Is(tokens[i], ",") && tokens[i].depth == list;
    if (IsAny(tokens[i], kNoAlias) && tokens[i].depth == list && !Is(tokens[i], "JOIN")) list = -1;
    if (Is(tokens[i], "FROM")) list = tokens[i].depth;
    if ((!opens && !goes_on) || i + 1 == tokens.size()) continue;
    const Token& name = tokens[++i];
    if (name.kind != Kind::Word) {
      sources.push_back({nullptr, {}, {}});  // a subselect
      --i;
      continue;
    }
    Source source{FindTable(name.text), name.text, {}};
    std::size_t next = i + 1;
    if (next < tokens.size() && Is(tokens[next], "AS")) ++next;
    if (next < tokens.size() && tokens[next].kind == Kind::Word && !IsAny(tokens[next], kNoAlias)) {
      source.alias = tokens[next].text;
    }
    sources.push_back(source);
  }
  return sources;
}

// The type of the column whose name stands at this token; nothing where it is not certain.
std::optional<ColumnType> TypeOf(const std::vector<Token>& tokens, std::size_t at,
                                 const std::vector<Source>& sources) {
  const bool qualified = at >= 2 && Is(tokens[at - 1], ".") && tokens[at - 2].kind == Kind::Word;
  std::optional<ColumnType> type;
  for (const Source& source : sources) {
    if (qualified && !Is(tokens[at - 2], source.alias.empty() ? source.name : source.alias)) continue;
    if (source.table == nullptr) return std::nullopt;
    const Column* column = FindColumn(source.table->name, tokens[at].text);
    if (column == nullptr) continue;
    if (type && *type != column->type) return std::nullopt;
    type = column->type;
  }
  return type;
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

// The number that the embedded engine would read from a text, as it can stand in a statement.
std::optional<std::string> NumberIn(std::string_view text) {
  if (IsPlainNumber(text)) return std::string(text);
  const auto number = text.find(',') == std::string_view::npos ? ParseNumber(text) : std::nullopt;
  return number ? std::optional(PlainNumber(*number)) : std::nullopt;
}

// A comparison with a text that is none of the column's values: as texts come behind all numbers, and a
// date's text among them by its first sign.
std::string WithNone(std::string_view comparison, bool behind_all) {
  const bool not_equal = comparison == "<>" || comparison == "!=";
  const bool below = comparison.front() == '<' && !not_equal;
  const bool above = comparison.front() == '>';
  if (not_equal || (below && behind_all) || (above && !behind_all)) return "IS NOT NULL";
  return std::string(comparison) + "NULL";
}

// What stands for the comparison and its literal where the column is no text.
std::string Compared(std::string_view comparison, std::string_view quoted, ColumnType type) {
  const std::string text = Trim(WithoutQuotes(quoted));
  if (type == ColumnType::Date) {
    if (const auto date = Date::Parse(text)) return std::string(comparison) + "'" + date->Iso() + "'";
    return WithNone(comparison, !text.empty() && text.front() > '9');
  }
  // In parentheses: a sign behind an operator would be read as part of it.
  if (const auto number = NumberIn(text)) return std::string(comparison) + "(" + *number + ")";
  return WithNone(comparison, true);
}

// Quoted, with nothing but blanks in it.
bool IsBlankText(const Token& token) {
  return token.kind == Kind::Text && Trim(WithoutQuotes(token.text)).empty();
}

constexpr std::array<std::string_view, 7> kComparisons = {"=", "<>", "!=", "<", ">", "<=", ">="};

// Tells, token by token, whether a value there is set rather than compared.
class Setting {
 public:
  bool operator()(const Token& token) {
    if (token.depth == 0 && Is(token, "SET")) setting_ = true;
    if (token.depth == 0 && Is(token, "WHERE")) setting_ = false;
    return setting_ && token.depth == 0;
  }

 private:
  bool setting_ = false;
};

// The columns of "INSERT INTO table (a, b) VALUES (...", as the types that the values' places have.
struct Inserted {
  std::vector<ColumnType> types;  // of what the schema doesn't know: texts, which are left alone
  std::size_t values = 0;         // the word VALUES; 0 if the statement has no such form

  Inserted(const std::vector<Token>& tokens, const std::vector<Source>& sources) {
    if (tokens.size() < 6 || !Is(tokens[0], "INSERT") || !Is(tokens[1], "INTO") || !Is(tokens[3], "("))
      return;
    const std::vector<Source> first(sources.begin(), sources.begin() + 1);
    std::size_t at = 4;
    for (; at < tokens.size() && !Is(tokens[at], ")"); ++at) {
      if (tokens[at].kind == Kind::Word)
        types.push_back(TypeOf(tokens, at, first).value_or(ColumnType::Text));
    }
    if (at + 1 < tokens.size() && Is(tokens[at + 1], "VALUES")) values = at + 1;
  }
};

// The text with each compared literal as its column wants it, and with the empty texts that are set
// into a number, a date or a flag as no value. One that is set and can't be read is for the engine to refuse:
// nothing is lost unsaid.
std::string WithReadLiterals(std::string_view text) {
  const std::vector<Token> tokens = Read(text);
  const std::vector<Source> sources = SourcesOf(tokens);
  const Inserted inserted(tokens, sources);
  std::string result;
  std::size_t copied = 0;
  const auto put = [&](std::size_t first, std::size_t last, const std::string& instead) {
    result += text.substr(copied, tokens[first].at - copied);
    result += instead;
    copied = tokens[last].at + tokens[last].text.size();
  };
  Setting setting;
  std::size_t place = 0;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    const bool set = setting(token);
    if (inserted.values != 0 && i > inserted.values) {
      if (token.depth == 0 && Is(token, "(")) place = 0;
      if (token.depth == 1 && Is(token, ",")) ++place;
      const bool alone = token.depth == 1 && (Is(tokens[i - 1], "(") || Is(tokens[i - 1], ","));
      const bool takes_texts = place >= inserted.types.size() || inserted.types[place] == ColumnType::Text;
      if (alone && IsBlankText(token) && !takes_texts) put(i, i, "NULL");
      continue;
    }
    if (i < 2 || token.kind != Kind::Text || !IsAny(tokens[i - 1], kComparisons)) continue;
    if (tokens[i - 2].kind != Kind::Word) continue;
    const auto type = TypeOf(tokens, i - 2, sources);
    if (!type || *type == ColumnType::Text) continue;
    if (!set) {
      const std::string compared = Compared(tokens[i - 1].text, token.text, *type);
      put(i - 1, i, compared.front() == 'I' ? " " + compared : compared);
    } else if (IsBlankText(token)) {
      put(i, i, "NULL");
    }
  }
  return result.append(text.substr(copied));
}

// --- Groups and the order of rows --------------------------------------------------------------

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
  // Columns and literals alone: nothing that might add up.
  [[nodiscard]] bool Plain() const {
    return std::none_of(tokens.begin(), tokens.begin() + static_cast<std::ptrdiff_t>(from),
                        [](const Token& token) { return Is(token, "("); });
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

// One column of a grouped SELECT: that of the first row if it is a bare column by which nothing is grouped;
// anything else as it stands.
std::string GroupedColumn(const Select& select, std::string_view text, std::size_t first, std::size_t end,
                          const std::vector<std::string>& grouped) {
  const std::vector<Token>& tokens = select.tokens;
  const std::string whole{select.Between(text, first, end)};
  std::size_t column_end = end;
  if (end - first >= 3 && Is(tokens[end - 2], "AS")) column_end = end - 2;
  const std::size_t words = column_end - first;
  const bool bare = (words == 1 && tokens[first].kind == Kind::Word) ||
                    (words == 3 && tokens[first].kind == Kind::Word && Is(tokens[first + 1], ".") &&
                     tokens[first + 2].kind == Kind::Word);
  if (!bare) return whole;
  const std::string column{select.Between(text, first, column_end)};
  const std::string_view name = tokens[end - 1].text;
  const bool is_grouped = std::any_of(grouped.begin(), grouped.end(), [&](const std::string& by) {
    return EqualsNoCase(by, column) || EqualsNoCase(by, name) || IsPlainNumber(by);
  });
  if (is_grouped) return whole;
  return "(ARRAY_AGG(" + column + "))[1] AS " + std::string(name);
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
  for (std::size_t i = 0; i < grouped.size(); ++i) {
    result += (i > 0 ? ", " : "") + grouped[i] + " NULLS FIRST";
  }
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
  if (select.from + 1 >= tables_end || words > 2 || !select.Plain()) return std::string(text);
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

std::string WithNumberedMarks(std::string_view text, std::vector<Mark>& marks) {
  std::string result;
  result.reserve(text.size() + 16);
  std::size_t copied = 0;
  marks.clear();
  const std::vector<Token> tokens = Read(text);
  Setting setting;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const bool set = setting(tokens[i]);
    if (!Is(tokens[i], "?")) continue;
    marks.push_back(!set && i > 0 && IsAny(tokens[i - 1], kComparisons) ? Mark::kCompared : Mark::kGiven);
    result += text.substr(copied, tokens[i].at - copied);
    result += '$' + std::to_string(marks.size());
    copied = tokens[i].at + 1;
  }
  return result.append(text.substr(copied));
}

void SpellColumns(std::string_view text, std::vector<std::string>& names) {
  const std::vector<Token> tokens = Read(text);
  const std::vector<Source> sources = SourcesOf(tokens);
  for (std::string& name : names) {
    const auto given =
        std::adjacent_find(tokens.begin(), tokens.end(), [&](const Token& as, const Token& word) {
          return Is(as, "AS") && word.kind == Kind::Word && EqualsNoCase(word.text, name);
        });
    if (given != tokens.end()) {
      name = std::next(given)->text;
      continue;
    }
    for (const Source& source : sources) {
      if (source.table == nullptr) continue;
      if (const Column* column = FindColumn(source.table->name, name)) {
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
