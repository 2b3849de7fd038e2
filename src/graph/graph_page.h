// The graph as a page: the same picture as on the screen with all of its texts, drawn on paper or
// on whatever else is drawn on. Numbers are in units of 1440 to the inch.
#pragma once

#include <string>
#include <vector>

#include "common/dates.h"
#include "graph/graph_geometry.h"
#include "graph/graph_picture.h"
#include "graph/graphic.h"
#include "platform/drawing_surface.h"
#include "platform/locale.h"

namespace tarnlink {

// What the page shows, as it was when printing began.
struct PageContent {
  std::string HeaderText;
  GraphView view;            // its time and scale; the size is the page's own
  float lane_height = 0.0F;  // of a lane, as a part of the picture's height
  bool MeasOnly = false;
  bool AutoScroll = true;
  Date CursorTime = 0;
  Date moment = 0;  // that is written below the graph
};

class GraphPage {
 public:
  static constexpr float MarginTop = 850;
  static constexpr float MarginLeft = 1134;

  // All outlive it.
  GraphPage(DrawingSurface& Output, const Graphic& data, const PageContent& content,
            const Locale& locale);

  void DrawGraph();

  // Places on the page.
  float TimeToX(Date Time) const;
  float ValueToY(float Value, int Unit) const;
  // The graph's area.
  float Left() const { return ValueColumn + ScaleColumn + MarginLeft; }
  float Right() const { return Left() + GraphWidth; }
  float Bottom() const { return MarginTop + GraphHeight; }

 private:
  void DrawFrame();
  void DrawValuePanel();
  void DrawRow(const GraphAttribute& line, int index, float top);
  void DrawMoment();
  void DrawLeftCaption();
  void DrawRightCaption();
  void DrawTimeScale();
  void DrawHorScale();
  void DrawLines();
  void DrawAnalogLine(int Index, const GraphAttribute& Attribute);
  void DrawStatusLine(int Index, int Lane, const GraphAttribute& Attribute);
  void DrawCursor();
  void DrawHeading();
  bool CutAtFrame(Point& newer, Point& older) const;
  SamplesShown InView(const MeasureChannel& channel) const;
  Point PointOf(const MeasureSample& sample, const GraphAttribute& line) const;
  float ScaleTop(int item) const;
  int Width(float twips) const;

  DrawingSurface& Output;
  const Graphic& data_;
  const PageContent& content_;
  const Locale& locale_;
  float GraphHeight = 0.0F;
  float GraphWidth = 0.0F;
  float ValueColumn = 0.0F;
  float ScaleColumn = 0.0F;
  float letter_ = 0.0F;  // the height of one
};

}  // namespace tarnlink
