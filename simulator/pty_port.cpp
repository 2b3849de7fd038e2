#include "simulator/pty_port.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>

#include "simulator/problem.h"

namespace boiler {
namespace {

constexpr char kNotATerminal[] = "/dev/null";

Problem NoTerminal() {
  return Problem(std::string("A pseudo terminal cannot be made: ") + std::strerror(errno) + ".");
}

}  // namespace

PtyPort::PtyPort(const std::string& link) {
  if (link.empty()) return;
  link_ = std::make_unique<Link>(link);
  other_link_ = std::make_unique<Link>(link + "-other");
}

void PtyPort::Plug(bool under_other_name) {
  if (master_.open()) return;
  const std::string old_path = path_;
  OpenPair();
  if (under_other_name && path_ == old_path) {
    // The system gives a free number again; while it is taken there is another one.
    const FileDescriptor taken = std::move(master_);
    const FileDescriptor taken_too = std::move(terminal_);
    OpenPair();
  }
  unplugged_by_block_ = false;
  if (!link_) return;
  active_link_ = (under_other_name ? other_link_ : link_).get();
  active_link_->Point(path_);
}

void PtyPort::Unplug() {
  LiftAccess();
  unplugged_by_block_ = false;
  // The link first: the system may give the device's name to somebody else's terminal.
  if (active_link_ != nullptr) active_link_->Remove();
  terminal_.Close();
  master_.Close();
}

void PtyPort::Block(FaultKind kind) {
  if (kind == FaultKind::kOpenNotATty && !link_) {
    throw Problem("Only a port with a link can be made one that is no terminal.");
  }
  if (kind == FaultKind::kOpenMissing || kind == FaultKind::kOpenNotATty) {
    const bool back_with_unblock = master_.open() || unplugged_by_block_;
    Unplug();
    unplugged_by_block_ = back_with_unblock;
    if (kind == FaultKind::kOpenNotATty) active_link_->Point(kNotATerminal);
    return;
  }
  if (!master_.open()) throw Problem("The port is unplugged.");
  if (kind == FaultKind::kOpenBusy) {
    ::ioctl(terminal_.number(), TIOCEXCL);
  } else if (!mode_before_block_) {
    struct stat status = {};
    ::fstat(terminal_.number(), &status);
    mode_before_block_ = status.st_mode & 07777;
    ::fchmod(terminal_.number(), 0);
  }
}

void PtyPort::Unblock() {
  LiftAccess();
  if (unplugged_by_block_) Plug(active_link_ != nullptr && active_link_ == other_link_.get());
}

void PtyPort::LiftAccess() {
  if (!terminal_.open()) return;
  ::ioctl(terminal_.number(), TIOCNXCL);
  if (mode_before_block_) ::fchmod(terminal_.number(), *mode_before_block_);
  mode_before_block_.reset();
}

void PtyPort::OpenPair() {
  FileDescriptor master(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  char path[128];
  if (!master.open() || ::grantpt(master.number()) != 0 || ::unlockpt(master.number()) != 0 ||
      ::ptsname_r(master.number(), path, sizeof path) != 0) {
    throw NoTerminal();
  }
  FileDescriptor terminal(::open(path, O_RDWR | O_NOCTTY | O_CLOEXEC));
  termios mode = {};
  if (!terminal.open() || ::tcgetattr(terminal.number(), &mode) != 0) throw NoTerminal();
  ::cfmakeraw(&mode);
  if (::tcsetattr(terminal.number(), TCSANOW, &mode) != 0) throw NoTerminal();
  master_ = std::move(master);
  terminal_ = std::move(terminal);
  path_ = path;
}

}  // namespace boiler
