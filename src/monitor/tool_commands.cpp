#include "monitor/tool_commands.h"

namespace tarnlink {

void OpenTool(frm_Main& main, const std::function<void()>& show) {
  if (main.CommRunning) {
    main.platform().dialogs().MessageBox({.text = "Stop Communication First",
                                          .title = "Communication Error",
                                          .icon = Icon::kCritical});
  } else if (show) {
    show();
  }
}

ToolCommands::ToolCommands(frm_Main& main) {
  main.M_Graphics.Click = [&main] {
    main.GraphicFile.clear();
    OpenTool(main, main.ShowGraphic);
  };
}

}  // namespace tarnlink
