// Feeds a reader with every prefix of a sample: a file may be cut anywhere.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace tarnlink {

// Calls `read` with every prefix of `sample`, from the empty one to the whole. Each stands in
// memory of its exact size, so that a sanitizer sees a read past its end.
template <class Read>
void ForEveryPrefix(std::string_view sample, Read read) {
  for (std::size_t length = 0; length <= sample.size(); ++length) {
    SCOPED_TRACE("prefix of " + std::to_string(length) + " bytes");
    const std::vector<char> prefix(sample.begin(), sample.begin() + static_cast<long>(length));
    read(std::string_view(prefix.data(), prefix.size()));
  }
}

}  // namespace tarnlink
