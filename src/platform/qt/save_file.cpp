#include "platform/qt/save_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFileInfo>
#include <QSaveFile>
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

void SaveWholeFile(const std::string& path, std::string_view bytes) {
  const QString name = BehindLinks(path);
  RefuseUnwritable(path, name);
  QSaveFile file(name);
  file.setDirectWriteFallback(false);
  const auto fail = [&] {
    const int number = errno == 0 ? EIO : errno;
    file.cancelWriting();
    ThrowFileError(path, FileAction::kWrite, number);
  };

  // `commit` alone reports neither a short write nor a failed sync: near a full disk it replaces
  // the good file by a cut one. So every step is checked before it.
  const auto size = static_cast<qint64>(bytes.size());
  errno = 0;
  if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) fail();
  errno = 0;
  if (file.write(bytes.data(), size) != size) fail();
  if (!file.flush() || file.error() != QFileDevice::NoError || file.size() != size) fail();
  if (SyncFailed(file.handle())) fail();
  errno = 0;
  if (!file.commit()) fail();
  SyncFolder(name);
}

}  // namespace tarnlink
