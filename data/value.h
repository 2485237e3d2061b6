// Value: what a column, a property or a service argument holds. It converts nothing by itself
// except to text; numbers are read from text by data/number.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>

#include "data/datetime.h"

namespace tarvik::data {

// Null, integer, double, text (UTF-8), date or date with time. A flag is the integer 1 or 0.
class Value {
 public:
  Value() = default;
  template <class T>
  requires std::is_integral_v<T> Value(T number)
      : held_(static_cast<std::int64_t>(number)) {}      // NOLINT: values are meant to be implicit
  Value(double number) : held_(number) {}                // NOLINT
  Value(std::string text) : held_(std::move(text)) {}    // NOLINT
  Value(const char* text) : held_(std::string(text)) {}  // NOLINT
  Value(Date date) : held_(date) {}                      // NOLINT
  Value(DateTime when) : held_(when) {}                  // NOLINT

  bool operator==(const Value&) const = default;

  [[nodiscard]] bool IsNull() const { return std::holds_alternative<std::monostate>(held_); }

  // The held alternative, or nullptr if another one is held. Valid as long as the value lives.
  template <class T>
  [[nodiscard]] const T* As() const {
    return std::get_if<T>(&held_);
  }
  template <class Visitor>
  decltype(auto) Visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), held_);
  }

 private:
  std::variant<std::monostate, std::int64_t, double, std::string, Date, DateTime> held_;
};

// Plain text: "" for null, PlainNumber() of a number, the text itself, Iso() of a date.
std::string ToText(const Value& value);
// Number: 0 for null, a date, and a text that ParseNumber() refuses.
double ToNumber(const Value& value);
// The date of a date, a date with time, or a text that begins with one; nothing for anything else.
std::optional<Date> ToDate(const Value& value);
// Not null and a number other than 0. The suite's flags are tested this way; null is "no".
bool IsNonZero(const Value& value);
// True only for a flag that holds exactly 1.
bool IsTrue(const Value& value);

}  // namespace tarvik::data
