// The screen: its boxes, check boxes and labels as widgets.

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>

#include "ui/paint_count.h"
#include "ui/text_plate.h"
#include "ui/ui_fixture.h"
#include "ui/units.h"

namespace tarnlink {
namespace {

class ScreenTest : public UiTest {
 protected:
  QRect Place(const std::string& name) const { return Get(name).geometry(); }
  TextPlate& Box(const std::string& name) const { return Get<TextPlate>(name); }
  QLabel& Text(int index) const {
    return Get<QLabel>("lbl_TextInfo(" + std::to_string(index) + ")");
  }

  // The colour in a corner of a widget, inside its frame.
  QColor Ground(const std::string& name) const {
    QWidget& widget = Get(name);
    return widget.grab().toImage().pixelColor(widget.width() - 4, widget.height() - 4);
  }

  // Whether anything is drawn in exactly this colour.
  bool Drawn(const std::string& name, const QColor& colour) const {
    const QImage picture = Get(name).grab().toImage();
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        if (picture.pixelColor(x, y) == colour) return true;
      }
    }
    return false;
  }

  int WidgetsOnTheScreen() const {
    return static_cast<int>(Get("screen").findChildren<QWidget*>().size());
  }
};

TEST(Units, FifteenAreAPixelAndRoundToTheNearest) {
  const std::pair<float, int> table[] = {{0, 0},     {15, 1},        {7, 0},          {8, 1},
                                         {22, 1},    {23, 2},        {600, 40},       {2400, 160},
                                         {1440, 96}, {-15, -1},      {-7, 0},         {-8, -1},
                                         {0.4F, 0},  {1e30F, 20000}, {-1e30F, -20000}};
  for (const auto& [units, pixels] : table) EXPECT_EQ(ToPixels(units), pixels) << units;
  for (const int pixels : {0, 1, 96, -5, 1920}) EXPECT_EQ(ToPixels(ToUnits(pixels)), pixels);
}

// --- Boxes ---

TEST_F(ScreenTest, BoxesStandAtTheirPlaces) {
  OpenScreen(kTwoLocations);
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(160, 40, 120, 21));
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)"), QRect(16, 40, 140, 21));
  EXPECT_EQ(Place("RAM_LOC_VAL(2)"), QRect(160, 80, 120, 21));
  EXPECT_EQ(Place("RAM_LOC_TEXT(2)"), QRect(16, 80, 140, 21));
}

TEST_F(ScreenTest, ABoxFollowsItsControl) {
  OpenScreen(kTwoLocations);
  TextBox& control = monitor.main.RAM_LOC_VAL(1);
  control.Left = 3000;
  control.Top = 1500;
  control.Width = 3600;
  control.Height = 630;
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(200, 100, 240, 42));
  control.Visible = false;
  EXPECT_FALSE(Shown("RAM_LOC_VAL(1)"));
  control.Visible = true;
  EXPECT_TRUE(Shown("RAM_LOC_VAL(1)"));
}

TEST_F(ScreenTest, BoxesShowNamesAndValues) {
  OpenScreen(kTwoLocations);
  EXPECT_EQ(Box("RAM_LOC_TEXT(1)").text(), "Flow");
  EXPECT_EQ(Box("RAM_LOC_TEXT(1)").toolTip(), "t_flow");
  EXPECT_EQ(Box("RAM_LOC_VAL(1)").text(), "Value 1");
  SlaveAnswers("2A01");
  Click("Toolbar1(2)");
  world.Advance(std::chrono::seconds(1));
  EXPECT_EQ(Box("RAM_LOC_VAL(1)").text(), "42");
  EXPECT_EQ(Box("RAM_LOC_VAL(2)").text(), "2A01");
  Click("Toolbar1(3)");
}

TEST_F(ScreenTest, ANameIsSlantedWhileItsLocationIsNotScanned) {
  OpenScreen(kTwoLocations);
  EXPECT_FALSE(Box("RAM_LOC_TEXT(1)").font().italic());
  EXPECT_TRUE(Box("RAM_LOC_TEXT(2)").font().italic());
  Font font = monitor.main.RAM_LOC_TEXT(1).TextFont;
  font.italic = true;
  monitor.main.RAM_LOC_TEXT(1).TextFont = font;
  EXPECT_TRUE(Box("RAM_LOC_TEXT(1)").font().italic());
}

TEST_F(ScreenTest, AllBoxesHaveLettersOfOneSize) {
  OpenScreen(kTwoLocations);
  for (const char* name :
       {"RAM_LOC_TEXT(1)", "RAM_LOC_TEXT(2)", "RAM_LOC_VAL(1)", "RAM_LOC_VAL(2)"}) {
    EXPECT_EQ(Box(name).font().pixelSize(), 11) << name << ": 8.25 points at 96 to the inch";
  }
  Font font = monitor.main.RAM_LOC_VAL(1).TextFont;
  font.size = 33;
  monitor.main.RAM_LOC_VAL(1).TextFont = font;
  EXPECT_EQ(Box("RAM_LOC_VAL(1)").font().pixelSize(), 44);
}

