// Frames of the Modbus master: bytes with a CRC behind them. No port and no clock. Texts of
// hexadecimal digits are read by the rules of `HexNumber`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tarnlink {

// CRC-16/MODBUS of the whole text.
std::uint16_t Crc(std::string_view text);

// The same as the two characters that end a frame, low byte first.
std::string Calc_Crc_Modbus2(std::string_view text);

namespace modbus_frame {

inline constexpr std::uint8_t kReadHoldingRegisters = 3;
inline constexpr std::uint8_t kReadInputRegisters = 4;
inline constexpr std::uint8_t kWriteRegister = 6;
inline constexpr std::uint8_t kWriteRegisters = 16;
inline constexpr std::uint8_t kException = 128;  // added to the function that a slave refuses
inline constexpr int kShortestResponse = 5;

// The byte that a text of hexadecimal digits means. A number beyond a byte gives 0xFF, an address
// that no slave has; 0 would speak to all of them.
std::uint8_t SlaveByte(std::string_view text);

// Four hexadecimal digits as two bytes, high first. Each pair is read by itself, so "291" gives
// 0x29 0x01; digits behind the fourth do not count.
std::string RegisterBytes(std::string_view digits);

// Slave, function and the two bytes of the register `address`: what every request begins with.
std::string Begin(std::string_view slave, std::uint8_t function, std::string_view address);

// `frame` with its CRC.
std::string FinishFrame(std::string frame);

// The request for `nreg` registers. `held` are bytes of a continuous write, which stand between the
// register and the count. A count beyond a byte goes out as 0 or 255, which slaves refuse.
std::string ReadRequest(std::string_view slave, std::uint8_t function, std::string_view address,
                        int nreg, std::string_view held = {});

// The request that writes one register. `select_byte` is a Location's: the value goes into the high
// or the low byte and the other byte is 0, or it fills both. Any other selection adds no value.
std::string WriteOneRequest(std::string_view slave, std::string_view address,
                            std::string_view value, std::uint8_t select_byte);

// The request that writes several registers from `address` on: of each value the last four digits.
std::string WriteSeveralRequest(std::string_view slave, std::string_view address,
                                std::span<const std::string> values);

// The length of the response with this function code; exceptions and functions that are not known
// are of the shortest.
int ExpectedLength(std::uint8_t function, int nreg);

// Whether the last two bytes are the CRC of all that the expected length has in front of its CRC.
// Bytes between the two do not count, so that a response may be too long.
bool IsGood(std::string_view raw, std::uint8_t function, int nreg);

constexpr bool IsRead(std::uint8_t function) {
  return function == kReadHoldingRegisters || function == kReadInputRegisters;
}
constexpr bool IsWrite(std::uint8_t function) {
  return function == kWriteRegister || function == kWriteRegisters;
}
constexpr bool IsException(std::uint8_t function) { return function > kException; }

// Parts of a response. One that ends before them throws RunTimeError 9.
std::uint8_t FunctionOf(std::string_view raw);
std::uint8_t ExceptionCode(std::string_view raw);

struct RegisterValue {
  std::uint8_t high = 0;
  std::uint8_t low = 0;
};

// Register `index` of a read response, by position; `index` counts from 0.
RegisterValue RegisterAt(std::string_view raw, std::size_t index);

}  // namespace modbus_frame

}  // namespace tarnlink
