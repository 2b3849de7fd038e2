// Typed and stored numbers with the decimal point that the reader of them knows.
#pragma once

#include <string>
#include <string_view>

namespace tarnlink {

// `text` with `decimal_separator`, which `Locale::DecimalSeparator` tells: for "." every ","
// becomes
// ".", for any other every "." becomes it.
std::string LocalizeDecimal(std::string_view text, std::string_view decimal_separator);

}  // namespace tarnlink
