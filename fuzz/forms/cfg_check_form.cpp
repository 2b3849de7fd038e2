#include "fuzz/forms/forms.h"
#include "fuzz/forms/seed_text.h"
#include "fuzz/forms/tool_user.h"
#include "tools/frm_cfg_check.h"

namespace tarnlink {
namespace {

constexpr const char* kFile = "/home/user/work/boiler.cfg";
constexpr const char* kOther = "/home/user/work/other.cfg";

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  ToolUser user(input);
  user.world.disk().Put(kFile,
                        "056Dh\t30\t85\t60\tCH setpoint\t1\r\n05F4h\t0\t255\t-\tall\t1\r\n"
                        "0907h\t5\t5\t5\tone\t0\r\n");
  user.world.disk().Put(kOther, std::string(input.ShortText()) + "\r\n0001h\t1\t2\t1\tx\t1\r\n");
  frm_CfgCheck tool(user.host);
  tool.CopyText = [](const std::string& text) { Claim(text.size() < 20'000, "the list is short"); };
  FormDriver& driver = user.driver;
  driver.Offer({kFile, kOther, "/home/user/work/none.cfg", "/home/user/work/list.txt", ""});
  driver.Form(tool.form);
  driver.Add(tool.cmd_Open, tool.cmd_Check, tool.cmd_Stop, tool.cmd_Copy, tool.cmd_Save,
             tool.cmb_Slave);
  driver.Show(tool.Label6, tool.lblState, tool.lblHeading);
  driver.Watch(tool.txt_ConfigurationFile.Text);
  driver.Check = [&] {
    const int count = static_cast<int>(tool.ConfigItems.size());
    Claim(tool.CfgIndex >= 0 && tool.CfgIndex <= count, "an item is in work");
    Claim(tool.CfgStage >= 0 && tool.CfgStage < kCfgStages, "in one of its stages");
    Claim(tool.ParametersList.List->size() == tool.ConfigItems.size(), "each has its row");
    Claim(tool.ParametersList.InWork < std::max(count, 1), "one of them is in work");
  };
  driver.Guard([&] {
    tool.Show();
    tool.cmd_Open.Press();
  });
  driver.Run();
  driver.Leave([&] { tool.Unload(); });
}

std::vector<std::string> Seeds() {
  using namespace seed;
  const std::string begin = std::string("\3\0", 2) + File(0);
  const std::string step = Wait(4);
  return {begin + Act(1) + step + Reply(0x003C) + step + Acknowledge() + step + Reply(0x001E) +
              step + "\x60\6" + step + Acknowledge(),
          begin + Act(1) + Times(4, Wait(7)) + Act(2), begin + Act(0) + File(1) + Act(1) + Reply(),
          begin + Act(1) + step + Unplug() + step + PlugIn() + Act(1) + Act(4) + File(3)};
}

}  // namespace

FuzzTarget CfgCheckFormTarget() { return {"cfg_check_form", Run, Seeds}; }

}  // namespace tarnlink
