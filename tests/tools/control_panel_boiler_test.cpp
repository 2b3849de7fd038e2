// The control panel in front of the simulated boiler, in virtual time.

#include <gtest/gtest.h>

#include "tools/panel_on_line.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;
using Requests = std::vector<std::string>;

const boiler::LineOptions kUsual = {.pace = {.baud = 9600}, .answer_delay_us = 20'000};

const std::vector<Requests>& RequestsOfTabs() {
  static const std::vector<Requests> requests = {
      {"1 1 0000", "4 868 0000", "4 6015 0000", "1 61 0000", "1 5337 0000", "2 152 0000",
       "2 1284 0000", "2 164 0000", "6 5349 0000", "6 5354 0000"},
      {"2 84 0000", "2 91 0000", "2 103 0000", "2 104 0000", "2 151 0000"},
      {"4 241 0000", "4 770 0000", "4 817 0000", "4 855 0000", "4 856 0000", "4 5930 0000",
       "4 5964 0000", "4 254 0000", "4 781 0000", "4 830 0000", "4 5913 0000", "4 5925 0000",
       "4 5955 0000", "4 6000 0000"},
      {"1 50 0000", "6 875 0000", "6 875 0100", "6 875 0200", "6 875 0300", "6 875 0400",
       "6 875 0500", "6 875 0600", "6 875 0700", "6 916 0000", "6 916 0100", "6 916 0200",
       "6 916 0300", "6 916 0400", "6 916 0500", "6 916 0600", "6 916 0700"},
      {"6 923 0000", "6 935 0000", "6 936 0000", "6 961 0000", "6 974 0000", "6 1010 0000",
       "6 1021 0000", "6 3943 0000", "6 4004 0000"}};
  return requests;
}

void FillAllTabs(PanelOnLine& one) {
  for (int tab = 0; tab < 5; ++tab) {
    one.heard.clear();
    one.Update(tab);
    EXPECT_TRUE(one.Finish(20s)) << tab;
    EXPECT_EQ(one.heard, RequestsOfTabs()[static_cast<std::size_t>(tab)]);
  }
}

TEST(ControlPanelBoiler, FillsAllTabsWithWhatTheBoilerSays) {
  for (const boiler::LineOptions& line :
       {kUsual, boiler::LineOptions{.pace = {.baud = 1200}, .answer_delay_us = 90'000},
        boiler::LineOptions{}}) {
    PanelOnLine one(line);
    one.world.Advance(2h);
    FillAllTabs(one);
    EXPECT_EQ(one.Difference(), "");
    EXPECT_EQ(one.Unfounded(), "");
  }
}

TEST(ControlPanelBoiler, ShowsTheBoilersConstants) {
  PanelOnLine one(kUsual);
  FillAllTabs(one);
  const frm_ContPanel& p = one.panel;
  EXPECT_EQ(p.txt_OSNumber.Text.get(), "R1865CM2040");
  EXPECT_EQ(p.txt_softwareversionROMLUP.Text.get(), " 3.07");
  EXPECT_EQ(p.txt_softwareversionROMHUP.Text.get(), " 4.12");
  EXPECT_EQ(p.txt_LUPCRC.Text.get(), "3A7C");
  EXPECT_EQ(p.txt_HUPCRC.Text.get(), "C51E");
  EXPECT_EQ(p.txtSafety(1).Text.get(), "1");
  EXPECT_EQ(p.txtSafety(3).Text.get(), "2");
  EXPECT_EQ(p.txtSafety(6).Text.get(), "10");
  EXPECT_EQ(p.txtSafety(7).Text.get(), "5");
  EXPECT_TRUE(p.chk_configH(1).Value);
  EXPECT_FALSE(p.chk_configH(0).Value);
  EXPECT_TRUE(p.chk_configL(2).Value);
  EXPECT_TRUE(p.chk_configL(3).Value);
  EXPECT_FALSE(p.chk_configL(4).Value);
}

TEST(ControlPanelBoiler, ReadsTheSlaveThatItIsOpenedOn) {
  PanelOnLine one(kUsual, 1, "A");
  one.Update(0);
  EXPECT_TRUE(one.Finish(5s));
  EXPECT_EQ(one.panel.txt_OSNumber.Text.get(), "R1866A2050");
}

TEST(ControlPanelBoiler, ASlaveThatIsNotThereTimesOut) {
  PanelOnLine one(kUsual, 1, "5");
  one.ignores_errors = false;
  one.world.dialogs().ExpectMessageBox("No communication with slave", "Communication Timeout");
  one.Update(0);
  one.world.Advance(3500ms);
  EXPECT_TRUE(one.heard.empty());
  EXPECT_EQ(one.asked, 2);
}

TEST(ControlPanelBoiler, HeatDemandStartsABurnerCycleAndEndsIt) {
  PanelOnLine one(kUsual);
  one.panel.cmdHeadDemand.Press();
  EXPECT_TRUE(one.Finish(1s));
  EXPECT_TRUE(one.panel.chk_HeatDemand.Value);
  EXPECT_EQ(one.Held("heat_demand"), 255);
  one.panel.chkContinuousUpdate.Value = true;
  CheckBox& flame = one.panel.chk_StatusH(3);
  EXPECT_TRUE(one.world.RunUntil([&] { return flame.Value.get(); }, 10min));
  EXPECT_TRUE(one.panel.chk_StatusL(4).Value) << "The fan runs.";
  one.panel.cmdHeadDemand.Press();
  EXPECT_TRUE(one.world.RunUntil([&] { return !one.panel.chk_HeatDemand.Value; }, 3s));
  EXPECT_EQ(one.Held("heat_demand"), 0);
  EXPECT_EQ(std::count(one.heard.begin(), one.heard.end(), "129 14 FFFF"), 1);
  EXPECT_GE(std::count(one.heard.begin(), one.heard.end(), "129 14 0000"), 1);
}

TEST(ControlPanelBoiler, ALockoutIsShownAndReset) {
  PanelOnLine one(kUsual);
  one.boiler.controller().Set(boiler::Item("lock_out"), 9);
  one.world.Advance(1s);
  one.Update(3);
  EXPECT_TRUE(one.Finish(5s));
  EXPECT_EQ(one.panel.txt_Error.Text.get(), "9");
  EXPECT_EQ(one.panel.txt_ErrorDescription.Text.get(), "text of 9");
  EXPECT_EQ(one.panel.txt_ErrBufCode(0).Text.get(), " 9");
  EXPECT_EQ(one.panel.txt_ErrBufCode(0).ToolTipText.get(), "text of 9");
  one.panel.cmdResetError.Press();
  EXPECT_TRUE(one.Finish(1s));
  EXPECT_TRUE(one.panel.chk_Reset.Value);
  one.world.Advance(2s);
  one.Update(3);
  EXPECT_TRUE(one.Finish(5s));
  EXPECT_EQ(one.panel.txt_Error.Text.get(), "0");
}

TEST(ControlPanelBoiler, ContinuousUpdatePollsTheTabInViewWithoutEnd) {
  PanelOnLine one(kUsual);
  one.panel.chkContinuousUpdate.Value = true;
  one.panel.SSTab1.Tab = 1;
  one.world.Advance(1s);
  one.heard.clear();
  one.panel.SSTab1.Tab = 2;
  one.world.Advance(1h);
  const Requests& tab = RequestsOfTabs()[2];
  EXPECT_GT(one.heard.size(), 60'000U);
  // One of the tab before may be on its way when the tab is turned.
  std::size_t other = 0;
  for (const std::string& request : one.heard) {
    if (std::find(tab.begin(), tab.end(), request) == tab.end()) ++other;
  }
  EXPECT_LE(other, 1U);
  one.panel.chkContinuousUpdate.Value = false;
  EXPECT_TRUE(one.Finish(5s));
}

TEST(ControlPanelBoiler, TakesTheTimeOfTheLineAndNoMore) {
  PanelOnLine one(kUsual);
  const Micros start = one.world.now();
  one.Update(2);
  EXPECT_TRUE(one.Finish(5s));
  // 32 bytes of ten bits and 20 ms for each of 14 requests.
  EXPECT_LT(one.world.now() - start, 14 * 60ms);
}

}  // namespace
}  // namespace tarnlink
