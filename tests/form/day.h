// How long the runs of a day are.
#pragma once

#include <chrono>

#include "support/virtual_time.h"

namespace tarnlink {

inline constexpr Micros kDay = std::chrono::hours(24);

}  // namespace tarnlink
