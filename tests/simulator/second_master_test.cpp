// The second master: what it asks, in which order and at which times, and that the line stays one.
#include "simulator/second_master.h"

#include <algorithm>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "line_fixture.h"
#include "problem_text.h"
#include "simulator/data_ids.h"
#include "simulator/zolt_frames.h"

namespace boiler {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr std::int64_t kGap = 20'000;
constexpr std::int64_t kDelay = 5'000;
constexpr std::int64_t kFrame = 16'666;  // 16 bytes at 9600 baud

SimulatedBoiler::Options Polled(const std::string& addresses, const std::string& asked) {
  SimulatedBoiler::Options options;
  options.protocol = "zolt";
  options.slave.addresses = addresses;
  options.second_master = {asked, kGap};
  options.line = {.pace = {.baud = 9600}, .answer_delay_us = kDelay};
  return options;
}

std::string Read(int data_class, char slave, std::string_view id, std::string_view data) {
  return BuildZoltFrame(static_cast<char>(data_class), slave, id, data);
}

// The frames on the line and the times at which their last bytes were out.
std::vector<LogEntry> Said(const BoilerOnLine& line) { return line.Entries(LogKind::kSaid); }

std::vector<std::int64_t> Times(const std::vector<LogEntry>& entries) {
  std::vector<std::int64_t> times;
  for (const LogEntry& entry : entries) times.push_back(entry.time_us);
  return times;
}

TEST(SecondMaster, AsksForAllIdsOfOneSlaveAfterTheOtherAndBeginsAgain) {
  SecondMaster master("0A", kGap);
  std::vector<std::string> expected;
  for (const char slave : {'0', 'A'}) {
    for (const DataId& id : DataIds()) {
      const int last = std::max(1, id.positions) - 1;
      for (int position = 0; position <= last; ++position) {
        expected.push_back(Read(id.data_class, slave, HexDigits(id.id, 4),
                                HexDigits(static_cast<unsigned>(position), 2) + "00"));
      }
    }
  }
  EXPECT_EQ(master.Round(), expected.size());
  EXPECT_EQ(expected.size(), 2 * (DataIds().size() + 14));  // two lists of eight entries
  for (int round = 0; round < 2; ++round) {
    for (const std::string& frame : expected) ASSERT_EQ(master.Next().bytes, frame);
  }
}

TEST(SecondMasterOnLine, RequestsAndAnswersTakeTheirTimeAndKeepTheirGaps) {
  BoilerOnLine line(Polled("0", "0"));
  line.Pass(300'000);
  const auto said = Said(line);
  ASSERT_GE(said.size(), 4u);
  const std::int64_t first = kGap + kFrame;
  const std::int64_t answer = first + kDelay + kFrame;
  const std::int64_t second = answer + kGap + kFrame;
  EXPECT_EQ(said[0].time_us, first);
  EXPECT_EQ(said[1].time_us, answer);
  EXPECT_EQ(said[2].time_us, second);
  EXPECT_EQ(said[3].time_us, second + kDelay + kFrame);
  EXPECT_EQ(said[0].bytes, Read(1, '0', "0001", "0000"));
  EXPECT_EQ(said[0].meaning, "second master reads class 1 ID 0001");
  EXPECT_EQ(said[1].meaning, "answer");
  EXPECT_EQ(said[1].bytes.substr(0, 7),
            "\r\x11"
            "00001");
  EXPECT_EQ(said[2].bytes, Read(1, '0', "000E", "0000"));
  EXPECT_EQ(line.line().Exchanges(), static_cast<int>(line.Entries(LogKind::kHeard).size()));
  // Each byte by itself: the first one is out a tenth of its bits later.
  ASSERT_FALSE(line.Arrivals().empty());
  EXPECT_EQ(line.Arrivals()[0], (Arrival{kGap + 1041, "0D"}));
  EXPECT_EQ(line.Arrivals()[16], (Arrival{first + kDelay + 1041, "0D"}));
}

TEST(SecondMasterOnLine, EveryIdIsAnsweredWithWhatTheSlaveHolds) {
  BoilerOnLine line(Polled("0,3", "0,3"));
  const std::size_t round = SecondMaster("03", kGap).Round();
  line.Pass(static_cast<std::int64_t>(round) * (kGap + kDelay + 2 * kFrame + 4));
  const auto said = Said(line);
  ASSERT_EQ(said.size(), 2 * round);
  std::set<std::string> answered;
  std::set<std::string> unknown;
  for (std::size_t i = 0; i < said.size(); i += 2) {
    const std::string& asked = said[i].bytes;
    const std::string& answer = said[i + 1].bytes;
    EXPECT_EQ(answer.substr(2, 5), asked.substr(2, 5)) << "slave and ID";
    (answer[1] >> 4 == 1 ? answered : unknown).insert(asked.substr(3, 4));
  }
  EXPECT_EQ(answered.size(), DataIds().size() - 1);
  EXPECT_THAT(unknown, ElementsAre("00AB")) << "A reset can only be written.";
  EXPECT_EQ(said[2 * 4 + 1].bytes, Read(0x11, '0', "0FAB", "3C00"));
}

TEST(SecondMasterOnLine, GoesOnBehindASlaveThatIsNotThere) {
  BoilerOnLine line(Polled("0", "7"));
  line.Pass(900'000);
  constexpr std::int64_t kPatience = 200'000;
  EXPECT_THAT(Times(Said(line)), ElementsAre(kGap + kFrame, 2 * (kGap + kFrame) + kPatience,
                                             3 * (kGap + kFrame) + 2 * kPatience,
                                             4 * (kGap + kFrame) + 3 * kPatience));
  EXPECT_THAT(line.Log(), Contains("ignored for another slave").Times(4));
}

TEST(SecondMasterOnLine, FaultsStrikeItsAnswersToo) {
  BoilerOnLine line(Polled("0", "0"));
  line.Fault("check_wrong#1");
  line.Fault("no_reply#1");
  line.Pass(400'000);
  const auto faults = line.Entries(LogKind::kFault);
  ASSERT_EQ(faults.size(), 2u);
  EXPECT_EQ(faults[0].check, Check::kBroken);
  EXPECT_EQ(Said(line)[1].bytes, faults[0].bytes);
  EXPECT_THAT(Said(line)[3].meaning, StartsWith("second master"));
}

TEST(SecondMasterOnLine, LetsAnotherMasterSendInBetween) {
  BoilerOnLine line(Polled("0", "0"));
  line.Pass(300'000);
  line.SendBytes(Read(2, '0', "0098", "0000"));
  line.Pass(300'000);
  EXPECT_THAT(line.Log(), Contains("heard read class 2 ID 0098, slave 0").Times(1));
  const std::string version = Read(0x12, '0', "0098", "0307");
  const auto said = Said(line);
  EXPECT_EQ(std::count_if(said.begin(), said.end(),
                          [&](const LogEntry& entry) { return entry.bytes == version; }),
            1);
  for (const LogEntry& entry : said) EXPECT_TRUE(ZoltCheckHolds(entry.bytes));
}

TEST(SecondMasterOnLine, GoesOnWhenTheCableIsPulled) {
  BoilerOnLine line(Polled("0", "0"));
  line.Pass(kGap + 5'000);
  line.line().Cut(line.NowUs());
  line.Pass(300'000);
  // Of what was under way the rest is lost, the one behind it comes whole.
  EXPECT_EQ(Said(line)[0].bytes, Read(1, '0', "0001", "0000").substr(0, 4));
  EXPECT_EQ(Said(line)[1].bytes, Read(1, '0', "000E", "0000"));
  EXPECT_EQ(Said(line)[1].time_us, kGap + 5'000 + kGap + kFrame);
}

TEST(SecondMasterOnLine, IsForZoltAlone) {
  for (const char* protocol : {"tarnlink", "modbus"}) {
    SimulatedBoiler::Options options;
    options.protocol = protocol;
    options.second_master.addresses = "0";
    EXPECT_EQ(ProblemText([&] { SimulatedBoiler boiler(options); }),
              "A second master speaks ZOLT, which this boiler does not.");
  }
  EXPECT_EQ(ProblemText([&] { SimulatedBoiler boiler(Polled("0", "0;1")); }),
            "The slave addresses \"0;1\" must be digits 0 to F with commas between them.");
  SimulatedBoiler::Options any = Polled("0", "0");
  any.protocol = "any";
  BoilerOnLine line(any);
  line.Pass(100'000);
  EXPECT_GE(Said(line).size(), 2u);
}

}  // namespace
}  // namespace boiler
