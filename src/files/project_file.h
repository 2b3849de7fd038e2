// The project file, extension ".prj": the nodes of a project's tree, one a line. The format is told
// in docs/formats/prj.md.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/project_tree.h"

namespace tarnlink {

inline constexpr int kMostProjectNodes = 255;

// The files that a project file names, in its order. A shorter entry than a file could have is a
// group or nothing, and is passed over.
std::vector<std::string> ReadProjectEntries(std::string_view text);

// The group under which an entry of a project file belongs, by its extension; nothing for any other
// extension. Case counts: a project file that names "X.WCR" cannot be read.
std::optional<std::string> GroupOfEntry(std::string_view entry);

// The whole file. Throws RunTimeError 6 for a tree of more than kMostProjectNodes nodes and 13 for
// a path that the format cannot hold.
std::string WriteProjectFile(const ProjectTree& tree);

}  // namespace tarnlink
