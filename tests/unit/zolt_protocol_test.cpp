#include "protocols/zolt_protocol.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "common/run_time_error.h"
#include "unit/zolt_routines.h"

namespace tarnlink {
namespace {

// --- The poll ----------------------------------------------------------------------------------

TEST_F(ZoltRoutines, APollLogsShowsItsLocationAndAsksForIt) {
  run.fields().write_message = true;
  EXPECT_EQ(Poll(1), "log request 1\npanel 5: 1: Flow\n" + Out(0x01, "000010000D7AF"));
  EXPECT_EQ(run.fields().MsgPointer, 1);
  EXPECT_FALSE(run.fields().write_message);
  EXPECT_FALSE(run.fields().message_received);
  EXPECT_EQ(run.Comm().RThreshold(), 16);
}

TEST_F(ZoltRoutines, APollSetsTheTimeoutAndStartsNoTimer) {
  Poll(1);
  EXPECT_EQ(run.tmr_MsgTimeout().Interval(), 2000);
  EXPECT_FALSE(run.tmr_MsgTimeout().Enabled());
  EXPECT_FALSE(run.tmr_noresponse().Enabled());
  EXPECT_FALSE(run.Comm_Timer().Enabled());
}

TEST_F(ZoltRoutines, ARequestForADataIdCarriesTheValueThatTheLocationHas) {
  id().RawValue = 0x1234;
  EXPECT_TRUE(Poll(1).ends_with(Out(0x01, "000011234DAAC")));
  id().RawValue = 5;
  EXPECT_TRUE(Poll(1).ends_with(Out(0x01, "000010005870A")));
  id().RawValue = 0x56789;
  EXPECT_TRUE(Poll(1).ends_with(Out(0x01, "0000167896D26")));
}

TEST_F(ZoltRoutines, ARequestForMemoryCarriesTheAddress) {
  memory().RawValue = 0x55;
  EXPECT_EQ(Poll(2), "log request 2\npanel 5: 2: Cell\n" + Out(0x07, "0FFAB12344FF8"));
}

TEST_F(ZoltRoutines, ARequestIsForTheClassAndTheSlaveOfItsLocation) {
  id().Class = 6;
  id().LocSlaveAddress = "A";
  EXPECT_TRUE(Poll(1).ends_with(Out(0x06, "A000100008BAD")));
  // Memory is class 7 whatever the Location says.
  memory().Class = 6;
  memory().LocSlaveAddress = "B";
  EXPECT_TRUE(Poll(2).ends_with(Out(0x07, "BFFAB12342244")));
}

TEST_F(ZoltRoutines, TheSlaveIsOneCharacterAndNeverMissing) {
  id().LocSlaveAddress = "3F";
  EXPECT_TRUE(Poll(1).ends_with(Out(0x01, "300010000FAEB")));
  id().LocSlaveAddress = "";
  EXPECT_TRUE(Poll(1).ends_with(Out(0x01, "000010000D7AF")));
}

TEST_F(ZoltRoutines, ALocationWrittenContinuouslyIsWrittenByThePoll) {
  for (const int flags : {2, 3}) {
    id().ScanFlags = static_cast<std::uint8_t>(flags);
    id().RawValue = 0x5A00;
    EXPECT_TRUE(Poll(1).ends_with(Out(0x81, "000015A0060E6"))) << flags;
    EXPECT_TRUE(run.fields().write_message);
    EXPECT_FALSE(run.fields().SendSecondByte);
    run.fields().write_message = false;
  }
}

TEST_F(ZoltRoutines, TheClassGoesOutAsItIsAndMakesNoMemoryOfAnId) {
  id().Class = 7;
  EXPECT_TRUE(Poll(1).ends_with("output " + HexText(Reply(0x07, "000010000")) + "\n"));
  EXPECT_EQ(Answer(1, Reply(0x17, "000021234")), "");
  EXPECT_FALSE(run.fields().message_received);
  EXPECT_EQ(Answer(1, Reply(0x17, "000011234")), "value 1: 1234\nrecord 1\n");
  id().Class = 0x4A;
  EXPECT_TRUE(Poll(1).ends_with("output " + HexText(Reply(0x4A, "000011234")) + "\n"));
}

TEST_F(ZoltRoutines, AClassBeyondTheTypeByteCannotBeWritten) {
  id().ScanFlags = 2;
  id().Class = 127;
  EXPECT_TRUE(Poll(1).ends_with("output " + HexText(Reply(0xFF, "000010000")) + "\n"));
  id().Class = 128;
  try {
    Poll(1);
    ADD_FAILURE() << run.TakeNotes();
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.code(), kOverflow);
    EXPECT_STREQ(error.what(), "The class 128 cannot be written.");
  }
}

TEST_F(ZoltRoutines, AWordOfMemoryWrittenContinuouslyOwesItsSecondByte) {
  memory().ScanFlags = 2;
  for (const std::int32_t type : {kBit, kUnsignedByte, kSignedByte, kUnsignedWord, kSignedWord}) {
    memory().StorageType = type;
    run.fields().SendSecondByte = false;
    EXPECT_TRUE(Poll(2).ends_with(Out(0x87, "0FFAB1234ABCC"))) << type;
    EXPECT_TRUE(run.fields().write_message);
    EXPECT_EQ(run.fields().SendSecondByte, type >= kUnsignedWord) << type;
  }
}

TEST_F(ZoltRoutines, APollOfAHiddenLocationSendsNothingAndMayGoOn) {
  run.visible = {2};
  EXPECT_EQ(Poll(1), "log request 1\n");
  EXPECT_EQ(run.fields().MsgPointer, 1);
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_EQ(run.tmr_MsgTimeout().Interval(), 0);
}

TEST_F(ZoltRoutines, APollWithoutARunSendsNothingAndGoesNoFurther) {
  run.fields().CommRunning = false;
  EXPECT_EQ(Poll(1), "log request 1\n");
  EXPECT_FALSE(run.fields().message_received);
}

TEST_F(ZoltRoutines, APollOnAClosedPortShowsItsLocationAndSendsNothing) {
  run.Comm().SetPortOpen(false);
  EXPECT_EQ(Poll(1), "log request 1\npanel 5: 1: Flow\n");
  EXPECT_FALSE(run.fields().message_received);
  EXPECT_EQ(run.tmr_MsgTimeout().Interval(), 2000);
}

TEST_F(ZoltRoutines, APollPassesOverLocationsThatAreNotScanned) {
  id().ScanFlags = 1;
  EXPECT_EQ(Poll(1), "log request 2\npanel 5: 2: Cell\n" + Out(0x07, "0FFAB12344FF8"));
  EXPECT_EQ(run.fields().MsgPointer, 2);
}

TEST_F(ZoltRoutines, APollPastTheLastLocationStandsOnTheTemplateAndEndsTheLogRow) {
  EXPECT_EQ(Poll(3), "log request 0\n");
  EXPECT_EQ(run.fields().MsgPointer, 0);
  EXPECT_TRUE(run.fields().message_received);

  run.fields().filelogging = true;
  EXPECT_EQ(Poll(3), "end of row\nlog request 0\n");
  EXPECT_EQ(run.fields().DDERowCounter, 2);
}

TEST_F(ZoltRoutines, WithEveryLocationExcludedAPollStopsTheRun) {
  id().ScanFlags = 1;
  memory().ScanFlags = 1;
  EXPECT_EQ(Poll(1), "stop\nlog request 0\n");
  EXPECT_EQ(run.fields().MsgPointer, 0);

  // Also where the template does not stand in between.
  run.locations()[0].ScanFlags = 1;
  EXPECT_EQ(Poll(3), "stop\nlog request 0\n");
  EXPECT_EQ(run.fields().MsgPointer, 0);
}

// --- The answer to a read ----------------------------------------------------------------------

TEST_F(ZoltRoutines, AnAnswerIsShownRecordedAndEndsTheExchange) {
  run.tmr_noresponse().SetEnabled(true);
  run.tmr_MsgTimeout().SetEnabled(true);
  EXPECT_EQ(Answer(1, Frame(0x11, "0000112AB3E50")), "value 1: 12AB\nrecord 1\n");
  EXPECT_EQ(id().RawValue, 0x12AB);
  EXPECT_FALSE(run.tmr_noresponse().Enabled());
  EXPECT_FALSE(run.tmr_MsgTimeout().Enabled());
  EXPECT_EQ(run.Comm().InBufferCount(), 0);
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_EQ(run.fields().MsgPointer, 1);
  EXPECT_EQ(run.fields().DDERowCounter, 2);
}

TEST_F(ZoltRoutines, AnAnswerOfMemoryIsTheByteAtTheAddress) {
  EXPECT_EQ(Answer(2, Frame(0x17, "0FFABA55A981F")), "value 2: 5A\nrecord 2\n");
  EXPECT_EQ(memory().RawValue, 0x5A);
}

TEST_F(ZoltRoutines, TheAnswerOfTheLastLocationEndsTheRound) {
  EXPECT_EQ(Answer(2, Reply(0x17, "0FFAB005A")), "value 2: 5A\nrecord 2\n");
  EXPECT_EQ(run.fields().MsgPointer, 0);
  EXPECT_EQ(run.fields().DDERowCounter, 3);

  run.fields().filelogging = true;
  EXPECT_EQ(Answer(2, Reply(0x17, "0FFAB005A")), "value 2: 5A\nrecord 2\nend of row\n");
  EXPECT_EQ(run.fields().DDERowCounter, 4);

  // One that has been taken off the screen since it was asked.
  run.fields().MaxId = 1;
  EXPECT_EQ(Answer(2, Reply(0x17, "0FFAB005A")), "value 2: 5A\nrecord 2\nend of row\n");
  EXPECT_EQ(run.fields().MsgPointer, 0);
}

TEST_F(ZoltRoutines, AnAnswerWithAWrongCrcShowsNothingAndEndsTheExchange) {
  id().RawValue = 7;
  EXPECT_EQ(Answer(1, Frame(0x11, "0000112AB0000")), "");
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_EQ(id().RawValue, 7);
  std::string damaged = Reply(0x17, "0FFABA55A");
  damaged[10] = 'B';
  EXPECT_EQ(Answer(2, damaged), "");
  // Nor does it end the round.
  EXPECT_EQ(run.fields().MsgPointer, 2);
  EXPECT_EQ(run.fields().DDERowCounter, 2);
}

TEST_F(ZoltRoutines, ARefusalShowsNothingAndEndsTheExchange) {
  for (const int type : {0x21, 0x41}) {
    EXPECT_EQ(Answer(1, Reply(type, "000010000")), "") << type;
    EXPECT_TRUE(run.fields().message_received);
    EXPECT_EQ(run.fields().MsgPointer, 1);
  }
  for (const int type : {0x27, 0x47}) {
    EXPECT_EQ(Answer(2, Reply(type, "0FFAB1234")), "") << type;
    EXPECT_TRUE(run.fields().message_received);
  }
}

TEST_F(ZoltRoutines, OnlyWhatASlaveSendsIsAnAnswer) {
  for (const int kind : {0x10, 0x20, 0x40, 0x60, 0x90}) {
    Answer(1, Reply(kind + 1, "000010001"));
    EXPECT_EQ(run.doubts, 0) << kind;
  }
  const std::string answer = Reply(0x11, "000010001");
  for (const std::string& bytes :
       {Reply(0x01, "000010001"), Reply(0x81, "000010001"), Reply(0x31, "000010001"),
        Frame(0x11, "0000100010000"), answer + "\n", answer.substr(0, 15), std::string()}) {
    run.doubts = 0;
    Answer(1, bytes);
    EXPECT_EQ(run.doubts, 1) << HexText(bytes);
  }
  run.fields().write_message = true;
  run.doubts = 0;
  Answer(2, "any");
  EXPECT_EQ(run.doubts, 1);
}

TEST_F(ZoltRoutines, AnUnknownDataIdIsShownAndLogged) {
  id().RawValue = 7;
  EXPECT_EQ(Answer(1, Reply(0x61, "000010000")), "value 1: can not read\nunreadable 1\n");
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_EQ(id().RawValue, 7);
  EXPECT_EQ(Answer(2, Reply(0x67, "0FFAB1234")), "value 2: can not read\nunreadable 2\n");
  EXPECT_EQ(run.fields().MsgPointer, 2);
  EXPECT_EQ(run.fields().DDERowCounter, 2);
  // Nothing of the frame counts but its kind.
  EXPECT_EQ(Answer(1, "\r\x6A"), "value 1: can not read\nunreadable 1\n");
}

TEST_F(ZoltRoutines, ADataIdTakesAnAcknowledgementOfAnyClass) {
  for (int type = 0; type < 256; ++type) {
    const bool accepted = type / 16 == 1 || type / 16 == 9;
    const std::string notes = Answer(1, Reply(type, "000010001"));
    EXPECT_EQ(notes == "value 1: 0001\nrecord 1\n", accepted) << type;
    EXPECT_EQ(notes.empty(), !accepted && type / 16 != 6) << type;
    EXPECT_TRUE(run.fields().message_received);
  }
}

TEST_F(ZoltRoutines, MemoryTakesAnAcknowledgementOfItsOwnClassOnly) {
  for (int type = 0; type < 256; ++type) {
    const bool accepted = type == 0x17 || type == 0x97;
    const std::string notes = Answer(2, Reply(type, "0FFAB0001"));
    EXPECT_EQ(notes == "value 2: 01\nrecord 2\n", accepted) << type;
    EXPECT_EQ(notes.empty(), !accepted && type / 16 != 6) << type;
    EXPECT_TRUE(run.fields().message_received);
  }
}

TEST_F(ZoltRoutines, AnEmptyAnswerEndsTheExchange) {
  EXPECT_EQ(Answer(1, ""), "");
  EXPECT_TRUE(run.fields().message_received);
}

TEST_F(ZoltRoutines, AnAnswerWithoutATypeIsLeftToTheWatchdog) {
  EXPECT_THROW(Answer(1, "\r"), RunTimeError);
  EXPECT_FALSE(run.fields().message_received);
}

TEST_F(ZoltRoutines, AnAnswerCutShortShowsNothingAndEndsTheExchange) {
  const std::string whole = Reply(0x11, "0000112AB");
  for (std::size_t length = 2; length < 15; ++length) {
    EXPECT_EQ(Answer(1, whole.substr(0, length)), "") << length;
    EXPECT_TRUE(run.fields().message_received);
  }
  // The end says nothing, and what comes behind it neither.
  EXPECT_EQ(Answer(1, whole.substr(0, 15)), "value 1: 12AB\nrecord 1\n");
  EXPECT_EQ(Answer(1, whole + whole), "value 1: 12AB\nrecord 1\n");
}

TEST_F(ZoltRoutines, AnAnswerOfAnotherIdOrSlaveIsWaitedPast) {
  for (const std::string digits : {"000020000", "100010000", " 00010000"}) {
    run.tmr_noresponse().SetEnabled(false);
    EXPECT_EQ(Answer(1, Reply(0x11, digits)), "") << digits;
    EXPECT_FALSE(run.fields().message_received) << digits;
    EXPECT_TRUE(run.tmr_noresponse().Enabled()) << digits;
    EXPECT_EQ(run.fields().MsgPointer, 1);
  }
  EXPECT_EQ(Answer(1, Reply(0x11, "000010005")), "value 1: 0005\nrecord 1\n");
  EXPECT_TRUE(run.fields().message_received);
}

TEST_F(ZoltRoutines, AnAnswerOfAnotherIdWithAWrongCrcEndsTheExchange) {
  EXPECT_EQ(Answer(1, Frame(0x11, "0000200000000")), "");
  EXPECT_TRUE(run.fields().message_received);
  EXPECT_FALSE(run.tmr_noresponse().Enabled());
}

TEST_F(ZoltRoutines, AnAnswerOfMemoryMayBeAnybodys) {
  EXPECT_EQ(Answer(2, Reply(0x17, "3ABCD005A")), "value 2: 5A\nrecord 2\n");
  EXPECT_TRUE(run.fields().message_received);
}

TEST_F(ZoltRoutines, TheSlaveThatAnswersIsTheCharacterThatWasAsked) {
  id().LocSlaveAddress = "3F";
  EXPECT_EQ(Answer(1, Reply(0x11, "300010005")), "value 1: 0005\nrecord 1\n");
  id().LocSlaveAddress = "";
  EXPECT_EQ(Answer(1, Reply(0x11, "000010006")), "value 1: 0006\nrecord 1\n");
}

// --- What an answer says -----------------------------------------------------------------------

class ZoltValues : public ZoltRoutines {
 protected:
  std::string Shown(int index, const std::string& digits) {
    const std::string notes =
        Answer(index, index == 1 ? Reply(0x11, "00001" + digits) : Reply(0x17, "0FFAB" + digits));
    const std::string start = "value " + std::to_string(index) + ": ";
    const std::string end = "\nrecord " + std::to_string(index) + "\n";
    if (!notes.starts_with(start) || !notes.ends_with(end)) return "no value: " + notes;
    return notes.substr(start.size(), notes.size() - start.size() - end.size());
  }

