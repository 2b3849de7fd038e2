// New objects on the screen: where they come to stand, what they say, and a table that is full.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/edit_fixture.h"
#include "monitor/screen_grid.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

class AddingALocation : public EditTest {
 protected:
  // Where the value box and the name box of an added Location stand.
  std::string Added() {
    AddLocation();
    const int n = main().MaxId;
    return "value " + PlaceOf(main().RAM_LOC_VAL(n)) + " name " + PlaceOf(main().RAM_LOC_TEXT(n));
  }
};

TEST_F(AddingALocation, TheFirstStandsUnderTheTemplate) {
  const TextBox& value = main().RAM_LOC_VAL(0);
  const TextBox& name = main().RAM_LOC_TEXT(0);
  const CheckBox& check = main().RAM_LOC_CHECK(0);
  AddLocation();
  const float top = value.Top + value.Height + 10;
  EXPECT_EQ(main().RAM_LOC_VAL(1).Top.get(), top);
  EXPECT_EQ(main().RAM_LOC_VAL(1).Left.get(), value.Left.get());
  EXPECT_EQ(main().RAM_LOC_TEXT(1).Top.get(), top);
  EXPECT_EQ(main().RAM_LOC_TEXT(1).Left.get(), name.Left.get());
  EXPECT_EQ(main().RAM_LOC_CHECK(1).Top.get(), top + 50);
  EXPECT_EQ(main().RAM_LOC_CHECK(1).Left.get(), check.Left.get());
}

TEST_F(AddingALocation, HasTheLooksAndTheRecordOfANewOne) {
  AddLocation();
  const TextBox& name = main().RAM_LOC_TEXT(1);
  const TextBox& value = main().RAM_LOC_VAL(1);
  EXPECT_EQ(name.Text.get(), "Name 0");
  EXPECT_EQ(value.Text.get(), "Value 0");
  for (const TextBox* box : {&name, &value}) {
    EXPECT_TRUE(box->Visible);
    EXPECT_EQ(box->BackColor.get(), 0xFFFFFF);
    EXPECT_FALSE(box->TextFont->italic);
  }
  EXPECT_TRUE(main().RAM_LOC_CHECK(1).Value);
  EXPECT_EQ(main().Locations[1], main().Locations[400]);
  EXPECT_EQ(main().Locations[1].Alias, "No name");
}

TEST_F(AddingALocation, IsCountedAndChangesTheScreen) {
  EXPECT_FALSE(Changed());
  AddLocation();
  EXPECT_TRUE(Changed());
  EXPECT_EQ(Title(), "TarnLink - New Screen *");
  EXPECT_EQ(Counts(), "MaxId 1, LocationCount 1, TextInfoCount 0");
  EXPECT_EQ(Panel(2), "Locations : 1");
  AddLocation();
  AddLocation();
  EXPECT_EQ(Counts(), "MaxId 3, LocationCount 3, TextInfoCount 0");
  EXPECT_EQ(Panel(2), "Locations : 3");
  EXPECT_EQ(main().RAM_LOC_TEXT(3).Text.get(), "Name 2");
  EXPECT_EQ(main().RAM_LOC_VAL(3).Text.get(), "Value 2");
}

TEST_F(AddingALocation, StandsTenUnitsUnderTheLastAtTheSameDistances) {
  OpenScreen({LocationLine("a", {5000, 5000}, {8000, 5000}),
              LocationLine("b", {240, 600}, {2400.5, 640})});
  EXPECT_EQ(Added(), "value 2400.5,965 name 240,965");
  EXPECT_EQ(main().RAM_LOC_CHECK(2).Left.get(), -65);
  EXPECT_EQ(PlaceOf(main().RAM_LOC_CHECK(3)), "-65,1015");
  EXPECT_EQ(Added(), "value 2400.5,1290 name 240,1290");
}

TEST_F(AddingALocation, TheCheckBoxKeepsTheDistanceThatTheLastOneHas) {
  OpenScreen({LocationLine("a", {1000, 600}, {3100, 600})});
  main().RAM_LOC_CHECK(1).Left = 12;
  DragValue(1, {4000, 2000});
  EXPECT_EQ(Added(), "value 4000,2325 name 1000,2325");
  EXPECT_EQ(PlaceOf(main().RAM_LOC_CHECK(2)), "12,2375");
}

