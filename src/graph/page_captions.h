// The caption rows of the page: name, value and unit of each line that has one, beside the graph.
#pragma once

#include <string>

#include "graph/page_content.h"
#include "platform/drawing_surface.h"

namespace tarnlink {

// The small letters of the page.
inline const Font kPageFont{.name = "Small Fonts", .size = 7.0F};

// The widest row that the panel is meant to hold.
inline constexpr const char* kWidestRow = " Temperature : 7000 rpm ";

// Draws the rows on a panel with this upper left corner. Each band begins at its own place, or
// behind the rows of the one before where those reach so far; the letters are smaller where not all
// rows would find room otherwise.
void DrawPageCaptions(DrawingSurface& output, const PageContent& content, Point corner,
                      float height, const std::string& decimal_separator);

}  // namespace tarnlink
