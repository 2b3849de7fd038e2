// The screen by the keyboard: Tab in reading order, arrow keys, Enter, Delete, the Menu key, and
// the frame that tells where the keyboard is.

#include <QLabel>
#include <algorithm>
#include <cstdlib>

#include "ui/edit_fixture.h"
#include "ui/reading_order.h"

namespace tarnlink {
namespace {

class ScreenKeysTest : public EditUiTest {
 protected:
  void FocusOn(const std::string& name) {
    ClickAt(On(name));
    ASSERT_EQ(Focus(), name);
  }
  // How much a frame around a widget differs from the colour inside it, at the place where it
  // differs most.
  int MostContrast(const std::string& name) const {
    const QImage picture = Get(name).grab().toImage();
    const int inside = picture.pixelColor(picture.width() - 5, 4).lightness();
    int most = 0;
    for (int x = 0; x < picture.width(); ++x) {
      for (int y = 0; y < 3; ++y) {
        most = std::max(most, std::abs(picture.pixelColor(x, y).lightness() - inside));
      }
    }
    return most;
  }
  // Where so many strokes of Tab lead: "RAM_LOC_TEXT(1) RAM_LOC_VAL(1) ".
  std::string Tabs(int count, Qt::KeyboardModifiers modifiers = {}) {
    std::string names;
    for (int i = 0; i < count; ++i) {
      Key(Qt::Key_Tab, modifiers);
      names += Focus() + " ";
    }
    return names;
  }
};

// --- Reading order ---

class ReadingOrder : public testing::Test {
 protected:
  void Put(const char* name, const QRect& place) {
    auto* widget = new QWidget(&sheet_);
    widget->setObjectName(name);
    widget->setGeometry(place);
    widgets_.insert(widgets_.begin(), widget);
  }
  std::string Order() const {
    std::string names;
    for (const QWidget* widget : InReadingOrder(widgets_)) {
      names += widget->objectName().toStdString();
    }
    return names;
  }

