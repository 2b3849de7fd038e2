#include "platform/qt/sheet_cells.h"

#include <QString>
#include <algorithm>

#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

constexpr qsizetype kLongestText = 32'767;  // of a cell, in characters

// Control characters and the like have no place in XML.
bool FitsXml(QChar c) {
  const char16_t code = c.unicode();
  if (code < u' ') return code == u'\t' || code == u'\n' || code == u'\r';
  return code < 0xFFFE;
}

}  // namespace

std::string TextForSheet(const std::string& text) {
  QString clean = ToQt(text).left(kLongestText);
  // Not one half of a character.
  if (!clean.isEmpty() && clean.back().isHighSurrogate()) clean.chop(1);
  for (QChar& c : clean) {
    if (!FitsXml(c)) c = QChar::ReplacementCharacter;
  }
  return FromQt(clean);
}

bool SheetCells::Put(SheetCell cell, const Value& value) {
  if (cell.row < 1 || cell.row > kLastCell.row) return false;
  if (cell.column < 1 || cell.column > kLastCell.column) return false;
  const auto row = static_cast<std::size_t>(cell.row);
  const auto column = static_cast<std::uint16_t>(cell.column);
  if (rows_.size() < row) rows_.resize(row);
  std::vector<Packed>& cells = rows_[row - 1];
  auto found = std::find_if(cells.begin(), cells.end(),
                            [&](const Packed& packed) { return packed.column == column; });
  if (found == cells.end()) {
    if (count_ == most_cells_) return false;
    ++count_;
    found = cells.insert(found, Packed{0.0, kNoText, column});
  }
  if (const auto* text = std::get_if<std::string>(&value)) {
    found->text = NumberOf(*text);
  } else {
    found->text = kNoText;
    found->number = std::get<double>(value);
  }
  return true;
}

std::uint32_t SheetCells::NumberOf(const std::string& text) {
  const auto [entry, is_new] =
      text_numbers_.try_emplace(text, static_cast<std::uint32_t>(texts_.size()));
  if (is_new) texts_.push_back(TextForSheet(text));
  return entry->second;
}

}  // namespace tarnlink
