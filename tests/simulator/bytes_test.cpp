#include "simulator/bytes.h"

#include <gtest/gtest.h>

namespace boiler {
namespace {

TEST(HexText, PutsABlankBetweenPairsOfDigits) {
  EXPECT_EQ(HexText(std::string("\x04\x00\xFF", 3)), "04 00 FF");
  EXPECT_EQ(HexText(""), "");
}

TEST(HexDigits, KeepsTheLowDigits) {
  EXPECT_EQ(HexDigits(0xA, 2), "0A");
  EXPECT_EQ(HexDigits(0x1234, 4), "1234");
  EXPECT_EQ(HexDigits(0x1234, 2), "34");
}

TEST(ParseHexBytes, TakesPairsWithOrWithoutBlanks) {
  EXPECT_EQ(ParseHexBytes("0405"), "\x04\x05");
  EXPECT_EQ(ParseHexBytes(" 04  0a "), "\x04\x0A");
}

TEST(ParseHexBytes, RefusesWhatIsNoPair) {
  for (const char* text : {"", " ", "4", "040", "04 0", "0 4", "0g", "g0", "+4", "0x04", "04,05"}) {
    EXPECT_EQ(ParseHexBytes(text), std::nullopt) << text;
  }
}

TEST(ParseAddress, TakesOneToFourDigits) {
  EXPECT_EQ(ParseAddress("0"), 0);
  EXPECT_EQ(ParseAddress("1a0"), 0x1A0);
  EXPECT_EQ(ParseAddress("FFFF"), 0xFFFF);
  for (const char* text : {"", "00000", "10000", "G", "-1", "+1", " 1", "1 ", "0x1"}) {
    EXPECT_EQ(ParseAddress(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace boiler
