#include "protocols/modbus_frame.h"

#include <algorithm>
#include <utility>

#include "common/text.h"
#include "monitor/location_table.h"
#include "protocols/frame_bytes.h"

namespace tarnlink {

std::uint16_t Crc(std::string_view text) {
  constexpr unsigned kInitial = 0xFFFF;
  constexpr unsigned kPolynomial = 0xA001;
  unsigned crc = kInitial;
  for (const char c : text) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? kPolynomial : 0);
  }
  return static_cast<std::uint16_t>(crc);
}

std::string Calc_Crc_Modbus2(std::string_view text) {
  const std::uint16_t crc = Crc(text);
  return {static_cast<char>(crc & 0xFF), static_cast<char>(crc >> 8)};
}

namespace modbus_frame {
namespace {

constexpr std::size_t kCrcLength = 2;
constexpr std::size_t kFunctionOffset = 1;
constexpr std::size_t kExceptionCodeOffset = 2;
constexpr std::size_t kFirstRegisterOffset = 3;
constexpr int kAcknowledgeLength = 8;
constexpr int kRegisterLength = 2;
constexpr int kRegisterDigits = 4;

char ByteOf(int number) { return static_cast<char>(std::clamp(number, 0, 0xFF)); }

char DigitPair(std::string_view digits) { return static_cast<char>(HexNumber(digits)); }

}  // namespace

std::uint8_t SlaveByte(std::string_view text) {
  return static_cast<std::uint8_t>(std::min<std::uint32_t>(HexNumber(text), 0xFF));
}

std::string RegisterBytes(std::string_view digits) {
  const std::string_view low = digits.substr(std::min<std::size_t>(2, digits.size()), 2);
  return {DigitPair(digits.substr(0, 2)), DigitPair(low)};
}

std::string Begin(std::string_view slave, std::uint8_t function, std::string_view address) {
  std::string frame{static_cast<char>(SlaveByte(slave)), static_cast<char>(function)};
  frame += RegisterBytes(address);
  return frame;
}

std::string FinishFrame(std::string frame) {
  frame += Calc_Crc_Modbus2(frame);
  return frame;
}

std::string ReadRequest(std::string_view slave, std::uint8_t function, std::string_view address,
                        int nreg, std::string_view held) {
  std::string frame = Begin(slave, function, address);
  frame += held;
  frame += '\0';
  frame += ByteOf(nreg);
  return FinishFrame(std::move(frame));
}

std::string WriteOneRequest(std::string_view slave, std::string_view address,
                            std::string_view value, std::uint8_t select_byte) {
  std::string frame = Begin(slave, kWriteRegister, address);
  const char byte = DigitPair(Right(value, 2));
  if (select_byte == kMsb) frame += {byte, '\0'};
  if (select_byte == kLsb) frame += {'\0', byte};
  if (select_byte == kBoth) {
    const std::string word = Stuff(value, kRegisterDigits);
    frame += {DigitPair(Mid(word, 1, 2)), DigitPair(Right(word, 2))};
  }
  return FinishFrame(std::move(frame));
}

std::string WriteSeveralRequest(std::string_view slave, std::string_view address,
                                std::span<const std::string> values) {
  const int nreg = static_cast<int>(values.size());
  std::string frame = Begin(slave, kWriteRegisters, address);
  frame += {'\0', ByteOf(nreg), ByteOf(nreg * kRegisterLength)};
  for (const std::string& value : values) {
    frame += RegisterBytes(Right(Stuff(value, kRegisterDigits), kRegisterDigits));
  }
  return FinishFrame(std::move(frame));
}

int ExpectedLength(std::uint8_t function, int nreg) {
  if (IsRead(function)) return nreg * kRegisterLength + kShortestResponse;
  return IsWrite(function) ? kAcknowledgeLength : kShortestResponse;
}

bool IsGood(std::string_view raw, std::uint8_t function, int nreg) {
  const int counted = ExpectedLength(function, nreg) - static_cast<int>(kCrcLength);
  if (counted < 0 || raw.size() < kCrcLength) return false;
  return raw.substr(raw.size() - kCrcLength) ==
         Calc_Crc_Modbus2(raw.substr(0, static_cast<std::size_t>(counted)));
}

std::uint8_t FunctionOf(std::string_view raw) { return ByteAt(raw, kFunctionOffset); }

std::uint8_t ExceptionCode(std::string_view raw) { return ByteAt(raw, kExceptionCodeOffset); }

RegisterValue RegisterAt(std::string_view raw, std::size_t index) {
  const std::size_t offset = kFirstRegisterOffset + index * kRegisterLength;
  return {ByteAt(raw, offset), ByteAt(raw, offset + 1)};
}

}  // namespace modbus_frame

}  // namespace tarnlink
