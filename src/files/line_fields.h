// The fields of a line that commas separate, as the files that name data IDs have them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnlink {

class LineFields {
 public:
  explicit LineFields(std::string_view line) : rest_(line) {}

  // What stands before the next comma. One that is not there throws RunTimeError 9, whose reason
  // begins with `name`.
  std::string_view Next(const std::string& name);

  // All that is left, its commas included; nothing is empty.
  std::string_view Rest() const { return rest_.value_or(std::string_view()); }

 private:
  std::optional<std::string_view> rest_;
};

// An ID of 31 bits in hexadecimal digits, with blanks around it that do not count. Throws
// RunTimeError 13 or 6.
std::int32_t IdOfField(std::string_view field);

}  // namespace tarnlink
