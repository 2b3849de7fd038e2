// What is seen of the line: the panel below the status bar and the window of the trace, put
// together with the entries of the menu that show them.
#pragma once

#include <memory>

#include "monitor/frm_main.h"
#include "tools/frm_link_health.h"
#include "tools/frm_link_trace.h"
#include "ui/link_panel.h"
#include "ui/link_trace_window.h"
#include "ui/main_window.h"

namespace tarnlink {

class LinkTool {
 public:
  // All outlive it. The panel is there from the beginning, shown or not as it was left.
  LinkTool(frm_Main& main, LinkRecord& record, MainWindow& window);
  ~LinkTool();

  frm_LinkHealth health;
  frm_LinkTrace trace;

 private:
  std::unique_ptr<LinkPanel> panel_;
  std::unique_ptr<LinkTraceWindow> trace_window_;
};

// How old the value of each Location on the screen is.
std::vector<ValueAge> AgesOf(frm_Main& main);

}  // namespace tarnlink
