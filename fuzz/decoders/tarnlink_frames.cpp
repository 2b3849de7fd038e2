#include "protocols/tarnlink_frame.h"

#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/fuzz_input.h"
#include "monitor/location_table.h"
#include "protocols/frame_bytes.h"

namespace tarnlink {
namespace {

int SumOf(std::string_view message) {
  int sum = 0;
  for (const char byte : message.substr(std::min<std::size_t>(1, message.size()))) {
    sum += static_cast<unsigned char>(byte);
  }
  return sum % 256;
}

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  const char command = static_cast<char>(input.Byte());
  const bool is_word = input.Coin();
  const int length =
      is_word ? tarnlink_frame::kWordResponseLength : tarnlink_frame::kByteResponseLength;
  const std::string address = HexDigits(input.Word(), 4);
  const std::string digits = HexDigits(input.Word(), is_word ? 4 : 2);
  const std::int32_t representation = static_cast<std::int8_t>(input.Byte());
  const std::string_view raw = input.Rest();

  const std::string request = tarnlink_frame::ReadRequest(command, address);
  Claim(request.size() == 9 && request.back() == tarnlink_frame::kEnd, "a read has nine bytes");
  const std::string counted = request.substr(0, request.size() - 3);
  Claim(HexNumber(request.substr(counted.size(), 2)) == static_cast<unsigned>(SumOf(counted)),
        "its sum is that of its bytes");
  const std::string write = tarnlink_frame::WriteRequest(command, address, raw.substr(0, 6));
  Claim(write.back() == tarnlink_frame::kEnd, "a write has an end");
  Claim(calc_checksum(raw) == SumOf(raw), "the sum is that of all but the first byte");

  std::string answer = {tarnlink_frame::kStart, command};
  answer += address + digits + "00" + tarnlink_frame::kEnd;
  Claim(static_cast<int>(answer.size()) == length, "an answer has its length");
  Claim(tarnlink_frame::ResponseDigits(answer, length) == digits, "its digits come back");
  const std::string_view found = tarnlink_frame::ResponseDigits(raw, length);
  Claim(found.size() <= digits.size(), "any bytes have no more digits");
  const std::string text = TarnlinkValueText(found, representation);
  Claim(text.size() <= 16, "a value is at most sixteen binary digits");
  Claim(text.find('\0') == std::string::npos, "a text has no zero byte");
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {"\1\1\xA0\1\x2A\0\0"s + "\4\1" + "01A0002A9F\3",
          "\5\0\xA0\1\x2A\0\2"s + "\4\5" + "01A02A9F\3", "\5\0\0\0\0\0\xFF"s};
}

}  // namespace

FuzzTarget TarnlinkFramesTarget() { return {"tarnlink_frames", Run, Seeds}; }

}  // namespace tarnlink
