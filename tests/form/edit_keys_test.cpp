// The screen under the keyboard: arrow keys that move, and the key that deletes.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/edit_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

ArrowStep Other(ArrowStep step) {
  step.other = true;
  return step;
}

class ArrowKeys : public EditTest {
 protected:
  ArrowKeys() { OpenAt({1000, 600}, {4000, 640}); }

  void OpenAt(FormPlace name, FormPlace value) {
    OpenScreen({LocationLine("Flow", name, value), LocationLine("Tank", {1000, 5000}, {4000, 5040}),
                LabelLine("Boiler", {500, 9000})});
  }
  std::string Places(int index) {
    return PlaceOf(main().RAM_LOC_TEXT(index)) + " " + PlaceOf(main().RAM_LOC_VAL(index)) + " " +
           PlaceOf(main().RAM_LOC_CHECK(index));
  }
  // Where the label at `place` comes to by this key.
  std::string LabelAfter(FormPlace place, const ArrowStep& step) {
    OpenScreen({LabelLine("Boiler", place)});
    main().lbl_TextInfo.Arrow(1, step);
    main().WCRChanged = false;
    return PlaceOf(main().lbl_TextInfo(1));
  }
};

TEST_F(ArrowKeys, MoveByAPixelWithoutTheGrid) {
  SetGrid(false);
  EXPECT_EQ(LabelAfter({500, 900}, kRight), "515,900");
  EXPECT_EQ(LabelAfter({500, 900}, kLeft), "485,900");
  EXPECT_EQ(LabelAfter({500, 900}, kDown), "500,915");
  EXPECT_EQ(LabelAfter({500, 900}, kUp), "500,885");
}

TEST_F(ArrowKeys, MoveAlongTheGridWhileItIsOn) {
  SetGrid(true);
  EXPECT_EQ(LabelAfter({376, 940}, kRight), "564,940");
  EXPECT_EQ(LabelAfter({376, 940}, kLeft), "188,940");
  EXPECT_EQ(LabelAfter({376, 940}, kDown), "376,1128");
  EXPECT_EQ(LabelAfter({376, 940}, kUp), "376,752");
}

TEST_F(ArrowKeys, BringABoxOntoTheGridInTheirDirectionOnly) {
  SetGrid(true);
  EXPECT_EQ(LabelAfter({500, 900}, kRight), "752,900");
  EXPECT_EQ(LabelAfter({500, 900}, kLeft), "376,900");
  EXPECT_EQ(LabelAfter({500, 900}, kDown), "500,1128");
  EXPECT_EQ(LabelAfter({500, 900}, kUp), "500,752");
}

TEST_F(ArrowKeys, TakeTheOtherStepWithShift) {
  SetGrid(false);
  EXPECT_EQ(LabelAfter({376, 940}, Other(kRight)), "564,940");
  EXPECT_EQ(LabelAfter({500, 900}, Other(kUp)), "500,712");
  SetGrid(true);
  EXPECT_EQ(LabelAfter({376, 940}, Other(kRight)), "391,940");
  EXPECT_EQ(LabelAfter({500, 900}, Other(kUp)), "500,885");
}

TEST_F(ArrowKeys, StopAtTheUpperAndLeftEdge) {
  for (const bool grid : {false, true}) {
    SetGrid(grid);
    EXPECT_EQ(LabelAfter({10, 900}, kLeft), "0,900");
    EXPECT_EQ(LabelAfter({500, 10}, kUp), "500,0");
    EXPECT_EQ(LabelAfter({0, 900}, kLeft), "0,900");
    EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
    EXPECT_EQ(LabelAfter({500, 0}, kUp), "500,0");
    EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
  }
}

TEST_F(ArrowKeys, AtTheEdgeChangeNothing) {
  OpenScreen({LabelLine("Boiler", {0, 0})});
  main().lbl_TextInfo.Arrow(1, kLeft);
  main().lbl_TextInfo.Arrow(1, kUp);
  EXPECT_FALSE(Changed());
}

TEST_F(ArrowKeys, LeaveABoxBeyondTheEdgeThereOrBringItBack) {
  for (const bool grid : {false, true}) {
    SetGrid(grid);
    EXPECT_EQ(LabelAfter({-40, 900}, kLeft), "-40,900");
    EXPECT_EQ(LabelAfter({500, -40}, kUp), "500,-40");
  }
  SetGrid(false);
  EXPECT_EQ(LabelAfter({-40, 900}, kRight), "-25,900");
  EXPECT_EQ(LabelAfter({500, -40}, kDown), "500,-25");
  SetGrid(true);
  EXPECT_EQ(LabelAfter({-40, 900}, kRight), "188,900");
}

