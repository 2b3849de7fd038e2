#include "simulator/slave_zolt.h"

#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/bytes.h"
#include "slave_stream.h"

namespace boiler {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string Frame(int type, char slave, std::string_view id, std::string_view data) {
  return BuildZoltFrame(static_cast<char>(type), slave, id, data);
}

const std::string kReadSensor = *ParseHexBytes("0D 04 30 30 30 46 31 30 30 30 30 44 44 41 32 0A");
const std::string kWriteF400 = *ParseHexBytes("0D 87 30 46 43 46 44 30 30 35 41 34 42 45 46 0A");
constexpr char kSensorRead[] = "read class 4 ID 00F1, slave 0";

class ZoltStream : public ::testing::Test {
 protected:
  std::vector<std::string> Hear(const std::string& bytes) { return boiler::Hear(slave_, bytes); }
  std::string Silence() { return boiler::Silence(slave_); }

  ZoltSlave slave_;
};

TEST_F(ZoltStream, FindsOneFrame) {
  EXPECT_THAT(Hear(kReadSensor), ElementsAre(kSensorRead));
  EXPECT_FALSE(slave_.Waiting());
}

TEST_F(ZoltStream, FindsAFrameByteByByteAndSplitAnywhere) {
  for (std::size_t at = 1; at < kReadSensor.size(); ++at) {
    EXPECT_THAT(Hear(kReadSensor.substr(0, at)), IsEmpty());
    EXPECT_TRUE(slave_.Waiting());
    EXPECT_THAT(Hear(kReadSensor.substr(at)), ElementsAre(kSensorRead));
  }
}

TEST_F(ZoltStream, SaysWhatIsAskedFor) {
  EXPECT_THAT(
      Hear(Frame(0x07, '0', "FFAB", "F400") + kWriteF400 + Frame(0x85, '0', "056D", "3C00") +
           Frame(0x87, '0', "FFAB", "F400") + Frame(0x07, '0', "????", "F400")),
      ElementsAre("read memory F400, slave 0", "write 5A to memory F400, slave 0",
                  "write 3C00 to class 5 ID 056D, slave 0",
                  "write F400 to class 7 ID FFAB, slave 0", "corrupted, no digits, slave 0"));
}

TEST_F(ZoltStream, LooksPastNoiseBetweenFrames) {
  EXPECT_THAT(
      Hear("ab\xFF" + kReadSensor + "\n\x03" + kReadSensor),
      ElementsAre("61 62 FF: outside a frame", kSensorRead, "0A 03: outside a frame", kSensorRead));
}

TEST_F(ZoltStream, BeginsAnewAtEachStartByte) {
  EXPECT_THAT(Hear(kReadSensor.substr(0, 5) + kReadSensor),
              ElementsAre("0D 04 30 30 30: a new frame began inside", kSensorRead));
  EXPECT_THAT(
      Hear(kReadSensor.substr(0, 15) + "\r\r" + kReadSensor),
      ElementsAre(HexText(kReadSensor.substr(0, 15)) + ": a new frame began inside",
                  "0D: a new frame began inside", "0D: a new frame began inside", kSensorRead));
}

TEST_F(ZoltStream, GivesUpAFrameWithoutEndAndTakesTheNext) {
  std::string endless = kReadSensor;
  endless.back() = '0';
  EXPECT_THAT(Hear(endless + "00" + kReadSensor),
              ElementsAre(HexText(endless) + ": no line feed at the end", "30 30: outside a frame",
                          kSensorRead));
}

TEST_F(ZoltStream, DropsAnIncompleteFrameInSilence) {
  Hear(kReadSensor.substr(0, 15));
  EXPECT_FALSE(slave_.EndsInSilence());
  EXPECT_EQ(Silence(), HexText(kReadSensor.substr(0, 15)) + ": incomplete");
  EXPECT_EQ(Silence(), "nothing");
  EXPECT_THAT(Hear("\n"), IsEmpty());
  EXPECT_EQ(Silence(), "0A: outside a frame");
  EXPECT_THAT(Hear(kReadSensor), ElementsAre(kSensorRead));
}

TEST_F(ZoltStream, IgnoresAWrongCheckAndTakesTheNextFrame) {
  std::string wrong = kReadSensor;
  wrong[14] = '3';
  EXPECT_THAT(Hear(wrong + kReadSensor),
              ElementsAre(HexText(wrong) + ": the check should be DDA2", kSensorRead));
}

TEST_F(ZoltStream, IgnoresAnswers) {
  const std::string answer = Frame(0x14, '0', "00F1", "2D88");
  EXPECT_THAT(Hear(answer), ElementsAre(HexText(answer) + ": not the type of a request"));
}

TEST_F(ZoltStream, IgnoresOtherSlaves) {
  for (const char slave : {'1', '9', 'A', 'F', 'a', ' ', '\xFF'}) {
    const std::string other = Frame(4, slave, "00F1", "0000");
    EXPECT_THAT(Hear(other), ElementsAre(HexText(other) + ": for another slave"));
  }
}

TEST_F(ZoltStream, HasNothingLeftAfterForgetting) {
  Hear(kReadSensor.substr(0, 4));
  slave_.Forget();
  EXPECT_FALSE(slave_.Waiting());
  EXPECT_THAT(Hear(kReadSensor), ElementsAre(kSensorRead));
}

TEST_F(ZoltStream, AccountsForEveryByteOfAnyStream) {
  ExpectAccountForEveryByte(slave_, "\r\x04", kReadSensor);
}

TEST(ZoltSlave, AnswersUnderAllItsAddressesAndNoOther) {
  Controller controller(1);
  ZoltSlave slave("03A");
  std::string answering;
  for (const char address : kZoltSlaves) {
    const std::string request = Frame(1, address, "14D9", "0000");
    const auto told = Hear(slave, request);
    ASSERT_EQ(told.size(), 1u);
    if (told[0] != "read class 1 ID 14D9, slave " + std::string(1, address)) continue;
    answering += address;
    const auto number = static_cast<unsigned>(2040 + kZoltSlaves.find(address));
    EXPECT_EQ(slave.Answer({request, false, ""}, controller, WriteEffect::kStored),
              Frame(0x11, address, "14D9", HexDigits(number, 4)));
  }
  EXPECT_EQ(answering, "03A");
}

TEST(ZoltSlave, SaysThatARequestIsCorruptedWhereItIsAskedTo) {
  Controller controller(1);
  ZoltSlave slave("0", true);
  std::string wrong = kReadSensor;
  wrong[14] = '3';
  EXPECT_THAT(Hear(slave, wrong), ElementsAre("corrupted, the check should be DDA2"));
  EXPECT_EQ(HexText(slave.Answer({wrong, false, ""}, controller, WriteEffect::kStored)),
            HexText(Frame(0x24, '0', "00F1", "0000")));
  std::string other = wrong;
  other[2] = '1';
  EXPECT_THAT(Hear(slave, other), ElementsAre(HexText(other) + ": the check should be 3681"));
  std::string no_request = wrong;
  no_request[1] = 0x14;
  EXPECT_THAT(Hear(slave, no_request),
              ElementsAre(HexText(no_request) + ": not the type of a request"));
}

TEST(ZoltSlave, HasThreeWrongLimitsWhereItIsAskedTo) {
  // The values of the high byte that a write takes.
  const auto taken = [](ZoltSlave& slave, int id) {
    Controller controller(1);
    std::string text;
    bool was_taken = false;
    for (int value = 0; value <= 256; ++value) {
      const std::string request = Frame(0x85, '0', HexDigits(static_cast<unsigned>(id), 4),
                                        HexDigits(static_cast<unsigned>(value % 256) << 8, 4));
      const std::string answer =
          slave.Answer({request, true, ""}, controller, WriteEffect::kStored);
      const bool is_taken = value < 256 && answer[1] == '\x95';
      if (value < 256) {
        EXPECT_EQ(answer[1], is_taken ? '\x95' : '\x45');
      }
      if (is_taken && !was_taken) text += std::to_string(value) + " to ";
      if (!is_taken && was_taken) text += std::to_string(value - 1);
      was_taken = is_taken;
    }
    return text;
  };
  ZoltSlave wrong("0", false, true);
  EXPECT_EQ(taken(wrong, 1389), "29 to 85");
  EXPECT_EQ(taken(wrong, 1524), "35 to 66");
  EXPECT_EQ(taken(wrong, 2311), "40 to 69");
  ZoltSlave right;
  EXPECT_EQ(taken(right, 1389), "30 to 85");
  EXPECT_EQ(taken(right, 1524), "35 to 65");
  EXPECT_EQ(taken(right, 2311), "40 to 70");
  for (const int id : {2352, 2363, 2374, 2385, 2396, 2408}) {
    EXPECT_EQ(taken(wrong, id), taken(right, id)) << id;
  }
}

TEST(ZoltSlave, CanHaveAllFaults) { EXPECT_THAT(Misfits(ZoltSlave()), IsEmpty()); }

class ZoltAnswers : public ::testing::Test {
 protected:
  std::string Answer(const std::string& request, WriteEffect effect = WriteEffect::kStored) {
    return slave_.Answer({request, false, ""}, controller_, effect);
  }
  std::string AnswerHex(const char* hex) { return HexText(Answer(*ParseHexBytes(hex))); }
  int Get(std::string_view item) { return controller_.Value(Item(item)); }

