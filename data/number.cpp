// Numbers from text and numbers to text. It knows no currency, no percent and no locale.
//
// All of this runs for every line of a document at every keystroke, so nothing here allocates
// beyond the text that is given back (a number of more than 15 digits apart).
#include "data/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace tarvik::data {
namespace {

constexpr int kSignificant = 15;
constexpr double kFirstWithExponent = 1e15;
constexpr double kSmallestOrdinary = 1e-8;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// --- Reading -----------------------------------------------------------------------------------

struct Scanned {
  const char* begin = nullptr;  // after the sign
  const char* end = nullptr;    // the first character that does not belong to the number
  bool negative = false;
  bool exponent = false;
  int digits = 0;
  int fraction_digits = 0;
  std::uint64_t mantissa = 0;  // of all digits, as long as they are no more than 15
};

// The longest number at the front of a text, without blanks. False if there is none.
bool Scan(std::string_view text, bool thousands, Scanned& number) {
  const char* at = text.data();
  const char* const end = at + text.size();
  if (at != end && (*at == '+' || *at == '-')) {
    number.negative = *at == '-';
    ++at;
  }
  number.begin = at;
  const auto take = [&number, &at] {
    if (++number.digits <= kSignificant) {
      number.mantissa = number.mantissa * 10 + static_cast<std::uint64_t>(*at - '0');
    }
    ++at;
  };
  int since_comma = 0;
  bool commas = false;
  for (; at != end;) {
    if (IsDigit(*at)) {
      take();
      ++since_comma;
    } else if (thousands && *at == ',' &&
               (commas ? since_comma == 3 : since_comma >= 1 && since_comma <= 3)) {
      commas = true;
      since_comma = 0;
      ++at;
    } else {
      break;
    }
  }
  if (commas && since_comma != 3) return false;
  if (at != end && *at == '.' && (number.digits > 0 || (at + 1 != end && IsDigit(at[1])))) {
    const int whole = number.digits;
    for (++at; at != end && IsDigit(*at);) take();
    number.fraction_digits = number.digits - whole;
  }
  if (number.digits == 0) return false;
  if (at != end && (*at == 'e' || *at == 'E')) {
    const char* digits = at + 1;
    if (digits != end && (*digits == '+' || *digits == '-')) ++digits;
    if (digits != end && IsDigit(*digits)) {
      number.exponent = true;
      for (at = digits; at != end && IsDigit(*at);) ++at;
    }
  }
  number.end = at;
  return true;
}

// Of a number that does not fit a double: true if it is too small (and so is 0), false if it is too large.
bool TooSmall(std::string_view text) {
  long power = 0;  // of the first digit other than 0
  bool found = false;
  bool behind_mark = false;
  std::size_t at = 0;
  for (; at < text.size() && text[at] != 'e' && text[at] != 'E'; ++at) {
    if (text[at] == '.') {
      behind_mark = true;
    } else if (found) {
      power += behind_mark ? 0 : 1;
    } else if (text[at] != '0') {
      found = true;
    } else if (behind_mark) {
      --power;
    }
  }
  long exponent = 0;
  bool negative = false;
  for (++at; at < text.size(); ++at) {
    if (IsDigit(text[at])) {
      if (exponent < 1'000'000'000) exponent = exponent * 10 + (text[at] - '0');
    } else {
      negative = text[at] == '-';
    }
  }
  return power + (negative ? -exponent : exponent) < 0;
}

std::optional<double> ReadLong(const Scanned& number) {
  std::string text;
  text.reserve(static_cast<std::size_t>(number.end - number.begin));
  for (const char* at = number.begin; at != number.end; ++at) {
    if (*at != ',') text += *at;
  }
  double value = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    if (!TooSmall(text)) return std::nullopt;
    value = 0;
  } else if (error != std::errc{} || rest != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return number.negative ? -value : value;
}

// Every one of these is an exact double.
constexpr std::array<double, 23> kPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                            1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                            1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

std::optional<double> Read(const Scanned& number) {
  // Up to 15 digits both parts are exact doubles, and one division rounds exactly once.
  if (!number.exponent && number.digits <= kSignificant) {
    const double value =
        static_cast<double>(number.mantissa) / kPowers[static_cast<std::size_t>(number.fraction_digits)];
    return number.negative ? -value : value;
  }
  return ReadLong(number);
}

std::string_view WithoutBlanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// --- Writing -----------------------------------------------------------------------------------

// A number as its 15 significant digits: d0.d1d2... times ten to the exponent. No digit is 0.
struct Decimal {
  std::array<char, 40> digits;
  int count = 0;
  int exponent = 0;
  bool negative = false;

  // The digit that stands for ten to the power; '0' outside the held ones.
  [[nodiscard]] char At(int power) const {
    const int index = exponent - power;
    return index >= 0 && index < count ? digits[static_cast<std::size_t>(index)] : '0';
  }
  void DropZeros() {
    while (count > 0 && digits[static_cast<std::size_t>(count - 1)] == '0') --count;
    if (count == 0) {
      exponent = 0;
      negative = false;
    }
  }
};

// The digits of a size between 1e-8 and 1e15, for which the scale is an exact double.
void DecomposeOrdinary(double size, Decimal& decimal) {
  int exponent = kSignificant - 1;
  while (exponent > 0 && size < kPowers[static_cast<std::size_t>(exponent)]) --exponent;
  if (size < 1) {
    for (exponent = -1; size * kPowers[static_cast<std::size_t>(-exponent)] < 1;) --exponent;
  }
  // Product and error together are the exact product, so the rounding is exact too, and falls as
  // that of the library does: to the even digit in the middle.
  const double scale = kPowers[static_cast<std::size_t>(kSignificant - 1 - exponent)];
  const double product = size * scale;
  const double error = std::fma(size, scale, -product);
  const double below = std::floor(product);
  const double rest = product - below;
  auto digits = static_cast<std::uint64_t>(below);
  const bool middle_up = error > 0 || (error == 0 && digits % 2 == 1);
  if (rest > 0.5 || (rest == 0.5 && middle_up)) ++digits;
  const auto written =
      std::to_chars(decimal.digits.data(), decimal.digits.data() + decimal.digits.size(), digits);
  decimal.count = static_cast<int>(written.ptr - decimal.digits.data());
  decimal.exponent = exponent + decimal.count - kSignificant;
}

// The digits of a size that stands for a decimal of few places, as amounts and quantities do. A decimal of
// at most 15 digits is the 15-digit text of the double nearest to it, so nothing has to be rounded. False
// if the size stands for none.
bool DecomposeShort(double size, Decimal& decimal) {
  for (const int places : {0, 2, 4}) {
    const double scale = kPowers[static_cast<std::size_t>(places)];
    const double scaled = size * scale + 0.5;
    if (scaled >= kFirstWithExponent) return false;
    const auto digits = static_cast<std::uint64_t>(scaled);
    if (static_cast<double>(digits) / scale != size) continue;
    const auto written =
        std::to_chars(decimal.digits.data(), decimal.digits.data() + decimal.digits.size(), digits);
    decimal.count = static_cast<int>(written.ptr - decimal.digits.data());
    decimal.exponent = decimal.count - 1 - places;
    return true;
  }
  return false;
}

// The digits of any other size: very small, or shown with an exponent.
void DecomposeExtreme(double size, Decimal& decimal) {
  std::array<char, 40> text;
  const char* const end = std::to_chars(text.data(), text.data() + text.size(), size,
                                        std::chars_format::scientific, kSignificant - 1)
                              .ptr;
  const char* at = text.data();
  for (decimal.count = 0; at != end && *at != 'e'; ++at) {
    if (*at != '.') decimal.digits[static_cast<std::size_t>(decimal.count++)] = *at;
  }
  ++at;
  if (at != end && *at == '+') ++at;
  std::from_chars(at, end, decimal.exponent);
}

Decimal Decompose(double number) {
  Decimal decimal;
  const double size = std::fabs(number);
  if (size == 0) return decimal;
  decimal.negative = number < 0;
  if (size >= kSmallestOrdinary && size < kFirstWithExponent) {
    if (!DecomposeShort(size, decimal)) DecomposeOrdinary(size, decimal);
  } else {
    DecomposeExtreme(size, decimal);
  }
  decimal.DropZeros();
  return decimal;
}

// Rounds half away from zero to this many places after the decimal mark.
void Round(Decimal& decimal, int places) {
  const int kept = decimal.exponent + 1 + places;
  if (kept >= decimal.count) return;
  if (kept < 0) {
    decimal.count = 0;
  } else {
    const bool up = decimal.digits[static_cast<std::size_t>(kept)] >= '5';
    decimal.count = kept;
    if (up) {
      int at = kept - 1;
      while (at >= 0 && decimal.digits[static_cast<std::size_t>(at)] == '9') --at;
      if (at < 0) {
        decimal.digits[0] = '1';
        decimal.count = 1;
        ++decimal.exponent;
      } else {
        ++decimal.digits[static_cast<std::size_t>(at)];
        decimal.count = at + 1;
      }
    }
  }
  decimal.DropZeros();
}

// No operation of a document yields one of these; the text is no number to any reader.
std::string NotFinite(double number) {
  if (std::isnan(number)) return "NAN";
  return number < 0 ? "-INF" : "INF";
}

// What a pattern asks for, read once from left to right.
struct Pattern {
  std::size_t mark = std::string_view::npos;
  std::size_t first_place = std::string_view::npos;
  std::size_t last_place = 0;
  int whole_places = 0;
  int whole_required = 0;
  int places = 0;
  int places_required = 0;
  bool thousands = false;

  explicit Pattern(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '.' && mark == std::string_view::npos) mark = i;
      if (text[i] != '#' && text[i] != '0') continue;
      if (first_place == std::string_view::npos) first_place = i;
      last_place = i;
      if (mark == std::string_view::npos) {
        ++whole_places;
        // After the first '0' every place up to the mark is required.
        if (text[i] == '0' || whole_required > 0) ++whole_required;
      } else {
        ++places;
        if (text[i] == '0') places_required = places;
      }
    }
    if (first_place == std::string_view::npos) return;
    thousands = text.substr(first_place, last_place - first_place).find(',') != std::string_view::npos;
  }

