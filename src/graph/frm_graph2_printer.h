// The graph on paper: its heading, and the way to the printer.
#pragma once

#include <string>

#include "graph/frm_context_menu.h"
#include "graph/frm_graphic.h"
#include "graph/graph_display.h"
#include "graph/graph_page.h"

namespace tarnlink {

class frmGraph2Printer {
 public:
  // All outlive it.
  frmGraph2Printer(frmGraphic& graph, frmContextMenu& menu, GraphDisplay& display)
      : graph_(graph), menu_(menu), display_(display) {}

  std::string HeaderText;

  // Shows the page as it would come out, to be printed or kept as a PDF file, for which `folder` is
  // proposed. What is recorded meanwhile is not on it.
  void PrintGraph(const std::string& folder);

 private:
  PageContent Content() const;

  frmGraphic& graph_;
  frmContextMenu& menu_;
  GraphDisplay& display_;
};

}  // namespace tarnlink
