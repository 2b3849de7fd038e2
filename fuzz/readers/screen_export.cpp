#include "files/screen_export.h"

#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/number_bytes.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"

namespace tarnlink {
namespace {

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const std::string moment = ExportMoment(AnyDouble(bytes), EnglishMonthNames());
  Claim(moment.size() == 17, "a moment is that of a clock and a calendar");
  const std::string path = DecodeText(bytes.Field());
  const std::string header = DecodeText(bytes.Field());
  std::vector<ExportRow> rows;
  std::size_t letters = path.size() + header.size();
  while (!bytes.AtEnd()) {
    ExportRow& row = rows.emplace_back();
    row.name = DecodeText(bytes.Field());
    row.value = DecodeText(bytes.Field());
    letters += row.name.size() + row.value.size();
  }
  const std::string text = WriteScreenExport(path, moment, header, rows);
  Claim(text.starts_with(path) && text.ends_with(kLineEnd), "it begins with the screen");
  const std::size_t lines = 3 + (header.empty() ? 0 : 2) + rows.size();
  Claim(text.size() == letters + 2 + moment.size() + 2 * lines + rows.size(), "nothing is lost");
  Claim(text.find(header) != std::string::npos, "the header is there");
  Claim(DecodeText(EncodeText(text)) == text, "the file is read as it was written");
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {
      "\0\0\0\0\x80\x1D\xE6\x40/a.wcr\0Head\0Flow\0"
      "12\0Fan\0TRUE\0"s,
      "\0\0\0\0\0\0\xF0\xFF\0\0W\xE4rme\0\xCE\xA9\0"s, "\xEF\xBB\xBF"s};
}

}  // namespace

FuzzTarget ScreenExportTarget() { return {"screen_export", Run, Seeds}; }

}  // namespace tarnlink
