// The Help Topics entry, and the help of a form.
#pragma once

#include <string_view>

#include "monitor/frm_main.h"

namespace tarnlink {

class HelpTopics {
 public:
  // Binds the entry. `main` outlives it.
  explicit HelpTopics(frm_Main& main);

  // Opens the first page of the help.
  void M_HelpTopics();

  // Opens a page of the help that was shipped with the program in what the desktop has for such
  // pages. Says so if there is none.
  void Open(std::string_view page);

 private:
  frm_Main& main_;
};

}  // namespace tarnlink
