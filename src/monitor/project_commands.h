// The commands of the Project menu and of the project window.
#pragma once

#include <string>
#include <string_view>

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

  // A file that was dropped from the desktop goes to the group of its extension. A group that holds
  // one file refuses a second, and so does the project a file that it has.
  void AddDroppedFile(const std::string& path);

 private:
  bool AddTo(const std::string& group, const std::string& path);
  void Say(const std::string& text, std::string_view title);

  frm_Main& main_;
};

}  // namespace tarnlink
