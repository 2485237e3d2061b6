// The schema as data: one list of tables and columns, from which each engine's DDL, the builder's
// knowledge of column types, the tests' column names and docs/schema.md come.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "data/engine.h"

namespace tarvik::data {

enum class ColumnType { Integer, Number, Text, Date, Flag };

struct Column {
  std::string_view name;  // as the suite spells it
  ColumnType type;
  std::string_view meaning;
};

struct ForeignKey {
  std::string_view column;
  std::string_view table;  // refers to the column of the same name there, without cascade
};

// A rule of the base's own: no two rows have the same columns. Holds for the rows that `where` names; of a
// base that already had doubles when the rule came, for the rows behind the last one of then.
struct Once {
  std::string_view name;
  std::vector<std::string_view> columns;
  std::string_view where;
};

struct Table {
  std::string_view name;
  std::string_view meaning;
  std::vector<Column> columns;
  std::vector<std::string_view> key;  // primary key; the only columns that take no null
  std::vector<ForeignKey> foreign_keys;
  std::vector<std::vector<std::string_view>> indexes;
  std::vector<Once> once = {};
  bool positive_key = false;  // the base refuses a row whose key is below 1
  bool counted_key = false;   // the engine numbers the key column itself (the ledger's own row id)
  bool of_host = false;       // the stand-alone host's own, not the suite's
};

// Raised by one with each change of a table. A base of a newer version is refused.
inline constexpr int kSchemaVersion = 3;

const std::vector<Table>& Schema();
// Without regard to case; nullptr if the schema has no such table or column.
const Table* FindTable(std::string_view name);
const Column* FindColumn(std::string_view table, std::string_view column);

// The statements that make a table and its indexes on an engine.
std::vector<std::string> Ddl(const Table& table, Dialect dialect);

// Creates what is missing, in one transaction, and records the version. Gives true if the base
// was empty. Throws Error, with nothing written, if the base is of a newer version or holds other
// tables than ours.
bool PrepareSchema(EngineConnection& connection);

}  // namespace tarvik::data
