// Text labels under the mouse: font, colour, text, and the deletion by an empty text.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "form/edit_fixture.h"

namespace tarnlink {
namespace {

class LabelEdits : public EditTest {
 protected:
  LabelEdits() { OpenScreen({LabelLine("Boiler", {500, 900}), LabelLine("Tank", {500, 1200})}); }

  const Label& First() { return main().lbl_TextInfo(1); }
};

TEST_F(LabelEdits, AnyPressChangesTheScreen) {
  for (const MousePress& press : {LeftPress(), ShiftLeftPress(), RightPress(), ShiftRightPress()}) {
    OpenScreen({LabelLine("Boiler", {500, 900})});
    EXPECT_FALSE(Changed());
    const std::string before = Everything();
    if (press.button == MouseButton::kRight) {
      if (press.shift) {
        world.dialogs().ExpectColour().Cancel();
      } else {
        world.dialogs().ExpectFont().Cancel();
      }
    }
    GrabLabel(1, press);
    EXPECT_TRUE(Changed());
    EXPECT_EQ(Title(), "TarnLink - boiler.wcr *");
    main().form.DragCancel();
    EXPECT_EQ(Everything(), before);
    EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
    main().WCRChanged = false;
  }
}

TEST_F(LabelEdits, TheTitleShowsTheChangeWhileTheDialogIsUp) {
  world.dialogs().ExpectFont().While([this] { EXPECT_TRUE(Changed()); });
  GrabLabel(1, RightPress());
}

TEST_F(LabelEdits, TheLeftButtonDragsWithShiftToo) {
  GrabLabel(1, ShiftLeftPress());
  EXPECT_EQ(main().DragSource, &First());
  EXPECT_FALSE(First().Visible);
}

TEST_F(LabelEdits, TheRightButtonChoosesTheFont) {
  const Font font{.name = "Courier", .size = 24, .bold = true, .italic = true};
  world.dialogs().ExpectFont().GiveFont(font);
  GrabLabel(1, RightPress());
  EXPECT_EQ(First().TextFont.get(), font);
  EXPECT_EQ(First().ForeColor.get(), kBlack);
  EXPECT_EQ(main().lbl_TextInfo(2).TextFont->name, "Arial");
  EXPECT_TRUE(First().Visible);
  EXPECT_EQ(main().DragSource, nullptr);
  Save();
  EXPECT_NE(world.disk().Get(kScreen).find(R"("T","Boiler",900,500,"Courier",24,#TRUE#,#TRUE#,0)"),
            std::string::npos);
}

TEST_F(LabelEdits, TheRightButtonWithShiftChoosesTheTextsColour) {
  world.dialogs().ExpectColour().GiveColour(0x00FF00);
  GrabLabel(1, ShiftRightPress());
  EXPECT_EQ(First().ForeColor.get(), 0x00FF00);
  EXPECT_EQ(First().BackColor.get(), 255);
  EXPECT_EQ(main().lbl_TextInfo(2).ForeColor.get(), kBlack);
  EXPECT_EQ(main().form.BackColor.get(), 255);
}

TEST_F(LabelEdits, ADoubleClickAsksForTheText) {
  ExpectLabelText().Give("Cellar").While([this] { EXPECT_TRUE(Changed()); });
  main().lbl_TextInfo.DblClick(1);
  EXPECT_EQ(world.dialogs().last_input_text(), "Boiler");
  EXPECT_EQ(First().Caption.get(), "Cellar");
  EXPECT_TRUE(First().Visible);
  EXPECT_EQ(main().lbl_TextInfo(2).Caption.get(), "Tank");
  EXPECT_TRUE(Changed());
}

TEST_F(LabelEdits, QuotesBecomeBlanksAndTheEndsAreTrimmed) {
  struct Row {
    std::string typed, shown;
  };
  for (const Row& row : {Row{"say \"hi\" now", "say  hi  now"}, Row{"  Boiler 2 ", "Boiler 2"},
                         Row{"\"Boiler\"", "Boiler"}, Row{"\" a\"b \"", "a b"}, Row{"a  b", "a  b"},
                         Row{"Wärme 5 €", "Wärme 5 €"}, Row{"it's, so", "it's, so"}}) {
    TypeLabel(1, row.typed);
    EXPECT_EQ(First().Caption.get(), row.shown);
    EXPECT_TRUE(First().Visible);
  }
}

TEST_F(LabelEdits, AnEmptyTextDeletesTheLabel) {
  for (const std::string typed : {"", "   ", "\"\"", " \" \" "}) {
    OpenScreen({LabelLine("Boiler", {500, 900}), LabelLine("Tank", {500, 1200})});
    TypeLabel(1, typed);
    EXPECT_FALSE(First().Visible) << typed;
    EXPECT_EQ(First().Caption.get(), "Boiler");
    EXPECT_EQ(main().TextInfoCount, 2);
    EXPECT_TRUE(Changed());
    Save();
    EXPECT_EQ(world.disk().Get(kScreen), FileText({"255", LabelLine("Tank", {500, 1200})}));
  }
}

TEST_F(LabelEdits, ACancelledTextChangesNothingOfTheLabel) {
  const std::string before = Everything();
  ExpectLabelText().Cancel();
  main().lbl_TextInfo.DblClick(1);
  EXPECT_EQ(Everything(), before);
  EXPECT_TRUE(Changed());
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
}

TEST_F(LabelEdits, ADoubleClickThatBeganAsAPressLeavesTheLabelInPlace) {
  GrabLabel(1, LeftPress(20, 20));
  TypeLabel(1, "Cellar");
  EXPECT_EQ(First().Caption.get(), "Cellar");
  EXPECT_EQ(PlaceOf(First()), "500,900");
  EXPECT_TRUE(First().Visible);
  EXPECT_EQ(main().DragSource, nullptr);
}

}  // namespace
}  // namespace tarnlink
