#include "platform/qt/save_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFileInfo>
#include <cerrno>

#include "common/paths.h"
#include "platform/qt/file_errors.h"
#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

constexpr int kMostLinks = 40;

// The file that a chain of links leads to, whether it exists or not.
QString BehindLinks(const std::string& path) {
  QString name = ToQt(path);
  for (int i = 0; i < kMostLinks; ++i) {
    const QString target = QFileInfo(name).symLinkTarget();
    if (target.isEmpty()) return name;
    name = target;
  }
  ThrowFileError(path, FileAction::kWrite, ELOOP);
}

std::string FolderOf(const QString& name) { return FromQt(QFileInfo(name).absolutePath()); }

// The cases that QSaveFile reports without saying which it was.
void RefuseUnwritable(const std::string& path, const QString& name) {
  if (path.empty()) ThrowFileError(path, FileAction::kWrite, ENOENT);
  RefuseIrregularFile(path, FileAction::kWrite);
  if (!MayUse(FolderOf(name), W_OK | X_OK)) ThrowFileError(path, FileAction::kWrite, errno);
  if (!MayUse(FromQt(name), W_OK) && errno != ENOENT) {
    ThrowFileError(path, FileAction::kWrite, errno);
  }
}

// A file system without the operation cannot do better; that is no failure.
bool SyncFailed(int handle) {
  return fsync(handle) != 0 && errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP;
}

void SyncFolder(const QString& name) {
  const int folder = open(FolderOf(name).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) return;
  // The new file is in place: a failure here leaves nothing to mend.
  fsync(folder);
  close(folder);
}

}  // namespace

// `commit` alone reports neither a short write nor a failed sync: near a full disk it replaces the
// good file by a cut one. So every step is checked before it.
FileReplacement::FileReplacement(const std::string& path) : path_(path), name_(BehindLinks(path)) {
  RefuseUnwritable(path_, name_);
  file_.setFileName(name_);
  file_.setDirectWriteFallback(false);
  errno = 0;
  if (!file_.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) Fail();
}

void FileReplacement::Fail() {
  const int number = errno == 0 ? EIO : errno;
  file_.cancelWriting();
  ThrowFileError(path_, FileAction::kWrite, number);
}

void FileReplacement::Write(std::string_view bytes) {
  const auto size = static_cast<qint64>(bytes.size());
  size_ += size;
  errno = 0;
  if (file_.write(bytes.data(), size) != size) Fail();
}

void FileReplacement::Sync() {
  errno = 0;
  if (!file_.flush() || file_.error() != QFileDevice::NoError || file_.size() != size_) Fail();
  if (SyncFailed(file_.handle())) Fail();
}

void FileReplacement::Replace() {
  errno = 0;
  if (!file_.commit()) Fail();
  SyncFolder(name_);
}

void SaveWholeFile(const std::string& path, std::string_view bytes) {
  FileReplacement file(path);
  file.Write(bytes);
  file.Sync();
  file.Replace();
}

}  // namespace tarnlink
