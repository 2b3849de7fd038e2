// A hundred thousand exchanges with the simulated boiler, under every fault that fits the protocol:
// whatever the line does, the run stands in one of its states, and is as good as new when the line
// is sound again.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "common/numbers.h"
#include "common/text.h"
#include "form/boiler_on_line.h"
#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

// Faults that leave some exchange without an answer in time, so that the run ends in its box.
const std::vector<std::string> kSilences = {
    "no_reply@0.05",          "busy_then_ok(3)@0.02",
    "late_reply(4000)@0.05",  "late_reply_after_next@0.05",
    "slow_bytes(400)@0.05",   "pause_midframe(3500)@0.05",
    "truncate@0.05",          "truncate(10)@0.05",
    "byte_drop@0.05",         "short_count@0.05",
    "stale_duplicate@0.05",   "answer_of_other_request@0.05",
    "merge_two@0.05",         "endless_stream(500)@0.01",
    "reboot_midsession@0.02", "write_stored_answer_lost@0.3",
    "write_slow(3500)@0.3",
};
// Faults after which enough bytes still come in time.
const std::vector<std::string> kNuisances = {
    "late_reply(1000)@0.1", "slow_bytes@0.1",       "pause_midframe@0.1",
    "wrong_id@0.5",         "wrong_kind@0.5",       "long_count@0.5",
    "bit_flip@0.5",         "bit_flip(8)@0.5",      "burst@0.5",
    "burst(32)@0.5",        "byte_replace@0.5",     "byte_insert@0.5",
    "byte_swap@0.5",        "check_wrong@1",        "all_zero@0.5",
    "all_ff@0.5",           "random_frame@1",       "split@0.5",
    "split(11)@0.5",        "noise_before@0.5",     "noise_before(300)@0.5",
    "noise_after@0.5",      "noise_after(300)@0.5", "noise_idle@0.5",
    "noise_idle(300)@0.5",  "self_echo@0.5",        "foreign_traffic@0.5",
    "oversize@0.5",         "oversize(20000)@0.01", "write_ok_not_stored@0.5",
    "write_slow@0.5",       "range_rejected@0.5",
};
const std::vector<std::string> kLosses = {
    "unplug@0.01",           "unplug_midframe@0.01",   "unplug_while_writing@0.01",
    "replug_same_name@0.01", "replug_other_name@0.01",
};

constexpr std::size_t kAllExchanges = 100'000;

std::size_t ExchangesPerFault() {
  const std::size_t faults = kSilences.size() + kNuisances.size() + kLosses.size();
  return kAllExchanges / faults + 1;
}

bool IsShown(const std::string& text) {
  return text.starts_with("Value ") ||
         (!text.empty() && text.size() <= 8 &&
          text.find_first_not_of("0123456789ABCDEF") == std::string::npos);
}

class FaultRun : public MonitorTest {
 protected:
  explicit FaultRun(const boiler::LineOptions& line = {})
      : boiler(world, {.protocol = "tarnlink", .line = line, .seed = 20240305}) {
    for (unsigned i = 0; i < 6; ++i) {
      const auto address = static_cast<std::uint16_t>(0xF400 + 2 * i);
      boiler.controller().WriteWord(address, static_cast<std::uint16_t>(0x12AB + 0x1111 * i));
      const std::string digits = Hex(address);
      locations_.push_back(i % 2 == 0 ? ByteAt(digits) : WordAt(digits));
    }
    Screen(locations_);
    Start();
  }

  ~FaultRun() override { world.on_output = nullptr; }

  // As many requests as asked for go out; the user writes a value now and then.
  void Exchange(std::size_t count) {
    const std::size_t goal = Requests() + count;
    std::size_t next_write = Requests() + 7;
    while (Requests() < goal && !HasFailure()) {
      ExpectProgress();
      Advance(5);
      CheckState();
      if (Requests() < next_write || !monitor.main.CommRunning) continue;
      next_write = Requests() + 7;
      const int index = 1 + static_cast<int>(Requests() % locations_.size());
      Write(index, index % 2 == 0 ? "ABCD" : "5A");
    }
  }

