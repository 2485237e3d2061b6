#include "data/postgresql/comparisons.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "data/postgresql/literals.h"
#include "data/statement.h"

namespace tarvik::data {
namespace {

// Tokens from first to last, both included.
struct Span {
  std::size_t first;
  std::size_t last;
};

// A column or a literal, with the parentheses around it.
struct Operand {
  Span whole;
  std::optional<ColumnType> column;
  std::optional<Literal> literal;
};

std::string Turned(std::string_view comparison) {
  std::string turned(comparison);
  if (turned.front() == '<' && turned != "<>") {
    turned.front() = '>';
  } else if (turned.front() == '>') {
    turned.front() = '<';
  }
  return turned;
}

class Reader {
 public:
  Reader(const Tokens& tokens, const Sources& sources, Edits& edits)
      : tokens_(tokens), sources_(sources), edits_(edits) {}

  void Comparison(std::size_t at);
  void In(std::size_t at);
  void Between(std::size_t at);
  void Like(std::size_t at);
  void Set(std::size_t at);
  void Inserted();

 private:
  [[nodiscard]] bool Begins(std::size_t at) const;
  [[nodiscard]] bool Ends(std::size_t at) const;
  [[nodiscard]] std::optional<Operand> OperandOf(Span whole) const;
  [[nodiscard]] std::optional<Literal> LiteralOf(Span span) const;
  [[nodiscard]] std::optional<Operand> Before(std::size_t at) const;
  [[nodiscard]] std::optional<Operand> Behind(std::size_t at) const;
  [[nodiscard]] std::string Said(const Operand& column, std::string_view comparison,
                                 const Operand& literal) const;
  [[nodiscard]] std::string Constant(const Operand& column, bool holds) const;
  [[nodiscard]] std::string_view Text(Span span) const { return edits_.Between(span.first, span.last); }

