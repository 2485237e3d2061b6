// Literals as the embedded engine reads them where a column gives them their type, for a server that reads
// them by itself and in another way.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "data/schema.h"

namespace tarvik::data {

// A literal of a statement, told apart.
struct Literal {
  enum class Kind { kText, kNumber, kNull };
  Kind kind;
  std::string text;  // of a text without its quotes, of a number with its sign
};

// The number that a text is, blanks around it or not, as it can stand in a statement; nothing if it is none.
std::optional<std::string> NumberIn(std::string_view text);
// A number of a statement as the text that it becomes in a text column; nothing where the engines may write
// it differently.
std::optional<std::string> TextOfNumber(std::string_view number);

// What becomes of a comparison of a column with a literal.
struct Reading {
  enum class Kind {
    kSame,    // the server reads it as the embedded engine does
    kOther,   // with this literal instead
    kAlways,  // it holds for every value
    kNever,   // it holds for none
    kAsTexts  // both sides are compared as texts
  };
  Kind kind;
  std::string literal;  // of kOther
};
// `comparison` is one of = <> < > <= >=, with the column on its left.
Reading Read(ColumnType column, std::string_view comparison, const Literal& literal);

// A literal that is set into a column, as it has to be written; nothing where it may stay. One that the
// column can't hold stays, for the server to refuse: no data is lost in silence.
std::optional<std::string> Given(ColumnType column, const Literal& literal);

}  // namespace tarvik::data
