#include "app/tour/value_log.h"

#include <algorithm>
#include <iomanip>

namespace tarnlink {

void ValueLog::Note(frm_Main& main) {
  for (int i = 1; i <= main.MaxId; ++i) {
    if (static_cast<int>(rows_.size()) < i) {
      rows_.push_back({main.RAM_LOC_TEXT(i).Text, main.RAM_LOC_VAL(i).Text, {}});
    }
    Row& row = rows_[static_cast<std::size_t>(i - 1)];
    const std::string& text = main.RAM_LOC_VAL(i).Text;
    const std::string& before = row.texts.empty() ? row.place_holder : row.texts.back();
    if (text != before) row.texts.push_back(text);
  }
}

void ValueLog::Print(std::ostream& out) const {
  constexpr int kNameWidth = 26;
  constexpr std::size_t kMostTexts = 4;
  for (const Row& row : rows_) {
    out << "  " << std::left << std::setw(kNameWidth) << row.name;
    if (row.texts.empty()) out << "no value";
    const std::size_t first = row.texts.size() - std::min(row.texts.size(), kMostTexts);
    for (std::size_t i = first; i < row.texts.size(); ++i) {
      out << (i == 0 ? "" : i == first ? ".. " : " -> ") << row.texts[i];
    }
    out << '\n';
  }
}

int ValueLog::live() const {
  return static_cast<int>(
      std::count_if(rows_.begin(), rows_.end(), [](const Row& row) { return !row.texts.empty(); }));
}

int ValueLog::changing() const {
  return static_cast<int>(std::count_if(rows_.begin(), rows_.end(),
                                        [](const Row& row) { return row.texts.size() > 1; }));
}

}  // namespace tarnlink