TEST_F(ArrowKeys, ANameTakesItsValueAndItsCheckBoxAlong) {
  main().RAM_LOC_TEXT.Arrow(1, kRight);
  EXPECT_EQ(Places(1), "1015,600 4015,640 710,650");
  main().RAM_LOC_TEXT.Arrow(1, kDown);
  EXPECT_EQ(Places(1), "1015,615 4015,655 710,665");
  EXPECT_EQ(Places(2), "1000,5000 4000,5040 695,5050");
  EXPECT_TRUE(Changed());
  SetGrid(true);
  main().RAM_LOC_TEXT.Arrow(1, kLeft);
  EXPECT_EQ(Places(1), "752,615 3752,655 447,665");
}

TEST_F(ArrowKeys, AValueBoxAndALabelMoveByThemselves) {
  main().RAM_LOC_VAL.Arrow(1, kRight);
  EXPECT_EQ(Places(1), "1000,600 4015,640 695,650");
  EXPECT_TRUE(Changed());
  main().WCRChanged = false;
  main().lbl_TextInfo.Arrow(1, kDown);
  EXPECT_EQ(PlaceOf(main().lbl_TextInfo(1)), "500,9015");
  EXPECT_TRUE(Changed());
}

TEST_F(ArrowKeys, TakeNothingOverTheEdgeThatANameTakesAlong) {
  OpenAt({1000, 600}, {5, 5});
  main().RAM_LOC_TEXT.Arrow(1, kLeft);
  EXPECT_EQ(Places(1), "995,600 0,5 690,650");
  main().RAM_LOC_TEXT.Arrow(1, kUp);
  EXPECT_EQ(Places(1), "995,595 0,0 690,645");
  main().RAM_LOC_TEXT.Arrow(1, kUp);
  main().RAM_LOC_TEXT.Arrow(1, kLeft);
  EXPECT_EQ(Places(1), "995,595 0,0 690,645");
  main().RAM_LOC_TEXT.Arrow(1, kRight);
  EXPECT_EQ(Places(1), "1010,595 15,0 705,645");
}

TEST_F(ArrowKeys, WhatIsHiddenDoesNotHoldANameBack) {
  OpenAt({100, 600}, {4000, 640});
  main().RAM_LOC_TEXT.Arrow(1, kLeft);
  EXPECT_EQ(Places(1), "85,600 3985,640 -220,650");
}

TEST_F(ArrowKeys, AtTheEdgeAPlaceIsSavedAsZero) {
  SetGrid(true);
  OpenScreen({LabelLine("Boiler", {100, 100})});
  main().lbl_TextInfo.Arrow(1, kLeft);
  main().lbl_TextInfo.Arrow(1, kUp);
  EXPECT_EQ(FileNow(), FileText({"255", LabelLine("Boiler", {0, 0})}));
}

TEST_F(ArrowKeys, LeaveARunGoing) {
  main().Toolbar1(2).Press();
  world.Advance(20ms);
  main().RAM_LOC_TEXT.Arrow(1, kRight);
  main().RAM_LOC_VAL.Arrow(2, kRight);
  EXPECT_TRUE(main().CommRunning);
  EXPECT_TRUE(main().Comm->PortOpen());
}

// --- Deletion ---

class TheDeleteKey : public EditTest {
 protected:
  TheDeleteKey() {
    SetScanningBox(true);
    OpenScreen(Lines());
  }

  static std::vector<std::string> Lines() {
    return {LocationLine("Flow", {1000, 600}, {4000, 640}),
            LocationLine("Tank", {1000, 5000}, {4000, 5040}), LabelLine("Boiler", {500, 9000})};
  }
};

TEST_F(TheDeleteKey, AsksAndHidesTheLocation) {
  for (const bool on_name : {true, false}) {
    OpenScreen(Lines());
    const Location record = main().Locations[1];
    ExpectDeleteQuestion().Press(Answer::kYes);
    if (on_name) {
      main().RAM_LOC_TEXT.DeleteKey(1);
    } else {
      main().RAM_LOC_VAL.DeleteKey(1);
    }
    EXPECT_FALSE(main().RAM_LOC_TEXT(1).Visible);
    EXPECT_FALSE(main().RAM_LOC_VAL(1).Visible);
    EXPECT_FALSE(main().RAM_LOC_CHECK(1).Visible);
    EXPECT_TRUE(main().RAM_LOC_TEXT(2).Visible);
    EXPECT_EQ(Counts(), "MaxId 2, LocationCount 1, TextInfoCount 1");
    EXPECT_EQ(Panel(2), "Locations : 1");
    EXPECT_EQ(main().Locations[1], record);
    EXPECT_TRUE(Changed());
    main().WCRChanged = false;
  }
}

