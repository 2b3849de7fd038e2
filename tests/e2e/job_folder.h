// A folder with a copy of the samples: a job whose controller's software is being rebuilt.
#pragma once

#include <string>

#include "driven_program.h"

namespace e2e {

// The lines of the sample project's tree.
inline const std::string kSampleTree =
    "boiler.prj|Tarnlink Files|zolt.wcr|boiler.wcr|service.wcr|Parameter Files|"
    "Graphic Files|burner.grp|Error Description|default.erc|ID Description|default.ids|Memory Map|"
    "atmega.map";
inline const std::string kEmptyTree =
    "Unnamed Project|Tarnlink Files|Parameter Files|Graphic Files|Error Description|"
    "ID Description|Memory Map";

// What `modal` says while the settings of a Location are open.
inline const std::string kSettings = "Settings For Memory Location|frm_Settings";

class JobFolder : public TestFolder {
 public:
  // The project, its screens, its map and its files of names.
  JobFolder();

  // The map as a new build prints it: `variable` stands at `address`, eight digits.
  void Move(const std::string& variable, const std::string& address) const;
};

// A store in which COM1 is the device `port`, for the TarnLink protocol.
std::string TarnLinkSettings(const std::string& port);

// `text` with the first `old` in it, which must be there, replaced.
std::string Replaced(std::string text, const std::string& old, const std::string& replacement);

// What the program's user does.

// A double click on a file of the project.
void OpenFromTree(DrivenProgram& program, const std::string& file);
// The screen that is open at last, with no question left.
void ExpectScreen(DrivenProgram& program, const std::string& file);
// A double click on the name box of a Location, whose settings come up.
void OpenSettings(DrivenProgram& program, int index);
// In the settings, in place of the variable's name.
void TypeName(DrivenProgram& program, const std::string& name);

}  // namespace e2e
