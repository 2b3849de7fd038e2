#include "files/sniffer_file.h"

#include <gtest/gtest.h>

#include <string>

#include "common/text_file.h"
#include "support/prefixes.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

// "name,id,representation,type" for each record, with "; " between them; behind " ! " the first bad
// line and its reason.
std::string Read(std::string_view text) {
  const SnifferFile file = ReadSnifferFile(text);
  std::string shown;
  for (const SnifferRecord& record : file.records) {
    if (!shown.empty()) shown += "; ";
    shown += record.Name + "," + std::to_string(record.ID) + "," +
             std::to_string(record.Representation) + "," + std::to_string(record.Type);
  }
  if (file.failure)
    shown += " ! " + std::to_string(file.failure->line) + ": " + file.failure->reason;
  return shown;
}

std::string Lines(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "v" + std::to_string(i) + ",1A,0\r\n";
  return text;
}

TEST(ReadSnifferFile, ReadsNameIdRepresentationAndSize) {
  EXPECT_EQ(Read("Temperature,1A,0,H"), "Temperature,26,0,1");
  EXPECT_EQ(Read("Temperature,1a,1,L"), "Temperature,26,1,3");
  EXPECT_EQ(Read("Temperature,FFFF,2,W"), "Temperature,65535,2,5");
  EXPECT_EQ(Read("Temperature,0,3,HL"), "Temperature,0,3,5");
  EXPECT_EQ(Read("a,1,0\r\nb,2,1\nc,3,2,H\r\n"), "a,1,0,5; b,2,1,5; c,3,2,1");
}

TEST(ReadSnifferFile, TakesEverythingButTheTwoCapitalsAsAWord) {
  for (const std::string size : {"h", "l", "W", "", "0", "H H", "\tH", "\"H\"", "HL"}) {
    EXPECT_EQ(Read("Flow,10,1," + size), "Flow,16,1,5") << size;
  }
}

TEST(ReadSnifferFile, DoesNotCountBlanksAroundTheFields) {
  EXPECT_EQ(Read("Flow, 1A , 3 , H "), "Flow,26,3,1");
  EXPECT_EQ(Read("  Flow hot ,1A,0,L"), "  Flow hot ,26,0,3");
}

TEST(ReadSnifferFile, DoesNotLookBehindTheSize) {
  EXPECT_EQ(Read("Flow,1A,3,H,tenths"), "Flow,26,3,1");
  EXPECT_EQ(Read("Flow,1A,3, L ,,"), "Flow,26,3,3");
}

TEST(ReadSnifferFile, TakesTheRevisionFromALineWithAStar) {
  EXPECT_EQ(ReadSnifferFile("*R1, 2\r\na,1,0\r\n*R3").Revision, "R3");
  EXPECT_EQ(ReadSnifferFile("*R1, 2\r\na,1,0").Revision, "R1, 2");
  EXPECT_EQ(ReadSnifferFile("*").Revision, "");
  EXPECT_EQ(ReadSnifferFile("a,1,0").Revision, "Unknown revision");
  EXPECT_EQ(ReadSnifferFile("").Revision, "Unknown revision");
  EXPECT_EQ(Read("*R1\r\na,1,0\r\n*R2"), "a,1,0,5");
}

TEST(ReadSnifferFile, RefusesALineWithoutItsFields) {
  EXPECT_EQ(Read("Flow"), " ! 1: The ID is missing.");
  EXPECT_EQ(Read("Flow,10"), " ! 1: The representation is missing.");
  EXPECT_EQ(Read("Flow;10;0"), " ! 1: The ID is missing.");
}

TEST(ReadSnifferFile, PassesOverBlankLines) {
  EXPECT_EQ(Read("\r\n\nFlow,10,0\r\n  \t\r\nStatus,1,2\r\n\r\n"), "Flow,16,0,5; Status,1,2,5");
}

