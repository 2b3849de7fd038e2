// A project as a whole: new, open, save, and its window.
#pragma once

#include <string>

#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/memory_map.h"

namespace tarnlink {

class ProjectCommands {
 public:
  // Binds the entries. All outlive it.
  ProjectCommands(frm_Main& main, const frm_Options& options, MemoryMap& map);

  // Hides the project window or shows it.
  void mnuViewProjectWindow();

  // An empty project. Asks about a changed one first.
  void mnuNewProject();
  void mnuOpenProject();
  // Asks for a name and writes the project there; false if it was not saved. The old file stays
  // when it cannot be written.
  bool mnuSaveProject();

  // Loads a project, with the map and the IDs that it names. One that cannot be read leaves an
  // empty project and a word; a map that stood ahead of the bad entry stays loaded.
  void ReadProject(std::string FileName);
  // Whether the project may go: it is unchanged, has been saved, or the user wants it so.
  bool OfferToSaveProject();

 private:
  void ShowNewProject();
  bool AddEntries(const std::string& text);
  std::string BesideProject(const std::string& entry) const;
  void ReadMap(const std::string& key);
  void ReadNames();
  void WarnOfExtensions();
  void SayCannotRead(const std::string& reason);

  frm_Main& main_;
  const frm_Options& options_;
  MemoryMap& map_;
};

}  // namespace tarnlink
