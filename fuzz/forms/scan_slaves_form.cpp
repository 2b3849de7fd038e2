#include "fuzz/forms/forms.h"
#include "fuzz/forms/seed_text.h"
#include "fuzz/forms/tool_user.h"
#include "tools/frm_scan_slaves.h"

namespace tarnlink {
namespace {

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  ToolUser user(input);
  std::function<void()> panel_closed;
  user.host.GoControlPanel = [&](int, std::function<void()> closed) {
    panel_closed = std::move(closed);
  };
  frm_ScanSlaves tool(user.host);
  tool.CopyText = [](const std::string& text) { Claim(text.size() < 4'000, "the table is short"); };
  FormDriver& driver = user.driver;
  driver.Form(tool.form);
  driver.Add(tool.cmdStart, tool.cmdStop, tool.cmdCopy);
  driver.AddAll(tool.cmdControlPanel);
  driver.Do([&] {
    if (panel_closed) std::exchange(panel_closed, {})();
  });
  driver.Show(tool.lblState);
  for (int i = 0; i < frm_ScanSlaves::kAddresses; ++i) {
    for (const ArrayText* box : {&tool.txtType(i), &tool.txtLuP(i), &tool.txtHuP(i)}) {
      driver.Watch(box->Text);
    }
  }
  driver.Check = [&] {
    Claim(tool.ScanAddress >= 0 && tool.ScanAddress < frm_ScanSlaves::kAddresses,
          "it scans slaves");
    Claim(tool.ScanStep >= 0 && tool.ScanRetries >= 0, "it counts");
  };
  driver.Guard([&] { tool.Show(); });
  driver.Run();
  driver.Leave([&] { tool.Unload(); });
}

std::vector<std::string> Seeds() {
  using namespace seed;
  const std::string begin(1, '\3');
  return {begin + Times(12, Reply() + Wait(2)), begin + Times(5, Wait(7)),
          begin + Wait(4) + Act(3) + Wait(6) + Act(19) + Wait(6) + Reply() + Act(1) + Act(0),
          begin + Reply() + Unplug() + Wait(7) + PlugIn() + Wait(7) + Reply() + Act(2)};
}

}  // namespace

FuzzTarget ScanSlavesFormTarget() { return {"scan_slaves_form", Run, Seeds}; }

}  // namespace tarnlink
