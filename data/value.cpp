// The readings of a value: as text, as a number, as a flag. It formats nothing by a pattern.
#include "data/value.h"

#include "data/number.h"

namespace tarvik::data {
namespace {

struct TextOf {
  std::string operator()(std::monostate) const { return {}; }
  std::string operator()(std::int64_t number) const { return std::to_string(number); }
  std::string operator()(double number) const { return PlainNumber(number); }
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(const Date& date) const { return date.Iso(); }
  std::string operator()(const DateTime& when) const { return when.Iso(); }
};

}  // namespace

std::string ToText(const Value& value) { return value.Visit(TextOf{}); }

double ToNumber(const Value& value) {
  if (const auto* number = value.As<double>()) return *number;
  if (const auto* number = value.As<std::int64_t>()) return static_cast<double>(*number);
  if (const auto* text = value.As<std::string>()) return ParseNumber(*text).value_or(0);
  return 0;
}

bool IsNonZero(const Value& value) { return ToNumber(value) != 0; }

bool IsTrue(const Value& value) {
  if (const auto* number = value.As<std::int64_t>()) return *number == 1;
  if (const auto* number = value.As<double>()) return *number == 1;
  return false;
}

std::optional<Date> ToDate(const Value& value) {
  if (const auto* date = value.As<Date>()) return *date;
  if (const auto* when = value.As<DateTime>()) return when->date;
  if (const auto* text = value.As<std::string>()) return Date::Parse(*text);
  return std::nullopt;
}

}  // namespace tarvik::data
