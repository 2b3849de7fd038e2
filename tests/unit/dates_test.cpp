#include "common/dates.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace tarnlink {
namespace {

std::string Show(const CivilTime& time) {
  return FormatDate(ToDate(time), "yyyy-mm-dd hh:nn:ss", EnglishMonthNames());
}

std::string Show(Date date, std::string_view pattern = "yyyy-mm-dd hh:nn:ss") {
  return FormatDate(date, pattern, EnglishMonthNames());
}

const CivilTime kMoment = {2024, 3, 5, 7, 8, 9};

TEST(Dates, CountDaysFromTheEndOf1899) {
  EXPECT_EQ(ToDate({1899, 12, 30, 0, 0, 0}), 0.0);
  EXPECT_EQ(ToDate({1899, 12, 31, 12, 0, 0}), 1.5);
  EXPECT_EQ(ToDate({1900, 1, 1, 0, 0, 0}), 2.0);
  EXPECT_EQ(ToDate({2000, 1, 1, 0, 0, 0}), 36526.0);
  EXPECT_EQ(ToDate({1899, 12, 29, 0, 0, 0}), -1.0);
}

TEST(Dates, KnowLeapYears) {
  EXPECT_EQ(Show(ToDate({2024, 2, 28, 0, 0, 0}) + 1), "2024-02-29 00:00:00");
  EXPECT_EQ(Show(ToDate({2023, 2, 28, 0, 0, 0}) + 1), "2023-03-01 00:00:00");
  EXPECT_EQ(Show(ToDate({1900, 2, 28, 0, 0, 0}) + 1), "1900-03-01 00:00:00");
  EXPECT_EQ(Show(ToDate({2000, 2, 28, 0, 0, 0}) + 1), "2000-02-29 00:00:00");
}

TEST(Dates, RollOverWhatIsPastTheEndOfItsPlace) {
  EXPECT_EQ(Show(CivilTime{2023, 12, 31, 23, 59, 60}), "2024-01-01 00:00:00");
  EXPECT_EQ(Show(CivilTime{2023, 13, 1, 0, 0, 0}), "2024-01-01 00:00:00");
  EXPECT_EQ(Show(CivilTime{2023, 2, 30, 0, 0, 0}), "2023-03-02 00:00:00");
}

TEST(Dates, LoseNoSecondOfADay) {
  const std::int64_t midnight = ToSeconds(ToDate({2024, 3, 5, 0, 0, 0}));
  for (int second = 0; second < 86400; ++second) {
    const Date date = FromSeconds(midnight + second);
    ASSERT_EQ(ToSeconds(date), midnight + second);
    const CivilTime time = ToCivil(date);
    ASSERT_EQ(time.hour * 3600 + time.minute * 60 + time.second, second);
    ASSERT_EQ(time.day, 5);
  }
}

TEST(Dates, AreRoundedToTheNearestSecond) {
  EXPECT_EQ(ToSeconds(0.4 / kSecondsPerDay), 0);
  EXPECT_EQ(ToSeconds(0.6 / kSecondsPerDay), 1);
  EXPECT_EQ(ToSeconds(-0.6 / kSecondsPerDay), -1);
  EXPECT_EQ(Show(1 - 0.4 / kSecondsPerDay), "1899-12-31 00:00:00");
}

TEST(Dates, BeforeDayZeroStillRunForward) {
  EXPECT_EQ(Show(-0.25), "1899-12-29 18:00:00");
  EXPECT_EQ(Show(-1.25), "1899-12-28 18:00:00");
}

TEST(Dates, StayInsideTheCalendarWhateverNumberAFileHolds) {
  EXPECT_EQ(Show(1e300), "9999-12-31 23:59:59");
  EXPECT_EQ(Show(-1e300), "0100-01-01 00:00:00");
  EXPECT_EQ(Show(INFINITY), "9999-12-31 23:59:59");
  EXPECT_EQ(Show(std::numeric_limits<double>::quiet_NaN()), "1899-12-30 00:00:00");
  EXPECT_EQ(Show(ToDate({9999, 12, 31, 23, 59, 59})), "9999-12-31 23:59:59");
  EXPECT_EQ(Show(ToDate({100, 1, 1, 0, 0, 0})), "0100-01-01 00:00:00");
}

TEST(FormatDate, KnowsEachPartOfAPattern) {
  const Date date = ToDate(kMoment);
  EXPECT_EQ(Show(date, "d"), "5");
  EXPECT_EQ(Show(date, "dd"), "05");
  EXPECT_EQ(Show(date, "mm"), "03");
  EXPECT_EQ(Show(date, "mmm"), "Mar");
  EXPECT_EQ(Show(date, "mmmm"), "March");
  EXPECT_EQ(Show(date, "yy"), "24");
  EXPECT_EQ(Show(date, "yyyy"), "2024");
  EXPECT_EQ(Show(date, "hh"), "07");
  EXPECT_EQ(Show(date, "nn"), "08");
  EXPECT_EQ(Show(date, "ss"), "09");
}

TEST(FormatDate, TakesMmBehindTheHourAsTheMinute) {
  const Date date = ToDate(kMoment);
  EXPECT_EQ(Show(date, "hh:mm dd-mmm-yyyy"), "07:08 05-Mar-2024");
  EXPECT_EQ(Show(date, "dd-mmm-yy hh:mm:ss"), "05-Mar-24 07:08:09");
  EXPECT_EQ(Show(date, "hh dd mm"), "07 05 03");
  EXPECT_EQ(Show(date, "hh:mm mm"), "07:08 03");
}

TEST(FormatDate, LetsEveryOtherCharacterStandForItself) {
  const Date date = ToDate(kMoment);
  EXPECT_EQ(Show(date, ""), "");
  EXPECT_EQ(Show(date, "at: \xC2\xB0 ddd yyy m"), "at: \xC2\xB0 ddd yyy m");
}

TEST(FormatDate, CutsMonthNamesToThreeCharactersNotBytes) {
  MonthNames names = EnglishMonthNames();
  names[2] = "M\xC3\xA4rz";
  names[4] = "\xD0\x9C\xD0\xB0\xD0\xB9";
  EXPECT_EQ(FormatDate(ToDate(kMoment), "dd-mmm", names), "05-M\xC3\xA4r");
  EXPECT_EQ(FormatDate(ToDate({2024, 5, 1, 0, 0, 0}), "mmm", names), names[4]);
  names[2] = "M";
  EXPECT_EQ(FormatDate(ToDate(kMoment), "mmm", names), "M");
}

TEST(FormatDate, TakesMoreLettersOfAMonthWhereAnotherBeginsAlike) {
  MonthNames names = EnglishMonthNames();
  names[5] = "juin";
  names[6] = "juillet";
  const auto show = [&](int month) {
    return FormatDate(ToDate({2024, month, 1, 0, 0, 0}), "d-mmm-yyyy", names);
  };
  EXPECT_EQ(show(6), "1-juin-2024");
  EXPECT_EQ(show(7), "1-juil-2024");
  names[5] =
      "\xC4\x8D"
      "erven";
  names[6] =
      "\xC4\x8D"
      "ervenec";
  EXPECT_EQ(show(6),
            "1-\xC4\x8D"
            "erven-2024");
  EXPECT_EQ(show(7),
            "1-\xC4\x8D"
            "ervene-2024");
  EXPECT_EQ(show(3), "1-Mar-2024");
}

}  // namespace
}  // namespace tarnlink
