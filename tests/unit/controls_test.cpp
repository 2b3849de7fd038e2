#include "common/controls.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/control_array.h"
#include "common/run_time_error.h"

namespace tarnlink {
namespace {

template <class Call>
int CodeOf(Call call) {
  try {
    call();
    return 0;
  } catch (const RunTimeError& error) {
    return error.code();
  }
}

using Log = std::vector<std::string>;

TEST(Property, TellsTheViewOfEachChangeAndOfNothingElse) {
  Label label("lbl_Text", "Flow");
  int told = 0;
  label.SetView([&] { ++told; });
  label.Caption = "Flow";
  label.Visible = true;
  EXPECT_EQ(told, 0);
  label.Caption = "Return";
  label.Top = 120.0F;
  label.Visible = false;
  label.ToolTipText = "t_return";
  EXPECT_EQ(told, 4);
  label.SetView(nullptr);
  label.Caption = "Flow";
  EXPECT_EQ(told, 4);
}

TEST(Property, TakesTheValueOfAnotherProperty) {
  TextBox from("a");
  TextBox to("b");
  int told = 0;
  to.SetView([&] { ++told; });
  from.Text = "21";
  to.Text = from.Text;
  EXPECT_EQ(to.Text.get(), "21");
  EXPECT_EQ(told, 1);
  to.Text = "22";
  EXPECT_EQ(from.Text.get(), "21");
}

TEST(Control, HasItsGivenName) { EXPECT_EQ(TextBox("txt_Alias").name(), "txt_Alias"); }

TEST(TextBox, FiresChangeAfterTheViewWasToldWhateverTheReason) {
  TextBox box("txt_Address");
  Log log;
  box.SetView([&] { log.push_back("view"); });
  box.Change = [&] { log.push_back("Change " + box.Text.get()); };
  box.Text = "1";
  box.Text = "1";
  box.Locked = true;
  EXPECT_EQ(log, (Log{"view", "Change 1", "view"}));
}

TEST(CheckBox, FiresClickOnEachChangeOfItsValue) {
  CheckBox box("chk_Log", "Log");
  int clicks = 0;
  box.Click = [&] { ++clicks; };
  box.Value = true;
  box.Value = true;
  box.Caption = "Logging";
  EXPECT_EQ(clicks, 1);
  box.Value = false;
  EXPECT_EQ(clicks, 2);
}

TEST(CommandButton, IsPressedOnlyWhileItIsEnabledAndVisible) {
  CommandButton button("cmd_OptionsOk", "OK");
  button.Press();
  int clicks = 0;
  button.Click = [&] { ++clicks; };
  button.Press();
  EXPECT_EQ(clicks, 1);
  button.Enabled = false;
  button.Press();
  button.Enabled = true;
  button.Visible = false;
  button.Press();
  EXPECT_EQ(clicks, 1);
}

TEST(Slider, HoldsItsValueInsideItsRange) {
  Slider slider("sld_MsgTimeout", 0, 5, 3);
  EXPECT_EQ(slider.Value.get(), 3);
  slider.SetValue(9);
  EXPECT_EQ(slider.Value.get(), 5);
  slider.Value = -1;
  EXPECT_EQ(slider.Value.get(), 0);
  EXPECT_EQ(Slider("s", 2, 4, 0).Value.get(), 2);
}

TEST(Slider, FiresChangeWithAValueThatStands) {
  Slider slider("sld_MsgTimeout", 0, 5, 3);
  std::vector<int> seen;
  slider.SetView([&] { seen.push_back(slider.Value); });
  slider.Change = [&] { seen.push_back(100 + slider.Value); };
  slider.Value = 9;
  EXPECT_EQ(seen, (std::vector<int>{5, 105}));
}

TEST(ComboBox, FiresChangeForItsTextNotForItsList) {
  ComboBox box("cmbClass");
  int changes = 0;
  box.Change = [&] { ++changes; };
  box.List = {{"Class 1", 1}, {"Class 2", 2}};
  EXPECT_EQ(changes, 0);
  box.Text = "Class 2";
  EXPECT_EQ(changes, 1);
}

struct Group : testing::Test {
  Group() {
    group.Click = [this](int index) { clicks.push_back(index); };
  }

