// What a fault asks of the port, which only the program can do.
#pragma once

#include <cstdint>

namespace boiler {

// The cable is pulled; afterwards it stays out, or is plugged in again after a while.
struct PortAction {
  enum class Then { kStayOut, kSameName, kOtherName };

  Then then = Then::kStayOut;
  std::int64_t after_us = 0;
};

}  // namespace boiler
