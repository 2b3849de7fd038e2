#include "monitor/location_table.h"

#include <algorithm>
#include <limits>

#include "common/numbers.h"
#include "common/text.h"

namespace tarnlink {
namespace {

constexpr int kBitsOfByte = 8;
constexpr int kBitsOfWord = 16;
constexpr std::size_t kAddressLength = 4;

bool IsByteType(std::int32_t storage_type) {
  return storage_type == kBit || storage_type == kUnsignedByte || storage_type == kSignedByte;
}

bool IsSignedType(std::int32_t storage_type) {
  return storage_type == kSignedByte || storage_type == kSignedWord;
}

std::int32_t HexValue(const std::string& digits) {
  return ValInt("&H" + digits, std::numeric_limits<std::int32_t>::min(),
                std::numeric_limits<std::int32_t>::max());
}

}  // namespace

std::string FixedAddress(std::string_view text) {
  std::string address;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool continues_character = (byte & 0xC0) == 0x80;
    if (!continues_character) address += byte < 0x80 ? c : '?';
    if (address.size() == kAddressLength) break;
  }
  address.resize(kAddressLength, ' ');
  return address;
}

std::string SteppedColumn(std::string_view column, int step) {
  constexpr int kLast = 16'384;
  const int from = ValInt(column, 0, kLast);
  // 0 is no column: the arrow leaves it, but does not come to it.
  return std::to_string(std::clamp(from + step, std::min(from, 1), kLast));
}

void LocationTable::InitLocations(const SettingsStore& settings) {
  const std::string protocol = settings.GetSetting("Communication", "Protocol", "1");
  initial_.LocSlaveAddress = Val(protocol) == kModbusProtocol ? "1" : "0";
  std::fill(locations_.begin(), locations_.end(), initial_);
}

Location& LocationTable::operator[](int index) {
  const std::size_t at = Checked(index);
  if (at >= locations_.size()) locations_.resize(at + 1, initial_);
  return locations_[at];
}

const Location& LocationTable::operator[](int index) const {
  const std::size_t at = Checked(index);
  return at < locations_.size() ? locations_[at] : initial_;
}

std::size_t LocationTable::Checked(int index) {
  if (index < 0 || index > kLastLocation) {
    throw RunTimeError(kSubscript, "There is no Location " + std::to_string(index) + ".");
  }
  return static_cast<std::size_t>(index);
}

std::string dec2bin(std::int32_t value, std::uint8_t bits) {
  constexpr int kMostZeros = 16;
  std::string digits;
  for (std::int64_t weight = 1; weight <= value; weight *= 2) {
    digits.insert(digits.begin(), (value & weight) != 0 ? '1' : '0');
  }
  const int missing = bits - static_cast<int>(digits.size());
  return std::string(static_cast<std::size_t>(std::clamp(missing, 0, kMostZeros)), '0') + digits;
}

std::string FormatHex(std::string_view text, std::int16_t Length) {
  constexpr std::string_view kNothing = "0000";
  std::string digits = ToUpper(text);
  const auto length = static_cast<int>(std::min<std::size_t>(digits.size(), 1 << 30));
  digits = length > 4 ? Mid(digits, length - 4, 4) : Stuff(digits, 4);
  if (digits.find_first_not_of("0123456789ABCDEF") != std::string::npos) digits = kNothing;
  return Length == 2 ? Mid(digits, 2, 2) : digits;
}

std::string TarnlinkValueText(std::string_view digits, std::int32_t Representation) {
  const std::int32_t number = HexValue(std::string(digits));
  switch (Representation) {
    case kHexadecimal:
      return Hex32(number);
    case kBinary:
      return dec2bin(number, digits.size() <= 2 ? kBitsOfByte : kBitsOfWord);
    case kOctal:
      return Oct32(number);
    default:
      return std::to_string(number);
  }
}

DecodedValue SelectValue(const Location& location, std::uint8_t high, std::uint8_t low,
                         bool is_memory) {
  if (is_memory && IsByteType(location.StorageType)) return {low, false};
  if (!is_memory && location.SelectByte == kMsb) return {high, false};
  if (!is_memory && location.SelectByte == kLsb) return {low, false};
  return {high * 256 + low, true};
}

std::string SignedText(const DecodedValue& value) {
  // The highest number that still prints as it is, and the digits that make the rest negative.
  const std::int32_t highest = value.is_word ? 0x8000 : 0x7F;
  const std::string_view sign = value.is_word ? "FFFF" : "FF";
  if (value.RawValue <= highest) return std::to_string(value.RawValue);
  return std::to_string(HexValue(std::string(sign) + Hex(value.RawValue)));
}

bool IsBitSet(std::int32_t value, std::uint8_t bit) {
  return bit < 31 && (value & (std::int32_t{1} << bit)) != 0;
}

std::string BitText(bool is_set) { return is_set ? "TRUE" : "FALSE"; }

std::string DecodedValueText(const Location& location, const DecodedValue& value) {
  switch (location.Representation) {
    case kHexadecimal:
      return Right("0000" + Hex(value.RawValue), value.is_word ? 4 : 2);
    case kBinary:
      return dec2bin(value.RawValue, value.is_word ? kBitsOfWord : kBitsOfByte);
    case kOctal:
      return Oct(value.RawValue);
    default:
      return IsSignedType(location.StorageType) ? SignedText(value)
                                                : std::to_string(value.RawValue);
  }
}

}  // namespace tarnlink
