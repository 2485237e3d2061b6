// Reading, writing and shifting of calendar dates. It asks no clock and knows no time zone.
#include "data/datetime.h"

#include <algorithm>
#include <chrono>

namespace tarvik::data {
namespace {

constexpr std::size_t kDateLength = 10;      // yyyy-MM-dd
constexpr std::size_t kDateTimeLength = 19;  // yyyy-MM-dd hh:mm:ss

// The number of `count` digits at `first`; -1 if one of them is no digit.
int Digits(std::string_view text, std::size_t first, std::size_t count) {
  int number = 0;
  for (std::size_t i = first; i < first + count; ++i) {
    if (text[i] < '0' || text[i] > '9') return -1;
    number = number * 10 + (text[i] - '0');
  }
  return number;
}

void Append(std::string& text, int number, int width) {
  std::string digits = std::to_string(number);
  for (int missing = width - static_cast<int>(digits.size()); missing > 0; --missing) text += '0';
  text += digits;
}

std::chrono::year_month_day Calendar(const Date& date) {
  return std::chrono::year{date.year} / std::chrono::month{static_cast<unsigned>(date.month)} /
         std::chrono::day{static_cast<unsigned>(date.day)};
}

Date FromCalendar(const std::chrono::year_month_day& day) {
  return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
          static_cast<int>(static_cast<unsigned>(day.day()))};
}

}  // namespace

std::optional<Date> Date::Parse(std::string_view text) {
  if (text.size() < kDateLength || text[4] != '-' || text[7] != '-') return std::nullopt;
  if (text.size() > kDateLength && text[kDateLength] != ' ' && text[kDateLength] != 'T') return std::nullopt;
  const Date date{Digits(text, 0, 4), Digits(text, 5, 2), Digits(text, 8, 2)};
  if (!date.Valid()) return std::nullopt;
  return date;
}

bool Date::Valid() const {
  if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) return false;
  return Calendar(*this).ok();
}

std::string Date::Iso() const {
  std::string text;
  Append(text, year, 4);
  text += '-';
  Append(text, month, 2);
  text += '-';
  Append(text, day, 2);
  return text;
}

std::string Date::DayFirst() const {
  std::string text;
  Append(text, day, 2);
  Append(text, month, 2);
  Append(text, year, 4);
  return text;
}

Date Date::PlusDays(int days) const {
  return FromCalendar(
      std::chrono::year_month_day{std::chrono::sys_days{Calendar(*this)} + std::chrono::days{days}});
}

Date Date::PlusMonths(int months) const {
  const std::chrono::year_month_day moved = Calendar(*this) + std::chrono::months{months};
  const std::chrono::year_month_day last{moved.year() / moved.month() / std::chrono::last};
  return FromCalendar(moved.ok() ? moved : last);
}

std::string Time::Text() const {
  std::string text;
  Append(text, hour, 2);
  text += ':';
  Append(text, minute, 2);
  text += ':';
  Append(text, second, 2);
  return text;
}

std::optional<DateTime> DateTime::Parse(std::string_view text) {
  const std::optional<Date> date = Date::Parse(text);
  if (!date || text.size() < kDateTimeLength || text[13] != ':' || text[16] != ':') return std::nullopt;
  if (text.size() > kDateTimeLength) {
    const std::string_view rest = text.substr(kDateTimeLength);
    const bool fraction =
        rest[0] == '.' && rest.size() > 1 &&
        std::all_of(rest.begin() + 1, rest.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!fraction) return std::nullopt;
  }
  const Time time{Digits(text, 11, 2), Digits(text, 14, 2), Digits(text, 17, 2)};
  if (time.hour < 0 || time.hour > 23 || time.minute < 0 || time.minute > 59 || time.second < 0 ||
      time.second > 59) {
    return std::nullopt;
  }
  return DateTime{*date, time};
}

std::string DateTime::Iso() const { return date.Iso() + ' ' + time.Text(); }

}  // namespace tarvik::data
