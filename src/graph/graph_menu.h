// The entries of the graph's menu that change what is seen: time scale, scrolling, strokes alone.
#pragma once

#include "graph/frm_context_menu.h"
#include "graph/frm_graphic.h"
#include "graph/graph_display.h"

namespace tarnlink {

// The entries of `mnuScale`.
inline constexpr int kTimeScales = 5;

class GraphMenu {
 public:
  // Binds the entries. All arguments outlive it.
  GraphMenu(frmGraphic& graph, frmContextMenu& menu, GraphDisplay& display);

  // An index without an entry counts as ten minutes. A cursor comes to the middle of the view.
  void mnuScale(int Index);
  // To the next shorter or longer scale, if there is one.
  void ChangeScale(int steps);

 private:
  void mnuTimeScroll();

  frmGraphic& graph_;
  frmContextMenu& menu_;
  GraphDisplay& display_;
};

}  // namespace tarnlink
