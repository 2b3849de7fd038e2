// The tools' entries of the menu. One form at a time uses the port, so none that needs it opens
// during a run.
#pragma once

#include <functional>

#include "monitor/frm_main.h"

namespace tarnlink {

// Shows a tool, with the port let go, or says that the run must be stopped first.
void OpenTool(frm_Main& main, const std::function<void()>& show);

// Lets the port go if it is only held; false during a run.
bool GivePort(frm_Main& main);

class ToolCommands {
 public:
  // Binds the entries; `main` outlives it.
  explicit ToolCommands(frm_Main& main);
};

}  // namespace tarnlink
