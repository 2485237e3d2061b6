// Calendar date and time of day as plain values. No clock, no time zone: the clock is the platform's.
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace tarvik::data {

struct Date {
  int year = 1;
  int month = 1;
  int day = 1;

  auto operator<=>(const Date&) const = default;

  // "yyyy-MM-dd"; a time after it (a blank or a "T", and whatever follows) is ignored.
  // Gives nothing for any other text and for a day that the calendar doesn't have.
  static std::optional<Date> Parse(std::string_view text);
  [[nodiscard]] bool Valid() const;

  [[nodiscard]] std::string Iso() const;       // "2024-03-05"
  [[nodiscard]] std::string DayFirst() const;  // "05032024": names of daily files
  [[nodiscard]] Date PlusDays(int days) const;
  // Same day of a later (or earlier) month; the last day of that month where it is shorter.
  [[nodiscard]] Date PlusMonths(int months) const;
};

struct Time {
  int hour = 0;
  int minute = 0;
  int second = 0;

  auto operator<=>(const Time&) const = default;

  [[nodiscard]] std::string Text() const;  // "14:03:22", on 24 hours
};

struct DateTime {
  Date date;
  Time time;

  auto operator<=>(const DateTime&) const = default;

  // "yyyy-MM-dd hh:mm:ss", with a "T" for the blank too; fractions of a second are ignored.
  // Gives nothing for a date alone and for any other text.
  static std::optional<DateTime> Parse(std::string_view text);

  [[nodiscard]] std::string Iso() const;  // "2024-03-05 14:03:22"
};

}  // namespace tarvik::data
