#include "files/id_file.h"

#include <gtest/gtest.h>

#include <string>

#include "common/text_file.h"
#include "support/prefixes.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

// "name,id,class,select" for each item, with "; " between them, or "line: reason".
std::string Read(std::string_view text) {
  const IdFile file = ReadIdFile(text);
  if (file.failure) {
    EXPECT_TRUE(file.items.empty());
    return std::to_string(file.failure->line) + ": " + file.failure->reason;
  }
  std::string shown;
  for (const IDItem& item : file.items) {
    if (!shown.empty()) shown += "; ";
    shown += item.Name + "," + std::to_string(item.ID) + "," + std::to_string(item.Class) + "," +
             std::to_string(item.ByteSelect);
  }
  return shown;
}

// Lines that each name one ID.
std::string Lines(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "v" + std::to_string(i) + ",1A,3\r\n";
  return text;
}

constexpr const char* kNoHexadecimal = "1: The ID is no hexadecimal number.";
constexpr const char* kTooGreat = "1: The ID is greater than 7FFFFFFF.";
constexpr const char* kNoIds = "0: The file holds no IDs.";

TEST(ReadIdFile, ReadsAnIdWithItsClassAndByte) {
  EXPECT_EQ(Read("Temperature,1A,3,H"), "Temperature,26,3,0");
  EXPECT_EQ(Read("Temperature,1A,3,L"), "Temperature,26,3,1");
  EXPECT_EQ(Read("Temperature,1A,3,HL"), "Temperature,26,3,2");
}

TEST(ReadIdFile, ReadsAnIdWithoutAClass) {
  EXPECT_EQ(Read("-Status,2F,L"), "Status,47,0,1");
  EXPECT_EQ(Read("-Status,2F,H"), "Status,47,0,0");
  EXPECT_EQ(Read("--Status,2F,H"), "-Status,47,0,0");
}

TEST(ReadIdFile, TakesAMissingByteAsBoth) {
  EXPECT_EQ(Read("Flow,10,2"), "Flow,16,2,2");
  EXPECT_EQ(Read("Flow,10,2,"), "Flow,16,2,2");
  EXPECT_EQ(Read("-Flow,10"), "Flow,16,0,2");
  EXPECT_EQ(Read("-Flow,10,"), "Flow,16,0,2");
}

TEST(ReadIdFile, TakesEverythingButTheTwoCapitalsAsBothBytes) {
  for (const std::string select :
       {"h", "l", "X", "0", "1", "HL", "H,x", "L,", "\tH", "H H", "\"H\""}) {
    EXPECT_EQ(Read("Flow,10,2," + select), "Flow,16,2,2") << select;
    EXPECT_EQ(Read("-Flow,10," + select), "Flow,16,0,2") << select;
  }
}

TEST(ReadIdFile, TakesTheClassOfALineWithoutAClassAsAPartOfTheByte) {
  EXPECT_EQ(Read("-Status,2F,3,L"), "Status,47,0,2");
}

TEST(ReadIdFile, DoesNotCountBlanksAroundIdClassAndByte) {
  EXPECT_EQ(Read("Flow, 1A , 3 , H "), "Flow,26,3,0");
  EXPECT_EQ(Read("-Flow, 1A , L"), "Flow,26,0,1");
}

TEST(ReadIdFile, KeepsANameAsItStands) {
  EXPECT_EQ(Read("  Flow  hot\t,1A,3,H"), "  Flow  hot\t,26,3,0");
  EXPECT_EQ(Read("\"Flow\",1A,3,H"), "\"Flow\",26,3,0");
  EXPECT_EQ(Read(" -Flow,1A,3,H"), " -Flow,26,3,0");
  EXPECT_EQ(Read(" *Flow,1A,3,H"), " *Flow,26,3,0");
  EXPECT_EQ(Read(",1A,3,H"), ",26,3,0");
  EXPECT_EQ(Read("-,1A,H"), ",26,0,0");
}

TEST(ReadIdFile, ReadsAnIdAsANumberThatIsNotNegative) {
  EXPECT_EQ(Read("a,0,1"), "a,0,1,2");
  EXPECT_EQ(Read("a,8000,1"), "a,32768,1,2");
  EXPECT_EQ(Read("a,FFFF,1"), "a,65535,1,2");
  EXPECT_EQ(Read("a,ffff,1"), "a,65535,1,2");
  EXPECT_EQ(Read("a,10000,1"), "a,65536,1,2");
  EXPECT_EQ(Read("a,7FFFFFFF,1"), "a,2147483647,1,2");
  EXPECT_EQ(Read("a,000000001A,1"), "a,26,1,2");
}