TEST_F(ScreenTest, BoxesHaveTheirColours) {
  OpenScreen(
      "255\r\n"
      "\"M\",1,3,\"0012\",0,\"A\",\"\",0,0,0,0,\"0\",0,600,2400,600,240,\"1\",3,2,\"3\",4,"
      "#FALSE#\r\n"
      "\"M\",1,3,\"0013\",0,\"B\",\"\",0,0,0,0,\"0\",0,900,2400,900,240,\"1\",3,2,\"3\",1,"
      "#FALSE#\r\n");
  EXPECT_EQ(Ground("RAM_LOC_VAL(1)"), QColor(0, 255, 255)) << "of a block";
  EXPECT_EQ(Ground("RAM_LOC_TEXT(1)"), QColor(0, 255, 255));
  EXPECT_EQ(Ground("RAM_LOC_VAL(2)"), QColor(Qt::white));
  EXPECT_EQ(Ground("screen"), QColor(255, 0, 0));
  monitor.main.RAM_LOC_VAL(2).BackColor = 0x800000;
  EXPECT_EQ(Ground("RAM_LOC_VAL(2)"), QColor(0, 0, 128));
  monitor.main.RAM_LOC_VAL(2).BackColor = kWindowBackground;
  EXPECT_EQ(Ground("RAM_LOC_VAL(2)"), QApplication::palette().color(QPalette::Base));
}

TEST_F(ScreenTest, LettersCanBeReadOnAnyGround) {
  OpenScreen(kTwoLocations);
  monitor.main.RAM_LOC_VAL(1).Height = 900;
  monitor.main.RAM_LOC_VAL(1).TextFont = Font{.size = 33};
  const std::pair<Colour, QColor> table[] = {{kWhite, Qt::black},   {0, Qt::white},
                                             {0x00FFFF, Qt::black}, {0xFFFF00, Qt::black},
                                             {0xFF0000, Qt::white}, {0x000080, Qt::white}};
  for (const auto& [ground, letters] : table) {
    monitor.main.RAM_LOC_VAL(1).BackColor = ground;
    EXPECT_TRUE(Drawn("RAM_LOC_VAL(1)", letters)) << std::hex << ground;
  }
}

// --- Check boxes ---

TEST_F(ScreenTest, CheckBoxesShowWithTheScanningBox) {
  OpenScreen(kTwoLocations);
  EXPECT_EQ(Find("RAM_LOC_CHECK(1)"), nullptr);
  world.settings().SaveSetting("Communication", "Scanning", "1");
  monitor.options.ScanningBox.Value = true;
  OpenScreen(kTwoLocations);
  EXPECT_TRUE(Shown("RAM_LOC_CHECK(1)"));
  EXPECT_EQ(Place("RAM_LOC_CHECK(1)").top(), 43) << "50 units under the name box's top";
  EXPECT_LT(Place("RAM_LOC_CHECK(1)").left(), Place("RAM_LOC_TEXT(1)").left());
  EXPECT_TRUE(Get<QCheckBox>("RAM_LOC_CHECK(1)").isChecked());
  EXPECT_TRUE(Get<QCheckBox>("RAM_LOC_CHECK(2)").isChecked()) << "only bit 0 counts";
}

TEST_F(ScreenTest, ACheckBoxGoesBothWays) {
  OpenScreen(kTwoLocations);
  CheckBox& control = monitor.main.RAM_LOC_CHECK(1);
  control.Left = 6000;
  control.Visible = true;
  int clicks = 0;
  control.Click = [&] { ++clicks; };
  Click("RAM_LOC_CHECK(1)");
  EXPECT_FALSE(control.Value);
  EXPECT_EQ(clicks, 1);
  control.Value = true;
  EXPECT_TRUE(Get<QCheckBox>("RAM_LOC_CHECK(1)").isChecked());
  EXPECT_EQ(clicks, 2);
}

TEST_F(ScreenTest, ACheckBoxTellsAScreenReaderWhatItIsFor) {
  OpenScreen(kTwoLocations);
  monitor.main.RAM_LOC_CHECK(1).Visible = true;
  const auto called = [this](const QString& name) {
    const QWidget& check = Get("RAM_LOC_CHECK(1)");
    return QTest::qWaitFor([&] { return check.accessibleName() == name; }, 2000);
  };
  EXPECT_TRUE(called("Scan Flow"));
  monitor.main.RAM_LOC_TEXT(1).Text = "Return";
  EXPECT_TRUE(called("Scan Return"));
  EXPECT_EQ(Get("RAM_LOC_TEXT(2)").accessibleName(), "Status");
  EXPECT_EQ(Get("RAM_LOC_VAL(2)").accessibleName(), "Value 2");
}

