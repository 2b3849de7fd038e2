// What the TarnLink run shows of whatever comes in: a response is trusted on its length alone.

#include <gtest/gtest.h>

#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using RunResponse = MonitorTest;

constexpr const char* kReady = "Ready, port open, timers Comm_Timer";

TEST_F(RunResponse, PrintsAByteByItsRepresentation) {
  struct Case {
    std::string digits;
    std::int32_t representation;
    std::string text;
  };
  for (const Case& c : {
           Case{"FF", kDecimal, "255"},
           Case{"80", kDecimal, "128"},
           Case{"00", kDecimal, "0"},
           Case{"05", kHexadecimal, "5"},
           Case{"FF", kHexadecimal, "FF"},
           Case{"00", kHexadecimal, "0"},
           Case{"FF", kBinary, "11111111"},
           Case{"05", kBinary, "00000101"},
           Case{"00", kBinary, "00000000"},
           Case{"FF", kOctal, "377"},
           Case{"08", kOctal, "10"},
           Case{"00", kOctal, "0"},
           Case{"ab", kHexadecimal, "AB"},
           Case{"2A", 7, "42"},
       }) {
    monitor.screen.UnloadObjects();
    Screen({ByteAt("01A0", c.representation)});
    Start();
    Advance(20);
    Answer(AnswerOf("01A0", c.digits));
    EXPECT_EQ(Value(1), c.text) << c.digits << " as " << c.representation;
    Stop();
  }
}

TEST_F(RunResponse, PrintsAWordByItsRepresentation) {
  struct Case {
    std::string digits;
    std::int32_t representation;
    std::string text;
  };
  const std::string no_bits(16, '0');
  for (const Case& c : {
           Case{"8000", kDecimal, "-32768"},
           Case{"7FFF", kDecimal, "32767"},
           Case{"FFFF", kDecimal, "-1"},
           Case{"0000", kDecimal, "0"},
           Case{"8000", kHexadecimal, "FFFF8000"},
           Case{"8001", kHexadecimal, "FFFF8001"},
           Case{"00FF", kHexadecimal, "FF"},
           Case{"7FFF", kHexadecimal, "7FFF"},
           Case{"8000", kBinary, no_bits},
           Case{"FFFF", kBinary, no_bits},
           Case{"0005", kBinary, "0000000000000101"},
           Case{"7FFF", kBinary, "0111111111111111"},
           Case{"FFFF", kOctal, "37777777777"},
           Case{"0008", kOctal, "10"},
       }) {
    monitor.screen.UnloadObjects();
    Screen({WordAt("01A0", c.representation)});
    Start();
    Advance(20);
    Answer(AnswerOf("01A0", c.digits));
    EXPECT_EQ(Value(1), c.text) << c.digits << " as " << c.representation;
    Stop();
  }
}

TEST_F(RunResponse, TheStorageTypePlaysNoPartInTheText) {
  for (const std::int32_t type : {kBit, kUnsignedByte, kSignedByte}) {
    Location location = ByteAt("01A0", kDecimal);
    location.StorageType = type;
    location.BitAddress = 3;
    monitor.screen.UnloadObjects();
    Screen({location});
    Start();
    Advance(20);
    Answer(AnswerOf("01A0", "F8"));
    EXPECT_EQ(Value(1), "248") << type;
    Stop();
  }
  for (const std::int32_t type : {kUnsignedWord, kSignedWord}) {
    Location location = WordAt("01A0", kDecimal);
    location.StorageType = type;
    monitor.screen.UnloadObjects();
    Screen({location});
    Start();
    Advance(20);
    Answer(AnswerOf("01A0", "FFFE"));
    EXPECT_EQ(Value(1), "-2") << type;
    Stop();
  }
}

TEST_F(RunResponse, KeepsTheRawValueOfTheTableAsItIs) {
  Screen({ByteAt("01A0")});
  monitor.main.Locations[1].RawValue = 7;
  Start();
  Advance(20);
  Answer(AnswerOf("01A0", "2A"));
  EXPECT_EQ(monitor.main.Locations[1].RawValue, 7);
}

