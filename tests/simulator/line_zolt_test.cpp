// The line with a ZOLT slave: pace, silence, and each fault whose bytes are the protocol's own.
#include <algorithm>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "line_fixture.h"
#include "simulator/data_ids.h"
#include "simulator/zolt_frames.h"

namespace boiler {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr std::size_t kHexLength = 16 * 3 - 1;

std::string FrameHex(int type, char slave, std::string_view id, std::string_view data) {
  return HexText(BuildZoltFrame(static_cast<char>(type), slave, id, data));
}

SimulatedBoiler::Options Zolt() {
  SimulatedBoiler::Options options;
  options.protocol = "zolt";
  return options;
}

// At F400 stand 5A 12; the flow has 45.6 degrees.
const std::string kReadF400 = FrameHex(0x07, '0', "FFAB", "F400");
const std::string kMemoryAnswer = FrameHex(0x17, '0', "FFAB", "125A");
const std::string kReadFlow = FrameHex(0x04, '0', "00FE", "0000");
const std::string kFlowAnswer = FrameHex(0x14, '0', "00FE", "01C8");
const std::string kWriteF400 = FrameHex(0x87, '0', "FCFD", "0077");
const std::string kWriteAnswer = FrameHex(0x97, '0', "FCFD", "0077");

class ZoltLine : public ::testing::Test {
 protected:
  ZoltLine() {
    line_.controller().WriteWord(0xF400, 0x125A);
    line_.controller().Set(Item("flow_temperature"), 456);
  }

  void Fault(std::string_view text) { line_.Fault(text); }
  std::string AskMemory() { return line_.Ask(kReadF400); }
  std::string AskFlow() { return line_.Ask(kReadFlow); }
  std::string AskWrite() { return line_.Ask(kWriteF400); }
  int ByteF400() { return line_.controller().memory().Byte(0xF400); }

  // The log tells this fault of the last exchange, with these bytes.
  void ExpectLogged(std::string_view fault, std::string_view hex, Check check) {
    const LogEntry entry = line_.LastFault();
    EXPECT_EQ(entry.meaning, fault);
    EXPECT_EQ(entry.exchange, line_.line().Exchanges());
    EXPECT_EQ(HexText(entry.bytes), hex);
    EXPECT_EQ(entry.check, check);
  }

