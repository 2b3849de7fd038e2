#include "files/parameter_file.h"

#include <gtest/gtest.h>

#include <string>

#include "support/prefixes.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

std::string Text(const ParameterItem& item) {
  return std::to_string(item.Class) + " " + std::to_string(item.ID) + " " +
         std::to_string(item.Value);
}

// "class ID value", or "! " and why not.
std::string Parse(std::string_view line) {
  const ParsedParameter parsed = ParseLine(line);
  EXPECT_EQ(parsed.Ok, parsed.reason.empty());
  return parsed.Ok ? Text(parsed.item) : "! " + parsed.reason;
}

// The items with "; " between them, " # " and the count; behind " ! " the first bad line.
std::string Read(std::string_view text) {
  const ParameterFile file = ReadParameterFile(text);
  std::string shown;
  for (const ParameterItem& item : file.items) shown += (shown.empty() ? "" : "; ") + Text(item);
  shown += " # " + std::to_string(file.count);
  if (file.failure) {
    shown += " ! " + std::to_string(file.failure->line) + ": " + file.failure->reason;
  }
  return shown;
}

TEST(ParseLine, TakesDecimalAndHexadecimalNumbers) {
  EXPECT_EQ(Parse("5 &H0123 &H2A"), "5 291 42");
  EXPECT_EQ(Parse("5 291 42"), "5 291 42");
  EXPECT_EQ(Parse("&H5 &h12f &Hab"), "5 303 171");
  EXPECT_EQ(Parse("0 0 0"), "0 0 0");
  EXPECT_EQ(Parse("7 &HFFFF &HFFFF"), "7 65535 65535");
  EXPECT_EQ(Parse("7 65535 65535"), "7 65535 65535");
  EXPECT_EQ(Parse("7 &H00008000 0008000"), "7 32768 8000");
}

TEST(ParseLine, DoesNotCountBlanksNorWhatStandsBehindTheValue) {
  EXPECT_EQ(Parse("  5   &H10   7  extra"), "5 16 7");
  EXPECT_EQ(Parse("5 &H10 7 "), "5 16 7");
  EXPECT_EQ(Parse("5 &H10 7 &H8 9 * and so on"), "5 16 7");
}

TEST(ParseLine, RefusesAClassAboveSeven) {
  EXPECT_EQ(Parse("8 &H10 &H1"), "! The class \"8\" is not 0 to 7.");
  EXPECT_EQ(Parse("&HFFFF 1 1"), "! The class \"&HFFFF\" is not 0 to 7.");
}

TEST(ParseLine, RefusesFewerThanThreeTokens) {
  EXPECT_EQ(Parse("5 &H10"), "! The value is missing.");
  EXPECT_EQ(Parse("5"), "! The ID is missing.");
  EXPECT_EQ(Parse("   "), "! The class is missing.");
  EXPECT_EQ(Parse(""), "! The class is missing.");
}

TEST(ParseLine, RefusesWhatIsNoNumber) {
  for (const std::string token : {"x", "1x", "&H", "&", "&HG", "&O17", "&B1", "-1", "+1", "1.5",
                                  "1E2", "0x10", "&H1&", "10H", "*"}) {
    EXPECT_EQ(Parse("5 1 " + token), "! The value \"" + token + "\" is no number.");
    EXPECT_EQ(Parse("5 " + token + " 1"), "! The ID \"" + token + "\" is no number.");
    EXPECT_EQ(Parse(token + " 1 1"), "! The class \"" + token + "\" is no number.");
  }
}

TEST(ParseLine, ATabIsNoBlank) {
  EXPECT_EQ(Parse("5\t&H10\t7"), "! The class \"5\t&H10\t7\" is no number.");
  EXPECT_EQ(Parse("5 &H10 7\t"), "! The value \"7\t\" is no number.");
}

