#include "graph/graph_menu.h"

#include <algorithm>
#include <array>

namespace tarnlink {

namespace {

// What is seen, and how often it is drawn while it follows the clock.
struct Scale {
  std::int16_t minutes;
  int refresh;  // ms: a pixel covers more time at a longer scale
};

constexpr std::array<Scale, kTimeScales> kScales = {
    {{1, 1000}, {5, 2000}, {10, 5000}, {20, 10'000}, {60, 30'000}}};
constexpr Scale kOtherScale = {10, 5000};

constexpr double kHalfMinute = 30;  // seconds

}  // namespace

GraphMenu::GraphMenu(frmGraphic& graph, frmContextMenu& menu, GraphDisplay& display)
    : graph_(graph), menu_(menu), display_(display) {
  for (int i = 0; i < kTimeScales; ++i) {
    menu_.mnuScale(i).Click = [this, i] { mnuScale(i); };
  }
  menu_.mnuTimeScroll.Click = [this] { mnuTimeScroll(); };
  menu_.mnuMeasOnly.Click = [this] {
    menu_.mnuMeasOnly.Checked = !menu_.mnuMeasOnly.Checked;
    display_.DrawAgain();
  };
}

void GraphMenu::mnuScale(int Index) {
  for (int i = 0; i < kTimeScales; ++i) menu_.mnuScale(i).Checked = i == Index;
  const bool is_known = Index >= 0 && Index < kTimeScales;
  const Scale scale = is_known ? kScales.at(static_cast<std::size_t>(Index)) : kOtherScale;
  graph_.TimeScale = scale.minutes;
  graph_.ScreenRefreshTimer->SetInterval(scale.refresh);
  if (!graph_.AutoScroll && graph_.CursorTime != 0) {
    graph_.BaseTime = graph_.CursorTime + graph_.TimeScale * kHalfMinute / kSecondsPerDay;
    if (ToSeconds(graph_.BaseTime) > ToSeconds(graph_.Data.LastTime)) {
      graph_.BaseTime = graph_.Data.LastTime;
    }
  }
  display_.DrawAgain();
}

void GraphMenu::ChangeScale(int steps) {
  for (int i = 0; i < kTimeScales; ++i) {
    if (kScales.at(static_cast<std::size_t>(i)).minutes != graph_.TimeScale) continue;
    const int wanted = std::clamp(i + steps, 0, kTimeScales - 1);
    if (wanted != i) mnuScale(wanted);
    return;
  }
}

void GraphMenu::mnuTimeScroll() {
  if (!graph_.ZOLTCommunication) {
    graph_.platform().dialogs().MessageBox(
        {.text = "Start communication first", .title = "Time Scroll", .icon = Icon::kExclamation});
    return;
  }
  menu_.SetTimeScroll(!menu_.mnuTimeScroll.Checked);
  display_.DrawAgain();
}

}  // namespace tarnlink
