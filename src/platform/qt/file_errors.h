// What the system says about a file, as a run-time error with a sentence for people.
#pragma once

#include <string>

namespace tarnlink {

enum class FileAction { kRead, kWrite };

// Throws the RunTimeError for the system's error `number`: 53 or 76 for what is not there, 70 for
// what is not permitted, 61 for a full disk, 57 for anything else.
[[noreturn]] void ThrowFileError(const std::string& path, FileAction action, int number);

// RunTimeError 57 with a reason of our own, such as "it is a folder."
[[noreturn]] void ThrowFileError(const std::string& path, FileAction action,
                                 const std::string& reason);

// The reason for people when the disk was waited for no longer.
std::string NoAnswerFrom(const std::string& path, FileAction action);

// Whether this process may use `path` in the way that access(2) calls W_OK and so on; errno tells
// why not.
bool MayUse(const std::string& path, int how);

// Refuses what exists but is no regular file.
void RefuseIrregularFile(const std::string& path, FileAction action);

}  // namespace tarnlink
