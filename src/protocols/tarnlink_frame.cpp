#include "protocols/tarnlink_frame.h"

#include "common/numbers.h"
#include "common/text.h"

namespace tarnlink {

std::int16_t calc_checksum(std::string_view message) {
  unsigned sum = 0;
  for (std::size_t i = 1; i < message.size(); ++i) sum += static_cast<unsigned char>(message[i]);
  return static_cast<std::int16_t>(sum % 256);
}

namespace tarnlink_frame {

namespace {

std::string Begin(char command, std::string_view address) {
  std::string frame{kStart, command};
  frame += address;
  return frame;
}

}  // namespace

std::string ReadRequest(char command, std::string_view address) {
  std::string frame = Begin(command, address);
  frame += Stuff(Hex(calc_checksum(frame)), 2);
  frame += kEnd;
  return frame;
}

std::string WriteRequest(char command, std::string_view address, std::string_view value) {
  std::string frame = Begin(command, address);
  frame += RightAlign(value, 2);
  frame += Hex(calc_checksum(frame));
  frame += kEnd;
  return frame;
}

std::string_view ResponseDigits(std::string_view response, int length) {
  constexpr std::size_t kDataAt = 6;
  if (response.size() <= kDataAt) return {};
  return response.substr(kDataAt, length == kByteResponseLength ? 2 : 4);
}

}  // namespace tarnlink_frame

}  // namespace tarnlink
