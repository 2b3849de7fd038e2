// The graph put together: its forms with what happens on them. One for each time that it is opened.
#pragma once

#include <utility>

#include "graph/auto_save.h"
#include "graph/file_commands.h"
#include "graph/frm_context_menu.h"
#include "graph/frm_graph2_printer.h"
#include "graph/frm_graph_conf.h"
#include "graph/frm_graphic.h"
#include "graph/frm_test_mode.h"
#include "graph/graph_acquisition.h"
#include "graph/graph_display.h"
#include "graph/graph_form.h"
#include "graph/graph_menu.h"
#include "graph/graph_pointer.h"
#include "graph/measure_files.h"
#include "graph/picture_commands.h"

namespace tarnlink {

// `platform` outlives it. It begins with `form.Load()`.
struct Graph {
  Graph(Platform& platform, ServiceLine port, GraphProject& project)
      : graph(platform),
        acquisition(graph, menu, std::move(port)),
        file_commands(graph, menu, display, files, printer, project) {
    acquisition.ShowTestMode = [this] { test_mode.Show(); };
    display.ShowSettings = [this] { settings.Show(); };
    menu.mnuGraphSettings.Click = [this] { settings.Show(); };
    settings.Closed = [this] { display.DrawAgain(); };
    settings.MayClear = [this] { return !files.IsBusy(); };
    files.Replaced = [this] { settings.FollowTable(); };
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
  frmGraphConf settings{graph, display};
  MeasureFiles files{graph, menu, auto_save};
  frmGraph2Printer printer{graph, menu, display};
  FileCommands file_commands;
  GraphForm form{graph, menu, acquisition, auto_save, files};
};

}  // namespace tarnlink
