// Paths as people and old files write them: both "\" and "/" separate.
#pragma once

#include <string>
#include <string_view>

namespace tarnlink {

// Of folders in a path, on whatever system it was written.
bool IsSeparator(char letter);

// The text after the last separator, the whole text if there is none.
std::string StripFileFromPath(std::string_view path);

// The text after the last ".", the whole text if there is none.
std::string StripExtFromPath(std::string_view path);

// What stands before the last separator, without it; empty if there is none. A file in the root
// stands in "/".
std::string FolderOfPath(std::string_view path);

// Folder and name joined by the system's separator; a separator at the folder's end is not doubled.
// An empty folder adds none.
std::string JoinPath(std::string_view folder, std::string_view name);

// "C:", "C:\" and the like, the bare drive without a folder: a default of the old world that names
// nothing here.
bool IsDrivePath(std::string_view path);

// For ".\x" and "./x", the "x" with the system's separators; otherwise empty.
std::string RelativeToProgram(std::string_view path);

}  // namespace tarnlink
