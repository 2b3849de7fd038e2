// The Help Topics entry.
#pragma once

#include "monitor/frm_main.h"

namespace tarnlink {

class HelpTopics {
 public:
  // Binds the entry. `main` outlives it.
  explicit HelpTopics(frm_Main& main);

  // Opens the help that was shipped with the program in what the desktop has for such pages. Says
  // so if there is none.
  void M_HelpTopics();

 private:
  frm_Main& main_;
};

}  // namespace tarnlink