  [[nodiscard]] bool Among(std::size_t position) const {
    return first_place != std::string_view::npos && position > first_place && position < last_place;
  }
};

}  // namespace

std::string PlainNumber(double number) {
  if (!std::isfinite(number)) return NotFinite(number);
  const Decimal decimal = Decompose(number);
  if (decimal.count == 0) return "0";
  std::array<char, 400> text;  // a sign, "0.", 308 zeros and 15 digits fit
  char* at = text.data();
  if (decimal.negative) *at++ = '-';
  if (decimal.exponent >= kSignificant) {
    *at++ = decimal.digits[0];
    if (decimal.count > 1) *at++ = '.';
    at = std::copy(decimal.digits.data() + 1, decimal.digits.data() + decimal.count, at);
    *at++ = 'E';
    *at++ = '+';
    at = std::to_chars(at, text.data() + text.size(), decimal.exponent).ptr;
    return {text.data(), at};
  }
  const int last = decimal.exponent - decimal.count + 1;  // power of the last digit
  for (int power = std::max(decimal.exponent, 0); power >= 0; --power) *at++ = decimal.At(power);
  if (last < 0) {
    *at++ = '.';
    for (int power = -1; power >= last; --power) *at++ = decimal.At(power);
  }
  return {text.data(), at};
}

