#include "graph/cell_texts.h"

#include <algorithm>

#include "common/local_decimal.h"
#include "common/numbers.h"

namespace tarnlink {

namespace {

constexpr std::size_t kBytes = 256;
constexpr std::size_t kWords = 65'536;
constexpr std::size_t kMostTables = 16;  // a megabyte each

}  // namespace

CellTexts::CellTexts(int stored_as, float factor, std::string decimal_separator, bool has_table)
    : factor_(factor), decimal_separator_(std::move(decimal_separator)) {
  const bool is_high = stored_as == kStoredMsb;
  const bool is_byte = is_high || stored_as == kStoredLsb;
  if (is_byte) part_ = is_high ? RawPart{0xFF00, 8} : RawPart{0x00FF, 0};
  if (has_table) table_.resize(is_byte ? kBytes : kWords);
}

CellText CellTexts::Make(std::int32_t raw) {
  const std::string text = MakeLong(raw);
  CellText cell;
  if (text.size() > CellText::kMost) return cell;
  std::copy(text.begin(), text.end(), cell.text.begin());
  cell.length = static_cast<std::uint8_t>(text.size());
  const std::size_t number = static_cast<std::uint32_t>(part_.Of(raw));
  if (number < table_.size()) table_[number] = cell;
  return cell;
}

std::string CellTexts::MakeLong(std::int32_t raw) const {
  const float value = static_cast<float>(part_.Of(raw)) * factor_;
  const std::string text = "\t" + FormatSingle(value);
  return decimal_separator_ == "." ? text : LocalizeDecimal(text, decimal_separator_);
}

CellTexts& CellTables::Of(const GraphAttribute& line) {
  const auto key = std::make_pair(static_cast<int>(line.StoredAs), line.Factor);
  const auto found = tables_.find(key);
  if (found != tables_.end()) return found->second;
  const bool has_table = tables_.size() < kMostTables;
  return tables_.try_emplace(key, line.StoredAs, line.Factor, decimal_separator_, has_table)
      .first->second;
}

}  // namespace tarnlink