 private:
  QWidget sheet_;
  std::vector<QWidget*> widgets_;
};

TEST_F(ReadingOrder, OfNothingIsNothing) { EXPECT_EQ(Order(), ""); }

TEST_F(ReadingOrder, GoesByLinesAndInThemFromTheLeft) {
  Put("d", {200, 50, 100, 20});
  Put("a", {0, 0, 100, 20});
  Put("c", {0, 50, 100, 20});
  Put("b", {200, 0, 100, 20});
  EXPECT_EQ(Order(), "abcd");
}

TEST_F(ReadingOrder, ALittleHigherOrLowerIsTheSameLine) {
  Put("b", {200, 0, 100, 20});
  Put("a", {0, 9, 100, 20});
  Put("c", {400, 5, 100, 20});
  Put("d", {0, 30, 100, 20});
  Put("e", {200, 24, 100, 20});
  EXPECT_EQ(Order(), "abcde");
}

TEST_F(ReadingOrder, HalfAHeightLowerIsTheNextLine) {
  Put("a", {200, 0, 100, 20});
  Put("b", {0, 11, 100, 20});
  EXPECT_EQ(Order(), "ab");
}

TEST_F(ReadingOrder, ATallBoxBelongsToTheLineItStartsIn) {
  Put("a", {0, 0, 100, 21});
  Put("b", {150, 0, 240, 42});
  Put("c", {0, 40, 100, 21});
  Put("d", {150, 44, 100, 21});
  EXPECT_EQ(Order(), "abcd");
}

TEST_F(ReadingOrder, OneAboveTheOtherGoesDownwards) {
  Put("c", {0, 60, 100, 20});
  Put("b", {0, 30, 100, 20});
  Put("a", {0, 0, 100, 20});
  EXPECT_EQ(Order(), "abc");
}

// --- Tab ---

TEST_F(ScreenKeysTest, TabGoesThroughTheScreenInReadingOrder) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  FocusOn("lbl_TextInfo(1)");
  EXPECT_EQ(Tabs(6),
            "RAM_LOC_CHECK(1) RAM_LOC_TEXT(1) RAM_LOC_VAL(1) "
            "RAM_LOC_CHECK(2) RAM_LOC_TEXT(2) RAM_LOC_VAL(2) ");
  EXPECT_EQ(Tabs(6, Qt::ShiftModifier),
            "RAM_LOC_TEXT(2) RAM_LOC_CHECK(2) "
            "RAM_LOC_VAL(1) RAM_LOC_TEXT(1) RAM_LOC_CHECK(1) lbl_TextInfo(1) ");
}

TEST_F(ScreenKeysTest, TabFollowsABoxThatWasMoved) {
  OpenScreen(kTwoLocations);
  DragBoxTo("RAM_LOC_VAL(2)", QPoint(300, 44));
  FocusOn("lbl_TextInfo(1)");
  EXPECT_EQ(Tabs(4), "RAM_LOC_TEXT(1) RAM_LOC_VAL(1) RAM_LOC_VAL(2) RAM_LOC_TEXT(2) ");
}

TEST_F(ScreenKeysTest, TabComesInAndGoesOut) {
  OpenScreen(kTwoLocations);
  Get("trvProject").setFocus();
  EXPECT_EQ(Tabs(5),
            "lbl_TextInfo(1) RAM_LOC_TEXT(1) RAM_LOC_VAL(1) RAM_LOC_TEXT(2) RAM_LOC_VAL(2) ");
  Key(Qt::Key_Tab);
  const QWidget* outside = QApplication::focusWidget();
  EXPECT_FALSE(Get("screen").isAncestorOf(outside)) << Focus();
  EXPECT_NE(Focus(), "screen");
  EXPECT_EQ(Tabs(5, Qt::ShiftModifier),
            "RAM_LOC_VAL(2) RAM_LOC_TEXT(2) RAM_LOC_VAL(1) RAM_LOC_TEXT(1) lbl_TextInfo(1) ");
  Key(Qt::Key_Tab, Qt::ShiftModifier);
  EXPECT_EQ(Focus(), "trvProject");
}

TEST_F(ScreenKeysTest, TabGoesPastAnEmptyScreen) {
  Begin();
  Get("trvProject").setFocus();
  std::string names;
  for (int i = 0; i < 6; ++i) names += Tabs(1);
  EXPECT_NE(names.find("trvProject"), std::string::npos) << "round: " << names;
}

TEST_F(ScreenKeysTest, AClickOnTheFreeScreenTakesTheKeyboard) {
  OpenScreen(kTwoLocations);
  FocusOn("RAM_LOC_VAL(2)");
  ClickAt(OnScreen(QPoint(400, 300)));
  EXPECT_EQ(Focus(), "screen");
  EXPECT_EQ(Tabs(1), "lbl_TextInfo(1) ");
}

// --- Arrow keys ---

TEST_F(ScreenKeysTest, AnArrowKeyMovesByAPixel) {
  OpenScreen(kTwoLocations);
  FocusOn("RAM_LOC_VAL(1)");
  Key(Qt::Key_Right);
  Key(Qt::Key_Right);
  Key(Qt::Key_Down);
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(162, 41, 120, 21));
  Key(Qt::Key_Left);
  Key(Qt::Key_Up);
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(161, 40, 120, 21));
  EXPECT_EQ(Focus(), "RAM_LOC_VAL(1)");
  EXPECT_TRUE(Changed());
  EXPECT_EQ(Entries(), "&Undo move of the value of Flow | [&Redo]");
  Undo();
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(160, 40, 120, 21)) << "all strokes at once";
  EXPECT_EQ(Focus(), "RAM_LOC_VAL(1)");
}

TEST_F(ScreenKeysTest, AnArrowKeyTakesTheWholeLocationByItsName) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  FocusOn("RAM_LOC_TEXT(1)");
  ASSERT_EQ(Place("RAM_LOC_CHECK(1)").topLeft(), QPoint(-4, 43));
  Key(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(Place("RAM_LOC_TEXT(1)").topLeft(), QPoint(29, 40)) << "188 units";
  EXPECT_EQ(Place("RAM_LOC_VAL(1)").topLeft(), QPoint(169, 40))
      << "the click had brought it to the name";
  EXPECT_EQ(Place("RAM_LOC_CHECK(1)").topLeft(), QPoint(8, 43));
}

