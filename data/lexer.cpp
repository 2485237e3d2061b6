#include "data/lexer.h"

#include "data/text.h"

namespace tarvik::data {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool StartsWord(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

}  // namespace

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'; }

bool IsWordSign(char c) { return StartsWord(c) || IsDigit(c) || c == '$'; }

std::size_t SkipBlanks(std::string_view text, std::size_t at) {
  while (at < text.size() && IsBlank(text[at])) ++at;
  return at;
}

bool Part::Is(std::string_view word) const { return kind == PartKind::kWord && EqualsNoCase(text, word); }

Part Lexer::Next() {
  at_ = SkipBlanks(text_, at_);
  if (at_ >= text_.size()) return {PartKind::kEnd, {}, text_.size(), true};
  const char c = text_[at_];
  std::size_t end = at_ + 1;
  PartKind kind = PartKind::kMark;
  bool closed = true;
  if (c == '\'' || c == '"' || c == '`' || c == '[') {
    kind = c == '\'' ? PartKind::kText : PartKind::kName;
    end = text_.find(c == '[' ? ']' : c, end);
    closed = end != std::string_view::npos;
    end = closed ? end + 1 : text_.size();
  } else if (StartsWord(c)) {
    kind = PartKind::kWord;
    while (end < text_.size() && IsWordSign(text_[end])) ++end;
  } else if (IsDigit(c)) {
    kind = PartKind::kNumber;
    while (end < text_.size() && (IsDigit(text_[end]) || text_[end] == '.')) ++end;
  }
  const Part part{kind, text_.substr(at_, end - at_), at_, closed};
  at_ = end;
  return part;
}

}  // namespace tarvik::data
