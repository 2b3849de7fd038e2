#include "protocols/zolt_message.h"

#include <array>

#include "protocols/frame_bytes.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {
namespace {

constexpr std::int32_t kReadMemoryId = 0xFFAB;
constexpr std::int32_t kPageSize = 256;
constexpr char kDefaultSlave = '0';

struct PageId {
  std::int32_t page;
  std::int32_t id;
};

// The tools' aliases differ from those of the run (zolt_frame.cpp) on purpose, see 0xF3.
constexpr std::array<PageId, 17> kPageIds = {{
    {0xFB, 0xFFA4},
    {0xFC, 0xFFC2},
    {0xFD, 0xFFCD},
    {0xFE, 0xFF98},
    {0xE0, 0xFFF1},
    {0x80, 0xFFFE},
    {0x81, 0xFF3D},
    {0x82, 0xFCA7},
    {0x83, 0xFC9B},
    {0xF1, 0xFF32},
    {0xF2, 0xFF0E},
    {0xF3, 0x0F01},
    {0xF4, 0xFCFD},
    {0xF5, 0xFCF2},
    {0xF6, 0xFCCE},
    {0xF7, 0xFCC1},
    {0xF8, 0xFCA8},
}};

const PageId* FindPage(std::int32_t page) {
  for (const PageId& entry : kPageIds) {
    if (entry.page == page) return &entry;
  }
  return nullptr;
}

const PageId* FindId(std::int32_t id) {
  for (const PageId& entry : kPageIds) {
    if (entry.id == id) return &entry;
  }
  return nullptr;
}

std::uint8_t LowByte(std::int32_t number) { return static_cast<std::uint8_t>(number & 0xFF); }

}  // namespace

std::string BuildZoltMessage(std::uint8_t type, std::string_view slave, std::int32_t id,
                             std::uint8_t data_hi, std::uint8_t data_lo) {
  // Ten bytes, which a string holds without memory of its own.
  std::string body(1, static_cast<char>(type));
  body += slave.empty() ? kDefaultSlave : slave.front();
  AppendHexDigits(body, id, zolt_frame::kId.length);
  AppendHexDigits(body, data_hi, zolt_frame::kDataHigh.length);
  AppendHexDigits(body, data_lo, zolt_frame::kDataLow.length);
  return zolt_frame::FinishFrame(body);
}

ZoltMessage ParseZoltMessage(std::string_view frame) {
  if (!zolt_frame::IsGood(frame)) return {};
  const std::uint8_t type = zolt_frame::TypeOf(frame);
  ZoltMessage message;
  message.Ack = zolt_frame::KindOf(type);
  message.Class = zolt_frame::ClassOf(type);
  message.Id = zolt_frame::Number(frame, zolt_frame::kId);
  message.DataHi = LowByte(zolt_frame::Number(frame, zolt_frame::kDataHigh));
  message.DataLo = LowByte(zolt_frame::Number(frame, zolt_frame::kDataLow));
  return message;
}

std::string ZoltMessages::BuildZoltAddressMessage(std::uint8_t type, std::string_view slave,
                                                  std::int32_t address, std::uint8_t value) {
  last_address_ = address;
  const std::int32_t page = address / kPageSize;
  const std::uint8_t offset = LowByte(address);
  if (type != zolt_frame::kWriteMemory) {
    return BuildZoltMessage(type, slave, kReadMemoryId, LowByte(address >> 8), offset);
  }
  const PageId* alias = FindPage(page);
  if (alias == nullptr) return BuildZoltMessage(type, slave, 0, 0, 0);
  return BuildZoltMessage(type, slave, alias->id, offset, value);
}

ZoltAddressMessage ZoltMessages::ParseZoltAddressMessage(std::string_view frame) const {
  const ZoltMessage message = ParseZoltMessage(frame);
  if (message.Id == kReadMemoryId) {
    return {message.Ack, message.Class, last_address_, message.DataHi, message.DataLo};
  }
  const PageId* alias = FindId(message.Id);
  if (alias == nullptr) return {message.Ack, message.Class, 0, 0, 0};
  return {message.Ack, message.Class, alias->page * kPageSize + message.DataHi, 0, message.DataLo};
}

}  // namespace tarnlink
