#include "simulator/link.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "simulator/problem.h"

namespace boiler {

namespace fs = std::filesystem;

Link::Link(std::string path) : path_(std::move(path)) {
  std::error_code error;
  const fs::file_status there = fs::symlink_status(path_, error);
  if (fs::exists(there) && !fs::is_symlink(there)) {
    throw Problem("The link \"" + path_ + "\" cannot be made: something else stands there.");
  }
}

void Link::Point(const std::string& target) {
  const std::string beside = path_ + ".new-" + std::to_string(::getpid());
  std::error_code error;
  fs::remove(beside, error);
  fs::create_symlink(target, beside, error);
  if (!error) fs::rename(beside, path_, error);
  if (error) {
    throw Problem("The link \"" + path_ + "\" cannot be made: " + error.message() + ".");
  }
  made_ = true;
}

void Link::Remove() {
  std::error_code ignored;
  if (std::exchange(made_, false)) fs::remove(path_, ignored);
}

}  // namespace boiler