TEST_F(TheDeleteKey, TakesTheLocationOutOfTheFile) {
  DeleteLocation(1);
  Save();
  EXPECT_EQ(world.disk().Get(kScreen), FileText({"255", Lines()[1], Lines()[2]}));
  EXPECT_FALSE(Changed());
}

TEST_F(TheDeleteKey, DoesNothingOnNoOrWhenTheQuestionIsClosed) {
  const std::string before = Everything();
  ExpectDeleteQuestion().Press(Answer::kNo);
  main().RAM_LOC_TEXT.DeleteKey(1);
  ExpectDeleteQuestion();
  main().RAM_LOC_TEXT.DeleteKey(1);
  EXPECT_EQ(Everything(), before);
  EXPECT_FALSE(Changed());
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
  EXPECT_EQ(world.shell().beeps, 0);
}

TEST_F(TheDeleteKey, BeepsDuringARun) {
  main().Toolbar1(2).Press();
  world.Advance(20ms);
  const std::string before = Everything();
  main().RAM_LOC_TEXT.DeleteKey(1);
  main().RAM_LOC_VAL.DeleteKey(2);
  EXPECT_EQ(world.shell().beeps, 2);
  EXPECT_EQ(Everything(), before);
  EXPECT_FALSE(Changed());
  EXPECT_TRUE(main().CommRunning);
  main().Toolbar1(3).Press();
  DeleteLocation(1);
  EXPECT_EQ(main().LocationCount, 1);
}

TEST_F(TheDeleteKey, BeepsWhenThereIsNoLocationLeft) {
  DeleteLocation(1);
  DeleteLocation(2);
  EXPECT_EQ(Panel(2), "Locations : 0");
  EXPECT_EQ(world.shell().beeps, 0);
  const std::string before = Everything();
  main().RAM_LOC_TEXT.DeleteKey(1);
  EXPECT_EQ(world.shell().beeps, 1);
  EXPECT_EQ(Everything(), before);
}

TEST_F(TheDeleteKey, RefreshesTheTitleInAllCases) {
  const auto expect_title = [this](const std::string& title) {
    EXPECT_EQ(Title(), title);
    main().form.Caption = "stale";
  };
  expect_title("TarnLink - boiler.wcr");
  ExpectDeleteQuestion().Press(Answer::kNo);
  main().RAM_LOC_TEXT.DeleteKey(1);
  expect_title("TarnLink - boiler.wcr");
  main().CommRunning = true;
  main().RAM_LOC_TEXT.DeleteKey(1);
  expect_title("TarnLink - boiler.wcr");
  main().CommRunning = false;
  DeleteLocation(1);
  expect_title("TarnLink - boiler.wcr *");
  DeleteLocation(2);
  expect_title("TarnLink - boiler.wcr *");
  main().RAM_LOC_TEXT.DeleteKey(2);
  expect_title("TarnLink - boiler.wcr *");
}

TEST_F(TheDeleteKey, HidesALabelWithoutAQuestion) {
  main().lbl_TextInfo.DeleteKey(1);
  EXPECT_FALSE(main().lbl_TextInfo(1).Visible);
  EXPECT_EQ(Counts(), "MaxId 2, LocationCount 2, TextInfoCount 1");
  EXPECT_EQ(Panel(2), "Locations : 2");
  EXPECT_TRUE(Changed());
  Save();
  EXPECT_EQ(world.disk().Get(kScreen), FileText({"255", Lines()[0], Lines()[1]}));
}

TEST_F(TheDeleteKey, HidesALabelDuringARunToo) {
  main().Toolbar1(2).Press();
  world.Advance(20ms);
  main().lbl_TextInfo.DeleteKey(1);
  EXPECT_FALSE(main().lbl_TextInfo(1).Visible);
  EXPECT_TRUE(main().CommRunning);
  EXPECT_EQ(world.shell().beeps, 0);
}

}  // namespace
}  // namespace tarnlink
