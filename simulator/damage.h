// What a bad line does to a frame. Knows nothing of any protocol.
#pragma once

#include <string>

#include "simulator/fault.h"
#include "simulator/random.h"

namespace boiler {

// The frame as a fault of the group kDamage leaves it; for the fault kCheckWrong, which needs the
// protocol, and for those of other groups the frame as it is. Every fault leaves a byte at least.
// Damage that draws its place always changes the frame, but for a swap in a frame all of one byte.
std::string Damaged(const Fault& fault, std::string frame, Random& random);

// `count` bytes by chance.
std::string NoiseBytes(int count, Random& random);

// `count` upper-case hexadecimal digits by chance.
std::string RandomDigits(int count, Random& random);

}  // namespace boiler
