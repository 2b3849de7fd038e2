// Boxes and labels dragged with the mouse: what is hidden meanwhile, where they land, what goes
// with them, and how a drag ends without a drop.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "form/edit_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

// Two Locations, the second far below, and a label. Name boxes are 2100 wide, check boxes 255.
class Dragging : public EditTest {
 protected:
  Dragging() { OpenTwo("Flow", "Tank"); }

  void OpenTwo(const std::string& first, const std::string& second) {
    OpenScreen({LocationLine(first, {1000, 600}, {4000, 640}),
                LocationLine(second, {1000, 5000}, {4000, 5040}),
                LabelLine("Boiler", {500, 9000})});
  }

  // What the form shows of a Location, such as "name value check".
  std::string Shown(int index) {
    std::string text;
    if (main().RAM_LOC_TEXT(index).Visible) text += "name ";
    if (main().RAM_LOC_VAL(index).Visible) text += "value ";
    if (main().RAM_LOC_CHECK(index).Visible) text += "check ";
    return text;
  }
  // Name, value and check box: "1000,600 4000,640 695,650".
  std::string Places(int index) {
    return PlaceOf(main().RAM_LOC_TEXT(index)) + " " + PlaceOf(main().RAM_LOC_VAL(index)) + " " +
           PlaceOf(main().RAM_LOC_CHECK(index));
  }
};

struct Shift {
  float right, down;
  bool moves;
};

// Fifty units are a click, a little more is a move.
const std::vector<Shift> kShifts = {{0, 0, false},        {50, 0, false},     {-50, 0, false},
                                    {0, 50, false},       {0, -50, false},    {50, -50, false},
                                    {-50, 50, false},     {50.25F, 0, true},  {-50.25F, 0, true},
                                    {0, 50.25F, true},    {0, -50.25F, true}, {50.25F, 50, true},
                                    {-50, -50.25F, true}, {3000, 1, true},    {-1, -500, true}};

// --- A name box ---

TEST_F(Dragging, ANameHidesItWithItsValueAndItsCheckBox) {
  SetScanningBox(true);
  OpenTwo("Flow", "Tank");
  EXPECT_EQ(Shown(1), "name value check ");
  GrabName(1, LeftPress(120, 45));
  EXPECT_EQ(Shown(1), "");
  EXPECT_EQ(Shown(2), "name value check ");
  EXPECT_EQ(main().DragIndex, 1);
  EXPECT_EQ(main().DragX, 120);
  EXPECT_EQ(main().DragY, 45);
  EXPECT_FALSE(Changed());
}

TEST_F(Dragging, ANameLandsThirtyUnitsUpAndLeftOfWhereItIsHeld) {
  GrabName(1, LeftPress(120, 45));
  Drop(2150, 3075);
  EXPECT_EQ(PlaceOf(main().RAM_LOC_TEXT(1)), "2000,3000");
  EXPECT_EQ(Shown(1), "name value ");
  EXPECT_TRUE(Changed());
  EXPECT_EQ(main().DragIndex, 0);
  EXPECT_EQ(main().DragSource, nullptr);
}

TEST_F(Dragging, ANameTakesItsValueToItsRightSideAndItsCheckBoxToItsLeft) {
  const std::string other = Places(2);
  DragName(1, {2000, 3000});
  EXPECT_EQ(Places(1), "2000,3000 4100,3000 1695,3050");
  EXPECT_EQ(Places(2), other);
}

TEST_F(Dragging, ANameMovesOnlyByMoreThanFiftyUnits) {
  for (const Shift& shift : kShifts) {
    OpenTwo("Flow", "Tank");
    DragName(1, {1000 + shift.right, 600 + shift.down});
    if (shift.moves) {
      EXPECT_EQ(main().RAM_LOC_TEXT(1).Left.get(), 1000 + shift.right);
      EXPECT_EQ(main().RAM_LOC_TEXT(1).Top.get(), 600 + shift.down);
    } else {
      EXPECT_EQ(PlaceOf(main().RAM_LOC_TEXT(1)), "1000,600");
    }
    EXPECT_EQ(Changed(), shift.moves) << shift.right << " " << shift.down;
    main().WCRChanged = false;
  }
}

