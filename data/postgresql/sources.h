// The tables that a statement reads or writes, and the types of the columns that it names. It knows of tables
// only what the schema says.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "data/schema.h"
#include "data/tokens.h"

namespace tarvik::data {

struct Source {
  const Table* table;  // nullptr: not the schema's, or no table at all
  std::string_view name;
  std::string_view alias;
  std::size_t block;  // the SELECT that it is of; 0: the statement itself

  // By which its columns are told.
  [[nodiscard]] std::string_view Called() const { return alias.empty() ? name : alias; }
};

// Without regard to case; nullptr if the table has none of this name.
const Column* ColumnOf(const Table& table, std::string_view name);

class Sources {
 public:
  explicit Sources(const Tokens& tokens);

  [[nodiscard]] const std::vector<Source>& All() const { return sources_; }
  // The type of the column whose name stands at this token, after its table's name or not; nothing where it
  // is not certain. In a subquery its own tables' columns come first.
  [[nodiscard]] std::optional<ColumnType> TypeOf(const Tokens& tokens, std::size_t at) const;
  // The schema's spelling of a column of these tables; empty if none has it.
  [[nodiscard]] std::string_view Spelled(std::string_view column) const;

 private:
  // One SELECT, or the statement itself.
  struct Block {
    std::size_t outer;  // the one around it; its own number for none
  };
  void FindBlocks(const Tokens& tokens);

  std::vector<Source> sources_;
  std::vector<Block> blocks_ = {{0}};
  std::vector<std::size_t> block_of_;  // each token
};

}  // namespace tarvik::data
