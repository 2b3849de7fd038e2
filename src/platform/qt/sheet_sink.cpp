#include "platform/qt/sheet_sink.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/qt/sheet_cells.h"

namespace tarnlink {
namespace {

constexpr int kNice = 10;
constexpr std::size_t kCheckedAtOnce = 1'000'000;  // cells

bool IsNumber(std::string_view field, double& number) {
  const char* const end = field.data() + field.size();
  const auto result = std::from_chars(field.data(), end, number);
  return result.ec == std::errc() && result.ptr == end && std::isfinite(number);
}

}  // namespace

SheetSink::SheetSink(const std::string& path) : path_(path), file_(path), stream_(path) {
  // Less than the run: of Linux's threads each has a niceness of its own.
  setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kNice);
}

void SheetSink::Write(std::string_view bytes) {
  lines_.Feed(bytes);
  for (std::string_view line; lines_.Next(line);) TakeLine(line);
}

void SheetSink::TakeLine(std::string_view line) {
  if (++row_ > kLastCell.row) throw SheetIsFull(path_);
  int column = 1;
  while (true) {
    const std::size_t end = std::min(line.find('\t'), line.size());
    TakeField(line.substr(0, end), {row_, column++});
    if (end == line.size()) return;
    line.remove_prefix(end + 1);
  }
}

void SheetSink::TakeField(std::string_view field, SheetCell cell) {
  if (cell.column > kLastCell.column) throw SheetIsFull(path_);
  if (cells_ == checked_cells_) {
    checked_cells_ += kCheckedAtOnce;
    stream_.RefuseFullDisk(checked_cells_, cells_);
  }
  ++cells_;
  double number = 0;
  if (cell.row > 1 && IsNumber(field, number)) {
    stream_.Put(cell, number);
  } else {
    stream_.Put(cell, TextForSheet(std::string(field)).c_str());
  }
}

void SheetSink::Sync() {
  std::string_view line;
  if (lines_.Last(line)) TakeLine(line);
  file_.Write(stream_.Finish());
  file_.Sync();
}

}  // namespace tarnlink
