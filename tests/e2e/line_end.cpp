#include "line_end.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>

namespace e2e {

LineEnd::LineEnd() : master_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
  grantpt(master_);
  unlockpt(master_);
  path_ = ptsname(master_);
  termios raw{};
  tcgetattr(master_, &raw);
  cfmakeraw(&raw);
  tcsetattr(master_, TCSANOW, &raw);
}

LineEnd::~LineEnd() { Unplug(); }

void LineEnd::Send(const std::string& bytes) {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    const ssize_t count = write(master_, bytes.data() + sent, bytes.size() - sent);
    if (count <= 0) return;
    sent += static_cast<std::size_t>(count);
  }
}

std::string LineEnd::Receive(std::size_t count, int milliseconds) {
  using SteadyClock = std::chrono::steady_clock;
  const auto end = SteadyClock::now() + std::chrono::milliseconds(milliseconds);
  std::string bytes;
  while (bytes.size() < count) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(end - SteadyClock::now()).count();
    if (left <= 0) break;
    constexpr int kSlice = 10;
    bytes +=
        ReceiveSome(count - bytes.size(), static_cast<int>(std::min<std::int64_t>(left, kSlice)));
  }
  return bytes;
}

std::string LineEnd::ReceiveSome(std::size_t most, int milliseconds) {
  pollfd wanted{master_, POLLIN, 0};
  if (poll(&wanted, 1, milliseconds) <= 0) return {};
  char buffer[4096];
  const std::size_t room = std::min(sizeof buffer, most);
  const ssize_t got = (wanted.revents & POLLIN) != 0 ? read(master_, buffer, room) : 0;
  if (got > 0) return {buffer, static_cast<std::size_t>(got)};
  // A master whose slave side nobody has open reads as hung up; that passes when it is opened.
  poll(nullptr, 0, milliseconds);
  return {};
}

void LineEnd::Drain() {
  constexpr std::size_t kAll = 1 << 20;
  constexpr int kQuiet = 50;
  Receive(kAll, kQuiet);
}

void LineEnd::Unplug() {
  if (master_ >= 0) close(master_);
  master_ = -1;
}

}  // namespace e2e
