// The line with a Modbus slave: pace, silence, and each fault whose bytes are the protocol's own.
#include <algorithm>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "line_fixture.h"
#include "simulator/modbus_frames.h"
#include "simulator/modbus_registers.h"

namespace boiler {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

// At F400, register 0200, stands 125A.
constexpr std::string_view kReadOne = "01 03 02 00 00 01 85 B2";
constexpr std::string_view kOneAnswer = "01 03 02 12 5A 34 DF";
constexpr std::string_view kReadTwo = "01 03 02 00 00 02 C5 B3";
constexpr std::string_view kTwoAnswer = "01 03 04 12 5A 00 00 DF 58";
constexpr std::string_view kWrite = "01 06 02 00 12 5A 04 E9";  // as is its answer

SimulatedBoiler::Options Modbus(int baud = 0) {
  SimulatedBoiler::Options options;
  options.protocol = "modbus";
  options.line.pace = {baud, 10};
  return options;
}

std::string Checked(std::string_view hex) { return HexText(WithModbusCheck(*ParseHexBytes(hex))); }

class ModbusLine : public ::testing::Test {
 protected:
  ModbusLine() { line_.controller().WriteWord(0xF400, 0x125A); }

  void Fault(std::string_view text) { line_.Fault(text); }
  std::string AskOne() { return line_.Ask(kReadOne); }
  std::string AskTwo() { return line_.Ask(kReadTwo); }
  std::string AskWrite() { return line_.Ask(kWrite); }
  void SetF400(std::uint16_t value) { line_.controller().WriteWord(0xF400, value); }
  int WordF400() { return line_.controller().memory().Word(0xF400); }

  // The log tells this fault of the last exchange, with these bytes.
  void ExpectLogged(std::string_view fault, std::string_view hex, Check check) {
    const LogEntry entry = line_.LastFault();
    EXPECT_EQ(entry.meaning, fault);
    EXPECT_EQ(entry.exchange, line_.line().Exchanges());
    EXPECT_EQ(HexText(entry.bytes), hex);
    EXPECT_EQ(entry.check, check);
  }

