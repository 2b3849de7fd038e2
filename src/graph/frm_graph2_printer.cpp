#include "graph/frm_graph2_printer.h"

#include <memory>

#include "common/paths.h"

namespace tarnlink {

namespace {

// A separator in the heading is no folder.
std::string FileNameOf(std::string heading) {
  for (char& letter : heading) {
    if (IsSeparator(letter)) letter = '_';
  }
  return (heading.empty() ? "graph" : heading) + ".pdf";
}

}  // namespace

PageContent frmGraph2Printer::Content() const {
  const bool is_now = graph_.CursorTime == 0 || graph_.AutoScroll;
  PageContent content{.HeaderText = HeaderText,
                      .view = display_.View(),
                      .lane_height = display_.LaneShare(),
                      .MeasOnly = menu_.mnuMeasOnly.Checked,
                      .AutoScroll = graph_.AutoScroll,
                      .CursorTime = graph_.CursorTime,
                      .moment = is_now ? graph_.Now() : graph_.CursorTime,
                      .months = graph_.platform().locale().Months(),
                      .decimal_separator = graph_.platform().locale().DecimalSeparator()};
  TakeLines(content, graph_.Data);
  return content;
}

void frmGraph2Printer::PrintGraph(const std::string& folder) {
  graph_.platform().dialogs().Preview(
      {.title = "Print",
       .file_name = JoinPath(folder, FileNameOf(HeaderText)),
       .setup = {.landscape = true},
       .draw = [content = std::make_shared<const PageContent>(Content())](
                   DrawingSurface& surface) { GraphPage(surface, *content).DrawGraph(); },
       .drawing =
           [this](bool is_drawing) {
             graph_.form.MousePointer = is_drawing ? kHourglass : kArrow;
           }});
}

}  // namespace tarnlink
