// The two watches that fail the tests of the widgets and of the whole program where the user has to
// wait: each sees a wait that is too long, and lets the short ones pass.

#include "ui/event_watch.h"

#include <QTimer>

#include "e2e/driver/watchdog.h"
#include "support/virtual_time.h"

namespace tarnlink {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kTooLong{200};
constexpr milliseconds kShort{30};
constexpr double kSeen = 10;  // of that at least, where a machine's host took some
constexpr double kLongest = kLongestWait.count();

// Works for so long, as the thread's own time has it.
void Work(milliseconds span) {
  const ThreadTime time;
  const auto begin = time.Now();
  while (time.Now() - begin < span) continue;
}

// By an event of the loop, and until that is over.
void WorkInEvent(milliseconds span) {
  bool is_over = false;
  QTimer::singleShot(0, qApp, [&] {
    Work(span);
    is_over = true;
  });
  EXPECT_TRUE(QTest::qWaitFor([&] { return is_over; }, 5000));
}

class EventWatchTest : public ::testing::Test {
 protected:
  EventWatchTest() { watch.BeginTest(); }
  // What is done here on purpose is no failure of this test.
  ~EventWatchTest() override { watch.BeginTest(); }

  EventWatch& watch = EventWatch::Instance();
};

TEST_F(EventWatchTest, SeesAnEventThatIsTooLong) {
  WorkInEvent(kShort);
  EXPECT_GT(watch.longest().milliseconds, kSeen);
  EXPECT_LT(watch.longest().milliseconds, kLongest);
  WorkInEvent(kTooLong);
  EXPECT_GT(watch.longest().milliseconds, kLongest);
  EXPECT_NE(watch.longest().what, "");
}

TEST_F(EventWatchTest, AddsNoEventsUp) {
  for (int i = 0; i < 5; ++i) WorkInEvent(kShort);
  EXPECT_LT(watch.longest_of_test().milliseconds, kLongest);
}

TEST_F(EventWatchTest, TheTestKeepsWhatAStepForgets) {
  WorkInEvent(kTooLong);
  watch.Forget();
  WorkInEvent(kShort);
  EXPECT_LT(watch.longest().milliseconds, kLongest);
  EXPECT_GT(watch.longest_of_test().milliseconds, kLongest);
}

TEST_F(EventWatchTest, SeesWhatVirtualTimeCalls) {
  VirtualTime time;
  time.Post(milliseconds(10), [] { Work(kShort); });
  time.Advance(milliseconds(20));
  EXPECT_GT(watch.longest().milliseconds, kSeen);
  time.Post(milliseconds(10), [] { Work(kTooLong); });
  time.Advance(milliseconds(20));
  EXPECT_GT(watch.longest().milliseconds, kLongest);
  EXPECT_EQ(watch.longest().what, "a call of virtual time");
}

// As a box does that stands open while the time goes on.
TEST_F(EventWatchTest, ACallWithinACallIsItsOwn) {
  VirtualTime time;
  for (int i = 1; i <= 5; ++i) time.Post(milliseconds(10 + i), [] { Work(kShort); });
  time.Post(milliseconds(10), [&time] { time.Advance(milliseconds(20)); });
  time.Advance(milliseconds(40));
  EXPECT_GT(watch.longest().milliseconds, kSeen);
  EXPECT_LT(watch.longest().milliseconds, kLongest);
}

TEST_F(EventWatchTest, TheWatchdogOfTheProgramTellsOfAWaitThatIsTooLong) {
  std::vector<double> told;
  tarnlink_driver::Watchdog watchdog(
      [&told](double wait, const std::string&) { told.push_back(wait); });
  for (int i = 0; i < 5; ++i) WorkInEvent(kShort);
  EXPECT_EQ(told.size(), 0U);
  WorkInEvent(kTooLong);
  // Code that is not optimised is not held to it.
  const std::size_t wanted = kWaitingCounts ? 1 : 0;
  EXPECT_TRUE(QTest::qWaitFor([&] { return told.size() >= wanted; }, 5000));
  WorkInEvent(kShort);
  EXPECT_EQ(told.size(), wanted);
  for (const double wait : told) EXPECT_GT(wait, kLongest);
}

}  // namespace
}  // namespace tarnlink
