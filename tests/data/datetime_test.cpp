// Dates and times as plain values.
#include "data/datetime.h"

#include <gtest/gtest.h>

namespace tarvik::data {
namespace {

TEST(DateParse, TakesADateAndPassesOverATime) {
  const Date day{2024, 3, 5};
  EXPECT_EQ(Date::Parse("2024-03-05"), day);
  EXPECT_EQ(Date::Parse("2024-03-05 14:03:22"), day);
  EXPECT_EQ(Date::Parse("2024-03-05T14:03:22"), day);
}

TEST(DateParse, RefusesAnythingElse) {
  for (const char* text : {"", "hoy", "05/03/2024", "2024-3-5", "2024/03/05", "2024-03-055", "2024-03-05x",
                           " 2024-03-05", "2024-0a-05", "-024-03-05", "20240305"}) {
    EXPECT_EQ(Date::Parse(text), std::nullopt) << text;
  }
}

TEST(DateParse, RefusesDaysThatTheCalendarDoesNotHave) {
  EXPECT_TRUE(Date::Parse("2024-02-29"));
  for (const char* text :
       {"2023-02-29", "1900-02-29", "2024-04-31", "2024-13-01", "2024-00-01", "2024-01-00", "0000-01-01"}) {
    EXPECT_EQ(Date::Parse(text), std::nullopt) << text;
  }
  EXPECT_TRUE(Date::Parse("2000-02-29"));
}

TEST(DateTexts, FillUpWithZeros) {
  EXPECT_EQ((Date{2024, 3, 5}.Iso()), "2024-03-05");
  EXPECT_EQ((Date{2024, 3, 5}.DayFirst()), "05032024");
  EXPECT_EQ((Date{987, 12, 31}.Iso()), "0987-12-31");
  EXPECT_EQ((Time{4, 3, 2}.Text()), "04:03:02");
  EXPECT_EQ((Time{14, 3, 22}.Text()), "14:03:22");
  EXPECT_EQ((DateTime{{2024, 3, 5}, {0, 0, 0}}.Iso()), "2024-03-05 00:00:00");
}

TEST(DateMoves, ByDays) {
  EXPECT_EQ((Date{2024, 2, 28}.PlusDays(1)), (Date{2024, 2, 29}));
  EXPECT_EQ((Date{2023, 12, 31}.PlusDays(1)), (Date{2024, 1, 1}));
  EXPECT_EQ((Date{2024, 3, 1}.PlusDays(-1)), (Date{2024, 2, 29}));
  EXPECT_EQ((Date{2024, 3, 1}.PlusDays(366)), (Date{2025, 3, 2}));
}

TEST(DateMoves, ByMonthsToTheLastDayOfAShorterOne) {
  EXPECT_EQ((Date{2024, 1, 15}.PlusMonths(1)), (Date{2024, 2, 15}));
  EXPECT_EQ((Date{2024, 1, 31}.PlusMonths(1)), (Date{2024, 2, 29}));
  EXPECT_EQ((Date{2023, 12, 31}.PlusMonths(2)), (Date{2024, 2, 29}));
  EXPECT_EQ((Date{2024, 3, 31}.PlusMonths(-1)), (Date{2024, 2, 29}));
  EXPECT_EQ((Date{2024, 1, 31}.PlusMonths(-2)), (Date{2023, 11, 30}));
  EXPECT_EQ((Date{2024, 2, 29}.PlusMonths(12)), (Date{2025, 2, 28}));
}

TEST(DateOrder, IsTheCalendars) {
  EXPECT_LT((Date{2023, 12, 31}), (Date{2024, 1, 1}));
  EXPECT_LT((Date{2024, 1, 31}), (Date{2024, 2, 1}));
  EXPECT_LT((DateTime{{2024, 1, 1}, {9, 0, 0}}), (DateTime{{2024, 1, 1}, {10, 0, 0}}));
}

TEST(DateTimeParse, NeedsAWholeTime) {
  const DateTime when{{2024, 3, 5}, {14, 3, 22}};
  EXPECT_EQ(DateTime::Parse("2024-03-05 14:03:22"), when);
  EXPECT_EQ(DateTime::Parse("2024-03-05T14:03:22"), when);
  EXPECT_EQ(DateTime::Parse("2024-03-05 14:03:22.125"), when);
  for (const char* text :
       {"2024-03-05", "2024-03-05 14:03", "2024-03-05 24:00:00", "2024-03-05 14:60:00", "2024-03-05 14:03:60",
        "2024-03-05 14:03:22x", "2024-03-05 14:03:22.", "2024-03-05 aa:03:22", "2024-02-30 14:03:22"}) {
    EXPECT_EQ(DateTime::Parse(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace tarvik::data
