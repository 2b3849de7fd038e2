// The report of a screen as text.

#include "files/screen_export.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnlink {
namespace {

std::string Report(const std::string& path, const std::string& header,
                   const std::vector<ExportRow>& rows) {
  return WriteScreenExport(path, "14:07 05-Mar-2024", header, rows);
}

TEST(ScreenExport, HasPathAndMomentTwoEmptyLinesAndALineForEachRow) {
  EXPECT_EQ(Report("/jobs/a.wcr", "", {{"Flow", "61"}, {"Return", "48"}}),
            "/jobs/a.wcr  14:07 05-Mar-2024\r\n\r\n\r\nFlow\t61\r\nReturn\t48\r\n");
}

TEST(ScreenExport, HasTheHeaderAndAnEmptyLineBeforeTheRows) {
  EXPECT_EQ(Report("/jobs/a.wcr", "Boiler 7", {{"Flow", "61"}}),
            "/jobs/a.wcr  14:07 05-Mar-2024\r\n\r\n\r\nBoiler 7\r\n\r\nFlow\t61\r\n");
}

TEST(ScreenExport, OfANewScreenBeginsWithTheTwoBlanks) {
  EXPECT_EQ(Report("", "", {}), "  14:07 05-Mar-2024\r\n\r\n\r\n");
}

TEST(ScreenExport, ALineWithoutAValueEndsWithTheTab) {
  EXPECT_EQ(Report("", "", {{"Flow", ""}, {"", "5"}, {"", ""}}),
            "  14:07 05-Mar-2024\r\n\r\n\r\nFlow\t\r\n\t5\r\n\t\r\n");
}

TEST(ScreenExport, LeavesEveryTextAsItIs) {
  EXPECT_EQ(Report("C:\\a,b.wcr", " He said \"x\", \r\ny\n ", {{" Wärme\t°C ", "\"-1,5\""}}),
            "C:\\a,b.wcr  14:07 05-Mar-2024\r\n\r\n\r\n He said \"x\", \r\ny\n \r\n\r\n"
            " Wärme\t°C \t\"-1,5\"\r\n");
}

TEST(ScreenExport, AHeaderOfBlanksIsAHeader) {
  EXPECT_EQ(Report("", " ", {}), "  14:07 05-Mar-2024\r\n\r\n\r\n \r\n\r\n");
}

TEST(ScreenExport, TellsTheMomentInHoursMinutesDayMonthAndYear) {
  struct Row {
    CivilTime time;
    std::string text;
  };
  for (const Row& row : {Row{{2024, 3, 5, 14, 7, 9}, "14:07 05-Mar-2024"},
                         Row{{2024, 12, 31, 23, 59, 59}, "23:59 31-Dec-2024"},
                         Row{{2025, 1, 1, 0, 0, 0}, "00:00 01-Jan-2025"},
                         Row{{1999, 11, 10, 11, 12, 13}, "11:12 10-Nov-1999"}}) {
    EXPECT_EQ(ExportMoment(ToDate(row.time), EnglishMonthNames()), row.text);
  }
}

TEST(ScreenExport, TakesThreeLettersOfTheGivenMonthNames) {
  MonthNames names = EnglishMonthNames();
  names[2] = "März";
  names[7] = "août";
  EXPECT_EQ(ExportMoment(ToDate({2024, 3, 5, 14, 7, 9}), names), "14:07 05-Mär-2024");
  EXPECT_EQ(ExportMoment(ToDate({2024, 8, 5, 14, 7, 9}), names), "14:07 05-aoû-2024");
}

}  // namespace
}  // namespace tarnlink
