// The looks of the screen, changed with the mouse: colours, fonts, texts, the size of a value box,
// and the check boxes of the scan.

#include <QCheckBox>
#include <QLabel>

#include "ui/edit_fixture.h"
#include "ui/text_plate.h"

namespace tarnlink {
namespace {

constexpr QPoint kFree(400, 300);  // a place of the screen where nothing stands

class ScreenLookTest : public EditUiTest {
 protected:
  QLabel& Text() const { return Get<QLabel>("lbl_TextInfo(1)"); }
  void RightClick(const std::string& name, Qt::KeyboardModifiers modifiers = {}) {
    ClickAt(On(name), Qt::RightButton, modifiers);
  }
  QColor ColourAt(const QPoint& place) const {
    return Get("screen").grab().toImage().pixelColor(place);
  }
};

// --- The form ---

TEST_F(ScreenLookTest, TheRightButtonOnTheScreenAsksForItsColour) {
  OpenScreen(kTwoLocations);
  world.dialogs().ExpectColour().GiveColour(0x0000FF);
  ClickAt(OnScreen(kFree), Qt::RightButton);
  EXPECT_EQ(ColourAt(kFree), QColor(255, 0, 0));
  EXPECT_EQ(Text().palette().color(QPalette::Window), QColor(255, 0, 0));
  EXPECT_TRUE(Changed());
  EXPECT_EQ(Entries(), "&Undo colour of the screen | [&Redo]");
  EXPECT_TRUE(Save().starts_with("255\r\n"));
}

TEST_F(ScreenLookTest, ACancelledColourChangesNothing) {
  OpenScreen(kTwoLocations);
  world.dialogs().ExpectColour().Cancel();
  ClickAt(OnScreen(kFree), Qt::RightButton);
  EXPECT_EQ(ColourAt(kFree), QColor(128, 128, 255));
  EXPECT_FALSE(Changed());
}

TEST_F(ScreenLookTest, TheRightButtonOnABoxAsksNothing) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  for (const char* name : {"RAM_LOC_TEXT(1)", "RAM_LOC_VAL(1)", "RAM_LOC_CHECK(1)"}) {
    RightClick(name);
    EXPECT_FALSE(Dragging()) << name;
  }
  EXPECT_TRUE(world.dialogs().TakeShown().size() == 1) << "only that of the file";
  EXPECT_FALSE(Changed());
}

TEST_F(ScreenLookTest, OtherButtonsDoNothing) {
  OpenScreen(kTwoLocations);
  const std::string before = Everything();
  for (const char* name : {"RAM_LOC_TEXT(1)", "RAM_LOC_VAL(1)", "screen"}) {
    ClickAt(On(name, QPoint(5, 5)), Qt::MiddleButton);
  }
  ClickAt(OnScreen(kFree));
  EXPECT_FALSE(Dragging());
  EXPECT_FALSE(Changed());
  ClickAt(On("lbl_TextInfo(1)"), Qt::MiddleButton);
  EXPECT_FALSE(Dragging());
  EXPECT_TRUE(Changed()) << "any press on a label counts";
  EXPECT_EQ(Everything(), before);
}

// --- Labels ---

TEST_F(ScreenLookTest, TheRightButtonOnALabelAsksForItsFont) {
  OpenScreen(kTwoLocations);
  world.dialogs().ExpectFont().GiveFont({.name = "DejaVu Serif", .size = 24, .italic = true});
  const int width = Text().width();
  RightClick("lbl_TextInfo(1)");
  EXPECT_EQ(Text().font().family(), "DejaVu Serif");
  EXPECT_EQ(Text().font().pixelSize(), 32);
  EXPECT_TRUE(Text().font().italic());
  EXPECT_FALSE(Text().font().bold());
  EXPECT_GT(Text().width(), width);
  EXPECT_TRUE(Changed());
  EXPECT_EQ(Entries(), "&Undo font of Boiler 1 | [&Redo]");
}

TEST_F(ScreenLookTest, ShiftAndTheRightButtonAskForItsColour) {
  OpenScreen(kTwoLocations);
  world.dialogs().ExpectColour().GiveColour(0x00FF00);
  RightClick("lbl_TextInfo(1)", Qt::ShiftModifier);
  EXPECT_EQ(Text().palette().color(QPalette::WindowText), QColor(0, 255, 0));
  EXPECT_EQ(ColourAt(kFree), QColor(128, 128, 255)) << "the form keeps its own";
  EXPECT_EQ(Entries(), "&Undo colour of Boiler 1 | [&Redo]");
}

TEST_F(ScreenLookTest, TwoQuickPressesOfTheRightButtonAreTwo) {
  OpenScreen(kTwoLocations);
  world.dialogs().ExpectFont().GiveFont({.name = "DejaVu Sans", .size = 6});
  world.dialogs().ExpectFont().GiveFont({.name = "DejaVu Sans", .size = 18});
  DoubleClickAt(On("lbl_TextInfo(1)"), Qt::RightButton);
  EXPECT_EQ(Text().font().pixelSize(), 24);
  world.dialogs().ExpectColour().GiveColour(0x0000FF);
  world.dialogs().ExpectColour().GiveColour(0x00FF00);
  DoubleClickAt(OnScreen(kFree), Qt::RightButton);
  EXPECT_EQ(ColourAt(kFree), QColor(0, 255, 0));
}

TEST_F(ScreenLookTest, ADoubleClickAsksForTheText) {
  OpenScreen(kTwoLocations);
  ExpectLabelText().Give(" \"Boiler\" room ");
  DoubleClickAt(On("lbl_TextInfo(1)"));
  EXPECT_EQ(world.dialogs().last_input_text(), "Boiler 1");
  EXPECT_EQ(Text().text(), "Boiler  room");
  EXPECT_EQ(Text().pos(), QPoint(16, 8));
  EXPECT_FALSE(Dragging());
  EXPECT_EQ(Entries(), "&Undo text of Boiler 1 | [&Redo]");
}

TEST_F(ScreenLookTest, ADoubleClickOnABoxAsksNothing) {
  OpenScreen(kTwoLocations);
  const std::string before = Everything();
  DoubleClickAt(On("RAM_LOC_VAL(1)"));
  DoubleClickAt(OnScreen(kFree));
  EXPECT_EQ(Everything(), before);
  EXPECT_FALSE(Changed());
}

TEST_F(ScreenLookTest, AnEmptiedLabelIsGoneFromTheScreenAndFromTheFile) {
  OpenScreen(kTwoLocations);
  ExpectLabelText().Give("  ");
  DoubleClickAt(On("lbl_TextInfo(1)"));
  EXPECT_FALSE(Shown("lbl_TextInfo(1)"));
  EXPECT_EQ(Save().find("\"T\""), std::string::npos);
  Entry("M_NewScreen").trigger();
  world.dialogs().ExpectOpenFile("Open").Give(kFile);
  Entry("M_fileopen").trigger();
  EXPECT_EQ(Find("lbl_TextInfo(1)"), nullptr);
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(2)"));
}

TEST_F(ScreenLookTest, AnAddedTextHasTheScreensColour) {
  OpenScreen(kTwoLocations);
  Click("Toolbar1(4)");
  const auto& label = Get<QLabel>("lbl_TextInfo(2)");
  EXPECT_EQ(label.text(), "Textual Information");
  EXPECT_EQ(label.pos(), QPoint(16, 28)) << "300 units under the one before";
  EXPECT_EQ(label.palette().color(QPalette::Window), QColor(128, 128, 255));
  EXPECT_EQ(label.toolTip(), Text().toolTip());
  EXPECT_EQ(Focus(), "lbl_TextInfo(2)");
  EXPECT_TRUE(Changed());
}

// --- The size of a value box ---

TEST_F(ScreenLookTest, ShiftAndAClickTwiceBringsBackTheSize) {
  OpenScreen(kTwoLocations);
  const std::string before = Everything();
  ClickAt(On("RAM_LOC_VAL(1)"), Qt::LeftButton, Qt::ShiftModifier);
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(160, 40, 240, 42));
  EXPECT_EQ(Get("RAM_LOC_VAL(1)").font().pixelSize(), 44);
  EXPECT_FALSE(Dragging());
  EXPECT_FALSE(Changed()) << "the file does not hold the size";
  EXPECT_EQ(Entries(), "&Undo size of the value of Flow | [&Redo]");
  ClickAt(On("RAM_LOC_VAL(1)"), Qt::LeftButton, Qt::ShiftModifier);
  EXPECT_EQ(Everything(), before);
  DoubleClickAt(On("RAM_LOC_VAL(1)"), Qt::LeftButton, Qt::ShiftModifier);
  EXPECT_EQ(Everything(), before) << "also when they come quickly";
  EXPECT_EQ(Focus(), "RAM_LOC_VAL(1)");
}

