// The sniffer text file, extension ".snf": the names that the sniffer gives to the data IDs that it
// hears, and how their values are shown. The format is told in docs/formats/snf.md.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/bad_line.h"

namespace tarnlink {

inline constexpr int kMostSnifferRecords = 300;

// What of an answer's two data bytes an item of the sniffer shows.
enum SnifferType : std::int32_t {
  kSniffBit = 0,  // of the low byte
  kSniffSignedHigh = 1,
  kSniffUnsignedHigh = 2,
  kSniffSignedLow = 3,
  kSniffUnsignedWord = 4,
  kSniffSignedWord = 5,
};

struct SnifferRecord {
  std::string Name;
  std::int32_t ID = 0;
  std::int32_t Representation = 0;  // 0 decimal, 1 hexadecimal, 2 binary, 3 octal
  std::int32_t Type = kSniffSignedWord;

  bool operator==(const SnifferRecord&) const = default;
};

struct SnifferFile {
  std::string Revision = "Unknown revision";
  std::vector<SnifferRecord> records;
  std::optional<BadLine> failure;  // the first line that could not be read; all others have been
};

SnifferFile ReadSnifferFile(std::string_view text);

// The first record of that ID; null without one.
const SnifferRecord* FindRecord(const SnifferFile& file, std::int64_t id);

}  // namespace tarnlink