  BoilerOnLine line_{Modbus()};
};

TEST_F(ModbusLine, AnswersReadsAndWrites) {
  EXPECT_EQ(AskOne(), kOneAnswer);
  EXPECT_EQ(line_.Ask("01 10 02 00 00 02 04 12 34 56 78 91 FB"), "01 10 02 00 00 02 40 70");
  EXPECT_EQ(AskTwo(), Checked("01 03 04 12 34 56 78"));
  EXPECT_THAT(
      line_.Log(),
      ElementsAre("heard read 1 holding register 0200, slave 1", "said answer",
                  "heard write 2 holding registers from 0200 1234 5678, slave 1", "said answer",
                  "heard read 2 holding registers from 0200, slave 1", "said answer"));
}

TEST_F(ModbusLine, SaysNothingToOtherSlavesAndToAll) {
  EXPECT_EQ(line_.Ask("02 03 02 00 00 01 85 81"), "");
  EXPECT_EQ(line_.Ask("00 06 02 00 12 5B C4 F8"), "");
  EXPECT_EQ(WordF400(), 0x125B);
  EXPECT_THAT(line_.Log(), ElementsAre("ignored for another slave",
                                       "heard write 1 holding register 0200 125B, to all slaves"));
}

TEST(ModbusLineOfMany, AnswersUnderEachAddress) {
  SimulatedBoiler::Options options = Modbus();
  options.slave.addresses = "17,247";
  BoilerOnLine line(options);
  EXPECT_EQ(line.Ask(Checked("11 03 02 00 00 01")), Checked("11 03 02 00 00"));
  EXPECT_EQ(line.Ask(Checked("F7 03 02 00 00 01")), Checked("F7 03 02 00 00"));
  EXPECT_EQ(line.Ask(kReadOne), "");
}

TEST(ModbusLineOfMany, AnswersAsSoonAsTheLengthIsFull) {
  BoilerOnLine line(Modbus(9600));
  line.Send(kReadOne);
  line.Rest();
  // 8 bytes of 10 bits at 9600 baud take 8333 us, the answer's 7 take 7291.
  EXPECT_EQ(line.Arrivals().front(), (Arrival{8'333 + 1'041, "01"}));
  EXPECT_EQ(line.Arrivals().back().time_us, 8'333 + 7'291);
}

TEST(ModbusLineOfMany, EndsAnUnknownFunctionByThreeAndAHalfCharactersOfSilence) {
  const std::string unknown = "01 2B 0E 01 00 70 77";
  struct Row {
    int baud;
    std::int64_t heard_us, silence_us;
  };
  for (const Row& row : {Row{1200, 58'333, 29'166}, Row{9600, 7'291, 3'645},
                         Row{115'200, 607, 1'750}, Row{0, 0, 1'750}}) {
    BoilerOnLine line(Modbus(row.baud));
    line.Send(unknown);
    EXPECT_EQ(line.line().NextDue(), row.heard_us + row.silence_us);
    EXPECT_EQ(line.Rest(), "01 AB 01 9E F0");
    EXPECT_EQ(line.Entries(LogKind::kHeard).front().time_us, row.heard_us + row.silence_us);
  }
}

TEST_F(ModbusLine, TakesARequestThatDribblesIn) {
  for (std::size_t at = 0; at < kReadOne.size(); at += 3) {
    line_.Pass(49'000);
    line_.Send(kReadOne.substr(at, 2));
  }
  EXPECT_EQ(line_.Rest(), kOneAnswer);
}

TEST_F(ModbusLine, DropsAnIncompleteRequestAfterFiftyMilliseconds) {
  line_.Send(kReadOne.substr(0, 20));
  EXPECT_EQ(line_.line().NextDue(), 50'000);
  EXPECT_EQ(line_.Rest(), "");
  EXPECT_THAT(line_.Log(), ElementsAre("ignored incomplete"));
  EXPECT_EQ(AskOne(), kOneAnswer);
}

TEST_F(ModbusLine, ListensAgainAfterTheSilenceThatFollowsGarbage) {
  line_.Send("55 03 AA " + std::string(kReadOne));
  line_.Pass(1'749);
  line_.Send(kReadOne);
  EXPECT_EQ(line_.Rest(), "");
  EXPECT_THAT(line_.Log(), ElementsAre("ignored the check is wrong"));
  EXPECT_EQ(AskOne(), kOneAnswer);
}

TEST_F(ModbusLine, WrongAddressNamesAnotherSlave) {
  Fault("wrong_address");
  std::set<std::string> slaves;
  for (int i = 0; i < 300; ++i) {
    const std::string said = AskOne();
    ExpectLogged("wrong_address", said, Check::kHolds);
    EXPECT_EQ(said, Checked(said.substr(0, 2) + " 03 02 12 5A"));
    slaves.insert(said.substr(0, 2));
  }
  EXPECT_GT(slaves.size(), 140u);
  for (const char* never : {"00", "01", "F8", "FF"}) EXPECT_FALSE(slaves.contains(never));
}

TEST_F(ModbusLine, WrongIdNamesAnotherRegisterInTheAnswerToAWrite) {
  Fault("wrong_id");
  EXPECT_EQ(AskOne(), kOneAnswer);
  EXPECT_TRUE(line_.Entries(LogKind::kFault).empty());
  std::set<std::string> registers;
  for (int i = 0; i < 20; ++i) {
    const std::string said = AskWrite();
    ExpectLogged("wrong_id", said, Check::kHolds);
    EXPECT_EQ(said, Checked("01 06 " + said.substr(6, 5) + " 12 5A"));
    registers.insert(said.substr(6, 5));
  }
  EXPECT_GT(registers.size(), 15u);
  EXPECT_FALSE(registers.contains("02 00"));
}

TEST_F(ModbusLine, WrongKindHasAnotherFunction) {
  Fault("wrong_kind");
  std::set<std::string> functions;
  for (int i = 0; i < 60; ++i) {
    const std::string said = AskOne();
    ExpectLogged("wrong_kind", said, Check::kHolds);
    EXPECT_EQ(said, Checked("01 " + said.substr(3, 2) + " 02 12 5A"));
    functions.insert(said.substr(3, 2));
  }
  EXPECT_EQ(functions, (std::set<std::string>{"04", "06", "10"}));
}

TEST_F(ModbusLine, RefusedIsAnExceptionOfAnyCode) {
  for (int code = 0; code < 256; code += 5) {
    const std::string fault = "refused(" + std::to_string(code) + ")";
    const std::string said = Checked("01 83 " + HexDigits(static_cast<unsigned>(code), 2));
    Fault(fault + "#1");
    EXPECT_EQ(AskOne(), said);
    ExpectLogged(fault, said, Check::kHolds);
  }
}

TEST_F(ModbusLine, RefusedKeepsAWriteFromBeingDone) {
  SetF400(0);
  Fault("refused(4)#1");
  EXPECT_EQ(AskWrite(), Checked("01 86 04"));
  EXPECT_EQ(WordF400(), 0);
}

TEST_F(ModbusLine, CountsThatAreWrongAgreeWithTheirData) {
  Fault("short_count#3");
  EXPECT_EQ(AskTwo(), kOneAnswer);
  ExpectLogged("short_count", kOneAnswer, Check::kHolds);
  EXPECT_EQ(AskOne(), Checked("01 03 00"));
  EXPECT_EQ(AskWrite(), Checked("01 06 02 00 12"));
  Fault("long_count#2");
  const std::string read = AskOne();
  ExpectLogged("long_count", read, Check::kHolds);
  EXPECT_THAT(read, StartsWith("01 03 04 12 5A "));
  EXPECT_EQ(ParseHexBytes(read)->size(), 9u);
  const std::string write = AskWrite();
  EXPECT_THAT(write, StartsWith("01 06 02 00 12 5A "));
  EXPECT_EQ(ParseHexBytes(write)->size(), 10u);
}

TEST_F(ModbusLine, OversizeHasSoMuchMoreDataAndALowByteOfItsCount) {
  Fault("oversize(300)#1");
  const std::string said = AskOne();
  ExpectLogged("oversize(300)", said, Check::kHolds);
  EXPECT_THAT(said, StartsWith("01 03 2E 12 5A "));  // 302 - 256
  EXPECT_EQ(ParseHexBytes(said)->size(), 307u);
}

TEST_F(ModbusLine, StaleDuplicateIsTheAnswerBeforePastAWriteToAll) {
  EXPECT_EQ(AskTwo(), kTwoAnswer);
  EXPECT_EQ(line_.Ask("00 06 02 00 12 5A 05 38"), "");
  Fault("stale_duplicate#1");
  EXPECT_EQ(AskOne(), kTwoAnswer);
  ExpectLogged("stale_duplicate", kTwoAnswer, Check::kHolds);
}

TEST_F(ModbusLine, AnswerOfOtherRequestIsRightForOtherRegisters) {
  Fault("answer_of_other_request");
  std::set<std::size_t> lengths;
  std::set<char> functions;
  for (int i = 0; i < 60; ++i) {
    const std::string said = AskOne();
    ExpectLogged("answer_of_other_request", said, Check::kHolds);
    const std::string bytes = *ParseHexBytes(said);
    EXPECT_EQ(bytes[2], static_cast<char>(bytes.size() - 5));
    lengths.insert(bytes.size());
    functions.insert(bytes[1]);
  }
  EXPECT_EQ(lengths, (std::set<std::size_t>{7, 9, 11, 13}));
  EXPECT_EQ(functions, (std::set<char>{3, 4}));
}

TEST_F(ModbusLine, CheckWrongChangesTheCheckAlone) {
  Fault("check_wrong");
  std::set<std::string> checks;
  for (int i = 0; i < 50; ++i) {
    const std::string said = AskOne();
    ExpectLogged("check_wrong", said, Check::kBroken);
    EXPECT_THAT(said, StartsWith("01 03 02 12 5A "));
    EXPECT_EQ(said.size(), kOneAnswer.size());
    checks.insert(said.substr(15));
  }
  EXPECT_GT(checks.size(), 45u);
  EXPECT_FALSE(checks.contains("34 DF"));
}

TEST_F(ModbusLine, DamageReachesTheMasterAsTheLogTells) {
  SetF400(0x0A8F);
  const std::string answer = AskOne();
  int struck = 0;
  for (const FaultInfo& info : AllFaults()) {
    if (info.group != FaultGroup::kDamage) continue;
    Fault(std::string(info.name) + "#1");
    const std::string said = AskOne();
    EXPECT_NE(said, answer) << info.name;
    EXPECT_EQ(HexText(line_.LastFault().bytes), said);
    EXPECT_EQ(line_.LastFault().check, Check::kBroken) << info.name;
    EXPECT_EQ(AskOne(), answer) << info.name;
    ++struck;
  }
  EXPECT_EQ(struck, 13);
}

TEST_F(ModbusLine, BusyThenOkSaysSoUntilItAnswers) {
  Fault("busy_then_ok(2)#1");
  EXPECT_EQ(AskOne(), "01 83 06 C1 32");
  ExpectLogged("busy_then_ok(2)", "01 83 06 C1 32", Check::kHolds);
  EXPECT_EQ(AskOne(), "01 83 06 C1 32");
  EXPECT_EQ(AskOne(), kOneAnswer);
}

TEST_F(ModbusLine, ForeignTrafficIsAnExchangeWithAnotherSlave) {
  Fault("foreign_traffic#1");
  const std::string said = AskOne();
  ExpectLogged("foreign_traffic", said, Check::kHolds);
  const std::string bytes = *ParseHexBytes(said);
  ASSERT_EQ(bytes.size(), 8u + 7u + 7u);
  EXPECT_TRUE(ModbusCheckHolds(bytes.substr(0, 8)));
  EXPECT_TRUE(ModbusCheckHolds(bytes.substr(8, 7)));
  EXPECT_THAT(said, StartsWith("F7 03 "));
  EXPECT_EQ(HexText(bytes.substr(8, 3)), "F7 03 02");
  EXPECT_EQ(HexText(bytes.substr(15)), kOneAnswer);
}

TEST_F(ModbusLine, WritesGoWrongAsTheLogTells) {
  SetF400(0x1111);
  Fault("write_ok_not_stored#1");
  EXPECT_EQ(AskWrite(), kWrite);
  ExpectLogged("write_ok_not_stored", kWrite, Check::kHolds);
  EXPECT_EQ(WordF400(), 0x1111);
  Fault("range_rejected#1");
  EXPECT_EQ(AskWrite(), "01 86 03 02 61");
  ExpectLogged("range_rejected", "01 86 03 02 61", Check::kHolds);
  EXPECT_EQ(WordF400(), 0x1111);
  Fault("write_stored_answer_lost#1");
  EXPECT_EQ(AskWrite(), "");
  EXPECT_EQ(WordF400(), 0x125A);
}

TEST_F(ModbusLine, FaultsStrikeAWriteToAllInSilence) {
  Fault("bit_flip(1)#1");
  EXPECT_EQ(line_.Ask("00 06 02 00 12 5A 05 38"), "");
  ExpectLogged("bit_flip(1)", "", Check::kNone);
  EXPECT_EQ(AskOne(), kOneAnswer);
}

TEST_F(ModbusLine, FaultsOfTimeAndStreamAreThoseOfTheLine) {
  Fault("late_reply(700)#1");
  EXPECT_EQ(AskOne(), kOneAnswer);
  EXPECT_EQ(line_.Arrivals().back().time_us, 700'000);
  Fault("self_echo#1");
  EXPECT_EQ(AskOne(), std::string(kReadOne) + " " + std::string(kOneAnswer));
  Fault("merge_two#1");
  EXPECT_EQ(AskOne(), "");
  EXPECT_EQ(AskTwo(), std::string(kOneAnswer) + " " + std::string(kTwoAnswer));
  Fault("truncate(1)#1");
  EXPECT_EQ(AskOne(), kOneAnswer.substr(0, 17));
  ExpectLogged("truncate(1)", kOneAnswer.substr(0, 17), Check::kBroken);
}

}  // namespace
}  // namespace boiler
