#include "graph/auto_save.h"

#include "common/numbers.h"
#include "common/text.h"

namespace tarnlink {

namespace {

constexpr int kLastNumber = 999;
constexpr int kDigits = 2;

// A day and five minutes, so that the file of a day is whole.
constexpr std::int64_t kSecondsUntilSave = 1445 * 60;

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
  if (ToSeconds(graph_.Now()) > ToSeconds(graph_.Data.AutoSaveDay) + kSecondsUntilSave) Save();
}

void AutoSave::Unload() { Save(); }

void AutoSave::Save() {
  if (menu_.mnuAutoSave.Checked && AutoSaveMeasurements) AutoSaveMeasurements();
}

}  // namespace tarnlink
