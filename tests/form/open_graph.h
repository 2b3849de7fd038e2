// The graph opened in a world of fakes at 14:07:09 on 5 March 2024, on a form of 12000 by 9000. No
// slave answers.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "graph/graph.h"
#include "support/fake_world.h"

namespace tarnlink {

inline constexpr double kMinute = 1.0 / 1440;
inline constexpr double kSecond = 1.0 / 86'400;

inline ServiceLine PortOne() {
  return {.ComPortNumber = [] { return 1; }, .Baudrate = [] { return 3; }};
}

class OpenGraph : public ::testing::Test {
 protected:
  OpenGraph() {
    graph.GraphPan.Draw = [this] { ++drawn; };
  }

  void Open() {
    all.form.Load();
    start = graph.Now();
    graph.ScaleWidth = 12'000;
    graph.ScaleHeight = 9'000;
    all.display.Form_Resize();
    drawn = 0;
  }
  GraphAttribute& Line(int index) {
    return graph.Data.Attributes.at(static_cast<std::size_t>(index));
  }
  void Show(int index) {
    Line(index).ShowLine = true;
    graph.Data.AllocateChannel(index);
  }
  // So many seconds after the start, or before it.
  void Sample(int index, int second, int value) {
    graph.Data.AddMeasurement(value, start + second * kSecond, index);
  }
  // Everything measured from the start to `minutes` later; the view stands at its end.
  void StandAfter(double minutes) {
    menu.SetTimeScroll(false);
    graph.Data.LastTime = graph.BaseTime = start + minutes * kMinute;
  }
  // Seconds since the start.
  int Seconds(Date time) const { return static_cast<int>(ToSeconds(time) - ToSeconds(start)); }
  ScriptedDialog& ExpectBusy() {
    return world.dialogs().ExpectMessageBox(
        {.text = "Com port busy.", .title = "Communication port", .icon = Icon::kCritical});
  }

  FakeWorld world;
  std::string mss_folder;
  std::string grp_folder;
  GraphProject project{mss_folder, grp_folder, {}, {}};
  Graph all{world, PortOne(), project};
  frmGraphic& graph = all.graph;
  frmContextMenu& menu = all.menu;
  Date start = 0;
  int drawn = 0;
};

}  // namespace tarnlink