double Val(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  Scanned number;
  if (!Scan(text, false, number)) return 0;
  return Read(number).value_or(0);
}

std::optional<double> ParseNumber(std::string_view text) {
  text = WithoutBlanks(text);
  Scanned number;
  if (!Scan(text, true, number) || number.end != text.data() + text.size()) return std::nullopt;
  return Read(number);
}

std::string FormatNumber(double number, std::string_view pattern) {
  if (pattern.empty() || !std::isfinite(number)) return PlainNumber(number);
  const Pattern form(pattern);
  if (form.first_place == std::string_view::npos) return std::string(pattern);
  Decimal decimal = Decompose(number);
  Round(decimal, form.places);

  const int whole_digits = decimal.count > 0 && decimal.exponent >= 0 ? decimal.exponent + 1 : 0;
  const int decimals = decimal.count > 0 ? std::max(0, decimal.count - 1 - decimal.exponent) : 0;
  const int shown_decimals = std::max(decimals, form.places_required);
  // Room for the longest result: the pattern, what its places don't hold, separators and a sign.
  const std::size_t whole_room = pattern.size() + static_cast<std::size_t>(whole_digits);
  std::string text(whole_room + whole_room / 3 + 2, '\0');
  char* at = text.data();
  const auto whole = [&](int power) {  // one place before the mark, with the separator that follows it
    if (power >= whole_digits && power >= form.whole_required) return;
    *at++ = decimal.At(power);
    if (form.thousands && power > 0 && power % 3 == 0) *at++ = ',';
  };

  if (decimal.negative) *at++ = '-';
  int power = form.whole_places - 1;
  int decimal_place = 0;
  bool first = true;
  // Digits beyond the pattern's places go before the first of them; with no place before the
  // mark they go before the mark.
  const auto whole_front = [&] {
    if (first) {
      for (int beyond = whole_digits - 1; beyond > power; --beyond) whole(beyond);
    }
    first = false;
  };
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char c = pattern[i];
    if (i == form.mark) {
      whole_front();
      if (shown_decimals > 0) *at++ = '.';
    } else if (c == '#' || c == '0') {
      if (i < form.mark) {
        whole_front();
        whole(power--);
      } else if (++decimal_place <= shown_decimals) {
        *at++ = decimal.At(-decimal_place);
      }
    } else if (c != ',' || !form.Among(i)) {
      *at++ = c;
    }
  }
  text.resize(static_cast<std::size_t>(at - text.data()));
  return text;
}

}  // namespace tarvik::data
