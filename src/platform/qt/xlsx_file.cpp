#include "platform/qt/xlsx_file.h"

#include "platform/qt/save_file.h"
#include "platform/qt/xlsx_stream.h"

namespace tarnlink {

void SaveXlsx(const std::string& path, const SheetCells& cells) {
  XlsxStream stream(path);
  stream.RefuseFullDisk(cells.count());
  cells.ForEach([&](SheetCell cell, const std::string& text) { stream.Put(cell, text.c_str()); },
                [&](SheetCell cell, double number) { stream.Put(cell, number); });
  SaveWholeFile(path, stream.Finish());
}

}  // namespace tarnlink
