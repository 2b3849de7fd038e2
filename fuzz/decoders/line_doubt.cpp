#include "protocols/line_doubt.h"

#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/fuzz_input.h"
#include "protocols/service_line.h"

namespace tarnlink {
namespace {

constexpr int kLongestWait = 1'000;  // ms
constexpr int kMostSteps = 512;

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  const int exchange = input.Word() % 5'000;
  const int tick = 1 + input.Byte();
  LineDoubt doubt;
  bool is_raised = false;
  int quiet = 0;
  int waited = 0;
  for (int step = 0; step < kMostSteps && !input.AtEnd(); ++step) {
    switch (input.Below(4)) {
      case 0:
        doubt.Raise();
        if (!is_raised) waited = 0;
        is_raised = true;
        quiet = 0;
        break;
      case 1:
        doubt.Clear();
        is_raised = false;
        break;
      default:
        const bool may_go = doubt.AllowsRequest(tick, exchange);
        if (!is_raised) {
          Claim(may_go, "a line that is in no doubt is asked at once");
          break;
        }
        quiet += tick;
        waited += tick;
        Claim(!may_go || quiet >= exchange + kThinkingTime || waited >= kLongestWait,
              "a line in doubt is asked when it was quiet, or was waited for");
        Claim(may_go || waited < kLongestWait, "a line that is never quiet is asked all the same");
        is_raised = !may_go;
        break;
    }
  }
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {"\x42\0\x14\0\3\3\3\3\3\3\3\3\3\3"s, "\x42\0\x14\0\3\0\3\1\3"s, "\x42\0\xFF"s};
}

}  // namespace

FuzzTarget LineDoubtTarget() { return {"line_doubt", Run, Seeds}; }

}  // namespace tarnlink
