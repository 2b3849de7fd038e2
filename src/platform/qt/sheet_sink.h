// Lines with tabs between their fields that become the sheet of an .xlsx file.
#pragma once

#include <string>
#include <string_view>

#include "common/text_file.h"
#include "platform/qt/background_writer.h"
#include "platform/qt/xlsx_stream.h"

namespace tarnlink {

class SheetSink final : public FileSink {
 public:
  explicit SheetSink(const std::string& path);

  void Write(std::string_view bytes) override;
  void Sync() override;
  void Replace() override { file_.Replace(); }

 private:
  void TakeLine(std::string_view line);
  void TakeField(std::string_view field, SheetCell cell);

  std::string path_;
  FileReplacement file_;  // made first, so that a bad path is told before anything is written
  XlsxStream stream_;
  PieceLines lines_;
  int row_ = 0;
  std::size_t cells_ = 0;
  std::size_t checked_cells_ = 0;  // for which there is room on the disk
};

}  // namespace tarnlink
