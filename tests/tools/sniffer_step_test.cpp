// How frames are cut out of what comes in, and how the cutting finds back into step.

#include <gtest/gtest.h>

#include <string>

#include "protocols/zolt_message.h"
#include "tools/sniffer_frames.h"

namespace tarnlink {
namespace {

std::string Sound(int id) { return BuildZoltMessage(0x04, "0", id, 0, 0); }
std::string Damaged(int id) {
  std::string frame = Sound(id);
  frame[5] ^= 1;
  return frame;
}

// What is found in `bytes`: the IDs, and "lost" where the line is lost.
std::string Found(SnifferFrames& frames, const std::string& bytes) {
  std::string text;
  frames.Add(bytes);
  while (true) {
    const SnifferFrames::Found found = frames.Next();
    if (found == SnifferFrames::Found::kNothing) return text;
    const bool is_frame = found == SnifferFrames::Found::kFrame;
    text += (text.empty() ? "" : " ") + (is_frame ? frames.frame().substr(3, 4) : "lost");
  }
}

TEST(SnifferFramesTest, AreCutOutOfPartsAndOfSeveralAtOnce) {
  SnifferFrames frames;
  EXPECT_EQ(frames.Missing(), 16);
  EXPECT_EQ(Found(frames, Sound(1) + Sound(2) + Sound(3).substr(0, 5)), "0001 0002");
  EXPECT_EQ(frames.Missing(), 11);
  EXPECT_EQ(Found(frames, Sound(3).substr(5)), "0003");
  EXPECT_EQ(frames.Missing(), 16);
  EXPECT_EQ(frames.count(), 3);
  EXPECT_EQ(frames.bad(), 0);
}

TEST(SnifferFramesTest, AreLostBehindABadOneTogetherWithAllThatWaits) {
  SnifferFrames frames;
  EXPECT_EQ(Found(frames, Damaged(1) + Sound(2)), "lost");
  EXPECT_EQ(frames.Missing(), 16);
  EXPECT_EQ(frames.count(), 1);
  EXPECT_EQ(frames.bad(), 1);
}

TEST(SnifferFramesTest, BeginAtTheNextStartOnceTheyAreLost) {
  SnifferFrames frames;
  EXPECT_EQ(Found(frames, Damaged(1)), "lost");
  frames.DropRest();
  EXPECT_EQ(Found(frames, Sound(2).substr(9)), "");
  EXPECT_EQ(frames.Missing(), 16);
  EXPECT_EQ(Found(frames, Sound(3)), "0003");
  EXPECT_EQ(frames.bad(), 1);
}

TEST(SnifferFramesTest, AreFoundBehindAStartThatBeginsNone) {
  SnifferFrames frames;
  EXPECT_EQ(Found(frames, Damaged(1)), "lost");
  EXPECT_EQ(Found(frames, "\r12" + Sound(2)), "0002");
  EXPECT_EQ(frames.count(), 3);
  EXPECT_EQ(frames.bad(), 2);
}

TEST(SnifferFramesTest, DropNoiseBehindASoundOne) {
  SnifferFrames frames;
  EXPECT_EQ(Found(frames, Sound(1) + "xyz" + Sound(2)), "0001 0002");
  EXPECT_EQ(frames.bad(), 0);
}

TEST(SnifferFramesTest, ForgetTheBeginningOfOneWithAPortThatIsOpenedAnew) {
  SnifferFrames frames;
  EXPECT_EQ(Found(frames, Sound(1) + Sound(2).substr(0, 7)), "0001");
  frames.DropRest();
  EXPECT_EQ(frames.Missing(), 16);
  EXPECT_EQ(Found(frames, Sound(3)), "0003");
  EXPECT_EQ(frames.bad(), 0);
}

}  // namespace
}  // namespace tarnlink
