// New objects on the screen: a Location, a text label.
#pragma once

#include "monitor/communication_run.h"
#include "monitor/edit_history.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/screen_grid.h"

namespace tarnlink {

class AddCommands {
 public:
  // Binds the tool bar's buttons. All arguments outlive it.
  AddCommands(frm_Main& main, const frm_Options& options, CommunicationRun& run,
              EditHistory& history);

  // Under the last one, with the defaults of the table. One too many for the table is an error that
  // stops the run; the screen stays as it was, but counts as changed.
  void AddLocation();
  void AddText();

 private:
  void AddValueBox(int n);
  void AddNameBox(int n);
  void AddCheckBox(int n);

  frm_Main& main_;
  const frm_Options& options_;
  CommunicationRun& run_;
  EditHistory& history_;
  ScreenGrid grid_;
};

}  // namespace tarnlink
