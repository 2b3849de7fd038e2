#include "graph/auto_save.h"

#include "common/numbers.h"
#include "common/text.h"

namespace tarnlink {

namespace {

constexpr int kLastNumber = 999;
constexpr int kDigits = 2;

// A day and five minutes, so that the file of a day is whole.
constexpr std::int64_t kSecondsUntilSave = 1445 * 60;

constexpr int kTicksUntilRetry = 10;  // of a minute

}  // namespace

AutoSave::AutoSave(frmGraphic& graph, frmContextMenu& menu) : graph_(graph), menu_(menu) {
  graph_.AutoSaveTimer->SetOnTimer([this] { AutoSaveTimer(); });
}

std::string AutoSave::GetNewFileName(const std::string& Dir, Date Day) const {
  const std::string day = FormatDate(Day, "ddmmmyy", graph_.platform().locale().Months());
  std::string name;
  for (int n = 0; n <= kLastNumber; ++n) {
    name = Dir + day + "-" + Stuff(std::to_string(n), kDigits) + ".mss";
    if (!graph_.platform().files().Exists(name)) break;
  }
  return name;
}

void AutoSave::AutoSaveTimer() {
  if (ToSeconds(graph_.Now()) > ToSeconds(graph_.Data.AutoSaveDay) + kSecondsUntilSave) {
    Later(&AutoSave::Save);
  } else if (++ticks_ % kTicksUntilRetry == 0) {
    Later(&AutoSave::Retry);
  }
}

// The timer rests as long as its handler stands below a box.
void AutoSave::Later(void (AutoSave::*save)()) {
  constexpr int kAtOnce = 1;  // ms
  save_timer_ = graph_.platform().CreateTimer();
  save_timer_->SetInterval(kAtOnce);
  save_timer_->SetOnTimer([this, save] { Run(save); });
  save_timer_->SetEnabled(true);
}

void AutoSave::Run(void (AutoSave::*save)()) {
  save_timer_.reset();
  (this->*save)();
}

void AutoSave::Unload() { Save(); }

void AutoSave::Save() {
  if (menu_.mnuAutoSave.Checked && AutoSaveMeasurements) AutoSaveMeasurements();
}

void AutoSave::Retry() {
  if (menu_.mnuAutoSave.Checked && SaveLostDay) SaveLostDay();
}

}  // namespace tarnlink
