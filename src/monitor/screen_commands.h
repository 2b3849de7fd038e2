// The commands that replace or store the whole screen: New, Open, Save, Save as, Refresh, the file
// histories.
#pragma once

#include <string>

#include "files/screen_file.h"
#include "monitor/address_check.h"
#include "monitor/communication_run.h"
#include "monitor/edit_history.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/run_recorder.h"

namespace tarnlink {

class ScreenCommands {
 public:
  // Binds the entries of the File menu and the Refresh button. All arguments outlive it.
  ScreenCommands(frm_Main& main, frm_Options& options, CommunicationRun& run, RunRecorder& recorder,
                 EditHistory& history, AddressCheck& addresses);

  // Replaces the screen by the file, and with it the selected protocol and the port's presets. A
  // file that cannot be read to its end is told; what was built of it stays, without a file, so
  // that a save can never write half a screen over a whole file.
  void OpenTarnLinkFileBuildScreen(std::string path);

  // Writes the screen. False if it could not be written; the user has been told and the file on
  // disk is as it was. An empty path does nothing and is true.
  bool SaveScreenFile(const std::string& path);

  // 0: to the screen's own file if it has one. 1: under a name that the user is asked for. False
  // if nothing was saved.
  bool M_filesave(int Index);
  void M_fileopen();
  void M_NewScreen();

  // Reads the memory map again, and the screen from its file, which must have been saved once. Asks
  // about a changed screen first.
  void RefreshScreen();

  // Asks about a changed screen and saves it on Yes. False if the user wanted it saved and it was
  // not, or left the question without an answer: whoever asked must go no further.
  bool OfferToSave();

  // Destroys all controls of the screen, stops the watchdog and closes the port.
  void UnloadObjects();

 private:
  // Gives the protocol that the file's tags tell.
  int ReplaceScreen(const std::string& path);
  void BuildScreen(const std::string& text);
  void SelectProtocolOfScreen(int protocol);
  bool SaveAs();
  void ScreenIsSaved();
  void OfferToAddToProject();

  frm_Main& main_;
  frm_Options& options_;
  CommunicationRun& run_;
  RunRecorder& recorder_;
  EditHistory& history_;
  AddressCheck& addresses_;
};

}  // namespace tarnlink
