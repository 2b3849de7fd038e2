// The comparison of a screen's addresses with the memory map while the screen is being opened.
#pragma once

#include <optional>

#include "monitor/frm_main.h"
#include "monitor/memory_map.h"

namespace tarnlink {

class AddressCheck {
 public:
  // Both outlive it.
  AddressCheck(frm_Main& main, const MemoryMap& map) : main_(main), map_(map) {}

  // A screen begins to be opened: nobody has been asked yet.
  void Begin() { adapts_.reset(); }
  // Gives Location `index`, just built from a record of memory, the address that the map has for
  // its name. The first one that differs asks the user; the answer is for all that follow.
  void AdaptAddress(int index);

 private:
  bool Ask();

  frm_Main& main_;
  const MemoryMap& map_;
  std::optional<bool> adapts_;
};

}  // namespace tarnlink
