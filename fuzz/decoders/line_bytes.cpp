#include "fuzz/decoders/line_bytes.h"

#include <algorithm>

#include "protocols/frame_bytes.h"

namespace tarnlink {
namespace {

constexpr std::size_t kBody = 10;
constexpr std::size_t kCrcAt = 11;
constexpr std::size_t kCrcDigits = 4;

int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

}  // namespace

std::uint16_t BitwiseXmodem(std::string_view bytes) {
  unsigned crc = 0;
  for (const char byte : bytes) {
    crc ^= static_cast<unsigned>(static_cast<unsigned char>(byte)) << 8;
    for (int bit = 0; bit < 8; ++bit) crc = (crc << 1) ^ ((crc & 0x8000) != 0 ? 0x1021U : 0U);
    crc &= 0xFFFF;
  }
  return static_cast<std::uint16_t>(crc);
}

std::uint16_t BitwiseModbus(std::string_view bytes) {
  unsigned crc = 0xFFFF;
  for (const char byte : bytes) {
    crc ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xA001U : 0U);
  }
  return static_cast<std::uint16_t>(crc);
}

std::string SoundZolt(std::string_view body) {
  std::string frame = "\r";
  frame += body;
  AppendHexDigits(frame, BitwiseXmodem(body.substr(0, kBody)), kCrcDigits);
  frame += '\n';
  return frame;
}

bool IsSoundZolt(std::string_view frame) {
  if (frame.size() < kCrcAt + kCrcDigits) return false;
  int check = 0;
  for (std::size_t i = 0; i < kCrcDigits; ++i) {
    const int digit = DigitValue(frame[kCrcAt + i]);
    if (digit < 0) return false;
    check = check * 16 + digit;
  }
  return check == BitwiseXmodem(frame.substr(1, kBody));
}

std::string ZoltBody(FuzzInput& input) {
  std::string body(1, static_cast<char>(input.Byte()));
  if (input.Coin()) {
    body += "0123456789ABCDEF"[input.Below(16)];
    AppendHexDigits(body, input.Word(), 4);
    AppendHexDigits(body, input.Word(), 4);
  } else {
    while (body.size() < kBody) body += static_cast<char>(input.Byte());
  }
  return body;
}

std::string SoundModbus(std::string bytes) {
  const std::uint16_t crc = BitwiseModbus(bytes);
  bytes += static_cast<char>(crc & 0xFF);
  bytes += static_cast<char>(crc >> 8);
  return bytes;
}

std::string OnTheLine(FuzzInput& input, std::string frame) {
  switch (input.Below(8)) {
    case 0:
      if (!frame.empty()) {
        const std::size_t at = input.Byte() % frame.size();
        frame[at] = static_cast<char>(frame[at] ^ (1 << input.Below(8)));
      }
      return frame;
    case 1:
      return frame.substr(0, input.Byte() % (frame.size() + 1));
    case 2:
      return frame + frame;
    case 3:
      return std::string(input.ShortText()) + frame;
    case 4:
      return frame.append(input.ShortText());
    case 5:
      return std::string(input.ShortText());
    default:
      return frame;
  }
}

}  // namespace tarnlink
