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

// A folder that is open. One that may be written to but not be read cannot be had, and is not
// synced then.
class OpenFolder {
 public:
  explicit OpenFolder(const QString& name)
      : handle_(open(FolderOf(name).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}
  ~OpenFolder() {
    if (handle_ >= 0) close(handle_);
  }
  OpenFolder(const OpenFolder&) = delete;
  OpenFolder& operator=(const OpenFolder&) = delete;

  bool HasFailed() const { return handle_ < 0 && errno != EACCES; }
  bool SyncHasFailed() const { return handle_ >= 0 && SyncFailed(handle_); }

 private:
  int handle_;
};

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
  const OpenFolder folder(name_);
  if (folder.HasFailed()) Fail();
  errno = 0;
  if (!file_.commit()) Fail();
  // The new file is in place, but may not be after a loss of power.
  if (folder.SyncHasFailed()) ThrowFileError(path_, FileAction::kWrite, errno);
}

void SaveWholeFile(const std::string& path, std::string_view bytes,
                   const std::function<bool()>& is_given_up) {
  FileReplacement file(path);
  file.Write(bytes);
  file.Sync();
  if (is_given_up()) return;
  file.Replace();
}

}  // namespace tarnlink