TEST(ReadIdFile, RefusesAnIdThatIsNoHexadecimalNumber) {
  for (const std::string id : {"", " ", "x", "1G", "G1", "1A&", "&H1A", "0x1A", "1Ah", "-1A", "+1A",
                               "1 A", "1.5", "\"1A\"", "\t1A", "FFFFFFFFFFFFFFFFFFFFG"}) {
    EXPECT_EQ(Read("a," + id + ",1,H"), kNoHexadecimal) << id;
    EXPECT_EQ(Read("-a," + id + ",H"), kNoHexadecimal) << id;
  }
}

TEST(ReadIdFile, RefusesAnIdOfMoreThan31Bits) {
  for (const std::string id : {"80000000", "FFFFFFFF", "100000000", "1FFFFFFFFFFFFFFFF"}) {
    EXPECT_EQ(Read("a," + id + ",1,H"), kTooGreat) << id;
    EXPECT_EQ(Read("-a," + id), kTooGreat) << id;
  }
}

TEST(ReadIdFile, ReadsAClassAsADecimalNumber) {
  EXPECT_EQ(Read("a,1,10"), "a,1,10,2");
  EXPECT_EQ(Read("a,1,-1"), "a,1,-1,2");
  EXPECT_EQ(Read("a,1,2.6"), "a,1,3,2");
  EXPECT_EQ(Read("a,1,2147483647"), "a,1,2147483647,2");
}

TEST(ReadIdFile, RefusesAClassThatIsNoDecimalNumber) {
  for (const std::string field : {"x", "A", "1x", "&H1", "0x1", "1 2", "-", ".", "H", "1e"}) {
    EXPECT_EQ(Read("a,1," + field + ",H"), "1: The class: \"" + field + "\" is no number.");
  }
  EXPECT_EQ(Read("a,1,"), "1: The class: \"\" is no number.");
  EXPECT_EQ(Read("a,1,,H"), "1: The class: \"\" is no number.");
  EXPECT_EQ(Read("a,1, ,H"), "1: The class: \" \" is no number.");
}

TEST(ReadIdFile, RefusesAClassOutOfRange) {
  EXPECT_EQ(Read("a,1,2147483648"),
            "1: The class: \"2147483648\" is not between -2147483648 and 2147483647.");
}

TEST(ReadIdFile, RefusesALineWithoutItsFields) {
  EXPECT_EQ(Read("Temperature"), "1: The ID is missing.");
  EXPECT_EQ(Read("-Temperature"), "1: The ID is missing.");
  EXPECT_EQ(Read("-"), "1: The ID is missing.");
  EXPECT_EQ(Read("Temperature,1A"), "1: The class is missing.");
  EXPECT_EQ(Read("Temperature;1A;3;H"), "1: The ID is missing.");
  EXPECT_EQ(Read("Temperature\t1A\t3\tH"), "1: The ID is missing.");
}

TEST(ReadIdFile, RefusesABlankLineWhereverItStands) {
  EXPECT_EQ(Read("\r\na,1,1"), "1: The ID is missing.");
  EXPECT_EQ(Read("a,1,1\r\n\r\nb,2,1"), "2: The ID is missing.");
  EXPECT_EQ(Read("a,1,1\r\n   \r\n"), "2: The ID is missing.");
  EXPECT_EQ(Read("a,1,1\r\n\r\n"), "2: The ID is missing.");
  EXPECT_EQ(Read("\n"), "1: The ID is missing.");
}

TEST(ReadIdFile, LeavesNoNamesAfterABadLine) {
  EXPECT_EQ(Read("a,1,1\r\nb,2,1\r\nc,x,1\r\nd,4,1"), "3: The ID is no hexadecimal number.");
  EXPECT_EQ(Read("*R1\r\na,1,1\r\n*R2\r\n; comment"), "4: The ID is missing.");
}

TEST(ReadIdFile, RefusesAFileWithoutIds) {
  EXPECT_EQ(Read(""), kNoIds);
  EXPECT_EQ(Read("*R1.2"), kNoIds);
  EXPECT_EQ(Read("*R1.2\r\n*R1.3\r\n"), kNoIds);
}

