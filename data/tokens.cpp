#include "data/tokens.h"

namespace tarvik::data {
namespace {

// Operators of two characters.
bool Join(const Part& first, const Part& second) {
  if (first.kind != PartKind::kMark || second.kind != PartKind::kMark || first.text.size() != 1 ||
      first.Behind() != second.at) {
    return false;
  }
  const char a = first.text.front();
  const char b = second.text.front();
  return (b == '=' && (a == '<' || a == '>' || a == '!' || a == '=')) || (a == '<' && b == '>') ||
         (a == b && (a == '|' || a == ':'));
}

}  // namespace

Tokens TokensOf(const TakenApart& statement) {
  Tokens tokens;
  tokens.reserve(statement.parts.size());
  int depth = 0;
  for (const Part& part : statement.parts) {
    if (!tokens.empty() && Join(tokens.back(), part)) {
      tokens.back().text = statement.text.substr(tokens.back().at, 2);
      continue;
    }
    if (part.Part::Is(')')) --depth;
    tokens.push_back({part, depth});
    if (part.Part::Is('(')) ++depth;
  }
  while (!tokens.empty() && tokens.back().Is(";")) tokens.pop_back();
  return tokens;
}

std::string_view TextOf(std::string_view statement, const Tokens& tokens, std::size_t first,
                        std::size_t last) {
  return statement.substr(tokens[first].at, tokens[last].Behind() - tokens[first].at);
}

std::size_t Closing(const Tokens& tokens, std::size_t open) {
  for (std::size_t at = open + 1; at < tokens.size(); ++at) {
    if (tokens[at].depth == tokens[open].depth && tokens[at].Is(")")) return at;
  }
  return tokens.size();
}

std::size_t Opening(const Tokens& tokens, std::size_t close) {
  for (std::size_t at = close; at-- > 0;) {
    if (tokens[at].depth == tokens[close].depth && tokens[at].Is("(")) return at;
  }
  return tokens.size();
}

}  // namespace tarvik::data
