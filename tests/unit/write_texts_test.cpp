// What becomes of a typed value before it is sent.

#include "monitor/write_texts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnlink {
namespace {

Location Of(std::int32_t specification, std::int32_t storage, std::uint8_t select) {
  Location location;
  location.Specification = specification;
  location.StorageType = storage;
  location.SelectByte = select;
  return location;
}

Location Byte() { return Of(0, kUnsignedByte, kLsb); }
Location MemoryWord() { return Of(0, kUnsignedWord, kBoth); }
Location IdWord() { return Of(1, kUnsignedWord, kBoth); }

std::string Decimal(const Location& location, std::string_view text) {
  return MakeWriteText(location, kDecimal, text).value;
}

std::string Hexadecimal(const Location& location, std::string_view text) {
  return MakeWriteText(location, kHexadecimal, text).value;
}

constexpr std::int32_t kNumberStorages[] = {kUnsignedByte, kSignedByte, kUnsignedWord, kSignedWord};
constexpr std::uint8_t kSelections[] = {kMsb, kLsb, kBoth};

// What 1A2B3 comes to as a word of memory, a word of a data ID, and anything else.
struct FieldOf {
  int format;
  std::string typed;
  std::string word;
  std::string byte;
};

class WriteTextOfFormat : public ::testing::TestWithParam<FieldOf> {};

TEST_P(WriteTextOfFormat, IsCutToTheFieldOfTheLocation) {
  const FieldOf& wanted = GetParam();
  for (const std::int32_t storage : kNumberStorages) {
    for (const std::uint8_t select : kSelections) {
      const bool is_word = storage == kUnsignedWord || storage == kSignedWord;
      WriteText memory{.value = wanted.byte};
      if (is_word) {
        memory = {.value = wanted.word,
                  .SecondByteValue = wanted.word.substr(0, 2),
                  .SendSecondByte = true};
      }
      EXPECT_EQ(MakeWriteText(Of(0, storage, select), wanted.format, wanted.typed), memory)
          << "memory, storage " << storage << ", byte " << int{select};
      // Of a data ID the selected byte says how long the field is, whatever the storage type.
      const WriteText id{.value = select == kBoth ? wanted.word : wanted.byte};
      EXPECT_EQ(MakeWriteText(Of(1, storage, select), wanted.format, wanted.typed), id)
          << "data ID, storage " << storage << ", byte " << int{select};
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, WriteTextOfFormat,
                         ::testing::Values(FieldOf{kDecimal, "107187", "A2B3", "B3"},
                                           FieldOf{kDecimal, "7", "0007", "07"},
                                           FieldOf{kHexadecimal, "1a2b3", "A2B3", "B3"},
                                           FieldOf{kHexadecimal, "f", "000F", "0F"},
                                           FieldOf{kBinary, "1010", "0000", "00"},
                                           FieldOf{kOctal, "17", "0000", "00"}));

TEST(WriteText, ATooGreatDecimalLosesItsFirstDigits) {
  EXPECT_EQ(Decimal(Byte(), "300"), "2C");
  EXPECT_EQ(Decimal(IdWord(), "65537"), "0001");
  EXPECT_EQ(Decimal(IdWord(), "999999"), "423F");
  EXPECT_EQ(Decimal(Byte(), "9E9999"), Decimal(Byte(), "9E18"));
}

TEST(WriteText, ANegativeDecimalIsATwosComplement) {
  EXPECT_EQ(Decimal(Byte(), "-1"), "FF");
  EXPECT_EQ(Decimal(Byte(), "-128"), "80");
  EXPECT_EQ(Decimal(IdWord(), "-2"), "FFFE");
  EXPECT_EQ(Decimal(IdWord(), "-32769"), "7FFF");
  EXPECT_EQ(MakeWriteText(MemoryWord(), kDecimal, "-2").SecondByteValue, "FF");
}

TEST(WriteText, WhatIsNoNumberIsZero) {
  for (const char* text : {"", "abc", " ", "-", "TRUE", "."}) {
    EXPECT_EQ(Decimal(Byte(), text), "00") << text;
    EXPECT_EQ(Decimal(IdWord(), text), "0000") << text;
  }
  EXPECT_EQ(Decimal(Byte(), "12abc"), "0C");
  EXPECT_EQ(Decimal(Byte(), "&H1F"), "1F");
}

TEST(WriteText, AFractionIsRounded) {
  EXPECT_EQ(Decimal(Byte(), "9.4"), "09");
  EXPECT_EQ(Decimal(Byte(), "9.6"), "0A");
}

TEST(WriteText, HexadecimalGoesOutAsTyped) {
  EXPECT_EQ(Hexadecimal(Byte(), "xyz"), "YZ");
  EXPECT_EQ(Hexadecimal(Byte(), " a"), " A");
  EXPECT_EQ(Hexadecimal(IdWord(), "-1"), "00-1");
  EXPECT_EQ(Hexadecimal(IdWord(), ""), "0000");
  EXPECT_EQ(Hexadecimal(Byte(), ""), "00");
}

TEST(WriteText, ALetterOutsideAsciiIsOneByte) {
  EXPECT_EQ(Hexadecimal(Byte(), "1\xC3\xA4"), "1\xE4");
}

TEST(BitText, SetsOrClearsOneBitOfTheLastValue) {
  Location bit = Of(0, kBit, kBoth);
  bit.BitAddress = 3;
  bit.RawValue = 1;
  EXPECT_EQ(MakeBitText(bit, true), "09");
  EXPECT_EQ(MakeBitText(bit, false), "01");
  bit.RawValue = 0xFF;
  EXPECT_EQ(MakeBitText(bit, true), "FF");
  EXPECT_EQ(MakeBitText(bit, false), "F7");
}

TEST(BitText, OfAWordIsAsLongAsItsNumber) {
  Location bit = Of(1, kBit, kBoth);
  bit.RawValue = 0x1234;
  bit.BitAddress = 15;
  EXPECT_EQ(MakeBitText(bit, true), "9234");
  EXPECT_EQ(MakeBitText(bit, false), "1234");
}

TEST(BitText, ABitThatNoWordHasChangesNothing) {
  Location bit = Of(1, kBit, kBoth);
  bit.RawValue = 0x21;
  for (const int address : {16, 31, 32, 255}) {
    bit.BitAddress = static_cast<std::uint8_t>(address);
    EXPECT_EQ(MakeBitText(bit, true), "21");
    EXPECT_EQ(MakeBitText(bit, false), "21");
  }
}

TEST(RegisterText, IsReadAsADecimalNumberOfFourDigits) {
  EXPECT_EQ(MakeRegisterText("10"), "000A");
  EXPECT_EQ(MakeRegisterText("65536"), "0000");
  EXPECT_EQ(MakeRegisterText("-1"), "FFFF");
  EXPECT_EQ(MakeRegisterText("value1"), "0000");
  EXPECT_EQ(MakeRegisterText(""), "0000");
}

}  // namespace
}  // namespace tarnlink
