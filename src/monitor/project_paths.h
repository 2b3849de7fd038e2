// Where the files of a project are found.
#pragma once

#include <string>

#include "monitor/frm_main.h"

namespace tarnlink {

// The file that a node's key, or a setting, stands for. Of a project that came here from another
// machine it is the file of that name beside the project file; one that is nowhere keeps its path.
std::string FoundFile(const frm_Main& main, const std::string& key);

}  // namespace tarnlink
