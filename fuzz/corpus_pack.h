// The inputs that reach something new in a target, kept in one file a target: each entry is its
// length, four bytes with the lowest first, and its bytes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnlink {

// The entries of a packed file; an entry that the file does not hold to its end is left out.
std::vector<std::string> UnpackCorpus(std::string_view packed);

}  // namespace tarnlink
