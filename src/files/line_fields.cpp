#include "files/line_fields.h"

#include <charconv>
#include <limits>

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/text.h"

namespace tarnlink {

std::string_view LineFields::Next(const std::string& name) {
  if (!rest_) throw RunTimeError(kSubscript, name + " is missing.");
  const std::string_view rest = *rest_;
  const std::size_t comma = rest.find(',');
  rest_.reset();
  if (comma != std::string_view::npos) rest_ = rest.substr(comma + 1);
  return rest.substr(0, comma);
}

std::int32_t IdOfField(std::string_view field) {
  const std::string digits = Trim(field);
  const char* const end = digits.data() + digits.size();
  std::uint32_t id = 0;
  const auto result = std::from_chars(digits.data(), end, id, 16);
  if (result.ec == std::errc::invalid_argument || result.ptr != end) {
    throw RunTimeError(kTypeMismatch, "The ID is no hexadecimal number.");
  }
  constexpr std::uint32_t kHighest = std::numeric_limits<std::int32_t>::max();
  if (result.ec != std::errc() || id > kHighest) {
    throw RunTimeError(kOverflow, "The ID is greater than " + Hex(kHighest) + ".");
  }
  return static_cast<std::int32_t>(id);
}

}  // namespace tarnlink
