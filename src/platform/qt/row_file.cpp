#include "platform/qt/row_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/qt/file_errors.h"

namespace tarnlink {
namespace {

constexpr mode_t kMode = 0666;  // less what the user's mask takes away

}  // namespace

RowFile::RowFile(const std::string& path, bool keep) : path_(path) {
  RefuseIrregularFile(path, FileAction::kWrite);
  const int flags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | (keep ? 0 : O_TRUNC);
  handle_ = open(path.c_str(), flags, kMode);
  if (handle_ < 0) ThrowFileError(path, FileAction::kWrite, errno);
  size_ = whole_rows_ = lseek(handle_, 0, SEEK_END);
}

RowFile::~RowFile() { close(handle_); }

void RowFile::Append(std::string_view piece) {
  std::string_view rest = piece;
  while (!rest.empty()) {
    const ssize_t written = write(handle_, rest.data(), rest.size());
    if (written > 0) {
      rest.remove_prefix(static_cast<std::size_t>(written));
      size_ += written;
    } else if (written == 0 || errno != EINTR) {
      const int number = written == 0 ? ENOSPC : errno;
      if (ftruncate(handle_, whole_rows_) == 0) size_ = whole_rows_;
      ThrowFileError(path_, FileAction::kWrite, number);
    }
  }
  if (piece.ends_with('\n')) whole_rows_ = size_;
}

}  // namespace tarnlink
