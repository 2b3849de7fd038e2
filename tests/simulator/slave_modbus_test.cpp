#include "simulator/slave_modbus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/bytes.h"
#include "simulator/memory_layout.h"
#include "slave_stream.h"

namespace boiler {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::string_view kRead = "01 03 02 00 00 01 85 B2";
constexpr std::string_view kWriteTwo = "01 10 02 00 00 02 04 12 34 56 78 91 FB";
constexpr char kReadTold[] = "read 1 holding register 0200, slave 1";

// Of the bytes given in hexadecimal, with a check behind them.
std::string Checked(std::string_view hex) { return HexText(WithModbusCheck(*ParseHexBytes(hex))); }

class ModbusStream : public ::testing::Test {
 protected:
  std::vector<std::string> Hear(std::string_view hex) { return HearHex(slave_, hex); }
  std::string Silence() { return boiler::Silence(slave_); }

  ModbusSlave slave_;
};

TEST_F(ModbusStream, FindsOneFrame) {
  EXPECT_THAT(Hear(kRead), ElementsAre(kReadTold));
  EXPECT_FALSE(slave_.Waiting());
  EXPECT_EQ(Silence(), "nothing");
}

TEST_F(ModbusStream, FindsAFrameByteByByteAndSplitAnywhere) {
  const std::string frame = *ParseHexBytes(kWriteTwo);
  for (std::size_t at = 1; at < frame.size(); ++at) {
    EXPECT_THAT(boiler::Hear(slave_, frame.substr(0, at)), IsEmpty());
    EXPECT_TRUE(slave_.Waiting());
    EXPECT_FALSE(slave_.EndsInSilence());
    EXPECT_THAT(boiler::Hear(slave_, frame.substr(at)),
                ElementsAre("write 2 holding registers from 0200 1234 5678, slave 1"));
  }
}

TEST_F(ModbusStream, FindsFramesThatCameTogether) {
  EXPECT_THAT(
      Hear(std::string(kRead) + " " + std::string(kWriteTwo) + " " + std::string(kRead)),
      ElementsAre(kReadTold, "write 2 holding registers from 0200 1234 5678, slave 1", kReadTold));
}

TEST_F(ModbusStream, LosesAFrameBehindGarbageAndTakesTheNextAfterASilence) {
  EXPECT_THAT(Hear("55 03 AA " + std::string(kRead)), IsEmpty());
  EXPECT_TRUE(slave_.EndsInSilence());
  EXPECT_EQ(Silence(), "55 03 AA " + std::string(kRead) + ": the check is wrong");
  EXPECT_FALSE(slave_.Waiting());
  EXPECT_THAT(Hear(kRead), ElementsAre(kReadTold));
}

TEST_F(ModbusStream, TakesAFrameThatASilencePartsFromGarbage) {
  EXPECT_THAT(Hear("55"), IsEmpty());
  EXPECT_EQ(Silence(), "55: incomplete");
  EXPECT_THAT(Hear("FF 00 12"), IsEmpty());
  EXPECT_TRUE(slave_.EndsInSilence());
  EXPECT_EQ(Silence(), "FF 00 12: incomplete");
  EXPECT_THAT(Hear("FF 00 12 34"), IsEmpty());
  EXPECT_EQ(Silence(), "FF 00 12 34: the check is wrong");
  EXPECT_THAT(Hear(kRead), ElementsAre(kReadTold));
}

TEST_F(ModbusStream, IgnoresAWrongCheckAndAllBehindItUpToASilence) {
  EXPECT_THAT(Hear("01 03 02 00 00 01 85 B3"), IsEmpty());
  EXPECT_THAT(Hear(kRead), IsEmpty());
  EXPECT_EQ(Silence(), "01 03 02 00 00 01 85 B3 " + std::string(kRead) + ": the check is wrong");
  EXPECT_EQ(Silence(), "nothing");
  EXPECT_THAT(Hear(kRead), ElementsAre(kReadTold));
}

TEST_F(ModbusStream, ReportsLongNoiseInHandfuls) {
  const std::string noise = *ParseHexBytes("01 03 FF FF FF FF FF FF") + std::string(130, 'x');
  EXPECT_THAT(boiler::Hear(slave_, noise),
              ElementsAre(HexText(noise.substr(0, 64)) + ": the check is wrong",
                          HexText(noise.substr(64, 64)) + ": the check is wrong"));
  EXPECT_EQ(Silence(), HexText(noise.substr(128)) + ": the check is wrong");
}

TEST_F(ModbusStream, GivesUpAFunctionWithoutEnd) {
  const std::string endless = "\x01\x2B" + std::string(300, 'x');
  EXPECT_THAT(boiler::Hear(slave_, endless),
              ElementsAre(HexText(endless.substr(0, 258)) + ": no end in sight"));
  EXPECT_EQ(Silence(), HexText(endless.substr(258)) + ": no end in sight");
}

TEST_F(ModbusStream, ListensAgainAfterASilenceThatFollowsAHandfulOfNoise) {
  const std::string noise = *ParseHexBytes("01 03 FF FF FF FF FF FF") + std::string(56, 'x');
  EXPECT_THAT(boiler::Hear(slave_, noise), ElementsAre(HexText(noise) + ": the check is wrong"));
  EXPECT_TRUE(slave_.Waiting());
  EXPECT_EQ(Silence(), "nothing");
  EXPECT_FALSE(slave_.Waiting());
  EXPECT_THAT(Hear(kRead), ElementsAre(kReadTold));
}

TEST_F(ModbusStream, TakesAnUnknownFunctionWhenTheLineFallsSilent) {
  EXPECT_THAT(Hear("01 2B 0E 01 00 70 77"), IsEmpty());
  EXPECT_TRUE(slave_.EndsInSilence());
  EXPECT_EQ(Silence(), "function 43, slave 1");
  EXPECT_FALSE(slave_.Waiting());
}

TEST_F(ModbusStream, DropsAnIncompleteFrameInSilence) {
  Hear("01 03 02 00 00 01 85");
  EXPECT_EQ(Silence(), "01 03 02 00 00 01 85: incomplete");
  EXPECT_THAT(Hear(kRead), ElementsAre(kReadTold));
}

TEST_F(ModbusStream, IgnoresOtherSlaves) {
  for (const char* slave : {"02", "0A", "F7", "F8", "FF"}) {
    const std::string other = Checked(std::string(slave) + " 03 02 00 00 01");
    EXPECT_THAT(Hear(other + " " + std::string(kRead)),
                ElementsAre(other + ": for another slave", kReadTold));
  }
  const std::string unknown = Checked("02 2B 0E 01 00");
  Hear(unknown);
  EXPECT_EQ(Silence(), unknown + ": for another slave");
}

TEST_F(ModbusStream, TakesWritesToAllSlavesButNoReads) {
  EXPECT_THAT(Hear("00 06 02 00 12 5A 05 38"),
              ElementsAre("write 1 holding register 0200 125A, to all slaves"));
  EXPECT_THAT(Hear("00 03 02 00 00 01 84 63"),
              ElementsAre("00 03 02 00 00 01 84 63: nobody answers all slaves"));
  const std::string unknown = Checked("00 2B 0E 01 00");
  Hear(unknown);
  EXPECT_EQ(Silence(), unknown + ": nobody answers all slaves");
}

TEST_F(ModbusStream, HasNothingLeftAfterForgetting) {
  Hear("01 03 02");
  slave_.Forget();
  EXPECT_FALSE(slave_.Waiting());
  Hear("01 03 02 00 00 01 85 B3");
  slave_.Forget();
  EXPECT_FALSE(slave_.Waiting());
  EXPECT_THAT(Hear(kRead), ElementsAre(kReadTold));
}

TEST_F(ModbusStream, AccountsForEveryByteOfAnyStream) {
  ExpectAccountForEveryByte(slave_, "\x01\x03", *ParseHexBytes(kRead));
  ExpectAccountForEveryByte(slave_, "\x01\x2B", *ParseHexBytes(kWriteTwo));
}

TEST(ModbusSlave, AnswersUnderAllItsAddressesAndNoOther) {
  ModbusSlave slave({1, 17, 247});
  std::vector<int> answering;
  for (int address = 0; address < 256; ++address) {
    const std::string head = HexDigits(static_cast<unsigned>(address), 2);
    const auto told = HearHex(slave, Checked(head + " 03 02 00 00 01"));
    ASSERT_EQ(told.size(), 1u);
    if (told[0].starts_with("read")) answering.push_back(address);
  }
  EXPECT_THAT(answering, ElementsAre(1, 17, 247));
}

TEST(ModbusSlave, CanHaveAllFaults) { EXPECT_THAT(Misfits(ModbusSlave()), IsEmpty()); }

class ModbusAnswers : public ::testing::Test {
 protected:
  // The answer to a request whose check is put behind it.
  std::string Answer(std::string_view hex, WriteEffect effect = WriteEffect::kStored) {
    const Request request{WithModbusCheck(*ParseHexBytes(hex)), false, ""};
    return HexText(slave_.Answer(request, controller_, effect));
  }
  int Word(std::uint16_t address) { return controller_.memory().Word(address); }
  int Get(std::string_view item) { return controller_.Value(Item(item)); }