  // Whatever happens, it is never long until the next request.
  void ExpectProgress() {
    const long limit = 20'000;
    if (Requests() == requests_seen_) {
      ASSERT_LT(Now() - progress_at_, limit) << State();
      return;
    }
    requests_seen_ = Requests();
    progress_at_ = Now();
  }

  // The states of a run and what belongs to each.
  void CheckState() {
    const frm_Main& main = monitor.main;
    const std::string state = State();
    static const std::vector<std::string> running = {
        "Ready, port open, timers Comm_Timer",
        "Ready, port open, timers Comm_Timer tmr_noresponse",
        "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout",
        // The watchdog of a poll ends the wait for the write that came behind it.
        "Ready, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout",
    };
    static const std::vector<std::string> stopped = {
        "Stopped, port closed, no timers",
        "Stopped, port open, no timers",
        "Stopped, port closed, timers tmr_noresponse",
        "Stopped, port open, timers tmr_noresponse",
    };
    const auto& states = main.CommRunning ? running : stopped;
    ASSERT_TRUE(std::find(states.begin(), states.end(), state) != states.end()) << state;
    ASSERT_EQ(Panel(4), main.CommRunning ? "Communication Running" : "Communication Stopped");
    ASSERT_EQ(main.M_options.Enabled.get(), !main.CommRunning);
    ASSERT_GE(main.MsgPointer, 0);
    ASSERT_LE(main.MsgPointer, main.MaxId);
    for (int i = 1; i <= main.MaxId; ++i) ASSERT_TRUE(IsShown(Value(i))) << Value(i);
  }

  // The line is sound: two rounds later every value is what the memory holds.
  void ExpectSoundRun() {
    boiler.Calm();
    Stop();
    Advance(6000);  // the watchdog of a silent slave opens the port once more
    Stop();
    ASSERT_EQ(State(), "Stopped, port closed, no timers");
    Start();
    // A write that was never acknowledged costs the first exchange a second event.
    Advance(2 * 60 * (monitor.main.MaxId + 1));
    for (int i = 1; i <= monitor.main.MaxId; ++i) {
      const auto address =
          static_cast<std::uint16_t>(Val("&H" + monitor.main.Locations[i].Address + "&"));
      const auto& memory = boiler.controller().memory();
      const bool word = monitor.main.Locations[i].StorageType >= kUnsignedWord;
      const std::int32_t number =
          word ? static_cast<std::int16_t>(memory.Word(address)) : memory.Byte(address);
      EXPECT_EQ(Value(i), Hex32(number)) << i;
    }
    EXPECT_EQ(Panel(4), "Communication Running");
  }

  std::size_t Requests() { return world.port().frames().size(); }

  // From now on the user closes each such box, by turns at once and after a while, and starts anew.
  void RestartAfterEachSilence() {
    const Micros box_time = BoxTime();
    ExpectSilentSlaveBox()
        .While([this, box_time] {
          ++silences;
          if (ending_) return;
          RestartAfterEachSilence();
          world.time().Post(box_time + 50ms, [this] { Restart(); });
        })
        .For(box_time);
  }

  void RestartAfterEachLoss() {
    const Micros box_time = BoxTime();
    ExpectDeviceGoneBox()
        .While([this, box_time] {
          ++losses;
          if (ending_) return;
          RestartAfterEachLoss();
          world.time().Post(box_time + 600ms, [this] {
            world.port().PlugIn();
            Restart();
          });
        })
        .For(box_time);
  }

  void Restart() {
    Stop();
    Start();
  }

  Micros BoxTime() const { return (silences + losses) % 3 * 1700ms; }