TEST(ReadIdFile, EndsLinesAtCrLfAndAtLf) {
  for (const std::string text : {"a,1,1,H\r\nb,2,2,L\r\n", "a,1,1,H\nb,2,2,L\n",
                                 "a,1,1,H\r\nb,2,2,L", "a,1,1,H\nb,2,2,L\r"}) {
    EXPECT_EQ(Read(text), "a,1,1,0; b,2,2,1") << text;
  }
}

TEST(ReadIdFile, TakesARevisionWholeAndTheLastOfThem) {
  EXPECT_EQ(ReadIdFile("*R1.2\r\na,1,1").IDRevision, "R1.2");
  EXPECT_EQ(ReadIdFile("* R1, 2 *\r\na,1,1").IDRevision, " R1, 2 *");
  EXPECT_EQ(ReadIdFile("*R1\r\na,1,1\r\n*R2\r\n").IDRevision, "R2");
  EXPECT_EQ(ReadIdFile("*\r\na,1,1").IDRevision, "");
}

TEST(ReadIdFile, SaysThatARevisionIsUnknownWithoutOne) {
  EXPECT_EQ(ReadIdFile("a,1,1").IDRevision, "Unknown revision");
  EXPECT_EQ(ReadIdFile("").IDRevision, "Unknown revision");
}

TEST(ReadIdFile, KeepsTheRevisionThatStandsBeforeABadLine) {
  EXPECT_EQ(ReadIdFile("*R1\r\nbad\r\n*R2").IDRevision, "R1");
  EXPECT_EQ(ReadIdFile("bad\r\n*R2").IDRevision, "Unknown revision");
  EXPECT_EQ(ReadIdFile("*R1").IDRevision, "R1");
}

TEST(ReadIdFile, Takes301IdsAndRefusesOneMore) {
  const IdFile full = ReadIdFile("*R1\r\n" + Lines(301) + "*R2\r\n");
  EXPECT_EQ(full.items.size(), 301U);
  EXPECT_EQ(full.items.back().Name, "v300");
  EXPECT_EQ(full.IDRevision, "R2");
  EXPECT_FALSE(full.failure);
  EXPECT_EQ(Read(Lines(302)), "302: The file holds more than 301 IDs.");
  EXPECT_EQ(Read("*R1\r\n" + Lines(301) + "-a,1"), "303: The file holds more than 301 IDs.");
}

TEST(ReadIdFile, ReadsNamesInUtf8AndInWindows1252) {
  for (const std::string bytes : {"K\xC3\xBChlung \xC2\xB0,1A,3,H", "K\xFChlung \xB0,1A,3,H",
                                  "\xEF\xBB\xBFK\xC3\xBChlung \xC2\xB0,1A,3,H"}) {
    EXPECT_EQ(Read(DecodeText(bytes)), "K\xC3\xBChlung \xC2\xB0,26,3,0");
  }
}

TEST(ReadIdFile, ReadsEverySampleAndEveryPrefixOfIt) {
  for (const std::string name : {"default.ids", "MBID.ids"}) {
    SCOPED_TRACE(name);
    const std::string sample = SampleText(name);
    const IdFile whole = ReadIdFile(sample);
    ASSERT_FALSE(whole.failure) << whole.failure->line << ": " << whole.failure->reason;
    ForEveryPrefix(sample, [&](std::string_view prefix) {
      const IdFile read = ReadIdFile(prefix);
      EXPECT_NE(read.failure.has_value(), !read.items.empty());
      ASSERT_LE(read.items.size(), whole.items.size());
      // The last line may be cut short and still be one.
      for (std::size_t i = 0; i + 1 < read.items.size(); ++i) {
        EXPECT_EQ(read.items[i], whole.items[i]);
      }
    });
  }
}

TEST(ReadIdFile, EndsOnBytesThatAreNoText) {
  EXPECT_EQ(Read(std::string_view("a\0b,1A,3,H", 10)), std::string("a\0b,26,3,0", 10));
  EXPECT_EQ(Read(std::string_view("a,1\0A,3", 7)), kNoHexadecimal);
  EXPECT_EQ(Read(std::string(std::size_t{1} << 20, '\0')), "1: The ID is missing.");
  EXPECT_EQ(Read("a," + std::string(std::size_t{1} << 20, 'F')), kTooGreat);
}

}  // namespace
}  // namespace tarnlink
