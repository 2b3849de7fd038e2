// ZOLT frames: bytes to request, answer to bytes. Pure functions.
//
// Every frame has 16 bytes: 0D, type, slave (1 character), data ID (4 digits), data (4 digits, high
// byte first), CRC-16/XMODEM of the ten bytes from the type on (4 digits), 0A.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace boiler {

constexpr char kZoltStart = '\r';
constexpr char kZoltEnd = '\n';
constexpr std::size_t kZoltLength = 16;
constexpr std::string_view kZoltSlaves = "0123456789ABCDEF";

// Class 7 is the memory: a read carries the address as data, a write names the address's high byte
// by an alias.
constexpr int kZoltMemoryClass = 7;
constexpr std::uint16_t kZoltMemoryRead = 0xFFAB;

// The high half of an answer's type byte.
enum class ZoltKind {
  kReadDone = 1,
  kCorrupted = 2,
  kOutOfRange = 4,
  kUnknownId = 6,
  kWriteDone = 9,
};

struct ZoltData {
  std::uint16_t id = 0;
  std::uint8_t high = 0;
  std::uint8_t low = 0;

  std::uint16_t Word() const { return static_cast<std::uint16_t>(high << 8 | low); }
};

struct ZoltRequest {
  int data_class = 0;
  bool write = false;
  char slave = 0;
  std::optional<ZoltData> data;  // none where something else stands than digits
};

// One of the first two is set.
struct ZoltParsed {
  std::optional<ZoltRequest> request;
  std::string refusal;     // why it is none
  bool corrupted = false;  // it would be one, but for its check
};

// Reads a frame of 16 bytes. Digits must be upper case; a blank may stand for the first digit of a
// data byte. The slave may be any character.
ZoltParsed ParseZoltRequest(std::string_view frame);

// A frame with its check. `data` may have any length.
std::string BuildZoltFrame(char type, char slave, std::string_view id_digits,
                           std::string_view data);

// The frame with another kind in its type byte and a check to fit; all else is as it was.
std::string ZoltFrameAs(int kind, std::string_view frame);

// Whether the four digits ahead of the last byte, or those in the place of a frame of 16 bytes, are
// the check of everything between the first byte and them.
bool ZoltCheckHolds(std::string_view frame);

// The high byte of the addresses that a write of this data ID goes to.
std::optional<std::uint8_t> ZoltPage(std::uint16_t alias);

}  // namespace boiler
