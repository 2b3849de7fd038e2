// Automatic saving of what was measured: one file for each day.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "graph/frm_context_menu.h"
#include "graph/frm_graphic.h"

namespace tarnlink {

class AutoSave {
 public:
  // Binds the timer. Both forms outlive it.
  AutoSave(frmGraphic& graph, frmContextMenu& menu);

  // `Dir`, which ends with its separator, the day such as "05mar24", "-" and the first number of 00
  // to 999 of which there is no file yet. All taken: the last one, which is replaced.
  std::string GetNewFileName(const std::string& Dir, Date Day) const;

  // Saves once more if automatic saving is on.
  void Unload();

  // Writes the file of the day that has passed or, as the graph is left, is under way.
  std::function<void()> AutoSaveMeasurements;
  // Tries once more if the file of a day has failed. Called every ten minutes.
  std::function<void()> SaveLostDay;

 private:
  void AutoSaveTimer();
  void Later(void (AutoSave::*save)());
  void Run(void (AutoSave::*save)());
  void Save();
  void Retry();

  frmGraphic& graph_;
  frmContextMenu& menu_;
  int ticks_ = 0;
  std::unique_ptr<Timer> save_timer_;  // a new one each time: below a box the next day comes
};

}  // namespace tarnlink
