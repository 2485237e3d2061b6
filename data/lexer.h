// Where the parts of a statement begin and end, for every check that looks at its text. It knows quotes,
// words and numbers, and nothing of what they mean.
#pragma once

#include <cstddef>
#include <string_view>

namespace tarvik::data {

bool IsBlank(char c);     // what stands between the parts of a statement
bool IsWordSign(char c);  // what a word goes on with
std::size_t SkipBlanks(std::string_view text, std::size_t at);

enum class PartKind {
  kWord,    // a name or a keyword, without quotes
  kNumber,  // digits and decimal marks; what follows them at once is another part
  kText,    // 'between single quotes'
  kName,    // "between double ones", `these`, or [brackets]
  kMark,    // any other single character
  kEnd      // behind the last part
};

struct Part {
  PartKind kind = PartKind::kEnd;
  std::string_view text;  // with its quotes
  std::size_t at = 0;     // where it begins
  bool closed = true;     // false: its quote is never closed, and the part is all of the rest

  [[nodiscard]] std::size_t Behind() const { return at + text.size(); }
  [[nodiscard]] bool Is(char mark) const { return kind == PartKind::kMark && text.front() == mark; }
  // A word, without regard to case.
  [[nodiscard]] bool Is(std::string_view word) const;
};

// Gives the parts one after the other. A doubled quote inside a quoted part gives two parts that touch.
//   SELECT 'O''Hara'  gives SELECT, 'O', 'Hara' and the end
class Lexer {
 public:
  explicit Lexer(std::string_view text) : text_(text) {}
  Part Next();

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace tarvik::data
