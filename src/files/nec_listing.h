// The listing of a NEC controller's build: its variables of bytes and its single bits.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/text_file.h"

namespace tarnlink {

struct NecByte {
  std::string Label;
  std::int32_t address = 0;

  bool operator==(const NecByte&) const = default;
};

struct NecBit {
  std::string Label;
  std::int32_t address = 0;
  std::int32_t BitAddress = 0;

  bool operator==(const NecBit&) const = default;
};

// Both in the order of the file.
struct NecListing {
  std::vector<NecByte> bytes;
  std::vector<NecBit> bits;
  int skipped_lines = 0;  // lines of a symbol that give no address
};

// Reads a listing that comes in pieces.
class NecListingReader {
 public:
  void Take(std::string_view piece);
  // `is_whole` false leaves out the line in which a failed reading broke off.
  NecListing Finish(bool is_whole = true);

 private:
  enum class Section { kOther, kBits, kBytes };

  void TakeLine(std::string_view line);
  void ParseNecLine(std::string_view Line);

  PieceLines lines_;
  Section section_ = Section::kOther;
  NecListing listing_;
};

// The address of the first entry with exactly this label, as hexadecimal text without zeros in
// front; empty if there is none. Of a bit also its number, otherwise 0.
std::string GetNECLstByteAddress(const std::vector<NecByte>& list, std::string_view Label);
std::string GetNECLstBitAddress(const std::vector<NecBit>& list, std::string_view Label,
                                std::int32_t& BitAddress);

}  // namespace tarnlink
