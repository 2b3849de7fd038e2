#include "protocols/modbus_protocol.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/run_time_error.h"
#include "protocols/modbus_frame.h"
#include "support/byte_text.h"
#include "unit/noting_run.h"

namespace tarnlink {
namespace {

// The bytes with a CRC that agrees.
std::string Framed(std::string_view hexadecimal) {
  return modbus_frame::FinishFrame(Bytes(hexadecimal));
}

std::string Output(std::string_view hexadecimal) {
  return "output " + HexText(Framed(hexadecimal)) + "\n";
}

// Three registers in a row of slave 1, each shown as four hexadecimal digits.
class ModbusRoutines : public ::testing::Test {
 protected:
  ModbusRoutines() {
    run.fields().CommRunning = true;
    run.fields().MaxId = 3;
    run.visible = {1, 2, 3};
    for (int index = 1; index <= 3; ++index) {
      Location& location = run.locations()[index];
      location.Address = "001" + std::to_string(index - 1);
      location.Alias = "Flow";
      location.LocSlaveAddress = "1";
      location.FunctionCode = "&H03";
    }
  }

  Location& At(int index) { return run.locations()[index]; }

  // The first Location reads them all.
  void MakeBlockOfThree() {
    At(1).NumReg = 3;
    At(2).RegisterFollower = true;
    At(3).RegisterFollower = true;
  }

  // The next poll is of Location `index`. Returns what it did.
  std::string Poll(int index) {
    run.fields().MsgPointer = index - 1;
    run.fields().message_received = false;
    Modbus_Protocol(run);
    return run.TakeNotes();
  }

  // These bytes are the answer. Returns what came of it.
  std::string Take(std::string_view bytes) {
    run.world.port().Receive(bytes);
    ModbusSlaveResponse(run);
    return run.TakeNotes();
  }

  // Location `index` is polled, and its slave answers soundly.
  std::string Exchange(int index, std::string_view answer) {
    Poll(index);
    return Take(Framed(answer));
  }

  std::string Write(int index, std::uint8_t function, const std::string& value) {
    run.fields().Function_code = function;
    BuildModbusWriteMessage(run, index, value);
    return run.TakeNotes();
  }

