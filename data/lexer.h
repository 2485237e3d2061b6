// Splits a statement into its parts. Everything that parses a statement uses it: the gate in front of an
// engine, the translation for a server, and what adds an order of rows. It knows quotes, words and numbers,
// and nothing of what they mean.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarvik::data {

bool IsDigit(char c);

enum class PartKind {
  kWord,    // a name or a keyword, without quotes
  kNumber,  // digits and decimal marks, and an exponent; whatever touches them is another part
  kText,    // 'between single quotes'; a doubled quote belongs to it
  kName,    // "between double ones" or `these`, likewise, or [brackets]
  kMark,    // any other single character
  kEnd      // after the last part
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

// Gives the parts one after the other.
//   SELECT 'O''Hara', 1.5e3  gives SELECT, 'O''Hara', the comma, 1.5e3 and the end
class Lexer {
 public:
  explicit Lexer(std::string_view text) : text_(text) {}
  Part Next();

 private:
  [[nodiscard]] std::size_t BehindQuotes(bool& closed) const;
  [[nodiscard]] std::size_t BehindNumber() const;

  std::string_view text_;
  std::size_t at_ = 0;
};

// A text with all its parts but the end, so that it is split once however many read it. It keeps the text
// as a view: the original has to outlive it.
struct TakenApart {
  std::string_view text;
  std::vector<Part> parts;

  TakenApart(std::string_view of);                                         // NOLINT: any text may be given
  TakenApart(const char* of) : TakenApart(std::string_view(of)) {}         // NOLINT
  TakenApart(const std::string& of) : TakenApart(std::string_view(of)) {}  // NOLINT

  // Whether every engine reads the same quotes here: no brackets or backticks, which are quotes for
  // one and none for another, no $ outside a word, no E'' and no U&''. `at`: of this part alone.
  [[nodiscard]] bool ReadAlike(std::size_t at) const;
  [[nodiscard]] bool ReadAlike() const;
};

}  // namespace tarvik::data
