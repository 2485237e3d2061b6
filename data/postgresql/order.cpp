#include "data/postgresql/order.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "data/text.h"

namespace tarvik::data {
namespace {

// Tokens from first to last, both included.
using Span = std::pair<std::size_t, std::size_t>;

// Tokens from first to before end, parted at the commas outside parentheses; empty parts are left out.
std::vector<Span> Parted(const Tokens& tokens, std::size_t first, std::size_t end) {
  std::vector<Span> parts;
  std::size_t begin = first;
  for (std::size_t i = first; i <= end; ++i) {
    if (i < end && !(tokens[i].depth == 0 && tokens[i].Is(","))) continue;
    if (i > begin) parts.emplace_back(begin, i - 1);
    begin = i + 1;
  }
  return parts;
}

// A column by its name alone, or after its table's.
bool IsColumn(const Tokens& tokens, Span part) {
  const auto [first, last] = part;
  if (!tokens[first].IsName() || !tokens[last].IsName() || tokens[last].Is("NULL")) return false;
  return first == last || (last == first + 2 && tokens[first + 1].Is("."));
}

// The column of "a", "t.a", "a AS b" and "a b".
std::optional<Span> BareColumn(const Tokens& tokens, Span part) {
  const auto [first, last] = part;
  if (IsColumn(tokens, part)) return part;
  if (!tokens[last].IsName() || last == first) return std::nullopt;
  const std::size_t end = last >= first + 2 && tokens[last - 1].Is("AS") ? last - 2 : last - 1;
  return IsColumn(tokens, {first, end}) ? std::optional(Span{first, end}) : std::nullopt;
}

// Which row of a group is the one that its bare columns are of.
std::string FirstRow(const Select& select, const Sources& sources, const Edits& edits,
                     const std::vector<Span>& columns) {
  std::string order;
  int extremes = 0;
  for (const auto& [first, last] : columns) {
    if (first + 1 >= last || !select.tokens[first].IsAny({"MIN", "MAX"}) || !select.tokens[first + 1].Is("("))
      continue;
    const std::size_t close = Closing(select.tokens, first + 1);
    if (close >= last + 1 || close == first + 2) continue;
    order = std::string(edits.Between(first + 2, close - 1)) +
            (select.tokens[first].Is("MAX") ? " DESC NULLS LAST" : " NULLS LAST");
    ++extremes;
  }
  if (extremes > 1) order.clear();
  for (const Source& source : sources.All()) {
    if (source.block != 0 || source.table == nullptr || source.table->key.empty()) continue;
    if (!order.empty()) order += ", ";
    order += GroupOrder(*source.table, source.Called(), IsFiltered(*source.table, select));
  }
  return order.empty() ? "" : " ORDER BY " + order;
}

bool IsNumber(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return IsDigit(c); });
}

// Whether a term of an ORDER BY may be without a value.
bool MayBeNone(const Select& select, const Sources& sources, Span term) {
  const Tokens& tokens = select.tokens;
  if (!select.single || !IsColumn(tokens, term)) return true;
  const bool outer = std::any_of(tokens.begin(), tokens.end(), [](const Token& token) {
    return token.IsAny({"LEFT", "RIGHT", "FULL"});
  });
  if (outer) return true;
  const std::string_view name = tokens[term.second].text;
  bool key = false;
  for (const Source& source : sources.All()) {
    if (source.block != 0) continue;
    if (term.first != term.second && !EqualsNoCase(source.Called(), tokens[term.first].text)) continue;
    if (source.table == nullptr) return true;
    if (ColumnOf(*source.table, name) == nullptr) continue;
    const auto& keys = source.table->key;
    key =
        std::any_of(keys.begin(), keys.end(), [&](std::string_view one) { return EqualsNoCase(one, name); });
    if (!key) return true;
  }
  return !key;
}

}  // namespace

void FirstOfGroups(const Select& select, const Sources& sources, Edits& edits) {
  const Tokens& tokens = select.tokens;
  if (!select.single || !select.grouped || select.from >= select.group) return;
  std::size_t by_end = tokens.size();
  for (std::size_t i = tokens.size(); i-- > select.group;) {
    if (tokens[i].depth == 0 && tokens[i].IsAny({"HAVING", "ORDER", "LIMIT", "OFFSET", "FETCH"})) by_end = i;
  }
  std::vector<std::string> grouped;
  for (const auto& [first, last] : Parted(tokens, select.group + 2, by_end)) {
    grouped.emplace_back(edits.Between(first, last));
  }
  const std::vector<Span> columns = Parted(tokens, 1, select.from);
  const std::string first_row = FirstRow(select, sources, edits, columns);
  for (const Span& part : columns) {
    const auto column = BareColumn(tokens, part);
    if (!column) continue;
    const std::string name(edits.Between(column->first, column->second));
    const std::string_view called = tokens[part.second].text;
    const std::string_view last = tokens[column->second].text;
    const bool is_grouped = std::any_of(grouped.begin(), grouped.end(), [&](const std::string& by) {
      return EqualsNoCase(by, name) || EqualsNoCase(by, called) || EqualsNoCase(by, last) || IsNumber(by);
    });
    if (is_grouped) continue;
    edits.Replace(part.first, part.second,
                  "(ARRAY_AGG(" + name + first_row + "))[1] AS " + std::string(called));
  }
  if (grouped.empty() || select.order < tokens.size()) return;
  std::string order = " ORDER BY ";
  for (std::size_t i = 0; i < grouped.size(); ++i) {
    order += (i > 0 ? ", " : "") + grouped[i] + " NULLS FIRST";
  }
  edits.InsertBehind(select.limit - 1, order);  // after a HAVING, before a limit
}

void NoValueFirst(const Select& select, const Sources& sources, Edits& edits) {
  const Tokens& tokens = select.tokens;
  if (select.order >= tokens.size() || select.locks) return;
  const std::size_t end = select.limit > select.order ? select.limit : tokens.size();
  for (const auto& [first, last] : Parted(tokens, select.order + 2, end)) {
    const bool down = tokens[last].Is("DESC");
    const bool told = down || tokens[last].Is("ASC");
    if (tokens[last].IsAny({"FIRST", "LAST"}) || (told && last == first)) continue;
    if (!MayBeNone(select, sources, {first, told ? last - 1 : last})) continue;
    edits.InsertBehind(last, down ? " NULLS LAST" : " NULLS FIRST");
  }
}

void RowsInOrder(const Select& select, Edits& edits) {
  const std::string order = MissingOrder(select);
  if (!order.empty()) edits.InsertBehind(select.BehindWhere() - 1, order);
}

}  // namespace tarvik::data
