// What stands in a file, so that two files of the same content are seen to be equal.
#pragma once

#include <optional>
#include <string>

namespace tarnlink::disk {

std::string ReadFile(const std::string& path);

// The bytes of the file, nothing if there is none. Of an .xlsx file, which holds the time at which
// it was made, it is the sheet: empty if any part of the file is damaged.
std::optional<std::string> ContentOf(const std::string& path);

}  // namespace tarnlink::disk
