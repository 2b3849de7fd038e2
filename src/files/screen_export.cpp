#include "files/screen_export.h"

#include "common/text_file.h"

namespace tarnlink {

std::string ExportMoment(Date date, const MonthNames& names) {
  return FormatDate(date, "hh:mm dd-mmm-yyyy", names);
}

std::string WriteScreenExport(std::string_view path, std::string_view moment,
                              std::string_view header, std::span<const ExportRow> rows) {
  std::string text;
  const auto add_line = [&text](std::string_view line) { text.append(line).append(kLineEnd); };
  add_line(std::string(path).append("  ").append(moment));
  add_line("");
  add_line("");
  if (!header.empty()) {
    add_line(header);
    add_line("");
  }
  for (const ExportRow& row : rows) add_line(row.name + '\t' + row.value);
  return text;
}

}  // namespace tarnlink
