// Saving a whole file so that, whatever happens, the disk holds the old bytes or the new ones.
#pragma once

#include <string>
#include <string_view>

namespace tarnlink {

// Throws RunTimeError 61, 70, 76 or 57. A link is followed: its target gets the bytes.
void SaveWholeFile(const std::string& path, std::string_view bytes);

}  // namespace tarnlink