  NotingRun run;
};

// --- The poll ----------------------------------------------------------------------------------

TEST_F(ModbusRoutines, APollLogsShowsItsLocationAndSends) {
  EXPECT_EQ(Poll(1),
            "log request 1\n"
            "panel 5: 1: Flow\n"
            "output 01 03 00 10 00 01 85 CF\n");
  EXPECT_EQ(run.fields().MsgPointer, 1);
  EXPECT_EQ(run.fields().Function_code, 3);
  EXPECT_EQ(run.fields().Nreg, 1);
  EXPECT_TRUE(run.fields().building);
  EXPECT_FALSE(run.fields().message_received);
  EXPECT_EQ(run.Comm().RThreshold(), 5);
}

TEST_F(ModbusRoutines, APollSetsTheTimeoutWithoutStartingIt) {
  Poll(1);
  EXPECT_EQ(run.tmr_MsgTimeout().Interval(), 2000);
  EXPECT_FALSE(run.tmr_MsgTimeout().Enabled());
  EXPECT_FALSE(run.tmr_noresponse().Enabled());
}

TEST_F(ModbusRoutines, TheSlaveAddressIsHexadecimal) {
  At(1).LocSlaveAddress = "0A";
  EXPECT_TRUE(Poll(1).ends_with("output 0A 03 00 10 00 01 84 B4\n"));
  At(1).LocSlaveAddress = "10";
  EXPECT_TRUE(Poll(1).ends_with(Output("10 03 00 10 00 01")));
}

TEST_F(ModbusRoutines, TheFunctionIsTheLocations) {
  At(1).FunctionCode = "&H04";
  EXPECT_TRUE(Poll(1).ends_with(Output("01 04 00 10 00 01")));
  EXPECT_EQ(run.fields().Function_code, 4);
  At(1).FunctionCode = "&H00";
  EXPECT_TRUE(Poll(1).ends_with(Output("01 00 00 10 00 01")));
  At(1).FunctionCode = "&H10";
  EXPECT_TRUE(Poll(1).ends_with(Output("01 10 00 10 00 01")));
}

TEST_F(ModbusRoutines, AFunctionThatIsNoByteIsTheNearestOne) {
  for (const auto& [text, frame] :
       {std::pair{"259", "01 FF 00 10 00 01"}, std::pair{"1E300", "01 FF 00 10 00 01"},
        std::pair{"&HFFFF", "01 00 00 10 00 01"}}) {
    At(1).FunctionCode = text;
    EXPECT_TRUE(Poll(1).ends_with(Output(frame))) << text;
  }
}

TEST_F(ModbusRoutines, ABlockOfNothingIsAskedForAndNotShown) {
  for (const int count : {0, -1}) {
    At(1).NumReg = static_cast<std::int16_t>(count);
    EXPECT_EQ(Poll(1), "log request 1\n" + Output("01 03 00 10 00 00")) << count;
  }
}

TEST_F(ModbusRoutines, APollLeavesWhatHasComeInTheBuffer) {
  run.world.port().Receive("\x01\x03");
  Poll(1);
  EXPECT_EQ(run.Comm().InBufferCount(), 2);
}

TEST_F(ModbusRoutines, AHiddenLocationIsSkippedWithoutARequest) {
  run.visible = {1, 3};
  At(2).FunctionCode = "&H04";
  At(2).NumReg = 7;
  EXPECT_EQ(Poll(2), "log request 2\n");
  EXPECT_EQ(run.fields().MsgPointer, 2);
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_FALSE(run.fields().building);
  EXPECT_EQ(run.fields().Function_code, 4);
  EXPECT_EQ(run.fields().Nreg, 7);
}

TEST_F(ModbusRoutines, WithoutARunTheRequestGoesOutButNoLocationIsShown) {
  run.fields().CommRunning = false;
  At(1).ScanFlags = kContinuousWrite;
  EXPECT_EQ(Poll(1), "log request 1\noutput 01 03 00 10 00 01 85 CF\n");
}

TEST_F(ModbusRoutines, AClosedPortIsSentNothing) {
  run.Comm().SetPortOpen(false);
  EXPECT_EQ(Poll(1), "log request 1\npanel 5: 1: Flow\n");
  EXPECT_FALSE(run.fields().message_received);
  EXPECT_TRUE(run.world.port().frames().empty());
}

TEST_F(ModbusRoutines, PassesOverWhatIsNotScanned) {
  At(1).ScanFlags = kScanningDisabled;
  Poll(1);
  EXPECT_EQ(run.fields().MsgPointer, 2);
  At(1).ScanFlags = kScanningDisabled | kContinuousWrite;
  Poll(1);
  EXPECT_EQ(run.fields().MsgPointer, 1);
}

TEST_F(ModbusRoutines, ABlockIsReadByItsFirstLocationAndItsFollowersArePassedOver) {
  MakeBlockOfThree();
  EXPECT_TRUE(Poll(1).ends_with("output 01 03 00 10 00 03 04 0E\n"));
  EXPECT_EQ(run.fields().Nreg, 3);

  Modbus_Protocol(run);
  EXPECT_EQ(run.fields().MsgPointer, 0);
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_EQ(run.TakeNotes(), "log request 0\n");

  Modbus_Protocol(run);
  EXPECT_EQ(run.fields().MsgPointer, 1);
}

TEST_F(ModbusRoutines, WithNothingToPollTheRunIsStopped) {
  for (int index = 0; index <= 3; ++index) At(index).ScanFlags = kScanningDisabled;
  EXPECT_TRUE(Poll(2).starts_with("stop\n"));
  EXPECT_EQ(run.fields().MsgPointer, 0);
  EXPECT_TRUE(run.world.port().frames().empty());
}

TEST_F(ModbusRoutines, AContinuousWriteHoldsItsValueBetweenRegisterAndCount) {
  struct Case {
    std::int32_t value;
    std::string bytes;
  };
  At(1).ScanFlags = kContinuousWrite;
  for (const Case& c : {Case{1234, "12 34"}, Case{65535, "65 53"}, Case{291, "29 01"},
                        Case{5, "05 00"}, Case{0, "00 00"}}) {
    At(1).RawValue = c.value;
    EXPECT_TRUE(Poll(1).ends_with(Output("01 03 00 10 " + c.bytes + " 00 01"))) << c.value;
  }
}

TEST_F(ModbusRoutines, AContinuousWriteOfABlockRepeatsTheFirstLocationsValue) {
  MakeBlockOfThree();
  At(1).ScanFlags = kContinuousWrite | kScanningDisabled;
  At(1).RawValue = 1234;
  At(2).RawValue = 5678;
  EXPECT_TRUE(Poll(1).ends_with(Output("01 03 00 10 12 34 12 34 12 34 00 03")));
}

// --- Registers that were read ------------------------------------------------------------------

TEST_F(ModbusRoutines, AResponseShowsRecordsAndEndsTheExchange) {
  run.tmr_noresponse().SetEnabled(true);
  run.tmr_MsgTimeout().SetEnabled(true);
  run.fields().write_message = true;
  EXPECT_EQ(Exchange(1, "01 03 02 12 34"), "value 1: 1234\nrecord 1\n");
  EXPECT_EQ(At(1).RawValue, 0x1234);
  EXPECT_FALSE(run.tmr_noresponse().Enabled());
  EXPECT_FALSE(run.tmr_MsgTimeout().Enabled());
  EXPECT_EQ(run.Comm().InBufferCount(), 0);
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_FALSE(run.fields().write_message);
  EXPECT_EQ(run.fields().MsgPointer, 1);
}

TEST_F(ModbusRoutines, TheSignOfAWordBeginsAbove8000) {
  At(1).Representation = kDecimal;
  At(1).StorageType = kSignedWord;
  EXPECT_EQ(Exchange(1, "01 03 02 80 00"), "value 1: 32768\nrecord 1\n");
  EXPECT_EQ(Exchange(1, "01 03 02 80 01"), "value 1: -32767\nrecord 1\n");
  EXPECT_EQ(At(1).RawValue, 0x8001);
  At(1).StorageType = kUnsignedWord;
  EXPECT_EQ(Exchange(1, "01 03 02 80 01"), "value 1: 32769\nrecord 1\n");
}

TEST_F(ModbusRoutines, SelectByteTakesOneByteOfTheRegister) {
  At(1).SelectByte = kMsb;
  EXPECT_EQ(Exchange(1, "01 03 02 12 34"), "value 1: 12\nrecord 1\n");
  EXPECT_EQ(At(1).RawValue, 0x12);
  At(1).SelectByte = kLsb;
  EXPECT_EQ(Exchange(1, "01 03 02 12 34"), "value 1: 34\nrecord 1\n");
  EXPECT_EQ(At(1).RawValue, 0x34);
  At(1).SelectByte = 3;
  EXPECT_EQ(Exchange(1, "01 03 02 12 34"), "value 1: 1234\nrecord 1\n");
}

TEST_F(ModbusRoutines, TheSignOfAByteBeginsAt80) {
  At(1).SelectByte = kLsb;
  At(1).Representation = kDecimal;
  At(1).StorageType = kSignedByte;
  EXPECT_EQ(Exchange(1, "01 03 02 12 7F"), "value 1: 127\nrecord 1\n");
  EXPECT_EQ(Exchange(1, "01 03 02 12 80"), "value 1: -128\nrecord 1\n");
}

TEST_F(ModbusRoutines, NeitherSlaveNorByteCountOfAResponseIsCompared) {
  EXPECT_EQ(Exchange(1, "07 03 FF 12 34"), "value 1: 1234\nrecord 1\n");
  EXPECT_EQ(Exchange(1, "01 04 02 56 78"), "value 1: 5678\nrecord 1\n");
}

TEST_F(ModbusRoutines, ABlockFillsItsLocationsInOrderEachByItsOwnFields) {
  MakeBlockOfThree();
  At(2).Representation = kDecimal;
  At(3).SelectByte = kMsb;
  EXPECT_EQ(Exchange(1, "01 03 06 00 01 01 00 2A 2B"),
            "value 1: 0001\nrecord 1\n"
            "value 2: 256\nrecord 2\n"
            "value 3: 2A\nrecord 3\n");
}

TEST_F(ModbusRoutines, TheRegisterOfTheLastLocationEndsTheRound) {
  MakeBlockOfThree();
  run.fields().DDERowCounter = 7;
  Exchange(1, "01 03 06 00 01 00 02 00 03");
  EXPECT_EQ(run.fields().MsgPointer, 0);
  EXPECT_EQ(run.fields().DDERowCounter, 8);

  run.fields().filelogging = true;
  EXPECT_TRUE(
      Exchange(1, "01 03 06 00 01 00 02 00 03").ends_with("value 3: 0003\nrecord 3\nend of row\n"));
}

TEST_F(ModbusRoutines, ABlockThatRunsOverTheEndLandsOnTheFirstLocations) {
  run.fields().filelogging = true;
  run.fields().DDERowCounter = 7;
  At(3).NumReg = 3;
  EXPECT_EQ(Exchange(3, "01 03 06 00 0A 00 0B 00 0C"),
            "value 3: 000A\nrecord 3\nend of row\n"
            "value 1: 000B\nrecord 1\n"
            "value 2: 000C\nrecord 2\n");
  EXPECT_EQ(run.fields().MsgPointer, 0);
  EXPECT_EQ(run.fields().DDERowCounter, 8);
}

TEST_F(ModbusRoutines, ABitShowsItsState) {
  At(1).StorageType = kBit;
  At(1).SelectByte = kLsb;
  At(1).BitAddress = 3;
  EXPECT_EQ(Exchange(1, "01 03 02 00 08"), "value 1: TRUE\nrecord 1\n");
  EXPECT_EQ(Exchange(1, "01 03 02 08 F7"), "value 1: FALSE\nrecord 1\n");
}

TEST_F(ModbusRoutines, WhetherABlockShowsBitsGoesByItsFirstLocation) {
  MakeBlockOfThree();
  At(1).StorageType = kBit;
  At(1).SelectByte = kLsb;
  At(2).SelectByte = kLsb;
  At(2).BitAddress = 1;
  // A whole word has no bit of its own and shows the one before.
  EXPECT_EQ(Exchange(1, "01 03 06 00 00 00 02 00 00"),
            "value 1: FALSE\nrecord 1\n"
            "value 2: TRUE\nrecord 2\n"
            "value 3: TRUE\nrecord 3\n");

  At(1).StorageType = kUnsignedByte;
  At(2).StorageType = kBit;
  EXPECT_EQ(Exchange(1, "01 03 06 00 00 00 02 00 00"),
            "value 1: 00\nrecord 1\n"
            "value 2: 02\nrecord 2\n"
            "value 3: 0000\nrecord 3\n");
}

TEST_F(ModbusRoutines, PastTheEndWhatShowsABitGoesByTheTemplate) {
  At(3).StorageType = kBit;
  At(3).SelectByte = kLsb;
  At(3).NumReg = 2;
  EXPECT_EQ(Exchange(3, "01 03 04 00 01 00 0B"),
            "value 3: TRUE\nrecord 3\n"
            "value 1: 000B\nrecord 1\n");
}

// --- Exceptions and what is no response --------------------------------------------------------

TEST_F(ModbusRoutines, AnExceptionIsToldAndTheValueStays) {
  EXPECT_EQ(Exchange(1, "01 83 02"), "panel 6: Exception code:2\n");
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_EQ(run.fields().MsgPointer, 1);
  EXPECT_EQ(Exchange(1, "01 90 FF"), "panel 6: Exception code:255\n");
}

TEST_F(ModbusRoutines, AnExceptionLeavesItsFunctionUntilTheNextPoll) {
  Exchange(1, "01 83 02");
  EXPECT_EQ(run.fields().Function_code, 0x83);
  Modbus_Protocol(run);
  EXPECT_EQ(run.fields().Function_code, 3);
}

TEST_F(ModbusRoutines, AFunctionThatIsNeitherReadWrittenNorRefusedShowsNothing) {
  for (const std::string answer : {"01 80 02", "01 05 02", "01 00 02"}) {
    EXPECT_EQ(Exchange(1, answer), "") << answer;
    EXPECT_TRUE(run.fields().message_received) << answer;
  }
}

TEST_F(ModbusRoutines, AWrongCrcShowsNothingAndThePollGoesOn) {
  for (const std::string answer : {"01 03 02 12 34 B5 32", "01 03 02 12 35 B5 33", "01 83 02 C0 F0",
                                   "01 06 00 10 12 34 85 79", "01 10 00 20 00 02 41 02"}) {
    Poll(1);
    run.fields().write_message = true;
    EXPECT_EQ(Take(Bytes(answer)), "") << answer;
    EXPECT_TRUE(run.fields().message_received) << answer;
    EXPECT_FALSE(run.fields().write_message) << answer;
    EXPECT_EQ(run.fields().MsgPointer, 1) << answer;
  }
}

TEST_F(ModbusRoutines, AResponseCutShortShowsNothingAndThePollGoesOn) {
  const std::string whole = Framed("01 03 02 12 34");
  for (std::size_t length = 2; length < whole.size(); ++length) {
    Poll(1);
    EXPECT_EQ(Take(whole.substr(0, length)), "") << length;
    EXPECT_TRUE(run.fields().message_received) << length;
  }
}

TEST_F(ModbusRoutines, ASingleByteIsLeftToTheWatchdog) {
  Poll(1);
  EXPECT_THROW(Take("\x01"), RunTimeError);
  EXPECT_FALSE(run.fields().message_received);
}

TEST_F(ModbusRoutines, NothingAtAllEndsTheExchangeToo) {
  Poll(1);
  EXPECT_EQ(Take(""), "");
  EXPECT_EQ(run.fields().Function_code, 3);
  EXPECT_TRUE(run.fields().message_received);
}

TEST(ModbusCheckMessage, IsTrueForABadFrame) {
  const std::string good = Bytes("01 03 02 12 34 B5 33");
  EXPECT_FALSE(CheckMessage(good, 3, 1));
  EXPECT_TRUE(CheckMessage(good, 3, 2));
  EXPECT_TRUE(CheckMessage(good.substr(1), 3, 1));
  EXPECT_TRUE(CheckMessage("", 3, 1));
}

TEST_F(ModbusRoutines, WhatIsTooLongOrWrongIsNoAnswer) {
  Exchange(1, "01 03 02 12 34");
  Exchange(1, "01 83 02");
  EXPECT_EQ(run.doubts, 0);
  Poll(1);
  Take(Framed("01 03 02 12 34").substr(0, 6) + "?");
  EXPECT_EQ(run.doubts, 1);
  Poll(1);
  // Sound by its first and last bytes, with two more between them.
  EXPECT_EQ(Take(Bytes("01 03 02 12 34 FF FF B5 33")), "value 1: 1234\nrecord 1\n");
  EXPECT_EQ(run.doubts, 2);
}

// --- Writes ------------------------------------------------------------------------------------

TEST_F(ModbusRoutines, AWriteOfOneRegisterPutsTheValueWhereSelectByteSays) {
  EXPECT_EQ(Write(1, 6, "12A"), "output 01 06 00 10 01 2A 08 40\n");
  At(1).SelectByte = kMsb;
  EXPECT_EQ(Write(1, 6, "2A"), Output("01 06 00 10 2A 00"));
  At(1).SelectByte = kLsb;
  EXPECT_EQ(Write(1, 6, "2A"), Output("01 06 00 10 00 2A"));
}

TEST_F(ModbusRoutines, AWriteOfSeveralCountsItsRegistersAndTheirBytes) {
  At(2).LocSlaveAddress = "0A";
  At(2).Address = "0020";
  run.fields().StoredRegisters = {"000A", "0102"};
  EXPECT_EQ(Write(2, 16, ""), "output 0A 10 00 20 00 02 04 00 0A 01 02 74 C0\n");
  EXPECT_EQ(run.fields().Nreg, 2);
}

TEST_F(ModbusRoutines, AWriteByAnotherFunctionHasNoValue) {
  EXPECT_EQ(Write(1, 5, "2A"), Output("01 05 00 10"));
}

TEST_F(ModbusRoutines, AWriteArmsThePortAndLeavesTheScanOnItsTarget) {
  run.fields().MsgPointer = 1;
  run.fields().CommRunning = false;
  run.world.port().Receive("old");
  Write(3, 6, "2A");
  EXPECT_EQ(run.fields().MsgPointer, 3);
  EXPECT_TRUE(run.fields().CommRunning);
  EXPECT_TRUE(run.fields().write_message);
  EXPECT_TRUE(run.fields().building);
  EXPECT_FALSE(run.fields().message_received);
  EXPECT_EQ(run.Comm().RThreshold(), 5);
  EXPECT_EQ(run.Comm().InBufferCount(), 0);
  EXPECT_TRUE(run.Comm_Timer().Enabled());
  EXPECT_EQ(run.tmr_MsgTimeout().Interval(), 2000);
  EXPECT_FALSE(run.tmr_MsgTimeout().Enabled());
}

TEST_F(ModbusRoutines, AWriteKeepsAnAnswerThatComesAtOnce) {
  run.world.on_output = [](FakeSerialPort& port, std::string_view) { port.Receive("at once"); };
  run.world.port().Receive("old");
  Write(1, 6, "2A");
  EXPECT_EQ(run.Comm().Input(), "at once");
}

TEST_F(ModbusRoutines, AWriteIsRefusedNoRegister) {
  for (const std::string address : {"0000", "8000", "FFFF"}) {
    At(1).Address = address;
    EXPECT_TRUE(Write(1, 6, "2A").starts_with("output ")) << address;
  }
}

TEST_F(ModbusRoutines, TheAcknowledgeOfOneRegisterShowsOneLocation) {
  run.fields().StoredRegisters = {"0001", "0002", "0003"};  // of an earlier write
  Write(1, 6, "2A");
  EXPECT_EQ(Take(Framed("01 06 00 10 00 2A")), "value 1: -\n");
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_FALSE(run.fields().write_message);

  run.fields().StoredRegisters.clear();
  Write(1, 6, "2A");
  EXPECT_EQ(Take(Framed("01 06 00 10 00 2A")), "value 1: -\n");
}

TEST_F(ModbusRoutines, AnAcknowledgeShowsTheValueOfWhatIsNotSimplyScanned) {
  for (const std::uint8_t flags :
       std::vector<std::uint8_t>{kScanningDisabled, kContinuousWrite, 3, 4, 255}) {
    At(1).ScanFlags = flags;
    At(1).RawValue = 0x2A;
    Write(1, 6, "2B");
    EXPECT_EQ(Take(Framed("01 06 00 10 00 2B")), "value 1: 002A\n");
  }
}

TEST_F(ModbusRoutines, TheAcknowledgeOfSeveralShowsThemAllAndGoesBackOnce) {
  At(2).ScanFlags = kContinuousWrite;
  At(2).RawValue = 0x12345;
  run.fields().StoredRegisters = {"000A", "0102"};
  Write(2, 16, "");
  EXPECT_EQ(Take(Framed("01 10 00 11 00 02")), "value 2: 2345\nvalue 3: -\n");
  EXPECT_EQ(run.fields().MsgPointer, 1);
}

TEST_F(ModbusRoutines, AfterItsAcknowledgeTheWrittenLocationIsReadNext) {
  for (int index = 1; index <= 3; ++index) {
    Write(index, 6, "2A");
    Take(Framed("01 06 00 10 00 2A"));
    EXPECT_EQ(run.fields().MsgPointer, index - 1);
    Modbus_Protocol(run);
    EXPECT_EQ(run.fields().MsgPointer, index);
    EXPECT_EQ(run.fields().Function_code, 3);
    EXPECT_TRUE(
        run.TakeNotes().ends_with(Output("01 03 00 1" + std::to_string(index - 1) + " 00 01")));
  }
}

TEST_F(ModbusRoutines, AnAcknowledgeThatComesAgainLeavesTheScanAtItsBeginning) {
  Write(2, 6, "2A");
  for (int i = 0; i < 4; ++i) Take(Framed("01 06 00 11 00 2A"));
  EXPECT_EQ(run.fields().MsgPointer, 0);
  run.fields().StoredRegisters.clear();
  Write(1, 16, "");
  for (int i = 0; i < 4; ++i) Take(Framed("01 10 00 10 00 00"));
  EXPECT_EQ(run.fields().MsgPointer, 0);
}

TEST_F(ModbusRoutines, ARefusedWriteIsToldAndThePollGoesOnBehindIt) {
  Write(1, 6, "2A");
  EXPECT_EQ(Take(Framed("01 86 03")), "panel 6: Exception code:3\n");
  EXPECT_EQ(run.fields().MsgPointer, 1);
  EXPECT_FALSE(run.fields().write_message);
  EXPECT_TRUE(run.fields().message_received);
}

TEST_F(ModbusRoutines, AnAcknowledgeBeyondTheTableIsLeftToTheWatchdog) {
  run.fields().StoredRegisters = {"0001", "0002"};
  At(kLastLocation).LocSlaveAddress = "1";
  Write(kLastLocation, 16, "");
  EXPECT_THROW(Take(Framed("01 10 00 00 00 02")), RunTimeError);
  EXPECT_FALSE(run.fields().message_received);
}

// --- The protocol object -----------------------------------------------------------------------

TEST_F(ModbusRoutines, PollsTakesAndWritesAsTheProtocolOfTheRun) {
  ModbusProtocol protocol;
  protocol.SendNextPoll(run);
  EXPECT_EQ(run.fields().MsgPointer, 1);
  run.world.port().Receive(Framed("01 03 02 12 34"));
  protocol.TakeResponse(run);
  EXPECT_TRUE(run.fields().message_received);
  run.fields().Function_code = 6;
  std::string value = "002A";
  protocol.SendWrite(run, 2, value);
  EXPECT_TRUE(run.fields().write_message);
  EXPECT_EQ(value, "002A");
}

TEST(ModbusProtocolObject, WaitsForAResponseByTheSpeed) {
  const ModbusProtocol protocol;
  const std::vector<int> pauses = {80, 40, 20, 10, 5, 1, 1};
  for (std::size_t index = 0; index < pauses.size(); ++index) {
    EXPECT_EQ(protocol.ReceivePause(static_cast<int>(index)), pauses[index]) << index;
  }
  EXPECT_EQ(protocol.ReceivePause(-1), 1);
}

TEST(ModbusProtocolObject, KnowsTheLengthOfTheResponseThatIsOut) {
  struct Case {
    std::uint8_t function;
    std::int16_t nreg;
    int length;
  };
  for (const Case& c : {Case{3, 1, 7}, Case{4, 60, 125}, Case{6, 3, 8}, Case{16, 3, 8},
                        Case{0x83, 3, 5}, Case{5, 3, 5}}) {
    RunFields fields;
    fields.Function_code = c.function;
    fields.Nreg = c.nreg;
    EXPECT_EQ(ModbusProtocol().ResponseLength(fields), c.length) << int{c.function};
  }
}

}  // namespace
}  // namespace tarnlink
