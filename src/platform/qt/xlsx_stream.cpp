#include "platform/qt/xlsx_stream.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <xlsxwriter.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "platform/qt/file_errors.h"
#include "platform/qt/xlsx_check.h"

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

lxw_row_t RowOf(SheetCell cell) { return static_cast<lxw_row_t>(cell.row - 1); }
lxw_col_t ColumnOf(SheetCell cell) { return static_cast<lxw_col_t>(cell.column - 1); }

}  // namespace

struct XlsxStream::Library {
  explicit Library(const std::string& path) : memory(path) {}
  // The library closes its temporary file only when it finishes the workbook.
  ~Library() {
    if (workbook == nullptr) return;
    if (sheet != nullptr) std::fclose(sheet->optimize_tmpfile);
    lxw_workbook_free(workbook);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  PointLocale with_point;
  MemoryFile memory;
  lxw_workbook* workbook = nullptr;
  lxw_worksheet* sheet = nullptr;
};

XlsxStream::XlsxStream(const std::string& path)
    : path_(path), folder_(TemporaryFolder()), library_(std::make_unique<Library>(path)) {
  RefuseFullDisk(0);
  lxw_workbook_options options{};
  options.constant_memory = LXW_TRUE;  // row after row, without a second copy of all cells
  options.tmpdir = folder_.data();
  options.use_zip64 = LXW_TRUE;
  library_->workbook = workbook_new_opt(library_->memory.name().c_str(), &options);
  if (library_->workbook != nullptr) {
    library_->sheet = workbook_add_worksheet(library_->workbook, "Sheet1");
  }
  if (library_->sheet == nullptr) {
    FailForTemporaryFolder(path_, folder_, kPermissionDenied, "cannot be used.");
  }
  worksheet_freeze_panes(library_->sheet, 1, 0);  // the names stay in sight
}

XlsxStream::~XlsxStream() = default;

// The library writes the sheet twice.
void XlsxStream::RefuseFullDisk(std::size_t cells, std::size_t written) const {
  constexpr std::size_t kLongestCell = 64;  // as XML, with a text as values have it
  constexpr std::size_t kRest = 1'000'000;
  struct statvfs disk {};
  if (statvfs(folder_.c_str(), &disk) != 0) {
    FailForTemporaryFolder(path_, folder_, kPathNotFound, "is missing.");
  }
  const std::size_t room = disk.f_bavail * disk.f_frsize;
  if (room < (2 * cells - written) * kLongestCell + kRest) {
    FailForTemporaryFolder(path_, folder_, kDiskFull, "is full.");
  }
}

void XlsxStream::Put(SheetCell cell, const char* text) {
  worksheet_write_string(library_->sheet, RowOf(cell), ColumnOf(cell), text, nullptr);
}

void XlsxStream::Put(SheetCell cell, double number) {
  worksheet_write_number(library_->sheet, RowOf(cell), ColumnOf(cell), number, nullptr);
}

// The library takes no notice of what its temporary files have not taken, so what it has made of
// them is looked at.
std::string_view XlsxStream::Finish() {
  const std::size_t row_bytes = FinishRows();
  const lxw_error error = workbook_close(library_->workbook);
  library_->workbook = nullptr;
  if (error != LXW_NO_ERROR) {
    ThrowFileError(path_, FileAction::kWrite, std::string(lxw_strerror(error)));
  }
  const char* bytes = library_->memory.bytes();
  if (bytes == nullptr) ThrowFileError(path_, FileAction::kWrite, ENOMEM);
  const std::string_view whole(bytes, library_->memory.size());
  if (!IsWholeWorkbook(whole, row_bytes)) {
    FailForTemporaryFolder(path_, folder_, kDiskFull, "did not take all of it.");
  }
  return whole;
}

// The bytes of all rows.
std::size_t XlsxStream::FinishRows() {
  lxw_worksheet_write_single_row(library_->sheet);
  std::FILE* rows = library_->sheet->optimize_tmpfile;
  if (std::fflush(rows) != 0 || std::ferror(rows) != 0) {
    FailForTemporaryFolder(path_, folder_, kDiskFull, "is full.");
  }
  struct stat status {};
  if (fstat(fileno(rows), &status) != 0) ThrowFileError(path_, FileAction::kWrite, errno);
  return static_cast<std::size_t>(status.st_size);
}

}  // namespace tarnlink
