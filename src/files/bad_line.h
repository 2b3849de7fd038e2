// The line that ends the reading of a file whose lines are taken one by one.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tarnlink {

struct BadLine {
  int line = 0;        // counts from 1; 0 where no line is to blame
  std::string reason;  // one plain sentence

  bool operator==(const BadLine&) const = default;
};

// Hands the lines of `text` to `take`, in order. A RunTimeError of `take` ends that and is the bad
// line.
std::optional<BadLine> TakeLines(std::string_view text,
                                 const std::function<void(std::string_view)>& take);

}  // namespace tarnlink