TEST(ReadSnifferFile, RefusesAnIdThatIsNoNumberOf31Bits) {
  for (const std::string id : {"", " ", "x", "1G", "&H1A", "0x1A", "-1", "1 A"}) {
    EXPECT_EQ(Read("a," + id + ",0"), " ! 1: The ID is no hexadecimal number.") << id;
  }
  EXPECT_EQ(Read("a,7FFFFFFF,0"), "a,2147483647,0,5");
  EXPECT_EQ(Read("a,80000000,0"), " ! 1: The ID is greater than 7FFFFFFF.");
}

TEST(ReadSnifferFile, ShowsARecordInHexadecimalWhoseRepresentationIsNoneOfTheFour) {
  EXPECT_EQ(Read("a,1,2.6"), "a,1,3,5");
  for (const std::string number : {"4", "-1", "255", "3.5"}) {
    EXPECT_EQ(Read("a,1," + number + ",H"), "a,1,1,1 ! 1: The representation is not 0 to 3.")
        << number;
  }
  EXPECT_EQ(Read("a,1,x"), "a,1,1,5 ! 1: The representation: \"x\" is no number.");
  EXPECT_EQ(Read("a,1,"), "a,1,1,5 ! 1: The representation: \"\" is no number.");
  EXPECT_EQ(Read("a,1,99999999999"),
            "a,1,1,5 ! 1: The representation: \"99999999999\" is not between -2147483648 and "
            "2147483647.");
}

TEST(ReadSnifferFile, LeavesABadLineOutAndTellsOfTheFirst) {
  EXPECT_EQ(Read("*R1\r\na,1,0\r\n\r\nb,2\r\nc,x,0\r\nd,4,0"),
            "a,1,0,5; d,4,0,5 ! 4: The representation is missing.");
  EXPECT_EQ(ReadSnifferFile("*R1\r\nbad\r\n*R2").Revision, "R2");
}

TEST(ReadSnifferFile, Takes300RecordsAndTellsOfOneMore) {
  const SnifferFile full = ReadSnifferFile("*R1\r\n" + Lines(300) + "*R2\r\n");
  EXPECT_EQ(full.records.size(), 300U);
  EXPECT_FALSE(full.failure);
  EXPECT_EQ(full.Revision, "R2");
  const SnifferFile more = ReadSnifferFile(Lines(301));
  EXPECT_EQ(more.records.size(), 300U);
  EXPECT_EQ(more.failure, (BadLine{301, "The file holds more than 300 records."}));
}

TEST(ReadSnifferFile, TakesAnEmptyFile) { EXPECT_EQ(Read(""), ""); }

TEST(ReadSnifferFile, FindsTheFirstRecordOfAnId) {
  const SnifferFile file = ReadSnifferFile("a,1,0\r\nb,F1,1\r\nc,F1,2");
  EXPECT_EQ(FindRecord(file, 0xF1)->Name, "b");
  EXPECT_EQ(FindRecord(file, 0xF2), nullptr);
  EXPECT_EQ(FindRecord({}, 0), nullptr);
}

TEST(ReadSnifferFile, ReadsTheSampleAndEveryPrefixOfIt) {
  const std::string sample = SampleText("default.snf");
  const SnifferFile whole = ReadSnifferFile(sample);
  ASSERT_FALSE(whole.failure) << whole.failure->line << ": " << whole.failure->reason;
  EXPECT_EQ(whole.records.size(), 61U);
  ForEveryPrefix(sample, [&](std::string_view prefix) {
    const SnifferFile read = ReadSnifferFile(prefix);
    ASSERT_LE(read.records.size(), whole.records.size());
    // The last line may be cut short and still be one.
    for (std::size_t i = 0; i + 1 < read.records.size(); ++i) {
      EXPECT_EQ(read.records[i], whole.records[i]);
    }
  });
}

TEST(ReadSnifferFile, EndsOnBytesThatAreNoText) {
  EXPECT_EQ(Read(std::string_view("a\0b,1A,0,H", 10)), std::string("a\0b,26,0,1", 10));
  EXPECT_EQ(Read(std::string(std::size_t{1} << 20, '\0')), " ! 1: The ID is missing.");
}

}  // namespace
}  // namespace tarnlink
