#include "tools/link_frame.h"

#include <gtest/gtest.h>

#include "protocols/modbus_frame.h"
#include "protocols/tarnlink_frame.h"
#include "protocols/zolt_message.h"
#include "support/byte_text.h"
#include "tools/link_meaning.h"

namespace tarnlink {
namespace {

using enum LinkProtocol;
using enum FrameRole;

std::string Zolt(std::uint8_t type, int id, int data, std::string_view slave = "3") {
  return BuildZoltMessage(type, slave, id, static_cast<std::uint8_t>(data >> 8),
                          static_cast<std::uint8_t>(data));
}

std::string Modbus(std::string_view hexadecimal) {
  return modbus_frame::FinishFrame(Bytes(hexadecimal));
}

std::string TarnLink(std::string_view body) {
  std::string frame = "\4" + std::string(body);
  const std::string sum = HexText(std::string(1, static_cast<char>(calc_checksum(frame))));
  return frame + sum + "\3";
}

// "none", or begin and length.
std::string Found(LinkProtocol protocol, std::string_view bytes) {
  const auto place = FindFrame(protocol, bytes);
  return place ? std::to_string(place->begin) + "+" + std::to_string(place->length) : "none";
}

const std::string kZoltRead = Zolt(0x01, 0x0001, 0);
const std::string kModbusRead = Modbus("0A 03 00 10 00 02");
const std::string kTarnLinkRead = tarnlink_frame::ReadRequest('\5', "01A0");

TEST(LinkFrame, ARequestTellsItsProtocol) {
  EXPECT_EQ(ProtocolOfRequest(kZoltRead), kZolt);
  EXPECT_EQ(ProtocolOfRequest(kModbusRead), kModbus);
  EXPECT_EQ(ProtocolOfRequest(kTarnLinkRead), kTarnLink);
  EXPECT_EQ(ProtocolOfRequest(tarnlink_frame::WriteRequest('\6', "0000", "0")), kTarnLink)
      << "A sum of one digit.";
  EXPECT_EQ(ProtocolOfRequest(modbus_frame::ReadRequest("0D", 3, "0010", 1)), kModbus)
      << "Slave 13 begins as a ZOLT frame does.";
}

TEST(LinkFrame, ARequestThatIsWrongOnPurposeIsOfTheProtocolThatItLooksLike) {
  std::string wrong = kZoltRead;
  wrong[12] ^= 1;
  EXPECT_EQ(ProtocolOfRequest(wrong), kZolt);
  EXPECT_EQ(ProtocolOfRequest(kZoltRead.substr(0, 9)), kZolt);
  EXPECT_EQ(ProtocolOfRequest("hello"), kNone);
  EXPECT_EQ(ProtocolOfRequest(""), kNone);
}

TEST(LinkFrame, FindsTheFirstWholeFrame) {
  EXPECT_EQ(Found(kZolt, kZoltRead), "0+16");
  EXPECT_EQ(Found(kZolt, "xy" + kZoltRead + kZoltRead), "2+16");
  EXPECT_EQ(Found(kZolt, "\r" + kZoltRead), "1+16") << "A start byte too many.";
  EXPECT_EQ(Found(kZolt, kZoltRead.substr(0, 15)), "none");
  EXPECT_EQ(Found(kModbus, Modbus("0A 03 04 00 01 00 02")), "0+9");
  EXPECT_EQ(Found(kModbus, kModbusRead), "0+8");
  EXPECT_EQ(Found(kModbus, Bytes("FF") + Modbus("0A 83 02")), "1+5");
  EXPECT_EQ(Found(kModbus, Modbus("0A 06 00 10 12 34")), "0+8");
  EXPECT_EQ(Found(kModbus, Modbus("0A 03 04 00 01 00 02").substr(0, 8)), "none");
  EXPECT_EQ(Found(kTarnLink, TarnLink("\00501A02A")), "0+11");
  EXPECT_EQ(Found(kTarnLink, "\3" + TarnLink("\00101A0F02A")), "1+13");
  EXPECT_EQ(Found(kTarnLink, "\4\00501A02A00\3"), "none");
  EXPECT_EQ(Found(kNone, kZoltRead), "none");
  EXPECT_EQ(Found(kModbus, ""), "none");
}

TEST(LinkFrame, ABrokenBitIsNoFrame) {
  for (const LinkProtocol protocol : {kZolt, kModbus, kTarnLink}) {
    const std::string sound = protocol == kZolt     ? kZoltRead
                              : protocol == kModbus ? Modbus("0A 03 02 12 34")
                                                    : TarnLink("\00501A02A");
    ASSERT_EQ(Found(protocol, sound), "0+" + std::to_string(sound.size()));
    for (std::size_t at = 0; at < sound.size(); ++at) {
      std::string broken = sound;
      broken[at] ^= 0x10;
      EXPECT_EQ(Found(protocol, broken), "none") << HexText(broken);
    }
  }
}

TEST(LinkFrame, WhatCanBeNoFrameAnyMoreIsLost) {
  EXPECT_EQ(LostBytes(kZolt, ""), 0U);
  EXPECT_EQ(LostBytes(kZolt, "\r123"), 0U);
  EXPECT_EQ(LostBytes(kZolt, "12"), 2U);
  EXPECT_EQ(LostBytes(kZolt, "12\r3"), 2U);
  EXPECT_EQ(LostBytes(kZolt, "\r12\r3"), 3U) << "Another frame begins before the first has ended.";
  EXPECT_EQ(LostBytes(kZolt, "\r123456789012345"), 16U);
  EXPECT_EQ(LostBytes(kModbus, "123456789012345678"), 0U) << "Where it would begin nobody knows.";
}

TEST(LinkFrame, SlavesByTheirProtocol) {
  EXPECT_EQ(SlaveOfFrame(kZolt, kZoltRead), "3");
  EXPECT_EQ(SlaveOfFrame(kModbus, kModbusRead), "10");
  EXPECT_EQ(SlaveOfFrame(kTarnLink, kTarnLinkRead), "");
  EXPECT_EQ(SlaveOfFrame(kNone, "x"), "");
  EXPECT_EQ(SlaveOfFrame(kModbus, ""), "");
}

TEST(LinkFrame, WhatAnswersARequestOfZolt) {
  const auto role = [](const std::string& frame) { return RoleOf(kZolt, kZoltRead, frame); };
  EXPECT_EQ(role(Zolt(0x11, 0x0001, 0x2A00)), kAnswer);
  EXPECT_EQ(role(Zolt(0x21, 0x0009, 0)), kRefusal) << "A corrupted message bears any ID.";
  EXPECT_EQ(role(Zolt(0x41, 0x0001, 0)), kRefusal);
  EXPECT_EQ(role(Zolt(0x61, 0x0001, 0)), kRefusal);
  EXPECT_EQ(role(Zolt(0x61, 0x0002, 0)), kOther);
  EXPECT_EQ(role(Zolt(0x11, 0x0002, 0)), kOther);
  EXPECT_EQ(role(Zolt(0x12, 0x0001, 0)), kOther);
  EXPECT_EQ(role(Zolt(0x11, 0x0001, 0, "4")), kOther);
  EXPECT_EQ(role(Zolt(0x91, 0x0001, 0)), kOther) << "Nobody has written.";
  EXPECT_EQ(role(kZoltRead), kEcho);
  EXPECT_EQ(RoleOf(kZolt, Zolt(0x81, 0x0001, 5), Zolt(0x91, 0x0001, 5)), kAnswer);
}

TEST(LinkFrame, WhatAnswersARequestOfModbus) {
  const auto role = [](const std::string& frame) { return RoleOf(kModbus, kModbusRead, frame); };
  EXPECT_EQ(role(Modbus("0A 03 04 00 01 00 02")), kAnswer);
  EXPECT_EQ(role(Modbus("0A 03 02 00 01")), kOther) << "One register less.";
  EXPECT_EQ(role(Modbus("0B 03 04 00 01 00 02")), kOther);
  EXPECT_EQ(role(Modbus("0A 04 04 00 01 00 02")), kOther);
  EXPECT_EQ(role(Modbus("0A 83 02")), kRefusal);
  EXPECT_EQ(role(Modbus("0A 84 02")), kOther);
  EXPECT_EQ(role(kModbusRead), kEcho);
  const std::string write = Modbus("0A 06 00 10 12 34");
  EXPECT_EQ(RoleOf(kModbus, write, write), kAnswer) << "So it is acknowledged.";
  EXPECT_EQ(RoleOf(kModbus, write, Modbus("0A 06 00 11 12 34")), kOther);
}

TEST(LinkFrame, WhatAnswersARequestOfTarnLink) {
  const auto role = [](const std::string& frame) {
    return RoleOf(kTarnLink, kTarnLinkRead, frame);
  };
  EXPECT_EQ(role(TarnLink("\00501A02A")), kAnswer);
  EXPECT_EQ(role(TarnLink("\00501A12A")), kOther);
  EXPECT_EQ(role(kTarnLinkRead), kEcho);
  const std::string write = tarnlink_frame::WriteRequest('\6', "01A0", "2A");
  EXPECT_EQ(RoleOf(kTarnLink, write, write), kAnswer);
}

TEST(LinkFrame, ARequestThatIsTooShortIsAnsweredByNothing) {
  EXPECT_EQ(RoleOf(kZolt, "\r\1", kZoltRead), kOther);
  EXPECT_EQ(RoleOf(kNone, "whatever", kZoltRead), kOther);
}

// --- What they mean ------------------------------------------------------------------------------

TEST(LinkMeaning, Requests) {
  EXPECT_EQ(RequestMeaning(kZolt, kZoltRead), "slave 3: read class 1, ID 0001");
  EXPECT_EQ(RequestMeaning(kZolt, Zolt(0x85, 0x0123, 0x2A00)),
            "slave 3: write class 5, ID 0123: 2A00");
  ZoltMessages memory;
  EXPECT_EQ(RequestMeaning(kZolt, memory.BuildZoltAddressMessage(0x07, "A", 0xF412, 0)),
            "slave A: read memory F412");
  EXPECT_EQ(RequestMeaning(kZolt, memory.BuildZoltAddressMessage(0x87, "A", 0xF412, 0x5A)),
            "slave A: write memory F412: 5A");
  EXPECT_EQ(RequestMeaning(kZolt, Zolt(0x87, 0x1234, 0x56)),
            "slave 3: write memory, alias 1234, 00: 56");
  EXPECT_EQ(RequestMeaning(kModbus, kModbusRead),
            "slave 10: read 2 registers from 0010, function 3");
  EXPECT_EQ(RequestMeaning(kModbus, Modbus("01 04 00 10 00 01")),
            "slave 1: read 1 register from 0010, function 4");
  EXPECT_EQ(RequestMeaning(kModbus, Modbus("0A 06 00 10 12 34")),
            "slave 10: write register 0010, function 6: 1234");
  EXPECT_EQ(RequestMeaning(kTarnLink, kTarnLinkRead), "read byte 01A0");
  EXPECT_EQ(RequestMeaning(kTarnLink, tarnlink_frame::ReadRequest('\1', "01A0")), "read word 01A0");
  EXPECT_EQ(RequestMeaning(kTarnLink, tarnlink_frame::WriteRequest('\6', "01A0", "2A")),
            "write 01A0: 2A");
  EXPECT_EQ(RequestMeaning(kModbus, Modbus("0A 06 00")), "slave 10: a message, function 6");
  EXPECT_EQ(RequestMeaning(kNone, "x"), "a frame of no known protocol");
}

TEST(LinkMeaning, ARequestOfSeveralRegistersSaysHowMany) {
  const std::vector<std::string> values = {"0001", "0002"};
  const std::string request = modbus_frame::WriteSeveralRequest("01", "0010", values);
  EXPECT_EQ(RequestMeaning(kModbus, request), "slave 1: write 2 registers from 0010, function 16");
}

TEST(LinkMeaning, ARequestThatIsWrongOnPurposeSaysSo) {
  std::string wrong = kZoltRead;
  wrong[12] ^= 1;
  EXPECT_EQ(RequestMeaning(kZolt, wrong), "slave 3: read class 1, ID 0001 (wrong on purpose)");
  EXPECT_EQ(RequestMeaning(kZolt, "\r\1"), "2 bytes (wrong on purpose)");
}

TEST(LinkMeaning, Answers) {
  const auto zolt = [](const std::string& request, const std::string& frame) {
    return AnswerMeaning(kZolt, request, frame);
  };
  EXPECT_EQ(zolt(kZoltRead, Zolt(0x11, 0x0001, 0x2A00)), "slave 3: class 1, ID 0001 is 2A00");
  EXPECT_EQ(zolt("", Zolt(0x85, 0x0123, 5)), "slave 3: write class 5, ID 0123: 0005");
  EXPECT_EQ(zolt(kZoltRead, Zolt(0x21, 0, 0)), "slave 3: Corrupted Message");
  EXPECT_EQ(zolt(kZoltRead, Zolt(0x41, 1, 0)), "slave 3: Parameter outside range, ID 0001");
  EXPECT_EQ(zolt(kZoltRead, Zolt(0x61, 1, 0)), "slave 3: Unknown Data ID 0001");
  ZoltMessages memory;
  const std::string read = memory.BuildZoltAddressMessage(0x07, "3", 0xF412, 0);
  EXPECT_EQ(zolt(read, Zolt(0x17, 0xFFAB, 0x1234)), "slave 3: memory F412 is 1234");
  EXPECT_EQ(zolt("", Zolt(0x17, 0xFFAB, 0x1234)), "slave 3: memory is 1234");
  EXPECT_EQ(zolt("", Zolt(0x97, 0xFCFD, 0x125A)), "slave 3: memory F412 is written: 5A");
  EXPECT_EQ(AnswerMeaning(kModbus, kModbusRead, Modbus("0A 03 04 00 01 AB CD")),
            "slave 10: values 0001 ABCD");
  EXPECT_EQ(AnswerMeaning(kModbus, "", Modbus("0A 83 02")), "slave 10: exception 2 to function 3");
  EXPECT_EQ(AnswerMeaning(kModbus, "", Modbus("0A 10 00 10 00 02")),
            "slave 10: register 0010 is written, function 16");
  EXPECT_EQ(AnswerMeaning(kModbus, "", kModbusRead),
            "slave 10: read 2 registers from 0010, function 3");
  EXPECT_EQ(AnswerMeaning(kTarnLink, kTarnLinkRead, TarnLink("\00501A02A")), "01A0 is 2A");
  EXPECT_EQ(AnswerMeaning(kTarnLink, "", TarnLink("\00101A0F02A")), "01A0 is F02A");
  EXPECT_EQ(AnswerMeaning(kTarnLink, "", kTarnLinkRead), "read byte 01A0");
}

TEST(LinkMeaning, BytesThatAreNoFrame) {
  EXPECT_EQ(BadBytesMeaning(kZolt, "x"), "1 byte that is no whole frame");
  EXPECT_EQ(BadBytesMeaning(kZolt, "\r23456789012345"), "15 bytes that are no whole frame");
  EXPECT_EQ(BadBytesMeaning(kZolt, "\r234567890123456"), "a frame whose check is broken");
  EXPECT_EQ(BadBytesMeaning(kTarnLink, "\4\00501A02A00\3"), "a frame whose check is broken");
  EXPECT_EQ(BadBytesMeaning(kTarnLink, "\4\00501A02A00"), "10 bytes that are no whole frame");
  EXPECT_EQ(BadBytesMeaning(kModbus, "12345"), "a frame whose check is broken");
  EXPECT_EQ(BadBytesMeaning(kModbus, "1234"), "4 bytes that are no whole frame");
}

TEST(LinkMeaning, BytesInPairsOfDigits) {
  EXPECT_EQ(BytesInHex(Bytes("0D 01 FF")), "0D 01 FF");
  EXPECT_EQ(BytesInHex(""), "");
}

}  // namespace
}  // namespace tarnlink