TEST_F(RunResponse, ShowsTheDataOfADamagedFrameAllTheSame) {
  struct Case {
    std::string frame;
    std::string text;
  };
  for (const Case& c : {
           Case{"04 05 30 31 41 30 32 41 30 30 03", "2A"},  // wrong sum
           Case{"04 05 30 31 41 30 32 41 34 41 00", "2A"},  // wrong end
           Case{"00 05 30 31 41 30 32 41 34 41 03", "2A"},  // wrong start
           Case{"04 01 30 31 41 30 32 41 34 41 03", "2A"},  // wrong command
           Case{"04 05 46 46 46 46 32 41 34 41 03", "2A"},  // wrong address
           Case{"04 05 30 31 41 30 47 31 34 41 03", "0"},   // "G1"
           Case{"04 05 30 31 41 30 31 47 34 41 03", "1"},   // "1G"
           Case{"04 05 30 31 41 30 20 31 34 41 03", "0"},   // " 1"
           Case{"04 05 30 31 41 30 2D 31 34 41 03", "0"},   // "-1"
           Case{"04 05 30 31 41 30 00 00 34 41 03", "0"},
           Case{"FF FF FF FF FF FF FF FF FF FF FF", "0"},
           Case{"00 00 00 00 00 00 00 00 00 00 00", "0"},
           Case{"03 03 03 03 03 03 38 26 03 03 03", "8"},  // "8&"
       }) {
    monitor.screen.UnloadObjects();
    Screen({ByteAt("01A0")});
    Start();
    Advance(20);
    Answer(Bytes(c.frame));
    EXPECT_EQ(Value(1), c.text) << c.frame;
    EXPECT_EQ(State(), kReady) << c.frame;
    Stop();
  }
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(RunResponse, ShowsTheDataOfADamagedWordAsFarAsItIsHexadecimal) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"12G4", "12"}, {"G234", "0"}, {"123 ", "123"}, {"FFF-", "FFF"}, {"8 00", "8"},
  };
  for (const auto& [digits, text] : cases) {
    monitor.screen.UnloadObjects();
    Screen({WordAt("01A0")});
    Start();
    Advance(20);
    Answer(AnswerOf("01A0", digits));
    EXPECT_EQ(Value(1), text) << digits;
    Stop();
  }
}

TEST_F(RunResponse, ThrowsExtraBytesAwayWithTheRest) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  Advance(20);
  Answer(AnswerOf("01A0", "2A") + "and more of it, as much as there is");
  EXPECT_EQ(Value(1), "2A");
  EXPECT_EQ(world.port().InBufferCount(), 0);
  Advance(kQuietAt9600);
  Answer(AnswerOf("01A1", "2B"));
  EXPECT_EQ(Value(2), "2B");
}

TEST_F(RunResponse, TakesALongStreamAsOneResponse) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  Answer(AnswerOf("01A0", "2A") + std::string(1'000'000, 'x'));
  EXPECT_EQ(Value(1), "2A");
  EXPECT_EQ(world.port().InBufferCount(), 0);
}

TEST_F(RunResponse, WaitsForAnAnswerThatComesByteByByte) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  const std::string answer = AnswerOf("01A0", "2A");
  for (std::size_t i = 0; i < answer.size(); ++i) {
    EXPECT_EQ(Value(1), "Value 1") << i;
    EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout") << i;
    Advance(250);
    Answer(answer.substr(i, 1));
  }
  EXPECT_EQ(Value(1), "2A");
  EXPECT_EQ(State(), kReady);
}

TEST_F(RunResponse, AnAnswerThatComesTooSlowlyTimesOut) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  const std::string answer = AnswerOf("01A0", "2A");
  for (std::size_t i = 0; i < answer.size(); ++i) {
    AnswerIn(static_cast<int>(i + 1) * 300, answer.substr(i, 1));
  }
  ExpectSilentSlaveBox();
  Advance(3000);
  EXPECT_EQ(Value(1), "Value 1");
  EXPECT_EQ(Panel(4), "Communication Stopped");
}

