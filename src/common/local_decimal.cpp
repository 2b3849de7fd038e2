#include "common/local_decimal.h"

namespace tarnlink {

std::string LocalizeDecimal(std::string_view text, std::string_view decimal_separator) {
  const char replaced = decimal_separator == "." ? ',' : '.';
  std::string localized;
  localized.reserve(text.size());
  for (const char c : text) {
    if (c == replaced) {
      localized += decimal_separator;
    } else {
      localized += c;
    }
  }
  return localized;
}

}  // namespace tarnlink
