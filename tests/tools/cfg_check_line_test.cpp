// The configuration check on a bad line, and on the line of the simulated boiler.

#include <map>

#include "form/boiler_on_line.h"
#include "support/samples.h"
#include "tools/cfg_check_fixture.h"
#include "tools/line_faults.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

TEST_F(CfgCheckTest, SkipsAnEchoAnotherIdAnotherSlaveAndAnotherClass) {
  Begin(kOneItem);
  Asked();
  Receive(BuildZoltMessage(5, "0", 0x56D, 0, 0));
  Receive(Frame(kCfgReadDone, 60, 0x56E));
  Receive(Frame(kCfgReadDone, 60, 0x56D, "1"));
  Receive(BuildZoltMessage(0x14, "0", 0x56D, 60, 0));
  EXPECT_EQ(Asked(), "nothing");
  EXPECT_EQ(tool.CfgStage, 0);
  Receive(Frame(kCfgReadDone, 60));
  EXPECT_EQ(Asked(), "write 056D 30");
}

TEST_F(CfgCheckTest, TakesAFrameWithABadCheckForNoAnswer) {
  Begin(kOneItem);
  Asked();
  std::string frame = Frame(kCfgReadDone, 60);
  frame[12] = frame[12] == '0' ? '1' : '0';
  Receive(frame);
  EXPECT_EQ(tool.CfgStage, 0);
  world.Advance(300ms);
  EXPECT_EQ(Sent(), "read 056D");
  EXPECT_EQ(State(),
            "ID 056D (CH setpoint): reading the default, the answer was damaged, repeated once; 1 "
            "left");
  Receive(Frame(kCfgReadDone, 60));
  EXPECT_EQ(tool.CfgStage, 1);
}

TEST_F(CfgCheckTest, SendsOnceMoreWhatTheSlaveSaysWasDamaged) {
  Begin(kOneItem);
  PassTo(1);
  EXPECT_EQ(Asked(), "write 056D 30");
  Receive(Frame(kCfgCorrupted, 30));
  EXPECT_EQ(Result(), "\t\t");
  world.Advance(300ms);
  EXPECT_EQ(Sent(), "write 056D 30");
  EXPECT_EQ(State(),
            "ID 056D (CH setpoint): writing 30, the message was damaged, repeated once; 1 left");
  // It need not know who it is.
  Receive(Frame(kCfgCorrupted, 0, 0, "?"));
  world.Advance(300ms);
  EXPECT_EQ(State(),
            "ID 056D (CH setpoint): writing 30, the message was damaged, repeated 2 times; 1 left");
  world.Advance(300ms);
  EXPECT_EQ(State(), "ID 056D (CH setpoint): writing 30, no answer, repeated 3 times; 1 left");
}

TEST_F(CfgCheckTest, WaitsForLateAnswersBehindAMessageThatWasRepeated) {
  Begin(kOneItem);
  PassTo(1);
  EXPECT_EQ(Asked(), "write 056D 30");
  world.Advance(300ms);
  EXPECT_EQ(Sent(), "write 056D 30");
  Receive(Frame(kCfgWritten, 30));
  EXPECT_EQ(Asked(), "nothing");
  // The answer to the second.
  world.Advance(200ms);
  Receive(Frame(kCfgWritten, 30));
  world.Advance(300ms);
  EXPECT_EQ(Sent(), "nothing");
  world.Advance(200ms);
  EXPECT_EQ(Sent(), "read 056D");
  EXPECT_EQ(tool.CfgStage, 2);
  EXPECT_EQ(Result(), "\t\t");
}

TEST_F(CfgCheckTest, TakesAnAnswerThatComesTwiceForOne) {
  Begin(kOneItem);
  PassTo(1);
  EXPECT_EQ(Asked(), "write 056D 30");
  Receive(Frame(kCfgWritten, 30) + Frame(kCfgWritten, 30));
  EXPECT_EQ(tool.CfgStage, 2);
  world.Advance(500ms);
  EXPECT_EQ(Sent(), "read 056D");
  EXPECT_EQ(Result(), "\t\t");
}

TEST_F(CfgCheckTest, FindsItsWayBackBehindATornAnswer) {
  Begin(kOneItem);
  Asked();
  Receive(Frame(kCfgReadDone, 60).substr(3));
  world.Advance(600ms);
  EXPECT_EQ(Sent(), "read 056D");
  Receive("xyz" + Frame(kCfgReadDone, 60));
  world.Advance(300ms);
  EXPECT_EQ(Sent(), "read 056D");
  Receive(Frame(kCfgReadDone, 60));
  EXPECT_EQ(tool.CfgStage, 1);
}

