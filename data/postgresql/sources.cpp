#include "data/postgresql/sources.h"

#include <algorithm>

#include "data/text.h"

namespace tarvik::data {
namespace {

bool IsAlias(const Token& token) {
  return token.IsName() &&
         !token.IsAny({"WHERE",  "SET",     "VALUES", "GROUP",     "ORDER",   "LIMIT",  "ON",       "INNER",
                       "LEFT",   "RIGHT",   "FULL",   "CROSS",     "JOIN",    "SELECT", "USING",    "UNION",
                       "HAVING", "NATURAL", "OFFSET", "RETURNING", "DEFAULT", "EXCEPT", "INTERSECT"});
}

}  // namespace

const Column* ColumnOf(const Table& table, std::string_view name) {
  const auto found = std::find_if(table.columns.begin(), table.columns.end(), [&](const Column& column) {
    return column.name.size() == name.size() && EqualsNoCase(column.name, name);
  });
  return found == table.columns.end() ? nullptr : &*found;
}

void Sources::FindBlocks(const Tokens& tokens) {
  block_of_.reserve(tokens.size());
  std::vector<std::size_t> around;  // of the parentheses that are open
  std::size_t block = 0;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    block_of_.push_back(block);
    if (token.Is("(")) {
      around.push_back(block);
      if (i + 1 < tokens.size() && tokens[i + 1].Is("SELECT")) {
        blocks_.push_back({block});
        block = blocks_.size() - 1;
      }
    } else if (token.Is(")") && !around.empty()) {
      block = around.back();
      around.pop_back();
    } else if (token.IsAny({"UNION", "EXCEPT", "INTERSECT"})) {
      // Beside the one before it, not inside.
      const std::size_t next = blocks_.size();
      blocks_.push_back({blocks_[block].outer == block ? next : blocks_[block].outer});
      block = next;
    }
  }
}

Sources::Sources(const Tokens& tokens) {
  FindBlocks(tokens);
  std::vector<int> lists;  // depths of the FROMs whose lists go on, the innermost last
  for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
    const Token& token = tokens[i];
    while (!lists.empty() && token.depth < lists.back()) lists.pop_back();
    const bool in_list = !lists.empty() && token.depth == lists.back();
    const bool goes_on = in_list && token.Is(",");
    if (in_list && token.IsAny({"WHERE", "GROUP", "ORDER", "HAVING", "LIMIT", "UNION"})) lists.pop_back();
    if (token.Is("FROM")) lists.push_back(token.depth);
    if (!goes_on && !token.IsAny({"FROM", "JOIN", "INTO", "UPDATE"})) continue;
    if (tokens[i + 1].Is("SET")) continue;  // DO UPDATE SET
    if (!tokens[i + 1].IsName()) {
      sources_.push_back({nullptr, {}, {}, block_of_[i]});  // a subselect
      continue;
    }
    const Token& name = tokens[++i];
    Source source{FindTable(name.text), name.text, {}, block_of_[i]};
    std::size_t next = i + 1;
    if (next < tokens.size() && tokens[next].Is("AS")) ++next;
    if (next < tokens.size() && IsAlias(tokens[next])) source.alias = tokens[next].text;
    sources_.push_back(source);
  }
}

std::optional<ColumnType> Sources::TypeOf(const Tokens& tokens, std::size_t at) const {
  const bool qualified = at >= 2 && tokens[at - 1].Is(".") && tokens[at - 2].IsName();
  for (std::size_t block = block_of_[at];;) {
    std::optional<ColumnType> type;
    for (const Source& source : sources_) {
      if (source.block != block) continue;
      if (qualified && !EqualsNoCase(tokens[at - 2].text, source.Called())) continue;
      if (source.table == nullptr) return std::nullopt;
      const Column* column = ColumnOf(*source.table, tokens[at].text);
      if (column == nullptr) continue;
      if (type && *type != column->type) return std::nullopt;
      type = column->type;
    }
    if (type || blocks_[block].outer == block) return type;
    block = blocks_[block].outer;
  }
}

std::string_view Sources::Spelled(std::string_view column) const {
  for (const Source& source : sources_) {
    if (source.table == nullptr) continue;
    if (const Column* found = ColumnOf(*source.table, column)) return found->name;
  }
  return {};
}

}  // namespace tarvik::data
