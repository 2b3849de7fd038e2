#include "protocols/tarnlink_protocol.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "protocols/tarnlink_frame.h"
#include "support/byte_text.h"
#include "unit/noting_run.h"

namespace tarnlink {
namespace {

using namespace tarnlink_frame;

// --- Frames ------------------------------------------------------------------------------------

TEST(CalcChecksum, AddsUpEverythingBehindTheFirstByte) {
  EXPECT_EQ(calc_checksum(Bytes("04 05 30 31 41 30")), 0xD7);
  EXPECT_EQ(calc_checksum(Bytes("04 01 30 31 41 30")), 0xD3);
  EXPECT_EQ(calc_checksum(Bytes("FF 05")), 5);
}

TEST(CalcChecksum, KeepsTheLowByte) {
  EXPECT_EQ(calc_checksum(Bytes("04 FF")), 0xFF);
  EXPECT_EQ(calc_checksum(Bytes("04 FF 01")), 0);
  EXPECT_EQ(calc_checksum(Bytes("04 FF 02")), 1);
  EXPECT_EQ(calc_checksum("\x04" + std::string(1000, '\xFF')), (1000 * 255) % 256);
}

TEST(CalcChecksum, OfNothingIsZero) {
  EXPECT_EQ(calc_checksum(""), 0);
  EXPECT_EQ(calc_checksum("\x04"), 0);
}

TEST(TarnlinkFrame, ReadsAByteAndAWord) {
  EXPECT_EQ(HexText(ReadRequest(kReadByte, "01A0")), "04 05 30 31 41 30 44 37 03");
  EXPECT_EQ(HexText(ReadRequest(kReadWord, "01A0")), "04 01 30 31 41 30 44 33 03");
  EXPECT_EQ(HexText(ReadRequest(kReadByte, "FFFF")), "04 05 46 46 46 46 31 44 03");
  EXPECT_EQ(HexText(ReadRequest(kReadWord, "0000")), "04 01 30 30 30 30 43 31 03");
}

TEST(TarnlinkFrame, PadsTheSumOfARead) {
  EXPECT_EQ(HexText(ReadRequest(kReadByte, "AAA8")), "04 05 41 41 41 38 30 30 03");
  EXPECT_EQ(HexText(ReadRequest(kReadByte, "AAA9")), "04 05 41 41 41 39 30 31 03");
  EXPECT_EQ(HexText(ReadRequest(kReadWord, "BBB9")), "04 01 42 42 42 39 30 30 03");
  EXPECT_EQ(HexText(ReadRequest(kReadByte, "BAFC")), "04 05 42 41 46 43 31 31 03");
  EXPECT_EQ(HexText(ReadRequest(kReadByte, "BAFA")), "04 05 42 41 46 41 30 46 03");
}

TEST(TarnlinkFrame, SendsTheAddressAsItStands) {
  EXPECT_EQ(HexText(ReadRequest(kReadByte, "1a  ")), "04 05 31 61 20 20 44 37 03");
}

TEST(TarnlinkFrame, WritesWithASumThatIsNotPadded) {
  EXPECT_EQ(HexText(WriteRequest(kWriteByte, "0010", "05")), "04 06 30 30 31 30 30 35 32 43 03");
  EXPECT_EQ(HexText(WriteRequest(kWriteByte, "01A0", "12AB")),
            "04 06 30 31 41 30 31 32 41 42 42 45 03");
  EXPECT_EQ(HexText(WriteRequest(kWriteByte, "FFFF", "00AA")),
            "04 06 46 46 46 46 30 30 41 41 30 03");
  EXPECT_EQ(HexText(WriteRequest(kWriteByte, "FFFF", "87AA")),
            "04 06 46 46 46 46 38 37 41 41 46 03");
  EXPECT_EQ(HexText(WriteRequest(kWriteByte, "FFFF", "88AA")),
            "04 06 46 46 46 46 38 38 41 41 31 30 03");
}

TEST(TarnlinkFrame, AWriteWithASumBelowSixteenIsOneByteShorter) {
  for (int sum = 0; sum < 256; ++sum) {
    // The last data character makes up the sum.
    const std::string start = Bytes("04 06 30 30 30 30 30");
    const int last = (sum - calc_checksum(start) + 256) % 256;
    const std::string value{'0', static_cast<char>(last)};
    const std::string frame = WriteRequest(kWriteByte, "0000", value);
    EXPECT_EQ(frame.size(), sum < 0x10 ? 10U : 11U) << sum;
    EXPECT_EQ(frame.back(), kEnd);
  }
}

TEST(TarnlinkFrame, PutsAShortValueToTheRight) {
  EXPECT_EQ(HexText(WriteRequest(kWriteByte, "0010", "5")), "04 06 30 30 31 30 20 35 31 43 03");
  EXPECT_EQ(HexText(WriteRequest(kWriteByte, "0010", "")), "04 06 30 30 31 30 20 20 37 03");
  EXPECT_EQ(HexText(WriteRequest(kWriteByte, "0010", "123")),
            "04 06 30 30 31 30 31 32 33 35 44 03");
}

TEST(TarnlinkFrame, KnowsTheLengthsOfTheResponses) {
  EXPECT_EQ(kByteResponseLength, 11);
  EXPECT_EQ(kWordResponseLength, 13);
}

TEST(TarnlinkFrame, TakesTheDigitsAtPositionSeven) {
  const std::string response = "SC1234abcdXXE";
  EXPECT_EQ(ResponseDigits(response, 11), "ab");
  EXPECT_EQ(ResponseDigits(response, 13), "abcd");
  EXPECT_EQ(ResponseDigits(response + "more", 13), "abcd");
  EXPECT_EQ(ResponseDigits(response, 16), "abcd");
  EXPECT_EQ(ResponseDigits(response, 0), "abcd");
}

TEST(TarnlinkFrame, TakesOfAShortResponseWhatThereIs) {
  const std::string response = "SC1234abcdXXE";
  const std::vector<std::string> byte = {"", "", "", "", "", "", "", "a", "ab", "ab"};
  const std::vector<std::string> word = {"", "", "", "", "", "", "", "a", "ab", "abc"};
  for (std::size_t length = 0; length < byte.size(); ++length) {
    EXPECT_EQ(ResponseDigits(response.substr(0, length), 11), byte[length]) << length;
    EXPECT_EQ(ResponseDigits(response.substr(0, length), 13), word[length]) << length;
  }
}

// --- Routines ----------------------------------------------------------------------------------

class TarnlinkRoutines : public ::testing::Test {
 protected:
  TarnlinkRoutines() {
    run.fields().CommRunning = true;
    run.fields().MaxId = 2;
    for (const int index : {1, 2}) {
      Location& location = run.locations()[index];
      location.Specification = 0;
      location.StorageType = index == 1 ? kUnsignedByte : kUnsignedWord;
      location.Address = "01A0";
      location.Alias = "Flow";
    }
  }

