#include "files/error_texts.h"

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/text.h"

namespace tarnlink {
namespace {

void TakeEntry(std::string_view line, ErrorTexts& texts) {
  const std::string entry = Trim(line);
  const std::size_t blank = entry.find(' ');
  if (blank == std::string::npos) {
    throw RunTimeError(kTypeMismatch, "No text stands behind the code.");
  }
  texts[ToByte(entry.substr(0, blank))] = Trim(entry.substr(blank));
}

}  // namespace

ErrorFile ReadErrorFile(std::string_view text) {
  ErrorFile file;
  file.failure = TakeLines(text, [&file](std::string_view line) { TakeEntry(line, file.texts); });
  return file;
}

}  // namespace tarnlink