  Controller controller_{1};
  ZoltSlave slave_;
};

TEST_F(ZoltAnswers, GiveAValueInSixteenBytes) {
  controller_.Set(Item("status_high"), 0);
  controller_.Set(Item("status_low"), 0);
  EXPECT_EQ(AnswerHex("0D 01 30 30 30 30 31 30 30 30 30 44 37 41 46 0A"),
            "0D 11 30 30 30 30 31 30 30 30 30 34 33 33 39 0A");
}

TEST_F(ZoltAnswers, DoNotLookAtTheDataOfARead) {
  controller_.Set(Item("flow_temperature"), 456);
  EXPECT_EQ(Answer(Frame(4, '0', "00F1", "1234")), Frame(0x14, '0', "00F1", "2E88"));
}

TEST_F(ZoltAnswers, GiveTwoBytesOfMemoryTheOneAtTheAddressLow) {
  controller_.WriteByte(0xF400, 0x5A);
  controller_.WriteByte(0xF401, 0x12);
  EXPECT_EQ(AnswerHex("0D 07 30 46 46 41 42 46 34 30 30 46 42 44 37 0A"),
            "0D 17 30 46 46 41 42 31 32 35 41 35 46 46 41 0A");
}

TEST_F(ZoltAnswers, GoFromTheEndOfTheMemoryToItsBeginning) {
  controller_.WriteByte(0xFFFF, 0x5A);
  controller_.WriteByte(0x0000, 0x12);
  EXPECT_EQ(Answer(Frame(7, '0', "FFAB", "FFFF")), Frame(0x17, '0', "FFAB", "125A"));
}

TEST_F(ZoltAnswers, StoreAByteOfMemoryAndEchoTheRequest) {
  controller_.WriteWord(0xF400, 0xFFFF);
  EXPECT_EQ(AnswerHex("0D 87 30 46 43 46 44 30 30 35 41 34 42 45 46 0A"),
            "0D 97 30 46 43 46 44 30 30 35 41 44 46 37 39 0A");
  EXPECT_EQ(controller_.memory().Word(0xF400), 0xFF5A);
}

TEST_F(ZoltAnswers, StoreInThePageThatTheIdStandsFor) {
  for (int id = 0; id <= 0xFFFF; ++id) {
    const auto page = ZoltPage(static_cast<std::uint16_t>(id));
    if (!page) continue;
    const std::string digits = HexDigits(static_cast<unsigned>(id), 4);
    EXPECT_EQ(Answer(Frame(0x87, '0', digits, "9C77")), Frame(0x97, '0', digits, "9C77"));
    EXPECT_EQ(controller_.memory().Byte(static_cast<std::uint16_t>(*page << 8 | 0x9C)), 0x77);
  }
}

TEST_F(ZoltAnswers, TakeABlankInAValueForNothing) {
  EXPECT_EQ(Answer(Frame(0x87, '0', "FCFD", "10 5")), Frame(0x97, '0', "FCFD", "10 5"));
  EXPECT_EQ(controller_.memory().Byte(0xF410), 0x05);
}

TEST_F(ZoltAnswers, DoNotKnowOtherIdsOfTheMemory) {
  EXPECT_EQ(AnswerHex("0D 87 30 46 43 46 45 30 30 35 41 45 31 42 45 0A"),
            "0D 67 30 46 43 46 45 30 30 35 41 34 45 39 44 0A");
  EXPECT_EQ(Answer(Frame(0x87, '0', "FFAB", "F400")), Frame(0x67, '0', "FFAB", "F400"));
  EXPECT_EQ(Answer(Frame(0x07, '0', "FCFD", "0000")), Frame(0x67, '0', "FCFD", "0000"));
  EXPECT_EQ(Answer(Frame(0x07, '0', "0001", "0000")), Frame(0x67, '0', "0001", "0000"));
}

TEST_F(ZoltAnswers, StoreAParameterAndEchoTheRequest) {
  EXPECT_EQ(AnswerHex("0D 85 30 30 35 36 44 33 43 30 30 34 45 42 44 0A"),
            "0D 95 30 30 35 36 44 33 43 30 30 44 41 32 42 0A");
  EXPECT_EQ(Get("flow_setpoint"), 0x3C);
}

TEST_F(ZoltAnswers, RefuseAValueOutsideItsLimits) {
  EXPECT_EQ(HexText(Answer(Frame(0x85, '0', "056D", "5600"))),
            "0D 45 30 30 35 36 44 35 36 30 30 43 43 46 32 0A");
  EXPECT_EQ(Answer(Frame(0x85, '0', "056D", "1DFF")), Frame(0x45, '0', "056D", "1DFF"));
  EXPECT_EQ(Get("flow_setpoint"), 60);
}

TEST_F(ZoltAnswers, DoNotKnowIdsOfOtherClasses) {
  for (int data_class = 1; data_class <= 6; ++data_class) {
    const std::string sensor = Answer(Frame(data_class, '0', "00F1", "0000"));
    EXPECT_EQ(static_cast<unsigned char>(sensor[1]), data_class == 4 ? 0x14 : 0x60 + data_class);
  }
  EXPECT_EQ(Answer(Frame(4, '0', "1234", "5678")), Frame(0x64, '0', "1234", "5678"));
}

TEST_F(ZoltAnswers, DoNotKnowAWriteOfWhatCanOnlyBeReadAndTheOtherWayRound) {
  EXPECT_EQ(Answer(Frame(0x84, '0', "00F1", "2000")), Frame(0x64, '0', "00F1", "2000"));
  EXPECT_EQ(Answer(Frame(0x03, '0', "00AB", "AA55")), Frame(0x63, '0', "00AB", "AA55"));
  EXPECT_EQ(Answer(Frame(0x83, '0', "00AB", "AA55")), Frame(0x93, '0', "00AB", "AA55"));
}

TEST_F(ZoltAnswers, GiveAnEntryOfAListByItsPosition) {
  const auto code = static_cast<unsigned>(Get("error_code_7"));
  EXPECT_EQ(Answer(Frame(6, '0', "036B", "0700")),
            Frame(0x16, '0', "036B", "07" + HexDigits(code, 2)));
  EXPECT_EQ(Answer(Frame(6, '0', "036B", "0800")), Frame(0x46, '0', "036B", "0800"));
  EXPECT_EQ(Answer(Frame(6, '0', "0394", "FF00")), Frame(0x46, '0', "0394", "FF00"));
}

TEST_F(ZoltAnswers, CallEverythingCorruptedThatIsNoDigit) {
  EXPECT_EQ(Answer(Frame(1, '0', "0001", "\x01\x02\x03\x04")),
            Frame(0x21, '0', "0001", "\x01\x02\x03\x04"));
  EXPECT_EQ(Answer(Frame(0x87, '0', "????", "105A")), Frame(0x27, '0', "????", "105A"));
}

class ZoltWriteOnce : public ::testing::Test {
 protected:
  std::string Write(const std::string& data, WriteEffect effect = WriteEffect::kStored) {
    return slave_.Answer({Frame(0x87, '0', "FFFE", data), true, ""}, controller_, effect);
  }
  int Byte(std::uint16_t address) const { return controller_.memory().Byte(address); }