TEST_F(AddingALocation, AnEnlargedBoxPushesTheNextOneDown) {
  OpenScreen({LocationLine("a", {240, 600}, {2400, 600})});
  main().RAM_LOC_VAL.MouseDown(1, ShiftLeftPress());
  EXPECT_EQ(Added(), "value 2400,1240 name 240,1240");
  EXPECT_EQ(main().RAM_LOC_VAL(2).Height.get(), main().RAM_LOC_VAL(0).Height.get());
}

TEST_F(AddingALocation, ADeletedOneIsTheAnchorAndItsNumberIsNotUsedAgain) {
  OpenScreen(
      {LocationLine("a", {240, 600}, {2400, 600}), LocationLine("b", {0, 900}, {2100, 900})});
  DeleteLocation(2);
  EXPECT_EQ(Panel(2), "Locations : 1");
  EXPECT_EQ(Added(), "value 2100,1225 name 0,1225");
  EXPECT_EQ(main().RAM_LOC_TEXT(3).Text.get(), "Name 2");
  EXPECT_EQ(Counts(), "MaxId 3, LocationCount 2, TextInfoCount 0");
  EXPECT_EQ(Panel(2), "Locations : 2");
  EXPECT_FALSE(main().RAM_LOC_TEXT(2).Visible);
}

TEST_F(AddingALocation, TheCheckBoxShowsWithTheScanningBoxOnly) {
  for (const bool on : {true, false}) {
    SetScanningBox(on);
    AddLocation();
    EXPECT_EQ(main().RAM_LOC_CHECK(main().MaxId).Visible, on);
  }
}

TEST_F(AddingALocation, TheCheckBoxIsTheInverseOfTheLowScanFlag) {
  const std::vector<int> flags = {0, 1, 2, 3};
  for (int n = 1; n <= 4; ++n) {
    main().Locations[n].ScanFlags =
        static_cast<std::uint8_t>(flags[static_cast<std::size_t>(n - 1)]);
    AddLocation();
    EXPECT_EQ(main().RAM_LOC_CHECK(n).Value, n == 1 || n == 3) << n;
    EXPECT_EQ(main().Locations[n].ScanFlags, n - 1);
  }
}

TEST_F(AddingALocation, IsBroughtIntoSight) {
  std::string focus;
  main().form.SetFocus = [&](const PlacedControl& control) { focus += control.name() + "\n"; };
  AddLocation();
  AddText();
  EXPECT_EQ(focus, "RAM_LOC_TEXT(1)\nlbl_TextInfo(1)\n");
}

TEST_F(AddingALocation, LeavesARunGoing) {
  AddLocation();
  options().opt_Protocol.Choose(0);
  main().Toolbar1(2).Press();
  world.Advance(20ms);
  AddLocation();
  world.Advance(100ms);
  EXPECT_TRUE(main().CommRunning);
  EXPECT_TRUE(main().Comm->PortOpen());
  EXPECT_EQ(main().MaxId, 2);
}

// --- The grid ---

TEST_F(AddingALocation, WithoutTheGridKeepsOddPlaces) {
  SetGrid(false);
  OpenScreen({LocationLine("a", {241.5, 601}, {2401.25, 641})});
  EXPECT_EQ(Added(), "value 2401.25,966 name 241.5,966");
}

TEST_F(AddingALocation, OnTheGridPutsBothBoxesOnIt) {
  SetGrid(true);
  // The value box: 965 / 188 is 5.13, 2400 / 188 is 12.77. The name box: 940 is on the grid, and
  // 2444 - 2400 + 240 = 284 is 1.51 grid sizes.
  OpenScreen({LocationLine("a", {240, 600}, {2400, 640})});
  EXPECT_EQ(Added(), "value 2444,940 name 376,940");
  // The check box keeps its distance and does not care for the grid: 376 - 240 - 65.
  EXPECT_EQ(PlaceOf(main().RAM_LOC_CHECK(2)), "71,990");
  EXPECT_EQ(PlaceOf(main().RAM_LOC_VAL(1)), "2400,640");
}

TEST_F(AddingALocation, HalfwayBetweenTwoLinesOfTheGridTheEvenOneWins) {
  SetGrid(true);
  // The value box would come to 325 under `top`; 94 is half a grid size.
  struct Row {
    float top;
    const char* placed;
  };
  for (const Row& row :
       {Row{-325 + 94, "value 0,0 name 0,0"}, Row{-325 + 282, "value 0,376 name 0,376"},
        Row{-325 + 470, "value 0,376 name 0,376"}, Row{-325 + 658, "value 0,752 name 0,752"},
        Row{-325 - 94, "value 0,0 name 0,0"}, Row{-325 - 282, "value 0,-376 name 0,-376"},
        Row{-325 - 470, "value 0,-376 name 0,-376"}}) {
    OpenScreen({LocationLine("a", {0, 9000}, {0, row.top})});
    EXPECT_EQ(Added(), row.placed) << row.top;
    main().WCRChanged = false;
  }
}

