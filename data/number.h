// Numbers from text and numbers to text: the two readings that the suite knows (Val and ANumero),
// the plain text of a double, and format patterns. No locale is consulted: "." is always the
// decimal mark and "," groups thousands.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarvik::data {

// At most 15 significant digits, no exponent below 1e15, no trailing zeros, never "-0".
//   PlainNumber(0.1 * 3) == "0.3"   PlainNumber(1e15) == "1E+15"   PlainNumber(-2.50) == "-2.5"
std::string PlainNumber(double number);

// The leading number of a text: blanks in front are skipped, and it stops at the first
// character that cannot belong to a number. 0 if there is none.
//   Val("12a") == 12   Val("1,234") == 1   Val("") == 0
double Val(std::string_view text);

// A whole text as a number: blanks around, a sign, thousands separators before the decimal mark
// and an exponent are accepted. Nothing if the text is anything else, the empty text included.
//   ParseNumber("1,234.50") == 1234.5   ParseNumber("12a") == nullopt
std::optional<double> ParseNumber(std::string_view text);

// A number by a pattern: '#' is an optional digit, '0' a required one, ',' among the digits groups
// thousands, the first '.' is the decimal mark, any other character is copied. Rounds half
// away from zero on the 15-digit decimal value. Never leaves a bare decimal mark, never shows "-0".
//   FormatNumber(1234567.125, "###,###,###0.##") == "1,234,567.13"
//   FormatNumber(0, "###,###,###0.##") == "0"     FormatNumber(0, "######") == ""
// An empty pattern gives PlainNumber().
std::string FormatNumber(double number, std::string_view pattern);

}  // namespace tarvik::data
