// The commands of the Project menu and of the project window.
#pragma once

#include "monitor/frm_main.h"

namespace tarnlink {

class ProjectCommands {
 public:
  // Binds the entries. `main` outlives it.
  explicit ProjectCommands(frm_Main& main);

  // Hides the project window or shows it.
  void mnuViewProjectWindow();

  // Asks for a name and writes the project there. The old file stays when it cannot be written.
  void mnuSaveProject();

 private:
  frm_Main& main_;
};

}  // namespace tarnlink