TEST_F(Dragging, AClickOnANameBringsTheValueToItsSideWithoutAChange) {
  GrabName(1, LeftPress(120, 45));
  Drop(1000 + 150, 600 + 75);
  EXPECT_EQ(Places(1), "1000,600 3100,600 695,650");
  EXPECT_EQ(Shown(1), "name value ");
  EXPECT_FALSE(Changed());
}

TEST_F(Dragging, AMoveBackDoesNotTakeBackTheChange) {
  DragName(1, {2000, 3000});
  GrabName(1);
  Drop(2030, 3030);
  EXPECT_TRUE(Changed());
}

TEST_F(Dragging, ANamesCheckBoxComesWithTheScanningBoxOnly) {
  for (const bool on : {true, false}) {
    SetScanningBox(on);
    OpenTwo("Flow", "Tank");
    DragName(1, {2000, 3000});
    EXPECT_EQ(Shown(1), on ? "name value check " : "name value ");
    main().WCRChanged = false;
  }
}

TEST_F(Dragging, TheValueGoesByTheWidthOfItsOwnName) {
  main().RAM_LOC_TEXT(2).Width = 1234;
  main().RAM_LOC_CHECK(2).Width = 100;
  DragName(2, {2000, 3000});
  EXPECT_EQ(Places(2), "2000,3000 3234,3000 1850,3050");
}

TEST_F(Dragging, WithShiftANameIsDraggedToo) {
  GrabName(1, ShiftLeftPress());
  EXPECT_EQ(main().DragIndex, 1);
}

TEST_F(Dragging, TheRightButtonDragsNoBox) {
  for (const MousePress& press : {RightPress(), ShiftRightPress()}) {
    GrabName(1, press);
    GrabValue(1, press);
    EXPECT_EQ(main().DragSource, nullptr);
    EXPECT_EQ(Shown(1), "name value ");
    EXPECT_FALSE(Changed());
  }
}

TEST_F(Dragging, OfTwoNamesWithTheSameTextOnlyTheDraggedOneTakesItsValueAlong) {
  OpenTwo("Flow", "Flow");
  const std::string first = Places(1);
  DragName(2, {2000, 3000});
  EXPECT_EQ(Places(2), "2000,3000 4100,3000 1695,3050");
  EXPECT_EQ(Places(1), first);
}

// --- A value box ---

TEST_F(Dragging, AValueHidesAndMovesByItself) {
  SetScanningBox(true);
  OpenTwo("Flow", "Tank");
  GrabValue(1, LeftPress(120, 45));
  EXPECT_EQ(Shown(1), "name check ");
  EXPECT_EQ(main().DragIndex, 0);
  EXPECT_EQ(main().DragX, 120);
  EXPECT_EQ(main().DragY, 45);
  EXPECT_FALSE(Changed());
  Drop(2150, 3075);
  EXPECT_EQ(Places(1), "1000,600 2000,3000 695,650");
  EXPECT_EQ(Shown(1), "name value check ");
  EXPECT_TRUE(Changed());
}

TEST_F(Dragging, AValueMovesOnlyByMoreThanFiftyUnits) {
  for (const Shift& shift : kShifts) {
    OpenTwo("Flow", "Tank");
    const std::string before = Everything();
    DragValue(1, {4000 + shift.right, 640 + shift.down});
    if (shift.moves) {
      EXPECT_EQ(main().RAM_LOC_VAL(1).Left.get(), 4000 + shift.right);
      EXPECT_EQ(main().RAM_LOC_VAL(1).Top.get(), 640 + shift.down);
    } else {
      EXPECT_EQ(Everything(), before);
    }
    EXPECT_EQ(Changed(), shift.moves) << shift.right << " " << shift.down;
    main().WCRChanged = false;
  }
}

