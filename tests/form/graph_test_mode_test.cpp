// The settings of the test mode command.

#include <gtest/gtest.h>

#include "graph/frm_test_mode.h"
#include "support/fake_world.h"

namespace tarnlink {
namespace {

class TestMode : public ::testing::Test {
 protected:
  FakeWorld world;
  frmGraphic graph{world};
  frmTestMode dialog{graph};
};

TEST_F(TestMode, HasItsCaptions) {
  EXPECT_EQ(dialog.caption.Caption.get(), "Testmode");
  EXPECT_EQ(dialog.Frame1.Caption.get(), "Testmode");
  EXPECT_EQ(dialog.optTestMode(0).Caption.get(), "On");
  EXPECT_EQ(dialog.optTestMode(1).Caption.get(), "Off");
  EXPECT_EQ(dialog.Label1.Caption.get(), "Test power %");
  EXPECT_EQ(dialog.Label2.Caption.get(), "Settings are use with next testmode");
  EXPECT_EQ(dialog.txtTestPower.Text.get(), "100");
  EXPECT_FALSE(dialog.form.Visible);
}

TEST_F(TestMode, BeginsWithWhatTheGraphHas) {
  dialog.Show();
  EXPECT_TRUE(dialog.form.Visible);
  EXPECT_EQ(dialog.optTestMode.Selected(), 0);
  EXPECT_TRUE(dialog.sldTestPower.Enabled);
  EXPECT_EQ(dialog.sldTestPower.Value, 100);
  graph.TestModeOn = false;
  graph.TestModePower = 40;
  dialog.Show();
  EXPECT_EQ(dialog.optTestMode.Selected(), 1);
  EXPECT_FALSE(dialog.sldTestPower.Enabled);
  EXPECT_FALSE(dialog.txtTestPower.Enabled);
  EXPECT_EQ(dialog.sldTestPower.Value, 40);
  EXPECT_EQ(dialog.txtTestPower.Text.get(), "40");
}

TEST_F(TestMode, OffGreysThePowerAndKeepsIt) {
  dialog.Show();
  dialog.txtTestPower.Text = "70";
  dialog.optTestMode.Choose(1);
  EXPECT_FALSE(dialog.sldTestPower.Enabled);
  EXPECT_FALSE(dialog.txtTestPower.Enabled);
  dialog.Close();
  EXPECT_FALSE(graph.TestModeOn);
  EXPECT_EQ(graph.TestModePower, 70);
  dialog.Show();
  dialog.optTestMode.Choose(0);
  EXPECT_TRUE(dialog.sldTestPower.Enabled);
  EXPECT_TRUE(dialog.txtTestPower.Enabled);
}

TEST_F(TestMode, TextAndSliderFollowEachOther) {
  dialog.Show();
  dialog.txtTestPower.Text = "55";
  EXPECT_EQ(dialog.sldTestPower.Value, 55);
  dialog.sldTestPower.SetValue(20);
  EXPECT_EQ(dialog.txtTestPower.Text.get(), "20");
  dialog.txtTestPower.Text = "no number";
  EXPECT_EQ(dialog.sldTestPower.Value, 0);
  dialog.txtTestPower.Text = "999";
  EXPECT_EQ(dialog.sldTestPower.Value, 100);
}

TEST_F(TestMode, ClosingTakesTheSettingsOver) {
  dialog.Show();
  dialog.txtTestPower.Text = "55";
  EXPECT_EQ(graph.TestModePower, 100) << "Not before.";
  dialog.Close();
  EXPECT_EQ(graph.TestModePower, 55);
  EXPECT_TRUE(graph.TestModeOn);
  EXPECT_FALSE(dialog.form.Visible);
  dialog.sldTestPower.SetValue(10);
  dialog.Close();
  EXPECT_EQ(graph.TestModePower, 55) << "It is closed already.";
}

}  // namespace
}  // namespace tarnlink