  BoilerOnLine line_{Zolt()};
};

TEST_F(ZoltLine, AnswersReadsAndWrites) {
  EXPECT_EQ(AskMemory(), kMemoryAnswer);
  EXPECT_EQ(AskFlow(), kFlowAnswer);
  EXPECT_EQ(AskWrite(), kWriteAnswer);
  EXPECT_EQ(AskMemory(), FrameHex(0x17, '0', "FFAB", "1277"));
  EXPECT_THAT(line_.Log(), ElementsAre("heard read memory F400, slave 0", "said answer",
                                       "heard read class 4 ID 00FE, slave 0", "said answer",
                                       "heard write 77 to memory F400, slave 0", "said answer",
                                       "heard read memory F400, slave 0", "said answer"));
}

TEST(ZoltLineOfABoiler, AHeatDemandStartsABurnerCycle) {
  BoilerOnLine line(Zolt());
  line.controller().Set(Item("heat_demand"), 1);  // never
  line.Pass(10'000'000);
  const auto phase = [&] {
    return static_cast<Phase>(line.controller().memory().Byte(Item("phase").address));
  };
  EXPECT_EQ(phase(), Phase::kStandby);
  EXPECT_EQ(line.Ask(FrameHex(0x81, '0', "000E", "FFFF")), FrameHex(0x91, '0', "000E", "FFFF"));
  std::vector<Phase> phases;
  for (int i = 0; i < 100; ++i) {
    line.Pass(100'000);
    line.Ask(FrameHex(0x01, '0', "0001", "0000"));
    if (phases.empty() || phases.back() != phase()) phases.push_back(phase());
  }
  EXPECT_THAT(phases, ElementsAre(Phase::kPrepurge, Phase::kIgnition, Phase::kBurn));
  const std::string status = *ParseHexBytes(line.Ask(FrameHex(0x01, '0', "0001", "0000")));
  EXPECT_EQ(status.substr(7, 2), "09") << "heating, flame";
}

TEST_F(ZoltLine, SaysNothingToOtherSlaves) {
  EXPECT_EQ(line_.Ask(FrameHex(0x04, '5', "00FE", "0000")), "");
  EXPECT_THAT(line_.Log(), ElementsAre("ignored for another slave"));
  EXPECT_EQ(line_.line().Exchanges(), 0);
}

TEST(ZoltLineOfMany, AnswersUnderEachAddress) {
  SimulatedBoiler::Options options = Zolt();
  options.slave.addresses = "0,3,F";
  BoilerOnLine line(options);
  for (const char slave : {'0', '3', 'F'}) {
    const auto number = static_cast<unsigned>(2040 + kZoltSlaves.find(slave));
    EXPECT_EQ(line.Ask(FrameHex(0x01, slave, "14D9", "0000")),
              FrameHex(0x11, slave, "14D9", HexDigits(number, 4)));
  }
  EXPECT_EQ(line.Ask(FrameHex(0x01, '1', "14D9", "0000")), "");
}

TEST(ZoltLineOfMany, SaysCorruptedWhereItIsAskedTo) {
  SimulatedBoiler::Options options = Zolt();
  options.slave.answers_corrupted = true;
  BoilerOnLine line(options);
  EXPECT_EQ(line.Ask("0D 01 30 30 30 30 31 30 30 30 30 44 37 41 45 0A"),
            FrameHex(0x21, '0', "0001", "0000"));
  EXPECT_THAT(line.Log(), ElementsAre("heard corrupted, the check should be D7AF", "said answer"));
}

TEST(ZoltLineOfMany, LetsEachByteTakeItsTime) {
  SimulatedBoiler::Options options = Zolt();
  options.line.pace = {9600, 10};
  options.line.answer_delay_us = 5'000;
  BoilerOnLine line(options);
  line.Ask(kReadF400);
  ASSERT_EQ(line.Arrivals().size(), 16u);
  EXPECT_EQ(line.Arrivals().front(), (Arrival{16'666 + 5'000 + 1'041, "0D"}));
  EXPECT_EQ(line.Arrivals().back(), (Arrival{16'666 + 5'000 + 16'666, "0A"}));
}

TEST_F(ZoltLine, TakesARequestThatDribblesIn) {
  for (std::size_t at = 0; at < kReadF400.size(); at += 3) {
    line_.Pass(49'000);
    line_.Send(kReadF400.substr(at, 2));
  }
  EXPECT_EQ(line_.Rest(), kMemoryAnswer);
}

TEST_F(ZoltLine, DropsAnIncompleteRequestAfterFiftyMilliseconds) {
  line_.Send(kReadF400.substr(0, 41));
  EXPECT_EQ(line_.line().NextDue(), 50'000);
  EXPECT_EQ(line_.Rest(), "");
  EXPECT_THAT(line_.Log(), ElementsAre("ignored incomplete"));
  EXPECT_EQ(AskMemory(), kMemoryAnswer);
}

TEST_F(ZoltLine, WrongAddressNamesAnotherSlave) {
  Fault("wrong_address");
  std::set<std::string> slaves;
  for (int i = 0; i < 200; ++i) {
    const std::string said = AskFlow();
    ExpectLogged("wrong_address", said, Check::kHolds);
    const std::string bytes = *ParseHexBytes(said);
    EXPECT_EQ(said, FrameHex(0x14, bytes[2], "00FE", "01C8"));
    slaves.insert(bytes.substr(2, 1));
  }
  EXPECT_EQ(slaves.size(), 15u);
  EXPECT_FALSE(slaves.contains("0"));
}

TEST_F(ZoltLine, WrongIdNamesAnotherId) {
  Fault("wrong_id");
  std::set<std::string> ids;
  for (int i = 0; i < 20; ++i) {
    const std::string said = AskFlow();
    ExpectLogged("wrong_id", said, Check::kHolds);
    const std::string id = ParseHexBytes(said)->substr(3, 4);
    EXPECT_EQ(said, FrameHex(0x14, '0', id, "01C8"));
    ids.insert(id);
  }
  EXPECT_GT(ids.size(), 15u);
  EXPECT_FALSE(ids.contains("00FE"));
}

TEST_F(ZoltLine, WrongKindIsAnotherAcknowledge) {
  Fault("wrong_kind");
  std::set<int> types;
  for (int i = 0; i < 300; ++i) {
    const std::string said = AskFlow();
    ExpectLogged("wrong_kind", said, Check::kHolds);
    const int type = static_cast<unsigned char>((*ParseHexBytes(said))[1]);
    EXPECT_EQ(said, FrameHex(type, '0', "00FE", "01C8"));
    types.insert(type);
  }
  EXPECT_EQ(types, (std::set<int>{0x11, 0x12, 0x13, 0x15, 0x16, 0x17, 0x91, 0x92, 0x93, 0x94, 0x95,
                                  0x96, 0x97}));
}

TEST_F(ZoltLine, RefusedSaysNoInAnyKind) {
  for (const int kind : {2, 4, 6, 3, 15}) {
    const std::string fault = "refused(" + std::to_string(kind) + ")";
    Fault(fault + "#1");
    EXPECT_EQ(AskFlow(), FrameHex(kind << 4 | 4, '0', "00FE", "0000"));
    ExpectLogged(fault, FrameHex(kind << 4 | 4, '0', "00FE", "0000"), Check::kHolds);
  }
}

TEST_F(ZoltLine, RefusedKeepsAWriteFromBeingDone) {
  Fault("refused(2)#1");
  EXPECT_EQ(AskWrite(), FrameHex(0x27, '0', "FCFD", "0077"));
  EXPECT_EQ(ByteF400(), 0x5A);
}

TEST_F(ZoltLine, CountsThatAreWrongMakeShorterAndLongerFrames) {
  Fault("short_count#1");
  EXPECT_EQ(AskMemory(), FrameHex(0x17, '0', "FFAB", "5A"));
  ExpectLogged("short_count", FrameHex(0x17, '0', "FFAB", "5A"), Check::kHolds);
  Fault("long_count#1");
  const std::string longer = AskMemory();
  ExpectLogged("long_count", longer, Check::kHolds);
  EXPECT_EQ(longer, FrameHex(0x17, '0', "FFAB", ParseHexBytes(longer)->substr(7, 6)));
  EXPECT_EQ(ParseHexBytes(longer)->substr(7, 4), "125A");
  Fault("oversize(5000)#1");
  const std::string huge = AskMemory();
  ExpectLogged("oversize(5000)", huge, Check::kHolds);
  EXPECT_EQ(ParseHexBytes(huge)->size(), 5016u);
}

TEST_F(ZoltLine, StaleDuplicateIsTheAnswerBefore) {
  EXPECT_EQ(AskFlow(), kFlowAnswer);
  Fault("stale_duplicate#1");
  EXPECT_EQ(AskMemory(), kFlowAnswer);
  ExpectLogged("stale_duplicate", kFlowAnswer, Check::kHolds);
}

TEST_F(ZoltLine, AnswerOfOtherRequestIsRightForAnotherId) {
  Fault("answer_of_other_request");
  std::set<std::string> ids;
  for (int i = 0; i < 300; ++i) {
    const std::string said = AskFlow();
    ExpectLogged("answer_of_other_request", said, Check::kHolds);
    const std::string bytes = *ParseHexBytes(said);
    const DataId* id = FindDataId(bytes[1] & 0x07, *ParseAddress(bytes.substr(3, 4)));
    ASSERT_NE(id, nullptr);
    EXPECT_EQ(bytes[1] & 0xF0, 0x10);
    EXPECT_EQ(bytes.substr(7, 4), HexDigits(id->read({line_.controller(), 0, 0}), 4));
    ids.insert(bytes.substr(3, 4));
  }
  EXPECT_GT(ids.size(), 40u);
  EXPECT_FALSE(ids.contains("00FE"));
}

TEST_F(ZoltLine, AnswerOfOtherRequestIsRightForAnotherAddress) {
  Fault("answer_of_other_request");
  std::set<std::string> data;
  for (int i = 0; i < 500; ++i) {
    const std::string said = AskMemory();
    EXPECT_THAT(said, StartsWith(kMemoryAnswer.substr(0, 20)));
    data.insert(ParseHexBytes(said)->substr(7, 4));
  }
  EXPECT_GT(data.size(), 5u);
}

TEST_F(ZoltLine, CheckWrongChangesTheCheckAlone) {
  Fault("check_wrong");
  std::set<std::string> checks;
  for (int i = 0; i < 50; ++i) {
    const std::string said = AskFlow();
    ExpectLogged("check_wrong", said, Check::kBroken);
    EXPECT_EQ(said.substr(0, 32), kFlowAnswer.substr(0, 32));
    EXPECT_EQ(said.substr(45), "0A");
    checks.insert(said.substr(33, 11));
  }
  EXPECT_GT(checks.size(), 45u);
  EXPECT_FALSE(checks.contains(kFlowAnswer.substr(33, 11)));
}

TEST_F(ZoltLine, DamageReachesTheMasterAsTheLogTells) {
  int struck = 0;
  for (const FaultInfo& info : AllFaults()) {
    if (info.group != FaultGroup::kDamage) continue;
    Fault(std::string(info.name) + "#1");
    const std::string said = AskWrite();
    EXPECT_NE(said, kWriteAnswer) << info.name;
    EXPECT_EQ(HexText(line_.LastFault().bytes), said);
    EXPECT_THAT(line_.LastFault().meaning, StartsWith(std::string(info.name)));
    EXPECT_EQ(AskWrite(), kWriteAnswer) << info.name;
    ++struck;
  }
  EXPECT_EQ(struck, 13);
}

TEST_F(ZoltLine, HighBitStrippedMakesAReadOutOfAWriteAcknowledge) {
  Fault("high_bit_stripped");
  const std::string said = AskWrite();
  EXPECT_EQ(said.substr(0, 5), "0D 17");
  EXPECT_EQ(said.substr(5), kWriteAnswer.substr(5));
  ExpectLogged("high_bit_stripped", said, Check::kBroken);
  EXPECT_EQ(AskFlow(), kFlowAnswer);
  ExpectLogged("high_bit_stripped", kFlowAnswer, Check::kHolds);
}

TEST_F(ZoltLine, CrlfTranslatedPutsACarriageReturnAheadOfTheEnd) {
  Fault("crlf_translated#1");
  const std::string said = kFlowAnswer.substr(0, 45) + "0D 0A";
  EXPECT_EQ(AskFlow(), said);
  ExpectLogged("crlf_translated", said, Check::kHolds);
}

TEST_F(ZoltLine, BusyThenOkIsSilentUntilItAnswers) {
  Fault("busy_then_ok(2)#1");
  EXPECT_EQ(AskFlow(), "");
  EXPECT_EQ(AskFlow(), "");
  EXPECT_EQ(AskFlow(), kFlowAnswer);
}

TEST_F(ZoltLine, ForeignTrafficIsAnExchangeWithAnotherSlave) {
  Fault("foreign_traffic#1");
  const std::string said = AskFlow();
  ExpectLogged("foreign_traffic", said, Check::kHolds);
  const std::string bytes = *ParseHexBytes(said);
  ASSERT_EQ(bytes.size(), 3 * kZoltLength);
  const auto request = ParseZoltRequest(bytes.substr(0, 16)).request;
  ASSERT_TRUE(request);
  EXPECT_EQ(request->slave, 'F');
  EXPECT_EQ(bytes[16 + 2], 'F');
  EXPECT_EQ(bytes[16 + 1], bytes[1] | 0x10);
  EXPECT_TRUE(ZoltCheckHolds(bytes.substr(16, 16)));
  EXPECT_EQ(said.substr(said.size() - kHexLength), kFlowAnswer);
}

TEST_F(ZoltLine, WritesGoWrongAsTheLogTells) {
  Fault("write_ok_not_stored#1");
  EXPECT_EQ(AskWrite(), kWriteAnswer);
  ExpectLogged("write_ok_not_stored", kWriteAnswer, Check::kHolds);
  EXPECT_EQ(ByteF400(), 0x5A);
  Fault("range_rejected#1");
  EXPECT_EQ(AskWrite(), FrameHex(0x47, '0', "FCFD", "0077"));
  ExpectLogged("range_rejected", FrameHex(0x47, '0', "FCFD", "0077"), Check::kHolds);
  EXPECT_EQ(ByteF400(), 0x5A);
  Fault("write_stored_answer_lost#1");
  EXPECT_EQ(AskWrite(), "");
  EXPECT_EQ(ByteF400(), 0x77);
}

TEST_F(ZoltLine, FaultsOfTimeAndStreamAreThoseOfTheLine) {
  Fault("late_reply(700)#1");
  EXPECT_EQ(AskMemory(), kMemoryAnswer);
  EXPECT_EQ(line_.Arrivals().back().time_us, 700'000);
  Fault("self_echo#1");
  EXPECT_EQ(AskMemory(), kReadF400 + " " + kMemoryAnswer);
  Fault("late_reply_after_next#1");
  EXPECT_EQ(AskMemory(), "");
  EXPECT_EQ(AskWrite(), kMemoryAnswer + " " + kWriteAnswer);
  line_.SetByte(0xF400, 0x5A);
  Fault("truncate(1)#1");
  EXPECT_EQ(AskMemory(), kMemoryAnswer.substr(0, 44));
  ExpectLogged("truncate(1)", kMemoryAnswer.substr(0, 44), Check::kHolds);
  Fault("truncate(2)#1");
  EXPECT_EQ(AskMemory(), kMemoryAnswer.substr(0, 41));
  ExpectLogged("truncate(2)", kMemoryAnswer.substr(0, 41), Check::kBroken);
}

}  // namespace
}  // namespace boiler
