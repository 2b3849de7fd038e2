#include "platform/qt/qt_files.h"

#include <sys/stat.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>
#include <filesystem>
#include <utility>

#include "common/paths.h"
#include "platform/qt/background_reader.h"
#include "platform/qt/background_rows.h"
#include "platform/qt/background_writer.h"
#include "platform/qt/file_errors.h"
#include "platform/qt/file_for_reading.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/row_file.h"
#include "platform/qt/save_file.h"
#include "platform/qt/sheet_sink.h"
#include "platform/qt/waiting_dialog.h"

namespace tarnlink {
namespace {

// No file of this program comes near it; a larger one was picked by mistake.
constexpr std::size_t kLargestFile = std::size_t{1} << 30;
constexpr std::size_t kReadStep = std::size_t{1} << 16;
constexpr std::size_t kPiece = std::size_t{1} << 18;  // fits the processor's own memory

void CheckSize(const std::string& path, std::size_t size) {
  if (size > kLargestFile) ThrowFileError(path, FileAction::kRead, "it is too large.");
}

std::string ReadAll(const std::string& path, FileForReading& file, std::size_t expected) {
  std::string bytes;
  std::size_t filled = 0;
  while (true) {
    // One byte beyond what the file says, so that its end is seen; steps if it has grown meanwhile.
    if (filled == bytes.size()) bytes.resize(filled == 0 ? expected + 1 : filled + kReadStep);
    CheckSize(path, filled);
    const std::size_t got = file.Read(bytes.data() + filled, bytes.size() - filled);
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

// The names of the plain files, sorted.
std::vector<std::string> FilesIn(const std::string& folder) {
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

}  // namespace

QtFiles::QtFiles(std::string data_folder)
    : data_folder_(data_folder.empty() ? ShippedFolder() : std::move(data_folder)) {}

std::string QtFiles::ReadWhole(const std::string& path) {
  const auto bytes = std::make_shared<std::string>();
  WaitFor(path, FileAction::kRead, [path, bytes](const IsGivenUp&) {
    FileForReading file(path);
    const auto size = static_cast<std::size_t>(file.Size());
    CheckSize(path, size);
    *bytes = ReadAll(path, file, size);
  });
  return std::move(*bytes);
}

void QtFiles::ReadPieces(const std::string& path,
                         const std::function<bool(std::string_view)>& take) {
  struct Reading {
    std::unique_ptr<FileForReading> file;
    std::vector<char> piece = std::vector<char>(kPiece);
    std::size_t length = 0;
  };
  const auto reading = std::make_shared<Reading>();
  do {
    WaitFor(path, FileAction::kRead, [path, reading](const IsGivenUp&) {
      if (!reading->file) reading->file = std::make_unique<FileForReading>(path);
      reading->length = reading->file->Read(reading->piece.data(), reading->piece.size());
    });
  } while (reading->length > 0 && take({reading->piece.data(), reading->length}));
}

void QtFiles::WriteWhole(const std::string& path, std::string_view bytes) {
  const auto kept = std::make_shared<const std::string>(bytes);
  WaitFor(path, FileAction::kWrite,
          [path, kept](const IsGivenUp& is_given_up) { SaveWholeFile(path, *kept, is_given_up); });
}

void QtFiles::WaitFor(const std::string& path, FileAction action,
                      const std::function<void(const IsGivenUp&)>& work) const {
  const std::string what = "Waiting for the disk with \"" + StripFileFromPath(path) + "\"...";
  RunBesideLoop(what, NoAnswerFrom(path, action), work, left_threads_);
}

std::unique_ptr<RowWriter> QtFiles::OpenRows(const std::string& path, bool keep) {
  if (!HasLoop()) return std::make_unique<RowFile>(path, keep);
  const auto file = std::make_shared<std::unique_ptr<RowFile>>();
  WaitFor(path, FileAction::kWrite,
          [path, keep, file](const IsGivenUp&) { *file = std::make_unique<RowFile>(path, keep); });
  return std::make_unique<BackgroundRows>(path, std::move(*file), left_threads_);
}

std::unique_ptr<BigReader> QtFiles::ReadBig(const std::string& path) {
  return std::make_unique<BackgroundReader>(path, left_threads_);
}

std::unique_ptr<BigWriter> QtFiles::WriteBig(const std::string& path) {
  const auto make = [path] { return std::make_unique<ReplacingSink>(path); };
  return std::make_unique<BackgroundWriter>(path, make, left_threads_);
}

std::unique_ptr<BigWriter> QtFiles::WriteSheet(const std::string& path) {
  const auto make = [path] { return std::make_unique<SheetSink>(path); };
  return std::make_unique<BackgroundWriter>(path, make, left_threads_);
}

mode_t QtFiles::KindOf(const std::string& path) const {
  const auto kind = std::make_shared<mode_t>(0);
  WaitFor(path, FileAction::kRead, [path, kind](const IsGivenUp&) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) *kind = status.st_mode;
  });
  return *kind;
}

bool QtFiles::Exists(const std::string& path) const {
  const mode_t kind = KindOf(path);
  return kind != 0 && !S_ISDIR(kind);
}

bool QtFiles::IsFolder(const std::string& path) const { return S_ISDIR(KindOf(path)); }

std::vector<std::string> QtFiles::ListFolder(const std::string& folder) const {
  const auto names = std::make_shared<std::vector<std::string>>();
  WaitFor(folder, FileAction::kRead,
          [folder, names](const IsGivenUp&) { *names = FilesIn(folder); });
  return std::move(*names);
}

std::string QtFiles::DocumentsFolder() const {
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  // An account that was never used on a desktop has none.
  return FromQt(QFileInfo(documents).isDir() ? documents : QDir::homePath());
}

}  // namespace tarnlink
