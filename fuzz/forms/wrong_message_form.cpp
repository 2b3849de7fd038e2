#include "fuzz/forms/forms.h"
#include "fuzz/forms/seed_text.h"
#include "fuzz/forms/tool_user.h"
#include "tools/frm_ip_msg_err.h"

namespace tarnlink {
namespace {

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  ToolUser user(input);
  std::uint32_t number = input.Byte();
  frm_IPMsgErr tool(user.host, [&number] { return number += 0x9E3779B9U; });
  FormDriver& driver = user.driver;
  driver.Form(tool.form);
  driver.Add(tool.cmd_SendErrMsg, tool.cmd_ResetDefault, tool.cmd_CloseErrGen);
  driver.AddAll(tool.chk_IPMsgErr);
  driver.AddAll(tool.txt_ErrMsg);
  driver.Watch(tool.txt_ReturnedData.Text);
  driver.Watch(tool.txtStatus.Text);
  for (int i = 0; i < frm_IPMsgErr::kBoxes; ++i) driver.Watch(tool.txt_RecErrMsg(i).Text);
  driver.Check = [&] {
    Claim(user.world.port().frames().empty() ||
              user.world.port().frames().back().bytes.size() <= 2 * frm_IPMsgErr::kBoxes,
          "a message has a byte a box");
  };
  driver.Guard([&] { tool.Show(); });
  driver.Run();
  driver.Leave([&] { tool.Unload(); });
}

std::vector<std::string> Seeds() {
  using namespace seed;
  const std::string begin = "\3\7";
  return {begin + Act(0) + Reply() + Wait(6), begin + Act(3) + Act(0) + Wait(7) + Act(1),
          begin + Act(4) + Act(8, Text(18)) + Act(0) + Times(3, Wait(6)),
          begin + Act(0) + Unplug() + Wait(6) + PlugIn() + Act(0) + Act(2)};
}

}  // namespace

FuzzTarget WrongMessageFormTarget() { return {"wrong_message_form", Run, Seeds}; }

}  // namespace tarnlink
