// The command Print Screen.
#pragma once

#include "monitor/frm_main.h"

namespace tarnlink {

class PrintCommands {
 public:
  // Binds the entry. `main` outlives it.
  explicit PrintCommands(frm_Main& main);

  // Shows the screen on paper, as it was when the command was given, to print it or to keep it as a
  // PDF file. The File menu is hidden meanwhile.
  void mnuPrint();

 private:
  frm_Main& main_;
};

}  // namespace tarnlink