  const Tokens& tokens_;
  const Sources& sources_;
  Edits& edits_;
};

// Whether an operand that starts after this token is a whole one: no operator before it claims it.
bool Reader::Begins(std::size_t at) const {
  if (at == 0) return true;
  return tokens_[at - 1].IsAny({"(", ",", "WHERE", "AND", "OR", "NOT", "ON", "WHEN", "THEN", "ELSE", "SELECT",
                                "HAVING", "SET", "BY", "CASE", "DISTINCT"});
}

bool Reader::Ends(std::size_t at) const {
  if (at >= tokens_.size()) return true;
  return tokens_[at].IsAny({")",     ",",      "AND",    "OR",        "THEN",      "ELSE",  "END",
                            "WHEN",  "GROUP",  "ORDER",  "LIMIT",     "AS",        "FROM",  "HAVING",
                            "UNION", "EXCEPT", "INNER",  "INTERSECT", "LEFT",      "JOIN",  "RIGHT",
                            "FULL",  "CROSS",  "OFFSET", "WHERE",     "RETURNING", "ESCAPE"});
}

std::optional<Literal> Reader::LiteralOf(Span span) const {
  const Token& last = tokens_[span.last];
  if (span.first == span.last) {
    if (last.IsText()) return Literal{Literal::Kind::kText, Unquoted(last.text)};
    if (last.kind == PartKind::kNumber) return Literal{Literal::Kind::kNumber, std::string(last.text)};
    if (last.Is("NULL")) return Literal{Literal::Kind::kNull, {}};
  } else if (span.first + 1 == span.last && last.kind == PartKind::kNumber &&
             tokens_[span.first].IsAny({"-", "+"})) {
    return Literal{Literal::Kind::kNumber, std::string(tokens_[span.first].text) + std::string(last.text)};
  }
  return std::nullopt;
}

std::optional<Operand> Reader::OperandOf(Span whole) const {
  Span inner = whole;
  while (inner.first < inner.last && tokens_[inner.first].Is("(") &&
         Closing(tokens_, inner.first) == inner.last) {
    ++inner.first;
    --inner.last;
  }
  if (inner.first > inner.last) return std::nullopt;
  if (auto literal = LiteralOf(inner)) return Operand{whole, {}, std::move(literal)};
  const std::size_t words = inner.last - inner.first + 1;
  const bool names = tokens_[inner.first].IsName() && tokens_[inner.last].IsName();
  if (!names || !(words == 1 || (words == 3 && tokens_[inner.first + 1].Is(".")))) return std::nullopt;
  const auto type = sources_.TypeOf(tokens_, inner.last);
  return type ? std::optional(Operand{whole, type, {}}) : std::nullopt;
}

// What ends in front of this token.
std::optional<Operand> Reader::Before(std::size_t at) const {
  if (at == 0) return std::nullopt;
  std::size_t first = at - 1;
  if (tokens_[first].Is(")")) {
    first = Opening(tokens_, first);
    if (first == tokens_.size()) return std::nullopt;
  } else if (first >= 2 && tokens_[first - 1].Is(".")) {
    first -= 2;
  } else if (first >= 1 && tokens_[first].kind == PartKind::kNumber && tokens_[first - 1].IsAny({"-", "+"})) {
    --first;
  }
  return Begins(first) ? OperandOf({first, at - 1}) : std::nullopt;
}

// What begins at this token.
std::optional<Operand> Reader::Behind(std::size_t at) const {
  if (at >= tokens_.size()) return std::nullopt;
  std::size_t last = at;
  if (tokens_[at].Is("(")) {
    last = Closing(tokens_, at);
  } else if (tokens_[at].IsAny({"-", "+"})) {
    ++last;
  } else if (at + 2 < tokens_.size() && tokens_[at + 1].Is(".")) {
    last += 2;
  }
  if (last >= tokens_.size() || !Ends(last + 1)) return std::nullopt;
  return OperandOf({at, last});
}

std::string Reader::Constant(const Operand& column, bool holds) const {
  const std::string name(Text(column.whole));
  return holds ? "(" + name + " IS NOT NULL OR NULL)" : "(" + name + " IS NULL AND NULL)";
}

// The comparison, rewritten; empty where it may stay.
std::string Reader::Said(const Operand& column, std::string_view comparison, const Operand& literal) const {
  const Reading reading = Read(*column.column, comparison, *literal.literal);
  const std::string name(Text(column.whole));
  const std::string sign = " " + std::string(comparison) + " ";
  switch (reading.kind) {
    case Reading::Kind::kSame:
      return "";
    case Reading::Kind::kOther:
      return name + sign + reading.literal;
    case Reading::Kind::kAsTexts:
      return "CAST(" + name + " AS TEXT) COLLATE \"C\"" + sign + std::string(Text(literal.whole));
    case Reading::Kind::kAlways:
    case Reading::Kind::kNever:
      break;
  }
  return Constant(column, reading.kind == Reading::Kind::kAlways);
}

void Reader::Comparison(std::size_t at) {
  std::string comparison(tokens_[at].text);
  if (comparison == "!=") comparison = "<>";
  if (comparison == "==") comparison = "=";
  const auto left = Before(at);
  const auto right = Behind(at + 1);
  std::string said;
  if (left && right && left->column && right->literal) {
    said = Said(*left, comparison, *right);
  } else if (left && right && left->literal && right->column) {
    said = Said(*right, Turned(comparison), *left);
  }
  if (!said.empty()) {
    edits_.Replace(left->whole.first, right->whole.last, said);
  } else if (tokens_[at].text != comparison) {
    edits_.Replace(at, at, comparison);  // "==" is no operator there, and "!=-5" begins with another one
  }
}

void Reader::In(std::size_t at) {
  const bool negated = tokens_[at - 1].Is("NOT");
  const auto column = Before(negated ? at - 1 : at);
  if (!column || !column->column || at + 2 >= tokens_.size() || !tokens_[at + 1].Is("(")) return;
  const std::size_t end = Closing(tokens_, at + 1);
  if (end == tokens_.size() || end == at + 2) return;
  std::string kept;
  bool changed = false;
  for (std::size_t first = at + 2; first < end;) {
    const auto element = Behind(first);
    if (!element || !element->literal) return;
    const Reading reading = Read(*column->column, "=", *element->literal);
    changed = changed || reading.kind != Reading::Kind::kSame;
    if (reading.kind != Reading::Kind::kNever) {
      if (!kept.empty()) kept += ", ";
      kept += reading.kind == Reading::Kind::kOther ? reading.literal : std::string(Text(element->whole));
    }
    first = element->whole.last + 1;
    if (first < end && !tokens_[first].Is(",")) return;
    ++first;
  }
  if (!changed) return;
  const std::string name(Text(column->whole));
  edits_.Replace(
      column->whole.first, end,
      kept.empty() ? Constant(*column, negated) : name + (negated ? " NOT IN (" : " IN (") + kept + ")");
}

void Reader::Between(std::size_t at) {
  const bool negated = tokens_[at - 1].Is("NOT");
  const auto column = Before(negated ? at - 1 : at);
  const auto low = Behind(at + 1);
  if (!column || !column->column || !low || !low->literal || low->whole.last + 1 >= tokens_.size() ||
      !tokens_[low->whole.last + 1].Is("AND")) {
    return;
  }
  const auto high = Behind(low->whole.last + 2);
  if (!high || !high->literal) return;
  std::string above = Said(*column, ">=", *low);
  std::string below = Said(*column, "<=", *high);
  if (above.empty() && below.empty()) return;
  const std::string name(Text(column->whole));
  if (above.empty()) above = name + " >= " + std::string(Text(low->whole));
  if (below.empty()) below = name + " <= " + std::string(Text(high->whole));
  edits_.Replace(column->whole.first, high->whole.last,
                 std::string(negated ? "(NOT (" : "((") + above + " AND " + below + "))");
}

// The embedded engine compares letters of the alphabet whatever their case, and knows no escape character
// but the one that the statement names. Of a column that is no text it compares the text of its value.
void Reader::Like(std::size_t at) {
  if (tokens_[at - 1].IsAny({"(", ","})) return;  // CREATE TABLE a (LIKE b)
  edits_.Replace(at, at, "ILIKE");
  const auto left = Before(tokens_[at - 1].Is("NOT") ? at - 1 : at);
  if (left && left->column && *left->column != ColumnType::Text && *left->column != ColumnType::Number) {
    edits_.Replace(left->whole.first, left->whole.last,
                   "CAST(" + std::string(Text(left->whole)) + " AS TEXT)");
  }
  const bool escapes = at + 2 < tokens_.size() && tokens_[at + 2].Is("ESCAPE");
  if (at + 1 < tokens_.size() && tokens_[at + 1].IsText() && !escapes &&
      tokens_[at + 1].text.find('\\') != std::string_view::npos) {
    edits_.InsertBehind(at + 1, " ESCAPE ''");
  }
}

void Reader::Set(std::size_t at) {
  const auto left = Before(at);
  const auto right = Behind(at + 1);
  if (!left || !right || !left->column || !right->literal) return;
  if (auto given = Given(*left->column, *right->literal)) {
    edits_.Replace(right->whole.first, right->whole.last, *given);
  }
}

// "INSERT INTO table (a, b) VALUES (...), (...)"
void Reader::Inserted() {
  if (tokens_.size() < 6 || !tokens_[0].Is("INSERT") || !tokens_[1].Is("INTO") || !tokens_[3].Is("(")) return;
  std::vector<std::optional<ColumnType>> types;
  std::size_t at = 4;
  for (; at < tokens_.size() && !tokens_[at].Is(")"); ++at) {
    if (tokens_[at].IsName()) types.push_back(sources_.TypeOf(tokens_, at));
  }
  ++at;
  if (at >= tokens_.size() || !tokens_[at].Is("VALUES")) return;
  std::size_t place = 0;
  for (++at; at < tokens_.size(); ++at) {
    const Token& token = tokens_[at];
    if (token.depth == 0 && token.kind == PartKind::kWord) return;  // ON CONFLICT, RETURNING
    const bool opens = token.depth == 0 && token.Is("(");
    if (opens) place = 0;
    if (token.depth == 1 && token.Is(",")) ++place;
    if (!opens && !(token.depth == 1 && token.Is(","))) continue;
    const auto value = Behind(at + 1);
    if (!value || !value->literal || place >= types.size() || !types[place]) continue;
    if (auto given = Given(*types[place], *value->literal)) {
      edits_.Replace(value->whole.first, value->whole.last, *given);
    }
  }
}

}  // namespace

bool IsComparison(const Token& token) {
  return token.kind == PartKind::kMark && token.IsAny({"=", "==", "<>", "!=", "<", ">", "<=", ">="});
}

void ReadLiterals(const Tokens& tokens, const Sources& sources, Edits& edits) {
  Reader reader(tokens, sources, edits);
  reader.Inserted();
  Setting setting;
  for (std::size_t at = 0; at < tokens.size(); ++at) {
    const Token& token = tokens[at];
    const bool sets = setting(tokens, at);
    if (at == 0) continue;
    if (IsComparison(token)) {
      if (sets) {
        reader.Set(at);
      } else {
        reader.Comparison(at);
      }
    } else if (token.Is("IN")) {
      reader.In(at);
    } else if (token.Is("BETWEEN")) {
      reader.Between(at);
    } else if (token.Is("LIKE")) {
      reader.Like(at);
    }
  }
}

}  // namespace tarvik::data
