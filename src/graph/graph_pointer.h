// What the mouse does beyond the cursor: it tells what stands under the pointer, and moves the view
// in time while that stands.
#pragma once

#include <optional>
#include <string>

#include "graph/frm_graphic.h"
#include "graph/graph_display.h"
#include "graph/graph_geometry.h"
#include "platform/drawing_surface.h"

namespace tarnlink {

// The sample of a line that is nearest to the pointer.
struct PointerReading {
  std::string Name;
  std::string Value;  // with its unit; "on" or "off" in a lane
  std::string Time;
  Point At;  // where the sample stands in the picture; in a lane the pointer itself
  Colour LineColor = kBlack;

  bool operator==(const PointerReading&) const = default;
};

class GraphPointer {
 public:
  // Both outlive it.
  GraphPointer(frmGraphic& graph, GraphDisplay& display) : graph_(graph), display_(display) {}

  // The line that passes `at`, in the picture `view`, or the lane that it is in; nothing where
  // there is none.
  std::optional<PointerReading> Reading(const GraphView& view, Point at) const;

  // Moves the view by so many minutes, as far as something was measured. Nothing while it follows
  // the clock.
  void MoveInTime(double minutes);

 private:
  std::optional<PointerReading> ReadLine(const GraphView& view, Point at) const;
  std::optional<PointerReading> ReadLane(const GraphView& view, Point at) const;
  PointerReading Tell(const GraphAttribute& line, const MeasureSample& sample, Point at) const;

  frmGraphic& graph_;
  GraphDisplay& display_;
};

}  // namespace tarnlink
