// Screens as large, and records as odd, as a file may hold.

#include <QLabel>
#include <QScrollArea>

#include "ui/event_watch.h"
#include "ui/text_plate.h"
#include "ui/ui_fixture.h"

namespace tarnlink {
namespace {

class ScreenLimits : public UiTest {
 protected:
  // The screen as the user sees it, painted.
  void Look() { EXPECT_FALSE(window->grab().isNull()); }

  void OpenLabel(const std::string& caption, const std::string& top, const std::string& left,
                 const std::string& font_size) {
    OpenScreen("0\r\n\"T\",\"" + caption + "\"," + top + "," + left + ",\"Arial\"," + font_size +
               ",#FALSE#,#FALSE#,0\r\n");
    ASSERT_EQ(monitor.main.TextInfoCount, 1);
    Look();
  }

  void OpenLocation(const std::string& name, const std::string& top, const std::string& left) {
    OpenScreen("0\r\n\"L\",0,1,\"01A0\",0,\"" + name + "\",\"" + name + "\",0,0,0,0,\"0\",0," +
               top + "," + left + "," + top + "," + left + ",\"0\"\r\n");
    ASSERT_EQ(monitor.main.MaxId, 1);
    Look();
  }

  QSize Screen() const { return Get("screen").sizeHint(); }
};

TEST_F(ScreenLimits, FiveHundredAndTwelveLocationsOpenAtOnce) {
  world.settings().SaveSetting("Communication", "Scanning", "1");
  Begin();
  world.disk().Put("/home/user/work/full.wcr", ScreenOf(512));
  world.dialogs().ExpectOpenFile("Open").Give("/home/user/work/full.wcr");
  EventWatch::Instance().Forget();
  QTest::keyClick(window.get(), Qt::Key_O, Qt::ControlModifier);
  ASSERT_EQ(monitor.main.MaxId, 512);
  EXPECT_EQ(Get("screen").findChildren<QWidget*>().size(), 3 * 512);
  EXPECT_EQ(Get<TextPlate>("RAM_LOC_TEXT(512)").text(), "Name 512");
  FinishPainting();
  EventWatch::Instance().Print("Opening 512 Locations");
  EventWatch::Instance().Forget();
  QTest::keyClick(window.get(), Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(Get("screen").findChildren<QWidget*>().size(), 0);
  EventWatch::Instance().Print("Unloading them");
}

TEST_F(ScreenLimits, PlacesBeyondAnyDisplayAreHeldWithinReach) {
  OpenLocation("x", "3e38", "3e38");
  EXPECT_LE(Screen().width(), 21000);
  EXPECT_LE(Screen().height(), 21000);
  OpenLocation("x", "-3e38", "-3e38");
  EXPECT_LE(Screen().width(), 21000);
  OpenLabel("x", "3e38", "-3e38", "8");
  EXPECT_LE(Screen().height(), 21000);
  EXPECT_GE(Screen().width(), 0);
}

TEST_F(ScreenLimits, LettersHaveASizeThatCanBeDrawn) {
  for (const char* points : {"3e38", "1000000", "5000"}) {
    OpenLabel("Wide", "0", "0", points);
    EXPECT_LE(Get("lbl_TextInfo(1)").height(), 1000) << points;
    EXPECT_GE(Get("lbl_TextInfo(1)").height(), 300) << points;
  }
  OpenLabel("Small", "0", "0", "0.0001");
  EXPECT_GE(Get("lbl_TextInfo(1)").height(), 1);
  OpenLabel("None", "0", "0", "0");
  EXPECT_GE(Get("lbl_TextInfo(1)").height(), 5);
  OpenLabel("Less", "0", "0", "-12");
  EXPECT_GE(Get("lbl_TextInfo(1)").height(), 5);
}

TEST_F(ScreenLimits, ATextWithoutEndIsShownByItsBeginning) {
  OpenLabel(std::string(2000000, 'W'), "0", "0", "8");
  EXPECT_LE(Screen().width(), 21000);
  EXPECT_TRUE(Get<QLabel>("lbl_TextInfo(1)").text().startsWith("WWWW"));
  EXPECT_EQ(monitor.main.lbl_TextInfo(1).Caption->size(), 2000000) << "the file keeps it whole";
  OpenLocation(std::string(2000000, 'W'), "0", "0");
  EXPECT_LT(Get("RAM_LOC_TEXT(1)").toolTip().size(), 5000);
}

TEST_F(ScreenLimits, AnEmptyLabelIsThere) {
  OpenLabel("", "0", "0", "8");
  EXPECT_TRUE(Get<QLabel>("lbl_TextInfo(1)").isVisible());
}

TEST_F(ScreenLimits, LettersOfAnyAlphabetAndNoneAreDrawn) {
  OpenLabel("\xD0\x9A\xD0\xBE\xD1\x82\xD1\x91\xD0\xBB \xE2\x84\x83 \xF0\x9F\x94\xA5 \x01\x1F\x7F",
            "0", "0", "8");
  OpenLocation("\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \x07\t|", "600", "600");
}

}  // namespace
}  // namespace tarnlink
