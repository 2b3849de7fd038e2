#include "protocols/line_doubt.h"

#include "protocols/service_line.h"

namespace tarnlink {

namespace {

// A line that is never quiet is asked all the same.
constexpr int kLongestWait = 1'000;  // ms

}  // namespace

void LineDoubt::Raise() {
  if (!raised_) waited_ = 0;
  raised_ = true;
  quiet_ = 0;
}

bool LineDoubt::AllowsRequest(int tick, int exchange) {
  if (!raised_) return true;
  quiet_ += tick;
  waited_ += tick;
  if (quiet_ < exchange + kThinkingTime && waited_ < kLongestWait) return false;
  raised_ = false;
  return true;
}

}  // namespace tarnlink
