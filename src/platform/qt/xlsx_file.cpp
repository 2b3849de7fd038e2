#include "platform/qt/xlsx_file.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <xlsxwriter.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "platform/qt/file_errors.h"
#include "platform/qt/save_file.h"

namespace tarnlink {
namespace {

// While this lives, the thread writes numbers with a point, whatever the user's language: the
// library prints them as the locale has it, and a comma ruins the file.
class PointLocale {
 public:
  PointLocale() : point_(newlocale(LC_ALL_MASK, "C", nullptr)), before_(uselocale(point_)) {}
  ~PointLocale() {
    uselocale(before_);
    freelocale(point_);
  }
  PointLocale(const PointLocale&) = delete;
  PointLocale& operator=(const PointLocale&) = delete;

 private:
  locale_t point_;
  locale_t before_;
};

// A file in memory that has a name as long as this lives.
class MemoryFile {
 public:
  explicit MemoryFile(const std::string& path) : handle_(memfd_create("workbook", MFD_CLOEXEC)) {
    if (handle_ < 0) ThrowFileError(path, FileAction::kWrite, errno);
  }
  ~MemoryFile() {
    if (bytes_ != nullptr) munmap(bytes_, size_);
    close(handle_);
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string name() const { return "/proc/self/fd/" + std::to_string(handle_); }

  // Null if they cannot be had.
  const char* bytes() {
    struct stat status {};
    if (fstat(handle_, &status) != 0 || status.st_size == 0) return nullptr;
    size_ = static_cast<std::size_t>(status.st_size);
    void* mapped = mmap(nullptr, size_, PROT_READ, MAP_SHARED, handle_, 0);
    if (mapped == MAP_FAILED) return nullptr;
    bytes_ = mapped;
    return static_cast<const char*>(bytes_);
  }
  std::size_t size() const { return size_; }

 private:
  int handle_;
  void* bytes_ = nullptr;
  std::size_t size_ = 0;
};

[[noreturn]] void FailForTemporaryFolder(const std::string& path, const std::string& folder,
                                         ErrorCode code, const std::string& why) {
  throw RunTimeError(code, "\"" + path + "\" could not be written: the folder \"" + folder +
                               "\" for temporary files " + why);
}

std::string TemporaryFolder() {
  const char* folder = std::getenv("TMPDIR");
  return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

// The library does not look whether its temporary files took what it wrote, so there has to be room
// for all of it: the sheet twice.
void RefuseFullTemporaryFolder(const std::string& path, const SheetCells& cells) {
  constexpr std::size_t kLongestCell = 64;  // as XML, with a text as values have it
  constexpr std::size_t kRest = 1'000'000;
  const std::string folder = TemporaryFolder();
  struct statvfs disk {};
  if (statvfs(folder.c_str(), &disk) != 0)
    FailForTemporaryFolder(path, folder, kPathNotFound, "is missing.");
  const std::size_t room = disk.f_bavail * disk.f_frsize;
  if (room < 2 * kLongestCell * cells.count() + kRest) {
    FailForTemporaryFolder(path, folder, kDiskFull, "is full.");
  }
}

void WriteCells(lxw_worksheet* sheet, const SheetCells& cells) {
  const auto row_of = [](SheetCell cell) { return static_cast<lxw_row_t>(cell.row - 1); };
  const auto column_of = [](SheetCell cell) { return static_cast<lxw_col_t>(cell.column - 1); };
  cells.ForEach(
      [&](SheetCell cell, const std::string& text) {
        worksheet_write_string(sheet, row_of(cell), column_of(cell), text.c_str(), nullptr);
      },
      [&](SheetCell cell, double number) {
        worksheet_write_number(sheet, row_of(cell), column_of(cell), number, nullptr);
      });
}

// Leaves the file in `memory`.
void BuildXlsx(const std::string& path, const SheetCells& cells, const std::string& memory) {
  RefuseFullTemporaryFolder(path, cells);
  std::string folder = TemporaryFolder();
  lxw_workbook_options options{};
  options.constant_memory = LXW_TRUE;  // row after row, without a second copy of all cells
  options.tmpdir = folder.data();
  options.use_zip64 = LXW_TRUE;
  lxw_workbook* workbook = workbook_new_opt(memory.c_str(), &options);
  lxw_worksheet* sheet = nullptr;
  if (workbook != nullptr) sheet = workbook_add_worksheet(workbook, "Sheet1");
  if (sheet == nullptr) {
    lxw_workbook_free(workbook);
    FailForTemporaryFolder(path, folder, kPermissionDenied, "cannot be used.");
  }
  worksheet_freeze_panes(sheet, 1, 0);  // the names stay in sight
  WriteCells(sheet, cells);
  const bool is_cut =
      std::fflush(sheet->optimize_tmpfile) != 0 || std::ferror(sheet->optimize_tmpfile) != 0;
  const lxw_error error = workbook_close(workbook);
  if (is_cut) FailForTemporaryFolder(path, folder, kDiskFull, "is full.");
  if (error != LXW_NO_ERROR) {
    ThrowFileError(path, FileAction::kWrite, std::string(lxw_strerror(error)));
  }
}

}  // namespace

void SaveXlsx(const std::string& path, const SheetCells& cells) {
  const PointLocale with_point;
  MemoryFile memory(path);
  BuildXlsx(path, cells, memory.name());
  const char* bytes = memory.bytes();
  if (bytes == nullptr) ThrowFileError(path, FileAction::kWrite, ENOMEM);
  SaveWholeFile(path, {bytes, memory.size()});
}

}  // namespace tarnlink
