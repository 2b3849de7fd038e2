// Takes an input apart into the numbers and texts that a target needs. An input that has ended
// gives zeros and empty texts, so that every input means something.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tarnlink {

class FuzzInput {
 public:
  explicit FuzzInput(std::string_view bytes) : bytes_(bytes) {}

  bool AtEnd() const { return bytes_.empty(); }

  std::uint8_t Byte() { return bytes_.empty() ? 0 : static_cast<std::uint8_t>(Take(1).front()); }
  std::uint16_t Word() {
    const int low = Byte();
    return static_cast<std::uint16_t>(low + 256 * Byte());
  }
  bool Coin() { return (Byte() & 1) != 0; }
  // 0 to `count` - 1; `count` is 1 to 256.
  int Below(int count) { return Byte() % count; }

  // As many bytes as its first byte says.
  std::string_view ShortText() { return Take(Byte()); }
  // The bytes up to the next 0, without it.
  std::string_view Field() {
    const std::string_view field = Take(std::min(bytes_.find('\0'), bytes_.size()));
    Take(1);
    return field;
  }
  std::string_view Rest() { return Take(bytes_.size()); }

 private:
  std::string_view Take(std::size_t count) {
    const std::string_view taken = bytes_.substr(0, count);
    bytes_.remove_prefix(taken.size());
    return taken;
  }

  std::string_view bytes_;
};

}  // namespace tarnlink
