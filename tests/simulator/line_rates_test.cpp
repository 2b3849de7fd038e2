// Over many exchanges: faults strike as often as they should, an 8-bit sum lets through what it
// must let through, no more and no less, and a 16-bit check what it may.
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

// Asks so often, under one fault.
Counts Play(std::string_view fault, const char* protocol = "tarnlink",
            std::string_view request = kReadByteF400) {
  SimulatedBoiler::Options options;
  options.protocol = protocol;
  BoilerOnLine line(options);
  line.SetByte(kF400, 0x5A);
  line.Fault(fault);
  for (int i = 0; i < kExchanges; ++i) line.Ask(request);
  Counts counts;
  for (const LogEntry& entry : line.Entries(LogKind::kFault)) {
    ++counts.struck;
    if (entry.check == Check::kHolds) ++counts.let_through;
  }
  return counts;
}

Counts PlayZolt(std::string_view fault) {
  return Play(fault, "zolt", "0D 07 30 46 46 41 42 46 34 30 30 46 42 44 37 0A");
}

Counts PlayModbus(std::string_view fault) {
  return Play(fault, "modbus", "01 03 02 00 00 01 85 B2");
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

// A check of 16 bits misses neither one to three wrong bits, nor a burst of up to 16, nor a swap.
// Behind a ZOLT frame's check stands one byte that it does not cover, ahead of what it covers
// another.
TEST(Rates, AZoltCheckSeesWhatItMustSee) {
  EXPECT_EQ(PlayZolt("check_wrong").let_through, 0);
  EXPECT_EQ(PlayZolt("random_frame").let_through, 0);
  EXPECT_EQ(PlayZolt("all_zero@0.1").let_through, 0);
  const Counts one = PlayZolt("bit_flip(1)");
  ExpectShare(one.let_through, one.struck, 2.0 / 16);
  const Counts two = PlayZolt("bit_flip(2)");
  ExpectShare(two.let_through, two.struck, 16.0 / 128 * 15 / 127);
  const Counts replaced = PlayZolt("byte_replace");
  ExpectShare(replaced.let_through, replaced.struck, 2.0 / 16);
}

// A swap with the first or the last byte changes one that is covered as well.
TEST(Rates, AZoltCheckSeesEverySwap) {
  const Counts counts = PlayZolt("byte_swap");
  EXPECT_EQ(counts.struck, kExchanges);
  EXPECT_EQ(counts.let_through, 0);
}

TEST(Rates, AModbusCheckSeesWhatItMustSee) {
  for (const char* fault :
       {"bit_flip(1)", "bit_flip(2)", "bit_flip(3)", "burst(8)", "burst(16)", "byte_replace",
        "byte_swap", "check_wrong", "truncate(1)", "all_zero", "all_ff"}) {
    const Counts counts = PlayModbus(fault);
    EXPECT_EQ(counts.struck, kExchanges) << fault;
    EXPECT_EQ(counts.let_through, 0) << fault;
  }
}

// One random frame in 65,536 has the right check, so that 20,000 hardly ever have more than four.
TEST(Rates, AModbusCheckHardlyEverLetsARandomFramePass) {
  const Counts counts = PlayModbus("random_frame");
  EXPECT_EQ(counts.struck, kExchanges);
  EXPECT_LE(counts.let_through, 4);
}

TEST(Rates, FaultsStrikeAsOftenUnderTheOtherProtocols) {
  ExpectShare(PlayZolt("wrong_id@0.05").struck, kExchanges, 0.05);
  ExpectShare(PlayModbus("refused(3)@0.05").struck, kExchanges, 0.05);
  EXPECT_EQ(PlayZolt("answer_of_other_request").let_through, kExchanges);
  EXPECT_EQ(PlayModbus("answer_of_other_request").let_through, kExchanges);
}

}  // namespace
}  // namespace boiler