TEST_F(ScreenKeysTest, WithTheGridOnShiftIsTheSmallStep) {
  OpenScreen(kTwoLocations);
  SetGrid(true);
  FocusOn("lbl_TextInfo(1)");
  Key(Qt::Key_Down);
  EXPECT_EQ(Place("lbl_TextInfo(1)").topLeft(), QPoint(16, 25)) << "the second multiple of 188";
  Key(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(Place("lbl_TextInfo(1)").topLeft(), QPoint(16, 26));
}

TEST_F(ScreenKeysTest, NothingGoesOverTheEdge) {
  OpenScreen(kTwoLocations);
  FocusOn("lbl_TextInfo(1)");
  for (int i = 0; i < 30; ++i) Key(Qt::Key_Up);
  for (int i = 0; i < 30; ++i) Key(Qt::Key_Left);
  EXPECT_EQ(Place("lbl_TextInfo(1)").topLeft(), QPoint(0, 0));
}

// --- Delete ---

TEST_F(ScreenKeysTest, DeleteAsksForALocation) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  for (const char* name : {"RAM_LOC_TEXT(1)", "RAM_LOC_VAL(1)"}) {
    FocusOn(name);
    const std::string before = Everything();
    const bool was_changed = Changed();
    ExpectDeleteQuestion().Press(Answer::kNo);
    Key(Qt::Key_Delete);
    EXPECT_EQ(Everything(), before) << name;
    EXPECT_EQ(Changed(), was_changed);
    EXPECT_EQ(Focus(), name);
  }
  ExpectDeleteQuestion().Press(Answer::kYes);
  Key(Qt::Key_Delete);
  EXPECT_FALSE(Shown("RAM_LOC_TEXT(1)"));
  EXPECT_FALSE(Shown("RAM_LOC_VAL(1)"));
  EXPECT_FALSE(Shown("RAM_LOC_CHECK(1)"));
  EXPECT_TRUE(Changed());
  EXPECT_EQ(Save().find("Flow"), std::string::npos);
}

TEST_F(ScreenKeysTest, DeleteTakesALabelAtOnce) {
  OpenScreen(kTwoLocations);
  FocusOn("lbl_TextInfo(1)");
  Key(Qt::Key_Delete);
  EXPECT_FALSE(Shown("lbl_TextInfo(1)"));
  EXPECT_EQ(Entries(), "&Undo deletion of Boiler 1 | [&Redo]");
}

TEST_F(ScreenKeysTest, AfterADeletionTheKeyboardIsAtTheNextInReadingOrder) {
  OpenScreen(ScreenOf(4));
  FocusOn("RAM_LOC_TEXT(2)");
  ExpectDeleteQuestion().Press(Answer::kYes);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Focus(), "RAM_LOC_TEXT(3)");
  FocusOn("RAM_LOC_VAL(3)");
  ExpectDeleteQuestion().Press(Answer::kYes);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Focus(), "RAM_LOC_TEXT(4)");
  ExpectDeleteQuestion().Press(Answer::kYes);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Focus(), "RAM_LOC_VAL(1)") << "after the last one, the one before it";
  ExpectDeleteQuestion().Press(Answer::kYes);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Focus(), "screen") << "nothing is left";
}

TEST_F(ScreenKeysTest, AfterAnEmptiedLabelTheKeyboardIsAtTheNext) {
  OpenScreen(kTwoLocations);
  FocusOn("lbl_TextInfo(1)");
  ExpectLabelText().Give("");
  Key(Qt::Key_Return);
  EXPECT_EQ(Focus(), "RAM_LOC_TEXT(1)");
}

TEST_F(ScreenKeysTest, DeleteOnACheckBoxOrTheScreenDoesNothing) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  ClickAt(OnScreen(QPoint(400, 300)));
  Key(Qt::Key_Delete);
  ClickAt(On("RAM_LOC_CHECK(1)"));
  Key(Qt::Key_Delete);
  EXPECT_TRUE(Shown("RAM_LOC_TEXT(1)"));
  EXPECT_FALSE(Changed());
}

// --- Enter and the Menu key ---

TEST_F(ScreenKeysTest, EnterAndF2EditALabel) {
  OpenScreen(kTwoLocations);
  FocusOn("lbl_TextInfo(1)");
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2}) {
    const std::string text = "Text " + std::to_string(key);
    ExpectLabelText().Give(text);
    Key(key);
    EXPECT_EQ(Get<QLabel>("lbl_TextInfo(1)").text().toStdString(), text);
    EXPECT_EQ(Focus(), "lbl_TextInfo(1)");
  }
}

