// The bytes of an .xlsx file with one sheet, "Sheet1", made row by row on one thread.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "platform/workbook.h"

namespace tarnlink {

class XlsxStream {
 public:
  // `path` is what errors name. All of it throws RunTimeError 61, 70, 76 or 57.
  explicit XlsxStream(const std::string& path);
  ~XlsxStream();
  XlsxStream(const XlsxStream&) = delete;
  XlsxStream& operator=(const XlsxStream&) = delete;

  // The library does not look whether its temporary files took what it wrote, so there has to be
  // room for so many cells from the first on.
  void RefuseFullDisk(std::size_t cells, std::size_t written = 0) const;

  // A row is complete when the next one begins.
  void Put(SheetCell cell, const char* text);
  void Put(SheetCell cell, double number);

  // Once, and last. The bytes live as long as this does.
  std::string_view Finish();

 private:
  struct Library;

  std::size_t FinishRows();

  std::string path_;
  std::string folder_;  // of temporary files
  std::unique_ptr<Library> library_;
};

}  // namespace tarnlink