// --- Boxes that stand there already ---

TEST_F(AddingALocation, OnAnotherValueBoxMovesOnByTheGridOnce) {
  for (const bool grid : {false, true}) {
    SetGrid(grid);
    // The last one stands 325 above the first, so that the new one would cover it.
    OpenScreen(
        {LocationLine("a", {9024, 376}, {1880, 752}), LocationLine("b", {188, 427}, {1880, 427})});
    EXPECT_EQ(Added(), "value 2068,940 name 376,940") << grid;
    main().WCRChanged = false;
  }
}

TEST_F(AddingALocation, AShiftOntoALaterBoxMovesOnAgain) {
  OpenScreen({LocationLine("a", {9000, 0}, {1000, 925}),
              LocationLine("b", {9000, 400}, {1188, 1113}),
              LocationLine("c", {100, 600}, {1000, 600})});
  EXPECT_EQ(Added(), "value 1376,1301 name 476,1301");
}

TEST_F(AddingALocation, AShiftOntoAnEarlierBoxStaysThere) {
  OpenScreen({LocationLine("a", {9000, 0}, {1188, 1113}),
              LocationLine("b", {9000, 400}, {1000, 925}),
              LocationLine("c", {100, 600}, {1000, 600})});
  EXPECT_EQ(Added(), "value 1188,1113 name 288,1113");
}

TEST_F(AddingALocation, OnAnotherNameBoxMovesTheNameOnly) {
  OpenScreen(
      {LocationLine("a", {100, 925}, {9000, 0}), LocationLine("b", {100, 600}, {1000, 600})});
  EXPECT_EQ(Added(), "value 1000,925 name 288,1113");
  EXPECT_EQ(PlaceOf(main().RAM_LOC_CHECK(3)), "-17,1163");
}

TEST_F(AddingALocation, OnADeletedBoxMovesOnToo) {
  OpenScreen(
      {LocationLine("a", {9000, 0}, {1000, 925}), LocationLine("b", {100, 600}, {1000, 600})});
  DeleteLocation(1);
  EXPECT_EQ(Added(), "value 1188,1113 name 288,1113");
}

TEST_F(AddingALocation, BesideABoxStaysWhereItIs) {
  for (const FormPlace& other :
       {FormPlace{1000, 926}, FormPlace{1001, 925}, FormPlace{925, 1000}}) {
    OpenScreen({LocationLine("a", {9000, 0}, other), LocationLine("b", {100, 600}, {1000, 600})});
    EXPECT_EQ(Added(), "value 1000,925 name 100,925");
    main().WCRChanged = false;
  }
}

TEST_F(AddingALocation, ACheckBoxCanBeKeptOffAnotherOne) {
  OpenScreen(
      {LocationLine("a", {1000, 600}, {3100, 600}), LocationLine("b", {1000, 900}, {3100, 900})});
  const CheckBox& first = main().RAM_LOC_CHECK(1);
  const ScreenGrid grid(main(), options());
  float top = first.Top;
  float left = first.Left;
  grid.AvoidCheckOverlap(top, left);
  EXPECT_EQ(top, first.Top + 188);
  EXPECT_EQ(left, first.Left + 188);
  // The newest one is not looked at.
  top = main().RAM_LOC_CHECK(2).Top;
  left = main().RAM_LOC_CHECK(2).Left;
  grid.AvoidCheckOverlap(top, left);
  EXPECT_EQ(top, main().RAM_LOC_CHECK(2).Top.get());
}

// --- A full table ---

class AFullScreen : public EditTest {
 protected:
  AFullScreen() {
    std::vector<std::string> lines;
    for (int i = 1; i <= 512; ++i) {
      lines.push_back(LocationLine("L" + std::to_string(i), {0, 0}, {0, 0}));
    }
    OpenScreen(lines);
  }

  void ExpectFull() {
    world.dialogs().ExpectMessageBox(
        {.text = "Internal System Error # 9 occured, please contact distributor. Communication is "
                 "stopped",
         .title = "Internal System Error",
         .icon = Icon::kCritical,
         .detail = "The screen is full: it holds at most 512 Locations."});
  }
};