TEST_F(Dragging, AValueThatReadsLikeANameMovesByItself) {
  for (const std::string text : {"Name", "Flow", "Tank"}) {
    OpenTwo("Flow", "Tank");
    main().RAM_LOC_VAL(1).Text = text;
    const std::string templates = Places(0);
    DragValue(1, {2000, 3000});
    EXPECT_EQ(Places(1), "1000,600 2000,3000 695,650") << text;
    EXPECT_EQ(Places(2), "1000,5000 4000,5040 695,5050") << text;
    EXPECT_EQ(Places(0), templates) << text;
    EXPECT_EQ(Shown(0), "") << text;
    main().WCRChanged = false;
  }
}

// --- A label ---

TEST_F(Dragging, ALabelLandsJustWhereItIsHeld) {
  GrabLabel(1, LeftPress(120, 45));
  EXPECT_FALSE(main().lbl_TextInfo(1).Visible);
  EXPECT_EQ(main().DragX, 90);
  EXPECT_EQ(main().DragY, 15);
  EXPECT_EQ(main().DragIndex, 0);
  Drop(2120, 3045);
  EXPECT_EQ(PlaceOf(main().lbl_TextInfo(1)), "2000,3000");
  EXPECT_TRUE(main().lbl_TextInfo(1).Visible);
}

TEST_F(Dragging, ALabelMovesOnlyByMoreThanFiftyUnits) {
  for (const Shift& shift : kShifts) {
    OpenTwo("Flow", "Tank");
    DragLabel(1, {500 + shift.right, 9000 + shift.down});
    EXPECT_EQ(main().lbl_TextInfo(1).Left.get(), shift.moves ? 500 + shift.right : 500);
    EXPECT_EQ(main().lbl_TextInfo(1).Top.get(), shift.moves ? 9000 + shift.down : 9000);
    EXPECT_TRUE(main().lbl_TextInfo(1).Visible);
    // The press has done it.
    EXPECT_TRUE(Changed());
    main().WCRChanged = false;
  }
}

// --- The grid ---

TEST_F(Dragging, OnTheGridEverythingLandsOnTheNearestLine) {
  SetGrid(true);
  struct Row {
    float place, lands;
  };
  for (const Row& row : {Row{2000, 2068}, Row{1973, 1880}, Row{1974, 1880}, Row{1975, 2068},
                         Row{2162, 2256}, Row{2161, 2068}, Row{2350, 2256}, Row{188, 188},
                         Row{93, 0}, Row{94, 0}, Row{95, 188}, Row{282, 376}, Row{-93, 0},
                         Row{-94, 0}, Row{-95, -188}, Row{-282, -376}, Row{-470, -376}}) {
    OpenTwo("Flow", "Tank");
    DragName(1, {row.place, row.place});
    DragValue(2, {row.place, row.place});
    DragLabel(1, {row.place, row.place});
    for (const PlacedControl* control : std::vector<PlacedControl*>{
             &main().RAM_LOC_TEXT(1), &main().RAM_LOC_VAL(2), &main().lbl_TextInfo(1)}) {
      EXPECT_EQ(control->Left.get(), row.lands) << control->name() << " " << row.place;
      EXPECT_EQ(control->Top.get(), row.lands) << control->name() << " " << row.place;
    }
    main().WCRChanged = false;
  }
}

TEST_F(Dragging, OnTheGridTheValueGoesBesideTheNameOffTheGrid) {
  SetGrid(true);
  DragName(1, {2000, 3000});
  EXPECT_EQ(Places(1), "2068,3008 4168,3008 1763,3058");
}

TEST_F(Dragging, OffTheGridABoxThatIsOnlyClickedStays) {
  SetGrid(true);
  DragName(1, {1050, 550});
  EXPECT_EQ(PlaceOf(main().RAM_LOC_TEXT(1)), "1000,600");
  EXPECT_FALSE(Changed());
}

