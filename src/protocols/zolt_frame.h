// The ZOLT frame: 16 bytes, most of them hexadecimal digits as characters, the same in both
// directions. Bytes only; no port and no clock.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarnlink::zolt_frame {

inline constexpr char kStart = 0x0D;
inline constexpr char kEnd = 0x0A;
inline constexpr int kLength = 16;

// Where the parts of a frame stand. Offsets count from 0.
struct Field {
  std::size_t offset;
  std::size_t length;
};
inline constexpr std::size_t kTypeOffset = 1;
inline constexpr Field kBody{1, 10};  // what the CRC counts: from the type byte to the data
inline constexpr Field kSlave{2, 1};
inline constexpr Field kId{3, 4};
inline constexpr Field kData{7, 4};
inline constexpr Field kDataHigh{7, 2};
inline constexpr Field kDataLow{9, 2};
inline constexpr Field kCrc{11, 4};
inline constexpr std::size_t kEndOffset = 15;

// The message type byte: the class in its low bits, the kind of message in its high nibble. Bit 3
// counts for neither.
inline constexpr std::uint8_t kClassMask = 0x07;
inline constexpr std::uint8_t kKindMask = 0xF0;
inline constexpr std::uint8_t kRead = 0x00;
inline constexpr std::uint8_t kReadAcknowledge = 0x10;
inline constexpr std::uint8_t kCorruptedMessage = 0x20;
inline constexpr std::uint8_t kOutsideRange = 0x40;
inline constexpr std::uint8_t kUnknownDataId = 0x60;
inline constexpr std::uint8_t kWrite = 0x80;
inline constexpr std::uint8_t kWriteAcknowledge = 0x90;

constexpr std::uint8_t ClassOf(std::uint8_t type) { return type & kClassMask; }
constexpr std::uint8_t KindOf(std::uint8_t type) { return type & kKindMask; }

// Class 7 is the controller's memory by byte address. A read carries the address as its data, a
// write the page's alias as its ID.
inline constexpr std::uint8_t kMemoryClass = 7;
inline constexpr std::uint8_t kReadMemory = kRead + kMemoryClass;
inline constexpr std::uint8_t kWriteMemory = kWrite + kMemoryClass;
inline constexpr std::string_view kReadMemoryId = "FFAB";

// The frame around `body`, which begins with the type byte: start, body, CRC, end. A body of
// another length than ten bytes goes out as it stands; the CRC counts its first ten.
std::string FinishFrame(std::string_view body);

// A whole frame of texts that go out as they stand, whatever their lengths.
std::string Request(std::uint8_t type, std::string_view slave, std::string_view id,
                    std::string_view data);

// Whether the CRC digits are those of the body, in upper case. Start, end and what stands behind
// them are not looked at.
bool IsGood(std::string_view raw);

// The frame with its CRC digits in upper case: `IsGood` of it reads them as a number.
std::string WithUpperCheck(std::string_view raw);

// Whether a slave can have this address: one of the characters 0 to 9 and A to F.
bool IsSlave(std::string_view character);

// The type byte; a frame without one throws RunTimeError 9.
std::uint8_t TypeOf(std::string_view frame);

// What stands in a field: less than its length, or nothing, where the frame ends before.
std::string_view Text(std::string_view frame, Field field);

// The same as an unsigned hexadecimal number, by the rules of `HexNumber`.
std::int32_t Number(std::string_view frame, Field field);

// The alias by which the run writes to a page of memory, given as two upper-case digits; empty for
// a page that may not be written. Parameters have a table of their own (zolt_message.cpp): it lacks
// the pages 0x90 to 0x93 and 0xD0 to 0xD8, and has another alias for 0xF3, on purpose.
std::string_view WriteAlias(std::string_view page);

}  // namespace tarnlink::zolt_frame
