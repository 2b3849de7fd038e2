#include "fuzz/corpus_pack.h"

#include <cstddef>
#include <cstdint>

namespace tarnlink {

std::vector<std::string> UnpackCorpus(std::string_view packed) {
  constexpr std::size_t kLengthBytes = 4;
  std::vector<std::string> entries;
  while (packed.size() >= kLengthBytes) {
    std::size_t length = 0;
    for (std::size_t i = kLengthBytes; i-- > 0;) {
      length = length * 256 + static_cast<std::uint8_t>(packed[i]);
    }
    packed.remove_prefix(kLengthBytes);
    if (length > packed.size()) break;
    entries.emplace_back(packed.substr(0, length));
    packed.remove_prefix(length);
  }
  return entries;
}

}  // namespace tarnlink