  Controller controller_{1};
  ZoltSlave slave_{"0", false, false, {.refusing = {0x8005}, .forgetful = {0x8006}}};
};

TEST_F(ZoltWriteOnce, TakesTheFirstAndRefusesTheNext) {
  EXPECT_EQ(Write("0511"), Frame(0x97, '0', "FFFE", "0511"));
  EXPECT_EQ(Write("0522"), Frame(0x47, '0', "FFFE", "0522"));
  EXPECT_EQ(Write("0511"), Frame(0x47, '0', "FFFE", "0511"));
  EXPECT_EQ(Byte(0x8005), 0x11);
}

TEST_F(ZoltWriteOnce, TakesTheFirstAndForgetsTheNext) {
  EXPECT_EQ(Write("0611"), Frame(0x97, '0', "FFFE", "0611"));
  EXPECT_EQ(Write("0622"), Frame(0x97, '0', "FFFE", "0622"));
  EXPECT_EQ(Byte(0x8006), 0x11);
}

TEST_F(ZoltWriteOnce, CountsOnlyWhatWasStored) {
  Write("0511", WriteEffect::kForgotten);
  Write("0522", WriteEffect::kRejected);
  EXPECT_EQ(Write("0533"), Frame(0x97, '0', "FFFE", "0533"));
  EXPECT_EQ(Byte(0x8005), 0x33);
}

TEST_F(ZoltWriteOnce, RefusesWhatAFaultRefuses) {
  Write("0611");
  EXPECT_EQ(Write("0622", WriteEffect::kRejected), Frame(0x47, '0', "FFFE", "0622"));
}

TEST_F(ZoltWriteOnce, LeavesOtherAddressesAndOtherClassesAlone) {
  for (const char* data : {"0411", "0422", "0711", "0722"}) {
    EXPECT_EQ(Write(data), Frame(0x97, '0', "FFFE", data));
  }
  for (const char* data : {"0505", "0506"}) {
    const std::string frame = Frame(0x87, '0', "FF3D", data);
    slave_.Answer({frame, true, ""}, controller_, WriteEffect::kStored);
    EXPECT_EQ(slave_.Answer({frame, true, ""}, controller_, WriteEffect::kStored),
              Frame(0x97, '0', "FF3D", data));
  }
  EXPECT_EQ(Byte(0x8004), 0x22);
  EXPECT_EQ(Byte(0x8105), 0x06);
}

TEST_F(ZoltAnswers, SayThatTheyStoredWhatTheyForget) {
  EXPECT_EQ(Answer(Frame(0x85, '0', "056D", "3D00"), WriteEffect::kForgotten),
            Frame(0x95, '0', "056D", "3D00"));
  EXPECT_EQ(Answer(kWriteF400, WriteEffect::kForgotten), Frame(0x97, '0', "FCFD", "005A"));
  EXPECT_EQ(Get("flow_setpoint"), 60);
  EXPECT_EQ(controller_.memory().Byte(0xF400), 0);
}

TEST_F(ZoltAnswers, CallAWriteThatTheyRejectOutOfRange) {
  EXPECT_EQ(Answer(Frame(0x85, '0', "056D", "3D00"), WriteEffect::kRejected),
            Frame(0x45, '0', "056D", "3D00"));
  EXPECT_EQ(Answer(kWriteF400, WriteEffect::kRejected), Frame(0x47, '0', "FCFD", "005A"));
  EXPECT_EQ(Get("flow_setpoint"), 60);
  EXPECT_EQ(controller_.memory().Byte(0xF400), 0);
}

}  // namespace
}  // namespace boiler
