// TarnLink frames: bytes to request, answer to bytes. Pure functions.
//
// Read:  04 command, address (4 digits), sum (2 digits), 03
// Write: 04 command, address (4 digits), data (2 or 4 digits), sum (1 or 2 digits, no zero in
// front), 03 Answer: 04 command, address as asked, data (2 or 4 digits), sum (2 digits), 03
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace boiler {

constexpr char kTarnlinkStart = 0x04;
constexpr char kTarnlinkEnd = 0x03;
constexpr char kReadByte = 0x05;
constexpr char kReadWord = 0x01;
constexpr char kWrite = 0x06;
constexpr char kWriteWord = 0x02;

// Start, command, 4 digits of address, up to 4 of data, up to 2 of sum, end.
constexpr std::size_t kTarnlinkLongest = 13;

struct TarnlinkRequest {
  char command = 0;
  std::string address_digits;
  std::uint16_t address = 0;
  std::string data;  // 2 or 4 digits of a write, empty for a read

  bool write() const { return !data.empty(); }
};

// One of the two is set.
struct TarnlinkParsed {
  std::optional<TarnlinkRequest> request;
  std::string refusal;  // why it is none
};

// Reads a frame from its start byte to its end byte. Digits must be upper case, and the sum must
// agree and be written as the command has it.
TarnlinkParsed ParseTarnlinkRequest(std::string_view frame);

// A read request, as somebody else on the line would send it.
std::string BuildTarnlinkRead(char command, std::string_view address_digits);

// An answer with its sum. `data` may have any length.
std::string BuildTarnlinkAnswer(char command, std::string_view address_digits,
                                std::string_view data);

// The bytes added up, cut to the low byte.
std::uint8_t TarnlinkSum(std::string_view bytes);

// Whether the two digits ahead of the last byte are the sum of everything between the first byte
// and them.
bool TarnlinkSumHolds(std::string_view frame);

}  // namespace boiler
