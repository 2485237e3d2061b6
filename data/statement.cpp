// The check of a statement's text before an engine sees it. It knows where quoted text begins and
// ends and nothing else of the language: whether a statement makes sense is the engine's to say.
#include "data/statement.h"

#include "data/error.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'; }

bool IsWord(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$' ||
         static_cast<unsigned char>(c) >= 0x80;
}

std::size_t SkipSpace(std::string_view text, std::size_t at) {
  while (at < text.size() && IsSpace(text[at])) ++at;
  return at;
}

std::string_view FirstWord(std::string_view text) {
  const std::size_t begin = SkipSpace(text, 0);
  std::size_t end = begin;
  while (end < text.size() && IsWord(text[end])) ++end;
  return text.substr(begin, end - begin);
}

[[noreturn]] void Refuse(const char* reason, std::string_view text) {
  throw Error(reason).With("sentencia", RepairUtf8(text));
}

[[noreturn]] void RefuseCall(std::string_view text) {
  Refuse("La llamada a un procedimiento no tiene la forma exec NOMBRE 'a','b'", text);
}

}  // namespace

void RequireOneStatement(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) Refuse("La sentencia contiene un carácter nulo", text);
  if (!ValidUtf8(text)) Refuse("La sentencia no es texto UTF-8 válido", text);

  bool anything = false;
  bool ended = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (IsSpace(c)) continue;
    if (ended) Refuse("La sentencia contiene otra detrás de un punto y coma", text);
    if (c == ';') {
      ended = true;
      continue;
    }
    anything = true;
    if (c == '\'' || c == '"' || c == '`' || c == '[') {
      // A doubled quote closes and opens again at once, which comes to the same here.
      at = text.find(c == '[' ? ']' : c, at + 1);
      if (at == std::string_view::npos) Refuse("La sentencia deja una comilla abierta", text);
    } else if (text.substr(at, 2) == "--" || text.substr(at, 2) == "/*") {
      Refuse("La sentencia contiene una marca de comentario", text);
    }
  }
  if (!anything) Refuse("La sentencia está vacía", text);
}

void RequireHarmless(std::string_view) {}

bool IsSelect(std::string_view text) { return EqualsNoCase(FirstWord(text), "SELECT"); }

std::optional<ProcedureCall> ParseExec(std::string_view text) {
  const std::string_view exec = FirstWord(text);
  if (!EqualsNoCase(exec, "EXEC")) return std::nullopt;

  std::size_t at = SkipSpace(text, static_cast<std::size_t>(exec.data() - text.data()) + exec.size());
  const std::size_t name = at;
  while (at < text.size() && (IsWord(text[at]) || text[at] == '.')) ++at;
  ProcedureCall call{std::string(text.substr(name, at - name)), {}};
  if (call.name.empty()) RefuseCall(text);

  at = SkipSpace(text, at);
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
    at = SkipSpace(text, at + 1);
    expected = at < text.size() && text[at] == ',';
    if (!expected) break;
    at = SkipSpace(text, at + 1);
  }
  if (expected) RefuseCall(text);
  if (at < text.size() && text[at] == ';') at = SkipSpace(text, at + 1);
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
