// The size of value boxes, the colour of the form, and the check boxes that take Locations out of
// the scan.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/edit_fixture.h"

namespace tarnlink {
namespace {

class LookEdits : public EditTest {
 protected:
  LookEdits() {
    OpenScreen({LocationLine("Flow", {1000, 600}, {4000, 640}),
                LocationLine("Tank", {1000, 5000}, {4000, 5040}), LabelLine("Boiler", {500, 9000}),
                LabelLine("Cellar", {500, 9300})});
  }

  void ToggleSize(int index) { main().RAM_LOC_VAL.MouseDown(index, ShiftLeftPress()); }
  ScriptedDialog& ExpectColour() { return world.dialogs().ExpectColour(); }
};

// --- The size ---

TEST_F(LookEdits, ShiftAndClickDoublesAValueBoxWithFourTimesTheLetters) {
  const TextBox& normal = main().RAM_LOC_VAL(0);
  const TextBox& value = main().RAM_LOC_VAL(1);
  ToggleSize(1);
  EXPECT_EQ(value.Height.get(), 2 * normal.Height);
  EXPECT_EQ(value.Width.get(), 2 * normal.Width);
  EXPECT_EQ(value.TextFont->size, 4 * normal.TextFont->size);
  EXPECT_EQ(value.TextFont->name, normal.TextFont->name);
  EXPECT_EQ(PlaceOf(value), "4000,640");
  EXPECT_TRUE(value.Visible);
  EXPECT_EQ(main().DragSource, nullptr);
  EXPECT_EQ(main().RAM_LOC_VAL(2).Height.get(), normal.Height.get());
  EXPECT_EQ(main().RAM_LOC_TEXT(1).Height.get(), main().RAM_LOC_TEXT(0).Height.get());
}

TEST_F(LookEdits, ShiftAndClickTwiceBringsBackTheTemplatesSize) {
  const std::string before = Everything();
  ToggleSize(1);
  EXPECT_NE(Everything(), before);
  ToggleSize(1);
  EXPECT_EQ(Everything(), before);
}

TEST_F(LookEdits, AnyOtherHeightGoesBackToTheTemplates) {
  const std::string before = Everything();
  main().RAM_LOC_VAL(1).Height = 400;
  main().RAM_LOC_VAL(1).Width = 77;
  main().RAM_LOC_VAL(1).TextFont = Font{.size = 12};
  ToggleSize(1);
  EXPECT_EQ(Everything(), before);
}

TEST_F(LookEdits, TheSizeIsNoChangeOfTheFile) {
  const std::string file = FileNow();
  ToggleSize(1);
  EXPECT_FALSE(Changed());
  EXPECT_EQ(FileNow(), file);
  Open(kScreen);
  EXPECT_EQ(main().RAM_LOC_VAL(1).Height.get(), main().RAM_LOC_VAL(0).Height.get());
}

// --- The form's colour ---

TEST_F(LookEdits, TheRightButtonOnTheFormColoursItAndAllLabels) {
  TypeLabel(2, "");
  Save();
  ExpectColour().GiveColour(0x123456);
  main().form.MouseDown(RightPress());
  EXPECT_EQ(main().form.BackColor.get(), 0x123456);
  for (int i = 1; i <= 2; ++i) {
    EXPECT_EQ(main().lbl_TextInfo(i).BackColor.get(), 0x123456) << i;
    EXPECT_EQ(main().lbl_TextInfo(i).ForeColor.get(), kBlack) << i;
  }
  EXPECT_EQ(main().RAM_LOC_TEXT(1).BackColor.get(), kWhite);
  EXPECT_EQ(main().RAM_LOC_VAL(1).BackColor.get(), kWhite);
  EXPECT_TRUE(Changed());
  EXPECT_TRUE(FileNow().starts_with("1193046\r\n"));
  AddText();
  EXPECT_EQ(main().lbl_TextInfo(3).BackColor.get(), 0x123456);
}

TEST_F(LookEdits, WithShiftItIsTheSame) {
  ExpectColour().GiveColour(7);
  main().form.MouseDown(ShiftRightPress());
  EXPECT_EQ(main().form.BackColor.get(), 7);
}

TEST_F(LookEdits, ACancelledColourChangesNothing) {
  const std::string before = Everything();
  ExpectColour().Cancel();
  main().form.MouseDown(RightPress());
  EXPECT_EQ(Everything(), before);
  EXPECT_FALSE(Changed());
}

TEST_F(LookEdits, TheLeftButtonOnTheFormDoesNothing) {
  const std::string before = Everything();
  main().form.MouseDown(LeftPress());
  main().form.MouseDown(ShiftLeftPress());
  EXPECT_EQ(Everything(), before);
  EXPECT_FALSE(Changed());
}

// --- Check boxes ---

TEST_F(LookEdits, ACheckBoxSetsTheLowScanFlagAndKeepsTheOther) {
  struct Row {
    int flags, unchecked, checked;
  };
  for (const Row& row : {Row{0, 1, 0}, Row{1, 1, 0}, Row{2, 3, 2}, Row{3, 3, 2}}) {
    OpenScreen({LocationLine("Flow", {1000, 600}, {4000, 640}, row.flags)});
    CheckBox& check = main().RAM_LOC_CHECK(1);
    EXPECT_EQ(check.Value, (row.flags & 1) == 0);
    check.Value = !check.Value;
    EXPECT_EQ(main().Locations[1].ScanFlags, check.Value ? row.checked : row.unchecked);
    EXPECT_EQ(main().RAM_LOC_TEXT(1).TextFont->italic, main().Locations[1].ScanFlags != 0);
    check.Value = !check.Value;
    EXPECT_EQ(main().Locations[1].ScanFlags, row.flags);
    EXPECT_EQ(main().RAM_LOC_TEXT(1).TextFont->italic, row.flags != 0);
    EXPECT_FALSE(Changed());
  }
}

TEST_F(LookEdits, ACheckBoxSlantsTheNameOnly) {
  main().RAM_LOC_CHECK(1).Value = false;
  EXPECT_TRUE(main().RAM_LOC_TEXT(1).TextFont->italic);
  EXPECT_EQ(main().RAM_LOC_TEXT(1).TextFont->size, main().RAM_LOC_TEXT(0).TextFont->size);
  EXPECT_FALSE(main().RAM_LOC_VAL(1).TextFont->italic);
  EXPECT_FALSE(main().RAM_LOC_TEXT(2).TextFont->italic);
  EXPECT_EQ(main().Locations[2].ScanFlags, 0);
}

TEST_F(LookEdits, ACheckBoxLeavesAChangedScreenChangedAndIsSaved) {
  ChangeScreen();
  main().RAM_LOC_CHECK(1).Value = false;
  EXPECT_TRUE(Changed());
  Save();
  EXPECT_EQ(FileNow().substr(0, FileNow().find("\"L\"", 10)),
            FileText({"255", LocationLine("Flow", {1000, 600}, {4000, 640}, 1)}));
}

TEST_F(LookEdits, TheCheckBoxOfAnAddedLocationWorks) {
  AddLocation();
  main().RAM_LOC_CHECK(3).Value = false;
  EXPECT_EQ(main().Locations[3].ScanFlags, 1);
  EXPECT_TRUE(main().RAM_LOC_TEXT(3).TextFont->italic);
}

}  // namespace
}  // namespace tarnlink
