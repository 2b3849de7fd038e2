// Who has a serial device open.
#pragma once

#include <string>

namespace tarnlink {

// "minicom (process 1234)" or "this program", as far as this user may know it; otherwise empty.
// `own_handles` of this process do not count.
std::string HolderOf(const std::string& device, int own_handles);

}  // namespace tarnlink
