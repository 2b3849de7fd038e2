#include "graph/frm_graph2_printer.h"

namespace tarnlink {

PageContent frmGraph2Printer::Content() const {
  const bool is_now = graph_.CursorTime == 0 || graph_.AutoScroll;
  const float panel = graph_.frm(0).Height;
  return {.HeaderText = HeaderText,
          .view = display_.View(),
          .lane_height = panel > 0 ? graph_.lblVal(0).Height / panel : 0,
          .MeasOnly = menu_.mnuMeasOnly.Checked,
          .AutoScroll = graph_.AutoScroll,
          .CursorTime = graph_.CursorTime,
          .moment = is_now ? graph_.Now() : graph_.CursorTime};
}

// Recording goes on behind the preview; each of its pages is that of the moment it was asked for.
void frmGraph2Printer::PrintGraph() {
  graph_.platform().dialogs().Preview(
      {.title = "Print",
       .file_name = (HeaderText.empty() ? std::string("graph") : HeaderText) + ".pdf",
       .setup = {.landscape = true},
       .draw = [this, content = Content()](DrawingSurface& surface) {
         GraphPage(surface, graph_.Data, content, graph_.platform().locale()).DrawGraph();
       }});
}

}  // namespace tarnlink
