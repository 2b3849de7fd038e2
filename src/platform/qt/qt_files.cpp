#include "platform/qt/qt_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "common/paths.h"
#include "platform/qt/file_errors.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/row_file.h"
#include "platform/qt/save_file.h"

namespace tarnlink {
namespace {

// No file of this program comes near it; a larger one was picked by mistake.
constexpr std::size_t kLargestFile = std::size_t{1} << 30;
constexpr std::size_t kReadStep = std::size_t{1} << 16;
constexpr std::size_t kPiece = std::size_t{1} << 18;  // fits the processor's own memory

class OpenHandle {
 public:
  explicit OpenHandle(int handle) : handle_(handle) {}
  ~OpenHandle() {
    if (handle_ >= 0) close(handle_);
  }
  OpenHandle(const OpenHandle&) = delete;
  OpenHandle& operator=(const OpenHandle&) = delete;
  int get() const { return handle_; }

 private:
  int handle_;
};

int OpenForReading(const std::string& path) {
  RefuseIrregularFile(path, FileAction::kRead);
  const int handle = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (handle < 0) ThrowFileError(path, FileAction::kRead, errno);
  return handle;
}

// The number of bytes that have been read into `room`, 0 at the file's end.
std::size_t ReadSome(const std::string& path, const OpenHandle& file, char* room,
                     std::size_t size) {
  while (true) {
    const ssize_t got = read(file.get(), room, size);
    if (got >= 0) return static_cast<std::size_t>(got);
    if (errno != EINTR) ThrowFileError(path, FileAction::kRead, errno);
  }
}

std::string ReadAll(const std::string& path, const OpenHandle& file, std::size_t expected) {
  std::string bytes;
  std::size_t filled = 0;
  while (true) {
    // One byte beyond what the file says, so that its end is seen; steps if it has grown meanwhile.
    if (filled == bytes.size()) bytes.resize(filled == 0 ? expected + 1 : filled + kReadStep);
    if (filled > kLargestFile) ThrowFileError(path, FileAction::kRead, "it is too large.");
    const std::size_t got = ReadSome(path, file, bytes.data() + filled, bytes.size() - filled);
    if (got == 0) break;
    filled += got;
  }
  bytes.resize(filled);
  return bytes;
}

std::string ShippedFolder() {
  const std::string program = FromQt(QCoreApplication::applicationDirPath());
  const std::string installed = program + "/../share/tarnlink";
  std::error_code none;
  if (!std::filesystem::is_directory(installed, none)) return program;
  return std::filesystem::weakly_canonical(installed, none).string();
}

}  // namespace

QtFiles::QtFiles(std::string data_folder)
    : data_folder_(data_folder.empty() ? ShippedFolder() : std::move(data_folder)) {}

std::string QtFiles::ReadWhole(const std::string& path) {
  const OpenHandle file(OpenForReading(path));
  struct stat status {};
  if (fstat(file.get(), &status) != 0) ThrowFileError(path, FileAction::kRead, errno);
  const auto size = static_cast<std::size_t>(status.st_size);
  if (size > kLargestFile) ThrowFileError(path, FileAction::kRead, "it is too large.");
  return ReadAll(path, file, size);
}

void QtFiles::ReadPieces(const std::string& path,
                         const std::function<bool(std::string_view)>& take) {
  const OpenHandle file(OpenForReading(path));
  std::vector<char> piece(kPiece);
  while (const std::size_t got = ReadSome(path, file, piece.data(), piece.size())) {
    if (!take({piece.data(), got})) return;
  }
}

void QtFiles::WriteWhole(const std::string& path, std::string_view bytes) {
  SaveWholeFile(path, bytes);
}

std::unique_ptr<RowWriter> QtFiles::OpenRows(const std::string& path, bool keep) {
  return std::make_unique<RowFile>(path, keep);
}

bool QtFiles::Exists(const std::string& path) const {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

bool QtFiles::IsFolder(const std::string& path) const {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::vector<std::string> QtFiles::ListFolder(const std::string& folder) const {
  std::vector<std::string> names;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (const std::filesystem::directory_iterator end; !error && entry != end;
       entry.increment(error)) {
    std::error_code unreadable;
    if (entry->is_regular_file(unreadable)) names.push_back(entry->path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string QtFiles::DocumentsFolder() const {
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  // An account that was never used on a desktop has none.
  return FromQt(QFileInfo(documents).isDir() ? documents : QDir::homePath());
}

}  // namespace tarnlink
