#include "support/temporary_folder.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace tarnlink {

TemporaryFolder::TemporaryFolder() {
  std::string name = std::filesystem::temp_directory_path() / "tarnlink-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("There is no room in " + name);
  path_ = std::filesystem::canonical(name).string();
  // Also for the ordinary user of some tests.
  std::filesystem::permissions(path_, std::filesystem::perms::all);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace tarnlink
