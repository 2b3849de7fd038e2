// The log of the real program, which is killed at a random moment of its run, over and over: rows
// are whole but for the last one, and no value is lost that the next poll has passed.

#include <gtest/gtest.h>

#include <chrono>
#include <deque>
#include <memory>
#include <random>

#include "log_program.h"

namespace e2e {
namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr int kKills = 200;
constexpr std::size_t kReady = 3;   // programs that start meanwhile
constexpr double kTick = 20'000.0;  // microseconds from one poll to the next

// By the clock itself: a wait of the system's would always wake at the same moments.
void KillAt(Process& process, SteadyClock::time_point moment) {
  while (SteadyClock::now() < moment) {
  }
  process.Kill();
}

TEST(KilledWhileLogging, NoRowIsTornAndNoValueIsLost) {
  std::mt19937 random(20240305);
  std::uniform_int_distribution<int> answers(1, 9);
  std::uniform_real_distribution<double> part(0.0, 1.0);
  std::deque<std::unique_ptr<LogProgram>> ready;
  for (int kill = 0; kill < kKills; ++kill) {
    while (ready.size() < kReady) {
      ready.push_back(
          std::make_unique<LogProgram>(std::vector<std::string>{"One", "Two", "Three"}));
    }
    LogProgram& logging = *ready.front();
    ASSERT_NO_FATAL_FAILURE(logging.StartLog());
    ASSERT_NO_FATAL_FAILURE(logging.Answer(answers(random)));
    // Most often soon after the answer, while it is being taken and written.
    const double delay = part(random) * part(random) * part(random) * kTick;
    KillAt(logging.program().process(),
           SteadyClock::now() + std::chrono::microseconds(static_cast<int>(delay)));
    ASSERT_EQ(FaultOfLog(logging.Log(), logging.answers()), "") << "Kill " << kill << ":\n"
                                                                << logging.Log();
    ready.pop_front();
  }
}

}  // namespace
}  // namespace e2e
