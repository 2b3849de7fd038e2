// Frames of the TarnLink protocol: ASCII hexadecimal fields between two control bytes, with a sum.
// Bytes only; no port and no clock.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnlink::tarnlink_frame {

inline constexpr char kStart = 0x04;
inline constexpr char kEnd = 0x03;
inline constexpr char kReadWord = 0x01;
inline constexpr char kWriteWord = 0x02;
inline constexpr char kReadByte = 0x05;
inline constexpr char kWriteByte = 0x06;

// Start, command, four address characters, data, two checksum characters, end.
inline constexpr int kByteResponseLength = 1 + 1 + 4 + 2 + 2 + 1;
inline constexpr int kWordResponseLength = 1 + 1 + 4 + 4 + 2 + 1;

// The read request of `address`, four characters that go out as they stand.
std::string ReadRequest(char command, std::string_view address);

// The write request; `value` is hexadecimal text, right-aligned in blanks to two characters. Its
// checksum is not padded, so a sum below 0x10 makes the frame one byte shorter than a read's.
std::string WriteRequest(char command, std::string_view address, std::string_view value);

// The data digits of a response of `length` bytes, the length that was waited for.
std::string_view ResponseDigits(std::string_view response, int length);

}  // namespace tarnlink::tarnlink_frame

namespace tarnlink {

// The sum of the bytes from the second to the last, modulo 256.
std::int16_t calc_checksum(std::string_view message);

}  // namespace tarnlink
