#include "files/config_file.h"

#include <gtest/gtest.h>

#include <string>

#include "support/prefixes.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

// "id min max default description type" for each item, with "; " between them; behind " ! " the
// first bad line and its reason.
std::string Read(std::string_view text) {
  const ConfigFile file = ReadConfigFile(text);
  std::string shown;
  for (const ConfigItem& item : file.items) {
    if (!shown.empty()) shown += "; ";
    shown += std::to_string(item.ID) + " " + std::to_string(item.Minimum) + " " +
             std::to_string(item.Maximum) + " " + item.DefaultText + " " + item.Description + " " +
             std::to_string(item.TestType);
  }
  if (file.failure)
    shown += " ! " + std::to_string(file.failure->line) + ": " + file.failure->reason;
  return shown;
}

std::string Lines(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "1A\t1\t2\t-\tv" + std::to_string(i) + "\t0\r\n";
  return text;
}

TEST(ReadConfigFile, ReadsTheSixFields) {
  EXPECT_EQ(Read("056D\t30\t85\t60\tCH setpoint\t1"), "1389 30 85 60 CH setpoint 1");
  EXPECT_EQ(Read("1\t2\t3\t4\ta\t5\r\n2\t3\t4\t5\tb\t6\n3\t0\t255\t-\tc\t255\r\n"),
            "1 2 3 4 a 5; 2 3 4 5 b 6; 3 0 255 - c 255");
  const ConfigItem item = ReadConfigFile("056Dh\t30\t85\t060\tCH\t1").items.at(0);
  EXPECT_EQ(item.DefaultValue, 60);
  EXPECT_EQ(item.DefaultText, "060");
  EXPECT_EQ(item.Result, "\t\t");
  EXPECT_FALSE(item.ReadValue);
}

TEST(ReadConfigFile, ReadsAnIdWithAndWithoutItsLetterAndNeverBelowZero) {
  for (const std::string id : {"FFFF", "FFFFh", "ffffH", " FFFFh ", "0000FFFFh"}) {
    EXPECT_EQ(Read(id + "\t1\t2\t3\ta\t0"), "65535 1 2 3 a 0") << id;
  }
  EXPECT_EQ(Read("8000\t1\t2\t3\ta\t0"), "32768 1 2 3 a 0");
  EXPECT_EQ(Read("0\t1\t2\t3\ta\t0"), "0 1 2 3 a 0");
}

TEST(ReadConfigFile, SkipsCommentsAndBlankLines) {
  EXPECT_EQ(Read("* one\r\n\r\n \t \r\n1\t2\t3\r\n*1\t2\t3\r\n"), "1 2 3 -  0");
  EXPECT_EQ(Read(""), "");
  EXPECT_EQ(Read("* only\n*comments"), "");
}

TEST(ReadConfigFile, TakesWhatIsMissingBehindTheMaximumAsNothing) {
  EXPECT_EQ(Read("1\t2\t3"), "1 2 3 -  0");
  EXPECT_EQ(Read("1\t2\t3\t"), "1 2 3 -  0");
  EXPECT_EQ(Read("1\t2\t3\t4"), "1 2 3 4  0");
  EXPECT_EQ(Read("1\t2\t3\t4\tname"), "1 2 3 4 name 0");
  EXPECT_EQ(Read("1\t2\t3\t-\t\t7\tmore\tfields"), "1 2 3 -  7");
}

TEST(ReadConfigFile, KnowsWhichItemsHaveADefault) {
  EXPECT_TRUE(ReadConfigFile("1\t2\t3\t0").items.at(0).HasDefault());
  EXPECT_FALSE(ReadConfigFile("1\t2\t3\t-").items.at(0).HasDefault());
  EXPECT_FALSE(ReadConfigFile("1\t2\t3\t - ").items.at(0).HasDefault());
  EXPECT_FALSE(ReadConfigFile("1\t2\t3").items.at(0).HasDefault());
}

TEST(ReadConfigFile, DoesNotCountBlanksAroundTheFields) {
  EXPECT_EQ(Read(" 1 \t 2 \t 3 \t 4 \t a b \t 5 "), "1 2 3 4 a b 5");
}

TEST(ReadConfigFile, LeavesOutWhatCouldGoToAnotherId) {
  EXPECT_EQ(Read("10000\t1\t2\t3"), " ! 1: The ID is greater than FFFF.");
  EXPECT_EQ(Read("xyz\t1\t2\t3"), " ! 1: The ID is no hexadecimal number.");
  EXPECT_EQ(Read("h\t1\t2\t3"), " ! 1: The ID is no hexadecimal number.");
  EXPECT_EQ(Read("1Ahh\t1\t2\t3"), " ! 1: The ID is no hexadecimal number.");
  EXPECT_EQ(Read("-1\t1\t2\t3"), " ! 1: The ID is no hexadecimal number.");
  EXPECT_EQ(Read("\t1\t2\t3"), " ! 1: The ID is no hexadecimal number.");
  EXPECT_EQ(Read("1 2\t1\t2\t3"), " ! 1: The ID is no hexadecimal number.");
}

