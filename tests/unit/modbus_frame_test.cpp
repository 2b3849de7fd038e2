#include "protocols/modbus_frame.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "common/run_time_error.h"
#include "monitor/location_table.h"
#include "support/byte_text.h"
#include "support/prefixes.h"

namespace tarnlink::modbus_frame {
namespace {

struct Response {
  std::string bytes;
  std::uint8_t function;
  int nreg;
};

const std::vector<Response> kResponses = {
    {"01 03 02 12 34 B5 33", 3, 1},    {"01 03 06 00 01 00 02 00 03 FD 74", 3, 3},
    {"01 06 00 10 12 34 85 78", 6, 1}, {"01 10 00 20 00 02 40 02", 16, 2},
    {"01 83 02 C0 F1", 0x83, 1},
};

std::string Written(const std::string& value, std::uint8_t select_byte) {
  return HexText(WriteOneRequest("1", "0010", value, select_byte));
}

// --- The CRC -----------------------------------------------------------------------------------

TEST(ModbusCrc, HasTheKnownCheckValue) {
  EXPECT_EQ(Crc("123456789"), 0x4B37);
  EXPECT_EQ(HexText(Calc_Crc_Modbus2("123456789")), "37 4B");
}

TEST(ModbusCrc, OfNothingIsItsStartValue) {
  EXPECT_EQ(Crc(""), 0xFFFF);
  EXPECT_EQ(HexText(Calc_Crc_Modbus2("")), "FF FF");
}

TEST(ModbusCrc, CountsTheWholeText) {
  EXPECT_EQ(HexText(Calc_Crc_Modbus2(Bytes("01 03 00 10 00 01"))), "85 CF");
  EXPECT_EQ(HexText(Calc_Crc_Modbus2(Bytes("0A 10 00 20 00 02 04 00 0A 01 02"))), "74 C0");
  EXPECT_NE(Crc(std::string(300, 'a') + "b"), Crc(std::string(300, 'a') + "c"));
}

TEST(ModbusCrc, BehindItsTextLeavesZero) {
  for (int code = 0; code < 256; ++code) {
    const std::string text(static_cast<std::size_t>(code % 7), static_cast<char>(code));
    EXPECT_EQ(Crc(text + Calc_Crc_Modbus2(text)), 0) << code;
  }
}

TEST(ModbusCrc, IsTwoCharactersAlsoWhenAByteIsZero) {
  EXPECT_EQ(HexText(Calc_Crc_Modbus2(Bytes("FF FF"))), "00 00");
}

// --- Texts to bytes ----------------------------------------------------------------------------

TEST(ModbusSlaveByte, IsReadAsHexadecimal) {
  EXPECT_EQ(SlaveByte("0A"), 10);
  EXPECT_EQ(SlaveByte("1"), 1);
  EXPECT_EQ(SlaveByte("10"), 16);
  EXPECT_EQ(SlaveByte("f7"), 0xF7);
  EXPECT_EQ(SlaveByte("FF"), 255);
  EXPECT_EQ(SlaveByte("001"), 1);
}

TEST(ModbusSlaveByte, IsZeroWithoutDigitsAndStopsAtWhatIsNone) {
  EXPECT_EQ(SlaveByte(""), 0);
  EXPECT_EQ(SlaveByte("x1"), 0);
  EXPECT_EQ(SlaveByte(" 1"), 0);
  EXPECT_EQ(SlaveByte("1x"), 1);
}

TEST(ModbusSlaveByte, BeyondAByteIsAnAddressThatNoSlaveHas) {
  for (const std::string text : {"100", "101", "FFFF", "8000", "10000", "FFFFFFFF", "FFFFFFFFF"}) {
    EXPECT_EQ(SlaveByte(text), 255) << text;
  }
}

TEST(ModbusRegisterBytes, AreTwoPairsOfDigits) {
  EXPECT_EQ(HexText(RegisterBytes("0010")), "00 10");
  EXPECT_EQ(HexText(RegisterBytes("ABCD")), "AB CD");
  EXPECT_EQ(HexText(RegisterBytes("abcd")), "AB CD");
  EXPECT_EQ(HexText(RegisterBytes("12345")), "12 34");
}

TEST(ModbusRegisterBytes, ReadEachPairByItself) {
  EXPECT_EQ(HexText(RegisterBytes("291")), "29 01");
  EXPECT_EQ(HexText(RegisterBytes("29")), "29 00");
  EXPECT_EQ(HexText(RegisterBytes("7")), "07 00");
  EXPECT_EQ(HexText(RegisterBytes("")), "00 00");
  EXPECT_EQ(HexText(RegisterBytes("G1 1")), "00 00");
  EXPECT_EQ(HexText(RegisterBytes("1GF ")), "01 0F");
  EXPECT_EQ(HexText(RegisterBytes("-512")), "00 12");
  EXPECT_EQ(HexText(RegisterBytes("No n")), "00 00");
}

// --- Requests ----------------------------------------------------------------------------------

TEST(ModbusRequest, ReadsARegister) {
  EXPECT_EQ(HexText(ReadRequest("1", 3, "0010", 1)), "01 03 00 10 00 01 85 CF");
}

TEST(ModbusRequest, ReadsWithTheSlaveFunctionAndCountThatAreGiven) {
  const std::string frame = ReadRequest("0A", 4, "ABCD", 20);
  EXPECT_EQ(HexText(frame.substr(0, 6)), "0A 04 AB CD 00 14");
  EXPECT_EQ(frame.size(), 8U);
  EXPECT_EQ(Crc(frame), 0);
}

TEST(ModbusRequest, CarriesTheBytesOfAContinuousWriteBeforeTheCount) {
  const std::string held = RegisterBytes("0291") + RegisterBytes("0291");
  EXPECT_EQ(HexText(ReadRequest("1", 4, "0010", 2, Bytes("02 91 02 91"))),
            "01 04 00 10 02 91 02 91 00 02 2F 68");
  EXPECT_EQ(held, Bytes("02 91 02 91"));
}

TEST(ModbusRequest, HoldsTheCountInsideAByte) {
  const auto count = [](int nreg) {
    return HexText(ReadRequest("1", 3, "0010", nreg).substr(4, 2));
  };
  EXPECT_EQ(count(0), "00 00");
  EXPECT_EQ(count(255), "00 FF");
  EXPECT_EQ(count(256), "00 FF");
  EXPECT_EQ(count(32767), "00 FF");
  EXPECT_EQ(count(-1), "00 00");
}

TEST(ModbusRequest, WritesAByteIntoItsHalfOfARegister) {
  EXPECT_EQ(Written("12", kMsb), "01 06 00 10 12 00 84 AF");
  EXPECT_EQ(Written("12", kLsb), "01 06 00 10 00 12 08 02");
  EXPECT_EQ(Written("5", kMsb).substr(12, 5), "05 00");
  EXPECT_EQ(Written("5", kLsb).substr(12, 5), "00 05");
  EXPECT_EQ(Written("", kLsb).substr(12, 5), "00 00");
  EXPECT_EQ(Written("0102", kLsb).substr(12, 5), "00 02");
}

TEST(ModbusRequest, WritesAWord) {
  EXPECT_EQ(Written("1234", kBoth), "01 06 00 10 12 34 85 78");
  EXPECT_EQ(Written("12", kBoth).substr(12, 5), "00 12");
  EXPECT_EQ(Written("123", kBoth).substr(12, 5), "01 23");
  EXPECT_EQ(Written("", kBoth).substr(12, 5), "00 00");
  EXPECT_EQ(Written("G234", kBoth).substr(12, 5), "00 34");
}

TEST(ModbusRequest, WritesTheFirstTwoAndTheLastTwoDigitsOfALongerWord) {
  EXPECT_EQ(Written("123456", kBoth).substr(12, 5), "12 56");
}

TEST(ModbusRequest, WritesNoValueForASelectionThatIsNone) {
  EXPECT_EQ(Written("1234", 3), HexText(FinishFrame(Bytes("01 06 00 10"))));
  EXPECT_EQ(Written("1234", 255), HexText(FinishFrame(Bytes("01 06 00 10"))));
}

TEST(ModbusRequest, WritesSeveralRegisters) {
  const std::vector<std::string> values = {"000A", "0102"};
  EXPECT_EQ(HexText(WriteSeveralRequest("0A", "0020", values)),
            "0A 10 00 20 00 02 04 00 0A 01 02 74 C0");
}

TEST(ModbusRequest, WritesTheLastFourDigitsOfEachOfSeveral) {
  const std::vector<std::string> values = {"", "7", "123456", "abcd", "xyz1"};
  const std::string frame = WriteSeveralRequest("1", "0000", values);
  EXPECT_EQ(HexText(frame.substr(4, 3)), "00 05 0A");
  EXPECT_EQ(HexText(frame.substr(7, 10)), "00 00 00 07 34 56 AB CD 00 00");
  EXPECT_EQ(Crc(frame), 0);
}

TEST(ModbusRequest, WritesTwentyRegistersAndNone) {
  const std::string frame = WriteSeveralRequest("1", "0000", std::vector<std::string>(20, "FFFF"));
  EXPECT_EQ(frame.size(), 7U + 40U + 2U);
  EXPECT_EQ(HexText(frame.substr(4, 3)), "00 14 28");
  EXPECT_EQ(HexText(WriteSeveralRequest("1", "0000", {}).substr(0, 7)), "01 10 00 00 00 00 00");
}

TEST(ModbusRequest, BeginsWithSlaveFunctionAndRegister) {
  EXPECT_EQ(HexText(Begin("0A", 5, "0010")), "0A 05 00 10");
  EXPECT_EQ(HexText(FinishFrame(Begin("1", 5, "0010"))), "01 05 00 10 10 15");
}

// --- Responses ---------------------------------------------------------------------------------

TEST(ModbusResponse, IsAsLongAsItsFunctionSays) {
  EXPECT_EQ(ExpectedLength(3, 1), 7);
  EXPECT_EQ(ExpectedLength(4, 1), 7);
  EXPECT_EQ(ExpectedLength(3, 20), 45);
  EXPECT_EQ(ExpectedLength(3, 0), 5);
  EXPECT_EQ(ExpectedLength(4, 32767), 65539);
  EXPECT_EQ(ExpectedLength(4, -3), -1);
  for (int function = 0; function < 256; ++function) {
    if (function == 3 || function == 4) continue;
    EXPECT_EQ(ExpectedLength(static_cast<std::uint8_t>(function), 9),
              function == 6 || function == 16 ? 8 : 5)
        << function;
  }
}

TEST(ModbusResponse, WithTheRightCrcIsGood) {
  for (const Response& r : kResponses) {
    EXPECT_TRUE(IsGood(Bytes(r.bytes), r.function, r.nreg)) << r.bytes;
  }
}

TEST(ModbusResponse, ThatIsCutIsBad) {
  for (const Response& r : kResponses) {
    const std::string whole = Bytes(r.bytes);
    ForEveryPrefix(whole, [&](std::string_view prefix) {
      EXPECT_EQ(IsGood(prefix, r.function, r.nreg), prefix.size() == whole.size());
    });
  }
}

TEST(ModbusResponse, WithAWrongBitIsBad) {
  for (const Response& r : kResponses) {
    const std::string whole = Bytes(r.bytes);
    for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
      std::string damaged = whole;
      damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
      EXPECT_FALSE(IsGood(damaged, r.function, r.nreg)) << HexText(damaged);
    }
  }
}

TEST(ModbusResponse, IsRefusedWhenItIsShortOrOneOfItsBytesIsWrong) {
  const std::vector<Response> refused = {
      {"", 3, 1},
      {"FF", 3, 1},
      {"FF FF", 3, 1},
      {"00 00", 3, 1},
      {"01 03 02 12 34 33 B5", 3, 1},     // CRC high byte first
      {"01 03 02 12 34 B5 33 00", 3, 1},  // a byte too many
      {"00 01 03 02 12 34 B5 33", 3, 1},  // noise in front
      {"01 03 02 12 34 B5 33", 3, 2},     // of one register where two were asked
      {"01 03 02 12 34 B5 33", 3, 0},     //
      {"01 03 02 12 34 B5 33", 6, 1},     // by the length of a write
      {"01 03 02 12 34 B5 33", 0x83, 1},  // by that of an exception
      {"01 03 06 00 01 00 02 00 03 FD 74", 3, 1},
      {"01 83 02 C0 F1", 3, 1},     // an exception taken for a read
      {"01 83 03 C0 F1", 0x83, 1},  // another code
      {"01 06 00 10 12 34 85 78", 3, 1},
      {"01 06 00 10 12 34 85 78 85", 6, 1},
      {"01 10 00 20 00 02 02 40", 16, 2},
      {"01 10 00 20 00 02 40", 16, 2},
      {"0D 01 30 30 30 30 31 30 30 30 30 44 37 41 46 0A", 3, 1},
      {"04 01 30 31 41 30 44 33 03", 4, 1},
  };
  for (const Response& r : refused) {
    EXPECT_FALSE(IsGood(Bytes(r.bytes), r.function, r.nreg)) << r.bytes;
  }
}

TEST(ModbusResponse, CountsTheLastTwoBytesWhereverTheyStand) {
  EXPECT_TRUE(IsGood(Bytes("01 03 02 12 34 AA BB CC B5 33"), 3, 1));
  EXPECT_TRUE(IsGood(Bytes("01 03 02 12 34 B5 33 B5 33"), 3, 1));
  EXPECT_TRUE(IsGood(Bytes("01 83 02 00 00 00 C0 F1"), 0x83, 1));
}

TEST(ModbusResponse, ThatIsTooShortCountsWhole) {
  // Texts whose own last bytes are their CRC: one chance in 65536.
  EXPECT_TRUE(IsGood(Bytes("00 40"), 3, 1));
  EXPECT_TRUE(IsGood(Bytes("01 03 02 4D 1D"), 3, 1));
  EXPECT_FALSE(IsGood(Bytes("01 03 02 4D 1D"), 0x83, 1));
}

TEST(ModbusResponse, OfACountBelowZeroIsNeverGood) {
  EXPECT_FALSE(IsGood(Bytes("01 03 02 12 34 B5 33"), 3, -2));
  EXPECT_FALSE(IsGood(Bytes("FF FF"), 3, -2));
  EXPECT_FALSE(IsGood(Bytes("FF FF"), 3, -32768));
  EXPECT_FALSE(IsGood("", 3, -3));
}

TEST(ModbusResponse, IsAnExceptionAboveFunction128) {
  for (int function = 0; function < 256; ++function) {
    EXPECT_EQ(IsException(static_cast<std::uint8_t>(function)), function > 128) << function;
  }
}

TEST(ModbusResponse, HasItsPartsByPosition) {
  const std::string read = Bytes("01 03 06 00 01 80 02 FF 03 00 00");
  EXPECT_EQ(FunctionOf(read), 3);
  EXPECT_EQ(RegisterAt(read, 0).high, 0x00);
  EXPECT_EQ(RegisterAt(read, 0).low, 0x01);
  EXPECT_EQ(RegisterAt(read, 1).high, 0x80);
  EXPECT_EQ(RegisterAt(read, 1).low, 0x02);
  EXPECT_EQ(RegisterAt(read, 2).high, 0xFF);
  EXPECT_EQ(RegisterAt(read, 2).low, 0x03);
  EXPECT_EQ(FunctionOf(Bytes("01 83 02 C0 F1")), 0x83);
  EXPECT_EQ(ExceptionCode(Bytes("01 83 02 C0 F1")), 2);
}

TEST(ModbusResponse, ThatEndsBeforeAPartIsARunTimeError) {
  ForEveryPrefix(Bytes("01 03 02 12 34"), [](std::string_view prefix) {
    const auto expect = [&](std::size_t needed, auto part) {
      if (prefix.size() >= needed) {
        EXPECT_NO_THROW(part());
      } else {
        EXPECT_THROW(part(), RunTimeError);
      }
    };
    expect(2, [&] { FunctionOf(prefix); });
    expect(3, [&] { ExceptionCode(prefix); });
    expect(5, [&] { RegisterAt(prefix, 0); });
    expect(7, [&] { RegisterAt(prefix, 1); });
  });
}

}  // namespace
}  // namespace tarnlink::modbus_frame
