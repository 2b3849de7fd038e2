#include "tools/link_record.h"

#include <gtest/gtest.h>

#include "form/boiler_on_line.h"
#include "platform/watched_platform.h"
#include "protocols/zolt_message.h"
#include "support/fake_world.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

std::string Zolt(std::uint8_t type, int id, std::string_view slave = "3") {
  return BuildZoltMessage(type, slave, id, 0x2A, 0);
}

class LinkRecordTest : public testing::Test {
 protected:
  LinkRecordTest() { port->SetPortOpen(true); }

  void Ask(int id = 1, std::string_view slave = "3") { port->Output(Zolt(0x01, id, slave)); }
  void Comes(const std::string& bytes, Micros later = 20ms) {
    world.Advance(later);
    world.port().Receive(bytes);
  }
  void Answers(int id = 1, std::string_view slave = "3", Micros later = 20ms) {
    Comes(Zolt(0x11, id, slave), later);
  }

  // "3: 2 exchanges, 1 answers, 0 refused, 1 silent, 0 bad" of each slave, a line each.
  std::string Accounts() const {
    std::string text;
    for (const SlaveAccount* one : record.account().Slaves()) text += Line(*one) + "\n";
    return text;
  }
  static std::string Line(const SlaveAccount& one) {
    return one.slave + ": " + std::to_string(one.exchanges) + " exchanges, " +
           std::to_string(one.answers) + " answers, " + std::to_string(one.refusals) +
           " refused, " + std::to_string(one.timeouts) + " silent, " +
           std::to_string(one.bad_checks) + " bad";
  }
  // The meanings of the trace, one line each.
  std::string Trace() const {
    std::string text;
    for (const TraceEntry& entry : record.trace()) text += entry.meaning + "\n";
    return text;
  }

  FakeWorld world;
  LinkRecord record{world.clock()};
  WatchedPlatform watched{world, record};
  std::unique_ptr<SerialPort> port = watched.CreatePort();
};

