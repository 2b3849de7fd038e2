#include "contract/machine.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>

namespace tarnlink {
namespace {

constexpr uid_t kNobody = 65534;

}  // namespace

PtyPair::PtyPair() {
  std::array<char, 128> name{};
  if (openpty(&handle_, &near_end_, name.data(), nullptr, nullptr) != 0) {
    throw std::runtime_error("There is no pseudo terminal to be had.");
  }
  path_ = name.data();
  // Neither echo nor line editing, also before the program opens it.
  termios settings{};
  tcgetattr(near_end_, &settings);
  cfmakeraw(&settings);
  tcsetattr(near_end_, TCSANOW, &settings);
  fcntl(handle_, F_SETFL, O_NONBLOCK);
}

void PtyPair::Send(std::string_view bytes) const {
  const int before = Waiting();
  EXPECT_EQ(write(handle_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  // The kernel hands them over a little later.
  const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (Waiting() < before + static_cast<int>(bytes.size())) {
    ASSERT_LT(std::chrono::steady_clock::now(), bound) << "The bytes never arrived.";
  }
}

int PtyPair::Waiting() const {
  int count = 0;
  ioctl(near_end_, FIONREAD, &count);
  return count;
}

std::string PtyPair::Take() const {
  std::string bytes;
  std::array<char, 4096> piece;
  for (ssize_t got; (got = read(handle_, piece.data(), piece.size())) > 0;) {
    bytes.append(piece.data(), static_cast<std::size_t>(got));
  }
  return bytes;
}

void PtyPair::Close() {
  for (int* handle : {&handle_, &near_end_}) {
    if (*handle >= 0) close(*handle);
    *handle = -1;
  }
}

OrdinaryUser::OrdinaryUser() : was_root_(geteuid() == 0) {
  if (was_root_ && seteuid(kNobody) != 0) throw std::runtime_error("Root's rights stay.");
}

OrdinaryUser::~OrdinaryUser() {
  if (was_root_ && seteuid(0) != 0) std::abort();
}

}  // namespace tarnlink
