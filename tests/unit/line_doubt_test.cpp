#include "protocols/line_doubt.h"

#include <gtest/gtest.h>

namespace tarnlink {
namespace {

constexpr int kTick = 20;
constexpr int kExchange = 40;

// How many ticks pass before a request may go out.
int TicksUntilAllowed(LineDoubt& doubt) {
  int ticks = 1;
  while (!doubt.AllowsRequest(kTick, kExchange)) ++ticks;
  return ticks;
}

TEST(LineDoubt, IsNotThereAtFirst) {
  LineDoubt doubt;
  EXPECT_EQ(TicksUntilAllowed(doubt), 1);
  EXPECT_EQ(TicksUntilAllowed(doubt), 1);
}

TEST(LineDoubt, OnceRaisedWaitsForTheTimeOfAnExchangeAndOfTheSlave) {
  LineDoubt doubt;
  doubt.Raise();
  EXPECT_EQ(TicksUntilAllowed(doubt), 7);
  EXPECT_EQ(TicksUntilAllowed(doubt), 1);
}

TEST(LineDoubt, RaisedAgainWaitsAnew) {
  LineDoubt doubt;
  doubt.Raise();
  for (int i = 0; i < 5; ++i) EXPECT_FALSE(doubt.AllowsRequest(kTick, kExchange));
  doubt.Raise();
  EXPECT_EQ(TicksUntilAllowed(doubt), 7);
}

TEST(LineDoubt, LastsASecondOnALineThatIsNeverQuiet) {
  LineDoubt doubt;
  int ticks = 0;
  do {
    doubt.Raise();
    ++ticks;
  } while (!doubt.AllowsRequest(kTick, kExchange));
  EXPECT_EQ(ticks, 50);
}

TEST(LineDoubt, IsOverOnceCleared) {
  LineDoubt doubt;
  doubt.Raise();
  doubt.Clear();
  EXPECT_EQ(TicksUntilAllowed(doubt), 1);
}

}  // namespace
}  // namespace tarnlink
