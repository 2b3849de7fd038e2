#include "fuzz/forms/forms.h"
#include "fuzz/forms/seed_text.h"
#include "fuzz/forms/tool_user.h"
#include "tools/frm_cont_panel.h"

namespace tarnlink {
namespace {

void AddControls(FormDriver& driver, frm_ContPanel& tool) {
  driver.Form(tool.form);
  driver.Add(tool.cmdUpdateStatus, tool.cmdUpdateConfig, tool.cmdUpdateSensors, tool.cmdUpdateError,
             tool.cmdUpdateStatistics, tool.cmdHeadDemand, tool.cmdResetError,
             tool.chkContinuousUpdate, tool.chk_HeatDemand, tool.chk_Reset);
  driver.Do([&] { tool.SSTab1.Tab = driver.input().Below(5); });
  for (BitBoxes* boxes : {&tool.chk_StatusH, &tool.chk_StatusL, &tool.chk_configH}) {
    driver.Add((*boxes)(boxes->first()));
  }
  driver.Show(tool.lblLine, tool.lblSlave);
  for (const PanelText* text :
       {&tool.txt_Error, &tool.txt_ErrorDescription, &tool.txt_OSNumber, &tool.txt_HUPCRC,
        &tool.txt_LUPCRC, &tool.txt_softwareversionROMHUP, &tool.txt_FlameAD10bit}) {
    driver.Watch(text->Text);
  }
}

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  ToolUser user(input);
  frm_ContPanel tool(user.host);
  AddControls(user.driver, tool);
  user.driver.Check = [&] {
    Claim(tool.ErrorHistoryIndex >= 0 && tool.ErrorHistoryIndex < kHistoryEntries,
          "an entry of the history is asked for");
    Claim(!tool.Pending.at(kNothingPending), "what there is not is not pending");
  };
  user.driver.Guard([&] { tool.Show(); });
  user.driver.Run();
  user.driver.Leave([&] { tool.Unload(); });
}

std::vector<std::string> Seeds() {
  using namespace seed;
  const std::string begin(1, '\3');
  std::vector<std::string> seeds;
  for (int tab = 0; tab < 5; ++tab) seeds.push_back(begin + Act(tab) + Times(14, Reply()));
  seeds.push_back(begin + Act(7) + Act(0) + Times(6, Reply()) + Wait(7) + Wait(7) + Reply());
  seeds.push_back(begin + Act(5) + Acknowledge() + Act(6) + Acknowledge() + Unplug() + Act(0));
  return seeds;
}

}  // namespace

FuzzTarget ControlPanelFormTarget() { return {"control_panel_form", Run, Seeds}; }

}  // namespace tarnlink
