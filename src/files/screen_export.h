// The report of a screen: the values that it shows, as a text file with the extension "doc".
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "common/dates.h"

namespace tarnlink {

struct ExportRow {
  std::string name;
  std::string value;
};

// The moment of a report, such as "14:07 05-Mar-2024".
std::string ExportMoment(Date date, const MonthNames& names);

// The whole report: path and moment of the screen, the header unless it is empty, and one line for
// each row in the given order. The texts stay as they are.
std::string WriteScreenExport(std::string_view path, std::string_view moment,
                              std::string_view header, std::span<const ExportRow> rows);

}  // namespace tarnlink
