// The graph as a page: the same picture as on the screen with all of its texts, drawn on paper or
// on whatever else is drawn on. Numbers are in units of 1440 to the inch. It needs nothing but what
// it is given, so that it can be drawn in any thread.
#pragma once

#include "common/dates.h"
#include "graph/page_content.h"
#include "platform/drawing_surface.h"

namespace tarnlink {

class GraphPage {
 public:
  static constexpr float MarginTop = 850;
  static constexpr float MarginLeft = 1134;

  // All outlive it.
  GraphPage(DrawingSurface& Output, const PageContent& content);

  // The whole page; on one that has no room for the graph all that stands beside it.
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
  void DrawLeftCaption();
  void DrawRightCaption();
  void DrawTimeScale();
  void DrawHorScale();
  void DrawLines();
  void DrawAnalogLine(const PageLine& shown);
  void DrawStatusLine(const PageLine& shown, int Lane);
  void DrawCursor();
  void DrawHeading();
  void SetLinePen(const GraphAttribute& line);
  bool CutAtFrame(Point& from, Point& to) const;
  float ScaleTop(int item) const;
  int Width(float twips) const;

  DrawingSurface& Output;
  const PageContent& content_;
  float GraphHeight = 0.0F;
  float GraphWidth = 0.0F;
  float ValueColumn = 0.0F;
  float ScaleColumn = 0.0F;
  float letter_ = 0.0F;  // the height of one
};

}  // namespace tarnlink
