// The view of the graph: redrawing, scales and captions, the time that is seen, the cursor.
#pragma once

#include <functional>
#include <string>

#include "graph/frm_context_menu.h"
#include "graph/frm_graphic.h"
#include "graph/graph_geometry.h"
#include "platform/drawing_surface.h"

namespace tarnlink {

// Keys that move the cursor.
enum class CursorKey { kLeft, kRight };

class GraphDisplay {
 public:
  // Both forms outlive it; it binds the refresh timer, the scroll bar and the menu's `DrawAgain`.
  GraphDisplay(frmGraphic& graph, frmContextMenu& menu);

  // Brings labels, scroll bar and captions up to date and has the picture drawn anew.
  void DrawAgain();
  // Lays the form out in its present size, unless that is too small, and draws it.
  void Form_Resize();
  // The whole picture with its cursor, on any surface.
  void Paint(DrawingSurface& surface) const;
  GraphView View() const;
  // Of a lane in the picture: one caption row.
  float LaneHeight() const;
  // The same as a part of the picture's height.
  float LaneShare() const;

  // --- The user ---
  // A button of the mouse goes up on the picture, `X` from its left edge.
  void GraphPanMouseUp(MouseButton button, float X);
  void GraphPanKeyDown(CursorKey key, bool shift);
  // The mouse on one of the panels around it, and on the form itself.
  void PanelMouseDown(int index, MouseButton button);
  void FormMouseUp(MouseButton button);

  std::function<void()> ShowContextMenu;
  std::function<void()> ShowSettings;  // modal

 private:
  void DrawTimeScale();
  void ShowDate();
  void ShowScrollBar();
  void HScroll1Changed();
  void ScreenRefreshTimer();
  void KeepCursorInView();
  void ColourLabels();
  std::string Stamp(Date time) const;

  frmGraphic& graph_;
  frmContextMenu& menu_;
};

// Whole minutes from `from` to `to`: the minute boundaries that are passed.
int MinutesBetween(Date from, Date to);

}  // namespace tarnlink
