#include "platform/qt/row_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "common/run_time_error.h"
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
  whole_pieces_ = lseek(handle_, 0, SEEK_END);
}

RowFile::~RowFile() { close(handle_); }

// What is written to a file that has been deleted, alone or with its folder, nobody will find.
void RowFile::RefuseDeletedFile() const {
  struct stat now {};
  if (fstat(handle_, &now) != 0) ThrowFileError(path_, FileAction::kWrite, errno);
  if (now.st_nlink > 0) return;
  throw RunTimeError(kFileNotFound, "\"" + path_ + "\" could not be written: it has been deleted.");
}

void RowFile::Append(std::string_view piece) {
  RefuseDeletedFile();
  std::string_view rest = piece;
  while (!rest.empty()) {
    const ssize_t written = write(handle_, rest.data(), rest.size());
    if (written > 0) {
      rest.remove_prefix(static_cast<std::size_t>(written));
    } else if (written == 0 || errno != EINTR) {
      const int number = written == 0 ? ENOSPC : errno;
      // Should that fail too, half a piece stays.
      if (ftruncate(handle_, whole_pieces_) != 0) whole_pieces_ = lseek(handle_, 0, SEEK_END);
      ThrowFileError(path_, FileAction::kWrite, number);
    }
  }
  whole_pieces_ += static_cast<off_t>(piece.size());
}

}  // namespace tarnlink
