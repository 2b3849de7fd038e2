#include "common/shown_text.h"

#include "common/text.h"
#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"

namespace tarnlink {
namespace {

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const int most = bytes.Byte();
  const std::string_view rest = bytes.Rest();
  const std::string shown = ShownText(rest, most);
  Claim(CharacterCount(shown) <= most + 3, "no more than the beginning");
  ClaimReason("x" + shown);
  const std::string text = DecodeText(rest);
  const std::string again = ShownText(text, most);
  Claim(CharacterCount(again) <= most + 3 && IsText(again), "the same of a text");
  Claim(CharacterCount(text) > most || CharacterCount(again) == CharacterCount(text) ||
            text.starts_with("\xEF\xBB\xBF"),
        "a short text is shown whole");
}

std::vector<std::string> Seeds() {
  return {
      "\xC8"
      "Flow 5 \xC2\xB0",
      "\3W\xC3\xA4rme", std::string("\5a\0\x1B\xC2\x85z", 7), "\1\xF0\x9F\x94\xA5\xF0\x9F\x94\xA5",
      "\2\xFF\xFE\xFD\xFC"};
}

}  // namespace

FuzzTarget ShownTextTarget() { return {"shown_text", Run, Seeds}; }

}  // namespace tarnlink