TEST_F(RunResponse, TwoAnswersInOnePieceAreOneResponse) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  Advance(20);
  Answer(AnswerOf("01A0", "2A") + AnswerOf("01A1", "2B"));
  EXPECT_EQ(Value(1), "2A");
  EXPECT_EQ(Value(2), "Value 2");
  Advance(kQuietAt9600 - 1);
  EXPECT_EQ(State(), kReady);
  Advance(1);
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout");
}

TEST_F(RunResponse, NoiseAheadOfAnAnswerIsReadAsTheAnswer) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  Answer("????");
  Answer(AnswerOf("01A0", "2A"));
  // "????", start, command, and then the digits of the address stand where the data is.
  EXPECT_EQ(Value(1), "1");
}

TEST_F(RunResponse, NoiseBetweenTwoPollsIsDroppedAndTheNextOneWaitsForQuiet) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  Advance(20);
  Answer(AnswerOf("01A0", "2A"));
  Answer("????");
  Sent();
  Advance(kQuietAt9600 - 1);
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(State(), kReady);
  Advance(1);
  EXPECT_EQ(Sent(), "160 ms: 04 05 30 31 41 31 44 38 03\n");
  Answer(AnswerOf("01A1", "2B"));
  EXPECT_EQ(Value(2), "2B");
}

TEST_F(RunResponse, ABytesAnswerIsTooShortForAWord) {
  Screen({WordAt("01A0"), WordAt("01A2")});
  Start();
  Advance(20);
  Answer(AnswerOf("01A0", "2A"));
  EXPECT_EQ(Value(1), "Value 1");
  Answer("..");
  // Data and sum of the byte's answer stand where the word is.
  EXPECT_EQ(Value(1), "2A4A");
}

TEST_F(RunResponse, OfAWordsAnswerToAByteTheFirstTwoDigitsCount) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  Answer(AnswerOf("01A0", "12AB"));
  EXPECT_EQ(Value(1), "12");
}

TEST_F(RunResponse, AnAnswerOutOfTurnGoesToWhereTheScanStands) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  Advance(20);
  Answer(AnswerOf("01A0", "2A"));
  Answer(AnswerOf("01A1", "2B"));
  EXPECT_EQ(Value(1), "2B");
  EXPECT_EQ(State(), kReady);
  EXPECT_EQ(monitor.main.MsgPointer, 1);
}

TEST_F(RunResponse, AnAnswerBetweenTwoRoundsGoesToTheHiddenTemplate) {
  Screen({ByteAt("01A0")});
  Start();
  Advance(20);
  Answer(AnswerOf("01A0", "2A"));
  ASSERT_EQ(monitor.main.MsgPointer, 0);
  Answer(AnswerOf("01A0", "2B"));
  EXPECT_EQ(Value(1), "2A");
  EXPECT_EQ(Value(0), "2B");
  EXPECT_FALSE(monitor.main.RAM_LOC_VAL(0).Visible.get());
  EXPECT_EQ(monitor.main.DDERowCounter, 3);
  Advance(kQuietAt9600);
  Answer(AnswerOf("01A0", "2C"));
  EXPECT_EQ(Value(1), "2C");
}

TEST_F(RunResponse, AnEndlessStreamIsAskedOnceASecond) {
  Screen({ByteAt("01A0"), WordAt("01A1")});
  Start();
  for (int i = 0; i < 10'000; ++i) AnswerIn(i, "012345678901234567890");
  Advance(10'000);
  EXPECT_EQ(world.port().frames().size(), 10U);
  EXPECT_EQ(Panel(4), "Communication Running");
  EXPECT_TRUE(world.dialogs().shown().empty());
}

TEST_F(RunResponse, DoesNotCarryOverIntoTheNextLocation) {
  Screen({ByteAt("01A0"), ByteAt("01A1")});
  Start();
  Advance(20);
  Answer(AnswerOf("01A0", "2A"));
  Advance(20);
  EXPECT_EQ(Value(2), "Value 2");
  EXPECT_EQ(State(), "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout");
}

}  // namespace
}  // namespace tarnlink
