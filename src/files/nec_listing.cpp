#include "files/nec_listing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "common/numbers.h"

namespace tarnlink {

namespace {

// A line of a symbol: the label, a blank at the place behind its field, four digits of the address,
// and for a bit any character and the bit's number.
constexpr std::size_t kLabelAt = 11;
constexpr std::size_t kBlankAt = kLabelAt + 23;
constexpr std::size_t kAddressAt = kBlankAt + 1;
constexpr std::size_t kAddressLength = 4;
constexpr std::size_t kBitAt = kAddressAt + 5;

constexpr std::size_t kLongestSection = 8;
constexpr std::array<std::string_view, 16> kOtherSections = {
    "STKSPAC", "RESTART", "INTVEC", "IFLIST", "SWSTART", "CODE",   "SAFCODE",  "UPDATA2",
    "BITVARS", "RCODE",   "?FILL1", "?FILL2", "?FILL3",  "?FILL4", "CHECKSUM", "SEGMENT"};

std::optional<std::int32_t> AddressOf(std::string_view line) {
  const std::string_view digits = line.substr(kAddressAt, kAddressLength);
  std::int32_t address = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), address, 16);
  if (error != std::errc() || end != digits.data() + kAddressLength || digits[0] == '-') return {};
  return address;
}

}  // namespace

void NecListingReader::Take(std::string_view piece) {
  lines_.Feed(piece);
  for (std::string_view line; lines_.Next(line);) TakeLine(line);
}

NecListing NecListingReader::Finish(bool is_whole) {
  std::string_view line;
  if (is_whole && lines_.Last(line)) TakeLine(line);
  return std::move(listing_);
}

void NecListingReader::TakeLine(std::string_view line) {
  if (section_ != Section::kOther) ParseNecLine(line);
  if (line.empty() || line.size() > kLongestSection) return;
  if (line == "BITS") {
    section_ = Section::kBits;
  } else if (line == "SHRTDAT" || line == "DATA") {
    section_ = Section::kBytes;
  } else if (std::find(kOtherSections.begin(), kOtherSections.end(), line) !=
             kOtherSections.end()) {
    section_ = Section::kOther;
  }
}

void NecListingReader::ParseNecLine(std::string_view Line) {
  constexpr std::string_view kBlanks = "           ";
  static_assert(kBlanks.size() == kLabelAt);
  if (Line.size() <= kBlankAt || !Line.starts_with(kBlanks) || Line[kLabelAt] == ' ') return;
  if (Line[kBlankAt] != ' ') return;
  const std::string_view rest = Line.substr(kLabelAt);
  const std::string label = DecodeText(rest.substr(0, rest.find(' ')));
  const auto address = AddressOf(Line);
  const bool is_bit = section_ == Section::kBits;
  const bool has_number =
      !is_bit || (Line.size() > kBitAt && Line[kBitAt] >= '0' && Line[kBitAt] <= '9');
  if (!address || label.empty() || !has_number) {
    ++listing_.skipped_lines;
  } else if (is_bit) {
    listing_.bits.push_back({label, *address, Line[kBitAt] - '0'});
  } else {
    listing_.bytes.push_back({label, *address});
  }
}

std::string GetNECLstByteAddress(const std::vector<NecByte>& list, std::string_view Label) {
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const NecByte& each) { return each.Label == Label; });
  return found == list.end() ? std::string() : Hex(found->address);
}

std::string GetNECLstBitAddress(const std::vector<NecBit>& list, std::string_view Label,
                                std::int32_t& BitAddress) {
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const NecBit& each) { return each.Label == Label; });
  BitAddress = found == list.end() ? 0 : found->BitAddress;
  return found == list.end() ? std::string() : Hex(found->address);
}

}  // namespace tarnlink
