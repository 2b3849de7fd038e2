#include "monitor/tool_commands.h"

namespace tarnlink {

// A run that ended for a silent slave opens its port once more, for nothing but Stop. The tool
// would find it in use, by this program.
bool GivePort(frm_Main& main) {
  if (main.CommRunning) return false;
  main.tmr_noresponse->SetEnabled(false);
  if (main.Comm->PortOpen()) {
    main.Comm->SetPortOpen(false);
    main.StatusBar1(kConnectionPanel).Text = "No Connection Active";
  }
  return true;
}

void OpenTool(frm_Main& main, const std::function<void()>& show) {
  if (main.CommRunning) {
    main.platform().dialogs().MessageBox({.text = "Stop Communication First",
                                          .title = "Communication Error",
                                          .icon = Icon::kCritical});
  } else if (show) {
    GivePort(main);
    show();
  }
}

ToolCommands::ToolCommands(frm_Main& main) {
  main.M_Graphics.Click = [&main] {
    main.GraphicFile.clear();
    OpenTool(main, main.ShowGraphic);
  };
  main.M_ControlPanel.Click = [&main] {
    OpenTool(main, [&main] {
      if (main.GoControlPanel) main.GoControlPanel(0);
    });
  };
  main.mnuScanSlaves.Click = [&main] { OpenTool(main, main.ShowScanSlaves); };
  main.mnuSniffer.Click = [&main] { OpenTool(main, main.ShowSniffer); };
  main.M_errgen.Click = [&main] { OpenTool(main, main.ShowErrorGenerator); };
  main.mnuLoadParameters.Click = [&main] { OpenTool(main, main.ShowParameters); };
  main.mnuCfgCheck.Click = [&main] { OpenTool(main, main.ShowCfgCheck); };
  main.M_EE_DOWN.Click = [&main] { OpenTool(main, main.ShowEepromDownloader); };
  // Its output files need no port; it asks for that itself when it writes.
  main.M_EEPROM.Click = [&main] {
    if (main.ShowEepromWriter) main.ShowEepromWriter();
  };
  main.mnuWPConversion.Click = [&main] {
    if (main.ShowWPConversion) main.ShowWPConversion();
  };
}

}  // namespace tarnlink
