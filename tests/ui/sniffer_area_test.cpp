// The sniffer's items under mouse and keyboard, and the settings of one.

#include <QCheckBox>
#include <QDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>

#include "ui/sniffer_fixture.h"
#include "ui/units.h"

namespace tarnlink {
namespace {

// --- The mouse -----------------------------------------------------------------------------------

class SnifferAreaTest : public SnifferUiTest {
 protected:
  SnifferAreaTest() { Window().resize(1000, 680); }
  // From an item to the one that stands right of it, or below.
  static QPoint CellRight() { return {ToPixels(kCellWidth), 0}; }
  static QPoint CellBelow() { return {0, ToPixels(kCellHeight)}; }
  // A place on the part of the window below the items.
  static QPoint BelowTheView() { return On(Window(), "txt_Find"); }
};

TEST_F(SnifferAreaTest, DragsAnItemToTheCellWhereItIsLetGo) {
  PlaceItems(4);
  ASSERT_EQ(Items(), "1 2 3 4");
  Grab("RAM_TEXT(1)", CellRight());
  EXPECT_TRUE(Dragging());
  Release();
  EXPECT_FALSE(Dragging());
  EXPECT_EQ(Items(), "2 1 3 4");
  Drag("RAM_TEXT(1)", CellBelow());
  EXPECT_EQ(Items(), "2 4 3 1");
}

TEST_F(SnifferAreaTest, LeavesAnItemWhereItIsAfterAClickOrAStir) {
  PlaceItems(3);
  Click("RAM_TEXT(1)");
  Grab("RAM_TEXT(2)", QPoint(2, 2));
  EXPECT_FALSE(Dragging());
  Release();
  EXPECT_EQ(Items(), "1 2 3");
  EXPECT_EQ(Focus(Window()), "RAM_TEXT(2)");
}

TEST_F(SnifferAreaTest, GivesADragUpByEscape) {
  PlaceItems(3);
  Grab("RAM_TEXT(1)", CellBelow());
  Key(Qt::Key_Escape);
  EXPECT_FALSE(Dragging());
  Release();
  EXPECT_EQ(Items(), "1 2 3");
  EXPECT_TRUE(Window().isVisible());
}

TEST_F(SnifferAreaTest, GivesADragUpWhenABoxComesUp) {
  PlaceItems(3);
  Grab("RAM_TEXT(1)", CellBelow());
  QDialog box(&Window());
  box.open();
  EXPECT_FALSE(Dragging());
  QTest::mouseRelease(box.windowHandle(), Qt::LeftButton);
  box.close();
  Activated("frmSniffer");
  MoveTo(On(Window(), "RAM_TEXT(1)") + CellBelow() / 2);
  EXPECT_FALSE(Dragging());
  EXPECT_EQ(Items(), "1 2 3");
  Drag("RAM_TEXT(1)", CellRight());
  EXPECT_EQ(Items(), "2 1 3");
}

TEST_F(SnifferAreaTest, GivesADragUpWhenAnotherWindowComesUp) {
  PlaceItems(3);
  Grab("RAM_TEXT(1)", CellBelow());
  QDialog other(&Window());
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return other.isActiveWindow(); }, 2000));
  EXPECT_FALSE(Dragging());
  Release();
  EXPECT_EQ(Items(), "1 2 3");
}

TEST_F(SnifferAreaTest, GivesADragUpWhoseButtonCameUpElsewhere) {
  PlaceItems(3);
  Grab("RAM_TEXT(1)", CellBelow());
  QWindow other;
  other.setFlags(Qt::ToolTip | Qt::WindowDoesNotAcceptFocus);
  other.show();
  QTest::mouseRelease(&other, Qt::LeftButton);
  ASSERT_TRUE(Dragging());
  MoveTo(On(Window(), "RAM_TEXT(1)") + CellBelow() / 2);
  EXPECT_FALSE(Dragging());
  EXPECT_EQ(Items(), "1 2 3");
}

TEST_F(SnifferAreaTest, LeavesADragAloneUnderOtherButtons) {
  PlaceItems(3);
  Grab("RAM_TEXT(1)", CellRight());
  QTest::mousePress(Window().windowHandle(), Qt::RightButton, {}, pointer);
  QTest::mouseRelease(Window().windowHandle(), Qt::RightButton, {}, pointer);
  EXPECT_TRUE(Dragging());
  Release();
  EXPECT_EQ(Items(), "2 1 3");
}

TEST_F(SnifferAreaTest, GivesADragUpThatEndsOutOfSight) {
  PlaceItems(200);
  Grab("RAM_TEXT(1)", CellBelow());
  MoveTo(BelowTheView());
  Release();
  EXPECT_FALSE(Dragging());
  EXPECT_EQ(Items().substr(0, 8), "1 2 3 4 ");
  EXPECT_TRUE(InSight("RAM_TEXT(1)"));
}

