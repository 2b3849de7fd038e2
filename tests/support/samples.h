// The sample files that are shipped with the program.
#pragma once

#include <string>
#include <string_view>

namespace tarnlink {

// The bytes of the file of that name in `samples/`. Throws std::runtime_error if it cannot be read.
std::string SampleBytes(std::string_view name);

// The same as text.
std::string SampleText(std::string_view name);

}  // namespace tarnlink
