#include "protocols/frame_bytes.h"

#include "common/run_time_error.h"
#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/fuzz_input.h"

namespace tarnlink {
namespace {

constexpr std::size_t kMostDigits = 8;

std::uint32_t NumberOf(std::string_view text) {
  std::uint32_t number = 0;
  for (const char digit : text.substr(0, kMostDigits)) {
    const std::size_t value = std::string_view("0123456789abcdef")
                                  .find(digit >= 'A' && digit <= 'F' ? digit - 'A' + 'a' : digit);
    if (value == std::string_view::npos) break;
    number = number * 16 + static_cast<std::uint32_t>(value);
  }
  return number;
}

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  const std::size_t offset = input.Word();
  const auto number =
      static_cast<std::int32_t>(input.Word() | static_cast<std::uint32_t>(input.Word()) << 16);
  const auto count = static_cast<std::size_t>(input.Below(kMostDigits + 1));
  const std::string_view text = input.Rest();

  bool is_there = true;
  try {
    Claim(ByteAt(text, offset) == static_cast<std::uint8_t>(text.at(offset)), "it is that byte");
  } catch (const RunTimeError& error) {
    is_there = false;
    Claim(error.code() == kSubscript, "a byte that is not there is error 9");
  }
  Claim(is_there == (offset < text.size()), "every byte of the frame can be had, and no other");

  Claim(HexNumber(text) == NumberOf(text), "the digits at the beginning are the number");
  const std::string digits = HexDigits(number, count);
  Claim(digits.size() == count, "just so many digits");
  Claim(HexNumber(HexDigits(number, kMostDigits)) == static_cast<std::uint32_t>(number),
        "all digits are the whole number");
  Claim(HexDigits(number, kMostDigits).ends_with(digits), "the last digits of it");
  std::string appended = "x";
  AppendHexDigits(appended, number, count);
  Claim(appended == "x" + digits, "nothing before them changes");
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {"\1\0\xFF\xFF\xFF\xFF\x08"s + "12aBcDeF99", "\0\0\0\0\0\0\0"s, "\3\0\1\2\3\4\4 12"s,
          "\0\0\0\0\0\0\1-1"s, "\0\0\0\0\0\0\1"s + "0x1F"};
}

}  // namespace

FuzzTarget FrameBytesTarget() { return {"frame_bytes", Run, Seeds}; }

}  // namespace tarnlink
