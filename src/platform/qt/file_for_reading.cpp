#include "platform/qt/file_for_reading.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/qt/file_errors.h"

namespace tarnlink {

FileForReading::FileForReading(const std::string& path) : path_(path) {
  RefuseIrregularFile(path, FileAction::kRead);
  handle_ = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (handle_ < 0) ThrowFileError(path, FileAction::kRead, errno);
}

FileForReading::~FileForReading() { close(handle_); }

std::int64_t FileForReading::Size() const {
  struct stat status {};
  if (fstat(handle_, &status) != 0) ThrowFileError(path_, FileAction::kRead, errno);
  return status.st_size;
}

std::size_t FileForReading::Read(char* room, std::size_t size) {
  while (true) {
    const ssize_t got = read(handle_, room, size);
    if (got >= 0) return static_cast<std::size_t>(got);
    if (errno != EINTR) ThrowFileError(path_, FileAction::kRead, errno);
  }
}

}  // namespace tarnlink
