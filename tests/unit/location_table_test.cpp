#include "monitor/location_table.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/run_time_error.h"
#include "support/fake_settings_store.h"

namespace tarnlink {
namespace {

const std::string kSixteenZeros(16, '0');

Location Made(std::int32_t storage_type, std::int32_t representation) {
  Location location;
  location.StorageType = storage_type;
  location.Representation = representation;
  return location;
}

std::string WordText(std::int32_t raw, std::int32_t storage_type, std::int32_t representation) {
  return DecodedValueText(Made(storage_type, representation), {raw, true});
}

std::string ByteText(std::int32_t raw, std::int32_t storage_type, std::int32_t representation) {
  return DecodedValueText(Made(storage_type, representation), {raw, false});
}

TEST(LocationTable, InitialisesEveryRecordToTheDefaults) {
  FakeSettingsStore settings;
  LocationTable table;
  for (int i = 0; i <= kLastLocation; ++i) {
    table[i].Alias = "old";
    table[i].NumReg = 9;
  }
  table.InitLocations(settings);
  for (int i = 0; i <= kLastLocation; ++i) {
    const Location& location = table[i];
    ASSERT_EQ(location, Location{}) << i;
  }
  const Location& location = table[kLastLocation];
  EXPECT_EQ(location.Specification, 1);
  EXPECT_EQ(location.StorageType, 3);
  EXPECT_EQ(location.Representation, 1);
  EXPECT_EQ(location.Address, "0000");
  EXPECT_EQ(location.Alias, "No name");
  EXPECT_EQ(location.ActualVariable, "Not Assigned");
  EXPECT_EQ(location.ExcelColumn, "1");
  EXPECT_EQ(location.LocSlaveAddress, "0");
  EXPECT_EQ(location.Class, 1);
  EXPECT_EQ(location.SelectByte, 2);
  EXPECT_EQ(location.FunctionCode, "&H00");
  EXPECT_EQ(location.NumReg, 1);
  EXPECT_FALSE(location.RegisterFollower);
}

TEST(LocationTable, BeginsWithSlaveAddressOneUnderModbusOnly) {
  FakeSettingsStore settings;
  LocationTable table;
  for (const std::string protocol : {"0", "1", "2", "", "3"}) {
    settings.SaveSetting("Communication", "Protocol", protocol);
    table.InitLocations(settings);
    const std::string expected = protocol == "2" ? "1" : "0";
    EXPECT_EQ(table[0].LocSlaveAddress, expected) << protocol;
    EXPECT_EQ(table[kLastLocation].LocSlaveAddress, expected) << protocol;
  }
}

TEST(LocationTable, KeepsARecordWhereItIs) {
  FakeSettingsStore settings;
  LocationTable table;
  Location& first = table[1];
  first.Alias = "old";
  table[kLastLocation].Alias = "last";
  EXPECT_EQ(first.Alias, "old");
  table.InitLocations(settings);
  EXPECT_EQ(&first, &table[1]);
  EXPECT_EQ(first, Location{});
}

TEST(LocationTable, ShowsTheDefaultsOfARecordThatNobodyHasTouched) {
  FakeSettingsStore settings;
  settings.SaveSetting("Communication", "Protocol", "2");
  LocationTable table;
  const LocationTable& shown = table;
  EXPECT_EQ(shown[7], Location{});
  table.InitLocations(settings);
  Location expected;
  expected.LocSlaveAddress = "1";
  for (int i = 0; i <= kLastLocation; ++i) ASSERT_EQ(shown[i], expected) << i;
  table[7].Alias = "mine";
  EXPECT_EQ(shown[7].Alias, "mine");
  EXPECT_EQ(shown[8], expected);
  EXPECT_THROW(shown[513], RunTimeError);
}

TEST(LocationTable, EndsAtLocation512) {
  LocationTable table;
  table[512].Alias = "last";
  EXPECT_EQ(table[512].Alias, "last");
  for (const int index : {-1, 513, 1000000}) {
    try {
      table[index].Alias = "none";
      ADD_FAILURE() << index;
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.code(), kSubscript);
      EXPECT_EQ(error.what(), "There is no Location " + std::to_string(index) + ".");
    }
  }
}

TEST(FixedAddress, IsAlwaysFourCharacters) {
  EXPECT_EQ(FixedAddress("01A0"), "01A0");
  EXPECT_EQ(FixedAddress("1A"), "1A  ");
  EXPECT_EQ(FixedAddress(""), "    ");
  EXPECT_EQ(FixedAddress("12345"), "1234");
  EXPECT_EQ(FixedAddress("\xC2\xB0"
                         "C"),
            "?C  ");
  EXPECT_EQ(FixedAddress("abc\xF0\x9F\x94\xA5"
                         "d"),
            "abc?");
}

TEST(Dec2bin, GivesAtLeastTheAskedDigits) {
  EXPECT_EQ(dec2bin(5, 8), "00000101");
  EXPECT_EQ(dec2bin(1, 8), "00000001");
  EXPECT_EQ(dec2bin(255, 8), "11111111");
  EXPECT_EQ(dec2bin(256, 8), "100000000");
  EXPECT_EQ(dec2bin(0x8001, 16), "1000000000000001");
  EXPECT_EQ(dec2bin(0x7FFFFFFF, 16), std::string(31, '1'));
  EXPECT_EQ(dec2bin(1, 0), "1");
}

TEST(Dec2bin, GivesZerosForZeroAndForEveryNegativeNumber) {
  EXPECT_EQ(dec2bin(0, 16), kSixteenZeros);
  EXPECT_EQ(dec2bin(-1, 8), "00000000");
  EXPECT_EQ(dec2bin(-2147483647 - 1, 16), kSixteenZeros);
  EXPECT_EQ(dec2bin(0, 0), "");
  EXPECT_EQ(dec2bin(0, 255), kSixteenZeros);
}

TEST(FormatHex, PadsAndCutsToFourDigits) {
  EXPECT_EQ(FormatHex("1f", 4), "001F");
  EXPECT_EQ(FormatHex("abcd", 4), "ABCD");
  EXPECT_EQ(FormatHex("12345", 4), "1234");
  EXPECT_EQ(FormatHex("123456", 4), "2345");
  EXPECT_EQ(FormatHex("", 4), "0000");
  EXPECT_EQ(FormatHex("7", 0), "0007");
}

TEST(FormatHex, GivesZerosForWhatIsNotHexadecimal) {
  for (const std::string text : {"12G4", "-1", " 1", "1.5", "&H12", "12 45", "G", "\xC2\xB0"}) {
    EXPECT_EQ(FormatHex(text, 4), "0000") << text;
  }
  EXPECT_EQ(FormatHex("x12345", 4), "1234");  // what is cut off is not looked at
}

TEST(FormatHex, GivesTheMiddleDigitsForALengthOfTwo) {
  EXPECT_EQ(FormatHex("1234", 2), "23");
  EXPECT_EQ(FormatHex("1F", 2), "01");
  EXPECT_EQ(FormatHex("", 2), "00");
  EXPECT_EQ(FormatHex("zz", 2), "00");
}

TEST(TarnlinkValueText, PrintsAWordAsASignedNumber) {
  EXPECT_EQ(TarnlinkValueText("8000", kDecimal), "-32768");
  EXPECT_EQ(TarnlinkValueText("8000", kHexadecimal), "FFFF8000");
  EXPECT_EQ(TarnlinkValueText("8001", kHexadecimal), "FFFF8001");
  EXPECT_EQ(TarnlinkValueText("8000", kBinary), kSixteenZeros);
  EXPECT_EQ(TarnlinkValueText("FFFF", kDecimal), "-1");
  EXPECT_EQ(TarnlinkValueText("FFFF", kOctal), "37777777777");
  EXPECT_EQ(TarnlinkValueText("7FFF", kDecimal), "32767");
  EXPECT_EQ(TarnlinkValueText("00FF", kHexadecimal), "FF");
  EXPECT_EQ(TarnlinkValueText("0005", kBinary), "0000000000000101");
}

TEST(TarnlinkValueText, PrintsAByteFromZeroTo255) {
  EXPECT_EQ(TarnlinkValueText("FF", kDecimal), "255");
  EXPECT_EQ(TarnlinkValueText("FF", kBinary), "11111111");
  EXPECT_EQ(TarnlinkValueText("FF", kOctal), "377");
  EXPECT_EQ(TarnlinkValueText("0A", kHexadecimal), "A");
}

TEST(TarnlinkValueText, ParsesAsFarAsTheDigitsAreValid) {
  EXPECT_EQ(TarnlinkValueText("1G", kDecimal), "1");
  EXPECT_EQ(TarnlinkValueText("G1", kDecimal), "0");
  EXPECT_EQ(TarnlinkValueText("", kDecimal), "0");
  EXPECT_EQ(TarnlinkValueText("", kBinary), "00000000");
  EXPECT_EQ(TarnlinkValueText("FFFFFFFF&", kDecimal), "2147483647");
  EXPECT_EQ(TarnlinkValueText(std::string_view("\0\0", 2), kHexadecimal), "0");
}

TEST(TarnlinkValueText, TakesAnUnknownRepresentationAsDecimal) {
  for (const int representation : {-1, 4, 7, 2147483647}) {
    EXPECT_EQ(TarnlinkValueText("FF", representation), "255");
  }
}

TEST(SelectValue, TakesTheByteThatAClassLocationSelects) {
  Location location;
  const auto show = [&](int select_byte) {
    location.SelectByte = static_cast<std::uint8_t>(select_byte);
    const DecodedValue value = SelectValue(location, 0x12, 0x34, false);
    return std::to_string(value.RawValue) + (value.is_word ? " word" : " byte");
  };
  EXPECT_EQ(show(kMsb), "18 byte");
  EXPECT_EQ(show(kLsb), "52 byte");
  EXPECT_EQ(show(kBoth), "4660 word");
  EXPECT_EQ(show(255), "4660 word");
}

TEST(SelectValue, TakesTheLowByteOrTheWordOfAMemoryLocation) {
  for (int storage_type = kBit; storage_type <= kSignedWord; ++storage_type) {
    Location location = Made(storage_type, kDecimal);
    location.SelectByte = kMsb;
    const DecodedValue value = SelectValue(location, 0x12, 0x34, true);
    const bool is_word = storage_type >= kUnsignedWord;
    EXPECT_EQ(value.is_word, is_word) << storage_type;
    EXPECT_EQ(value.RawValue, is_word ? 0x1234 : 0x34) << storage_type;
  }
  EXPECT_TRUE(SelectValue(Made(7, kDecimal), 0x12, 0x34, true).is_word);
  EXPECT_TRUE(SelectValue(Made(-1, kDecimal), 0x12, 0x34, true).is_word);
}

TEST(SelectValue, IsNeverNegative) {
  EXPECT_EQ(SelectValue(Location{}, 0xFF, 0xFF, false).RawValue, 65535);
}

TEST(SignedText, TurnsNegativeAtDifferentLimitsForByteAndWord) {
  EXPECT_EQ(SignedText({0x7F, false}), "127");
  EXPECT_EQ(SignedText({0x80, false}), "-128");
  EXPECT_EQ(SignedText({0xFF, false}), "-1");
  EXPECT_EQ(SignedText({0x80, true}), "128");
  EXPECT_EQ(SignedText({0x7FFF, true}), "32767");
  EXPECT_EQ(SignedText({0x8000, true}), "32768");
  EXPECT_EQ(SignedText({0x8001, true}), "-32767");
  EXPECT_EQ(SignedText({0xFFFF, true}), "-1");
  EXPECT_EQ(SignedText({0, true}), "0");
}

TEST(DecodedValueText, PrintsOnlySignedTypesWithASign) {
  EXPECT_EQ(WordText(0x8000, kSignedWord, kDecimal), "32768");
  EXPECT_EQ(WordText(0x8001, kSignedWord, kDecimal), "-32767");
  EXPECT_EQ(WordText(0x8001, kUnsignedWord, kDecimal), "32769");
  EXPECT_EQ(ByteText(0x80, kSignedByte, kDecimal), "-128");
  EXPECT_EQ(ByteText(0x80, kUnsignedByte, kDecimal), "128");
}

TEST(DecodedValueText, PrintsHexadecimalInTwoOrFourDigits) {
  EXPECT_EQ(ByteText(0x0A, kUnsignedByte, kHexadecimal), "0A");
  EXPECT_EQ(WordText(0x0A, kUnsignedWord, kHexadecimal), "000A");
  EXPECT_EQ(WordText(0xFFFF, kSignedWord, kHexadecimal), "FFFF");
  EXPECT_EQ(ByteText(0xFF, kSignedByte, kHexadecimal), "FF");
}

TEST(DecodedValueText, PrintsBinaryInEightOrSixteenDigits) {
  EXPECT_EQ(ByteText(5, kUnsignedByte, kBinary), "00000101");
  EXPECT_EQ(WordText(5, kUnsignedWord, kBinary), "0000000000000101");
  EXPECT_EQ(WordText(0x8000, kSignedWord, kBinary), "1000000000000000");
}

TEST(DecodedValueText, PrintsOctalWithoutPadding) {
  EXPECT_EQ(ByteText(255, kUnsignedByte, kOctal), "377");
  EXPECT_EQ(WordText(0xFFFF, kSignedWord, kOctal), "177777");
}

TEST(BitText, IsTrueOrFalse) {
  EXPECT_EQ(BitText(IsBitSet(0x08, 3)), "TRUE");
  EXPECT_EQ(BitText(IsBitSet(0xF7, 3)), "FALSE");
  EXPECT_EQ(BitText(IsBitSet(0x8000, 15)), "TRUE");
}

TEST(BitText, OfABitBeyondTheWordIsFalse) {
  for (const int bit : {16, 30, 31, 32, 63, 64, 255}) {
    EXPECT_FALSE(IsBitSet(0xFFFF, static_cast<std::uint8_t>(bit))) << bit;
  }
}

TEST(DecodedValueText, TakesAnUnknownRepresentationAsDecimalAndAnUnknownTypeAsUnsigned) {
  EXPECT_EQ(WordText(0x8001, kSignedWord, 7), "-32767");
  EXPECT_EQ(WordText(0x8001, 7, 7), "32769");
  EXPECT_EQ(WordText(0x8001, -1, -2147483647), "32769");
}

}  // namespace
}  // namespace tarnlink
