#include "files/bad_line.h"

#include "common/run_time_error.h"
#include "common/text_file.h"

namespace tarnlink {

std::optional<BadLine> TakeLines(std::string_view text,
                                 const std::function<void(std::string_view)>& take) {
  int number = 0;
  LineReader lines(text);
  for (std::string_view line; lines.Next(line);) {
    ++number;
    try {
      take(line);
    } catch (const RunTimeError& error) {
      return BadLine{number, error.what()};
    }
  }
  return std::nullopt;
}

}  // namespace tarnlink
