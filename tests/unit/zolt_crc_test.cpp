#include "protocols/zolt_crc.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "support/zolt_text.h"

namespace tarnlink {
namespace {

// CRC-16/XMODEM bit by bit, as its definition has it.
std::uint16_t Xmodem(const std::string& text) {
  unsigned crc = 0;
  for (const char c : text) {
    for (int bit = 7; bit >= 0; --bit) {
      const bool in = (static_cast<unsigned char>(c) >> bit & 1) != 0;
      const bool out = (crc & 0x8000) != 0;
      crc = (crc << 1 & 0xFFFF) ^ (in != out ? 0x1021 : 0);
    }
  }
  return static_cast<std::uint16_t>(crc);
}

std::vector<std::uint8_t> WithTwoZeros(const std::string& text) {
  std::vector<std::uint8_t> bytes(text.begin(), text.end());
  bytes.insert(bytes.end(), 2, 0);
  return bytes;
}

// With a zero byte, a CRC whose low byte is 0 becomes the table's entry at its high byte.
std::uint16_t TableEntry(int index) {
  return Calc_Crc_Byte(0, static_cast<std::uint16_t>(index * 256));
}

TEST(CalcCrcByte, GoesByTheTableOfThePolynomial) {
  EXPECT_EQ(TableEntry(0), 0x0000);
  EXPECT_EQ(TableEntry(1), 0x1021);
  EXPECT_EQ(TableEntry(2), 0x2042);
  EXPECT_EQ(TableEntry(3), 0x3063);
  EXPECT_EQ(TableEntry(16), 0x1231);
  EXPECT_EQ(TableEntry(128), 0x9188);
  EXPECT_EQ(TableEntry(255), 0x1EF0);
}

TEST(CalcCrcByte, EveryEntryIsTheCrcOfItsIndex) {
  for (int index = 0; index < 256; ++index) {
    EXPECT_EQ(TableEntry(index), Xmodem(std::string(1, static_cast<char>(index)))) << index;
  }
}

TEST(CalcCrcByte, ShiftsTheCrcAndTakesTheByteInAtTheLowEnd) {
  EXPECT_EQ(Calc_Crc_Byte(0x31, 0), 0x0031);
  EXPECT_EQ(Calc_Crc_Byte(0x32, 0x0031), 0x3132);
  EXPECT_EQ(Calc_Crc_Byte(0x33, 0x3132), 0x2672 ^ 0x3200 ^ 0x0033);
  EXPECT_EQ(Calc_Crc_Byte(0xFF, 0x00FF), 0xFFFF);
}

TEST(CRC16, OfNothingIsZero) { EXPECT_EQ(CRC16({}), 0); }

TEST(CRC16, CountsTheBytesAsTheyStand) {
  const std::vector<std::uint8_t> bytes = {0x31, 0x32};
  EXPECT_EQ(CRC16(bytes), 0x3132);
}

TEST(CRC16, WithTwoZeroBytesBehindIsTheKnownCheckValue) {
  EXPECT_EQ(CRC16(WithTwoZeros("123456789")), 0x31C3);
  EXPECT_EQ(Xmodem("123456789"), 0x31C3);
}

TEST(CRC16, WithTwoZeroBytesBehindEqualsTheBitwiseCrcOfAnyText) {
  std::mt19937 random(20);
  for (int round = 0; round < 2000; ++round) {
    std::string text(random() % 40, '\0');
    for (char& c : text) c = static_cast<char>(random());
    ASSERT_EQ(CRC16(WithTwoZeros(text)), Xmodem(text)) << round;
  }
}

TEST(CalcCrc, OfTheDefaultMessage) { EXPECT_EQ(Calc_Crc(Body(0x01, "000010000")), 0xD7AF); }

TEST(CalcCrc, CountsTheFirstTenCharacters) {
  EXPECT_EQ(Calc_Crc("0123456789"), Xmodem("0123456789"));
  EXPECT_EQ(Calc_Crc("0123456789A"), Xmodem("0123456789"));
  EXPECT_EQ(Calc_Crc("0123456789" + std::string(5000, 'x')), Xmodem("0123456789"));
  EXPECT_NE(Calc_Crc("0123456788"), Xmodem("0123456789"));
}

TEST(CalcCrc, FillsAShorterTextUpWithZeroBytes) {
  const std::string text = Body(0x81, "0C80FFFF");
  for (std::size_t length = 0; length < text.size(); ++length) {
    const std::string shorter = text.substr(0, length);
    EXPECT_EQ(Calc_Crc(shorter), Xmodem(shorter + std::string(10 - length, '\0'))) << length;
  }
  EXPECT_EQ(Calc_Crc(""), 0);
  EXPECT_NE(Calc_Crc("123456789"), 0x31C3);
}

TEST(CalcCrc, TakesBytesOfEveryValue) {
  for (int code = 0; code < 256; ++code) {
    const std::string text(10, static_cast<char>(code));
    EXPECT_EQ(Calc_Crc(text), Xmodem(text)) << code;
  }
}

TEST(CalcCrc, TellsEverySingleWrongBitOfABody) {
  const std::string body = Body(0x85, "00C805A00");
  for (std::size_t bit = 0; bit < body.size() * 8; ++bit) {
    std::string damaged = body;
    damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
    EXPECT_NE(Calc_Crc(damaged), Calc_Crc(body)) << bit;
  }
}

}  // namespace
}  // namespace tarnlink
