// A service tool at work on a line with faults, against the simulated boiler.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "faults/line_guard.h"
#include "faults/rate_run.h"
#include "form/boiler_on_line.h"
#include "support/fake_world.h"
#include "tools/plain_host.h"

namespace tarnlink {

inline constexpr boiler::LineOptions kToolLine = {.pace = {.baud = 9600}, .answer_delay_us = 5'000};

// A tool that asks, with a user who has it work all the time.
class ToolPart {
 public:
  virtual ~ToolPart() = default;
  ToolPart(const ToolPart&) = delete;
  ToolPart& operator=(const ToolPart&) = delete;

  RateCounts Exchanges(double rate, long count) {
    LineGuard guard(world, world.port(0), EndOfZolt([this] { return Waits(); }));
    world.port(0).on_input = [this](std::string_view bytes) { TakeInput(bytes); };
    for (const std::string& plan : PlansOf("zolt", rate)) boiler.line().AddFault(plan);
    while (guard.asked() < count && !testing::Test::HasFailure()) {
      if (IsIdle()) {
        ExpectIdle();
        Begin();
        EXPECT_FALSE(IsIdle()) << said;
      }
      const long before = guard.asked();
      const auto goes_on = [&] { return guard.asked() > before || IsIdle(); };
      EXPECT_TRUE(world.RunUntil(goes_on, std::chrono::seconds(60)))
          << "stands still after " << before;
      Look();
      if (IsIdle()) End();
      if (guard.asked() % kForgets == 0) world.port(0).Forget();
      world.dialogs().TakeShown();
    }
    EXPECT_EQ(guard.hurried(), 0) << guard.first_hurried();
    world.port(0).on_input = nullptr;
    Leave();
    ExpectAtRest(world);
    return counts;
  }

 protected:
  explicit ToolPart(std::uint64_t seed)
      : boiler(world,
               {.protocol = "zolt",
                .slave = {.addresses = "0,3,A", .answers_corrupted = true},
                .line = kToolLine,
                .seed = seed},
               [this](const boiler::LogEntry& entry) {
                 if (entry.kind == boiler::LogKind::kHeard) ++counts.exchanges;
                 if (entry.kind == boiler::LogKind::kFault) ++counts.faults;
               }) {
    world.dialogs().user = [this](const std::string& shown) {
      ScriptedDialog answer(shown);
      if (shown.starts_with("open file") || shown.starts_with("save file")) answer.Give(path);
      if (shown.starts_with("question")) answer.Press(Answer::kYes);
      said = shown;
      return answer;
    };
  }

  virtual void Begin() = 0;
  virtual bool IsIdle() const = 0;
  // The work is over, and is judged.
  virtual void End() {}
  // After each message.
  virtual void Look() {}
  // The user closes the form, whatever it is doing.
  virtual void Leave() = 0;
  virtual void TakeInput(std::string_view /*bytes*/) {}
  // So long the tool waits for an answer before it asks again.
  virtual std::chrono::milliseconds Waits() const = 0;
  // The timer that runs while an answer is awaited.
  virtual const Timer* Awaiting() const = 0;

  int Byte(int address) {
    return boiler.controller().memory().Byte(static_cast<std::uint16_t>(address));
  }

  static constexpr long kForgets = 200;

  FakeWorld world;
  PlainHost plain{world};
  RateCounts counts;
  std::string path;  // that the user chooses
  std::string said;  // by the box that came last
  int turn = 0;      // of the work
  BoilerOnLine boiler;

 private:
  void ExpectIdle() {
    EXPECT_FALSE(world.port(0).PortOpen());
    EXPECT_FALSE(Awaiting()->Enabled());
  }
};

}  // namespace tarnlink