// --- Labels ---

TEST_F(ScreenTest, ALabelIsShownAsItsRecordSays) {
  OpenScreen(kTwoLocations);
  const QLabel& label = Text(1);
  EXPECT_EQ(label.text(), "Boiler 1");
  EXPECT_EQ(label.pos(), QPoint(16, 8));
  EXPECT_EQ(label.font().family(), "DejaVu Sans");
  EXPECT_EQ(label.font().pixelSize(), 16);
  EXPECT_TRUE(label.font().bold());
  EXPECT_FALSE(label.font().italic());
  EXPECT_TRUE(Drawn("lbl_TextInfo(1)", QColor(255, 0, 0)));
  EXPECT_EQ(Ground("lbl_TextInfo(1)"), QColor(128, 128, 255)) << "the form's colour";
  EXPECT_GE(label.width(), label.fontMetrics().horizontalAdvance("Boiler 1"));
}

TEST_F(ScreenTest, ALabelFollowsItsControl) {
  OpenScreen(kTwoLocations);
  Label& control = monitor.main.lbl_TextInfo(1);
  const int width = Text(1).width();
  control.Caption = "A much longer text than before";
  EXPECT_GT(Text(1).width(), width);
  control.Left = 1500;
  EXPECT_EQ(Text(1).pos(), QPoint(100, 8));
  control.ForeColor = 0x00FF00;
  EXPECT_TRUE(Drawn("lbl_TextInfo(1)", QColor(0, 255, 0)));
  control.Visible = false;
  EXPECT_FALSE(Shown("lbl_TextInfo(1)"));
}

TEST_F(ScreenTest, AFontThatIsNotHereShowsAsTheDesktopsOwn) {
  OpenScreen("0\r\n\"T\",\"x\",0,0,\"No Such Font At All\",24,#FALSE#,#TRUE#,0\r\n");
  EXPECT_EQ(Text(1).font().family(), QApplication::font().family());
  EXPECT_EQ(Text(1).font().pixelSize(), 32);
  EXPECT_TRUE(Text(1).font().italic());
  EXPECT_EQ(monitor.main.lbl_TextInfo(1).TextFont->name, "No Such Font At All");
}

TEST_F(ScreenTest, MarksInALabelAreDrawnAsTheyAre) {
  OpenScreen("0\r\n\"T\",\"<h1>a</h1> & b &&\",0,0,\"Arial\",8,#FALSE#,#FALSE#,0\r\n");
  EXPECT_EQ(Text(1).textFormat(), Qt::PlainText);
  const QImage marked = Text(1).grab().toImage();
  monitor.main.lbl_TextInfo(1).Caption = "<h1>a</h1>  b &";
  EXPECT_NE(Text(1).grab().toImage().size(), marked.size());
  EXPECT_GT(marked.width(), Text(1).fontMetrics().horizontalAdvance("<h1>a</h1> & b &"));
}

// --- The whole screen ---

TEST_F(ScreenTest, AnEmptyScreenHoldsNoWidget) {
  Begin();
  EXPECT_EQ(WidgetsOnTheScreen(), 0);
}

TEST_F(ScreenTest, UnloadingLeavesNoWidget) {
  OpenScreen(kTwoLocations);
  monitor.main.RAM_LOC_CHECK(1).Visible = true;
  EXPECT_EQ(WidgetsOnTheScreen(), 6) << "two names, two values, a check box and a label";
  monitor.screen.UnloadObjects();
  EXPECT_EQ(WidgetsOnTheScreen(), 0);
}

TEST_F(ScreenTest, OneMemberCanBeUnloadedWhileItIsShown) {
  OpenScreen(kTwoLocations);
  monitor.main.RAM_LOC_VAL.Unload(1);
  EXPECT_EQ(Find("RAM_LOC_VAL(1)"), nullptr);
  EXPECT_TRUE(Shown("RAM_LOC_VAL(2)"));
  TextBox& again = monitor.main.RAM_LOC_VAL.Load(1);
  again.Visible = true;
  again.Text = "again";
  EXPECT_EQ(Box("RAM_LOC_VAL(1)").text(), "again");
}

TEST_F(ScreenTest, AnotherScreenReplacesTheFirst) {
  OpenScreen(ScreenOf(20));
  EXPECT_EQ(WidgetsOnTheScreen(), 40);
  OpenScreen(kTwoLocations);
  EXPECT_EQ(WidgetsOnTheScreen(), 5);
  EXPECT_EQ(Box("RAM_LOC_TEXT(1)").text(), "Flow");
}