TEST_F(AFullScreen, TakesNoMoreLocationsAndStopsTheRun) {
  main().Toolbar1(2).Press();
  world.Advance(20ms);
  ASSERT_TRUE(main().CommRunning);
  ExpectFull();
  AddLocation();
  EXPECT_FALSE(main().CommRunning);
  EXPECT_FALSE(main().Comm->PortOpen());
  EXPECT_EQ(Panel(4), "Communication Stopped");
  EXPECT_TRUE(Changed());
  EXPECT_EQ(world.shell().beeps, 0);
}

TEST_F(AFullScreen, StaysWholeAndCanBeSaved) {
  const std::string before = Everything();
  ExpectFull();
  AddLocation();
  EXPECT_EQ(Everything(), before);
  EXPECT_EQ(Counts(), "MaxId 512, LocationCount 512, TextInfoCount 0");
  EXPECT_EQ(Panel(2), "Locations : 512");
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
  const std::string file = world.disk().Get(kScreen);
  world.disk().Put(kScreen, "");
  Save();
  EXPECT_EQ(world.disk().Get(kScreen), file);
  ExpectFull();
  AddLocation();
}

TEST_F(AFullScreen, StillTakesTextsAndMoves) {
  ExpectFull();
  AddLocation();
  AddText();
  DragName(512, {1000, 2000});
  EXPECT_EQ(main().TextInfoCount, 1);
  EXPECT_EQ(PlaceOf(main().RAM_LOC_TEXT(512)), "1000,2000");
}

TEST_F(AFullScreen, TheLastOneCanBeAddedAndUndone) {
  std::vector<std::string> lines(511, LocationLine("a", {0, 0}, {0, 0}));
  OpenScreen(lines);
  AddLocation();
  EXPECT_EQ(main().RAM_LOC_TEXT(512).Text.get(), "Name 511");
  Undo();
  Redo();
  EXPECT_EQ(Counts(), "MaxId 512, LocationCount 512, TextInfoCount 0");
}

TEST_F(AddingALocation, BeyondTheTableBeepsAndDoesNothing) {
  for (const int max_id : {513, 600}) {
    main().MaxId = max_id;
    AddLocation();
    EXPECT_EQ(main().MaxId, max_id);
    EXPECT_FALSE(main().RAM_LOC_TEXT.Has(max_id + 1));
    EXPECT_FALSE(Changed());
    EXPECT_EQ(main().LocationCount, 0);
  }
  EXPECT_EQ(world.shell().beeps, 2);
  main().MaxId = 0;
}

// --- Texts ---

using AddingAText = EditTest;

TEST_F(AddingAText, TheFirstStandsUnderTheTemplate) {
  AddText();
  const Label& label = main().lbl_TextInfo(1);
  EXPECT_EQ(label.Left.get(), main().lbl_TextInfo(0).Left.get());
  EXPECT_EQ(label.Top.get(), main().lbl_TextInfo(0).Top + 300);
  EXPECT_TRUE(label.Visible);
  EXPECT_EQ(label.Caption.get(), "Textual Information");
  EXPECT_EQ(label.ToolTipText.get(),
            "Double Click for Edit, Right Mouse button for Font Change, Shift-Right Mouse button "
            "for color change");
}

TEST_F(AddingAText, IsCountedAndChangesTheScreen) {
  AddText();
  EXPECT_TRUE(Changed());
  EXPECT_EQ(Counts(), "MaxId 0, LocationCount 0, TextInfoCount 1");
  EXPECT_EQ(Panel(2), "Locations : 0");
}

TEST_F(AddingAText, StandsUnderTheLastOneInTheColourOfTheForm) {
  for (const bool grid : {false, true}) {
    SetGrid(grid);
    OpenScreen({LabelLine("Boiler", {135.5, 120}), LabelLine("Tank", {99, 1000})});
    AddText();
    EXPECT_EQ(PlaceOf(main().lbl_TextInfo(3)), "99,1300");
    EXPECT_EQ(main().lbl_TextInfo(3).BackColor.get(), 255);
    main().WCRChanged = false;
  }
}

TEST_F(AddingAText, ADeletedOneIsTheAnchor) {
  OpenScreen({LabelLine("Boiler", {135, 120})});
  TypeLabel(1, "");
  AddText();
  EXPECT_EQ(PlaceOf(main().lbl_TextInfo(2)), "135,420");
  EXPECT_EQ(main().TextInfoCount, 2);
}

}  // namespace
}  // namespace tarnlink