// --- Check boxes ---

TEST_F(ScreenLookTest, AClickOnACheckBoxTakesTheLocationOutOfTheScan) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  ClickAt(On("RAM_LOC_CHECK(1)", QPoint(8, 8)));
  EXPECT_FALSE(Get<QCheckBox>("RAM_LOC_CHECK(1)").isChecked());
  EXPECT_EQ(monitor.main.Locations[1].ScanFlags, kScanningDisabled);
  EXPECT_TRUE(Get("RAM_LOC_TEXT(1)").font().italic());
  EXPECT_FALSE(Dragging());
  EXPECT_FALSE(Changed());
  ClickAt(On("RAM_LOC_CHECK(1)", QPoint(8, 8)));
  EXPECT_EQ(monitor.main.Locations[1].ScanFlags, 0);
  EXPECT_FALSE(Get("RAM_LOC_TEXT(1)").font().italic());
}

TEST_F(ScreenLookTest, AClickOnACheckBoxKeepsTheOtherFlag) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  ASSERT_EQ(monitor.main.Locations[2].ScanFlags, kContinuousWrite);
  ClickAt(On("RAM_LOC_CHECK(2)", QPoint(8, 8)));
  EXPECT_EQ(monitor.main.Locations[2].ScanFlags, kContinuousWrite | kScanningDisabled);
  ClickAt(On("RAM_LOC_CHECK(2)", QPoint(8, 8)));
  EXPECT_EQ(monitor.main.Locations[2].ScanFlags, kContinuousWrite);
  EXPECT_TRUE(Get("RAM_LOC_TEXT(2)").font().italic()) << "for the other flag";
}

TEST_F(ScreenLookTest, TheSpaceBarSwitchesTheFocusedCheckBox) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  ClickAt(On("RAM_LOC_CHECK(1)", QPoint(8, 8)));
  ASSERT_EQ(Focus(), "RAM_LOC_CHECK(1)");
  Key(Qt::Key_Space);
  EXPECT_TRUE(Get<QCheckBox>("RAM_LOC_CHECK(1)").isChecked());
  EXPECT_EQ(monitor.main.Locations[1].ScanFlags, 0);
  Undo();
  EXPECT_FALSE(Get<QCheckBox>("RAM_LOC_CHECK(1)").isChecked());
  EXPECT_TRUE(Get("RAM_LOC_TEXT(1)").font().italic());
}

}  // namespace
}  // namespace tarnlink