TEST(ReadConfigFile, LeavesOutALineWhoseLimitsAreNone) {
  EXPECT_EQ(Read("1"), " ! 1: The minimum is missing.");
  EXPECT_EQ(Read("1\t2"), " ! 1: The maximum is missing.");
  EXPECT_EQ(Read("1\t\t3"), " ! 1: The minimum is missing.");
  EXPECT_EQ(Read("1\t256\t3"), " ! 1: The minimum is not between 0 and 255.");
  EXPECT_EQ(Read("1\t2\t99999999999"), " ! 1: The maximum is not between 0 and 255.");
  EXPECT_EQ(Read("1\t-1\t3"), " ! 1: The minimum is no whole number.");
  EXPECT_EQ(Read("1\t2\t3.5"), " ! 1: The maximum is no whole number.");
  EXPECT_EQ(Read("1\t2\t1E1"), " ! 1: The maximum is no whole number.");
  EXPECT_EQ(Read("1\t2\t3\tx"), " ! 1: The default is no whole number.");
  EXPECT_EQ(Read("1\t2\t3\t--"), " ! 1: The default is no whole number.");
  EXPECT_EQ(Read("1\t2\t3\t300"), " ! 1: The default is not between 0 and 255.");
}

TEST(ReadConfigFile, LeavesOutALineWhoseMinimumIsTheGreaterLimit) {
  EXPECT_EQ(Read("1\t86\t85\t60"), " ! 1: The minimum is greater than the maximum.");
  EXPECT_EQ(Read("1\t85\t85\t60"), "1 85 85 60  0");
  EXPECT_EQ(Read("1\t255\t0"), " ! 1: The minimum is greater than the maximum.");
}

TEST(ReadConfigFile, CountsTheLinesThatItLeavesOut) {
  EXPECT_EQ(ReadConfigFile("*\n\n1\t2\t3\n").left_out, 0);
  EXPECT_EQ(ReadConfigFile("x\n1\t2\t3\n1\t2\n1\t3\t2\n").left_out, 3);
  EXPECT_EQ(ReadConfigFile("1\t2\t3\t4\ta\tB\n").left_out, 0);
  EXPECT_EQ(ReadConfigFile(Lines(304) + "* comment\r\n").left_out, 3);
}

TEST(ReadConfigFile, KeepsAnItemWhoseTestTypeIsBad) {
  EXPECT_EQ(Read("1\t2\t3\t4\ta\tB"), "1 2 3 4 a 0 ! 1: The test type is no whole number.");
}

TEST(ReadConfigFile, GoesOnBehindABadLineAndTellsOfTheFirst) {
  EXPECT_EQ(Read("*\n1\t2\t3\n2\t3\n3\t4\t5\nx\n"),
            "1 2 3 -  0; 3 4 5 -  0 ! 3: The maximum is missing.");
}

TEST(ReadConfigFile, HoldsThreeHundredAndOneItems) {
  EXPECT_EQ(ReadConfigFile(Lines(301)).items.size(), 301U);
  EXPECT_FALSE(ReadConfigFile(Lines(301) + "* comment\r\n").failure);
  const ConfigFile file = ReadConfigFile("* comment\r\n" + Lines(303));
  EXPECT_EQ(file.items.size(), 301U);
  EXPECT_EQ(file.items.back().Description, "v300");
  ASSERT_TRUE(file.too_many);
  EXPECT_EQ(file.too_many->line, 303);
  EXPECT_EQ(file.too_many->reason, "The file holds more than 301 IDs.");
  EXPECT_FALSE(file.failure);
  const ConfigFile both = ReadConfigFile("nonsense\r\n" + Lines(302));
  EXPECT_EQ(both.failure->line, 1);
  EXPECT_EQ(both.too_many->line, 303);
}

TEST(ReadConfigFile, ReadsTheSampleAndEveryPrefixOfIt) {
  const std::string sample = SampleText("boiler.cfg");
  const ConfigFile whole = ReadConfigFile(sample);
  EXPECT_FALSE(whole.failure);
  EXPECT_EQ(whole.items.size(), 9U);
  ForEveryPrefix(sample, [&](std::string_view prefix) {
    EXPECT_LE(ReadConfigFile(prefix).items.size(), whole.items.size());
  });
}

TEST(ReadConfigFile, SurvivesNonsense) {
  EXPECT_EQ(Read(std::string(std::size_t{1} << 20, '\0')),
            " ! 1: The ID is no hexadecimal number.");
  EXPECT_EQ(Read(std::string(std::size_t{1} << 20, '9')), " ! 1: The ID is greater than 7FFFFFFF.");
}

}  // namespace
}  // namespace tarnlink