TEST_F(ScreenTest, TheWindowMayGoBeforeTheScreen) {
  OpenScreen(kTwoLocations);
  window.reset();
  monitor.main.RAM_LOC_VAL(1).Text = "after";
  monitor.main.RAM_LOC_CHECK(1).Visible = true;
  monitor.main.lbl_TextInfo(1).Caption = "after";
  monitor.main.form.BackColor = 0;
  monitor.screen.UnloadObjects();
  EXPECT_EQ(monitor.main.MaxId, 0);
}

TEST_F(ScreenTest, TheScreenFillsTheWindowAndScrollsWhatIsBeyond) {
  OpenScreen(kTwoLocations);
  window->resize(1000, 600);
  auto* scroll = window->findChild<QScrollArea*>();
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return Get("screen").size() == scroll->viewport()->size(); }, 1000));
  EXPECT_FALSE(scroll->horizontalScrollBar()->isVisible());
  EXPECT_FALSE(scroll->verticalScrollBar()->isVisible());

  monitor.main.RAM_LOC_VAL(1).Left = ToUnits(2000);
  monitor.main.RAM_LOC_VAL(1).Top = ToUnits(1500);
  ASSERT_TRUE(QTest::qWaitFor([&] { return scroll->verticalScrollBar()->isVisible(); }, 1000));
  EXPECT_TRUE(scroll->horizontalScrollBar()->isVisible());
  scroll->horizontalScrollBar()->setValue(scroll->horizontalScrollBar()->maximum());
  scroll->verticalScrollBar()->setValue(scroll->verticalScrollBar()->maximum());
  EXPECT_FALSE(Get("RAM_LOC_VAL(1)").visibleRegion().isEmpty());
  EXPECT_EQ(Get("RAM_LOC_VAL(1)").visibleRegion().boundingRect(), QRect(0, 0, 120, 21));

  monitor.screen.UnloadObjects();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !scroll->verticalScrollBar()->isVisible(); }, 1000));
}

TEST_F(ScreenTest, ADeletedLabelNeedsNoRoom) {
  OpenScreen("0\r\n\"T\",\"x\",600,600,\"Arial\",8,#FALSE#,#FALSE#,0\r\n");
  const QSize before = Get("screen").sizeHint();
  Label& control = monitor.main.lbl_TextInfo(1);
  control.Visible = false;
  control.Left = ToUnits(3000);
  EXPECT_EQ(Get("screen").sizeHint(), before);
  control.Visible = true;
  EXPECT_GT(Get("screen").sizeHint().width(), 3000);
}

TEST_F(ScreenTest, TheFormsColourCanChange) {
  OpenScreen(kTwoLocations);
  EXPECT_EQ(Ground("screen"), QColor(128, 128, 255));
  monitor.main.form.BackColor = 0x00FF00;
  EXPECT_EQ(Ground("screen"), QColor(0, 255, 0));
}

TEST_F(ScreenTest, AValueRepaintsItsOwnBoxOnly) {
  OpenScreen(kTwoLocations);
  FinishPainting();
  PaintCount paints;
  monitor.main.RAM_LOC_VAL(2).Text = "1";
  ASSERT_TRUE(QTest::qWaitFor([&] { return paints.Of("RAM_LOC_VAL(2)") > 0; }, 1000));
  EXPECT_EQ(paints.Painted(), "RAM_LOC_VAL(2) ");
}

TEST_F(ScreenTest, TheSameValueAgainPaintsNothing) {
  OpenScreen(kTwoLocations);
  monitor.main.RAM_LOC_VAL(2).Text = "1";
  FinishPainting();
  PaintCount paints;
  monitor.main.RAM_LOC_VAL(2).Text = "1";
  monitor.main.RAM_LOC_VAL(1).ToolTipText = "another tip";
  FinishPainting();
  EXPECT_EQ(paints.Painted(), "StatusBar1(6) ");
}

// Values that come faster than anybody reads are painted now and then, the last one for certain.
TEST_F(ScreenTest, ManyValuesArePaintedTogetherAndTheLastOneStays) {
  OpenScreen(kTwoLocations);
  FinishPainting();
  PaintCount paints;
  for (int i = 0; i < 1000; ++i) {
    monitor.main.RAM_LOC_VAL(1).Text = std::to_string(i);
    QCoreApplication::sendPostedEvents();
  }
  const int before = paints.Of("RAM_LOC_VAL(1)");
  EXPECT_LE(before, 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return paints.Of("RAM_LOC_VAL(1)") > before; }, 1000));
  EXPECT_EQ(Box("RAM_LOC_VAL(1)").text(), "999");
}

}  // namespace
}  // namespace tarnlink