TEST_F(Dragging, AMoveThatTheGridTakesBackStillChangesTheScreen) {
  SetGrid(true);
  OpenScreen({LocationLine("Flow", {1880, 1880}, {9000, 1880})});
  DragValue(1, {3760, 3760});
  Save();
  DragValue(1, {3760 + 60, 3760});
  EXPECT_EQ(PlaceOf(main().RAM_LOC_VAL(1)), "3760,3760");
  EXPECT_TRUE(Changed());
}

TEST_F(Dragging, APlaceNearTheEdgeIsSavedAsZero) {
  SetGrid(true);
  DragLabel(1, {-20, -20});
  DragName(1, {-20, -20});
  EXPECT_EQ(FileNow().find("-0"), std::string::npos) << FileNow();
}

TEST_F(Dragging, TheFormForetellsWhereTheDropLands) {
  for (const bool grid : {false, true}) {
    SetGrid(grid);
    for (const FormPlace& drop :
         {FormPlace{1130, 690}, FormPlace{3000, 4000}, FormPlace{200, 200}}) {
      OpenTwo("Flow", "Tank");
      GrabName(1, LeftPress(100, 60));
      const FormPlace foretold = main().form.DropPlace(drop.Left, drop.Top);
      EXPECT_EQ(Shown(1), "");
      Drop(drop.Left, drop.Top);
      EXPECT_EQ(main().RAM_LOC_TEXT(1).Left.get(), foretold.Left);
      EXPECT_EQ(main().RAM_LOC_TEXT(1).Top.get(), foretold.Top);
      main().WCRChanged = false;
    }
  }
}

// --- A drop on a box ---

TEST_F(Dragging, ANameDroppedOnANameComesBackWithoutItsValue) {
  for (const bool on : {true, false}) {
    SetScanningBox(on);
    OpenTwo("Flow", "Tank");
    GrabName(1);
    main().RAM_LOC_TEXT.DragDrop(2);
    EXPECT_EQ(Shown(1), "name ");
    EXPECT_EQ(Places(1), "1000,600 4000,640 695,650");
    // The check box of the other one stands by the dragged name now.
    EXPECT_EQ(Shown(2), on ? "name value check " : "name value ");
    EXPECT_EQ(Places(2), "1000,5000 4000,5040 745,650");
    EXPECT_EQ(main().DragIndex, 0);
    EXPECT_EQ(main().DragSource, nullptr);
    EXPECT_FALSE(Changed());
  }
}

TEST_F(Dragging, ANameDroppedOnAValueComesBackWithoutItsValue) {
  SetScanningBox(true);
  OpenTwo("Flow", "Tank");
  GrabName(1);
  main().RAM_LOC_VAL.DragDrop(2);
  EXPECT_EQ(Shown(1), "name ");
  EXPECT_EQ(Places(1), "1000,600 4000,640 695,650");
  EXPECT_EQ(Shown(2), "name value check ");
  EXPECT_EQ(Places(2), "1000,5000 4000,5040 695,5050");
  EXPECT_EQ(main().DragSource, nullptr);
  EXPECT_FALSE(Changed());
}

TEST_F(Dragging, TheHiddenValueComesBackWithTheNextDragThatEndsOnTheForm) {
  SetScanningBox(true);
  for (const bool on_name : {true, false}) {
    for (const FormPlace& place : {FormPlace{1000, 600}, FormPlace{2000, 3000}}) {
      OpenTwo("Flow", "Tank");
      GrabName(1);
      if (on_name) {
        main().RAM_LOC_TEXT.DragDrop(2);
      } else {
        main().RAM_LOC_VAL.DragDrop(2);
      }
      GrabName(1);
      main().RAM_LOC_VAL.DragDrop(2);
      EXPECT_EQ(Shown(1), "name ");
      DragName(1, place);
      EXPECT_EQ(Shown(1), "name value check ");
      EXPECT_EQ(main().RAM_LOC_VAL(1).Left.get(), place.Left + 2100);
      EXPECT_EQ(main().RAM_LOC_VAL(1).Top.get(), place.Top);
      main().WCRChanged = false;
    }
  }
}

