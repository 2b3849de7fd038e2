#include <gtest/gtest.h>

#include <memory>

#include "contract/loops.h"
#include "platform/qt/qt_timer.h"

namespace tarnlink {
namespace {

class FakeTimerBench : public VirtualLoop {
 public:
  std::unique_ptr<Timer> Make() { return world().CreateTimer(); }
};

class QtTimerBench : public QtLoop {
 public:
  std::unique_ptr<Timer> Make() { return std::make_unique<QtTimer>(); }
};

template <class Bench>
class TimerContract : public testing::Test {
 protected:
  // A timer that counts its events.
  std::unique_ptr<Timer> Counting(int interval, int& count) {
    auto timer = bench.Make();
    timer->SetInterval(interval);
    timer->SetOnTimer([&count] { ++count; });
    return timer;
  }

  Bench bench;
};

using Benches = testing::Types<FakeTimerBench, QtTimerBench>;
TYPED_TEST_SUITE(TimerContract, Benches, BenchNames);

TYPED_TEST(TimerContract, StartsDisabledWithIntervalZero) {
  const auto timer = this->bench.Make();
  EXPECT_FALSE(timer->Enabled());
  EXPECT_EQ(timer->Interval(), 0);
}

TYPED_TEST(TimerContract, FiresAgainAndAgainWhileEnabled) {
  int count = 0;
  const auto timer = this->Counting(5, count);
  timer->SetEnabled(true);
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(this->bench.RunUntil([&] { return count >= 3; }));
}

TYPED_TEST(TimerContract, IntervalZeroNeverFires) {
  int never = 0;
  int often = 0;
  const auto zero = this->Counting(0, never);
  const auto other = this->Counting(5, often);
  zero->SetEnabled(true);
  other->SetEnabled(true);
  EXPECT_TRUE(this->bench.RunUntil([&] { return often >= 5; }));
  EXPECT_EQ(never, 0);
  EXPECT_TRUE(zero->Enabled());
}

TYPED_TEST(TimerContract, AnIntervalGivenToAnEnabledTimerOfZeroStartsIt) {
  int count = 0;
  const auto timer = this->Counting(0, count);
  timer->SetEnabled(true);
  timer->SetInterval(5);
  EXPECT_TRUE(this->bench.RunUntil([&] { return count > 0; }));
}

TYPED_TEST(TimerContract, DisablingStopsIt) {
  int stopped = 0;
  int running = 0;
  const auto timer = this->Counting(5, stopped);
  const auto other = this->Counting(5, running);
  timer->SetEnabled(true);
  timer->SetEnabled(false);
  other->SetEnabled(true);
  EXPECT_TRUE(this->bench.RunUntil([&] { return running >= 4; }));
  EXPECT_EQ(stopped, 0);
}

// The restarted timer must come after one that was started with it and left alone.
TYPED_TEST(TimerContract, EnablingAnEnabledTimerChangesNothing) {
  std::string order;
  const auto first = this->bench.Make();
  const auto second = this->bench.Make();
  first->SetOnTimer([&] { order += 'a'; });
  second->SetOnTimer([&] { order += 'b'; });
  for (Timer* timer : {first.get(), second.get()}) {
    timer->SetInterval(60);
    timer->SetEnabled(true);
  }
  this->bench.RunFor(30ms);
  first->SetEnabled(true);
  first->SetInterval(60);
  EXPECT_TRUE(this->bench.RunUntil([&] { return order.size() >= 2; }));
  EXPECT_EQ(order, "ab");
}

TYPED_TEST(TimerContract, OffAndOnStartsItAnew) {
  std::string order;
  const auto first = this->bench.Make();
  const auto second = this->bench.Make();
  first->SetOnTimer([&] { order += 'a'; });
  second->SetOnTimer([&] { order += 'b'; });
  for (Timer* timer : {first.get(), second.get()}) {
    timer->SetInterval(400);  // much more than a busy machine keeps a process waiting
    timer->SetEnabled(true);
  }
  this->bench.RunFor(30ms);
  first->SetEnabled(false);
  first->SetEnabled(true);
  EXPECT_TRUE(this->bench.RunUntil([&] { return order.size() >= 2; }));
  EXPECT_EQ(order, "ba");
}

TYPED_TEST(TimerContract, AnotherIntervalWhileEnabledStartsItAnew) {
  std::string order;
  const auto first = this->bench.Make();
  const auto second = this->bench.Make();
  first->SetOnTimer([&] { order += 'a'; });
  second->SetOnTimer([&] { order += 'b'; });
  first->SetInterval(2000);
  second->SetInterval(20);
  first->SetEnabled(true);
  second->SetEnabled(true);
  first->SetInterval(5);
  EXPECT_TRUE(this->bench.RunUntil([&] { return !order.empty(); }));
  EXPECT_EQ(order.front(), 'a');
}

TYPED_TEST(TimerContract, TimersOfOneIntervalFireInTheOrderOfTheirStart) {
  std::string order;
  const auto later_made = this->bench.Make();
  const auto first = this->bench.Make();
  first->SetOnTimer([&] { order += 'a'; });
  later_made->SetOnTimer([&] { order += 'b'; });
  for (Timer* timer : {first.get(), later_made.get()}) {
    timer->SetInterval(15);
    timer->SetEnabled(true);
  }
  EXPECT_TRUE(this->bench.RunUntil([&] { return order.size() >= 2; }));
  EXPECT_EQ(order.substr(0, 2), "ab");
}

TYPED_TEST(TimerContract, DoesNotFireInsideItsOwnHandlerWhileOthersDo) {
  int others = 0;
  const auto other = this->Counting(5, others);
  other->SetEnabled(true);

  const auto timer = this->bench.Make();
  int inside = 0;
  int deepest = 0;
  bool others_went_on = false;
  timer->SetInterval(5);
  timer->SetOnTimer([&] {
    deepest = std::max(deepest, ++inside);
    if (!others_went_on) {
      const int before = others;
      // Off and on again inside the handler must not let it in either.
      timer->SetEnabled(false);
      timer->SetEnabled(true);
      others_went_on = this->bench.RunUntil([&] { return others >= before + 4; });
    }
    --inside;
  });
  timer->SetEnabled(true);
  EXPECT_TRUE(this->bench.RunUntil([&] { return others_went_on; }));
  EXPECT_EQ(deepest, 1);
}

TYPED_TEST(TimerContract, GoesOnAfterAHandlerThatTookLong) {
  const auto timer = this->bench.Make();
  int count = 0;
  timer->SetInterval(5);
  timer->SetOnTimer([&] {
    if (++count == 1) this->bench.RunFor(30ms);
  });
  timer->SetEnabled(true);
  EXPECT_TRUE(this->bench.RunUntil([&] { return count >= 2; }));
}

TYPED_TEST(TimerContract, AHandlerMayStopItsTimer) {
  int count = 0;
  const auto timer = this->bench.Make();
  timer->SetInterval(5);
  timer->SetOnTimer([&] {
    ++count;
    timer->SetEnabled(false);
  });
  timer->SetEnabled(true);
  EXPECT_TRUE(this->bench.RunUntil([&] { return count > 0; }));
  this->bench.RunFor(30ms);
  EXPECT_EQ(count, 1);
}

TYPED_TEST(TimerContract, AHandlerMayDestroyItsTimer) {
  auto timer = this->bench.Make();
  timer->SetInterval(5);
  timer->SetOnTimer([&] { timer.reset(); });
  timer->SetEnabled(true);
  EXPECT_TRUE(this->bench.RunUntil([&] { return timer == nullptr; }));
}

TYPED_TEST(TimerContract, ADestroyedTimerFiresNoMore) {
  int dead = 0;
  int alive = 0;
  auto timer = this->Counting(5, dead);
  const auto other = this->Counting(5, alive);
  timer->SetEnabled(true);
  other->SetEnabled(true);
  timer.reset();
  EXPECT_TRUE(this->bench.RunUntil([&] { return alive >= 4; }));
  EXPECT_EQ(dead, 0);
}

}  // namespace
}  // namespace tarnlink
