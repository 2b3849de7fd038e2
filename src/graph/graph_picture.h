// The picture of the graph: grid, lines, lanes and cursor on a surface, on screen or paper.
#pragma once

#include <cstdint>
#include <vector>

#include "graph/graph_geometry.h"
#include "graph/graphic.h"
#include "platform/drawing_surface.h"

namespace tarnlink {

// A style that is none counts as solid.
DrawStyle StyleOf(const GraphAttribute& line);

// Widths in device pixels.
struct GraphPens {
  int hairline = 1;  // of grid and cursor
  int solid = 2;     // of a line
  int broken = 1;
  int lane = 2;
};

// What is drawn of the picture.
struct GraphPart {
  float left = 0;  // the grid reaches from here
  float right = 0;
  // The lines reach, in whole seconds, from the first sample behind `newest` back to the first one
  // before `oldest`.
  std::int64_t newest = 0;
  std::int64_t oldest = 0;
};

// Samples of a channel: the newest one to begin with, and how many older ones follow.
struct SamplesShown {
  int newest = 0;
  int older = 0;
};

// The first sample behind the right edge, or the newest.
int NewestInView(const MeasureChannel& channel, std::int64_t base);
// From there to the first one that lies before `start`.
SamplesShown SamplesInView(const MeasureChannel& channel, std::int64_t base, std::int64_t start);

class GraphPicture {
 public:
  // `lane_height` is that of one caption row in the scale of the surface; `MeasOnly` leaves of each
  // line only a stroke for a sample. All outlive it.
  GraphPicture(DrawingSurface& surface, const Graphic& data, const GraphView& view,
               float lane_height, bool MeasOnly, const GraphPens& pens = {});

  // The whole view until it is told.
  void SetPart(const GraphPart& part);

  // Vertical lines at full times, then the horizontal ones of both bands.
  void DrawGrid();
  // All lines that are shown in the order of their indices, each on/off line in a lane of its own.
  void DrawLines();
  // Samples joined by straight lines, whatever time lies between them.
  void DrawAnalogLine(int Index, const GraphAttribute& Attribute);
  // A bar while on, a thin line at its base while off.
  void DrawStatusLine(int Index, int Lane, const GraphAttribute& Attribute);
  // Nothing for a `CursorTime` of 0.
  void DrawCursor(Date CursorTime);

 private:
  SamplesShown InView(const MeasureChannel& channel) const;
  void MapTimes();
  float ToX(std::int64_t seconds) const;
  void SetLinePen(const GraphAttribute& line, int solid, int broken);

  DrawingSurface& surface_;
  const Graphic& data_;
  const GraphView& view_;
  float lane_height_;
  bool meas_only_;
  GraphPens pens_;
  TimeMap times_;
  GraphPart part_;
  std::vector<float> places_;  // of the seconds of the part, from its oldest on
  std::vector<Point> points_;  // kept between lines, so that a redraw does not allocate
};

}  // namespace tarnlink
