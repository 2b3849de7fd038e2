// Over many exchanges: faults strike as often as they should, and the sum lets through what an
// 8-bit sum must let through, no more and no less.
#include <cmath>

#include <gtest/gtest.h>

#include "line_fixture.h"

namespace boiler {
namespace {

constexpr int kExchanges = 20'000;

struct Counts {
  int struck = 0;
  int let_through = 0;
};

// Asks for 5A at F400 so often, under one fault.
Counts Play(std::string_view fault) {
  BoilerOnLine line;
  line.SetByte(kF400, 0x5A);
  line.Fault(fault);
  for (int i = 0; i < kExchanges; ++i) line.Ask(kReadByteF400);
  Counts counts;
  for (const LogEntry& entry : line.Entries(LogKind::kFault)) {
    ++counts.struck;
    if (entry.check == Check::kHolds) ++counts.let_through;
  }
  return counts;
}

// Four standard deviations either side.
void ExpectShare(int hits, int of, double share) {
  const double expected = of * share;
  EXPECT_NEAR(hits, expected, 4 * std::sqrt(expected * (1 - share)) + 1e-9);
}

TEST(Rates, FaultsStrikeAsOftenAsTheyShould) {
  ExpectShare(Play("no_reply@0.05").struck, kExchanges, 0.05);
  ExpectShare(Play("bit_flip(3)@0.5").struck, kExchanges, 0.5);
  EXPECT_EQ(Play("wrong_id").struck, kExchanges);
}

// The answer is 04 05 46 34 30 30 35 41 35 35 03: the sum covers the bytes 1 to 7 and stands in the
// bytes 8 and 9. So a wrong bit in the first or the last byte goes unseen.
TEST(Rates, OneWrongBitIsSeenWhereverTheSumReaches) {
  const Counts counts = Play("bit_flip(1)");
  ExpectShare(counts.let_through, counts.struck, 2.0 / 11);
}

// Of the eight pairs of neighbours that differ (0-1, 1-2, 2-3, 3-4, 5-6, 6-7, 7-8, 9-10), five are
// covered by the sum as a whole.
TEST(Rates, ASumMissesEverySwapThatItCovers) {
  const Counts counts = Play("byte_swap");
  ExpectShare(counts.let_through, counts.struck, 5.0 / 8);
}

TEST(Rates, AnotherSumIsAlwaysSeen) {
  const Counts counts = Play("check_wrong");
  EXPECT_EQ(counts.struck, kExchanges);
  EXPECT_EQ(counts.let_through, 0);
}

// Two random bytes are the right two digits once in 65,536 frames.
TEST(Rates, RandomFramesHardlyEverPass) {
  const Counts counts = Play("random_frame");
  EXPECT_EQ(counts.struck, kExchanges);
  EXPECT_LE(counts.let_through, 3);
}

}  // namespace
}  // namespace boiler