TEST_F(CfgCheckTest, TellsOfAPortThatCannotBeOpened) {
  Load(kOneItem);
  world.faults().Break("Port.Open", RunTimeError(kPortUnavailable, "COM1 is busy."));
  world.dialogs().ExpectMessageBox(
      {.text = "COM1 is busy.", .title = "Error", .icon = Icon::kCritical});
  tool.cmd_Check.Press();
  EXPECT_EQ(Result(), "\t\t");
  ExpectIdle();
}

TEST_F(CfgCheckTest, TellsOfAPortThatIsPulledOut) {
  Begin(std::string(kOneItem) + kOneItem + kOneItem);
  PassTo(7);
  Asked();
  world.port().Unplug();
  world.dialogs()
      .ExpectMessageBox(
          {.text = world.port().LossReason(), .title = "Error", .icon = Icon::kCritical})
      .For(2s);
  world.Advance(1ms);
  EXPECT_EQ(Result(0), "OK");
  EXPECT_EQ(Result(1), "\t\t");
  EXPECT_EQ(Result(2), "ID has not been checked");
  EXPECT_EQ(State(), world.port().LossReason() + " Stopped at ID 056D (CH setpoint).");
  world.port().PlugIn();
  ExpectIdle();
}

TEST_F(CfgCheckTest, TellsOfAPortThatTakesNothing) {
  Begin(kOneItem);
  world.faults().Break("Port.Output", RunTimeError(kDeviceIo, "Input/output error"));
  world.dialogs().ExpectMessageBox(
      {.text = "Input/output error", .title = "Error", .icon = Icon::kCritical});
  world.Advance(100ms);
  EXPECT_EQ(Result(), "ID has not been checked");
  EXPECT_EQ(State(), "Input/output error. Stopped at ID 056D (CH setpoint).");
  ExpectIdle();
}

// --- With the simulated boiler ---

