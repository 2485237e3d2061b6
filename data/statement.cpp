// The checks of a statement's text before an engine sees it. They know where its parts begin and end and
// some of its words: whether a statement makes sense is the engine's to say.
#include "data/statement.h"

#include <algorithm>
#include <array>

#include "data/error.h"
#include "data/lexer.h"
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
// Words by which another question, or a lock on rows, would come in.
constexpr std::array<std::string_view, 6> kElsewhere = {"WITH",   "UNION", "INTERSECT",
                                                        "EXCEPT", "TABLE", "FOR"};

template <std::size_t N>
bool IsAny(const Part& part, const std::array<std::string_view, N>& words) {
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) { return part.Is(word); });
}

bool Touch(const Part& first, const Part& second) { return first.Behind() == second.at; }

using Parts = std::vector<Part>;

bool IsNamed(const Part& part) { return part.kind == PartKind::kWord || part.kind == PartKind::kName; }

// Quotes that the engines do not read alike: what is a text for one is a statement for another. A bracket is
// a quote for one and the place in a list for the other, and behind it nobody knows any more what is text.
bool OddQuotes(const Parts& parts, std::size_t at) {
  const Part& part = parts[at];
  if (part.Is('$')) return true;
  if (part.kind == PartKind::kName && part.text[0] != '"') return true;
  if ((part.kind != PartKind::kName && part.kind != PartKind::kText) || at == 0) return false;
  const Part& before = parts[at - 1];
  if (!Touch(before, part)) return false;
  return before.Is("E") ||
         (before.Is('&') && at >= 2 && parts[at - 2].Is("U") && Touch(parts[at - 2], before));
}

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

void RequireOneStatement(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) Refuse("La sentencia contiene un carácter nulo", text);
  if (!ValidUtf8(text)) Refuse("La sentencia no es texto UTF-8 válido", text);

  bool anything = false;
  bool ended = false;
  Lexer lexer(text);
  for (Part part = lexer.Next(); part.kind != PartKind::kEnd; part = lexer.Next()) {
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

void RequireHarmless(std::string_view text) {
  Parts parts;
  Lexer lexer(text);
  for (Part part = lexer.Next(); part.kind != PartKind::kEnd; part = lexer.Next()) parts.push_back(part);
  for (std::size_t at = 0; at < parts.size(); ++at) {
    const Part& part = parts[at];
    if (at > 0 && part.Is("SELECT")) Refuse("Una consulta no puede llevar otra dentro", text);
    if (IsAny(part, kElsewhere)) {
      Refuse("La sentencia contiene una palabra que aquí no se permite: " + std::string(part.text), text);
    }
    if (OddQuotes(parts, at)) Refuse("La sentencia contiene comillas que aquí no se permiten", text);
    if (part.Is('(') && CallsOther(parts, at)) {
      Refuse("La sentencia llama una función que aquí no se permite: " +
                 Substring(RepairUtf8(parts[at - 1].text), 0, 60),
             text);
    }
  }
}

bool IsSelect(std::string_view text) { return Lexer(text).Next().Is("SELECT"); }

std::optional<ProcedureCall> ParseExec(std::string_view text) {
  const Part exec = Lexer(text).Next();
  if (!exec.Is("EXEC")) return std::nullopt;

  std::size_t at = SkipBlanks(text, exec.Behind());
  const std::size_t name = at;
  while (at < text.size() && (IsWordSign(text[at]) || text[at] == '.')) ++at;
  ProcedureCall call{std::string(text.substr(name, at - name)), {}};
  if (call.name.empty()) RefuseCall(text);

  at = SkipBlanks(text, at);
  bool expected = false;  // an argument, behind a comma
  while (at < text.size() && text[at] == '\'') {
    std::string argument;
    for (++at;; ++at) {
      if (at >= text.size()) RefuseCall(text);
      if (text[at] == '\'') {
        if (at + 1 >= text.size() || text[at + 1] != '\'') break;
        ++at;
      }
      argument += text[at];
    }
    call.arguments.push_back(std::move(argument));
    at = SkipBlanks(text, at + 1);
    expected = at < text.size() && text[at] == ',';
    if (!expected) break;
    at = SkipBlanks(text, at + 1);
  }
  if (expected) RefuseCall(text);
  if (at < text.size() && text[at] == ';') at = SkipBlanks(text, at + 1);
  if (at < text.size()) RefuseCall(text);
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
