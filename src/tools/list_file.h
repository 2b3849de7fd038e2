// Saves what a tool has listed as a text file that the user names.
#pragma once

#include <string>

#include "platform/platform.h"

namespace tarnlink {

struct ListFile {
  std::string title;      // of the tool's window
  std::string file_name;  // that is proposed
  std::string folder;     // where the dialog opens, if it is there
  std::string text;       // lines with any line end
};

// Asks for the name; a file that can not be written is told.
void SaveListFile(Platform& platform, const ListFile& list);

}  // namespace tarnlink
