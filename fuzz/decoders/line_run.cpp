#include "fuzz/decoders/line_run.h"

#include "protocols/frame_bytes.h"

namespace tarnlink {
namespace {

constexpr std::size_t kLongestText = 80;
// Behind the last Location a block of registers may reach.
constexpr int kReached = LineRun::kMostLocations + LineRun::kMostRegisters;

Location LocationOf(FuzzInput& input, int protocol) {
  Location location;
  const std::uint8_t kind = input.Byte();
  location.Specification = kind & 1;
  location.StorageType = (kind >> 1) % 5;
  location.Representation = (kind >> 4) & 3;
  location.SelectByte = static_cast<std::uint8_t>((kind >> 6) % 3);
  location.Address = HexDigits(input.Word(), 4);
  const std::uint8_t flags = input.Byte();
  location.ScanFlags = flags & 3;
  location.BitAddress = (flags >> 2) & 0x1F;
  location.RegisterFollower = (flags & 0x80) != 0;
  if (protocol == kModbusProtocol) {
    location.LocSlaveAddress = "1";
    location.FunctionCode = (kind & 1) != 0 ? "&H03" : "&H04";
    location.NumReg = static_cast<std::int16_t>(input.Below(LineRun::kMostRegisters + 1));
  } else {
    location.Class = static_cast<std::uint8_t>(input.Below(8));
  }
  return location;
}

}  // namespace

LineRun::LineRun(FuzzInput& input, int protocol) {
  fields_.MaxId = 1 + input.Below(kMostLocations);
  fields_.LocationCount = fields_.MaxId;
  fields_.CommRunning = true;
  for (int i = 1; i <= fields_.MaxId; ++i) table_[i] = LocationOf(input, protocol);
}

void LineRun::ShowValue(int index, const std::string& text) {
  Claim(index >= 0 && index <= kReached, "a value is one of a Location");
  ClaimOfText(text);
  shown.push_back(index);
  texts.push_back(text);
}

void LineRun::ClaimOfText(const std::string& text) {
  Claim(text.size() <= kLongestText, "a text is short");
  Claim(text.find('\0') == std::string::npos, "a text has no zero byte");
}

}  // namespace tarnlink
