#include <algorithm>

#include "common/run_time_error.h"
#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {
namespace {

void ClaimOfAnyBytes(std::string_view raw) {
  Claim(zolt_frame::IsGood(zolt_frame::WithUpperCheck(raw)) == IsSoundZolt(raw),
        "a frame is good if its check is that of its body");
  Claim(!zolt_frame::IsGood(raw) || IsSoundZolt(raw), "without capital digits none is good");
  const std::string upper = zolt_frame::WithUpperCheck(raw);
  Claim(upper.size() == raw.size(), "capital digits take no more room");
  for (const zolt_frame::Field field : {zolt_frame::kBody, zolt_frame::kSlave, zolt_frame::kId,
                                        zolt_frame::kData, zolt_frame::kCrc}) {
    const std::string_view text = zolt_frame::Text(raw, field);
    Claim(text.size() <= field.length, "a field is not longer than it is");
    Claim(raw.size() < field.offset + field.length || text.size() == field.length,
          "a whole frame has whole fields");
    const std::int32_t number = zolt_frame::Number(raw, field);
    Claim(field.length > 4 || (number >= 0 && number <= 0xFFFF), "four digits are two bytes");
  }
  bool has_type = true;
  try {
    zolt_frame::TypeOf(raw);
  } catch (const RunTimeError&) {
    has_type = false;
  }
  Claim(has_type == (raw.size() > zolt_frame::kTypeOffset), "a type is there or it is not");
  const std::string_view alias = zolt_frame::WriteAlias(raw.substr(0, 2));
  Claim(alias.empty() || alias.size() == zolt_frame::kId.length, "an alias is an ID");
  Claim(!zolt_frame::IsSlave(raw) || raw.size() == 1, "a slave is one character");
}

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  const std::string body = ZoltBody(input);
  const std::string sound = zolt_frame::FinishFrame(body);
  Claim(sound == SoundZolt(body), "a body becomes the same frame whoever makes it");
  Claim(sound.size() == zolt_frame::kLength && zolt_frame::IsGood(sound), "a whole frame is good");
  Claim(zolt_frame::Text(sound, zolt_frame::kBody) == body, "its body comes back");
  Claim(zolt_frame::TypeOf(sound) == static_cast<std::uint8_t>(body[0]), "and its type");
  Claim(zolt_frame::Request(zolt_frame::TypeOf(sound), body.substr(1, 1), body.substr(2, 4),
                            body.substr(6)) == sound,
        "of its parts it is made again");

  std::string damaged = sound;
  const std::size_t at = zolt_frame::kBody.offset + input.Byte() % zolt_frame::kBody.length;
  damaged[at] = static_cast<char>(damaged[at] ^ (1 << input.Below(8)));
  Claim(!zolt_frame::IsGood(damaged), "one wrong bit is seen");
  ClaimOfAnyBytes(OnTheLine(input, sound));
  ClaimOfAnyBytes(input.Rest());
}

std::vector<std::string> Seeds() {
  return {
      "\x10\x01\x05"
      "abcd",
      std::string(40, '0'),
      "\x07"
      "0FFAB8000"
      "\x05" +
          SoundZolt("\x17"
                    "0FFAB8000")};
}

}  // namespace

FuzzTarget ZoltFramesTarget() { return {"zolt_frames", Run, Seeds}; }

}  // namespace tarnlink
