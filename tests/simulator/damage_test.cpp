#include "simulator/damage.h"

#include <algorithm>
#include <bit>
#include <set>

#include <gtest/gtest.h>

#include "simulator/bytes.h"

namespace boiler {
namespace {

using enum FaultKind;

const std::string kFrame = *ParseHexBytes("04 05 46 34 30 30 35 41 35 35 03");

std::string Damage(FaultKind kind, int number, std::uint64_t seed) {
  Random random(seed);
  return Damaged({kind, number}, kFrame, random);
}

// Numbers of the bits in which the two differ.
std::vector<std::size_t> WrongBits(const std::string& damaged) {
  std::vector<std::size_t> wrong;
  for (std::size_t bit = 0; bit < kFrame.size() * 8; ++bit) {
    if (((kFrame[bit / 8] ^ damaged[bit / 8]) >> bit % 8 & 1) != 0) wrong.push_back(bit);
  }
  return wrong;
}

constexpr std::uint64_t kSeeds = 200;

TEST(Damage, BitFlipTurnsExactlySoManyBits) {
  for (std::uint64_t seed = 0; seed < kSeeds; ++seed) {
    for (const int count : {1, 2, 3, 64}) {
      const std::string damaged = Damage(kBitFlip, count, seed);
      ASSERT_EQ(damaged.size(), kFrame.size());
      EXPECT_EQ(WrongBits(damaged).size(), static_cast<std::size_t>(count));
    }
  }
}

TEST(Damage, BurstSpansExactlySoManyBits) {
  for (std::uint64_t seed = 0; seed < kSeeds; ++seed) {
    for (const int length : {1, 2, 8, 16, 64}) {
      const auto wrong = WrongBits(Damage(kBurst, length, seed));
      ASSERT_FALSE(wrong.empty());
      EXPECT_EQ(wrong.back() - wrong.front() + 1, static_cast<std::size_t>(length));
    }
  }
}

TEST(Damage, ByteReplaceChangesOneByte) {
  for (std::uint64_t seed = 0; seed < kSeeds; ++seed) {
    const std::string damaged = Damage(kByteReplace, 0, seed);
    ASSERT_EQ(damaged.size(), kFrame.size());
    int changed = 0;
    for (std::size_t i = 0; i < kFrame.size(); ++i) changed += damaged[i] != kFrame[i];
    EXPECT_EQ(changed, 1);
  }
}

TEST(Damage, ByteDropTakesOneByteOut) {
  for (std::uint64_t seed = 0; seed < kSeeds; ++seed) {
    const std::string damaged = Damage(kByteDrop, 0, seed);
    bool found = false;
    for (std::size_t i = 0; i < kFrame.size(); ++i) {
      std::string without = kFrame;
      found = found || without.erase(i, 1) == damaged;
    }
    EXPECT_TRUE(found) << HexText(damaged);
  }
}

TEST(Damage, ByteInsertPutsOneByteIn) {
  for (std::uint64_t seed = 0; seed < kSeeds; ++seed) {
    const std::string damaged = Damage(kByteInsert, 0, seed);
    ASSERT_EQ(damaged.size(), kFrame.size() + 1);
    bool found = false;
    for (std::size_t i = 0; i < damaged.size(); ++i) {
      std::string without = damaged;
      found = found || without.erase(i, 1) == kFrame;
    }
    EXPECT_TRUE(found) << HexText(damaged);
  }
}

TEST(Damage, ByteSwapExchangesNeighboursThatDiffer) {
  for (std::uint64_t seed = 0; seed < kSeeds; ++seed) {
    const std::string damaged = Damage(kByteSwap, 0, seed);
    const auto [left, right] = std::mismatch(kFrame.begin(), kFrame.end(), damaged.begin());
    ASSERT_NE(left, kFrame.end());
    std::string back = damaged;
    const auto at = static_cast<std::size_t>(left - kFrame.begin());
    std::swap(back[at], back[at + 1]);
    EXPECT_EQ(HexText(back), HexText(kFrame));
  }
}

TEST(Damage, TruncateCutsTheEndAndLeavesAByte) {
  EXPECT_EQ(Damage(kTruncate, 1, 1), kFrame.substr(0, 10));
  EXPECT_EQ(Damage(kTruncate, 4, 1), kFrame.substr(0, 7));
  EXPECT_EQ(Damage(kTruncate, 10, 1), kFrame.substr(0, 1));
  EXPECT_EQ(Damage(kTruncate, 255, 1), kFrame.substr(0, 1));
}

TEST(Damage, FillsTheFrame) {
  EXPECT_EQ(Damage(kAllZero, 0, 1), std::string(11, '\0'));
  EXPECT_EQ(Damage(kAllFf, 0, 1), std::string(11, '\xFF'));
}

TEST(Damage, RandomFrameHasTheLengthAndNothingElse) {
  std::set<std::string> seen;
  for (std::uint64_t seed = 0; seed < 50; ++seed) {
    seen.insert(Damage(kRandomFrame, 0, seed));
    EXPECT_EQ(Damage(kRandomFrame, 0, seed).size(), kFrame.size());
  }
  EXPECT_EQ(seen.size(), 50u);
}

TEST(Damage, StripsHighBitsAndTranslatesLineFeeds) {
  Random random(1);
  EXPECT_EQ(HexText(Damaged({kHighBitStripped}, *ParseHexBytes("81 7F FF 0D"), random)),
            "01 7F 7F 0D");
  EXPECT_EQ(HexText(Damaged({kCrlfTranslated}, *ParseHexBytes("0D 31 0A 0A"), random)),
            "0D 31 0D 0A 0D 0A");
}

TEST(Damage, FollowsTheSeed) {
  for (const FaultKind kind :
       {kBitFlip, kBurst, kByteReplace, kByteDrop, kByteInsert, kByteSwap, kRandomFrame}) {
    std::set<std::string> seen;
    for (std::uint64_t seed = 0; seed < 50; ++seed) {
      EXPECT_EQ(Damage(kind, 3, seed), Damage(kind, 3, seed));
      seen.insert(Damage(kind, 3, seed));
    }
    EXPECT_GT(seen.size(), 5u) << InfoOf(kind).name;
  }
}

TEST(Damage, LeavesTheShortestFramesAlone) {
  for (const FaultInfo& info : AllFaults()) {
    Random random(1);
    EXPECT_EQ(Damaged({info.kind, info.number}, "", random), "") << info.name;
    if (info.group != FaultGroup::kDamage) {
      EXPECT_EQ(Damaged({info.kind, info.number}, kFrame, random), kFrame) << info.name;
    }
  }
  Random random(1);
  EXPECT_EQ(Damaged({kByteDrop}, "x", random), "x");
  EXPECT_EQ(Damaged({kByteSwap}, "xxx", random), "xxx");
}

}  // namespace
}  // namespace boiler
