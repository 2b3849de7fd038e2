#include "platform/qt/port_holder.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace tarnlink {
namespace {

namespace fs = std::filesystem;

bool IsProcess(const fs::path& folder) {
  const std::string name = folder.filename().string();
  return !name.empty() && std::all_of(name.begin(), name.end(),
                                      [](unsigned char c) { return std::isdigit(c) != 0; });
}

int HandlesOn(const fs::path& device, const fs::path& process) {
  int count = 0;
  std::error_code error;
  fs::directory_iterator handle(process / "fd", error);
  for (const fs::directory_iterator end; !error && handle != end; handle.increment(error)) {
    std::error_code unreadable;
    if (fs::read_symlink(handle->path(), unreadable) == device) ++count;
  }
  return count;
}

std::string ProgramOf(const fs::path& process) {
  std::ifstream file(process / "comm");
  std::string name;
  std::getline(file, name);
  return name;
}

}  // namespace

std::string HolderOf(const std::string& device, int own_handles) {
  const std::string self = std::to_string(getpid());
  bool is_self = false;
  std::error_code error;
  fs::directory_iterator process("/proc", error);
  for (const fs::directory_iterator end; !error && process != end; process.increment(error)) {
    const fs::path folder = process->path();
    if (!IsProcess(folder)) continue;
    const int handles = HandlesOn(device, folder);
    if (folder.filename() == self) {
      is_self = handles > own_handles;
    } else if (handles > 0) {
      return ProgramOf(folder) + " (process " + folder.filename().string() + ")";
    }
  }
  return is_self ? "this program" : "";
}

}  // namespace tarnlink
