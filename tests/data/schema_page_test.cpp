// docs/schema.md is the schema as a page, for whoever embeds the module over a base of his own. This test
// writes it anew with TARVIK_WRITE_PAGES=1 set, and otherwise proves that it is up to date.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "data/schema.h"
#include "tests/data/support.h"

namespace tarvik::data {
namespace {

const char* Word(ColumnType type) {
  switch (type) {
    case ColumnType::Integer:
      return "whole number";
    case ColumnType::Number:
      return "number";
    case ColumnType::Text:
      return "text";
    case ColumnType::Date:
      return "date";
    case ColumnType::Flag:
      return "flag";
  }
  return "";
}

std::string Joined(const std::vector<std::string_view>& names) {
  std::string text;
  for (const auto name : names) text += (text.empty() ? "`" : ", `") + std::string(name) + "`";
  return text;
}

void Write(const Table& table, std::string& page) {
  page += "\n### " + std::string(table.name) + "\n\n" + std::string(table.meaning) +
          ". Key: " + Joined(table.key) + (table.counted_key ? ", numbered by the engine" : "") + ".\n";
  for (const ForeignKey& foreign : table.foreign_keys) {
    page += "Each `" + std::string(foreign.column) + "` is that of a row of `" + std::string(foreign.table) +
            "`.\n";
  }
  for (const Once& once : table.once) {
    page += "No two rows have the same " + Joined(once.columns) + " where `" + std::string(once.where) +
            "` holds.\n";
  }
  page += "\n| Column | Type | Meaning |\n|---|---|---|\n";
  for (const Column& column : table.columns) {
    page += "| `" + std::string(column.name) + "` | " + Word(column.type) + " | " +
            std::string(column.meaning) + " |\n";
  }
}

std::string Page() {
  std::string page =
      "# Tables\n\n"
      "Made from `data/schema.h`; not to be edited by hand. A column takes null unless it belongs to the "
      "key. "
      "A flag is\n1 or 0. Names are read without regard to case.\n\n"
      "## The suite's\n\nWhat the module's statements expect of any base, whoever made it.\n";
  for (const Table& table : Schema()) {
    if (!table.of_host) Write(table, page);
  }
  page += "\n## The stand-alone host's own\n\nA program that embeds the module needs none of these.\n";
  for (const Table& table : Schema()) {
    if (table.of_host) Write(table, page);
  }
  return page;
}

TEST(SchemaPage, SaysWhatTheSchemaSays) {
  const std::string path = TARVIK_SOURCE_DIR "/docs/schema.md";
  if (std::getenv("TARVIK_WRITE_PAGES") != nullptr) std::ofstream(path) << Page();
  EXPECT_EQ(tests::ReadFile(path), Page()) << "set TARVIK_WRITE_PAGES=1 to write it anew";
}

}  // namespace
}  // namespace tarvik::data