// They would go out as another ID, or another value.
TEST(ParseLine, RefusesWhatDoesNotFitAMessage) {
  EXPECT_EQ(Parse("5 65536 1"), "! The ID \"65536\" is not 0 to 65535.");
  EXPECT_EQ(Parse("5 1 &H10000"), "! The value \"&H10000\" is not 0 to 65535.");
  EXPECT_EQ(Parse("5 1 99999999999999999999999999999"),
            "! The value \"99999999999999999999...\" is not 0 to 65535.");
}

TEST(ReadParameterFile, KeepsTheItemsInTheirOrder) {
  EXPECT_EQ(Read("5 1 2\r\n5 1 3\n7 &HF000 &HFF"), "5 1 2; 5 1 3; 7 61440 255 # 3");
  EXPECT_EQ(Read(""), " # 0");
}

TEST(ReadParameterFile, AsteriskAtTheBeginningIsAComment) {
  const ParameterFile file = ReadParameterFile("* one\r\n5 1 2\r\n*\r\n");
  EXPECT_EQ(file.comments, (std::vector<std::string>{"* one", "*"}));
  EXPECT_EQ(Read("* one\r\n*5 1 2\r\n"), " # 0");
  EXPECT_EQ(Read(" * one"), " # 1 ! 1: The class \"*\" is no number.");
}

TEST(ReadParameterFile, ABadLineEndsItAndLeavesNothing) {
  EXPECT_EQ(Read("5 1 2\r\n*\r\n8 1 1\r\n5 1 3\r\n"), " # 2 ! 3: The class \"8\" is not 0 to 7.");
  EXPECT_EQ(Read("5 1 2\r\n\r\n5 1 2"), " # 2 ! 2: The class is missing.");
}

TEST(ReadParameterFile, TakesAsManyAsTheWriterCounts) {
  std::string text;
  for (int i = 0; i < kMostParameters; ++i) text += "5 1 " + std::to_string(i) + "\r\n";
  const ParameterFile file = ReadParameterFile(text);
  EXPECT_EQ(file.count, kMostParameters);
  EXPECT_EQ(file.items.back().Value, kMostParameters - 1);
  const ParameterFile longer = ReadParameterFile(text + "5 1 1");
  ASSERT_TRUE(longer.failure);
  EXPECT_EQ(*longer.failure, (BadLine{32768, "The file holds more than 32767 parameters."}));
  EXPECT_TRUE(longer.items.empty());
}

TEST(ReadParameterFile, EveryPrefixOfTheSampleIsReadOrRefused) {
  const std::string sample = SampleText("boiler.par");
  EXPECT_EQ(Read(sample), "5 1389 15872; 5 1524 13312; 5 2311 14848; 7 62480 42; 7 62481 43 # 5");
  ForEveryPrefix(sample, [](std::string_view text) {
    const ParameterFile file = ReadParameterFile(text);
    EXPECT_EQ(static_cast<int>(file.items.size()), file.failure ? 0 : file.count);
  });
}

TEST(WriteParameterLines, HasTheFormThatTheReaderTakes) {
  EXPECT_EQ(ParameterLine(5, "0123", 42), "5 &H0123 &H2A\r\n");
  EXPECT_EQ(ParameterLine(7, "F010", 0), "7 &HF010 &H0\r\n");
  EXPECT_EQ(ParameterLine(5, "0001", -1), "5 &H0001 &HFFFF\r\n");
  EXPECT_EQ(ParameterLine(5, "0001", 65280), "5 &H0001 &HFF00\r\n");
}

TEST(WriteParameterLines, ACommentIsOneLine) {
  EXPECT_EQ(ParameterComment("Flow <- 60"), "* Flow <- 60\r\n");
  EXPECT_EQ(ParameterComment("Flow\r\n5 1 2"), "* Flow  5 1 2\r\n");
}

TEST(ParseLine, ShowsNoControlCharacterOfWhatIsNoNumber) {
  EXPECT_EQ(Parse(std::string("5 1 a\0\x1B\x7F", 8)), "! The value \"a   \" is no number.");
}

}  // namespace
}  // namespace tarnlink
