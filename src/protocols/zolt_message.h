// ZOLT frames from plain values and back, for the service tools: no Location and no form behind
// them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnlink {

// A frame taken apart.
struct ZoltMessage {
  std::uint8_t Ack = 0;  // a kind of zolt_frame.h, such as kReadAcknowledge
  std::uint8_t Class = 0;
  std::int32_t Id = 0;
  std::uint8_t DataHi = 0;
  std::uint8_t DataLo = 0;

  bool operator==(const ZoltMessage&) const = default;
};

// A class 7 frame taken apart, with the address that it is about.
struct ZoltAddressMessage {
  std::uint8_t Ack = 0;
  std::uint8_t Class = 0;
  std::int32_t Address = 0;
  std::uint8_t DataHi = 0;
  std::uint8_t DataLo = 0;

  bool operator==(const ZoltAddressMessage&) const = default;
};

// A frame of 16 bytes. Of `slave` the first character goes out, "0" if there is none; of `id` the
// last four digits.
std::string BuildZoltMessage(std::uint8_t type, std::string_view slave, std::int32_t id,
                             std::uint8_t data_hi, std::uint8_t data_lo);

// All zeros for a frame with a bad CRC, that is Ack 0, which no answer has. Digits that are none
// read as `Val` reads them. Start, end and what follows are not looked at.
ZoltMessage ParseZoltMessage(std::string_view frame);

// Frames of class 7, where the answer to a read does not say the address: it is the one asked last.
// Each tool has an object of its own, since only one of them is on the line.
class ZoltMessages {
 public:
  // Type 0x87 writes `value` to `address`; a page that has no alias makes a frame with ID and data
  // 0, without a word to the user. Any other type asks for two bytes from `address`, of which the
  // low 16 bits go out.
  std::string BuildZoltAddressMessage(std::uint8_t type, std::string_view slave,
                                      std::int32_t address, std::uint8_t value);

  // An answer to a read gives `LastAddress` and both data bytes, one to a write its address and the
  // low data byte. Any other ID, and a bad CRC, give address and data 0.
  ZoltAddressMessage ParseZoltAddressMessage(std::string_view frame) const;

  // The address of the frame that was built last, 0 before the first.
  std::int32_t LastAddress() const { return last_address_; }

 private:
  std::int32_t last_address_ = 0;
};

}  // namespace tarnlink
