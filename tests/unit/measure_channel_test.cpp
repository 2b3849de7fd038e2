// The samples of one line: where they stand, what is lost, how one is found by its time.

#include "graph/measure_channel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace tarnlink {
namespace {

constexpr int kBound = MeasureChannel::kUpperBound;

MeasureChannel ChannelOf(int upper_bound) {
  MeasureChannel channel;
  channel.Dimension(upper_bound);
  return channel;
}

// Samples of the values 1, 2 and so on, a second apart.
void Append(MeasureChannel& channel, int count) {
  for (int i = 1; i <= count; ++i) channel.Append({i, i});
}

// "0@0 0@0 1@10 2@20": every element, from index 0 up.
std::string Elements(const MeasureChannel& channel) {
  std::string text;
  for (int i = 0; i <= channel.UpperBound(); ++i) {
    text += (i > 0 ? " " : "") + std::to_string(channel[i].Value) + "@" +
            std::to_string(channel[i].Time);
  }
  return text;
}

// The walk down from the upper bound, step by step.
int WalkDown(const MeasureChannel& channel, std::int64_t time) {
  int i = channel.UpperBound();
  while (i >= 0 && channel[i].Time > time) --i;
  return i;
}

TEST(MeasureChannel, BeginsWithoutRoom) {
  MeasureChannel channel;
  EXPECT_EQ(channel.UpperBound(), 0);
  channel.Append({5, 5});
  EXPECT_EQ(channel.Count(), 0);
  EXPECT_EQ(channel[0], MeasureSample());
}

TEST(MeasureChannel, FillsFromTheTop) {
  MeasureChannel channel = ChannelOf(3);
  EXPECT_EQ(Elements(channel), "0@0 0@0 0@0 0@0");
  channel.Append({1, 10});
  EXPECT_EQ(Elements(channel), "0@0 0@0 0@0 1@10");
  channel.Append({2, 20});
  EXPECT_EQ(Elements(channel), "0@0 0@0 1@10 2@20");
}

TEST(MeasureChannel, ForgetsAtTheBottom) {
  MeasureChannel channel = ChannelOf(3);
  for (int i = 1; i <= 40; ++i) {
    channel.Append({i, i});
    EXPECT_EQ(channel[3].Value, i);
    EXPECT_EQ(channel[0].Value, std::max(i - 3, 0));
    EXPECT_EQ(channel.Count(), std::min(i, 4));
  }
}

TEST(MeasureChannel, HoldsNinetyThousandAndOneSamples) {
  MeasureChannel channel = ChannelOf(kBound);
  Append(channel, 90'000);
  EXPECT_EQ(channel[1].Value, 1);
  EXPECT_EQ(channel[0], MeasureSample());
  channel.Append({90'001, 90'001});
  EXPECT_EQ(channel[0].Value, 1);
  EXPECT_EQ(channel[kBound].Value, 90'001);
  channel.Append({90'002, 90'002});
  EXPECT_EQ(channel[0].Value, 2) << "The very first sample is gone.";
  EXPECT_EQ(channel.Count(), 90'001);
  EXPECT_EQ(channel[kBound].Value, 90'002);
}

TEST(MeasureChannel, OutsideItsElementsIsNothing) {
  MeasureChannel channel = ChannelOf(3);
  Append(channel, 20);
  EXPECT_EQ(channel[-1], MeasureSample());
  EXPECT_EQ(channel[4], MeasureSample());
}

TEST(MeasureChannel, IsAPlainArrayOldestFirst) {
  MeasureChannel channel = ChannelOf(7);
  for (int i = 1; i <= 100; ++i) {
    channel.Append({i, 10 * i});
    ASSERT_EQ(channel.Times().size(), static_cast<std::size_t>(channel.Count()));
    ASSERT_EQ(channel.Values().size(), static_cast<std::size_t>(channel.Count()));
    EXPECT_EQ(channel.Times().back(), 10 * i);
    EXPECT_EQ(channel.Values().back(), i);
    EXPECT_EQ(channel.Values().front(), std::max(1, i - 7));
  }
}

TEST(MeasureChannel, ANewDimensionForgetsAll) {
  MeasureChannel channel = ChannelOf(3);
  Append(channel, 9);
  channel.Dimension(2);
  EXPECT_EQ(Elements(channel), "0@0 0@0 0@0");
  channel.Append({7, 70});
  channel.Dimension(0);
  EXPECT_EQ(channel.Count(), 0);
  channel.Dimension(-5);
  EXPECT_EQ(channel.UpperBound(), 0);
}

TEST(MeasureChannel, IsFilledNewestFirst) {
  MeasureChannel channel;
  const std::vector<MeasureSample> samples = {{9, 90}, {8, 80}, {7, 70}};
  channel.Fill(4, samples);
  EXPECT_EQ(Elements(channel), "0@0 0@0 7@70 8@80 9@90");
  channel.Fill(1, samples);
  EXPECT_EQ(Elements(channel), "8@80 9@90");
  channel.Fill(0, samples);
  EXPECT_EQ(channel.Count(), 0);
}

TEST(MeasureChannel, FindsTheLastSampleThatIsNotLater) {
  MeasureChannel channel = ChannelOf(5);
  for (const int time : {10, 20, 20, 30}) channel.Append({time, time});
  EXPECT_EQ(channel.LastNotLater(31), 5);
  EXPECT_EQ(channel.LastNotLater(30), 5);
  EXPECT_EQ(channel.LastNotLater(29), 4);
  EXPECT_EQ(channel.LastNotLater(20), 4);
  EXPECT_EQ(channel.LastNotLater(19), 2);
  EXPECT_EQ(channel.LastNotLater(9), 1) << "An empty element is never later.";
  EXPECT_EQ(channel.LastNotLater(-1), -1);
}

TEST(MeasureChannel, FindsNoneAboveWhereItBegins) {
  MeasureChannel channel = ChannelOf(5);
  for (const int time : {10, 20, 30}) channel.Append({time, time});
  EXPECT_EQ(channel.LastNotLater(99, 4), 4);
  EXPECT_EQ(channel.LastNotLater(10, 4), 3);
  EXPECT_EQ(channel.LastNotLater(99, 1), 1) << "Nor among the empty elements.";
  EXPECT_EQ(channel.LastNotLater(99, -1), -1);
}

TEST(MeasureChannel, AFullOneWhoseSamplesAreAllLaterHasNone) {
  MeasureChannel channel = ChannelOf(2);
  Append(channel, 10);
  EXPECT_EQ(channel.LastNotLater(7), -1);
  EXPECT_EQ(channel.LastNotLater(8), 0);
}

TEST(MeasureChannel, AClockThatWasSetBackIsSearchedFromTheTop) {
  MeasureChannel channel = ChannelOf(9);
  for (const int time : {100, 110, 120, 60, 70}) channel.Append({time, time});
  EXPECT_EQ(channel.LastNotLater(115), 9) << "The newest sample is not later.";
  EXPECT_EQ(channel.LastNotLater(65), 8);
  EXPECT_EQ(channel.LastNotLater(59), 4) << "All samples are later.";
}

// Whatever the clock does, the search gives what the walk gives.
TEST(MeasureChannel, FindsWhatAWalkFinds) {
  std::mt19937 random(5);
  for (int round = 0; round < 300; ++round) {
    MeasureChannel channel = ChannelOf(static_cast<int>(random() % 12));
    std::int64_t time = 50;
    const auto count = random() % 60;
    for (unsigned i = 0; i < count; ++i) {
      time +=
          random() % 10 == 0 ? -static_cast<int>(random() % 40) : static_cast<int>(random() % 4);
      time = std::max<std::int64_t>(time, 1);
      channel.Append({static_cast<int>(i), time});
      const auto sought = static_cast<std::int64_t>(random() % 100);
      EXPECT_EQ(channel.LastNotLater(sought), WalkDown(channel, sought))
          << Elements(channel) << " sought " << sought;
    }
  }
}

// --- What has come since
// ---------------------------------------------------------------------------

TEST(MeasureChannel, SamplesKeepTheirNumbersWhileTheyMoveDown) {
  MeasureChannel channel = ChannelOf(5);
  for (int i = 0; i < 50; ++i) {
    channel.Append({100 + i, 1000 + i});
    EXPECT_EQ(channel.NumberAt(5), i);
    for (std::int64_t number = std::max(i - 5, 0); number <= i; ++number) {
      const int index = channel.IndexOf(number);
      EXPECT_EQ(channel[index].Value, 100 + number);
      EXPECT_EQ(channel.NumberAt(index), number);
    }
    EXPECT_EQ(channel.NumberAt(channel.FirstIndex()), std::max(i - 5, 0));
  }
}

TEST(MeasureChannel, EachFillingIsOneOfItsOwn) {
  MeasureChannel one = ChannelOf(5);
  MeasureChannel other = ChannelOf(5);
  EXPECT_NE(one.Filling(), other.Filling());
  const std::int64_t before = one.Filling();
  one.Append({1, 1});
  EXPECT_EQ(one.Filling(), before);
  one.Dimension(5);
  EXPECT_NE(one.Filling(), before);
  EXPECT_EQ(one.NumberAt(5), -1);
  const std::int64_t empty = one.Filling();
  one.Fill(5, std::vector<MeasureSample>{{1, 1}});
  EXPECT_NE(one.Filling(), empty);
}

TEST(MeasureChannel, KnowsWhereTheTimesLastFell) {
  MeasureChannel channel = ChannelOf(5);
  for (const int time : {10, 20, 15, 16, 17}) channel.Append({0, time});
  EXPECT_FALSE(channel.FallsBehind(5));
  EXPECT_FALSE(channel.FallsBehind(3)) << "the element that fell itself";
  EXPECT_TRUE(channel.FallsBehind(2));
  EXPECT_TRUE(channel.FallsBehind(1));
  for (int i = 0; i < 5; ++i) channel.Append({0, 18 + i});
  EXPECT_FALSE(channel.FallsBehind(0)) << "It has left the channel.";
}

// Kilobytes of address space, whether anything lies there or not.
long AddressSpace() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmSize:")) return std::stol(line.substr(7));
  }
  return 0;
}

// A file of a few kilobytes can ask for a thousand of them.
TEST(MeasureChannel, TakesNoRoomForSamplesThatItDoesNotHave) {
  const long before = AddressSpace();
  ASSERT_GT(before, 0);
  std::vector<MeasureChannel> channels(1'016);
  for (MeasureChannel& channel : channels) {
    channel.Dimension(kBound);
    channel.Append({1, 1});
  }
  EXPECT_LT(AddressSpace() - before, 64 * 1'024);
}

TEST(MeasureChannel, KeepsItsSamplesWhereverItsRoomGrows) {
  for (const int bound : {1, 2, 700, 1'500, 5'000}) {
    MeasureChannel channel = ChannelOf(bound);
    for (int i = 1; i <= 3 * bound + 10; ++i) {
      channel.Append({i, 2 * i});
      ASSERT_EQ(channel.Count(), std::min(i, bound + 1));
      ASSERT_EQ(channel[bound], (MeasureSample{i, 2 * i}));
      const int oldest = i - channel.Count() + 1;
      ASSERT_EQ(channel[channel.FirstIndex()], (MeasureSample{oldest, 2 * oldest}));
    }
    for (int i = 0; i <= bound; ++i) ASSERT_EQ(channel[i].Value, 2 * bound + 10 + i);
  }
}

}  // namespace
}  // namespace tarnlink