TEST_F(SnifferAreaTest, ScrollsAsADragComesToTheEdge) {
  PlaceItems(200);
  Grab("RAM_TEXT(1)", CellBelow());
  const QWidget* view = Scroller().viewport();
  const QPoint edge = view->mapTo(&Window(), QPoint(view->width() / 3, view->height() - 3));
  for (int i = 0; i < 10; ++i) MoveTo(edge - QPoint(0, i % 2));
  EXPECT_GT(Scroller().verticalScrollBar()->value(), 20);
  Release();
  EXPECT_TRUE(InSight("RAM_TEXT(1)"));
  EXPECT_NE(Items().substr(0, 4), "1 2 ");
}

TEST_F(SnifferAreaTest, KeepsAnItemDraggedWhileFramesComeAndItemsAreAdded) {
  PlaceItems(3);
  Grab("RAM_TEXT(1)", CellRight());
  Exchange(0x1001, 1, 2);
  Exchange(0x2000, 1, 2);
  Release();
  EXPECT_EQ(Items(), "2 1 3 4");
  EXPECT_EQ(Text("RAM_VALUE(1)"), "0x0102");
}

// --- The keyboard --------------------------------------------------------------------------------

TEST_F(SnifferAreaTest, StepsAnItemByTheArrowKeysAndKeepsItInSight) {
  PlaceItems(200);
  Click("RAM_TEXT(1)");
  Key(Qt::Key_Right);
  EXPECT_EQ(Items().substr(0, 6), "2 1 3 ");
  Key(Qt::Key_Left);
  EXPECT_EQ(Items().substr(0, 6), "1 2 3 ");
  for (int i = 0; i < 100; ++i) {
    Key(Qt::Key_Down);
    ASSERT_TRUE(InSight("RAM_TEXT(1)")) << i;
    ASSERT_TRUE(InSight("RAM_VALUE(1)")) << i;
  }
  EXPECT_EQ(Items().substr(0, 4), "3 2 ");
  for (int i = 0; i < 100; ++i) Key(Qt::Key_Up);
  EXPECT_TRUE(InSight("RAM_TEXT(1)"));
  EXPECT_EQ(Focus(Window()), "RAM_TEXT(1)");
}

TEST_F(SnifferAreaTest, IsReachedByTabInReadingOrderBehindTheList) {
  PlaceItems(5);
  Drag("RAM_TEXT(1)", CellBelow());
  ASSERT_EQ(Items(), "3 2 1 4 5");
  Part("List_DisplayDetectedID").setFocus();
  EXPECT_EQ(Walk(Window(), 10),
            "RAM_TEXT(3) RAM_TEXT(2) RAM_TEXT(1) RAM_TEXT(4) RAM_TEXT(5) Command2 cmd_Clear "
            "txt_Find cmd_Find LogCheck");
  for (int i = 0; i < 6; ++i) Key(Qt::Key_Tab, Qt::ShiftModifier);
  EXPECT_EQ(Focus(Window()), "RAM_TEXT(4)");
}

TEST_F(SnifferAreaTest, TellsAScreenReaderWhatItsBoxesAre) {
  Exchange(0xF1, 0x2D, 0);
  Exchange(0x77, 0, 0);
  EXPECT_EQ(Part("RAM_TEXT(1)").accessibleName(), "Item 1");
  EXPECT_EQ(Part("RAM_ID(1)").accessibleName(), "ID of Flow");
  EXPECT_EQ(Part("RAM_VALUE(1)").accessibleName(), "Value of Flow");
  EXPECT_EQ(Part("RAM_VALUE(2)").accessibleName(), "Value of 2 Name");
  DoubleClick(On(Window(), "RAM_TEXT(1)"));
  Enter(Settings(), "txt_SniffAlias", "Feed");
  Key(Settings(), Qt::Key_Return);
  EXPECT_EQ(Part("RAM_VALUE(1)").accessibleName(), "Value of Feed");
}

// --- Room ----------------------------------------------------------------------------------------

TEST_F(SnifferAreaTest, ScrollsSidewaysWhereItIsTooNarrow) {
  PlaceItems(3);
  Scroller().resize(250, Scroller().height());
  EXPECT_GT(Scroller().horizontalScrollBar()->maximum(), 0);
  Scroller().horizontalScrollBar()->setValue(Scroller().horizontalScrollBar()->maximum());
  EXPECT_TRUE(InSight("RAM_VALUE(1)"));
  EXPECT_EQ(Items(), "1 2 3");
}

