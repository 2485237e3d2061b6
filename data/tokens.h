// The parts of a statement as an engine's own grammar sees them: with their depth in parentheses, and with
// the operators of two characters as one. It knows no tables.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "data/lexer.h"
#include "data/text.h"

namespace tarvik::data {

struct Token : Part {
  int depth = 0;  // of parentheses; a parenthesis has the depth outside it

  // A name that the statement gives or asks for, in double quotes or not.
  [[nodiscard]] bool IsName() const { return kind == PartKind::kWord || kind == PartKind::kName; }
  [[nodiscard]] bool IsText() const { return kind == PartKind::kText; }
  // A character or a word, without regard to case.
  [[nodiscard]] bool Is(std::string_view sign) const {
    return text.size() == sign.size() && (kind == PartKind::kWord || kind == PartKind::kMark) &&
           EqualsNoCase(text, sign);
  }
  [[nodiscard]] bool IsAny(std::initializer_list<std::string_view> signs) const {
    for (const std::string_view sign : signs) {
      if (Is(sign)) return true;
    }
    return false;
  }
};

using Tokens = std::vector<Token>;

// Without the semicolon at the end.
Tokens TokensOf(const TakenApart& statement);

// Where the text from one token to another, both included, begins and ends in the statement.
std::string_view TextOf(std::string_view statement, const Tokens& tokens, std::size_t first,
                        std::size_t last);

// The parenthesis that closes this one, or that this one closes; the number of tokens if there is none.
std::size_t Closing(const Tokens& tokens, std::size_t open);
std::size_t Opening(const Tokens& tokens, std::size_t close);

}  // namespace tarvik::data
