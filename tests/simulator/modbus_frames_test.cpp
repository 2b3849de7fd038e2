#include "simulator/modbus_frames.h"

#include <gtest/gtest.h>

#include "simulator/bytes.h"

namespace boiler {
namespace {

std::string Bytes(std::string_view hex) { return *ParseHexBytes(hex); }

std::string Meaning(std::string_view hex) { return ModbusMeaning(ParseModbusRequest(Bytes(hex))); }

int Length(std::string_view hex) {
  const auto length = ModbusRequestLength(hex.empty() ? "" : Bytes(hex));
  return length ? static_cast<int>(*length) : -1;
}

TEST(ModbusCheck, StandsBehindTheFrameLowByteFirst) {
  EXPECT_EQ(HexText(WithModbusCheck(Bytes("01 03 00 10 00 01"))), "01 03 00 10 00 01 85 CF");
  EXPECT_EQ(HexText(WithModbusCheck(Bytes("01 83 02"))), "01 83 02 C0 F1");
}

TEST(ModbusCheck, HoldsForTheWholeFrameAlone) {
  const std::string frame = Bytes("01 03 02 12 5A 34 DF");
  EXPECT_TRUE(ModbusCheckHolds(frame));
  EXPECT_FALSE(ModbusCheckHolds(frame + '\x01'));
  EXPECT_FALSE(ModbusCheckHolds('\0' + frame));
  EXPECT_FALSE(ModbusCheckHolds(Bytes("01 03 02 12 5A DF 34")));
  EXPECT_FALSE(ModbusCheckHolds(""));
  for (std::size_t length = 0; length < frame.size(); ++length) {
    EXPECT_FALSE(ModbusCheckHolds(frame.substr(0, length))) << length;
  }
  for (std::size_t at = 0; at < frame.size(); ++at) {
    std::string wrong = frame;
    wrong[at] = static_cast<char>(wrong[at] ^ 0x80);
    EXPECT_FALSE(ModbusCheckHolds(wrong)) << at;
  }
}

// A property of the check itself: where nothing is left over, a 00 changes nothing.
TEST(ModbusCheck, DoesNotSeeAZeroBehindTheFrame) {
  EXPECT_TRUE(ModbusCheckHolds(Bytes("01 03 02 12 5A 34 DF 00")));
  EXPECT_TRUE(ModbusCheckHolds(Bytes("01 03 02 12 5A 34 DF 00 00")));
}

TEST(ModbusCheck, DoesNotHoldForABareCheck) {
  EXPECT_FALSE(ModbusCheckHolds(Bytes("FF FF")));
  EXPECT_FALSE(ModbusCheckHolds(Bytes("01 7E 80")));
}

TEST(ModbusRequestLength, FollowsFromTheFunction) {
  EXPECT_EQ(Length(""), -1);
  EXPECT_EQ(Length("01"), -1);
  for (const char* begun : {"01 03", "01 04", "01 06", "01 03 00 10 00 01 85"}) {
    EXPECT_EQ(Length(begun), 8);
  }
  EXPECT_EQ(Length("01 10"), -1);
  EXPECT_EQ(Length("01 10 02 00 00 02"), -1);
  EXPECT_EQ(Length("01 10 02 00 00 02 04"), 13);
  EXPECT_EQ(Length("01 10 02 00 00 02 FF 01"), 264);
}

TEST(ModbusRequestLength, IsNotToldOfAnotherFunction) {
  for (int function = 0; function < 256; ++function) {
    const bool known = function == 3 || function == 4 || function == 6 || function == 16;
    const int length =
        Length("01 " + HexDigits(static_cast<unsigned>(function), 2) + " 00 00 00 00 04 00 00 00");
    EXPECT_EQ(length > 0, known) << function;
  }
}

TEST(ParseModbusRequest, ReadsAllThatTheSlaveKnows) {
  EXPECT_EQ(Meaning("01 03 00 10 00 01 85 CF"), "read 1 holding register 0010, slave 1");
  EXPECT_EQ(Meaning("F7 04 00 02 00 7D 00 00"), "read 125 input registers from 0002, slave 247");
  EXPECT_EQ(Meaning("01 06 02 00 12 5A 04 E9"), "write 1 holding register 0200 125A, slave 1");
  EXPECT_EQ(Meaning("01 10 02 00 00 02 04 12 34 56 78 91 FB"),
            "write 2 holding registers from 0200 1234 5678, slave 1");
  EXPECT_EQ(Meaning("00 06 02 00 12 5A 05 38"),
            "write 1 holding register 0200 125A, to all slaves");
  EXPECT_EQ(Meaning("01 2B 0E 01 00 70 77"), "function 43, slave 1");
}

TEST(ParseModbusRequest, SeesCountsThatDoNotAgree) {
  EXPECT_TRUE(ParseModbusRequest(Bytes("01 10 02 00 00 02 04 12 34 56 78 91 FB")).counts_agree);
  EXPECT_FALSE(ParseModbusRequest(Bytes("01 10 02 00 00 01 04 12 34 56 78 91 FB")).counts_agree);
  EXPECT_FALSE(ParseModbusRequest(Bytes("01 10 02 00 00 02 03 12 34 56 91 FB")).counts_agree);
  EXPECT_FALSE(ParseModbusRequest(Bytes("01 10 02 00 80 02 04 12 34 56 78 91 FB")).counts_agree);
  EXPECT_TRUE(ParseModbusRequest(Bytes("01 03 00 10 00 01 85 CF")).counts_agree);
}

}  // namespace
}  // namespace boiler
