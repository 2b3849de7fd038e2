#include "simulator/file_descriptor.h"

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace boiler {

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : number_(std::exchange(other.number_, -1)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
  if (this != &other) {
    Close();
    number_ = std::exchange(other.number_, -1);
  }
  return *this;
}

void FileDescriptor::Close() {
  if (open()) ::close(std::exchange(number_, -1));
}

std::optional<std::string> ReadWaiting(int file) {
  char buffer[4096];
  const ssize_t count = ::read(file, buffer, sizeof buffer);
  if (count > 0) return std::string(buffer, static_cast<std::size_t>(count));
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return "";
  return std::nullopt;
}

std::size_t WriteFitting(int file, std::string_view bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = ::write(file, bytes.data() + written, bytes.size() - written);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    written += static_cast<std::size_t>(count);
  }
  return written;
}

}  // namespace boiler
