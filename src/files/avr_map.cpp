#include "files/avr_map.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "common/numbers.h"
#include "common/text.h"
#include "monitor/location_table.h"

namespace tarnlink {

namespace {

constexpr int kAtmegaEnd = 0x800;
constexpr int kXmegaBegin = 0x2000;
constexpr int kXmegaEnd = 0x2F00;
constexpr int kXmegaShift = 0x100;  // slaves know this memory from F100 on

bool IsHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

std::int32_t SignedAddress(std::string_view address) {
  return ValInt("&H" + std::string(address), INT16_MIN, INT16_MAX);
}

// What stands behind the second blank of a squeezed line.
std::string_view ThirdField(std::string_view line) {
  for (int blank = 0; blank < 2; ++blank) {
    const std::size_t at = line.find(' ');
    if (at == std::string_view::npos) return {};
    line.remove_prefix(at + 1);
  }
  return line;
}

// The address of a variable as slaves know it, or nothing if it lies outside the window.
std::optional<std::string> SlaveAddress(std::int16_t micro_type, std::string_view field) {
  const std::string digits = Right(field, 4);
  if (!field.starts_with("000") || !std::all_of(digits.begin(), digits.end(), IsHexDigit)) {
    return std::nullopt;
  }
  const int address = ValInt("&H" + digits + "&", 0, UINT16_MAX);
  if (micro_type == 0) {
    if (address >= kAtmegaEnd) return std::nullopt;
    return "F" + Stuff(ToUpper(Right(field, 3)), 3);
  }
  if (address < kXmegaBegin || address >= kXmegaEnd) return std::nullopt;
  return "F" + Stuff(Hex(address % kXmegaBegin + kXmegaShift), 3);
}

// A prefix of the name wins over the size.
std::int16_t TypeOf(const MapVariable& variable) {
  const std::string prefix = variable.Name.substr(0, 3);
  const auto holds = [&](const char* mark) { return prefix.find(mark) != std::string::npos; };
  if (holds("sw")) return kSignedWord;
  if (holds("sb")) return kSignedByte;
  if (holds("ub")) return kUnsignedByte;
  if (holds("uw")) return kUnsignedWord;
  return variable.Size == 2 ? kUnsignedWord : kUnsignedByte;
}

}  // namespace

bool AvrMapReader::Take(std::string_view piece) {
  lines_.Feed(piece);
  for (std::string_view line; !map_.is_cut && lines_.Next(line);) TakeLine(line);
  return !map_.is_cut;
}

AvrMap AvrMapReader::Finish(bool is_whole) {
  std::string_view line;
  if (is_whole && !map_.is_cut && lines_.Last(line)) TakeLine(line);
  std::vector<MapVariable>& list = map_.variables;
  if (!list.empty()) SortMapVariables(list, 0, 0);
  for (int i = 0; i < static_cast<int>(list.size()); ++i) {
    MapVariable& variable = list[static_cast<std::size_t>(i)];
    variable.Size = GetElementSize(list, i);
    variable.StorageType = TypeOf(variable);
  }
  return std::move(map_);
}

// An "ENTRY LIST" without a line behind it is none.
void AvrMapReader::TakeLine(std::string_view line) {
  if (in_entries_) {
    map_.has_entry_list = true;
    if (line.find(" DATA ") != std::string_view::npos) TakeData(line);
  } else {
    in_entries_ = line.find("ENTRY LIST") != std::string_view::npos;
  }
}

void AvrMapReader::TakeData(std::string_view line) {
  std::string whole = DecodeText(line);
  const std::string squeezed = SqueezeBlanks(whole);
  const auto address = SlaveAddress(micro_type_, ThirdField(squeezed));
  const bool is_cut_off = line.size() == PieceLines::kLongest;
  if (!address || is_cut_off) {
    ++map_.skipped_lines;
    return;
  }
  map_.is_cut = map_.variables.size() == kMostMapVariables;
  if (map_.is_cut) return;
  map_.variables.push_back({.Name = squeezed.substr(0, squeezed.find(' ')), .address = *address});
}

std::string SqueezeBlanks(std::string& Line) {
  std::string squeezed;
  for (const char letter : Trim(Line)) {
    if (letter != ' ' || !squeezed.ends_with(' ')) squeezed += letter;
  }
  Line = squeezed;
  return squeezed;
}

void SortMapVariables(std::vector<MapVariable>& List, int First, int Last) {
  const auto at = [&](int index) -> MapVariable& { return List[static_cast<std::size_t>(index)]; };
  if (Last == 0) {
    First = 0;
    Last = static_cast<int>(List.size()) - 1;
  }
  const std::string pivot = at((First + Last) / 2).address;
  int i = First;
  int j = Last;
  do {
    while (at(i).address < pivot && i < Last) ++i;
    while (pivot < at(j).address && j > First) --j;
    if (i <= j) std::swap(at(i++), at(j--));
  } while (i <= j);
  if (First < j) SortMapVariables(List, First, j);
  if (i < Last) SortMapVariables(List, i, Last);
}

std::int16_t GetElementSize(const std::vector<MapVariable>& list, int Index) {
  const auto index = static_cast<std::size_t>(Index);
  if (index + 1 >= list.size()) return 1;
  return static_cast<std::int16_t>(SignedAddress(list[index + 1].address) -
                                   SignedAddress(list[index].address));
}

std::string GetVyroLstByteAddress(const std::vector<MapVariable>& list, std::string_view Label,
                                  std::int32_t StorageType) {
  const std::size_t plus = Label.find('+');
  const std::string_view name = Label.substr(0, plus);
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const MapVariable& each) { return each.Name == name; });
  if (found == list.end()) return {};
  constexpr int kMostElements = 1'000'000'000;
  const int element = plus == std::string_view::npos
                          ? 0
                          : ValInt(Label.substr(plus + 1), -kMostElements, kMostElements);
  const int step = StorageType > kSignedByte ? 2 : 1;
  const std::int64_t address = SignedAddress(found->address) + std::int64_t{element} * step;
  if (element == 0 || address >= -1) return found->address;
  return Right(Hex(address), 4);
}

}  // namespace tarnlink
