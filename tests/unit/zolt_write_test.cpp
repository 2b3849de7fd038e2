// Writes under the ZOLT protocol: what goes out when, and what the answer does.

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "unit/zolt_routines.h"

namespace tarnlink {
namespace {

using ZoltWrite = ZoltRoutines;

// --- Writes ------------------------------------------------------------------------------------

TEST_F(ZoltWrite, AWriteToADataIdPutsTheValueIntoItsByte) {
  id().Class = 5;
  id().Address = "0C80";
  id().SelectByte = kLsb;
  EXPECT_EQ(Write(1, "5A"), Out(0x85, "00C80005AF41D"));
  id().SelectByte = kMsb;
  EXPECT_EQ(Write(1, "5A"), Out(0x85, "00C805A003623"));
  id().SelectByte = kBoth;
  EXPECT_EQ(Write(1, "12AB"), Out(0x85, "00C8012AB1837"));
}

TEST_F(ZoltWrite, AWriteToADataIdLeavesTheValueWhole) {
  std::string value = "12AB";
  BuildKEM3WriteMessage(run, 1, value);
  EXPECT_EQ(value, "12AB");
}

TEST_F(ZoltWrite, AWriteIsForTheSlaveOfItsLocation) {
  id().LocSlaveAddress = "3F";
  EXPECT_EQ(Write(1, "0005"), Out(0x81, "3000100054E7A"));
  memory().Address = "E034";
  memory().LocSlaveAddress = "";
  EXPECT_EQ(Write(2, "56"), Out(0x87, "0FFF1345645F5"));
}

TEST_F(ZoltWrite, AWriteToMemoryGoesThroughTheAliasOfItsPage) {
  memory().Address = "8034";
  EXPECT_EQ(Write(2, "56"), Out(0x87, "0FFFE3456D175"));
  memory().Address = "F312";
  EXPECT_EQ(Write(2, "55"), Out(0x87, "0FF011255E223"));
  memory().Address = "D8FF";
  EXPECT_EQ(Write(2, "00"), Out(0x87, "0FC58FF00C839"));
}

TEST_F(ZoltWrite, AWriteToMemorySendsAndKeepsTheLastTwoDigits) {
  memory().Address = "F1FF";
  std::string value = "1234";
  BuildKEM3WriteMessage(run, 2, value);
  EXPECT_EQ(run.TakeNotes(), Out(0x87, "0FF32FF346F06"));
  EXPECT_EQ(value, "34");
}

TEST_F(ZoltWrite, AWriteOfOneCharacterToMemoryLeavesABlankInTheFrame) {
  memory().Address = "F1FF";
  std::string value = "5";
  BuildKEM3WriteMessage(run, 2, value);
  EXPECT_EQ(run.TakeNotes(), Out(0x87, "0FF32FF 52907"));
  EXPECT_EQ(value, "5");
  EXPECT_EQ(Write(2, ""), Out(0x87, "0FF32FF  6B93"));
}

TEST_F(ZoltWrite, AWriteDropsWhatWaitsAndTheScanGoesOnFromIt) {
  run.fields().MsgPointer = 1;
  run.fields().CommRunning = false;
  run.world.port().Receive("old");
  memory().Address = "F1FF";
  Write(2, "05");
  EXPECT_EQ(run.Comm().InBufferCount(), 0);
  EXPECT_EQ(run.tmr_MsgTimeout().Interval(), 2000);
  EXPECT_FALSE(run.tmr_MsgTimeout().Enabled());
  EXPECT_FALSE(run.tmr_noresponse().Enabled());
  EXPECT_TRUE(run.Comm_Timer().Enabled());
  EXPECT_TRUE(run.fields().write_message);
  EXPECT_TRUE(run.fields().CommRunning);
  EXPECT_EQ(run.fields().MsgPointer, 2);
  EXPECT_FALSE(run.fields().message_received);
}

TEST_F(ZoltWrite, AWriteKeepsAnAnswerThatComesAtOnce) {
  run.world.on_output = [](FakeSerialPort& port, std::string_view) { port.Receive("at once"); };
  run.world.port().Receive("old");
  Write(1, "0005");
  EXPECT_EQ(run.Comm().Input(), "at once");
}

TEST_F(ZoltWrite, AWriteToAProtectedPageIsToldAndNotSent) {
  run.fields().CommRunning = false;
  run.world.port().Receive("old");
  for (const char* address : {"1234", "F000", "F9FF", "00FB", "fb00", "F", ""}) {
    memory().Address = address;
    std::string value = "1256";
    BuildKEM3WriteMessage(run, 2, value);
    EXPECT_EQ(run.TakeNotes(), "protected area\n") << address;
    EXPECT_EQ(value, "56");
  }
  EXPECT_EQ(run.Comm().InBufferCount(), 3);
  EXPECT_EQ(run.tmr_MsgTimeout().Interval(), 0);
  // The run waits for an answer all the same.
  EXPECT_TRUE(run.fields().write_message);
  EXPECT_TRUE(run.Comm_Timer().Enabled());
  EXPECT_TRUE(run.fields().CommRunning);
  EXPECT_EQ(run.fields().MsgPointer, 2);
}

// --- The answer to a write ---------------------------------------------------------------------

TEST_F(ZoltWrite, AfterAWriteTheValueIsADashAndIsReadBack) {
  Write(2, "05");
  run.TakeNotes();
  run.tmr_noresponse().SetEnabled(true);
  EXPECT_EQ(Answer(2, Reply(0x97, "0FF32FF05")), "value 2: -\n");
  EXPECT_FALSE(run.fields().write_message);
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_FALSE(run.tmr_noresponse().Enabled());
  EXPECT_EQ(run.fields().DDERowCounter, 2);
  KEM3_Protocol(run);
  EXPECT_EQ(run.TakeNotes(), "log request 2\npanel 5: 2: Cell\n" + Out(0x07, "0FFAB12344FF8"));
  EXPECT_EQ(Answer(2, Reply(0x17, "0FFAB0005")), "value 2: 05\nrecord 2\n");
}

TEST_F(ZoltWrite, AnyAnswerToAWriteWillDo) {
  for (const std::string& bytes : {Reply(0x61, "000010005"), Frame(0x91, "0000100050000"),
                                   std::string("nonsense"), std::string("\r"), std::string()}) {
    Write(1, "0005");
    EXPECT_EQ(Answer(1, bytes), "value 1: -\n") << Readable(bytes);
    EXPECT_TRUE(run.fields().message_received);
    EXPECT_EQ(run.fields().MsgPointer, 0);
  }
}

TEST_F(ZoltWrite, AnAnswerToAWriteLeavesTheScanAtItsBeginning) {
  for (int i = 0; i < 2; ++i) {
    run.fields().write_message = true;
    EXPECT_EQ(Answer(run.fields().MsgPointer, Reply(0x91, "000010005")), "value 0: -\n");
    EXPECT_EQ(run.fields().MsgPointer, 0);
  }
}

TEST_F(ZoltWrite, AfterAContinuousWriteTheValueIsShownAndTheScanGoesOn) {
  id().ScanFlags = 2;
  id().RawValue = 0x5A;
  Poll(1);
  EXPECT_EQ(Answer(1, Reply(0x91, "00001005A")), "value 1: 005A\n");
  EXPECT_EQ(run.fields().MsgPointer, 1);
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_FALSE(run.fields().write_message);

  // At the end of the round too: only the answer to a read ends one.
  memory().ScanFlags = 2;
  memory().RawValue = 0x12345;
  Poll(2);
  EXPECT_EQ(Answer(2, Reply(0x97, "0FFAB1234")), "value 2: 2345\n");
  EXPECT_EQ(run.fields().MsgPointer, 2);
  EXPECT_EQ(run.fields().DDERowCounter, 2);
}

TEST_F(ZoltWrite, AfterAWriteToALocationThatIsNotScannedItsRawValueIsShown) {
  id().ScanFlags = 1;
  Write(1, "0005");
  id().RawValue = 5;
  EXPECT_EQ(Answer(1, Reply(0x91, "000010005")), "value 1: 0005\n");
  EXPECT_EQ(run.fields().MsgPointer, 1);
}

// --- A word of memory is written byte by byte --------------------------------------------------

class ZoltWordWrite : public ZoltRoutines {
 protected:
  ZoltWordWrite() { memory().StorageType = kUnsignedWord; }