TEST_F(SnifferAreaTest, ShowsTheBeginningOfALongNameAndAllDigitsOfAWord) {
  Exchange(0x01, 0xFF, 0xFF);
  SniffLocation item = tools->sniffer.SniffItems.at(1);
  item.Alias = "flow_temperature_of_the_second_heating_circuit";
  tools->sniffer.ChangeItem(1, item);
  EXPECT_EQ(Part<QLineEdit>("RAM_TEXT(1)").cursorPosition(), 0);
  EXPECT_EQ(Part("RAM_TEXT(1)").toolTip(), "flow_temperature_of_the_second_heating_circuit");
  const auto& value = Part<QLineEdit>("RAM_VALUE(1)");
  constexpr int kMargins = 10;  // pixels
  EXPECT_GE(value.width(), value.fontMetrics().horizontalAdvance(value.text()) + kMargins);
}

TEST_F(SnifferAreaTest, LaysItsItemsOutAnewInAnotherWidth) {
  PlaceItems(3);
  const int before = Part("RAM_TEXT(3)").x();
  Window().resize(1500, 680);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Part("RAM_TEXT(3)").x() > before; }, 2000));
}

// --- Settings ------------------------------------------------------------------------------------

class SniffSettingsUi : public SnifferAreaTest {
 protected:
  SniffSettingsUi() {
    Exchange(0xF1, 0x2D, 0x07);
    DoubleClick(On(Window(), "RAM_TEXT(1)"));
    Activated("frm_Sniff_Settings");
  }
  static bool IsOpen() { return Settings().isVisible(); }
};

TEST_F(SniffSettingsUi, AreTakenOverByAClickOnOk) {
  ASSERT_TRUE(IsOpen());
  EXPECT_EQ(In<QLineEdit>(Settings(), "txt_SniffAlias").text(), "Flow");
  Click(Settings(), "opt_sniff_storage_type(0)");
  EXPECT_FALSE(In(Settings(), "opt_Representation(1)").isEnabled());
  Enter(Settings(), "txt_SniffBitAddress", "2");
  Click(Settings(), "cmd_Ok");
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(Text("RAM_VALUE(1)"), "TRUE");
  EXPECT_TRUE(tools->sniffer.form.Visible);
}

TEST_F(SniffSettingsUi, AreDroppedByEscapeAndByCancel) {
  Enter(Settings(), "txt_SniffAlias", "x");
  Key(Settings(), Qt::Key_Escape);
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(Text("RAM_TEXT(1)"), "Flow");
  EXPECT_TRUE(Window().isVisible());
  DoubleClick(On(Window(), "RAM_TEXT(1)"));
  Enter(Settings(), "txt_SniffAlias", "x");
  Click(Settings(), "cmd_Cancel");
  EXPECT_EQ(Text("RAM_TEXT(1)"), "Flow");
}

TEST_F(SniffSettingsUi, StayOpenWithAWordOnWhatIsWrong) {
  Enter(Settings(), "txt_SniffAddress", "x");
  Key(Settings(), Qt::Key_Return);
  ASSERT_TRUE(IsOpen());
  EXPECT_EQ(Caption(Settings(), "lbl_Wrong"), "The ID is 1 to 4 hexadecimal digits.");
  EXPECT_TRUE(In(Settings(), "lbl_Wrong").isVisible());
  Enter(Settings(), "txt_SniffAddress", "f2");
  Key(Settings(), Qt::Key_Return);
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(Text("RAM_ID(1)"), "00F2");
}

TEST_F(SniffSettingsUi, DeleteTheItem) {
  Click(Settings(), "cmdDeleteLocation");
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(Items(), "");
  EXPECT_FALSE(Part("RAM_VALUE(1)").isVisible());
}

TEST_F(SniffSettingsUi, AreWorkedThroughByTheKeyboard) {
  EXPECT_EQ(Focus(Settings()), "txt_SniffAlias");
  // The bit number is off.
  EXPECT_EQ(Walk(Settings(), 11),
            "txt_SniffAddress opt_sniff_storage_type(1) opt_Representation(0) chk_Log chk_UseDDE "
            "txt_ExcelColumn ud_Col.Up ud_Col.Down cmdDeleteLocation cmd_Ok cmd_Cancel");
  In(Settings(), "opt_Representation(0)").setFocus();
  Key(Settings(), Qt::Key_Right);
  Key(Settings(), Qt::Key_Return);
  EXPECT_FALSE(IsOpen());
  EXPECT_EQ(Text("RAM_VALUE(1)"), "0x2D");
}

TEST_F(SniffSettingsUi, AreOpenedByEnterOnAnItem) {
  Key(Settings(), Qt::Key_Escape);
  Activated("frmSniffer");
  Part("RAM_TEXT(1)").setFocus();
  Key(Qt::Key_Return);
  ASSERT_TRUE(IsOpen());
  Exchange(0xF1, 9, 0);  // the sniffer goes on behind them
  EXPECT_EQ(Text("RAM_VALUE(1)"), "9");
}

}  // namespace
}  // namespace tarnlink
