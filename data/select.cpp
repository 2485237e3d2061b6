#include "data/select.h"

#include <algorithm>

#include "data/text.h"

namespace tarvik::data {
namespace {

std::string Ordered(const Table& table, std::string_view name, const std::vector<std::string_view>& columns) {
  std::string text;
  for (const std::string_view column : columns) {
    if (!text.empty()) text += ", ";
    text += name;
    text += '.';
    text += column;
    // A key is never null; and said of one, it would cost a server the key's index.
    if (std::find(table.key.begin(), table.key.end(), column) == table.key.end()) text += " NULLS FIRST";
  }
  return text;
}

}  // namespace

Select::Select(const Tokens& of) : tokens(of) {
  from = where = group = order = limit = having_ = tokens.size();
  if (tokens.empty() || !tokens.front().Is("SELECT")) return;
  single = true;
  const auto note = [&](std::size_t& first, std::size_t at) {
    if (first == tokens.size()) first = at;
  };
  for (std::size_t i = 1; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (token.depth != 0 || token.kind != PartKind::kWord) continue;
    if (token.IsAny({"DISTINCT", "UNION", "EXCEPT", "INTERSECT", "WINDOW", "FOR"})) single = false;
    if (token.Is("FOR")) locks = true;
    if (token.Is("FROM")) note(from, i);
    if (token.Is("WHERE")) note(where, i);
    if (token.Is("HAVING")) note(having_, i);
    if (token.IsAny({"LIMIT", "OFFSET", "FETCH"})) note(limit, i);
    const bool by = i + 1 < tokens.size() && tokens[i + 1].Is("BY");
    if (by && token.Is("GROUP")) note(group, i);
    if (by && token.Is("ORDER")) note(order, i);
  }
  grouped = group < tokens.size();
}

std::size_t Select::BehindWhere() const { return std::min({group, having_, order, limit}); }

bool Select::Plain() const {
  return std::none_of(tokens.begin(), tokens.begin() + static_cast<std::ptrdiff_t>(from),
                      [](const Token& token) { return token.Is("("); });
}

std::string ReadingOrder(const Table& table, std::string_view name, bool filtered) {
  return Ordered(table, name, filtered ? table.reading.columns : table.key);
}

std::string GroupOrder(const Table& table, std::string_view name, bool filtered) {
  if (filtered || table.stored.empty()) return ReadingOrder(table, name, filtered);
  return Ordered(table, name, {table.stored});
}

bool IsFiltered(const Table& table, const Select& select) {
  if (table.reading.filter.empty()) return false;
  const Tokens& tokens = select.tokens;
  for (std::size_t i = select.where; i + 1 < select.BehindWhere(); ++i) {
    if (tokens[i].Is(table.reading.filter) && tokens[i + 1].IsAny({"=", "=="})) return true;
  }
  // Grouped by it alone: after GROUP BY its name, with its table's or not, and no comma.
  std::size_t name = select.group + 2;
  if (name + 2 < tokens.size() && tokens[name + 1].Is(".")) name += 2;
  return name < tokens.size() && tokens[name].Is(table.reading.filter) &&
         (name + 1 == tokens.size() || !tokens[name + 1].Is(","));
}

Plainly PlainTable(const Select& select) {
  const Tokens& tokens = select.tokens;
  if (!select.single || select.grouped || select.order < tokens.size()) return {};
  // One table, with a name of its own or not.
  const std::size_t end = std::min(select.where, select.BehindWhere());
  if (select.from + 1 >= end || end - select.from > 4 || !select.Plain()) return {};
  const std::size_t words = end - select.from - 1;
  if (words == 3 && !tokens[end - 2].Is("AS")) return {};
  if (!tokens[end - 1].IsName() || !tokens[select.from + 1].IsName()) return {};
  const Table* table = FindTable(tokens[select.from + 1].text);
  if (table == nullptr || table->key.empty()) return {};
  return {table, tokens[end - 1].text};
}

std::string MissingOrder(const Select& select) {
  const auto [table, name] = PlainTable(select);
  return table == nullptr ? "" : " ORDER BY " + ReadingOrder(*table, name, IsFiltered(*table, select));
}

std::string InReadingOrder(const TakenApart& statement) {
  std::string text(statement.text);
  if (statement.parts.empty() || !statement.parts[0].Is("SELECT") || !statement.ReadAlike()) return text;
  const Tokens tokens = TokensOf(statement);
  const Select select(tokens);
  const Table* table = PlainTable(select).table;
  if (table == nullptr) return text;
  const bool numbered =
      table->key.size() == 1 && FindColumn(table->name, table->key[0])->type == ColumnType::Integer;
  if (numbered && select.where < tokens.size()) return text;
  return text.insert(tokens[select.BehindWhere() - 1].Behind(), MissingOrder(select));
}

}  // namespace tarvik::data
