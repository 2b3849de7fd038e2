// Pictures of panel, scan and wrong messages for a person to look at, in a light and a dark
// palette: whole, and as on a small screen.

#include <QTabWidget>

#include "ui/service_tools_fixture.h"
#include "ui/tool_looks.h"

namespace tarnlink {
namespace {

class ToolPictures : public ToolLooks<ServiceToolsTest> {};

TEST_P(ToolPictures, ShowThePanel) {
  texts[0] = "Flame signal after the gas valve was closed: see the burner's own manual";
  QWidget& panel = OpenPanel();
  ShowWhole(panel);
  Click(panel, "cmdHeadDemand");
  world.Advance(60s);
  for (int tab = 0; tab < 5; ++tab) {
    In<QTabWidget>(panel, "SSTab1").setCurrentIndex(tab);
    Click(panel, "chkContinuousUpdate");
    world.Advance(10s);
    Click(panel, "chkContinuousUpdate");
    world.Advance(2s);
    Save(panel, "control-panel-" + std::to_string(tab));
  }
  panel.close();
}

TEST_P(ToolPictures, ShowThePanelOfAnotherSlaveOnABusyPort) {
  QWidget& panel = OpenPanel(10);
  ShowWhole(panel);
  world.port().MakeBusy();
  Click(panel, "cmdUpdateStatus");
  Save(panel, "control-panel-busy");
  panel.close();
}

TEST_P(ToolPictures, ShowTheScan) {
  QWidget& scan = OpenScan();
  ShowWhole(scan);
  world.Advance(30s);
  Save(scan, "scan-slaves");
  Click(scan, "cmdStop");
  Save(scan, "scan-slaves-stopped");
  scan.close();
}

TEST_P(ToolPictures, ShowWrongMessages) {
  QWidget& dialog = OpenWrongMessages();
  ShowWhole(dialog);
  Click(dialog, "cmd_SendErrMsg");
  world.Advance(80ms);
  Save(dialog, "wrong-message");
  Click(dialog, "chk_IPMsgErr(0)");
  Click(dialog, "chk_IPMsgErr(1)");
  Click(dialog, "txt_ErrMsg(2)");
  Type(dialog, "3");
  Click(dialog, "cmd_SendErrMsg");
  Save(dialog, "wrong-message-broken");
  dialog.close();
}

INSTANTIATE_TEST_SUITE_P(Looks, ToolPictures,
                         testing::Values(Look{"light", false}, Look{"dark", true}),
                         [](const testing::TestParamInfo<Look>& look) { return look.param.name; });

}  // namespace
}  // namespace tarnlink
