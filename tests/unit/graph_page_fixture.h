// A page of the graph on which the numbers come out round, and what is drawn on it.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "graph/graph_page.h"
#include "support/recording_surface.h"

namespace tarnlink {

inline const Date kBase = ToDate({2024, 3, 5, 14, 0, 0});

// A letter of the small font is 84 wide and 168 high, so a value panel of 2016 and two scales of
// 504 leave this page a graph of 6000 by 10,000: ten units to the second at ten minutes.
inline constexpr float kPageWidth = 11'292;
inline constexpr float kPageHeight = 11'901.6F;
inline constexpr float kLeft = 3654;
inline constexpr float kRight = 9654;
inline constexpr float kTop = 850;
inline constexpr float kBottom = 10'850;

// Raw answers whose high byte is the temperature.
inline constexpr std::int32_t kHot = 120 << 8;  // at the top
inline constexpr std::int32_t kWarm = 55 << 8;  // 2250 below it
inline constexpr std::int32_t kOn = 0x0100;

inline std::string Joined(const RecordingSurface::Log& operations) {
  std::string text;
  for (const std::string& operation : operations) text += operation + "\n";
  return text;
}

inline bool StartsWith(const std::string& operation, const char* kind) {
  return operation.starts_with(std::string(kind) + " ");
}

inline bool IsClip(const std::string& operation) {
  return StartsWith(operation, "clip") || operation == "no clip";
}

class GraphPageTest : public ::testing::Test {
 protected:
  using Log = RecordingSurface::Log;

  GraphPageTest() {
    LineColors colors;
    data.Attributes = LoadDefaultAttributes(colors);
    content.view = {.BaseTime = kBase, .TimeScale = 10};
    content.lane_height = 0.01F;
    content.moment = kBase;
  }
  GraphAttribute& Line(int index) { return data.Attributes.at(static_cast<std::size_t>(index)); }
  // A sample `seconds` before the right edge, or behind it.
  void Sample(int index, std::int32_t value, int seconds) {
    data.AllocateChannel(index);
    data.AddMeasurement(value, FromSeconds(ToSeconds(kBase) + seconds), index);
  }
  void Show(int index) {
    Line(index).ShowLine = true;
    data.AllocateChannel(index);
  }
  void ShowWarmLine(int index) {
    Show(index);
    Sample(index, kWarm, -60);
    Sample(index, kWarm, 0);
  }
  // The cursor stands so many seconds before the right edge.
  void SetCursor(int seconds) {
    content.AutoScroll = false;
    content.CursorTime = FromSeconds(ToSeconds(kBase) + seconds);
  }
  const Log& Draw() {
    surface.Forget();
    TakeLines(content, data);
    GraphPage(surface, content).DrawGraph();
    return surface.operations();
  }
  GraphPage DrawnOn(DrawingSurface& paper) {
    TakeLines(content, data);
    GraphPage page(paper, content);
    page.DrawGraph();
    return page;
  }
  Log Texts() {
    Draw();
    return surface.Only("text");
  }
  Log Pens() {
    Draw();
    return surface.Only("pen");
  }
  // The part of a pen: 0 the frame, 1 the lines of time, 2 those of the values, then the data.
  Log OfPen(int pen) {
    Log part;
    for (const std::string& operation : Draw()) {
      if (StartsWith(operation, "pen")) --pen;
      if (StartsWith(operation, "font") || IsClip(operation)) continue;
      if (pen == -1 && !StartsWith(operation, "text")) part.push_back(operation);
    }
    return part;
  }
  // All that is drawn over the grid: lines and lanes, then the cursor.
  std::string OverTheGrid() {
    constexpr int kPensBefore = 3;
    constexpr int kValueLines = 20;
    Log part;
    int pens = 0;
    int behind = 0;
    for (const std::string& operation : Draw()) {
      if (StartsWith(operation, "pen")) ++pens;
      if (StartsWith(operation, "font")) pens = 0;
      if (IsClip(operation)) continue;
      if (pens >= kPensBefore && behind++ > kValueLines) part.push_back(operation);
    }
    return Joined(part);
  }

  Graphic data;
  PageContent content;
  RecordingSurface surface{kPageWidth, kPageHeight};
};

}  // namespace tarnlink
