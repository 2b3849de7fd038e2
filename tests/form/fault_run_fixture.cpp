#include "form/fault_run_fixture.h"

#include <algorithm>
#include <cctype>

#include "common/numbers.h"
#include "common/text.h"
#include "simulator/fault.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr int kStep = 5;  // ms
// In a long silence nothing but ticks happens.
constexpr int kLongStep = 50;
constexpr long kLongSilence = 500;

}  // namespace

std::uint16_t NumberOf(const Location& location) {
  return static_cast<std::uint16_t>(Val("&H" + location.Address + "&"));
}

std::string TestNameOf(std::string_view text) {
  std::string name(text);
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

void ExpectAllThatFit(std::string_view protocol,
                      const std::vector<std::vector<std::string>>& lists) {
  const auto slave = boiler::MakeSlave(protocol);
  for (const boiler::FaultInfo& info : boiler::AllFaults()) {
    if (!slave->Misfit(info.kind).empty() || boiler::BlocksOpening(info.kind)) continue;
    const auto is_run = [&](const std::vector<std::string>& faults) {
      return std::any_of(faults.begin(), faults.end(), [&](const std::string& text) {
        return boiler::ParseFaultPlan(text).fault.kind == info.kind;
      });
    };
    EXPECT_TRUE(std::any_of(lists.begin(), lists.end(), is_run)) << info.name;
  }
}

void FaultRunTest::Exchange(std::size_t count) {
  const std::size_t goal = Requests() + count;
  std::size_t next_write = Requests() + write_period;
  progress_at_ = Now();
  while (Requests() < goal && !HasFailure()) {
    ExpectProgress();
    Advance(Step());
    CheckState();
    if (Requests() < next_write || !MayWrite()) continue;
    next_write = Requests() + write_period;
    WriteSomething(Requests());
  }
}

int FaultRunTest::Step() const { return Now() - progress_at_ > kLongSilence ? kLongStep : kStep; }

// Whatever happens, it is never long until the next request.
void FaultRunTest::ExpectProgress() {
  if (Requests() == requests_seen_) {
    ASSERT_LE(Now() - progress_at_, longest_gap) << State();
    return;
  }
  requests_seen_ = Requests();
  progress_at_ = Now();
}

bool FaultRunTest::IsShown(const std::string& text) const {
  return text.starts_with("Value ") ||
         (!text.empty() && text.size() <= 8 &&
          text.find_first_not_of("0123456789ABCDEF") == std::string::npos);
}

// The states of a run and what belongs to each.
void FaultRunTest::CheckState() {
  const frm_Main& main = monitor.main;
  const std::string state = State();
  const auto& states = main.CommRunning ? RunningStates() : StoppedStates();
  ASSERT_TRUE(std::find(states.begin(), states.end(), state) != states.end()) << state;
  ASSERT_EQ(Panel(4), main.CommRunning ? "Communication Running" : "Communication Stopped");
  ASSERT_EQ(main.M_options.Enabled.get(), !main.CommRunning);
  ASSERT_GE(main.MsgPointer, lowest_pointer);
  ASSERT_LE(main.MsgPointer, main.MaxId);
  for (int i = 1; i <= main.MaxId; ++i) ASSERT_TRUE(IsShown(Value(i))) << Value(i);
}

void FaultRunTest::Restart() {
  Stop();
  Start();
}

void FaultRunTest::RestartAfterEachLoss() {
  const Micros box_time = BoxTime();
  ExpectDeviceGoneBox()
      .While([this, box_time] {
        ++losses;
        if (ending) return;
        RestartAfterEachLoss();
        world.time().Post(box_time + 600ms, [this] {
          world.port().PlugIn();
          Restart();
        });
      })
      .For(box_time);
}

void FaultRunTest::EndInLoss() {
  ending = true;
  world.port().Unplug();
  Advance(10'000);
  EXPECT_EQ(State(), "Stopped, port closed, no timers");
}

Micros FaultRunTest::BoxTime() const { return (silences + losses) % 3 * 1700ms; }

}  // namespace tarnlink
