// How the program starts and how it is left.
#pragma once

#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/screen_commands.h"

namespace tarnlink {

class StartAndLeave {
 public:
  // Binds the Exit entry. All arguments outlive it.
  StartAndLeave(frm_Main& main, frm_Options& options, ScreenCommands& screen);

  // The main form's load: options, project tree, ApplyOptions, Locations, window place, histories,
  // dialog folders, project window, in this order.
  void Form_Load();

  // Asks about an unsaved screen and project, closes the port, stores what survives and unloads the
  // form. The program goes on when a save that the user asked for did not happen.
  void M_exit();

 private:
  bool SaveWhatChanged();
  void LoadPlace();
  void LoadHistories();
  void LoadFolders();
  void SavePlace();
  void SaveHistories();
  void SaveFolders();

  frm_Main& main_;
  frm_Options& options_;
  ScreenCommands& screen_;
};

}  // namespace tarnlink
