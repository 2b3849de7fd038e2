#include "platform/qt/file_errors.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "common/paths.h"
#include "common/run_time_error.h"

namespace tarnlink {
namespace {

struct Cause {
  int code;
  std::string reason;
};

bool FolderMissing(const std::string& path) {
  const std::string folder = path.find('/') == std::string::npos ? "." : FolderOfPath(path);
  struct stat status {};
  return stat(folder.empty() ? "/" : folder.c_str(), &status) != 0;
}

Cause CauseOf(const std::string& path, FileAction action, int number) {
  switch (number) {
    case ENOENT:
    case ENOTDIR:
      if (action == FileAction::kRead && !FolderMissing(path)) {
        return {kFileNotFound, "there is no such file."};
      }
      return {kPathNotFound, "there is no such folder."};
    case EACCES:
    case EPERM:
      return {kPermissionDenied, "you do not have the permission."};
    case EROFS:
      return {kPermissionDenied, "the disk can only be read."};
    case ENOSPC:
    case EDQUOT:
      return {kDiskFull, "the disk is full."};
    case EISDIR:
      return {kDeviceIo, "it is a folder."};
    case EFBIG:
      return {kDeviceIo, "the file would become too large."};
    default:
      return {kDeviceIo, "the system says \"" + std::generic_category().message(number) + "\"."};
  }
}

std::string Sentence(const std::string& path, FileAction action, const std::string& reason) {
  const std::string name = path.empty() ? "A file without a name" : "\"" + path + "\"";
  return name + " could not be " + (action == FileAction::kRead ? "read: " : "written: ") + reason;
}

}  // namespace

std::string NoAnswerFrom(const std::string& path, FileAction action) {
  return Sentence(path, action, "the disk does not answer.");
}

void ThrowFileError(const std::string& path, FileAction action, int number) {
  const Cause cause = CauseOf(path, action, number);
  throw RunTimeError(cause.code, Sentence(path, action, cause.reason));
}

void ThrowFileError(const std::string& path, FileAction action, const std::string& reason) {
  throw RunTimeError(kDeviceIo, Sentence(path, action, reason));
}

bool MayUse(const std::string& path, int how) {
  return faccessat(AT_FDCWD, path.c_str(), how, AT_EACCESS) == 0;
}

void RefuseIrregularFile(const std::string& path, FileAction action) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode)) return;
  ThrowFileError(path, action,
                 S_ISDIR(status.st_mode) ? "it is a folder." : "it is no regular file.");
}

}  // namespace tarnlink
