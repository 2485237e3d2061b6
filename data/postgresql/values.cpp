// Reading and writing the server's texts of values. What is no number and no date is told apart here, since
// the suite compares typed texts with columns of any type.
#include "data/postgresql/values.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "data/error.h"
#include "data/number.h"
#include "data/postgresql/literals.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

// The types of the server's catalogue; their numbers are fixed.
enum Type : Oid {
  kBool = 16,
  kInt8 = 20,
  kInt2 = 21,
  kInt4 = 23,
  kFloat4 = 700,
  kFloat8 = 701,
  kDate = 1082,
  kTimestamp = 1114,
  kTimestampZone = 1184,
  kNumeric = 1700,
};

bool IsNumber(Oid type) {
  return type == kInt8 || type == kInt2 || type == kInt4 || type == kFloat4 || type == kFloat8 ||
         type == kNumeric;
}
bool IsDate(Oid type) { return type == kDate || type == kTimestamp || type == kTimestampZone; }

std::optional<std::int64_t> WholeNumber(std::string_view text) {
  std::int64_t number = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || rest != text.data() + text.size()) return std::nullopt;
  return number;
}

Value FromServer(std::string_view text, Oid type) {
  switch (type) {
    case kBool:
      return text == "t" ? 1 : 0;
    case kInt2:
    case kInt4:
    case kInt8:
    case kNumeric:  // sums of whole numbers
      if (const auto whole = WholeNumber(text)) return *whole;
      [[fallthrough]];
    case kFloat4:
    case kFloat8: {
      double number = 0;
      const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
      if (error == std::errc{} && rest == text.data() + text.size()) return number;
      break;
    }
    case kDate:
    case kTimestamp:
    case kTimestampZone:
      if (text.size() == 10) {
        if (const auto date = Date::Parse(text)) return *date;
      } else if (const auto when = DateTime::Parse(text)) {
        return *when;
      }
      break;
    default:
      break;
  }
  return RepairUtf8(text);
}

// A value as the server reads it for a parameter of this type; null for no value.
struct Parameter {
  Oid type;
  Mark mark;

  std::optional<std::string> operator()(std::monostate) const { return std::nullopt; }
  std::optional<std::string> operator()(std::int64_t number) const { return std::to_string(number); }
  std::optional<std::string> operator()(double number) const {
    const bool whole = type == kInt2 || type == kInt4 || type == kInt8;
    if (whole && mark == Mark::kCompared && number != std::trunc(number)) return std::nullopt;
    if (type != kFloat8 && type != kNumeric) return PlainNumber(number);
    // Exactly this double, where 15 digits do not hold all of it.
    std::array<char, 32> text;
    return std::string(text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr);
  }
  std::optional<std::string> operator()(const std::string& text) const {
    if (mark == Mark::kCompared && IsNumber(type)) return ComparedWithNumbers(text);
    if (mark == Mark::kCompared && IsDate(type)) return ComparedWithDates(text);
    // An empty field is no number and no date.
    if (text.empty() && (IsNumber(type) || IsDate(type))) return std::nullopt;
    if (text.find('\0') != std::string::npos) throw Error("El dato contiene un carácter nulo");
    return RepairUtf8(text);
  }
  std::optional<std::string> operator()(const Date& date) const { return date.Iso(); }
  std::optional<std::string> operator()(const DateTime& when) const { return when.Iso(); }

  // A text that is no number equals none and comes after all of them: so does what is sent for it, and a NOT
  // in front of the comparison has the effect that it has where the text itself is compared.
  [[nodiscard]] std::optional<std::string> ComparedWithNumbers(const std::string& text) const {
    if (auto number = NumberIn(text)) {
      if (WholeNumber(*number)) return number;
      if (const auto read = ParseNumber(*number)) return (*this)(*read);
    }
    if (type == kInt8) return std::to_string(std::numeric_limits<std::int64_t>::max());
    if (type == kInt4) return std::to_string(std::numeric_limits<std::int32_t>::max());
    if (type == kInt2) return std::to_string(std::numeric_limits<std::int16_t>::max());
    return "NaN";
  }
  // One that is no date sorts before or after all of them, by its first character.
  [[nodiscard]] static std::optional<std::string> ComparedWithDates(const std::string& text) {
    if (const auto date = Date::Parse(text)) return date->Iso();
    return !text.empty() && static_cast<unsigned char>(text.front()) > '9' ? "infinity" : "-infinity";
  }
};

}  // namespace

std::optional<std::string> ToServer(const Value& value, Oid type, Mark mark) {
  return value.Visit(Parameter{type, mark});
}

Rows RowsOf(const PGresult* result, std::string_view text, const TakenApart* parts) {
  Rows rows;
  const int columns = PQnfields(result);
  const int count = PQntuples(result);
  rows.rows.reserve(static_cast<std::size_t>(count));
  for (int column = 0; column < columns; ++column) rows.columns.emplace_back(PQfname(result, column));
  if (columns > 0) SpellColumns(parts != nullptr ? *parts : TakenApart(text), rows.columns);
  for (int i = 0; i < count; ++i) {
    std::vector<Value>& row = rows.rows.emplace_back();
    row.reserve(static_cast<std::size_t>(columns));
    for (int column = 0; column < columns; ++column) {
      if (PQgetisnull(result, i, column) != 0) {
        row.emplace_back();
        continue;
      }
      row.push_back(FromServer(
          {PQgetvalue(result, i, column), static_cast<std::size_t>(PQgetlength(result, i, column))},
          PQftype(result, column)));
    }
  }
  return rows;
}

}  // namespace tarvik::data
