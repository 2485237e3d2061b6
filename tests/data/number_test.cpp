// Numbers read from text and written to text. Nothing here asks a base.
#include "data/number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

#include "data/value.h"

namespace tarvik::data {
namespace {

TEST(PlainNumber, HasAtMostFifteenDigits) {
  EXPECT_EQ(PlainNumber(0.1 * 3), "0.3");
  EXPECT_EQ(PlainNumber(0.1 + 0.2), "0.3");
  EXPECT_EQ(PlainNumber(1.0 / 3), "0.333333333333333");
  EXPECT_EQ(PlainNumber(2.0 / 3), "0.666666666666667");
  EXPECT_EQ(PlainNumber(123456789.123456789), "123456789.123457");
  EXPECT_EQ(PlainNumber(100.0 / 3), "33.3333333333333");
  EXPECT_EQ(PlainNumber(9.999999999999999), "10");
}

TEST(PlainNumber, HasNoTrailingZerosAndNoBareMark) {
  EXPECT_EQ(PlainNumber(-2.50), "-2.5");
  EXPECT_EQ(PlainNumber(12.0), "12");
  EXPECT_EQ(PlainNumber(1200.0), "1200");
  EXPECT_EQ(PlainNumber(10.01), "10.01");
  EXPECT_EQ(PlainNumber(1000000.5), "1000000.5");
}

TEST(PlainNumber, ZeroHasNoSign) {
  EXPECT_EQ(PlainNumber(0), "0");
  EXPECT_EQ(PlainNumber(-0.0), "0");
}

TEST(PlainNumber, SmallNumbersHaveNoExponent) {
  EXPECT_EQ(PlainNumber(0.00001), "0.00001");
  EXPECT_EQ(PlainNumber(-0.000000125), "-0.000000125");
  EXPECT_EQ(PlainNumber(1e-20), "0.00000000000000000001");
}

TEST(PlainNumber, ExponentBeginsAtFifteenDigitsBeforeTheMark) {
  EXPECT_EQ(PlainNumber(999999999999999.0), "999999999999999");
  EXPECT_EQ(PlainNumber(123456789012345.0), "123456789012345");
  EXPECT_EQ(PlainNumber(1e15), "1E+15");
  EXPECT_EQ(PlainNumber(-1e15), "-1E+15");
  EXPECT_EQ(PlainNumber(1.5e20), "1.5E+20");
  EXPECT_EQ(PlainNumber(1.7976931348623157e308), "1.79769313486232E+308");
  EXPECT_EQ(PlainNumber(999999999999999.9), "1E+15") << "rounding alone reaches the exponent";
  EXPECT_EQ(PlainNumber(1234567890123456.0), "1.23456789012346E+15");
}

TEST(PlainNumber, WhatIsNotFiniteIsNoNumberToAnyReader) {
  for (const double number :
       {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(), std::nan("")}) {
    EXPECT_EQ(ParseNumber(PlainNumber(number)), std::nullopt);
    EXPECT_EQ(FormatNumber(number, "0.00"), PlainNumber(number));
  }
  EXPECT_EQ(PlainNumber(-std::numeric_limits<double>::infinity()), "-INF");
}

TEST(PlainNumber, AgreesWithTheFifteenDigitFormOfTheLibrary) {
  std::mt19937_64 random(20240305);
  std::uniform_real_distribution<double> mantissa(-1, 1);
  std::uniform_int_distribution<int> power(-12, 20);
  for (int i = 0; i < 50000; ++i) {
    const double number = mantissa(random) * std::pow(10.0, power(random));
    char expected[64];
    std::snprintf(expected, sizeof expected, "%.14e", number);
    ASSERT_EQ(ParseNumber(PlainNumber(number)), std::strtod(expected, nullptr)) << expected;
    ASSERT_EQ(ParseNumber(FormatNumber(number, "0." + std::string(40, '#'))), std::strtod(expected, nullptr))
        << expected;
  }
}

TEST(PlainNumber, AmountsAndTheirNeighboursAgreeWithTheLibrary) {
  std::mt19937_64 random(20240306);
  std::uniform_int_distribution<int> length(1, 15);
  for (const double scale : {1.0, 10.0, 100.0, 1000.0, 10000.0, 100000.0}) {
    for (int i = 0; i < 5000; ++i) {
      const auto below = static_cast<long long>(std::pow(10.0, length(random)));
      const double amount =
          static_cast<double>(std::uniform_int_distribution<long long>(0, below - 1)(random)) / scale;
      for (const double number :
           {amount, -amount, std::nextafter(amount, 0), std::nextafter(amount, 1e300)}) {
        char expected[64];
        std::snprintf(expected, sizeof expected, "%.14e", number);
        ASSERT_EQ(ParseNumber(PlainNumber(number)), std::strtod(expected, nullptr)) << expected;
      }
    }
  }
}

TEST(PlainNumber, TheLastDigitFallsAsInTheLibrary) {
  EXPECT_EQ(PlainNumber(100000000000000.5), "100000000000000");
  EXPECT_EQ(PlainNumber(100000000000001.5), "100000000000002");
  EXPECT_EQ(PlainNumber(100000000000000.515625), "100000000000001");
  EXPECT_EQ(PlainNumber(0.000000009999999999999999), "0.00000001");
}

TEST(Val, ReadsTheLeadingNumber) {
  EXPECT_EQ(Val("12a"), 12);
  EXPECT_EQ(Val("12"), 12);
  EXPECT_EQ(Val("  12.5 kg"), 12.5);
  EXPECT_EQ(Val("-3x"), -3);
  EXPECT_EQ(Val("+7"), 7);
  EXPECT_EQ(Val(".5"), 0.5);
  EXPECT_EQ(Val("-.5"), -0.5);
  EXPECT_EQ(Val("5."), 5);
  EXPECT_EQ(Val("1.2.3"), 1.2);
  EXPECT_EQ(Val("1e3x"), 1000);
  EXPECT_EQ(Val("12e"), 12) << "an e without digits belongs to no number";
  EXPECT_EQ(Val("12e+"), 12);
  EXPECT_EQ(Val("1 2"), 1);
}

TEST(Val, StopsAtAThousandsSeparator) { EXPECT_EQ(Val("1,234"), 1); }

TEST(Val, IsZeroWhereThereIsNoNumber) {
  for (const char* text :
       {"", "   ", "a12", "-", "+", ".", "-.", "$5", ",5", "- 5", "e5", "inf", "nan", "\t5"}) {
    EXPECT_EQ(Val(text), 0) << text;
  }
}

TEST(Val, ANumberTooLargeForADoubleIsNone) {
  EXPECT_EQ(Val("1e999"), 0);
  EXPECT_EQ(Val(std::string(400, '9')), 0);
}

TEST(ParseNumber, TakesAWholeText) {
  EXPECT_EQ(ParseNumber("12"), 12);
  EXPECT_EQ(ParseNumber("  -12.25  "), -12.25);
  EXPECT_EQ(ParseNumber("+1"), 1);
  EXPECT_EQ(ParseNumber(".75"), 0.75);
  EXPECT_EQ(ParseNumber("3."), 3);
  EXPECT_EQ(ParseNumber("1E+15"), 1e15);
  EXPECT_EQ(ParseNumber("1.5e-3"), 0.0015);
  EXPECT_EQ(ParseNumber("0000012"), 12);
  EXPECT_EQ(ParseNumber("0.1"), 0.1);
  EXPECT_EQ(ParseNumber("123456789012345678"), 123456789012345678.0);
  EXPECT_EQ(ParseNumber("0.12345678901234567890"), 0.12345678901234567890);
}

TEST(ParseNumber, TakesThousandsSeparatorsBeforeTheMark) {
  EXPECT_EQ(ParseNumber("1,234.50"), 1234.5);
  EXPECT_EQ(ParseNumber("-1,234,567"), -1234567);
  EXPECT_EQ(ParseNumber("999,999,999,999,999,999"), 1e18);
}

TEST(ParseNumber, RefusesSeparatorsThatGroupNoThousands) {
  for (const char* text :
       {"1,2", "12,5", "1234,567", "1,2345", "1,,234", "1,234,", ",123", "1.234,5", "1.5,000"}) {
    EXPECT_EQ(ParseNumber(text), std::nullopt) << text;
  }
}

TEST(ParseNumber, RefusesAnythingElse) {
  for (const char* text : {"",      " ",   "12a", "a",    "-",   ".",   "1 2", "- 5", "5-",  "$5",
                           "1.2.3", "--5", "1e",  "0x10", "inf", "nan", "INF", "NAN", "5\n", "1e5.5"}) {
    EXPECT_EQ(ParseNumber(text), std::nullopt) << text;
  }
}

TEST(ParseNumber, TooLargeIsNoNumberAndTooSmallIsZero) {
  EXPECT_EQ(ParseNumber("1e999"), std::nullopt);
  EXPECT_EQ(ParseNumber("-1e999"), std::nullopt);
  EXPECT_EQ(ParseNumber("1e99999999999999999999"), std::nullopt);
  EXPECT_EQ(ParseNumber("1e-999"), 0);
  EXPECT_EQ(ParseNumber("1e-99999999999999999999"), 0);
  EXPECT_EQ(ParseNumber("0." + std::string(400, '0') + "1"), 0);
  EXPECT_EQ(ParseNumber("0." + std::string(400, '0') + "1e402"), 10);
}

TEST(ParseNumber, EveryPlainNumberReadsBack) {
  std::mt19937_64 random(7);
  std::uniform_int_distribution<long long> cents(-99999999999LL, 99999999999LL);
  for (int i = 0; i < 20000; ++i) {
    const double number = static_cast<double>(cents(random)) / 100;
    ASSERT_EQ(ParseNumber(PlainNumber(number)), number);
    ASSERT_EQ(ParseNumber(FormatNumber(number, "###,###,##0.00")), number);
  }
}

TEST(FormatNumber, AmountsOfTheSuite) {
  EXPECT_EQ(FormatNumber(1234567.125, "###,###,###0.##"), "1,234,567.13");
  EXPECT_EQ(FormatNumber(0, "###,###,###0.##"), "0");
  EXPECT_EQ(FormatNumber(1234.5, "###,###,###0.##"), "1,234.5");
  EXPECT_EQ(FormatNumber(1234.5, "####,####,###0.00"), "1,234.50");
  EXPECT_EQ(FormatNumber(0, "####,####,###0.00"), "0.00");
  EXPECT_EQ(FormatNumber(0, "###,###,##0.00"), "0.00");
  EXPECT_EQ(FormatNumber(11.6, "###,###,##0.00"), "11.60");
  EXPECT_EQ(FormatNumber(1234567890123.0, "###,###,##0.00"), "1,234,567,890,123.00");
  EXPECT_EQ(FormatNumber(2.12345, "###,###,##0.####"), "2.1235");
  EXPECT_EQ(FormatNumber(2, "###,###,##0.####"), "2");
}

TEST(FormatNumber, OptionalPlacesVanish) {
  EXPECT_EQ(FormatNumber(0, "######"), "");
  EXPECT_EQ(FormatNumber(42, "######"), "42");
  EXPECT_EQ(FormatNumber(12345678, "######"), "12345678") << "a number is never cut to the pattern's width";
  EXPECT_EQ(FormatNumber(5, "0.##"), "5");
  EXPECT_EQ(FormatNumber(5.1, "0.0#"), "5.1");
  EXPECT_EQ(FormatNumber(0.5, "#.##"), ".5");
  EXPECT_EQ(FormatNumber(0, "#.##"), "");
  EXPECT_EQ(FormatNumber(0.25, ".00"), ".25");
  EXPECT_EQ(FormatNumber(12.25, ".00"), "12.25");
}

TEST(FormatNumber, RequiredPlacesStand) {
  EXPECT_EQ(FormatNumber(7, "000"), "007");
  EXPECT_EQ(FormatNumber(7, "0##"), "007") << "behind the first 0 every place is required";
  EXPECT_EQ(FormatNumber(5, "0,000"), "0,005");
  EXPECT_EQ(FormatNumber(1, "0.#0"), "1.00");
}

TEST(FormatNumber, RoundsHalfAwayFromZeroOnTheDecimalValue) {
  EXPECT_EQ(FormatNumber(1.005, "0.00"), "1.01") << "the double lies below the half, the number does not";
  EXPECT_EQ(FormatNumber(-1.005, "0.00"), "-1.01");
  EXPECT_EQ(FormatNumber(2.5, "0"), "3");
  EXPECT_EQ(FormatNumber(0.5, "0"), "1");
  EXPECT_EQ(FormatNumber(0.49999999999999994, "0"), "1") << "0.5 to fifteen digits";
  EXPECT_EQ(FormatNumber(0.4999, "0"), "0");
  EXPECT_EQ(FormatNumber(0.05, "0"), "0");
  EXPECT_EQ(FormatNumber(999.995, "#,##0.00"), "1,000.00");
  EXPECT_EQ(FormatNumber(0.995, "0.00"), "1.00");
  EXPECT_EQ(FormatNumber(0.095, "0.00"), "0.10");
  EXPECT_EQ(FormatNumber(0.005, "0.00"), "0.01");
  EXPECT_EQ(FormatNumber(0.0049, "0.00"), "0.00");
}

TEST(FormatNumber, SignStandsInFrontUnlessItRoundsToZero) {
  EXPECT_EQ(FormatNumber(-1234.5, "#,##0.00"), "-1,234.50");
  EXPECT_EQ(FormatNumber(-0.004, "0.00"), "0.00");
  EXPECT_EQ(FormatNumber(-0.0, "0"), "0");
  EXPECT_EQ(FormatNumber(-5, "$ #,##0.00"), "-$ 5.00");
}

TEST(FormatNumber, OtherCharactersStand) {
  EXPECT_EQ(FormatNumber(1234.5, "$ #,##0.00"), "$ 1,234.50");
  EXPECT_EQ(FormatNumber(12, "0 pzs"), "12 pzs");
  EXPECT_EQ(FormatNumber(12, "0 €"), "12 €");
  EXPECT_EQ(FormatNumber(123456, "000-000"), "123-456");
  EXPECT_EQ(FormatNumber(12, "a,#,b"), "a,12,b") << "a comma outside the places is a character like any";
  EXPECT_EQ(FormatNumber(12, "sin"), "sin");
}

TEST(FormatNumber, ACommaAnywhereAmongThePlacesGroupsByThousands) {
  EXPECT_EQ(FormatNumber(1234567, "#,#"), "1,234,567");
  EXPECT_EQ(FormatNumber(1234567, "####,####"), "1,234,567");
  EXPECT_EQ(FormatNumber(1234567, "0"), "1234567");
  EXPECT_EQ(FormatNumber(123, "#,##0"), "123");
}

TEST(FormatNumber, LargeNumbersAreWrittenOut) {
  EXPECT_EQ(FormatNumber(1.5e20, "#,##0"), "150,000,000,000,000,000,000");
  EXPECT_EQ(FormatNumber(1e15, "0.00"), "1000000000000000.00");
}

TEST(FormatNumber, AnEmptyPatternGivesThePlainNumber) { EXPECT_EQ(FormatNumber(0.1 * 3, ""), "0.3"); }

TEST(ValueReadings, TextOfEachKind) {
  EXPECT_EQ(ToText(Value()), "");
  EXPECT_EQ(ToText(Value(12)), "12");
  EXPECT_EQ(ToText(Value(true)), "1");
  EXPECT_EQ(ToText(Value(-2.50)), "-2.5");
  EXPECT_EQ(ToText(Value("Año")), "Año");
  EXPECT_EQ(ToText(Value(Date{2024, 3, 5})), "2024-03-05");
  EXPECT_EQ(ToText(Value(DateTime{{2024, 3, 5}, {14, 3, 22}})), "2024-03-05 14:03:22");
}

TEST(ValueReadings, NumberOfEachKind) {
  EXPECT_EQ(ToNumber(Value()), 0);
  EXPECT_EQ(ToNumber(Value(12)), 12);
  EXPECT_EQ(ToNumber(Value(2.5)), 2.5);
  EXPECT_EQ(ToNumber(Value("1,234.50")), 1234.5);
  EXPECT_EQ(ToNumber(Value("12a")), 0);
  EXPECT_EQ(ToNumber(Value("")), 0);
  EXPECT_EQ(ToNumber(Value(Date{2024, 3, 5})), 0);
}

TEST(ValueReadings, DateOfEachKind) {
  const Date day{2024, 3, 5};
  EXPECT_EQ(ToDate(Value(day)), day);
  EXPECT_EQ(ToDate(Value(DateTime{day, {14, 3, 22}})), day);
  EXPECT_EQ(ToDate(Value("2024-03-05")), day);
  EXPECT_EQ(ToDate(Value("2024-03-05 14:03:22")), day);
  for (const Value& value : {Value(), Value("pronto"), Value(""), Value(20240305)}) {
    EXPECT_EQ(ToDate(value), std::nullopt);
  }
}

TEST(ValueReadings, FlagsAreNonZeroOrTrue) {
  EXPECT_FALSE(IsNonZero(Value()));
  EXPECT_FALSE(IsNonZero(Value(0)));
  EXPECT_FALSE(IsNonZero(Value("no")));
  EXPECT_TRUE(IsNonZero(Value(2)));
  EXPECT_TRUE(IsNonZero(Value(-1)));
  EXPECT_TRUE(IsNonZero(Value("1")));
  EXPECT_TRUE(IsTrue(Value(1)));
  EXPECT_TRUE(IsTrue(Value(1.0)));
  EXPECT_FALSE(IsTrue(Value(2))) << "2 is non-zero and not true";
  EXPECT_FALSE(IsTrue(Value(-1)));
  EXPECT_FALSE(IsTrue(Value()));
  EXPECT_FALSE(IsTrue(Value("1")));
}

}  // namespace
}  // namespace tarvik::data
