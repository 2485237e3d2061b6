// The checks of a statement's text before an engine sees it. They know where its parts begin and end, and
// some of its words: whether a statement makes sense, the engine says.
#include "data/statement.h"

#include <algorithm>
#include <array>

#include "data/error.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

[[noreturn]] void Refuse(const std::string& reason, std::string_view text) {
  throw Error(reason).With("sentencia", RepairUtf8(text));
}

[[noreturn]] void RefuseCall(std::string_view text) {
  Refuse("La llamada a un procedimiento no tiene la forma exec NOMBRE 'a','b'", text);
}

// What a screen's own statements call, and all that they may.
constexpr std::array<std::string_view, 15> kHarmless = {"SUM",   "COUNT",    "MIN",  "MAX",    "AVG",
                                                        "UPPER", "LOWER",    "TRIM", "LENGTH", "ABS",
                                                        "ROUND", "COALESCE", "CAST", "SUBSTR", "REPLACE"};
// Words that a parenthesis may follow without being a call.
constexpr std::array<std::string_view, 27> kBeforeParenthesis = {
    "SELECT", "FROM", "WHERE",  "IN",    "AND",   "OR",      "NOT",      "VALUES",    "ON",
    "AS",     "BY",   "SET",    "LIKE",  "IS",    "BETWEEN", "EXISTS",   "WHEN",      "THEN",
    "ELSE",   "CASE", "HAVING", "USING", "LIMIT", "OFFSET",  "DISTINCT", "RETURNING", "JOIN"};
// Words by which another query, or a lock on rows, would come in.
constexpr std::array<std::string_view, 6> kElsewhere = {"WITH",   "UNION", "INTERSECT",
                                                        "EXCEPT", "TABLE", "FOR"};

template <std::size_t N>
bool IsAny(const Part& part, const std::array<std::string_view, N>& words) {
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) { return part.Is(word); });
}

using Parts = std::vector<Part>;

bool IsNamed(const Part& part) { return part.kind == PartKind::kWord || part.kind == PartKind::kName; }

// Whether the parenthesis that opens here begins the values of a function that is none of the harmless.
bool CallsOther(const Parts& parts, std::size_t at) {
  if (at == 0 || !IsNamed(parts[at - 1])) return false;
  std::size_t name = at - 1;  // of a chain of names, as in a.b.c, what stands before it says what it is
  while (name >= 2 && parts[name - 1].Is('.') && IsNamed(parts[name - 2])) name -= 2;
  if (name > 0) {
    const Part& before = parts[name - 1];
    if (before.Is("INTO") || before.Is("AS") || before.Is(':'))
      return false;  // columns of a table, or a type
  }
  const Part& last = parts[at - 1];
  return name != at - 1 || !(IsAny(last, kHarmless) || IsAny(last, kBeforeParenthesis));
}

}  // namespace

void RequireOneStatement(const TakenApart& statement) {
  const std::string_view text = statement.text;
  if (text.find('\0') != std::string_view::npos) Refuse("La sentencia contiene un carácter nulo", text);
  if (!ValidUtf8(text)) Refuse("La sentencia no es texto UTF-8 válido", text);

  bool anything = false;
  bool ended = false;
  for (const Part& part : statement.parts) {
    if (ended) Refuse("La sentencia contiene otra detrás de un punto y coma", text);
    if (part.Is(';')) {
      ended = true;
      continue;
    }
    anything = true;
    if (!part.closed) Refuse("La sentencia deja una comilla abierta", text);
    const std::string_view two = text.substr(part.at, 2);
    if (part.kind == PartKind::kMark && (two == "--" || two == "/*")) {
      Refuse("La sentencia contiene una marca de comentario", text);
    }
  }
  if (!anything) Refuse("La sentencia está vacía", text);
}

void RequireHarmless(const TakenApart& statement) {
  const std::string_view text = statement.text;
  const Parts& parts = statement.parts;
  for (std::size_t at = 0; at < parts.size(); ++at) {
    const Part& part = parts[at];
    if (at > 0 && part.Is("SELECT")) Refuse("Una consulta no puede llevar otra dentro", text);
    if (IsAny(part, kElsewhere)) {
      Refuse("La sentencia contiene una palabra que aquí no se permite: " + std::string(part.text), text);
    }
    if (!statement.ReadAlike(at)) Refuse("La sentencia contiene comillas que aquí no se permiten", text);
    if (part.Is('(') && CallsOther(parts, at)) {
      Refuse("La sentencia llama una función que aquí no se permite: " +
                 Substring(RepairUtf8(parts[at - 1].text), 0, 60),
             text);
    }
  }
}

bool IsSelect(std::string_view text) { return Lexer(text).Next().Is("SELECT"); }

std::string Unquoted(std::string_view quoted) {
  std::string text;
  text.reserve(quoted.size());
  for (std::size_t at = 1; at + 1 < quoted.size(); ++at) {
    text += quoted[at];
    if (quoted[at] == quoted.front()) ++at;
  }
  return text;
}

std::optional<ProcedureCall> ParseExec(const TakenApart& statement) {
  const Parts& parts = statement.parts;
  if (parts.empty() || !parts[0].Is("EXEC")) return std::nullopt;
  // The name: words, numbers and full stops that touch.
  std::size_t at = 1;
  const auto of_name = [](const Part& part) {
    return part.kind == PartKind::kWord || part.kind == PartKind::kNumber || part.Is('.') || part.Is('$');
  };
  ProcedureCall call;
  while (at < parts.size() && of_name(parts[at]) && (at == 1 || parts[at - 1].Behind() == parts[at].at)) {
    call.name += parts[at++].text;
  }
  if (call.name.empty()) RefuseCall(statement.text);

  bool expected = false;  // an argument, after a comma
  while (at < parts.size() && parts[at].kind == PartKind::kText) {
    if (!parts[at].closed) RefuseCall(statement.text);
    call.arguments.push_back(Unquoted(parts[at++].text));
    expected = at < parts.size() && parts[at].Is(',');
    if (!expected) break;
    ++at;
  }
  if (expected) RefuseCall(statement.text);
  if (at < parts.size() && parts[at].Is(';')) ++at;
  if (at < parts.size()) RefuseCall(statement.text);
  return call;
}

std::string Quoted(std::string_view text) {
  std::string quoted;
  quoted.reserve(text.size() + 2);
  quoted += '\'';
  for (const char c : text) {
    if (c == '\'') quoted += '\'';
    quoted += c;
  }
  quoted += '\'';
  return quoted;
}

}  // namespace tarvik::data