  // What the dialog of a write hands over for the value 1234.
  std::string Begin(const std::string& address) {
    memory().Address = address;
    run.fields().SecondByteIndex = 2;
    run.fields().SecondByteValue = "12";
    run.fields().SendSecondByte = true;
    return Write(2, "1234");
  }
};

TEST_F(ZoltWordWrite, TheSecondByteGoesOutWhenTheFirstIsAcknowledged) {
  EXPECT_EQ(Begin("F134"), Out(0x87, "0FF323434275E"));
  run.Comm_Timer().SetEnabled(false);
  EXPECT_EQ(Answer(2, Reply(0x97, "0FF323434")), "value 2: -\n" + Out(0x87, "0FF32351216CA"));
  EXPECT_FALSE(run.fields().message_received);
  EXPECT_TRUE(run.fields().write_message);
  EXPECT_FALSE(run.fields().SendSecondByte);
  EXPECT_FALSE(run.fields().ChangeVariableToSecondByteValues);
  EXPECT_TRUE(run.Comm_Timer().Enabled());
  EXPECT_TRUE(run.tmr_noresponse().Enabled());
  EXPECT_EQ(run.fields().MsgPointer, 2);
  EXPECT_EQ(memory().Address, "F134");

  EXPECT_EQ(Answer(2, Reply(0x97, "0FF323512")), "value 2: -\n");
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_FALSE(run.fields().write_message);
  EXPECT_EQ(run.fields().MsgPointer, 1);
}

TEST_F(ZoltWordWrite, NoPollComesBetweenTheTwoBytes) {
  Begin("F134");
  // The watchdog had given the first byte up when its answer came.
  run.fields().message_received = true;
  run.world.port().Receive(Reply(0x97, "0FF323434"));
  KEM3SlaveResponse(run);
  EXPECT_FALSE(run.fields().message_received);
}

TEST_F(ZoltWordWrite, TheSecondByteMayLieOnTheNextPage) {
  EXPECT_EQ(Begin("F1FF"), Out(0x87, "0FF32FF346F06"));
  EXPECT_EQ(Answer(2, Reply(0x97, "0FF32FF34")), "value 2: -\n" + Out(0x87, "0FF0E0012D254"));
}

TEST_F(ZoltWordWrite, ASecondByteOnAProtectedPageIsTold) {
  EXPECT_EQ(Begin("F8FF"), Out(0x87, "0FCA8FF349ED3"));
  EXPECT_EQ(Answer(2, Reply(0x97, "0FCA8FF34")), "value 2: -\nprotected area\n");
  EXPECT_TRUE(run.fields().write_message);
  EXPECT_FALSE(run.fields().message_received);
  EXPECT_TRUE(run.tmr_noresponse().Enabled());
  // Behind FFFF there is nothing at all.
  memory().Address = "FFFF";
  run.fields().SendSecondByte = true;
  EXPECT_EQ(Answer(2, "any"), "value 2: -\nprotected area\n");
}

TEST_F(ZoltWordWrite, TheSecondByteOfAContinuousWriteIsThatOfTheLastDialog) {
  Begin("F134");
  run.fields().SendSecondByte = false;
  memory().ScanFlags = 2;
  memory().RawValue = 0x5678;
  EXPECT_TRUE(Poll(2).ends_with(Out(0x87, "0FFABF134E1C4")));
  EXPECT_EQ(Answer(2, Reply(0x97, "0FFABF134")), "value 2: 5678\n" + Out(0x87, "0FF32351216CA"));
  EXPECT_EQ(Answer(2, Reply(0x97, "0FF323512")), "value 2: 5678\n");
  EXPECT_EQ(run.fields().MsgPointer, 2);
}

TEST_F(ZoltWordWrite, BeforeTheFirstDialogAContinuousWriteHasNoSecondByte) {
  memory().ScanFlags = 2;
  memory().RawValue = 0x5678;
  Poll(2);
  EXPECT_TRUE(run.fields().SendSecondByte);
  EXPECT_EQ(Answer(2, Reply(0x97, "0FFAB1234")), "value 2: 5678\n");
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_FALSE(run.fields().write_message);
  EXPECT_EQ(run.fields().MsgPointer, 2);
}

TEST_F(ZoltWordWrite, ASecondByteThatWasNotSentWaitsForTheNextAcknowledge) {
  Begin("F134");
  EXPECT_EQ(Poll(1), "log request 1\npanel 5: 1: Flow\n" +
                         ("output " + HexText(Reply(0x01, "000010000")) + "\n"));
  Answer(1, Reply(0x11, "000010000"));
  Write(2, "56");
  EXPECT_EQ(Answer(2, Reply(0x97, "0FF323456")), "value 2: -\n" + Out(0x87, "0FF32351216CA"));
}

// The next byte would lie in the EEPROM, which nobody meant.
TEST_F(ZoltWordWrite, BehindTheLastAddressOfTheLowerHalfThereIsNoByte) {
  Begin("7FFF");
  EXPECT_FALSE(run.fields().SendSecondByte) << "The first half is refused already.";
  run.fields().SendSecondByte = true;
  run.TakeNotes();
  run.fields().MsgPointer = 2;
  run.world.port().Receive("any");
  EXPECT_THROW(KEM3SlaveResponse(run), RunTimeError);
  EXPECT_EQ(run.TakeNotes(), "value 2: -\n");
  // A later write is one of its own byte.
  memory().Address = "F134";
  EXPECT_EQ(Write(2, "56"), "output " + HexText(Reply(0x87, "0FF323456")) + "\n");
}

}  // namespace
}  // namespace tarnlink
