#include "monitor/write_texts.h"

#include "common/numbers.h"
#include "common/text.h"
#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/location_bytes.h"
#include "fuzz/readers/readers.h"

namespace tarnlink {
namespace {

constexpr std::string_view kHexadecimalDigits = "0123456789ABCDEF";

bool AreDigits(std::string_view text) {
  return text.find_first_not_of(kHexadecimalDigits) == std::string_view::npos;
}

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const Location location = LocationOf(bytes);
  const int format = bytes.Below(5);
  const std::string text = DecodeText(bytes.Rest());
  const WriteText write = MakeWriteText(location, format, text);
  Claim(write.value.size() == 2 || write.value.size() == 4, "a value is as long as its field");
  Claim(write.SecondByteValue.size() == (write.SendSecondByte ? 2U : 0U), "a byte is two digits");
  Claim(!write.SendSecondByte || write.value.starts_with(write.SecondByteValue),
        "the second byte is the high one of the word");
  Claim(format == kHexadecimal || AreDigits(write.value), "a number goes out in digits");
  const std::string bit = MakeBitText(location, bytes.Coin());
  Claim(bit.size() >= 2 && AreDigits(bit), "a bit is written with those around it");
  const bool has_bit = location.BitAddress < 16;
  const std::int32_t set = ValInt("&H" + MakeBitText(location, true) + "&", 0, 0xFFFF);
  const std::int32_t cleared = ValInt("&H" + MakeBitText(location, false) + "&", 0, 0xFFFF);
  Claim((set ^ cleared) == (has_bit ? 1 << location.BitAddress : 0), "only the bit differs");
  const std::string word = MakeRegisterText(text);
  Claim(word.size() == 4 && AreDigits(word), "a register is four digits");
}

std::vector<std::string> Seeds() {
  const std::string memory("\0\4\1\2\3\5\1\0", 8);
  return {memory + "-1", memory + "65536", std::string("\1\3\2\2\0\0\0\1", 8) + "1A2b\xC3\xA9",
          std::string("\1\1\1\1\x0F\xFF\xFF\2", 8) + "1E30"};
}

}  // namespace

FuzzTarget WriteTextsTarget() { return {"write_texts", Run, Seeds}; }

}  // namespace tarnlink
