#include "graph/graph_display.h"

#include <algorithm>
#include <cmath>

#include "graph/graph_captions.h"
#include "graph/graph_picture.h"

namespace tarnlink {

namespace {

constexpr int kMostMinutes = 30'000;  // that the scroll bar reaches

}  // namespace

int MinutesBetween(Date from, Date to) {
  const auto minute = [](Date time) {
    const std::int64_t seconds = ToSeconds(time);
    return seconds / kSecondsPerMinute - (seconds % kSecondsPerMinute < 0 ? 1 : 0);
  };
  return static_cast<int>(
      std::clamp<std::int64_t>(minute(to) - minute(from), INT32_MIN, INT32_MAX));
}

GraphDisplay::GraphDisplay(frmGraphic& graph, frmContextMenu& menu) : graph_(graph), menu_(menu) {
  graph_.ScreenRefreshTimer->SetOnTimer([this] { ScreenRefreshTimer(); });
  graph_.HScroll1.Change = [this] { HScroll1Changed(); };
  menu_.DrawAgain = [this] { DrawAgain(); };
}

GraphView GraphDisplay::View() const {
  return {.BaseTime = graph_.BaseTime,
          .TimeScale = graph_.TimeScale,
          .ScaleWidth = graph_.GraphPan.ScaleWidth,
          .ScaleHeight = graph_.GraphPan.ScaleHeight};
}

// --- Drawing -------------------------------------------------------------------------------------

void GraphDisplay::DrawAgain() {
  const GraphColors& colours = graph_.Data.Colors;
  graph_.GraphPan.ForeColor = colours.CaptionColor;
  graph_.GraphPan.BackColor = colours.GraphColor;
  graph_.form.BackColor = colours.BackColor;
  for (int i = 0; i <= graph_.frm.last(); ++i) graph_.frm(i).BackColor = colours.BackColor;
  DrawTimeScale();
  if (graph_.GraphPan.Draw) graph_.GraphPan.Draw();
  ShowCaptions(graph_);
  ShowDate();
  if (ToSeconds(graph_.BaseTime) > ToSeconds(graph_.Data.LastTime)) {
    graph_.BaseTime = graph_.Data.LastTime;
    // What is seen is what a click means.
    DrawTimeScale();
    if (graph_.GraphPan.Draw) graph_.GraphPan.Draw();
  }
  ShowScrollBar();
  const auto& lines = graph_.Data.Attributes;
  graph_.lblNoLine.Visible =
      std::none_of(lines.begin(), lines.end(), [](const auto& line) { return line.IsShown(); });
}

float GraphDisplay::LaneHeight() const { return LaneShare() * graph_.GraphPan.ScaleHeight; }

float GraphDisplay::LaneShare() const {
  const float panel = graph_.frm(0).Height;
  return panel > 0 ? graph_.lblVal(0).Height / panel : 0;
}

void GraphDisplay::Paint(DrawingSurface& surface) const {
  const GraphView view = View();
  surface.Cls(graph_.Data.Colors.GraphColor);
  GraphPicture picture(surface, graph_.Data, view, LaneHeight(), menu_.mnuMeasOnly.Checked);
  picture.DrawGrid();
  picture.DrawLines();
  picture.DrawCursor(graph_.CursorTime);
}

// While it follows the clock, this alone moves the view.
void GraphDisplay::DrawTimeScale() {
  const GraphColors& colours = graph_.Data.Colors;
  if (graph_.AutoScroll) graph_.BaseTime = graph_.Data.LastTime = graph_.Now();
  const auto labels = TimeLabels(graph_.BaseTime, graph_.TimeScale, graph_.frm(1).Width.get());
  for (int i = 0; i < kTimeLines; ++i) {
    Label& label = graph_.lblX(i);
    label.BackColor = colours.BackColor;
    label.ForeColor = colours.CaptionColor;
    const bool is_shown = static_cast<std::size_t>(i) < labels.size();
    label.Visible = is_shown;
    if (!is_shown) continue;
    const TimeLabel& shown = labels[static_cast<std::size_t>(i)];
    label.Caption = shown.Caption;
    label.Left = static_cast<float>(shown.Center - label.Width / 2);
  }
}

std::string GraphDisplay::Stamp(Date time) const {
  return FormatDate(time, kStampPattern, graph_.platform().locale().Months());
}

void GraphDisplay::ShowDate() {
  const bool is_now = graph_.CursorTime == 0 || graph_.AutoScroll;
  graph_.lblDate.Caption = Stamp(is_now ? graph_.Now() : graph_.CursorTime);
  graph_.lblDate.ToolTipText =
      Stamp(graph_.Data.FirstTime) + "  <->  " + Stamp(graph_.Data.LastTime);
}

void GraphDisplay::ShowScrollBar() {
  const auto minutes = [this](Date to) {
    const std::int64_t passed = MinutesBetween(graph_.Data.FirstTime, to);
    return static_cast<int>(std::clamp<std::int64_t>(passed - graph_.TimeScale, 0, kMostMinutes));
  };
  ScrollBar& bar = graph_.HScroll1;
  bar.Max = minutes(graph_.Data.LastTime);
  bar.LargeChange = graph_.TimeScale;
  bar.Value = graph_.AutoScroll ? bar.Max.get() : minutes(graph_.BaseTime);
  bar.SmallChange = 1;
}

// --- The form ------------------------------------------------------------------------------------

void GraphDisplay::Form_Resize() {
  constexpr float kDateGap = 1.1F;
  const float height = graph_.ScaleHeight;
  graph_.lblExit.Left = 0;
  graph_.lblExit.Top = height - graph_.lblExit.Height;
  graph_.lblTest.Left = graph_.lblExit.Width;
  graph_.lblTest.Top = height - graph_.lblTest.Height;
  graph_.lblDate.Left = 0;
  graph_.lblDate.Top = graph_.lblExit.Top - kDateGap * graph_.lblDate.Height;
  if (height <= kSmallestForm || graph_.ScaleWidth <= kSmallestForm) return;
  const auto put = [](PlacedControl& control, const Place& place) {
    control.Left = place.Left;
    control.Top = place.Top;
    control.Width = place.Width;
    control.Height = place.Height;
  };
  const GraphLayout layout = LayOutGraph(graph_.ScaleWidth, height);
  put(graph_.GraphPan, layout.GraphPan);
  for (int i = 0; i <= graph_.frm.last(); ++i) {
    put(graph_.frm(i), layout.frm.at(static_cast<std::size_t>(i)));
  }
  put(graph_.HScroll1, layout.HScroll1);
  graph_.GraphPan.ScaleWidth = layout.GraphPan.Width;
  graph_.GraphPan.ScaleHeight = layout.GraphPan.Height;
  for (int i = 0; i <= graph_.lblYL.last(); ++i) {
    graph_.lblYL(i).Top = ScaleLabelTop(i, graph_.frm(2).Height, graph_.lblYL(i).Height);
    graph_.lblYR(i).Top = ScaleLabelTop(i, graph_.frm(3).Height, graph_.lblYR(i).Height);
  }
  ColourLabels();
  DrawAgain();
}

void GraphDisplay::ColourLabels() {
  const GraphColors& colours = graph_.Data.Colors;
  const auto colour = [&](Label& label) {
    label.BackColor = colours.BackColor;
    label.ForeColor = colours.CaptionColor;
  };
  for (int i = 0; i <= graph_.lblYL.last(); ++i) {
    colour(graph_.lblYL(i));
    colour(graph_.lblYR(i));
  }
  for (Label* label : {&graph_.lblDate, &graph_.lblExit, &graph_.lblTest}) colour(*label);
  for (int i = 0; i <= kCaptionLabels; ++i) graph_.lblVal(i).BackColor = colours.BackColor;
}

void GraphDisplay::ScreenRefreshTimer() {
  graph_.ScreenRefreshTimer->SetEnabled(false);
  DrawAgain();
  graph_.ScreenRefreshTimer->SetEnabled(true);
}

// Setting the bar to the time that is shown is no change of the time.
void GraphDisplay::HScroll1Changed() {
  const auto minute = [](Date time) { return FormatDate(time, "dd-hh:nn", EnglishMonthNames()); };
  const Date base =
      graph_.Data.FirstTime + (graph_.HScroll1.Value + graph_.TimeScale) / kMinutesPerDay;
  if (minute(base) == minute(graph_.BaseTime)) return;
  graph_.BaseTime = base;
  DrawAgain();
}

// --- The cursor ----------------------------------------------------------------------------------

void GraphDisplay::GraphPanMouseUp(MouseButton button, float X) {
  if (button == MouseButton::kRight && ShowContextMenu) ShowContextMenu();
  if (button != MouseButton::kLeft) return;
  graph_.AutoScroll = false;
  graph_.ScreenRefreshTimer->SetEnabled(false);
  menu_.mnuTimeScroll.Checked = false;
  const double width = graph_.GraphPan.ScaleWidth;
  graph_.CursorTime = graph_.BaseTime - (width - X) / width * graph_.TimeScale / kMinutesPerDay;
  DrawAgain();
}

void GraphDisplay::GraphPanKeyDown(CursorKey key, bool shift) {
  if (graph_.CursorTime == 0) return;
  constexpr double kStep = 1;
  constexpr double kLongStep = 10;
  const double seconds = shift ? kLongStep : kStep;
  graph_.CursorTime += (key == CursorKey::kLeft ? -seconds : seconds) / kSecondsPerDay;
  KeepCursorInView();
  DrawAgain();
}

// To the left the view goes on by a page, to the right it runs along.
void GraphDisplay::KeepCursorInView() {
  const std::int64_t cursor = ToSeconds(graph_.CursorTime);
  const std::int64_t left = ToSeconds(graph_.BaseTime) - cursor;
  const Date scale = graph_.TimeScale / kMinutesPerDay;
  if (left > 0 && left > graph_.TimeScale * kSecondsPerMinute) {
    if (cursor >= ToSeconds(graph_.Data.FirstTime)) {
      graph_.BaseTime = graph_.CursorTime + scale;
    } else {
      graph_.CursorTime = graph_.BaseTime - scale;
    }
  } else if (left <= 0) {
    if (cursor < ToSeconds(graph_.Data.LastTime)) {
      graph_.BaseTime = graph_.CursorTime;
    } else {
      graph_.CursorTime = graph_.BaseTime;
    }
  }
}

void GraphDisplay::PanelMouseDown(int index, MouseButton button) {
  if (button != MouseButton::kLeft) {
    if (ShowContextMenu) ShowContextMenu();
  } else if (index == 0) {
    if (ShowSettings) ShowSettings();
    DrawAgain();
  }
}

void GraphDisplay::FormMouseUp(MouseButton button) {
  if (button == MouseButton::kRight && ShowContextMenu) ShowContextMenu();
}

}  // namespace tarnlink
