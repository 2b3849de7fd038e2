#include "contract/files_benches.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace tarnlink {

RootAgain::RootAgain() : user_(geteuid()) {
  // Refused for a user who never was root; `granted` tells.
  if (seteuid(0) != 0) return;
}

RootAgain::~RootAgain() {
  if (seteuid(user_) != 0) std::abort();
}

bool RootAgain::granted() const { return geteuid() == 0; }

RealDisk::RealDisk() = default;

RealDisk::~RealDisk() {
  if (!mounted_) return;
  const RootAgain root;
  umount2(folder_.path().c_str(), MNT_DETACH);
}

void RealDisk::Put(std::string_view name, std::string_view bytes) const {
  std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
  std::ofstream(path(name), std::ios::binary) << bytes;
}

std::string RealDisk::Get(std::string_view name) const {
  std::ifstream file(path(name), std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path(name);
  return {std::istreambuf_iterator<char>(file), {}};
}

void RealDisk::MakeFolder(std::string_view name) const {
  std::filesystem::create_directories(path(name));
}

void RealDisk::MakeSpecial(std::string_view name) const {
  EXPECT_EQ(mkfifo(path(name).c_str(), 0666), 0);
}

void RealDisk::Forbid(std::string_view name) const {
  std::filesystem::permissions(path(name), std::filesystem::perms::none);
}

void RealDisk::RemoveFolder(std::string_view name) const {
  std::filesystem::remove_all(path(name));
}

bool RealDisk::LeaveRoom(std::size_t bytes) {
  const RootAgain root;
  if (!root.granted()) return false;
  if (mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, "size=512k,mode=0777") != 0) return false;
  mounted_ = true;
  // A file that takes all but `bytes`, in whole pages.
  struct statvfs disk {};
  statvfs(folder_.path().c_str(), &disk);
  const std::size_t ballast = disk.f_bavail * disk.f_frsize - bytes;
  std::ofstream(folder_ / "ballast") << std::string(ballast, 'x');
  return true;
}

}  // namespace tarnlink