TEST_F(Dragging, AHiddenValueIsSavedWithItsName) {
  GrabName(1);
  main().RAM_LOC_TEXT.DragDrop(2);
  Save();
  EXPECT_NE(world.disk().Get(kScreen).find(LocationLine("Flow", {1000, 600}, {4000, 640})),
            std::string::npos);
}

TEST_F(Dragging, AnotherDragDoesNotBringAHiddenValueBack) {
  GrabName(1);
  main().RAM_LOC_VAL.DragDrop(2);
  DragValue(2, {2000, 3000});
  EXPECT_EQ(Shown(1), "name ");
  EXPECT_EQ(Places(1), "1000,600 4000,640 695,650");
  GrabName(1);
  main().RAM_LOC_VAL.DragDrop(2);
  DragLabel(1, {2000, 4000});
  DragName(2, {2000, 6000});
  EXPECT_EQ(Shown(1), "name ");
  EXPECT_EQ(Places(1), "1000,600 4000,640 695,650");
}

TEST_F(Dragging, AValueOrALabelDroppedOnANameStaysAndDrawsItsCheckBox) {
  SetScanningBox(true);
  OpenTwo("Flow", "Tank");
  GrabValue(1);
  main().RAM_LOC_TEXT.DragDrop(2);
  EXPECT_EQ(Shown(1), "name value check ");
  EXPECT_EQ(Places(1), "1000,600 4000,640 695,650");
  EXPECT_EQ(PlaceOf(main().RAM_LOC_CHECK(2)), "3745,690");
  EXPECT_FALSE(Changed());
  GrabLabel(1);
  main().RAM_LOC_TEXT.DragDrop(1);
  EXPECT_TRUE(main().lbl_TextInfo(1).Visible);
  EXPECT_EQ(PlaceOf(main().lbl_TextInfo(1)), "500,9000");
  EXPECT_EQ(PlaceOf(main().RAM_LOC_CHECK(1)), "245,9050");
}

TEST_F(Dragging, AValueDroppedOnItsOwnNameStays) {
  GrabValue(1);
  main().RAM_LOC_TEXT.DragDrop(1);
  EXPECT_EQ(Places(1), "1000,600 4000,640 3745,690");
  EXPECT_EQ(Shown(1), "name value ");
}

TEST_F(Dragging, AValueOrALabelDroppedOnAValueStays) {
  const std::string before = Everything();
  GrabValue(1);
  main().RAM_LOC_VAL.DragDrop(2);
  EXPECT_FALSE(Changed());
  GrabLabel(1);
  main().RAM_LOC_VAL.DragDrop(2);
  EXPECT_EQ(Everything(), before);
}

// --- A drag that does not end in a drop ---

TEST_F(Dragging, CancelledLeavesEverythingAsItWas) {
  SetScanningBox(true);
  OpenTwo("Flow", "Tank");
  const std::string before = Everything();
  for (const bool name : {true, false}) {
    if (name) {
      GrabName(1);
    } else {
      GrabValue(1);
    }
    main().form.DragCancel();
    EXPECT_EQ(Everything(), before);
    EXPECT_EQ(main().DragIndex, 0);
    EXPECT_EQ(main().DragSource, nullptr);
    EXPECT_FALSE(Changed());
    EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
  }
  GrabLabel(1);
  main().form.DragCancel();
  EXPECT_EQ(Everything(), before);
}

TEST_F(Dragging, ADropWithoutADragDoesNothing) {
  GrabName(1);
  main().form.DragCancel();
  const std::string before = Everything();
  Drop(5000, 5000);
  main().RAM_LOC_TEXT.DragDrop(2);
  main().RAM_LOC_VAL.DragDrop(2);
  main().form.DragCancel();
  EXPECT_EQ(Everything(), before);
  EXPECT_FALSE(Changed());
}

