// Makes a parameter file of the values that the screen shows.
#pragma once

#include <string>

#include "monitor/frm_main.h"

namespace tarnlink {

// Which Locations go into it.
struct ParameterSelection {
  bool Class5 = false;
  bool Class7EEPROM = false;
  bool Class7RAM = false;
};

// How many Locations would go into it as the screen is now.
struct ParameterCount {
  int all = 0;
  int binary = 0;  // of them: these go in as 0
};
ParameterCount CountParameters(const frm_Main& main, const ParameterSelection& selection);

// Throws RunTimeError if the file can not be written; an old one is as it was then.
void GenParameterFile(const frm_Main& main, const ParameterSelection& selection,
                      const std::string& FileName);

}  // namespace tarnlink