  // The box that is expected still comes, and that is the end.
  void EndInSilence() {
    ending_ = true;
    world.on_output = nullptr;
    Advance(10'000);
    EXPECT_EQ(Panel(4), "Communication Stopped");
  }
  void EndInLoss() {
    ending_ = true;
    world.port().Unplug();
    Advance(10'000);
    EXPECT_EQ(State(), "Stopped, port closed, no timers");
  }

  int silences = 0;
  int losses = 0;
  BoilerOnLine boiler;

 private:
  bool ending_ = false;
  std::size_t requests_seen_ = 0;
  long progress_at_ = 0;
  std::vector<Location> locations_;
};

std::string TestName(const ::testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

class SilenceRun : public FaultRun, public ::testing::WithParamInterface<std::string> {};

TEST_P(SilenceRun, StopsAtEachSilenceAndRunsSoundlyAfterwards) {
  boiler.line().AddFault(GetParam());
  RestartAfterEachSilence();
  Exchange(ExchangesPerFault());
  EXPECT_GT(silences, 0);
  const int during_the_run = silences;
  ExpectSoundRun();
  EXPECT_EQ(silences, during_the_run);
  EndInSilence();
}

INSTANTIATE_TEST_SUITE_P(EachFault, SilenceRun, ::testing::ValuesIn(kSilences), TestName);

class NuisanceRun : public FaultRun, public ::testing::WithParamInterface<std::string> {};

TEST_P(NuisanceRun, GoesOnWithoutAWord) {
  boiler.line().AddFault(GetParam());
  Exchange(ExchangesPerFault());
  EXPECT_EQ(Panel(4), "Communication Running");
  EXPECT_EQ(world.port().opens(), 1);
  ExpectSoundRun();
}

INSTANTIATE_TEST_SUITE_P(EachFault, NuisanceRun, ::testing::ValuesIn(kNuisances), TestName);

class LossRun : public FaultRun, public ::testing::WithParamInterface<std::string> {};

TEST_P(LossRun, EndsAtEachLossAndRunsSoundlyAfterwards) {
  boiler.line().AddFault(GetParam());
  RestartAfterEachLoss();
  Exchange(ExchangesPerFault());
  EXPECT_GT(losses, 0);
  const int during_the_run = losses;
  Advance(5000);
  boiler.Calm();
  ExpectSoundRun();
  EXPECT_EQ(losses, during_the_run);
  EndInLoss();
}

INSTANTIATE_TEST_SUITE_P(EachFault, LossRun, ::testing::ValuesIn(kLosses), TestName);

TEST_F(FaultRun, AStreamWithoutEndIsReadForAsLongAsItLasts) {
  boiler.line().AddFault("endless_stream(0)#1");
  Exchange(500);
  EXPECT_EQ(Panel(4), "Communication Running");
  ExpectSoundRun();
}

TEST_F(FaultRun, ASoundLineShowsTheMemoryAllTheTime) {
  Exchange(ExchangesPerFault());
  EXPECT_EQ(world.port().opens(), 1);
  ExpectSoundRun();
}

// At the speed of the line, with a slave that takes its time.
class SlowLineRun : public FaultRun {
 protected:
  SlowLineRun()
      : FaultRun({.pace = {.baud = 9600}, .answer_delay_us = 12'000, .idle_gap_us = 50'000}) {}
};

TEST_F(SlowLineRun, StandsAllFaultsByTurns) {
  for (const auto* faults : {&kSilences, &kNuisances}) {
    for (const std::string& text : *faults) {
      boiler.line().AddFault(text.substr(0, text.find('@')) + "@0.01");
    }
  }
  RestartAfterEachSilence();
  Exchange(20'000);
  EXPECT_GT(silences, 0);
  ExpectSoundRun();
  EndInSilence();
}

TEST(FaultsOfTheRun, AreAllThatFitTheProtocol) {
  const auto slave = boiler::MakeSlave("tarnlink");
  for (const boiler::FaultInfo& info : boiler::AllFaults()) {
    if (!slave->Misfit(info.kind).empty() || boiler::BlocksOpening(info.kind)) continue;
    const auto is_run = [&](const std::vector<std::string>& faults) {
      return std::any_of(faults.begin(), faults.end(), [&](const std::string& text) {
        return boiler::ParseFaultPlan(text).fault.kind == info.kind;
      });
    };
    EXPECT_TRUE(is_run(kSilences) || is_run(kNuisances) || is_run(kLosses)) << info.name;
  }
}

}  // namespace
}  // namespace tarnlink
