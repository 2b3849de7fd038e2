#include "protocols/frame_bytes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "support/byte_text.h"

namespace tarnlink {
namespace {

TEST(ByteAt, GivesTheCodeOfAByte) {
  const std::string frame = Bytes("00 7F 80 FF");
  EXPECT_EQ(ByteAt(frame, 0), 0x00);
  EXPECT_EQ(ByteAt(frame, 1), 0x7F);
  EXPECT_EQ(ByteAt(frame, 2), 0x80);
  EXPECT_EQ(ByteAt(frame, 3), 0xFF);
}

TEST(ByteAt, PastTheEndIsARunTimeErrorThatSaysWhere) {
  try {
    ByteAt("abc", 3);
    FAIL() << "no error";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.code(), kSubscript);
    EXPECT_STREQ(error.what(), "The frame ends after 3 bytes, before byte 4.");
  }
  EXPECT_THROW(ByteAt("", 0), RunTimeError);
  EXPECT_THROW(ByteAt("abc", std::string::npos), RunTimeError);
}

TEST(HexDigits, ArePaddedWithZeros) {
  EXPECT_EQ(HexDigits(0, 4), "0000");
  EXPECT_EQ(HexDigits(0xA, 4), "000A");
  EXPECT_EQ(HexDigits(0xD7AF, 4), "D7AF");
  EXPECT_EQ(HexDigits(0xC, 2), "0C");
  EXPECT_EQ(HexDigits(5, 1), "5");
  EXPECT_EQ(HexDigits(5, 0), "");
  EXPECT_EQ(HexDigits(0x12345678, 8), "12345678");
}

TEST(HexDigits, KeepTheLastOnes) {
  EXPECT_EQ(HexDigits(0x12345, 4), "2345");
  EXPECT_EQ(HexDigits(0x1FF, 2), "FF");
}

TEST(HexDigits, OfANumberAreThoseBehindZerosAndItsHexText) {
  for (const int number :
       {0,     1,       9,          10, 255, 256,  4095,   4096,   32767,  32768,          65535,
        65536, 1 << 20, 2147483647, -1, -5,  -256, -32768, -32769, -65536, -2147483647 - 1}) {
    EXPECT_EQ(HexDigits(number, 4), Right("0000" + Hex(number), 4)) << number;
    EXPECT_EQ(HexDigits(number, 2), Right("00" + Hex(number), 2)) << number;
  }
}

TEST(AppendHexDigits, LeavesWhatStandsInFront) {
  std::string text = "x";
  AppendHexDigits(text, 0x1A, 2);
  AppendHexDigits(text, 0xF, 4);
  EXPECT_EQ(text, "x1A000F");
}

TEST(HexNumber, ReadsDigitsOfEitherCase) {
  EXPECT_EQ(HexNumber("0"), 0U);
  EXPECT_EQ(HexNumber("1a"), 0x1AU);
  EXPECT_EQ(HexNumber("1A"), 0x1AU);
  EXPECT_EQ(HexNumber("8000"), 0x8000U);
  EXPECT_EQ(HexNumber("FFFF"), 0xFFFFU);
  EXPECT_EQ(HexNumber("FFFFFFFF"), 0xFFFFFFFFU);
}

TEST(HexNumber, StopsAtWhatIsNoDigit) {
  EXPECT_EQ(HexNumber("1G"), 1U);
  EXPECT_EQ(HexNumber("12 4"), 0x12U);
  EXPECT_EQ(HexNumber("F&"), 0xFU);
  EXPECT_EQ(HexNumber("123456789"), 0x12345678U);
}

TEST(HexNumber, WithoutDigitsIsZero) {
  for (const std::string text : {"", "G1", " 1", "-1", "+1", "&H1", ".5", "\r", "\xFF"}) {
    EXPECT_EQ(HexNumber(text), 0U) << text;
  }
  EXPECT_EQ(HexNumber("0x12"), 0U);
}

// Two characters as a data byte, and the same as the start and the end of an ID, as `Val` has them.
TEST(HexNumber, ReadsEveryPairOfBytesAsValDoes) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string pair{static_cast<char>(first), static_cast<char>(second)};
      ASSERT_EQ(HexNumber(pair), Val("&H" + pair)) << first << ' ' << second;
      ASSERT_EQ(HexNumber("F0" + pair), Val("&HF0" + pair + "&")) << first << ' ' << second;
      ASSERT_EQ(HexNumber(pair + "0F"), Val("&H" + pair + "0F&")) << first << ' ' << second;
    }
  }
}

}  // namespace
}  // namespace tarnlink
