#include "files/error_texts.h"

#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

void Run(std::string_view input) {
  const std::string text = DecodeText(input);
  const ErrorFile file = ReadErrorFile(text);
  ClaimBadLine(file.failure, text);
  std::string written;
  for (std::size_t code = 0; code < file.texts.size(); ++code) {
    const std::string& each = file.texts[code];
    if (each.empty()) continue;
    Claim(IsText(each) && each.find('\n') == std::string::npos, "a text is one line");
    Claim(each.front() != ' ' && each.back() != ' ', "a text has no blanks around it");
    written += std::to_string(code) + " " + each + "\r\n";
  }
  const ErrorFile again = ReadErrorFile(written);
  Claim(!again.failure && again.texts == file.texts, "what was read is read again");
}

std::vector<std::string> Seeds() {
  return {SampleText("default.erc").substr(0, 500), SampleText("MBID.erc").substr(0, 500),
          "1 No flame\r\n  255   Fan  \n", "256 x\n", "7\n"};
}

}  // namespace

FuzzTarget ErrorTextsTarget() { return {"error_texts", Run, Seeds}; }

}  // namespace tarnlink
