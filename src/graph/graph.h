// The graph put together: its forms with what happens on them. One for each time that it is opened.
#pragma once

#include <utility>

#include "graph/auto_save.h"
#include "graph/frm_context_menu.h"
#include "graph/frm_graphic.h"
#include "graph/frm_test_mode.h"
#include "graph/graph_acquisition.h"
#include "graph/graph_display.h"
#include "graph/graph_form.h"
#include "graph/graph_menu.h"
#include "graph/graph_pointer.h"
#include "graph/picture_commands.h"

namespace tarnlink {

// `platform` outlives it. It begins with `form.Load()`.
struct Graph {
  Graph(Platform& platform, GraphPort port)
      : graph(platform), acquisition(graph, menu, std::move(port)) {
    acquisition.ShowTestMode = [this] { test_mode.Show(); };
  }

  frmGraphic graph;
  frmContextMenu menu{graph};
  GraphAcquisition acquisition;
  GraphDisplay display{graph, menu};
  GraphMenu commands{graph, menu, display};
  GraphPointer pointer{graph, display};
  PictureCommands picture{graph, menu};
  AutoSave auto_save{graph, menu};
  frmTestMode test_mode{graph};
  GraphForm form{graph, menu, acquisition, auto_save};
};

}  // namespace tarnlink
