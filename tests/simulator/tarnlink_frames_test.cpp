#include "simulator/tarnlink_frames.h"

#include <gtest/gtest.h>

#include "simulator/bytes.h"

namespace boiler {
namespace {

TarnlinkParsed Parse(const char* hex) { return ParseTarnlinkRequest(*ParseHexBytes(hex)); }

// Command, address and data of a request, or why it is none.
std::string Told(const TarnlinkParsed& parsed) {
  if (!parsed.request) return "refused: " + parsed.refusal;
  return HexDigits(static_cast<unsigned>(parsed.request->command), 2) + ' ' +
         HexDigits(parsed.request->address, 4) + ' ' + parsed.request->data;
}

struct Row {
  const char* hex;
  const char* told;
};

TEST(ParseTarnlinkRequest, ReadsReadsAndWrites) {
  for (const Row& row : {
           Row{"04 05 30 31 41 30 44 37 03", "05 01A0 "},
           Row{"04 01 30 31 41 30 44 33 03", "01 01A0 "},
           Row{"04 05 46 46 46 46 31 44 03", "05 FFFF "},
           Row{"04 05 30 41 44 46 30 30 03", "05 0ADF "},                  // sum 00 in two digits
           Row{"04 06 46 34 30 30 35 41 35 36 03", "06 F400 5A"},          // byte
           Row{"04 06 46 34 30 30 31 32 33 34 41 41 03", "06 F400 1234"},  // word
           Row{"04 06 46 34 30 38 46 46 46 46 30 03", "06 F408 FFFF"},     // sum 0 in one digit
           Row{"04 02 46 34 30 30 31 32 33 34 41 36 03", "02 F400 1234"},
       }) {
    EXPECT_EQ(Told(Parse(row.hex)), row.told);
  }
}

TEST(ParseTarnlinkRequest, RefusesEveryNearMiss) {
  const std::string no_frame = "refused: no whole frame";
  const std::string digit = "refused: a character that is no upper-case hexadecimal digit";
  const std::string nine = "refused: a read has 9 bytes";
  const std::string write = "refused: a write has 2 or 4 digits of data and 1 or 2 of sum";
  struct Refused {
    const char* hex;
    std::string told;
  };
  for (const Refused& row : {
           Refused{"04", no_frame},
           Refused{"04 03", no_frame},
           Refused{"04 05 30 31 41 03", no_frame},
           Refused{"05 05 30 31 41 30 44 37 03", no_frame},
           Refused{"04 05 30 31 41 30 44 37 04", no_frame},
           Refused{"04 05 30 31 41 30 03", nine},
           Refused{"04 05 30 31 41 30 37 03", nine},
           Refused{"04 05 30 31 41 30 30 44 37 03", nine},
           Refused{"04 03 30 31 41 30 44 35 03", "refused: unknown command"},
           Refused{"04 07 30 31 41 30 44 39 03", "refused: unknown command"},
           Refused{"04 30 30 31 41 30 30 32 03", "refused: unknown command"},
           Refused{"04 05 30 31 61 30 46 37 03", digit},
           Refused{"04 05 30 31 41 30 64 37 03", digit},
           Refused{"04 05 30 31 20 30 42 36 03", digit},
           Refused{"04 06 46 34 30 30 20 35 30 41 03", digit},
           Refused{"04 05 30 31 41 30 44 38 03", "refused: the sum is D8 and should be D7"},
           Refused{"04 05 30 31 41 31 44 37 03", "refused: the sum is D7 and should be D8"},
           Refused{"04 06 46 34 30 30 35 41 35 37 03", "refused: the sum is 57 and should be 56"},
           Refused{"04 06 46 34 30 38 46 46 46 46 30 30 03",
                   "refused: the sum is 00 and should be 0"},
           Refused{"04 06 46 34 30 30 35 41 03", write},
           Refused{"04 06 46 34 30 30 31 32 33 34 35 41 41 03", write},
           Refused{"04 06 46 34 30 30 35 03", write},
       }) {
    EXPECT_EQ(Told(Parse(row.hex)), row.told) << row.hex;
  }
}

TEST(BuildTarnlinkAnswer, EchoesTheRequestAndSumsAllBehindTheStart) {
  EXPECT_EQ(HexText(BuildTarnlinkAnswer(kReadByte, "F400", "5A")),
            "04 05 46 34 30 30 35 41 35 35 03");
  EXPECT_EQ(HexText(BuildTarnlinkAnswer(kReadWord, "F400", "125A")),
            "04 01 46 34 30 30 31 32 35 41 42 34 03");
}

TEST(TarnlinkSumHolds, LooksAtTheSumAlone) {
  EXPECT_TRUE(TarnlinkSumHolds(*ParseHexBytes("04 05 46 34 30 30 35 41 35 35 03")));
  EXPECT_TRUE(TarnlinkSumHolds(*ParseHexBytes("FF 05 46 34 30 30 35 41 35 35 FF")));
  EXPECT_FALSE(TarnlinkSumHolds(*ParseHexBytes("04 05 46 34 30 30 35 42 35 35 03")));
  EXPECT_FALSE(TarnlinkSumHolds(*ParseHexBytes("04 05 46 34 30 30 35 41 35 36 03")));
  EXPECT_FALSE(TarnlinkSumHolds(*ParseHexBytes("04 05 46 34 30 30 35 41 35 35")));
  EXPECT_FALSE(TarnlinkSumHolds(""));
  EXPECT_FALSE(TarnlinkSumHolds("\x03"));
}

}  // namespace
}  // namespace boiler
