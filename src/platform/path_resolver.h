// Where a path of the settings leads on this machine.
#pragma once

#include <string>

#include "platform/files.h"

namespace tarnlink {

// The folder that a folder setting stands for: the documents folder for a drive of the old world
// that names no folder here, otherwise the folder itself with the system's separators.
std::string UsableFolder(const std::string& folder, const Files& files);

// The folder in which a dialog for `file` opens: the file's own, as UsableFolder gives it.
std::string FolderOf(const std::string& file, const Files& files);

// The file that a file setting stands for: of ".\x" the one in the working folder or, if there is
// none, the one that was shipped with the program; otherwise the file itself.
std::string UsableFile(const std::string& file, const Files& files);

// Whether a file, or a folder, is there. Of a disk that is waited for no longer nothing is: what is
// read or written behind that tells what is wrong.
bool HasFile(const Files& files, const std::string& path);
bool HasFolder(const Files& files, const std::string& path);

// Whether a file may be there: it is, or the disk is waited for no longer.
bool MayHaveFile(const Files& files, const std::string& path);

}  // namespace tarnlink
