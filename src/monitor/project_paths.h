// Where the files of a project are found.
#pragma once

#include <string>

#include "monitor/frm_main.h"

namespace tarnlink {

// The file that a node's key stands for. Of a project whose folder is not on this machine it is the
// file of that name beside the project file. A file that is nowhere keeps its path.
std::string FoundFile(const frm_Main& main, const std::string& key);

// The file of a group that holds one: the project's or, if it has none, `setting` as it stands.
std::string FileOfGroup(const frm_Main& main, const std::string& group, const std::string& setting);

// Whether a node of the project stands for the file `path`.
bool HoldsFile(const frm_Main& main, const std::string& path);

// Puts a file that was saved into its group of the project, or says that this has been deleted.
void AddSavedFile(frm_Main& main, const std::string& group, const std::string& path);

}  // namespace tarnlink
