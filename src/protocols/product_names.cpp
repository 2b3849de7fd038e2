#include "protocols/product_names.h"

#include <array>

namespace tarnlink {

std::string_view GetTypeName(std::uint8_t code) {
  constexpr std::array<std::string_view, 15> kNames = {
      "unknown", "A", "AM", "AL", "C", "CM", "CL", "V", "S", "BF", "DM", "B", "H", "R", "BD"};
  constexpr std::uint8_t kModem = 99;
  if (code == kModem) return "modem";
  return code < kNames.size() ? kNames[code] : kNames.front();
}

std::string_view GetProductName(std::uint8_t code) {
  constexpr std::array<std::string_view, 4> kNames = {"", "R1862", "R1865", "R1866"};
  return code < kNames.size() ? kNames[code] : kNames.front();
}

}  // namespace tarnlink
