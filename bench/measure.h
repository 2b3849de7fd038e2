// Times, medians and the one table that every benchmark prints.
#pragma once

#include <string>
#include <vector>

namespace bench {

double WallSeconds();
// User and system time of the calling thread alone.
double ThreadProcessorSeconds();
double Median(std::vector<double> values);

// One line: what, the ratio, its bound, and whether the bound holds.
void Report(const std::string& what, double ratio, double bound, bool at_least);

// Whether every line so far held.
bool AllHeld();

}  // namespace bench
