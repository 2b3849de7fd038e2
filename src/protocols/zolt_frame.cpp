#include "protocols/zolt_frame.h"

#include <algorithm>
#include <array>

#include "protocols/frame_bytes.h"
#include "protocols/zolt_crc.h"

namespace tarnlink::zolt_frame {
namespace {

struct PageAlias {
  std::string_view page;
  std::string_view alias;
};

constexpr std::array<PageAlias, 30> kWriteAliases = {{
    {"FB", "FFA4"}, {"FC", "FFC2"}, {"FD", "FFCD"}, {"FE", "FF98"}, {"E0", "FFF1"}, {"F1", "FF32"},
    {"F2", "FF0E"}, {"F3", "FF01"}, {"F4", "FCFD"}, {"F5", "FCF2"}, {"F6", "FCCE"}, {"F7", "FCC1"},
    {"F8", "FCA8"}, {"80", "FFFE"}, {"81", "FF3D"}, {"82", "FCA7"}, {"83", "FC9B"}, {"D0", "FF97"},
    {"D1", "FF68"}, {"D2", "FF67"}, {"D3", "FF5B"}, {"D4", "FF54"}, {"D5", "FC94"}, {"D6", "FC6B"},
    {"D7", "FC64"}, {"D8", "FC58"}, {"90", "FC57"}, {"91", "FC3E"}, {"92", "FC31"}, {"93", "FC0D"},
}};

}  // namespace

std::string FinishFrame(std::string_view body) {
  std::string frame;
  frame.reserve(sizeof(kStart) + body.size() + kCrc.length + sizeof(kEnd));
  frame += kStart;
  frame += body;
  AppendHexDigits(frame, Calc_Crc(body), kCrc.length);
  frame += kEnd;
  return frame;
}

std::string Request(std::uint8_t type, std::string_view slave, std::string_view id,
                    std::string_view data) {
  std::string body(1, static_cast<char>(type));
  body.append(slave).append(id).append(data);
  return FinishFrame(body);
}

bool IsGood(std::string_view raw) {
  const auto crc = HexDigits(Calc_Crc(Text(raw, kBody)), kCrc.length);
  return Text(raw, kCrc) == crc;
}

std::string WithUpperCheck(std::string_view raw) {
  std::string frame(raw);
  const std::size_t end = std::min(frame.size(), kCrc.offset + kCrc.length);
  for (std::size_t at = kCrc.offset; at < end; ++at) {
    if (frame[at] >= 'a' && frame[at] <= 'f') frame[at] -= 'a' - 'A';
  }
  return frame;
}

bool IsSlave(std::string_view character) {
  constexpr std::string_view kCharacters = "0123456789ABCDEF";
  return character.size() == 1 && kCharacters.find(character) != std::string_view::npos;
}

std::uint8_t TypeOf(std::string_view frame) { return ByteAt(frame, kTypeOffset); }

std::string_view Text(std::string_view frame, Field field) {
  return frame.substr(std::min(field.offset, frame.size()), field.length);
}

std::int32_t Number(std::string_view frame, Field field) {
  return static_cast<std::int32_t>(HexNumber(Text(frame, field)));
}

std::string_view WriteAlias(std::string_view page) {
  for (const PageAlias& entry : kWriteAliases) {
    if (entry.page == page) return entry.alias;
  }
  return {};
}

}  // namespace tarnlink::zolt_frame
