#include "common/dialog_controls.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnlink {
namespace {

TEST(GroupBox, ShowsItsCaptionAndTellsItsViewOfAnother) {
  GroupBox frame("frmAddress", "Address");
  EXPECT_EQ(frame.name(), "frmAddress");
  EXPECT_EQ(frame.Caption.get(), "Address");
  int told = 0;
  frame.SetView([&] { ++told; });
  frame.Caption = "ID";
  frame.Caption = "ID";
  EXPECT_EQ(told, 1);
}

TEST(SpinButton, PassesItsStepsOnWhileItIsEnabled) {
  SpinButton button("ud_Col");
  button.Press(1);
  std::vector<int> steps;
  button.Step = [&](int step) { steps.push_back(step); };
  button.Press(1);
  button.Press(-1);
  button.Enabled = false;
  button.Press(1);
  EXPECT_EQ(steps, (std::vector<int>{1, -1}));
}

class APickBox : public testing::Test {
 protected:
  APickBox() {
    box.List = {{"0x03", 10}, {"0x04", 11}, {"0x03", 12}};
    box.Click = [this] { ++clicks; };
  }
  // "0x03 at 0".
  std::string Shown() { return box.Text.get() + " at " + std::to_string(box.ListIndex); }

  PickBox box{"CmbFunc"};
  int clicks = 0;
};

TEST_F(APickBox, HasNoRowPickedAtFirst) {
  EXPECT_EQ(Shown(), " at -1");
  EXPECT_EQ(clicks, 0);
}

TEST_F(APickBox, SelectsARowWithItsTextAndFiresNothing) {
  box.Select(1);
  EXPECT_EQ(Shown(), "0x04 at 1");
  EXPECT_EQ(clicks, 0);
}

TEST_F(APickBox, SelectsTheFirstRowOfATextAndFiresNothing) {
  box.SelectText("0x03");
  EXPECT_EQ(Shown(), "0x03 at 0");
  box.SelectText("0X04");
  EXPECT_EQ(Shown(), "0X04 at -1");
  EXPECT_EQ(clicks, 0);
}

TEST_F(APickBox, KeepsItsTextWhenARowThatIsNotThereIsSelected) {
  for (const int index : {-1, 3, 1000}) {
    box.Select(1);
    box.Select(index);
    EXPECT_EQ(Shown(), "0x04 at -1") << index;
  }
}

TEST_F(APickBox, ClicksWhenARowIsPickedAlsoTheSameAgain) {
  box.Pick(2);
  EXPECT_EQ(Shown(), "0x03 at 2");
  box.Pick(2);
  EXPECT_EQ(clicks, 2);
}

TEST_F(APickBox, PicksTheFirstRowOfATextThatIsAccepted) {
  box.Accept("0x03");
  EXPECT_EQ(Shown(), "0x03 at 0");
  EXPECT_EQ(clicks, 1);
}

TEST_F(APickBox, HasNoRowForATextThatIsNotInTheList) {
  for (const char* text : {"0x0", "0X03", " 0x03", ""}) {
    box.Select(1);
    box.Accept(text);
    EXPECT_EQ(Shown(), std::string(text) + " at -1");
  }
  EXPECT_EQ(clicks, 4);
}

TEST_F(APickBox, ShowsRowAndTextBeforeItClicks) {
  std::string seen;
  box.Click = [&] { seen = Shown(); };
  box.Pick(1);
  EXPECT_EQ(seen, "0x04 at 1");
  box.Accept("Select");
  EXPECT_EQ(seen, "Select at -1");
}

TEST_F(APickBox, TakesNothingFromTheUserWhileItIsDisabled) {
  box.Select(1);
  box.Enabled = false;
  box.Pick(0);
  box.Accept("0x03");
  EXPECT_EQ(Shown(), "0x04 at 1");
  EXPECT_EQ(clicks, 0);
  box.Select(0);
  EXPECT_EQ(Shown(), "0x03 at 0");
}

TEST_F(APickBox, NeedsNobodyWhoListens) {
  box.Click = nullptr;
  box.Pick(1);
  box.Accept("x");
  EXPECT_EQ(Shown(), "x at -1");
}

}  // namespace
}  // namespace tarnlink