class CheckOnLine {
 public:
  explicit CheckOnLine(bool has_wrong_limits, int baudrate = 3, std::uint64_t seed = 1,
                       const boiler::SecondMasterOptions& second_master = {})
      : boiler(world, {.protocol = "zolt",
                       .slave = {.addresses = "0,3", .has_wrong_limits = has_wrong_limits},
                       .line = {.pace = {.baud = 1200 << baudrate}, .answer_delay_us = 5'000},
                       .second_master = second_master,
                       .seed = seed}) {
    plain.baudrate = baudrate;
    world.disk().Put("/home/user/work/a.cfg", SampleText("boiler.cfg"));
    world.dialogs().ExpectOpenFile().Give("/home/user/work/a.cfg");
    tool.Show();
    tool.cmd_Open.Press();
  }

  bool Run(Micros at_most = 2min) {
    tool.cmd_Check.Press();
    return world.RunUntil([this] { return !tool.IsRunning(); }, at_most);
  }
  // By their IDs, those that are not "OK".
  std::map<int, std::string> NotGood() const {
    std::map<int, std::string> bad;
    for (const ConfigItem& item : tool.ConfigItems) {
      if (item.Result != "OK") bad[item.ID] = item.Result;
    }
    return bad;
  }

  FakeWorld world;
  PlainHost plain{world};
  frm_CfgCheck tool{plain.host};
  BoilerOnLine boiler;
};

const std::map<int, std::string> kThreeWrong = {{1389, "Minimum limit incorrect"},
                                                {1524, "Maximum limit incorrect"},
                                                {2311, "Maximum is not written"}};
const std::map<int, std::string> kNoneWrong;

TEST(CfgCheckOnLine, FindsNothingWrongWithABoilerThatIsRight) {
  for (int baudrate = 0; baudrate <= 5; ++baudrate) {
    CheckOnLine one(false, baudrate);
    EXPECT_TRUE(one.Run()) << baudrate;
    EXPECT_EQ(one.NotGood(), kNoneWrong) << baudrate;
    EXPECT_EQ(one.tool.Label6.Caption.get(), "9 / 9");
  }
}

TEST(CfgCheckOnLine, FindsTheThreeWrongLimitsAndNoOther) {
  CheckOnLine one(true);
  EXPECT_TRUE(one.Run());
  EXPECT_EQ(one.NotGood(), kThreeWrong);
}

TEST(CfgCheckOnLine, LeavesTheMaximumBehind) {
  CheckOnLine one(false);
  EXPECT_TRUE(one.Run());
  EXPECT_EQ(one.boiler.controller().Value(boiler::Item("flow_setpoint")), 85);
  EXPECT_EQ(one.boiler.controller().Value(boiler::Item("retries")), 10);
  EXPECT_TRUE(one.Run());
  EXPECT_EQ(one.NotGood().size(), 8U);  // all that have a default
  EXPECT_EQ(one.NotGood().at(1389), "Wrong default value");
}

TEST(CfgCheckOnLine, FindsASlaveThatSaysThatItHasStoredAndHasNot) {
  CheckOnLine one(false);
  one.boiler.line().AddFault("write_ok_not_stored");
  EXPECT_TRUE(one.Run());
  for (const ConfigItem& item : one.tool.ConfigItems) {
    const bool holds_minimum = item.Minimum == 0;  // before it was written
    EXPECT_EQ(item.Result, holds_minimum ? "Maximum was not written" : "Minimum was not written")
        << item.ID;
  }
}

TEST(CfgCheckOnLine, FindsTheSameBesideASecondMaster) {
  for (const std::int64_t gap_us : {2'000, 20'000, 250'000}) {
    CheckOnLine one(true, 3, 1, {.addresses = "0,3", .gap_us = gap_us});
    EXPECT_TRUE(one.Run(10min)) << gap_us;
    EXPECT_EQ(one.NotGood(), kThreeWrong) << gap_us;
  }
}

TEST(CfgCheckOnLine, GoesOnBehindAStreamOfNoiseAndSaysSoMeanwhile) {
  CheckOnLine one(true);
  one.boiler.line().AddFault("endless_stream#20");
  one.tool.cmd_Check.Press();
  const auto state = [&] { return one.tool.lblState.Caption.get(); };
  const auto says = [&](const std::string& part) {
    return one.world.RunUntil([&] { return state().find(part) != std::string::npos; }, 1min);
  };
  EXPECT_TRUE(says(", waiting for a quiet line; ")) << state();
  EXPECT_TRUE(says(", the answer was damaged, repeated 9 times; ")) << state();
  one.boiler.Calm();
  EXPECT_TRUE(one.world.RunUntil([&] { return !one.tool.IsRunning(); }, 2min));
  EXPECT_EQ(one.NotGood(), kThreeWrong);
}

class CfgCheckFaults : public ::testing::TestWithParam<std::string> {};

// Whatever the line does to every third exchange, the check ends, no wrong limit is called right
// and no right one wrong. A slave that at times does not store what it says it has is found out.
TEST_P(CfgCheckFaults, NeverCallAWrongLimitRight) {
  for (std::uint64_t seed = 1; seed <= 10; ++seed) {
    CheckOnLine one(true, 3, seed);
    one.boiler.line().AddFault(GetParam() + "@0.3");
    EXPECT_TRUE(one.Run(5min)) << "seed " << seed;
    for (const ConfigItem& item : one.tool.ConfigItems) {
      SCOPED_TRACE(std::to_string(item.ID) + ", seed " + std::to_string(seed));
      const auto wrong = kThreeWrong.find(item.ID);
      const std::string right = wrong == kThreeWrong.end() ? "OK" : wrong->second;
      if (GetParam() == "write_ok_not_stored") {
        EXPECT_TRUE(item.Result == right || item.Result.ends_with(" was not written"));
      } else {
        EXPECT_EQ(item.Result, right);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    EachFault, CfgCheckFaults,
    ::testing::Values("no_reply", "late_reply(250)", "late_reply(400)", "late_reply(1000)",
                      "late_reply_after_next", "slow_bytes(20)", "pause_midframe(200)",
                      "wrong_address", "wrong_id", "short_count", "long_count", "stale_duplicate",
                      "bit_flip(1)", "burst(8)", "truncate(9)", "noise_before(40)",
                      "write_ok_not_stored", "write_stored_answer_lost", "answer_of_other_request",
                      "endless_stream(500)", "noise_idle", "noise_idle(60)", "noise_after",
                      "merge_two", "foreign_traffic", "self_echo", "byte_drop", "reboot_midsession",
                      "write_slow", "write_slow(1500)"),
    LineFaultName);

}  // namespace
}  // namespace tarnlink
