// A disk, once in memory and once real, with what a test does to it behind the program's back.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "contract/machine.h"
#include "platform/qt/qt_files.h"
#include "support/fake_files.h"
#include "support/temporary_folder.h"

namespace tarnlink {

class FakeDisk {
 public:
  FakeDisk() { disk_.MakeFolder(path("")); }

  Files& files() { return disk_; }
  std::string path(std::string_view name) const { return "/disk/" + std::string(name); }
  void Put(std::string_view name, std::string_view bytes) { disk_.Put(path(name), bytes); }
  std::string Get(std::string_view name) const { return disk_.Get(path(name)); }
  void MakeFolder(std::string_view name) { disk_.MakeFolder(path(name)); }
  void MakeSpecial(std::string_view name) { disk_.MakeSpecial(path(name)); }
  void Forbid(std::string_view name) { disk_.Forbid(path(name)); }
  void RemoveFolder(std::string_view name) { disk_.RemoveFolder(path(name)); }
  std::vector<std::string> Names(std::string_view folder) { return disk_.ListFolder(path(folder)); }
  // From now on the disk takes no more than this. False where that cannot be done.
  bool LeaveRoom(std::size_t bytes) {
    disk_.SetFreeSpace(bytes);
    return true;
  }

 private:
  FakeFiles disk_;
};

class RealDisk {
 public:
  RealDisk();
  ~RealDisk();
  RealDisk(const RealDisk&) = delete;
  RealDisk& operator=(const RealDisk&) = delete;

  Files& files() { return files_; }
  std::string path(std::string_view name) const { return folder_ / name; }
  void Put(std::string_view name, std::string_view bytes) const;
  std::string Get(std::string_view name) const;
  void MakeFolder(std::string_view name) const;
  void MakeSpecial(std::string_view name) const;
  void Forbid(std::string_view name) const;
  void RemoveFolder(std::string_view name) const;
  std::vector<std::string> Names(std::string_view folder) const {
    return files_.ListFolder(path(folder));
  }
  // Mounts a small disk of its own, which takes root.
  bool LeaveRoom(std::size_t bytes);

 private:
  QtFiles files_{"/shipped"};
  TemporaryFolder folder_;
  bool mounted_ = false;
  OrdinaryUser rights_;
};

// Root's rights again inside a test, for what only root can do.
class RootAgain {
 public:
  RootAgain();
  ~RootAgain();
  RootAgain(const RootAgain&) = delete;
  RootAgain& operator=(const RootAgain&) = delete;

  bool granted() const;

 private:
  unsigned user_;
};

}  // namespace tarnlink
