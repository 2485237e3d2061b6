// The schema as data: one list of tables and columns. Each engine's DDL comes from it, the names that a
// service may be asked about at run time, and docs/schema.md (see tests/data/schema_page_test.cpp).
#pragma once

#include <cstdint>
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

// A rule of the base's own: no two rows have the same columns. Holds for the rows that `where` names; in
// a base that had duplicates when the rule came, for the rows after the last of them.
struct Once {
  std::string_view name;
  std::vector<std::string_view> columns;
  std::string_view where;
};

// The order in which rows are read by a condition on `filter`, where it is not the key's.
struct ReadingRule {
  std::string_view filter;
  std::vector<std::string_view> columns;
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
  // A column besides the key that the engine numbers, so that the order in which rows were stored can be
  // told.
  std::string_view stored = {};
  ReadingRule reading = {};
};

// Raised by one with each change of a table. A base of a newer version is refused.
inline constexpr int kSchemaVersion = 5;

const std::vector<Table>& Schema();
// Without regard to case; nullptr if the schema has no such table or column.
const Table* FindTable(std::string_view name);
const Column* FindColumn(std::string_view table, std::string_view column);

// The statements that make a table, its indexes and its rules on an engine; the table is new.
std::vector<std::string> Ddl(const Table& table, Dialect dialect);

// The indexes alone, and the name of one.
std::vector<std::string> IndexTexts(const Table& table);
std::string IndexName(const Table& table, const std::vector<std::string_view>& columns);
// A rule's index; `since`: for the rows whose number is above it.
std::string OnceText(const Table& table, const Once& once, std::int64_t since = 0);
// The texts that add a column to a table that is there. Rows that are there get the numbers of a column that
// tells how they were stored: in a file by the row id, on a server, where nothing else is left of it, by key.
std::vector<std::string> AddColumnTexts(const Table& table, const Column& column, Dialect dialect);

// What keeps a key positive, or numbers rows as they are stored: a trigger, for EngineConnection::Define,
// after the statements that it needs.
struct Guard {
  std::string name;
  std::vector<std::string> texts;
};
std::vector<Guard> Guards(const Table& table, Dialect dialect);

// Makes a base ready for this program: creates what an empty one lacks, and brings an older one to this
// version, in one transaction, after a backup (see backup.h; a base in memory needs none). Gives true if the
// base was empty. A base that lacks nothing is not written to. Of several stations that come at once one does
// it, and the others wait and find it done.
// Throws Error, with nothing changed, if the base is of a newer version or holds other tables than ours, if
// the backup could not be made, and, naming who must open it first, if this user may not.
bool PrepareSchema(EngineConnection& connection);

// A rule that holds only for rows after a number, since there were duplicates when it came.
struct RuleWithPast {
  std::string name;
  std::int64_t since;
};
// Those of this base; empty where every rule holds for all rows.
std::vector<RuleWithPast> RulesWithPast(EngineConnection& connection);

}  // namespace tarvik::data
