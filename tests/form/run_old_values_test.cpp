// Which values of the screen count as old: those whose Locations were not answered in the last
// round.

#include <gtest/gtest.h>

#include "form/boiler_on_line.h"
#include "form/locations.h"
#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

class OldValues : public MonitorTest {
 protected:
  OldValues() { ChooseProtocol(kZoltProtocol); }

  // "1 3": the Locations whose values count as old.
  std::string Old() const {
    std::string text;
    for (int i = 1; i <= monitor.main.MaxId; ++i) {
      if (monitor.main.RAM_LOC_VAL(i).IsOld) text += (text.empty() ? "" : " ") + std::to_string(i);
    }
    return text;
  }
  void ThreeLocations() { Screen({IdAt("003D"), IdAt("14D9"), ByteAt("F180")}); }

  BoilerOnLine boiler{
      world, {.protocol = "zolt", .slave = {.addresses = "0"}, .line = {.answer_delay_us = 5'000}}};
};

TEST_F(OldValues, BeforeTheFirstRoundHasEndedNoneIs) {
  ThreeLocations();
  EXPECT_EQ(Old(), "");
  Start();
  Advance(50);
  EXPECT_EQ(Old(), "");
}

TEST_F(OldValues, NoneIsWhileAllAreAnswered) {
  ThreeLocations();
  Start();
  for (int i = 0; i < 100; ++i) {
    Advance(20);
    ASSERT_EQ(Old(), "") << i;
  }
}

TEST_F(OldValues, OneThatIsNotAnsweredIsFromTheEndOfTheRoundToItsNextAnswer) {
  SetTimeout(1);
  ThreeLocations();
  Start();
  Advance(70);  // a round, and the first of the next
  boiler.line().AddFault("no_reply#1");
  Advance(1'000);
  EXPECT_EQ(Old(), "") << "The round has not ended yet.";
  EXPECT_TRUE(world.RunUntil([this] { return Old() == "1"; }, std::chrono::seconds(4)));
  const std::string text = Value(1);
  EXPECT_EQ(monitor.main.RAM_LOC_VAL(2).BackColor.get(),
            monitor.main.RAM_LOC_VAL(1).BackColor.get());
  EXPECT_TRUE(world.RunUntil([this] { return Old().empty(); }, std::chrono::seconds(1)));
  EXPECT_EQ(Value(1), text);
}

TEST_F(OldValues, ADamagedAnswerIsNone) {
  ThreeLocations();
  Start();
  Advance(90);
  boiler.line().AddFault("check_wrong#4");
  EXPECT_TRUE(world.RunUntil([this] { return Old() == "1 2 3" || Old() == "2 3"; },
                             std::chrono::seconds(5)));
  EXPECT_TRUE(world.RunUntil([this] { return Old().empty(); }, std::chrono::seconds(5)));
}

TEST_F(OldValues, ARefusalThatIsShownIsAnAnswer) {
  Screen({IdAt("003D"), IdAt("FFFF")});
  Start();
  Advance(500);
  EXPECT_EQ(Value(2), "can not read");
  EXPECT_EQ(Old(), "");
}

TEST_F(OldValues, WhatIsNotScannedAnyMoreBecomesOld) {
  ThreeLocations();
  Start();
  Advance(100);
  monitor.main.Locations[2].ScanFlags = kScanningDisabled;
  Advance(200);
  EXPECT_EQ(Old(), "2");
  monitor.main.Locations[2].ScanFlags = 0;
  Advance(200);
  EXPECT_EQ(Old(), "");
}

TEST_F(OldValues, AStopLeavesThemAsTheyAre) {
  ThreeLocations();
  Start();
  Advance(100);
  monitor.main.Locations[2].ScanFlags = kScanningDisabled;
  Advance(200);
  Stop();
  Advance(5'000);
  EXPECT_EQ(Old(), "2");
  Start();
  Advance(50);
  EXPECT_EQ(Old(), "2") << "Nothing has come since.";
}

TEST_F(OldValues, ValuesThatAreClearedAreNotAnswered) {
  ThreeLocations();
  Start();
  Advance(100);
  Stop();
  monitor.options.chkClearAllValues.Value = true;
  const auto before = monitor.main.RAM_LOC_VAL(1).AnsweredAt;
  Start();
  EXPECT_EQ(Value(1), "");
  EXPECT_EQ(monitor.main.RAM_LOC_VAL(1).AnsweredAt, before);
}

TEST_F(OldValues, WhatAWritePassesOverIsOldForARound) {
  ThreeLocations();
  Start();
  Advance(100);  // the second has been asked for
  Write(3, "5A");
  EXPECT_TRUE(world.RunUntil([this] { return Old() == "2"; }, std::chrono::seconds(1)));
  EXPECT_EQ(Value(3), "5A");
  EXPECT_TRUE(world.RunUntil([this] { return Old().empty(); }, std::chrono::milliseconds(60)));
}

TEST_F(OldValues, ANewScreenHasNone) {
  ThreeLocations();
  Start();
  Advance(100);
  monitor.main.Locations[2].ScanFlags = kScanningDisabled;
  Advance(200);
  Stop();
  monitor.screen.UnloadObjects();
  ThreeLocations();
  EXPECT_EQ(Old(), "");
  EXPECT_FALSE(monitor.main.RAM_LOC_VAL(2).AnsweredAt);
}

}  // namespace
}  // namespace tarnlink