TEST_F(ScreenKeysTest, ShiftAndEnterEnlargeAValueBox) {
  OpenScreen(kTwoLocations);
  FocusOn("RAM_LOC_VAL(1)");
  Key(Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(160, 40, 240, 42));
  EXPECT_EQ(Focus(), "RAM_LOC_VAL(1)");
  Key(Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(Place("RAM_LOC_VAL(1)"), QRect(160, 40, 120, 21));
}

TEST_F(ScreenKeysTest, TheMenuKeyIsTheRightButton) {
  OpenScreen(kTwoLocations);
  FocusOn("lbl_TextInfo(1)");
  world.dialogs().ExpectFont().GiveFont({.name = "DejaVu Sans", .size = 18});
  Key(Qt::Key_Menu);
  EXPECT_EQ(Get("lbl_TextInfo(1)").font().pixelSize(), 24);
  world.dialogs().ExpectColour().GiveColour(0x00FF00);
  Key(Qt::Key_Menu, Qt::ShiftModifier);
  EXPECT_EQ(Get("lbl_TextInfo(1)").palette().color(QPalette::WindowText), QColor(0, 255, 0));
  FocusOn("RAM_LOC_TEXT(1)");
  Key(Qt::Key_Menu);  // asks nothing
  ClickAt(OnScreen(QPoint(400, 300)));
  world.dialogs().ExpectColour().GiveColour(0x0000FF);
  Key(Qt::Key_Menu);
  EXPECT_EQ(Get("screen").palette().color(QPalette::Window), QColor(255, 0, 0));
}

// --- Where the keyboard is ---

TEST_F(ScreenKeysTest, AFrameShowsWhereTheKeyboardIs) {
  ShowChecks();
  OpenScreen(kTwoLocations);
  for (const char* name :
       {"RAM_LOC_TEXT(1)", "RAM_LOC_VAL(1)", "lbl_TextInfo(1)", "RAM_LOC_CHECK(1)"}) {
    Get("trvProject").setFocus();
    const QImage without = Get(name).grab().toImage();
    Get(name).setFocus(Qt::TabFocusReason);
    EXPECT_NE(Get(name).grab().toImage(), without) << name;
    Get("trvProject").setFocus();
    EXPECT_EQ(Get(name).grab().toImage(), without) << name;
  }
}

TEST_F(ScreenKeysTest, TheFrameIsSeenOnEveryColour) {
  OpenScreen(kTwoLocations);
  for (const Colour ground : {0xFFFFFF, 0x000000, 0xC83C00, 0x808080, 0xFFFF00, 0x8080FF}) {
    monitor.main.RAM_LOC_TEXT(1).BackColor = ground;
    monitor.main.lbl_TextInfo(1).BackColor = ground;
    for (const char* name : {"RAM_LOC_TEXT(1)", "lbl_TextInfo(1)"}) {
      Get(name).setFocus(Qt::TabFocusReason);
      EXPECT_GT(MostContrast(name), 60) << name << " on " << std::hex << ground;
    }
  }
}

TEST_F(ScreenKeysTest, AScreenReaderHearsWhoseValueItIs) {
  OpenScreen(kTwoLocations);
  const auto described = [this](const std::string& box, const QString& name) {
    return QTest::qWaitFor([&] { return Get(box).accessibleDescription() == name; }, 2000);
  };
  EXPECT_EQ(Get("RAM_LOC_VAL(2)").accessibleName(), "Value 2");
  EXPECT_TRUE(described("RAM_LOC_VAL(2)", "Status"));
  monitor.main.RAM_LOC_TEXT(2).Text = "Return";
  EXPECT_TRUE(described("RAM_LOC_VAL(2)", "Return"));
  EXPECT_EQ(Get("lbl_TextInfo(1)").objectName(), "lbl_TextInfo(1)");
  Click("Toolbar1(1)");
  EXPECT_TRUE(described("RAM_LOC_VAL(3)", "Name 2"));
  EXPECT_EQ(Get("RAM_LOC_TEXT(3)").accessibleName(), "Name 2");
}

}  // namespace
}  // namespace tarnlink
