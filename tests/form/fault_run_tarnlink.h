// The screen and the boiler of the runs under the TarnLink protocol, the faults, and a user who
// starts anew after each silence.
#pragma once

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "common/numbers.h"
#include "form/fault_run_fixture.h"

namespace tarnlink::tarnlink_faults {

using namespace std::chrono_literals;

// Faults that leave some exchange without an answer in time, so that the run ends in its box.
inline const std::vector<std::string> kSilences = {
    "no_reply@0.05",
    "busy_then_ok(3)@0.02",
    "late_reply(4000)@0.05",
    "late_reply_after_next@0.05",
    "slow_bytes(400)@0.05",
    "pause_midframe(3500)@0.05",
    "truncate@0.05",
    "truncate(10)@0.05",
    "byte_drop@0.05",
    "short_count@0.05",
    "stale_duplicate@0.05",
    "answer_of_other_request@0.05",
    "merge_two@0.05",
    "reboot_midsession@0.02",
    "write_stored_answer_lost@0.3",
    "write_slow(3500)@0.3",
};
// Faults after which enough bytes still come in time.
inline const std::vector<std::string> kNuisances = {
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
    "write_slow@0.5",       "range_rejected@0.5",   "endless_stream(500)@0.01",
};
inline const std::vector<std::string> kLosses = {
    "unplug@0.01",           "unplug_midframe@0.01",   "unplug_while_writing@0.01",
    "replug_same_name@0.01", "replug_other_name@0.01",
};

inline std::size_t ExchangesPerFault() {
  return ExchangesPerRun(kSilences.size() + kNuisances.size() + kLosses.size());
}

class TarnlinkFaultRun : public FaultRunTest {
 protected:
  explicit TarnlinkFaultRun(
      const boiler::LineOptions& line = {}, std::uint64_t seed = 20240305,
      boiler::LogSink log = [](const boiler::LogEntry&) {})
      : FaultRunTest({.protocol = "tarnlink", .line = line, .seed = seed}, std::move(log)) {
    for (unsigned i = 0; i < 6; ++i) {
      const auto address = static_cast<std::uint16_t>(0xF400 + 2 * i);
      boiler.controller().WriteWord(address, static_cast<std::uint16_t>(0x12AB + 0x1111 * i));
      const std::string digits = Hex(address);
      locations_.push_back(i % 2 == 0 ? ByteAt(digits) : WordAt(digits));
    }
    Screen(locations_);
    Start();
  }

  void WriteSomething(std::size_t turn) override {
    const int index = 1 + static_cast<int>(turn % locations_.size());
    Write(index, index % 2 == 0 ? "ABCD" : "5A");
  }

  const std::vector<std::string>& RunningStates() const override {
    static const std::vector<std::string> states = {
        "Ready, port open, timers Comm_Timer",
        "Ready, port open, timers Comm_Timer tmr_noresponse",
        "Waiting, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout",
        // The watchdog of a poll ends the wait for the write that came behind it.
        "Ready, port open, timers Comm_Timer tmr_noresponse tmr_MsgTimeout",
    };
    return states;
  }
  const std::vector<std::string>& StoppedStates() const override {
    static const std::vector<std::string> states = {
        "Stopped, port closed, no timers",
        "Stopped, port open, no timers",
        "Stopped, port closed, timers tmr_noresponse",
        "Stopped, port open, timers tmr_noresponse",
    };
    return states;
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
    ExpectMemoryShown();
  }

  // What the box of a Location should say of what the memory holds now.
  std::string Held(int index) {
    const Location& location = monitor.main.Locations[index];
    const std::uint16_t address = NumberOf(location);
    const auto& memory = boiler.controller().memory();
    const bool word = location.StorageType >= kUnsignedWord;
    return Hex32(word ? static_cast<std::int16_t>(memory.Word(address)) : memory.Byte(address));
  }

  void ExpectMemoryShown() {
    for (int i = 1; i <= monitor.main.MaxId; ++i) EXPECT_EQ(Value(i), Held(i)) << i;
    EXPECT_EQ(Panel(4), "Communication Running");
  }

  // From now on the user closes each such box, by turns at once and after a while, and starts anew.
  void RestartAfterEachSilence() {
    const Micros box_time = BoxTime();
    ExpectSilentSlaveBox()
        .While([this, box_time] {
          ++silences;
          if (ending) return;
          RestartAfterEachSilence();
          world.time().Post(box_time + 50ms, [this] { Restart(); });
        })
        .For(box_time);
  }

  // The box that is expected still comes, and that is the end.
  void EndInSilence() {
    ending = true;
    world.on_output = nullptr;
    Advance(10'000);
    EXPECT_EQ(Panel(4), "Communication Stopped");
  }

 private:
  std::vector<Location> locations_;
};

}  // namespace tarnlink::tarnlink_faults
