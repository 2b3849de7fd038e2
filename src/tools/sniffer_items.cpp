#include "tools/sniffer_items.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/numbers.h"
#include "common/text.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {
namespace {

constexpr int kBitsOfByte = 8;
constexpr int kBitsOfWord = 16;
constexpr int kBitsOfHexDigit = 4;

struct Decoded {
  std::int32_t value = 0;  // unsigned
  int bits = kBitsOfByte;
};

Decoded Select(std::int32_t type, std::int32_t high, std::int32_t low) {
  switch (type) {
    case kSniffSignedHigh:
    case kSniffUnsignedHigh:
      return {high, kBitsOfByte};
    case kSniffUnsignedWord:
    case kSniffSignedWord:
      return {high * 256 + low, kBitsOfWord};
    default:
      return {low, kBitsOfByte};
  }
}

std::string DecimalText(std::int32_t type, std::int32_t value) {
  switch (type) {
    case kSniffSignedHigh:
    case kSniffSignedLow:
      return std::to_string(static_cast<std::int8_t>(value));
    case kSniffSignedWord:
      return std::to_string(static_cast<std::int16_t>(value));
    default:
      return std::to_string(value);
  }
}

}  // namespace

SniffLocation InitialSniffLocation() {
  SniffLocation item;
  item.StorageType = kUnsignedByte;
  item.SelectByte = kMsb;
  return item;
}

std::string TakeSniffedValue(SniffLocation& item, std::string_view frame) {
  const Decoded decoded = Select(item.SnifferType, zolt_frame::Number(frame, zolt_frame::kDataHigh),
                                 zolt_frame::Number(frame, zolt_frame::kDataLow));
  item.RawValue = decoded.value;
  if (item.SnifferType == kSniffBit) return BitText(IsBitSet(decoded.value, item.BitAddress));
  switch (item.Representation) {
    case kHexadecimal:
      return "0x" + Right("0000" + Hex(decoded.value), decoded.bits / kBitsOfHexDigit);
    case kBinary:
      return dec2bin(decoded.value, static_cast<std::uint8_t>(decoded.bits));
    case kOctal:
      return Oct(decoded.value);
    default:
      return DecimalText(item.SnifferType, decoded.value);
  }
}

// --- Places --------------------------------------------------------------------------------------

void SnifferLayout::SetWidth(float width) {
  columns_ = std::clamp(static_cast<int>((width - kCellGap) / kCellWidth), 1, kLastItem);
}

void SnifferLayout::Add(int item) {
  if (Has(item)) return;
  const auto free = std::find(cells_.begin(), cells_.end(), 0);
  Put(item, static_cast<int>(free - cells_.begin()));
}

void SnifferLayout::Remove(int item) {
  const int cell = CellOf(item);
  if (cell < 0) return;
  cells_[static_cast<std::size_t>(cell)] = 0;
  DropEmptyEnd();
}

void SnifferLayout::MoveTo(int item, ItemPlace place) {
  const int from = CellOf(item);
  if (from < 0) return;
  const auto nearest = [](float offset, float size, int last) {
    return static_cast<int>(std::lround(std::clamp(offset / size, 0.0F, static_cast<float>(last))));
  };
  const int column = nearest(place.Left - kCellGap, kCellWidth, columns_ - 1);
  const int row = nearest(place.Top - kCellGap, kCellHeight, Rows());
  const int to = row * columns_ + column;
  const bool is_taken = to < static_cast<int>(cells_.size());
  const int other = is_taken ? cells_[static_cast<std::size_t>(to)] : 0;
  cells_[static_cast<std::size_t>(from)] = other;
  Put(item, to);
  DropEmptyEnd();
}

void SnifferLayout::Step(int item, int right, int down) {
  if (!Has(item)) return;
  ItemPlace place = PlaceOf(item);
  place.Left += static_cast<float>(right) * kCellWidth;
  place.Top += static_cast<float>(down) * kCellHeight;
  MoveTo(item, place);
}

ItemPlace SnifferLayout::PlaceOf(int item) const {
  const int cell = std::max(CellOf(item), 0);
  const int row = cell / columns_;
  const int column = cell - row * columns_;
  return {kCellGap + static_cast<float>(column) * kCellWidth,
          kCellGap + static_cast<float>(row) * kCellHeight};
}

float SnifferLayout::Height() const { return kCellGap + static_cast<float>(Rows()) * kCellHeight; }

int SnifferLayout::CellOf(int item) const {
  const auto found = std::find(cells_.begin(), cells_.end(), item);
  return item == 0 || found == cells_.end() ? -1 : static_cast<int>(found - cells_.begin());
}

int SnifferLayout::Rows() const {
  return (static_cast<int>(cells_.size()) + columns_ - 1) / columns_;
}

void SnifferLayout::Put(int item, int cell) {
  const auto index = static_cast<std::size_t>(cell);
  if (index >= cells_.size()) cells_.resize(index + 1, 0);
  cells_[index] = item;
}

void SnifferLayout::DropEmptyEnd() {
  while (!cells_.empty() && cells_.back() == 0) cells_.pop_back();
}

}  // namespace tarnlink