  Controller controller_{1};
  ModbusSlave slave_{{1, 17}};
};

TEST_F(ModbusAnswers, GiveRegistersHighByteFirst) {
  controller_.WriteWord(0xF400, 0x125A);
  EXPECT_EQ(Answer("01 03 02 00 00 01"), "01 03 02 12 5A 34 DF");
  EXPECT_EQ(Answer("01 03 02 00 00 02"), "01 03 04 12 5A 00 00 DF 58");
  EXPECT_EQ(Answer("11 03 02 00 00 01"), Checked("11 03 02 12 5A"));
}

TEST_F(ModbusAnswers, GiveLiveValuesByBothReadFunctions) {
  controller_.Set(Item("flow_temperature"), 456);
  controller_.Set(Item("return_temperature"), 391);
  EXPECT_EQ(Answer("01 03 00 02 00 02"), Checked("01 03 04 01 C8 01 87"));
  EXPECT_EQ(Answer("01 04 00 02 00 02"), Checked("01 04 04 01 C8 01 87"));
  EXPECT_EQ(Answer("01 03 00 10 00 01"), Checked("01 03 02 00 00"));
}

TEST_F(ModbusAnswers, GiveAsManyRegistersAsFitIntoAFrame) {
  EXPECT_EQ(ParseHexBytes(Answer("01 03 02 00 00 7D"))->size(), 255u);
  EXPECT_EQ(Answer("01 03 02 00 00 7E"), Checked("01 83 03"));
}

TEST_F(ModbusAnswers, StoreOneRegisterAndEchoTheRequest) {
  EXPECT_EQ(Answer("01 06 02 00 12 5A"), "01 06 02 00 12 5A 04 E9");
  EXPECT_EQ(Word(0xF400), 0x125A);
}

TEST_F(ModbusAnswers, StoreSeveralRegistersAndSayHowMany) {
  EXPECT_EQ(Answer("01 10 02 00 00 02 04 12 34 56 78"), "01 10 02 00 00 02 40 70");
  EXPECT_EQ(Word(0xF400), 0x1234);
  EXPECT_EQ(Word(0xF402), 0x5678);
}

TEST_F(ModbusAnswers, StoreAsManyRegistersAsFitIntoAFrame) {
  std::string values;
  for (int i = 0; i < 123; ++i) values += " 11 22";
  EXPECT_EQ(Answer("01 10 02 00 00 7B F6" + values), Checked("01 10 02 00 00 7B"));
  EXPECT_EQ(Word(0xF4F4), 0x1122);
  EXPECT_EQ(Word(0xF4F6), 0);
  EXPECT_EQ(Answer("01 10 02 00 00 7C F8" + values + " 11 22"), Checked("01 90 03"));
}

TEST_F(ModbusAnswers, CarryOutAWriteToAllSlavesInSilence) {
  EXPECT_EQ(Answer("00 06 02 00 12 5A"), "");
  EXPECT_EQ(Word(0xF400), 0x125A);
  EXPECT_EQ(Answer("00 10 02 00 00 01 02 AB CD"), "");
  EXPECT_EQ(Word(0xF400), 0xABCD);
  EXPECT_EQ(Answer("00 06 03 00 12 5A"), "");
}

TEST_F(ModbusAnswers, RefuseAnUnknownFunctionWithOne) {
  EXPECT_EQ(Answer("01 2B 0E 01 00"), "01 AB 01 9E F0");
  EXPECT_EQ(Answer("01 01 00 00 00 01"), Checked("01 81 01"));
  EXPECT_EQ(Answer("01 00"), Checked("01 80 01"));
}

TEST_F(ModbusAnswers, RefuseARegisterThatIsNotThereWithTwo) {
  EXPECT_EQ(Answer("01 03 00 33 00 01"), "01 83 02 C0 F1");
  EXPECT_EQ(Answer("01 03 00 32 00 02"), "01 83 02 C0 F1");
  EXPECT_EQ(Answer("01 03 FF FF 00 02"), "01 83 02 C0 F1");
  EXPECT_EQ(Answer("01 04 01 00 00 01"), "01 84 02 C2 C1");
  EXPECT_EQ(Answer("01 06 03 00 00 01"), "01 86 02 C3 A1");
  EXPECT_EQ(Answer("01 10 02 FF 00 02 04 00 01 00 02"), Checked("01 90 02"));
  EXPECT_EQ(Answer("01 10 FF FF 00 02 04 00 01 00 02"), Checked("01 90 02"));
  EXPECT_EQ(Word(0xF5FE), 0);
}

TEST_F(ModbusAnswers, RefuseAWriteToALiveRegisterWithTwo) {
  EXPECT_EQ(Answer("01 06 00 02 00 01"), "01 86 02 C3 A1");
  EXPECT_EQ(Answer("01 10 00 21 00 01 02 00 01"), Checked("01 90 02"));
}

TEST_F(ModbusAnswers, RefuseACountThatCannotBeWithThree) {
  EXPECT_EQ(Answer("01 03 02 00 00 00"), Checked("01 83 03"));
  EXPECT_EQ(Answer("01 04 00 00 00 7E"), Checked("01 84 03"));
  EXPECT_EQ(Answer("01 03 77 77 FF FF"), Checked("01 83 03"));
  EXPECT_EQ(Answer("01 10 02 00 00 00 00"), "01 90 03 0C 01");
  EXPECT_EQ(Answer("01 10 02 00 00 02 02 12 34"), "01 90 03 0C 01");
  EXPECT_EQ(Answer("01 10 02 00 00 01 03 12 34 56"), "01 90 03 0C 01");
  EXPECT_EQ(Word(0xF400), 0);
}

TEST_F(ModbusAnswers, RefuseAValueOutsideItsRangeWithThree) {
  EXPECT_EQ(Answer("01 06 01 00 00 56"), "01 86 03 02 61");
  EXPECT_EQ(Answer("01 06 01 00 00 1D"), "01 86 03 02 61");
  EXPECT_EQ(Answer("01 06 01 02 01 00"), "01 86 03 02 61");
  EXPECT_EQ(Answer("01 06 01 00 00 55"), Checked("01 06 01 00 00 55"));
  EXPECT_EQ(Get("flow_setpoint"), 85);
}

TEST_F(ModbusAnswers, CarryOutAllOfAWriteOrNothing) {
  EXPECT_EQ(Answer("01 10 01 00 00 02 04 00 46 00 46"), Checked("01 90 03"));
  EXPECT_EQ(Get("flow_setpoint"), 60);
  EXPECT_EQ(Answer("01 10 01 00 00 02 04 00 46 00 41"), Checked("01 10 01 00 00 02"));
  EXPECT_EQ(Get("flow_setpoint"), 70);
  EXPECT_EQ(Get("dhw_setpoint"), 65);
}

TEST_F(ModbusAnswers, LookAtRegistersBeforeValues) {
  EXPECT_EQ(Answer("01 10 01 06 00 02 04 FF FF FF FF"), Checked("01 90 02"));
}

TEST_F(ModbusAnswers, SayThatTheyStoredWhatTheyForget) {
  EXPECT_EQ(Answer("01 06 02 00 12 5A", WriteEffect::kForgotten), "01 06 02 00 12 5A 04 E9");
  EXPECT_EQ(Word(0xF400), 0);
}

TEST_F(ModbusAnswers, RefuseAWriteThatTheyRejectWithThree) {
  EXPECT_EQ(Answer("01 06 02 00 12 5A", WriteEffect::kRejected), "01 86 03 02 61");
  EXPECT_EQ(Answer("01 10 02 00 00 01 02 12 34", WriteEffect::kRejected), "01 90 03 0C 01");
  EXPECT_EQ(Word(0xF400), 0);
}

TEST_F(ModbusAnswers, SayThatTheyAreBusyWithSix) {
  const auto busy = [&](std::string_view hex) {
    return HexText(slave_.BusyAnswer({WithModbusCheck(*ParseHexBytes(hex)), false, ""}));
  };
  EXPECT_EQ(busy("01 03 02 00 00 01"), "01 83 06 C1 32");
  EXPECT_EQ(busy("11 10 02 00 00 01 02 00 00"), Checked("11 90 06"));
  EXPECT_EQ(busy("00 06 02 00 00 01"), "");
}

}  // namespace
}  // namespace boiler