TEST_F(Dragging, ASecondPressCancelsTheFirst) {
  const std::string before = Everything();
  GrabName(1);
  GrabValue(2);
  EXPECT_EQ(Shown(1), "name value ");
  EXPECT_EQ(Shown(2), "name ");
  GrabName(2);
  EXPECT_EQ(Shown(2), "");
  main().form.DragCancel();
  EXPECT_EQ(Everything(), before);
}

TEST_F(Dragging, AnyOtherEditEndsItFirst) {
  SetScanningBox(true);
  const std::vector<std::function<void()>> edits = {
      [this] { AddLocation(); },
      [this] { AddText(); },
      [this] { DeleteLocation(2); },
      [this] { main().lbl_TextInfo.DeleteKey(1); },
      [this] { main().RAM_LOC_TEXT.Arrow(2, kDown); },
      [this] { main().RAM_LOC_CHECK(2).Value = false; },
      [this] { GrabValue(2, ShiftLeftPress()); },
      [this] { TypeLabel(1, "Tank"); },
      [this] {
        world.dialogs().ExpectColour().GiveColour(7);
        main().form.MouseDown(RightPress());
      },
      [this] {
        world.dialogs().ExpectFont().GiveFont({.name = "Courier"});
        GrabLabel(1, RightPress());
      },
  };
  for (std::size_t i = 0; i < edits.size(); ++i) {
    OpenTwo("Flow", "Tank");
    GrabName(1);
    edits[i]();
    EXPECT_EQ(main().DragSource, nullptr) << i;
    EXPECT_EQ(main().DragIndex, 0) << i;
    EXPECT_EQ(Shown(1), "name value check ") << i;
    EXPECT_EQ(Places(1), "1000,600 4000,640 695,650") << i;
    const std::string after = Everything();
    Drop(5000, 5000);
    EXPECT_EQ(Everything(), after) << i;
    main().WCRChanged = false;
  }
}

TEST_F(Dragging, UndoAndRedoEndItFirst) {
  const std::string start = Everything();
  DragName(2, {3000, 6000});
  const std::string moved = Everything();
  GrabName(1);
  Undo();
  EXPECT_EQ(Everything(), start);
  EXPECT_EQ(main().DragSource, nullptr);
  GrabName(2);
  Redo();
  EXPECT_EQ(Everything(), moved);
  EXPECT_EQ(main().DragSource, nullptr);
}

TEST_F(Dragging, AnotherScreenEndsIt) {
  GrabName(1);
  Open(kScreen);
  EXPECT_EQ(main().DragSource, nullptr);
  EXPECT_EQ(main().DragIndex, 0);
  EXPECT_EQ(Shown(1), "name value ");
  Drop(5000, 5000);
  EXPECT_EQ(PlaceOf(main().RAM_LOC_TEXT(1)), "1000,600");
  GrabLabel(1);
  main().WCRChanged = false;
  main().M_NewScreen.Press();
  EXPECT_EQ(main().DragSource, nullptr);
  Drop(5000, 5000);
  EXPECT_EQ(Screen(), "colour FF8080\n");
}

TEST_F(Dragging, ASaveMeanwhileWritesWhatIsDragged) {
  const std::string file = world.disk().Get(kScreen);
  const std::vector<std::function<void()>> grabs = {
      [this] { GrabName(1); }, [this] { GrabValue(2); }, [this] { GrabLabel(1); }};
  for (const auto& grab : grabs) {
    grab();
    Save();
    EXPECT_EQ(world.disk().Get(kScreen), file);
    main().form.DragCancel();
  }
}

// --- During a run ---

TEST_F(Dragging, LeavesARunGoing) {
  main().Toolbar1(2).Press();
  world.Advance(20ms);
  ASSERT_TRUE(main().CommRunning);
  GrabName(1);
  world.Advance(100ms);
  Drop(3030, 3030);
  EXPECT_EQ(PlaceOf(main().RAM_LOC_TEXT(1)), "3000,3000");
  EXPECT_TRUE(main().CommRunning);
  EXPECT_TRUE(main().Comm->PortOpen());
}

}  // namespace
}  // namespace tarnlink
