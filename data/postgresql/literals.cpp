#include "data/postgresql/literals.h"

#include <charconv>
#include <cmath>
#include <cstdint>

#include "data/datetime.h"
#include "data/lexer.h"
#include "data/number.h"
#include "data/statement.h"
#include "data/text.h"

namespace tarvik::data {
namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
  return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

void SkipDigits(std::string_view text, std::size_t& at) {
  while (at < text.size() && IsDigit(text[at])) ++at;
}

// The text as [+-]digits[.digits][e[+-]digits]; no digits at all are no number.
bool IsNumber(std::string_view text) {
  std::size_t at = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
  const std::size_t begin = at;
  SkipDigits(text, at);
  std::size_t digits = at - begin;
  if (at < text.size() && text[at] == '.') {
    const std::size_t behind = ++at;
    SkipDigits(text, at);
    digits += at - behind;
  }
  if (digits == 0) return false;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
    const std::size_t behind = at;
    SkipDigits(text, at);
    if (at == behind) return false;
  }
  return at == text.size();
}

std::optional<std::int64_t> WholeIn(std::string_view number) {
  if (number.starts_with('+')) number.remove_prefix(1);
  std::int64_t whole = 0;
  const auto [rest, error] = std::from_chars(number.data(), number.data() + number.size(), whole);
  if (error != std::errc{} || rest != number.data() + number.size()) return std::nullopt;
  return whole;
}

double DoubleIn(std::string_view number) {
  if (number.starts_with('+')) number.remove_prefix(1);
  double read = 0;
  const auto [rest, error] = std::from_chars(number.data(), number.data() + number.size(), read);
  if (error != std::errc::result_out_of_range) return read;
  // Too large for a double, or too small: the exponent says which; digits alone are large.
  const std::size_t exponent = number.find_first_of("eE");
  const bool small = exponent != std::string_view::npos && number.substr(exponent + 1).starts_with('-');
  if (small) return 0;
  return number.starts_with('-') ? -HUGE_VAL : HUGE_VAL;
}

// Every number sorts before every text.
Reading BehindNumbers(std::string_view comparison) {
  const bool holds = comparison == "<>" || comparison.front() == '<';
  return {holds ? Reading::Kind::kAlways : Reading::Kind::kNever, {}};
}

Reading ReadForDate(std::string_view comparison, const Literal& literal) {
  // Dates are texts to the embedded engine, and come after every number.
  if (literal.kind == Literal::Kind::kNumber || NumberIn(literal.text)) {
    const bool holds = comparison == "<>" || comparison.front() == '>';
    return {holds ? Reading::Kind::kAlways : Reading::Kind::kNever, {}};
  }
  const std::string& text = literal.text;
  const auto date = Date::Parse(text);
  if (date && date->Iso() == text) return {Reading::Kind::kSame, {}};
  if (comparison == "=") return {Reading::Kind::kNever, {}};
  if (comparison == "<>") return {Reading::Kind::kAlways, {}};
  if (!text.empty() && IsDigit(text.front())) return {Reading::Kind::kAsTexts, {}};
  const bool behind = !text.empty() && static_cast<unsigned char>(text.front()) > '9';
  return {(comparison.front() == '<') == behind ? Reading::Kind::kAlways : Reading::Kind::kNever, {}};
}

}  // namespace

std::optional<std::string> NumberIn(std::string_view text) {
  const std::string_view number = WithoutBlanks(text);
  if (!IsNumber(number)) return std::nullopt;
  if (const auto whole = WholeIn(number)) return std::to_string(*whole);
  const double read = DoubleIn(number);
  if (std::isinf(read)) return read < 0 ? "'-Infinity'::float8" : "'Infinity'::float8";
  char digits[32];
  return std::string(digits, std::to_chars(digits, digits + sizeof digits, read).ptr);
}

std::optional<std::string> TextOfNumber(std::string_view number) {
  if (const auto whole = WholeIn(number)) return std::to_string(*whole);
  const double read = DoubleIn(number);
  if (read != 0 && (std::abs(read) >= 1e15 || std::abs(read) < 1e-4)) return std::nullopt;
  std::string text = PlainNumber(read);
  if (text.find('.') == std::string::npos) text += ".0";
  return text;
}

Reading Read(ColumnType column, std::string_view comparison, const Literal& literal) {
  if (literal.kind == Literal::Kind::kNull) return {Reading::Kind::kSame, {}};
  const bool is_number = literal.kind == Literal::Kind::kNumber;
  if (column == ColumnType::Date) return ReadForDate(comparison, literal);
  if (column == ColumnType::Text) {
    const auto text = is_number ? TextOfNumber(literal.text) : std::nullopt;
    return text ? Reading{Reading::Kind::kOther, Quoted(*text)} : Reading{Reading::Kind::kSame, {}};
  }
  if (is_number) return {Reading::Kind::kSame, {}};
  // In parentheses: a sign after an operator would be read as part of it.
  if (const auto number = NumberIn(literal.text)) return {Reading::Kind::kOther, "(" + *number + ")"};
  return BehindNumbers(comparison);
}

std::optional<std::string> Given(ColumnType column, const Literal& literal) {
  if (literal.kind == Literal::Kind::kNull) return std::nullopt;
  const bool is_number = literal.kind == Literal::Kind::kNumber;
  if (column == ColumnType::Text) {
    const auto text = is_number ? TextOfNumber(literal.text) : std::nullopt;
    return text ? std::optional(Quoted(*text)) : std::nullopt;
  }
  if (is_number) return std::nullopt;
  if (WithoutBlanks(literal.text).empty()) return "NULL";
  if (column == ColumnType::Date) return std::nullopt;
  return NumberIn(literal.text);
}

}  // namespace tarvik::data