  OptionGroup group{"opt_Protocol", {"TarnLink", "ZOLT", "ModBus"}};
  std::vector<int> clicks;
};

using AnOptionGroup = Group;

TEST_F(AnOptionGroup, NamesItsButtonsByTheirIndex) {
  EXPECT_EQ(group.count(), 3);
  EXPECT_EQ(group(1).name(), "opt_Protocol(1)");
  EXPECT_EQ(group(2).Caption.get(), "ModBus");
}

TEST_F(AnOptionGroup, HasNoneSetAtFirst) { EXPECT_EQ(group.Selected(), -1); }

TEST_F(AnOptionGroup, ClearsTheOthersWhenOneIsSet) {
  group.Select(1);
  group.Select(2);
  EXPECT_EQ(group.Selected(), 2);
  EXPECT_FALSE(group(1).Value);
  EXPECT_EQ(clicks, (std::vector<int>{1, 2}));
}

TEST_F(AnOptionGroup, ClicksWhenTheValueOfAButtonIsSet) {
  group(0).Value = true;
  group(2).Value = true;
  EXPECT_EQ(group.Selected(), 2);
  EXPECT_EQ(clicks, (std::vector<int>{0, 2}));
}

TEST_F(AnOptionGroup, DoesNotClickWhenTheProgramSetsWhatIsSet) {
  group.Select(1);
  group.Select(1);
  EXPECT_EQ(clicks, (std::vector<int>{1}));
}

TEST_F(AnOptionGroup, ClicksAgainWhenTheUserChoosesWhatIsSet) {
  group.Choose(1);
  group.Choose(1);
  EXPECT_EQ(clicks, (std::vector<int>{1, 1}));
}

TEST_F(AnOptionGroup, IsClearedWithoutAClick) {
  group.Select(1);
  group.Clear();
  EXPECT_EQ(group.Selected(), -1);
  EXPECT_EQ(clicks, (std::vector<int>{1}));
}

TEST_F(AnOptionGroup, HasNoButtonOutsideItsRange) {
  EXPECT_EQ(CodeOf([&] { group(3); }), kSubscript);
  EXPECT_EQ(CodeOf([&] { group(-1); }), kSubscript);
  EXPECT_EQ(CodeOf([&] { group.Select(3); }), kSubscript);
  EXPECT_EQ(CodeOf([&] { group.Choose(-1); }), kSubscript);
}

TEST(ControlArray, BeginsWithAHiddenTemplate) {
  const ControlArray<TextBox> array("RAM_LOC_TEXT");
  EXPECT_TRUE(array.Has(0));
  EXPECT_FALSE(array(0).Visible);
  EXPECT_FALSE(array.Has(1));
  EXPECT_FALSE(array.Has(-1));
}

TEST(ControlArray, MakesMembersOnDemandWithTheLookOfTheTemplate) {
  ControlArray<TextBox> array("RAM_LOC_VAL");
  array(0).Top = 600.0F;
  array(0).Left = 2400.0F;
  array(0).Width = 1200.0F;
  array(0).Height = 285.0F;
  array(0).BackColor = kWhite;
  array(0).ForeColor = 255;
  array(0).TextFont = Font{"Arial", 10.0F, true, false};
  array(0).Text = "template";
  array(0).Visible = true;
  TextBox& made = array.Load(7);
  EXPECT_EQ(made.name(), "RAM_LOC_VAL(7)");
  EXPECT_EQ(made.Top.get(), 600.0F);
  EXPECT_EQ(made.Left.get(), 2400.0F);
  EXPECT_EQ(made.Width.get(), 1200.0F);
  EXPECT_EQ(made.Height.get(), 285.0F);
  EXPECT_EQ(made.BackColor.get(), kWhite);
  EXPECT_EQ(made.ForeColor.get(), 255);
  EXPECT_EQ(made.TextFont.get(), (Font{"Arial", 10.0F, true, false}));
  EXPECT_EQ(made.Text.get(), "");
  EXPECT_FALSE(made.Visible);
  EXPECT_FALSE(array.Has(6));
}

TEST(ControlArray, KeepsAMemberThatIsThereAlready) {
  ControlArray<TextBox> array("RAM_LOC_VAL");
  array.Load(1).Text = "21";
  TextBox* first = &array(1);
  array.Load(512);
  EXPECT_EQ(&array.Load(1), first);
  EXPECT_EQ(array(1).Text.get(), "21");
}

TEST(ControlArray, TellsItsViewOfComingAndGoingMembers) {
  ControlArray<CheckBox> array("RAM_LOC_CHECK");
  Log log;
  array.Loaded = [&](int index) { log.push_back("+" + array(index).name()); };
  array.Unloading = [&](int index) { log.push_back("-" + array(index).name()); };
  array.Load(2);
  array.Load(2);
  array.Unload(2);
  array.Unload(2);
  array.Unload(0);
  array.Unload(-1);
  EXPECT_EQ(log, (Log{"+RAM_LOC_CHECK(2)", "-RAM_LOC_CHECK(2)"}));
  EXPECT_TRUE(array.Has(0));
  EXPECT_FALSE(array.Has(2));
}

TEST(ControlArray, RefusesAMemberThatIsNotThere) {
  ControlArray<TextBox> array("RAM_LOC_TEXT");
  array.Load(2);
  for (const int index : {-1, 1, 3, 100000}) {
    EXPECT_EQ(CodeOf([&] { array(index); }), kSubscript) << index;
  }
  EXPECT_EQ(CodeOf([&] { array.Load(-1); }), kSubscript);
}

}  // namespace
}  // namespace tarnlink