  NotingRun run;
};

TEST_F(TarnlinkRoutines, APollShowsItsLocationSendsStartsTheTimeoutAndLogs) {
  Tarnlink_Protocol(run);
  EXPECT_EQ(run.TakeNotes(),
            "panel 5: Flow: 1\n"
            "output 04 05 30 31 41 30 44 37 03\n"
            "log request 1 (timer on)\n");
  EXPECT_EQ(run.fields().MsgPointer, 1);
  EXPECT_EQ(run.Comm().RThreshold(), 11);
  EXPECT_EQ(run.tmr_MsgTimeout().Interval(), 2000);
  EXPECT_TRUE(run.tmr_MsgTimeout().Enabled());
  EXPECT_FALSE(run.tmr_noresponse().Enabled());
  EXPECT_FALSE(run.fields().message_received);
}

TEST_F(TarnlinkRoutines, APollOfAHiddenLocationSendsNothingAndMayGoOn) {
  run.visible = {2};
  Tarnlink_Protocol(run);
  EXPECT_EQ(run.TakeNotes(), "");
  EXPECT_EQ(run.fields().MsgPointer, 1);
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_FALSE(run.tmr_MsgTimeout().Enabled());
}

TEST_F(TarnlinkRoutines, APollWithoutARunSendsNothingAndGoesNoFurther) {
  run.fields().CommRunning = false;
  Tarnlink_Protocol(run);
  EXPECT_EQ(run.TakeNotes(), "");
  EXPECT_EQ(run.fields().MsgPointer, 1);
  EXPECT_FALSE(run.fields().message_received);
  EXPECT_FALSE(run.tmr_MsgTimeout().Enabled());
}

TEST_F(TarnlinkRoutines, APollPastTheLastLocationStandsOnTheTemplate) {
  run.fields().MsgPointer = 2;
  Tarnlink_Protocol(run);
  EXPECT_EQ(run.fields().MsgPointer, 0);
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_EQ(run.TakeNotes(), "");

  run.fields().MsgPointer = 2;
  run.fields().filelogging = true;
  Tarnlink_Protocol(run);
  EXPECT_EQ(run.TakeNotes(), "end of row\n");
  EXPECT_EQ(run.fields().DDERowCounter, 2);
}

TEST_F(TarnlinkRoutines, AResponseShowsRecordsAndEndsTheExchange) {
  run.fields().MsgPointer = 1;
  run.Comm().SetRThreshold(11);
  run.tmr_noresponse().SetEnabled(true);
  run.tmr_MsgTimeout().SetEnabled(true);
  run.world.port().Receive(Bytes("04 05 30 31 41 30 32 41 34 41 03"));
  TarnlinkSlaveResponse(run);
  EXPECT_EQ(run.TakeNotes(), "value 1: 2A\nrecord 1\n");
  EXPECT_FALSE(run.tmr_noresponse().Enabled());
  EXPECT_FALSE(run.tmr_MsgTimeout().Enabled());
  EXPECT_EQ(run.Comm().InBufferCount(), 0);
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_EQ(run.fields().MsgPointer, 1);
}

TEST_F(TarnlinkRoutines, TheResponseOfTheLastLocationEndsTheRound) {
  for (const int pointer : {2, 3}) {
    run.fields().MsgPointer = pointer;
    run.fields().filelogging = true;
    run.fields().DDERowCounter = 7;
    run.Comm().SetRThreshold(13);
    run.world.port().Receive("SC12340102XXE");
    TarnlinkSlaveResponse(run);
    EXPECT_TRUE(run.TakeNotes().ends_with("end of row\n"));
    EXPECT_EQ(run.fields().MsgPointer, 0);
    EXPECT_EQ(run.fields().DDERowCounter, 8);
  }
}

TEST_F(TarnlinkRoutines, TheFirstEventAfterAWriteOnlyEndsTheWrite) {
  run.fields().MsgPointer = 1;
  run.fields().write_message = true;
  run.Comm().SetRThreshold(11);
  run.tmr_noresponse().SetEnabled(true);
  run.tmr_MsgTimeout().SetEnabled(true);
  run.world.port().Receive("SC123405XXE");
  TarnlinkSlaveResponse(run);
  EXPECT_EQ(run.TakeNotes(), "");
  EXPECT_FALSE(run.fields().write_message);
  EXPECT_FALSE(run.fields().message_received);
  EXPECT_TRUE(run.tmr_noresponse().Enabled());
  EXPECT_TRUE(run.tmr_MsgTimeout().Enabled());
  EXPECT_EQ(run.Comm().InBufferCount(), 11);

  TarnlinkSlaveResponse(run);
  EXPECT_EQ(run.TakeNotes(), "value 1: 5\nrecord 1\n");
  EXPECT_TRUE(run.fields().message_received);
}

TEST_F(TarnlinkRoutines, AWriteArmsThePortAndLeavesTheScanBeforeItsTarget) {
  run.fields().MsgPointer = 1;
  run.fields().CommRunning = false;
  run.world.port().Receive("old");
  BuildTarnlinkWriteMessage(run, 2, "0005");
  EXPECT_EQ(run.TakeNotes(), "output 04 06 30 31 41 30 30 30 30 35 39 44 03\n");
  EXPECT_EQ(run.Comm().RThreshold(), 11);
  EXPECT_EQ(run.Comm().InBufferCount(), 0);
  EXPECT_EQ(run.tmr_MsgTimeout().Interval(), 2000);
  EXPECT_TRUE(run.tmr_MsgTimeout().Enabled());
  EXPECT_TRUE(run.Comm_Timer().Enabled());
  EXPECT_FALSE(run.tmr_noresponse().Enabled());
  EXPECT_TRUE(run.fields().write_message);
  EXPECT_TRUE(run.fields().CommRunning);
  EXPECT_EQ(run.fields().MsgPointer, 1);
  EXPECT_FALSE(run.fields().message_received);
}

TEST_F(TarnlinkRoutines, AWriteKeepsAnAnswerThatComesAtOnce) {
  run.world.on_output = [](FakeSerialPort& port, std::string_view) { port.Receive("at once"); };
  run.world.port().Receive("old");
  BuildTarnlinkWriteMessage(run, 2, "05");
  EXPECT_EQ(run.Comm().Input(), "at once");
}

TEST_F(TarnlinkRoutines, TheWriteCommandGoesByTheSpecificationWhereTheScanStands) {
  struct Case {
    std::int32_t specification;
    char command;
    int threshold;
  };
  for (const Case& c : {Case{0, '\x06', 11}, Case{1, '\x06', 11}, Case{2, '\x06', 11},
                        Case{3, '\x02', 13}, Case{4, '\x02', 13}}) {
    run.fields().MsgPointer = 1;
    run.locations()[1].Specification = c.specification;
    run.locations()[1].StorageType = kUnsignedByte;
    run.locations()[2].Specification = 4 - c.specification;
    run.locations()[2].StorageType = kSignedWord;
    BuildTarnlinkWriteMessage(run, 2, "05");
    EXPECT_EQ(run.world.port().TakeSent().back()[1], c.command) << c.specification;
    EXPECT_EQ(run.Comm().RThreshold(), c.threshold) << c.specification;
  }
}

TEST_F(TarnlinkRoutines, AWriteToTheFirstLocationLeavesTheScanOnTheTemplate) {
  run.fields().MsgPointer = 2;
  BuildTarnlinkWriteMessage(run, 1, "05");
  EXPECT_EQ(run.fields().MsgPointer, 0);
}

TEST_F(TarnlinkRoutines, PollsTakesAndWritesAsTheProtocolOfTheRun) {
  TarnlinkProtocol protocol;
  protocol.SendNextPoll(run);
  EXPECT_EQ(run.fields().MsgPointer, 1);
  run.world.port().Receive("SC123405XXE");
  protocol.TakeResponse(run);
  EXPECT_TRUE(run.fields().message_received);
  std::string value = "0005";
  protocol.SendWrite(run, 2, value);
  EXPECT_TRUE(run.fields().write_message);
  EXPECT_EQ(value, "0005");
  EXPECT_EQ(protocol.ReceivePause(0), 0);
}

}  // namespace
}  // namespace tarnlink
