#include "measure.h"

#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace bench {

namespace {

bool all_held = true;

}  // namespace

double WallSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double ThreadProcessorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void Report(const std::string& what, double ratio, double bound, bool at_least) {
  const bool held = at_least ? ratio >= bound : ratio <= bound;
  all_held = all_held && held;
  std::printf("%-58s %8.3f  %s %.2f  %s\n", what.c_str(), ratio, at_least ? ">=" : "<=", bound,
              held ? "held" : "MISSED");
  std::fflush(stdout);
}

bool AllHeld() { return all_held; }

}  // namespace bench