  std::string ShownId(std::uint8_t select, std::int32_t storage, std::int32_t representation,
                      const std::string& digits) {
    id().SelectByte = select;
    id().StorageType = storage;
    id().Representation = representation;
    return Shown(1, digits);
  }

  std::string ShownMemory(std::int32_t storage, std::int32_t representation,
                          const std::string& digits) {
    memory().StorageType = storage;
    memory().Representation = representation;
    return Shown(2, digits);
  }
};

TEST_F(ZoltValues, OfADataIdAreTheByteOrTheWordThatIsSelected) {
  EXPECT_EQ(ShownId(kMsb, kUnsignedByte, kHexadecimal, "0A9F"), "0A");
  EXPECT_EQ(id().RawValue, 0x0A);
  EXPECT_EQ(ShownId(kLsb, kUnsignedByte, kHexadecimal, "0A9F"), "9F");
  EXPECT_EQ(id().RawValue, 0x9F);
  EXPECT_EQ(ShownId(kBoth, kUnsignedWord, kHexadecimal, "0A9F"), "0A9F");
  EXPECT_EQ(id().RawValue, 0x0A9F);
}

TEST_F(ZoltValues, OfADataIdHaveTheWidthOfTheSelectionAndNotOfTheStorageType) {
  EXPECT_EQ(ShownId(kMsb, kUnsignedWord, kHexadecimal, "0A9F"), "0A");
  EXPECT_EQ(ShownId(kMsb, kSignedWord, kDecimal, "FF00"), "-1");
  EXPECT_EQ(ShownId(kMsb, kUnsignedWord, kBinary, "0500"), "00000101");
  EXPECT_EQ(ShownId(kBoth, kSignedByte, kDecimal, "FFFE"), "-2");
  EXPECT_EQ(ShownId(kBoth, kUnsignedByte, kBinary, "0005"), "0000000000000101");
}

TEST_F(ZoltValues, OfAWordGoNegativeBehind8000) {
  EXPECT_EQ(ShownId(kBoth, kSignedWord, kDecimal, "7FFF"), "32767");
  EXPECT_EQ(ShownId(kBoth, kSignedWord, kDecimal, "8000"), "32768");
  EXPECT_EQ(ShownId(kBoth, kSignedWord, kDecimal, "8001"), "-32767");
  EXPECT_EQ(ShownId(kBoth, kUnsignedWord, kDecimal, "8001"), "32769");
  EXPECT_EQ(ShownMemory(kSignedWord, kDecimal, "8000"), "32768");
  EXPECT_EQ(ShownMemory(kSignedWord, kDecimal, "8001"), "-32767");
}

TEST_F(ZoltValues, OfAByteGoNegativeFrom80On) {
  EXPECT_EQ(ShownId(kLsb, kSignedByte, kDecimal, "007F"), "127");
  EXPECT_EQ(ShownId(kLsb, kSignedByte, kDecimal, "0080"), "-128");
  EXPECT_EQ(ShownId(kMsb, kSignedByte, kDecimal, "8000"), "-128");
  EXPECT_EQ(ShownId(kLsb, kUnsignedByte, kDecimal, "0080"), "128");
  EXPECT_EQ(ShownMemory(kSignedByte, kDecimal, "0080"), "-128");
  EXPECT_EQ(ShownMemory(kSignedByte, kDecimal, "00FF"), "-1");
}

TEST_F(ZoltValues, OfMemoryGoByTheStorageType) {
  memory().SelectByte = kMsb;  // counts for data IDs only
  EXPECT_EQ(ShownMemory(kUnsignedByte, kDecimal, "12FE"), "254");
  EXPECT_EQ(ShownMemory(kSignedByte, kDecimal, "12FE"), "-2");
  EXPECT_EQ(memory().RawValue, 0xFE);
  EXPECT_EQ(ShownMemory(kUnsignedWord, kDecimal, "12FE"), "4862");
  EXPECT_EQ(ShownMemory(kSignedWord, kDecimal, "FFFE"), "-2");
  EXPECT_EQ(memory().RawValue, 0xFFFE);
}

TEST_F(ZoltValues, AreShownInTheirRepresentation) {
  EXPECT_EQ(ShownMemory(kSignedByte, kHexadecimal, "1205"), "05");
  EXPECT_EQ(ShownMemory(kSignedByte, kBinary, "1285"), "10000101");
  EXPECT_EQ(ShownMemory(kSignedByte, kOctal, "1205"), "5");
  EXPECT_EQ(ShownMemory(kSignedWord, kHexadecimal, "0005"), "0005");
  EXPECT_EQ(ShownMemory(kSignedWord, kBinary, "0005"), "0000000000000101");
  EXPECT_EQ(ShownMemory(kSignedWord, kOctal, "FFFF"), "177777");
}

TEST_F(ZoltValues, OfABitAreTrueOrFalseWhateverTheRepresentation) {
  for (int representation = kDecimal; representation <= kOctal; ++representation) {
    id().BitAddress = 3;
    EXPECT_EQ(ShownId(kMsb, kBit, representation, "08F7"), "TRUE");
    EXPECT_EQ(ShownId(kLsb, kBit, representation, "08F7"), "FALSE");
    EXPECT_EQ(id().RawValue, 0xF7);
    memory().BitAddress = 7;
    EXPECT_EQ(ShownMemory(kBit, representation, "0080"), "TRUE");
    EXPECT_EQ(ShownMemory(kBit, representation, "FF7F"), "FALSE");
    EXPECT_EQ(memory().RawValue, 0x7F);
  }
}

TEST_F(ZoltValues, OfABitInAWordStayWhatTheLastBitWas) {
  id().BitAddress = 0;
  EXPECT_EQ(ShownId(kBoth, kBit, kDecimal, "FFFF"), "FALSE");
  memory().BitAddress = 0;
  ASSERT_EQ(ShownMemory(kBit, kDecimal, "0001"), "TRUE");
  EXPECT_EQ(ShownId(kBoth, kBit, kDecimal, "0000"), "TRUE");
  EXPECT_EQ(id().RawValue, 0);
}

TEST_F(ZoltValues, KeepTheBitOfEveryByteOfADataId) {
  id().BitAddress = 0;
  EXPECT_EQ(ShownId(kLsb, kUnsignedByte, kDecimal, "0001"), "1");
  EXPECT_TRUE(run.fields().BitState);
  // Numbers of memory and words leave it alone.
  memory().BitAddress = 0;
  for (const std::int32_t type : {kUnsignedByte, kSignedByte, kUnsignedWord, kSignedWord}) {
    ShownMemory(type, kDecimal, "0000");
  }
  ShownId(kBoth, kUnsignedWord, kDecimal, "0000");
  EXPECT_TRUE(run.fields().BitState);
  ShownId(kMsb, kUnsignedByte, kDecimal, "0001");
  EXPECT_FALSE(run.fields().BitState);
}

// --- The check and the object ------------------------------------------------------------------

TEST(CheckMessage, IsTrueOfABadFrame) {
  EXPECT_FALSE(CheckMessage(Frame(0x01, "000010000D7AF")));
  EXPECT_TRUE(CheckMessage(Frame(0x01, "000010000D7AE")));
  EXPECT_TRUE(CheckMessage(Frame(0x01, "000010000d7af")));
  EXPECT_TRUE(CheckMessage(""));
}

TEST_F(ZoltRoutines, PollsTakesAndWritesAsTheProtocolOfTheRun) {
  ZoltProtocol protocol;
  protocol.SendNextPoll(run);
  EXPECT_EQ(run.fields().MsgPointer, 1);
  run.world.port().Receive(Reply(0x11, "000010005"));
  protocol.TakeResponse(run);
  EXPECT_TRUE(run.fields().message_received);
  std::string value = "1256";
  protocol.SendWrite(run, 2, value);
  EXPECT_TRUE(run.fields().write_message);
  EXPECT_EQ(value, "56");
  EXPECT_EQ(protocol.ReceivePause(0), 0);
}

}  // namespace
}  // namespace tarnlink
