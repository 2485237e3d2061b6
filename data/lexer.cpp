#include "data/lexer.h"

#include "data/text.h"

namespace tarvik::data {
namespace {

bool StartsWord(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool IsWordSign(char c) { return StartsWord(c) || IsDigit(c) || c == '$'; }

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'; }

bool Touch(const Part& first, const Part& second) { return first.Behind() == second.at; }

}  // namespace

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool Part::Is(std::string_view word) const { return kind == PartKind::kWord && EqualsNoCase(text, word); }

std::size_t Lexer::BehindQuotes(bool& closed) const {
  const char quote = text_[at_] == '[' ? ']' : text_[at_];
  std::size_t end = at_;
  do {
    end = text_.find(quote, end + 1);
    closed = end != std::string_view::npos;
    if (!closed) return text_.size();
    ++end;
  } while (quote != ']' && end < text_.size() && text_[end] == quote);
  return end;
}

std::size_t Lexer::BehindNumber() const {
  std::size_t end = at_ + 1;
  while (end < text_.size() && (IsDigit(text_[end]) || text_[end] == '.')) ++end;
  std::size_t exponent = end;
  if (exponent < text_.size() && (text_[exponent] == 'e' || text_[exponent] == 'E')) ++exponent;
  if (exponent == end) return end;
  if (exponent < text_.size() && (text_[exponent] == '+' || text_[exponent] == '-')) ++exponent;
  if (exponent >= text_.size() || !IsDigit(text_[exponent])) return end;
  while (exponent < text_.size() && IsDigit(text_[exponent])) ++exponent;
  return exponent;
}

Part Lexer::Next() {
  while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
  if (at_ >= text_.size()) return {PartKind::kEnd, {}, text_.size(), true};
  const char c = text_[at_];
  std::size_t end = at_ + 1;
  PartKind kind = PartKind::kMark;
  bool closed = true;
  if (c == '\'' || c == '"' || c == '`' || c == '[') {
    kind = c == '\'' ? PartKind::kText : PartKind::kName;
    end = BehindQuotes(closed);
  } else if (StartsWord(c)) {
    kind = PartKind::kWord;
    while (end < text_.size() && IsWordSign(text_[end])) ++end;
  } else if (IsDigit(c) || (c == '.' && end < text_.size() && IsDigit(text_[end]))) {
    kind = PartKind::kNumber;
    end = BehindNumber();
  }
  const Part part{kind, text_.substr(at_, end - at_), at_, closed};
  at_ = end;
  return part;
}

TakenApart::TakenApart(std::string_view of) : text(of) {
  parts.reserve(of.size() / 4 + 4);
  Lexer lexer(of);
  for (Part part = lexer.Next(); part.kind != PartKind::kEnd; part = lexer.Next()) parts.push_back(part);
}

bool TakenApart::ReadAlike(std::size_t at) const {
  const Part& part = parts[at];
  if (part.Is('$')) return false;
  if (part.kind == PartKind::kName && part.text[0] != '"') return false;
  if ((part.kind != PartKind::kName && part.kind != PartKind::kText) || at == 0) return true;
  const Part& before = parts[at - 1];
  if (!Touch(before, part)) return true;
  return !before.Is("E") &&
         !(before.Is('&') && at >= 2 && parts[at - 2].Is("U") && Touch(parts[at - 2], before));
}

bool TakenApart::ReadAlike() const {
  for (std::size_t at = 0; at < parts.size(); ++at) {
    if (!ReadAlike(at)) return false;
  }
  return true;
}

}  // namespace tarvik::data
