#include "simulator/fault_injector.h"

#include <cmath>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "problem_text.h"

namespace boiler {
namespace {

using ::testing::ElementsAre;

constexpr ExchangeFacts kReads{false, true, false};
constexpr ExchangeFacts kWrites{true, true, false};

FaultInjector Injector(std::initializer_list<const char*> plans, std::uint64_t seed = 1) {
  FaultInjector injector(seed);
  for (const char* plan : plans) injector.Add(ParseFaultPlan(plan));
  return injector;
}

std::string Next(FaultInjector& injector, const ExchangeFacts& facts = kReads) {
  const auto fault = injector.Next(facts);
  return fault ? FaultText(*fault) : "-";
}

std::vector<std::string> Next(FaultInjector& injector, int exchanges) {
  std::vector<std::string> all;
  while (exchanges-- > 0) all.push_back(Next(injector));
  return all;
}

TEST(FaultInjector, LetsAllPassWithoutPlans) {
  FaultInjector injector(1);
  EXPECT_THAT(Next(injector, 3), ElementsAre("-", "-", "-"));
}

TEST(FaultInjector, StrikesTheNextExchangesByCountInTheOrderOfThePlans) {
  FaultInjector injector = Injector({"no_reply#2", "bit_flip(3)#1"});
  EXPECT_THAT(Next(injector, 5), ElementsAre("no_reply", "no_reply", "bit_flip(3)", "-", "-"));
}

TEST(FaultInjector, AlwaysStrikesAtRateOne) {
  FaultInjector injector = Injector({"no_reply"});
  EXPECT_THAT(Next(injector, 3), ElementsAre("no_reply", "no_reply", "no_reply"));
}

TEST(FaultInjector, TakesCountsBeforeRates) {
  FaultInjector injector = Injector({"no_reply", "all_ff#1"});
  EXPECT_THAT(Next(injector, 2), ElementsAre("all_ff", "no_reply"));
}

TEST(FaultInjector, KeepsEachRateWhateverTheOthersAre) {
  const std::map<std::string, double> rates = {
      {"no_reply", 0.3}, {"bit_flip(1)", 0.05}, {"split(2)", 0.2}, {"byte_swap", 0.002}};
  FaultInjector injector =
      Injector({"no_reply@0.3", "bit_flip@0.05", "split@0.2", "byte_swap@0.002"});
  constexpr int kExchanges = 50'000;
  std::map<std::string, int> hits;
  for (int i = 0; i < kExchanges; ++i) ++hits[Next(injector)];
  for (const auto& [name, rate] : rates) {
    const double expected = kExchanges * rate;
    EXPECT_NEAR(hits[name], expected, 4 * std::sqrt(expected * (1 - rate))) << name;
  }
}

TEST(FaultInjector, FollowsTheSeed) {
  FaultInjector one = Injector({"no_reply@0.5"}, 7);
  FaultInjector same = Injector({"no_reply@0.5"}, 7);
  FaultInjector other = Injector({"no_reply@0.5"}, 8);
  const auto expected = Next(one, 100);
  EXPECT_EQ(Next(same, 100), expected);
  EXPECT_NE(Next(other, 100), expected);
}

TEST(FaultInjector, RefusesRatesThatExceedOneTogether) {
  FaultInjector injector = Injector({"no_reply@0.6", "bit_flip@0.4", "all_ff#3"});
  EXPECT_EQ(ProblemText([&] { injector.Add(ParseFaultPlan("split(3)@0.1")); }),
            "Fault \"split(3)\": the rates of all faults together would exceed 1.");
}

TEST(FaultInjector, AddsUpTenthsToOne) {
  FaultInjector injector(1);
  for (int i = 0; i < 10; ++i) injector.Add(ParseFaultPlan("no_reply@0.1"));
  for (int i = 0; i < 1000; ++i) ASSERT_EQ(Next(injector), "no_reply");
}

TEST(FaultInjector, KeepsCountsOfWritesForWrites) {
  FaultInjector injector = Injector({"write_ok_not_stored#1"});
  EXPECT_EQ(Next(injector, kReads), "-");
  EXPECT_EQ(Next(injector, kWrites), "write_ok_not_stored");
  EXPECT_EQ(Next(injector, kWrites), "-");
}

TEST(FaultInjector, LetsAReadPassThatAFaultOfWritesWasDrawnFor) {
  FaultInjector injector = Injector({"range_rejected"});
  EXPECT_EQ(Next(injector, kReads), "-");
  EXPECT_EQ(Next(injector, kWrites), "range_rejected");
}

TEST(FaultInjector, RepeatsAnAnswerOnlyWhenThereWasOne) {
  FaultInjector injector = Injector({"stale_duplicate#1"});
  EXPECT_EQ(Next(injector, {false, false, false}), "-");
  EXPECT_EQ(Next(injector, {false, true, false}), "stale_duplicate");
}

TEST(FaultInjector, MergesPairsOnly) {
  FaultInjector injector = Injector({"merge_two"});
  EXPECT_EQ(Next(injector, {false, true, false}), "merge_two");
  EXPECT_EQ(Next(injector, {false, true, true}), "-");
}

TEST(FaultInjector, IsBusyForSoManyExchangesAndSoundInTheNext) {
  FaultInjector injector = Injector({"busy_then_ok(3)"});
  EXPECT_THAT(Next(injector, 6),
              ElementsAre("busy_then_ok(3)", "busy_then_ok(3)", "busy_then_ok(3)", "-",
                          "busy_then_ok(3)", "busy_then_ok(3)"));
}

TEST(FaultInjector, ForgetsAllWhenCleared) {
  FaultInjector injector = Injector({"busy_then_ok(3)#1", "no_reply", "all_ff#5"});
  Next(injector);
  injector.Clear();
  EXPECT_THAT(Next(injector, 3), ElementsAre("-", "-", "-"));
}

TEST(FaultInjector, ChangesAnIdOnlyWhereTheAnswerNamesOne) {
  FaultInjector injector = Injector({"wrong_id#1"});
  EXPECT_EQ(Next(injector, {false, true, false, false}), "-");
  EXPECT_EQ(Next(injector, {false, true, false, true}), "wrong_id");
}

}  // namespace
}  // namespace boiler
