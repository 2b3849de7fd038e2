// The screen on paper: a picture of its boxes, labels and check marks at one moment, and how it is
// drawn on pages of any size.
#pragma once

#include <string>
#include <vector>

#include "monitor/frm_main.h"
#include "monitor/sheet_layout.h"
#include "platform/drawing_surface.h"

namespace tarnlink {

struct SheetItem {
  enum class Kind { kBox, kLabel, kCheck };

  Kind kind = Kind::kBox;
  SheetFrame frame;  // a label's size is that of its text, which the surface alone knows
  int group = 0;     // the Location's index, 0 for a label
  std::string text = {};
  Font font = {};
  Colour back = kWhite;
  Colour fore = kBlack;  // of labels only: boxes take what reads best
  bool checked = false;
};

struct ScreenSheet {
  std::string name;    // at the left of each page's first line
  std::string moment;  // at its right
  Colour colour = kWhite;
  std::vector<SheetItem> items;
};

// All that can be seen on the screen now.
ScreenSheet TakeSheet(const frm_Main& main, const std::string& moment);

// Whether the part of the form that holds objects is wider than high. Labels count by estimate.
bool IsWide(const ScreenSheet& sheet);

// Draws all pages. Colours of the desktop come out as on a light one, since paper is white.
void DrawSheet(const ScreenSheet& sheet, DrawingSurface& surface);

}  // namespace tarnlink
