#include "fuzz/forms/forms.h"
#include "fuzz/forms/seed_text.h"
#include "fuzz/forms/tool_user.h"
#include "tools/frm_write_parameters.h"

namespace tarnlink {
namespace {

constexpr const char* kFile = "/home/user/work/boiler.par";
constexpr const char* kOther = "/home/user/work/other.par";

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  ToolUser user(input);
  user.world.disk().Put(kFile, "5 &H0123 &H2A00\r\n7 &HF400 1\r\n7 &HF401 2\r\n7 &H1000 1\r\n");
  user.world.disk().Put(kOther, std::string(input.ShortText()) + "\r\n5 1 2\r\n5 1 3\r\n");
  if (input.Coin()) user.parameter_file = kFile;
  frmWriteParameters tool(user.host);
  tool.CopyText = [](const std::string& text) { Claim(text.size() < 20'000, "the list is short"); };
  FormDriver& driver = user.driver;
  driver.Offer({kFile, kOther, "/home/user/work/none.par", "/home/user/work/list.txt", ""});
  driver.Form(tool.form);
  driver.Add(tool.cmdWriteZOLT, tool.chkVerify, tool.cmdBrowse, tool.txtSlave, tool.cmdCancel,
             tool.cmdCopy, tool.cmdSaveList);
  driver.Show(tool.lblProgress);
  driver.Watch(tool.StatusBar1.Text);
  driver.Watch(tool.txtFilename.Text);
  driver.Check = [&] {
    const int count = static_cast<int>(tool.items().size());
    if (tool.IsRunning()) {  // afterwards another file may be there
      Claim(tool.ParameterIndex >= 0 && tool.ParameterIndex <= count, "an item is in work");
      Claim(tool.VerifiedCount <= count, "items are verified once");
      Claim(tool.NotSentCount <= 2 * count, "in each phase given up once");
    }
    Claim(tool.VerifiedCount >= 0 && tool.NotSentCount >= 0, "items are counted");
    Claim(tool.RetryCount >= 0, "tries are counted");
    Claim(tool.txtScrollStatus.Text().find('\0') == std::string::npos, "a text has no zero byte");
  };
  driver.Guard([&] { tool.Show(); });
  driver.Run();
  driver.Leave([&] { tool.Unload(); });
}

std::vector<std::string> Seeds() {
  using namespace seed;
  const std::string begin("\3\0\1", 3);
  return {begin + Act(0) + Times(3, Acknowledge() + Wait(2)),
          begin + Act(1) + Act(0) + Times(3, Acknowledge()) + Times(3, Reply(1) + Wait(5)),
          begin + Act(0) + Times(4, Wait(7)), begin + Act(2) + File(1) + Act(0) + Act(4) + Yes(),
          begin + Act(0) + Acknowledge() + Unplug() + PlugIn() + Act(0) + Act(6) + File(3)};
}

}  // namespace

FuzzTarget ParameterWriterFormTarget() { return {"parameter_writer_form", Run, Seeds}; }

}  // namespace tarnlink