TEST_F(LinkRecordTest, AnAnswerIsCountedWithItsTime) {
  Ask();
  Answers(1, "3", 20ms);
  Ask();
  Answers(1, "3", 45'670us);
  Ask();
  Answers(1, "3", 30ms);
  EXPECT_EQ(Accounts(), "3: 3 exchanges, 3 answers, 0 refused, 0 silent, 0 bad\n");
  const AnswerTimes& times = record.account().Slaves().front()->times;
  EXPECT_DOUBLE_EQ(times.Shortest(), 20.0);
  EXPECT_DOUBLE_EQ(times.Median(), 30.0);
  EXPECT_DOUBLE_EQ(times.Longest(), 45.7);
}

TEST_F(LinkRecordTest, AnAnswerInPiecesIsOneAndItsTimeThatOfItsLastByte) {
  const std::string answer = Zolt(0x11, 1);
  Ask();
  for (const char byte : answer) Comes(std::string(1, byte), 1ms);
  EXPECT_EQ(Accounts(), "3: 1 exchanges, 1 answers, 0 refused, 0 silent, 0 bad\n");
  EXPECT_DOUBLE_EQ(record.account().Slaves().front()->times.Longest(), 16.0);
}

TEST_F(LinkRecordTest, ARefusalIsAnAnswer) {
  Ask();
  Comes(Zolt(0x61, 1));
  EXPECT_EQ(Accounts(), "3: 1 exchanges, 1 answers, 1 refused, 0 silent, 0 bad\n");
}

TEST_F(LinkRecordTest, SilenceIsATimeOutOnceTheNextRequestGoesOut) {
  Ask();
  world.Advance(3s);
  EXPECT_EQ(Accounts(), "3: 1 exchanges, 0 answers, 0 refused, 0 silent, 0 bad\n");
  Ask();
  EXPECT_EQ(Accounts(), "3: 2 exchanges, 0 answers, 0 refused, 1 silent, 0 bad\n");
  EXPECT_EQ(Trace(), "slave 3: read class 1, ID 0001\nno answer\nslave 3: read class 1, ID 0001\n");
}

TEST_F(LinkRecordTest, ABrokenFrameIsABadCheckAndKept) {
  std::string broken = Zolt(0x11, 1);
  broken[8] ^= 1;
  Ask();
  Comes(broken);
  Ask();
  EXPECT_EQ(Accounts(), "3: 2 exchanges, 0 answers, 0 refused, 0 silent, 1 bad\n");
  EXPECT_EQ(record.account().Slaves().front()->last_bad, broken);
  EXPECT_EQ(record.account().Total().last_bad, broken);
}

TEST_F(LinkRecordTest, ATornFrameIsABadCheckWithTheTimeOfItsLastByte) {
  Ask();
  Comes(Zolt(0x11, 1).substr(0, 9), 30ms);
  world.Advance(1s);
  Ask();
  EXPECT_EQ(Accounts(), "3: 2 exchanges, 0 answers, 0 refused, 0 silent, 1 bad\n");
  const TraceEntry& bad = record.trace().at(1);
  EXPECT_EQ(bad.kind, TraceKind::kBad);
  EXPECT_EQ(bad.since, 30ms);
  EXPECT_EQ(bad.meaning, "9 bytes that are no whole frame");
}

TEST_F(LinkRecordTest, AnAnswerBehindNoiseCountsAsAnAnswer) {
  Ask();
  Comes("noise" + Zolt(0x11, 1));
  Ask();
  EXPECT_EQ(Accounts(), "3: 2 exchanges, 1 answers, 0 refused, 0 silent, 0 bad\n");
  EXPECT_EQ(record.account().Total().last_bad, "noise");
}

TEST_F(LinkRecordTest, TheAnswerOfAnotherSlaveAnswersNothing) {
  Ask(1, "3");
  Answers(1, "4");
  Ask(1, "3");
  EXPECT_EQ(Accounts(), "3: 2 exchanges, 0 answers, 0 refused, 1 silent, 0 bad\n");
  EXPECT_EQ(record.trace().at(1).kind, TraceKind::kOther);
}

TEST_F(LinkRecordTest, ASecondAnswerToOneRequestIsNone) {
  Ask();
  Answers();
  Answers();
  EXPECT_EQ(Accounts(), "3: 1 exchanges, 1 answers, 0 refused, 0 silent, 0 bad\n");
  EXPECT_EQ(record.trace().back().kind, TraceKind::kOther);
}

TEST_F(LinkRecordTest, AnEchoAnswersNothingAndSaysSo) {
  Ask();
  Comes(Zolt(0x01, 1));
  EXPECT_EQ(record.trace().back().meaning, "slave 3: read class 1, ID 0001 (echo)");
  Answers();
  EXPECT_EQ(Accounts(), "3: 1 exchanges, 1 answers, 0 refused, 0 silent, 0 bad\n");
}

TEST_F(LinkRecordTest, EachSlaveHasItsAccountAndAllHaveOne) {
  Ask(1, "A");
  Answers(1, "A", 10ms);
  Ask(1, "3");
  Answers(1, "3", 30ms);
  Ask(1, "3");
  world.Advance(1s);
  Ask(1, "A");
  EXPECT_EQ(Accounts(),
            "3: 2 exchanges, 1 answers, 0 refused, 1 silent, 0 bad\n"
            "A: 2 exchanges, 1 answers, 0 refused, 0 silent, 0 bad\n");
  const SlaveAccount total = record.account().Total();
  EXPECT_EQ(Line(total), ": 4 exchanges, 2 answers, 0 refused, 1 silent, 0 bad");
  EXPECT_DOUBLE_EQ(total.times.Shortest(), 10.0);
  EXPECT_DOUBLE_EQ(total.times.Median(), 10.0);
  EXPECT_DOUBLE_EQ(total.times.Longest(), 30.0);
}

TEST_F(LinkRecordTest, ModbusSlavesStandInTheOrderOfTheirNumbers) {
  for (const char* slave : {"10", "9", "2"}) {
    world.Advance(1s);
    LinkAccount account;
    account.Of(LinkProtocol::kModbus, "10");
    account.Of(LinkProtocol::kModbus, "9");
    account.Of(LinkProtocol::kModbus, slave);
    EXPECT_EQ(account.Slaves().back()->slave, "10");
  }
}

TEST_F(LinkRecordTest, SlavesOfTwoProtocolsAreTwoWithOneAddress) {
  LinkAccount account;
  ++account.Of(LinkProtocol::kModbus, "1").exchanges;
  account.Of(LinkProtocol::kZolt, "1").exchanges += 2;
  account.Of(LinkProtocol::kZolt, "3").exchanges += 4;
  std::string all;
  for (const SlaveAccount* one : account.Slaves()) all += Line(*one).substr(0, 5) + "|";
  EXPECT_EQ(all, "1: 2 |3: 4 |1: 1 |");
}

TEST_F(LinkRecordTest, APortThatIsClosedSoonLeavesTheExchangeUnfinished) {
  Ask();
  world.Advance(999ms);
  port->SetPortOpen(false);
  EXPECT_EQ(Accounts(), "3: 1 exchanges, 0 answers, 0 refused, 0 silent, 0 bad\n");
  EXPECT_EQ(record.trace().back().kind, TraceKind::kClosed);
}

TEST_F(LinkRecordTest, AnAnswerThatAStopCutsShortIsNoBadCheck) {
  Ask();
  Comes(Zolt(0x11, 1).substr(0, 9), 30ms);
  port->SetPortOpen(false);
  EXPECT_EQ(Accounts(), "3: 1 exchanges, 0 answers, 0 refused, 0 silent, 0 bad\n");
  EXPECT_EQ(record.account().Total().last_bad, "");
  EXPECT_EQ(
      Trace(),
      "slave 3: read class 1, ID 0001\n9 bytes that are no whole frame\nthe port was closed\n");
}

TEST_F(LinkRecordTest, ATornFrameIsABadCheckAlsoWhenItIsTheLastBeforeAStop) {
  Ask();
  Comes(Zolt(0x11, 1).substr(0, 9), 30ms);
  world.Advance(1s);
  port->SetPortOpen(false);
  EXPECT_EQ(Accounts(), "3: 1 exchanges, 0 answers, 0 refused, 0 silent, 1 bad\n");
}

TEST_F(LinkRecordTest, APortThatIsClosedAfterASecondOfSilenceHadATimeOut) {
  Ask();
  world.Advance(1s);
  port->SetPortOpen(false);
  EXPECT_EQ(Accounts(), "3: 1 exchanges, 0 answers, 0 refused, 1 silent, 0 bad\n");
}

TEST_F(LinkRecordTest, APortThatWasNeverUsedIsNotSpokenOf) {
  port->SetPortOpen(false);
  EXPECT_TRUE(record.trace().empty());
}

TEST_F(LinkRecordTest, WhoOnlyListensSeesTheFramesOfOthers) {
  Comes(Zolt(0x01, 1) + Zolt(0x11, 1));
  EXPECT_EQ(Trace(), "slave 3: read class 1, ID 0001\nslave 3: class 1, ID 0001 is 2A00\n");
  EXPECT_EQ(Accounts(), "") << "Nobody here has asked.";
  EXPECT_EQ(record.trace().back().since, 0ms);
}

TEST_F(LinkRecordTest, BytesWithoutEndAreNotGathered) {
  Ask();
  for (int i = 0; i < 100; ++i) Comes(std::string(100, '\x04'));
  std::size_t longest = 0;
  for (const TraceEntry& entry : record.trace()) longest = std::max(longest, entry.bytes.size());
  EXPECT_LE(longest, 700U);
  EXPECT_GE(record.trace().size(), 14U);
}

TEST_F(LinkRecordTest, TheTraceKeepsTheNewest) {
  for (std::size_t i = 0; i < LinkRecord::kMostEntries; ++i) Ask();
  EXPECT_EQ(record.trace().size(), LinkRecord::kMostEntries);
  EXPECT_EQ(record.trace().back().number, record.EntryCount());
  EXPECT_EQ(record.EntryCount(), static_cast<std::int64_t>(2 * LinkRecord::kMostEntries - 1))
      << "Each but the first stands behind a time-out.";
  EXPECT_EQ(record.trace().front().number,
            record.EntryCount() - static_cast<std::int64_t>(LinkRecord::kMostEntries) + 1);
}

TEST_F(LinkRecordTest, ClearForgetsAllButTheNumbering) {
  Ask();
  record.Clear();
  Answers();
  EXPECT_EQ(Accounts(), "");
  EXPECT_EQ(record.trace().size(), 1U);
  EXPECT_EQ(record.trace().front().number, 2);
}

TEST(AnswerTimes, AreRoundedAndHaveABound) {
  AnswerTimes times;
  EXPECT_DOUBLE_EQ(times.Shortest(), 0.0);
  EXPECT_DOUBLE_EQ(times.Median(), 0.0);
  EXPECT_DOUBLE_EQ(times.Longest(), 0.0);
  times.Add(49us);
  times.Add(50us);
  times.Add(2h);
  EXPECT_DOUBLE_EQ(times.Shortest(), 0.0);
  EXPECT_DOUBLE_EQ(times.Median(), 0.1);
  EXPECT_DOUBLE_EQ(times.Longest(), 60'000.0);
  times.Add(1ms);
  EXPECT_DOUBLE_EQ(times.Median(), 0.1) << "The lower one of the two in the middle.";
}

}  // namespace
}  // namespace tarnlink
