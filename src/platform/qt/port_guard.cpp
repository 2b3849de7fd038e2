#include "platform/qt/port_guard.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "common/run_time_error.h"
#include "platform/qt/port_holder.h"

namespace tarnlink {
namespace {

[[noreturn]] void Refuse(const std::string& sentence) {
  throw RunTimeError(kPortUnavailable, sentence);
}

std::string GroupName(gid_t group) {
  const struct group* entry = getgrgid(group);
  return entry != nullptr ? entry->gr_name : std::to_string(group);
}

}  // namespace

PortGuard::PortGuard(int number, const std::string& path, FindOnly)
    : name_("COM" + std::to_string(number)) {
  if (path.empty()) {
    Refuse(name_ + " stands for no serial device: plug one in, or choose one in the options.");
  }
  name_ += " (" + path + ")";
  FindDevice(path);
}

PortGuard::PortGuard(int number, const std::string& path) : PortGuard(number, path, FindOnly()) {
  OpenHandle();
  try {
    if (isatty(handle_) == 0) Refuse(name_ + " is no serial port.");
    TakeLock();
  } catch (...) {
    close(handle_);
    throw;
  }
}

PortGuard::~PortGuard() {
  if (handle_ >= 0) close(handle_);
}

std::string WhyUnusable(int number, const std::string& path) {
  try {
    const PortGuard found(number, path, PortGuard::FindOnly());
    if (faccessat(AT_FDCWD, found.device_.c_str(), R_OK | W_OK, AT_EACCESS) != 0)
      found.RefuseAsForbidden();
  } catch (const RunTimeError& refusal) {
    return refusal.what();
  }
  return {};
}

// A link has another lock than its target, so everything works on the target.
void PortGuard::FindDevice(const std::string& path) {
  std::error_code error;
  device_ = std::filesystem::canonical(path, error).string();
  struct stat status {};
  if (error || stat(device_.c_str(), &status) != 0) {
    Refuse(name_ + " is not there: plug it in, or choose another device in the options.");
  }
  if (!S_ISCHR(status.st_mode)) Refuse(name_ + " is no serial port.");
}

void PortGuard::OpenHandle() {
  handle_ = open(device_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (handle_ >= 0) return;
  switch (errno) {
    case EACCES:
    case EPERM:
      RefuseAsForbidden();
    case EBUSY:
      RefuseAsBusy();
    case ENXIO:
    case ENODEV:
    case EIO:
      Refuse(name_ + " is not connected: there is no hardware behind it.");
    default:
      RefuseBecause(std::generic_category().message(errno));
  }
}

void PortGuard::TakeLock() const {
  if (flock(handle_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) RefuseAsBusy();
}

void PortGuard::RefuseAsForbidden() const {
  struct stat status {};
  constexpr mode_t kGroupMayUse = S_IRGRP | S_IWGRP;
  if (stat(device_.c_str(), &status) != 0 || (status.st_mode & kGroupMayUse) != kGroupMayUse) {
    Refuse("You do not have the permission to use " + name_ + ": only its owner may.");
  }
  const std::string group = GroupName(status.st_gid);
  Refuse("You do not have the permission to use " + name_ + ": it belongs to the group \"" + group +
         "\". Run \"sudo usermod -aG " + group + " $USER\", then log out and log in again.");
}

void PortGuard::RefuseAsBusy() const {
  const std::string holder = HolderOf(device_, handle_ >= 0 ? 1 : 0);
  Refuse(name_ + " is in use by " + (holder.empty() ? "another program" : holder) +
         ". Close it there and try again.");
}

void PortGuard::RefuseSettings(const PortSettings& settings) const {
  Refuse(name_ + " cannot work with " + std::to_string(settings.speed) + " baud, parity " +
         settings.parity + ", " + std::to_string(settings.data_bits) + " data bits and " +
         std::to_string(settings.stop_bits) + " stop bits.");
}

void PortGuard::RefuseBecause(const std::string& what) const {
  Refuse(name_ + " could not be opened: the system says \"" + what + "\".");
}

}  // namespace tarnlink
