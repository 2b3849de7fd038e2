// What a page of the graph shows, as it was when it was asked for. Recording goes on behind that.
#pragma once

#include <string>
#include <vector>

#include "common/dates.h"
#include "graph/graph_geometry.h"
#include "graph/graphic.h"

namespace tarnlink {

struct PageLine {
  GraphAttribute line;
  bool is_lane = false;
  float value = 0.0F;  // under the cursor, or the newest
  // From the first one behind the right edge back to the first one before the left.
  std::vector<MeasureSample> samples = {};
};

struct PageContent {
  std::string HeaderText;
  GraphView view;            // its time and scale; the size is the page's own
  float lane_height = 0.0F;  // of a lane, as a part of the picture's height
  bool MeasOnly = false;
  bool AutoScroll = true;
  Date CursorTime = 0;
  Date moment = 0;                          // that is written below the graph
  MonthNames months = EnglishMonthNames();  // and numbers, as the user writes them
  std::string decimal_separator = ".";
  GraphColors Colors = {};
  std::vector<PageLine> lines = {};  // all that are drawn or have a caption row
};

// Fills in colours and lines, for the view and the cursor that `content` has.
void TakeLines(PageContent& content, const Graphic& data);

}  // namespace tarnlink
