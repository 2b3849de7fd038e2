// The picture of the graph: grid, lines, lanes and cursor on a surface, on screen or paper.
#pragma once

#include <vector>

#include "graph/graph_geometry.h"
#include "graph/graphic.h"
#include "platform/drawing_surface.h"

namespace tarnlink {

// Widths in device pixels.
struct GraphPens {
  int solid = 2;  // of a line
  int broken = 1;
  int lane = 2;
};

class GraphPicture {
 public:
  // `lane_height` is that of one caption row in the scale of the surface; `MeasOnly` leaves of each
  // line only a stroke for a sample. All outlive it.
  GraphPicture(DrawingSurface& surface, const Graphic& data, const GraphView& view,
               float lane_height, bool MeasOnly, const GraphPens& pens = {});

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
  // The samples in view: the newest one to begin with, and how many older ones follow.
  struct Range {
    int newest = 0;
    int older = 0;
  };

  Range InView(const MeasureChannel& channel) const;
  Point PointOf(const MeasureSample& sample, const GraphAttribute& line) const;
  void SetLinePen(const GraphAttribute& line, int solid, int broken);

  DrawingSurface& surface_;
  const Graphic& data_;
  const GraphView& view_;
  float lane_height_;
  bool meas_only_;
  GraphPens pens_;
  std::vector<Point> points_;  // kept between lines, so that a redraw does not allocate
};

}  // namespace tarnlink
