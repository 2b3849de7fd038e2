#include "common/local_decimal.h"

#include <algorithm>

#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/readers.h"

namespace tarnlink {
namespace {

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const std::string_view separator = bytes.ShortText();
  const std::string_view text = bytes.Rest();
  const char replaced = separator == "." ? ',' : '.';
  const std::string local = LocalizeDecimal(text, separator);
  const auto count = static_cast<std::size_t>(std::count(text.begin(), text.end(), replaced));
  Claim(local.size() == text.size() - count + count * separator.size(), "nothing else changes");
  Claim(separator.find(replaced) != std::string_view::npos ||
            local.find(replaced) == std::string::npos,
        "the other one is gone");
  if (separator != "," || text.find(',') != std::string_view::npos) return;
  Claim(LocalizeDecimal(local, ".") == text, "and comes back");
}

std::vector<std::string> Seeds() { return {"\1.1,5", "\1,-1.5E3", "\2\xD9\xAB 2.5", "", "\1.."}; }

}  // namespace

FuzzTarget LocalDecimalTarget() { return {"local_decimal", Run, Seeds}; }

}  // namespace tarnlink
