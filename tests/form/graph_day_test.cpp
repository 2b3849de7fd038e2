// Days of acquisition in virtual time, each sample held against what the simulated boiler said.

#include <gtest/gtest.h>

#include <string>

#include "form/day.h"
#include "form/graph_on_line.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr int kPolled = 21;  // the lines of the default table and the lanes

struct LineOfDay {
  int baud;
  int delay_us;
  Micros span;
  bool several_a_second;  // so that most answers fall into a second that has its sample
};

class GraphDay : public ::testing::TestWithParam<LineOfDay>, protected GraphOnLine {
 protected:
  GraphDay()
      : GraphOnLine({.pace = {.baud = GetParam().baud}, .answer_delay_us = GetParam().delay_us}) {
    ShowDefaultLines();
  }
};

TEST_P(GraphDay, LosesNoSample) {
  const boiler::Pace pace{.baud = GetParam().baud};
  const Micros exchange(2 * pace.TimeOf(16) + GetParam().delay_us);
  Start();
  Advance(GetParam().span);
  EXPECT_EQ(record.first_wrong_request(), "");
  EXPECT_EQ(record.hurried(), 0);
  EXPECT_EQ(record.asked(), static_cast<std::size_t>(GetParam().span / exchange + 1));
  EXPECT_EQ(record.answers(), GetParam().span / exchange);
  EXPECT_EQ(record.others(), 0);
  EXPECT_EQ(record.most_out(), 1U);
  EXPECT_EQ(record.Difference(), "");
  EXPECT_EQ(record.Unfounded(), "");
  EXPECT_EQ(record.samples(), record.answers() - record.same_second());
  if (GetParam().several_a_second) {
    // One second more than it is long: it begins and ends inside one.
    const std::int64_t seconds = GetParam().span / 1s;
    EXPECT_GE(record.samples(), kPolled * seconds);
    EXPECT_LE(record.samples(), kPolled * (seconds + 1));
  } else {
    EXPECT_EQ(record.same_second(), 0);
  }
  EXPECT_EQ(world.port().opens(), 2) << "Tried and opened.";
  EXPECT_EQ(State(), "running");
  RecordProperty("samples", std::to_string(record.samples()));
}

std::string NameOfLine(const ::testing::TestParamInfo<LineOfDay>& info) {
  return std::to_string(info.param.baud);
}

INSTANTIATE_TEST_SUITE_P(EachSpeed, GraphDay,
                         ::testing::Values(LineOfDay{2400, 20'000, kDay, false},
                                           LineOfDay{38400, 20'000, 6h, true}),
                         NameOfLine);

class GraphHardDay : public ::testing::Test, protected GraphOnLine {
 protected:
  GraphHardDay() : GraphOnLine({.pace = {.baud = 2400}, .answer_delay_us = 20'000}, 7) {
    ShowDefaultLines();
    MakeFaults();
  }

  void MakeFaults() {
    for (const char* fault :
         {"wrong_id@0.003", "check_wrong@0.003", "refused(6)@0.003", "refused(2)@0.002",
          "answer_of_other_request@0.002", "no_reply@0.001", "late_reply(3000)@0.001"}) {
      boiler.line().AddFault(fault);
    }
  }

  // The test mode goes on and off, twice an hour.
  void Hours(int count) {
    for (int i = 0; i < 2 * count; ++i) {
      Advance(15min);
      graph.TestModeOn = !graph.TestModeOn;
      graph.TestModePower = static_cast<std::uint8_t>(30 + i % 70);
      SendTestMode();
      ++test_commands;
      Advance(15min);
    }
  }

  int test_commands = 0;
};

TEST_F(GraphHardDay, LosesNoSampleButThoseThatTheFaultsCost) {
  Start();
  Hours(3);
  StopByMenu();
  EXPECT_EQ(State(), "stopped: Communication stopped");
  Advance(10min);
  StartByMenu();
  Hours(2);
  world.port().Unplug();
  Advance(5s);
  world.port().PlugIn();
  Hours(1);
  world.port().Unplug();
  ExpectBusy();
  Advance(1min);
  EXPECT_EQ(State(), "stopped: Communication stopped");
  world.port().PlugIn();
  StartByMenu();
  Hours(2);
  SetClock(-1);
  Hours(3);
  SetClock(+1);
  Hours(1);
  boiler.line().ClearFaults();
  boiler.line().AddFault("no_reply");
  Advance(2h);
  EXPECT_EQ(State(), "running: Communication error");
  boiler.line().ClearFaults();
  Advance(3s);
  EXPECT_EQ(State(), "running");
  MakeFaults();
  Hours(9);
  EXPECT_EQ(State(), "running");
  EXPECT_GT(world.now(), kDay - 1h);
  EXPECT_EQ(record.first_wrong_request(), "");
  EXPECT_EQ(record.hurried(), 0);
  EXPECT_EQ(record.test_commands(), test_commands);
  EXPECT_EQ(record.Difference(), "");
  EXPECT_EQ(record.Unfounded(), "");
  EXPECT_EQ(record.samples(), record.answers() - record.same_second());
  EXPECT_GT(record.samples(), 350'000);
  EXPECT_GT(record.others(), 5'000);
  RecordProperty("samples", std::to_string(record.samples()));
}

}  // namespace
}  // namespace tarnlink
