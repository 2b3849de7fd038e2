#include "monitor/round_values.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnlink {
namespace {

class RoundValuesTest : public ::testing::Test {
 protected:
  // Locations `first` + 1 to `first` + `count` are read together with `first`.
  void MakeBlock(int first, int count) {
    for (int i = 1; i <= count; ++i) locations[first + i].RegisterFollower = true;
  }
  // One after the other, each answered at once: "1 0 1" for recorded, left out, recorded.
  std::string AskAndTake(const std::vector<int>& indices) {
    std::string taken;
    for (const int index : indices) {
      values.Ask(index);
      taken += (taken.empty() ? "" : " ") + std::to_string(static_cast<int>(values.Take(index)));
    }
    return taken;
  }

  LocationTable locations;
  RoundValues values{locations};
};

TEST_F(RoundValuesTest, TheAnswerToARequestIsTaken) { EXPECT_EQ(AskAndTake({1, 2, 5}), "1 1 1"); }

TEST_F(RoundValuesTest, NothingIsTakenBeforeARequest) { EXPECT_FALSE(values.Take(1)); }

TEST_F(RoundValuesTest, ASecondAnswerToARequestIsNotTaken) {
  values.Ask(1);
  EXPECT_TRUE(values.Take(1));
  EXPECT_FALSE(values.Take(1));
}

TEST_F(RoundValuesTest, ALateAnswerToTheOpenRequestIsTaken) {
  values.Ask(1);
  values.Ask(1);
  EXPECT_TRUE(values.Take(1));
  values.Ask(1);
  EXPECT_FALSE(values.Take(1));
}

TEST_F(RoundValuesTest, AnAnswerForAnotherLocationIsNotTaken) {
  values.Ask(3);
  EXPECT_FALSE(values.Take(2));
  EXPECT_FALSE(values.Take(4));
  EXPECT_FALSE(values.Take(0));
  EXPECT_TRUE(values.Take(3));
}

TEST_F(RoundValuesTest, WhatAnswersAWriteIsNotTaken) {
  values.Ask(2);
  values.ForgetRequest();
  EXPECT_FALSE(values.Take(2));
  EXPECT_FALSE(values.Take(1));
  EXPECT_FALSE(values.Take(3));
}

TEST_F(RoundValuesTest, TheLocationThatAWriteCameBetweenIsTakenWhenItIsReadAgain) {
  values.Ask(2);
  values.ForgetRequest();
  EXPECT_EQ(AskAndTake({2, 2}), "1 0");
}

TEST_F(RoundValuesTest, WhatStandsInTheRoundIsNotTakenTwice) {
  EXPECT_EQ(AskAndTake({1, 2, 3, 2, 3, 4}), "1 1 1 0 0 1");
}

TEST_F(RoundValuesTest, WhatWasPassedOverIsNotTakenBehindALaterOne) {
  EXPECT_EQ(AskAndTake({1, 4, 2, 3, 4, 5}), "1 1 0 0 0 1");
}

TEST_F(RoundValuesTest, OneThatWasAskedForInVainStillKeepsThoseBeforeItOut) {
  values.Ask(1);
  values.Ask(3);
  EXPECT_EQ(AskAndTake({2, 3}), "0 1");
}

TEST_F(RoundValuesTest, TheNextRoundTakesEachOnceMore) {
  EXPECT_EQ(AskAndTake({1, 2}), "1 1");
  values.EndRound();
  EXPECT_EQ(AskAndTake({1, 2, 1}), "1 1 0");
}

TEST_F(RoundValuesTest, AnAnswerBehindTheEndOfItsRoundIsNotTaken) {
  values.Ask(2);
  values.EndRound();
  EXPECT_FALSE(values.Take(2));
}

TEST_F(RoundValuesTest, EveryRegisterOfABlockIsTakenOnce) {
  MakeBlock(2, 2);
  values.Ask(2);
  for (const int index : {2, 3, 4}) EXPECT_TRUE(values.Take(index)) << index;
  for (const int index : {2, 3, 4}) EXPECT_FALSE(values.Take(index)) << index;
  EXPECT_EQ(AskAndTake({5}), "1");
}

TEST_F(RoundValuesTest, OfABlockThatIsReadAgainNothingIsTakenTwice) {
  MakeBlock(2, 2);
  values.Ask(2);
  EXPECT_TRUE(values.Take(2));
  EXPECT_TRUE(values.Take(3));
  values.ForgetRequest();
  values.Ask(2);
  EXPECT_FALSE(values.Take(2));
  EXPECT_FALSE(values.Take(3));
  EXPECT_TRUE(values.Take(4));
}

TEST_F(RoundValuesTest, ARegisterBehindTheBlockIsNotTakenWithIt) {
  MakeBlock(2, 1);
  values.Ask(2);
  EXPECT_TRUE(values.Take(2));
  EXPECT_TRUE(values.Take(3));
  EXPECT_FALSE(values.Take(4));
}

TEST_F(RoundValuesTest, ABlocksFollowerIsNotTakenForAnEarlierWrite) {
  MakeBlock(2, 1);
  values.Ask(2);
  values.ForgetRequest();
  EXPECT_FALSE(values.Take(2));
  EXPECT_FALSE(values.Take(3));
}

TEST_F(RoundValuesTest, TheTableIsAskedAtTheMomentOfTheAnswer) {
  values.Ask(2);
  EXPECT_FALSE(values.Take(3));
  MakeBlock(2, 1);
  EXPECT_TRUE(values.Take(3));
}

}  // namespace
}  // namespace tarnlink
