#include "protocols/zolt_crc.h"

#include <vector>

#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"

namespace tarnlink {
namespace {

constexpr std::size_t kCounted = 10;
constexpr std::size_t kLongest = 512;  // the rule is the same for every further byte

void Run(std::string_view text) {
  text = text.substr(0, kLongest);
  std::string ten(text.substr(0, kCounted));
  ten.resize(kCounted);
  Claim(Calc_Crc(text) == BitwiseXmodem(ten), "a frame's check is the CRC of its ten characters");

  std::vector<std::uint8_t> bytes(text.begin(), text.end());
  std::uint16_t one_by_one = 0;
  for (const std::uint8_t byte : bytes) one_by_one = Calc_Crc_Byte(byte, one_by_one);
  Claim(CRC16(bytes) == one_by_one, "all at once is one by one");
  bytes.insert(bytes.end(), 2, 0);
  Claim(CRC16(bytes) == BitwiseXmodem(text), "with two zeros behind it is the CRC");
}

std::vector<std::string> Seeds() {
  return {"", "123456789",
          "\x01"
          "00AB1234",
          "0123456789ABCDEF"};
}

}  // namespace

FuzzTarget ZoltCrcTarget() { return {"zolt_crc", Run, Seeds}; }

}  // namespace tarnlink
