#include "simulator/tarnlink_frames.h"

#include <algorithm>

#include "simulator/bytes.h"

namespace boiler {
namespace {

constexpr std::size_t kAddressAt = 2;
constexpr std::size_t kAddressDigits = 4;
constexpr std::size_t kDataAt = kAddressAt + kAddressDigits;
constexpr std::size_t kReadLength = 9;

bool AllDigits(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char one) {
    return (one >= '0' && one <= '9') || (one >= 'A' && one <= 'F');
  });
}

std::string ShortHex(unsigned value) { return HexDigits(value, value < 0x10 ? 1 : 2); }

TarnlinkParsed Refused(std::string reason) { return {std::nullopt, std::move(reason)}; }

TarnlinkParsed WrongSum(std::string_view given, const std::string& right) {
  return Refused("the sum is " + std::string(given) + " and should be " + right);
}

TarnlinkParsed ParseRead(TarnlinkRequest request, std::string_view frame) {
  if (frame.size() != kReadLength) return Refused("a read has 9 bytes");
  const std::string_view sum = frame.substr(kDataAt, 2);
  const std::string right = HexDigits(TarnlinkSum(frame.substr(1, kDataAt - 1)), 2);
  if (sum != right) return WrongSum(sum, right);
  return {std::move(request), ""};
}

// 3 or 4 characters hold two digits of data, 5 or 6 hold four; the sum has what is left.
TarnlinkParsed ParseWrite(TarnlinkRequest request, std::string_view frame) {
  const std::string_view rest = frame.substr(kDataAt, frame.size() - kDataAt - 1);
  if (rest.size() < 3 || rest.size() > 6) {
    return Refused("a write has 2 or 4 digits of data and 1 or 2 of sum");
  }
  const std::size_t data_digits = rest.size() <= 4 ? 2 : 4;
  const std::string_view sum = rest.substr(data_digits);
  const std::string right = ShortHex(TarnlinkSum(frame.substr(1, kDataAt - 1 + data_digits)));
  if (sum != right) return WrongSum(sum, right);
  request.data = rest.substr(0, data_digits);
  return {std::move(request), ""};
}

}  // namespace

TarnlinkParsed ParseTarnlinkRequest(std::string_view frame) {
  if (frame.size() < kDataAt + 1 || frame.front() != kTarnlinkStart ||
      frame.back() != kTarnlinkEnd) {
    return Refused("no whole frame");
  }
  const char command = frame[1];
  const bool read = command == kReadByte || command == kReadWord;
  if (!read && command != kWrite && command != kWriteWord) return Refused("unknown command");
  const std::string_view digits = frame.substr(kAddressAt, frame.size() - kAddressAt - 1);
  if (!AllDigits(digits)) return Refused("a character that is no upper-case hexadecimal digit");
  TarnlinkRequest request;
  request.command = command;
  request.address_digits = frame.substr(kAddressAt, kAddressDigits);
  request.address = *ParseAddress(request.address_digits);
  return read ? ParseRead(std::move(request), frame) : ParseWrite(std::move(request), frame);
}

std::string BuildTarnlinkRead(char command, std::string_view address_digits) {
  return BuildTarnlinkAnswer(command, address_digits, "");
}

std::string BuildTarnlinkAnswer(char command, std::string_view address_digits,
                                std::string_view data) {
  std::string frame(1, kTarnlinkStart);
  frame += command;
  frame += address_digits;
  frame += data;
  frame += HexDigits(TarnlinkSum(std::string_view(frame).substr(1)), 2);
  frame += kTarnlinkEnd;
  return frame;
}

std::uint8_t TarnlinkSum(std::string_view bytes) {
  unsigned sum = 0;
  for (const char byte : bytes) sum += static_cast<unsigned char>(byte);
  return static_cast<std::uint8_t>(sum);
}

bool TarnlinkSumHolds(std::string_view frame) {
  constexpr std::size_t kSumAndEnd = 3;
  if (frame.size() <= kSumAndEnd) return false;
  const std::size_t sum_at = frame.size() - kSumAndEnd;
  return frame.substr(sum_at, 2) == HexDigits(TarnlinkSum(frame.substr(1, sum_at - 1)), 2);
}

}  // namespace boiler
