#include "tools/sniffer_frames.h"

#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"
#include "protocols/zolt_frame.h"
#include "tools/sniffer_text.h"

namespace tarnlink {
namespace {

constexpr std::size_t kMostBytes = 1024;

// What is found from here on, after so many bytes in all.
int TakeAll(SnifferFrames& frames, std::size_t bytes) {
  int found = 0;
  for (auto what = frames.Next(); what != SnifferFrames::Found::kNothing; what = frames.Next()) {
    if (what != SnifferFrames::Found::kFrame) continue;
    ++found;
    Claim(frames.frame().size() == zolt_frame::kLength && IsSoundZolt(frames.frame()),
          "no frame is found whose check fails");
    const SniffedFrame parts = TakeApart(frames.frame());
    Claim(parts.characters.size() == zolt_frame::kLength, "it is shown in as many characters");
    for (const char c : parts.characters) Claim(c >= ' ' && c <= '~', "in a line of its own");
    KindOfFrame(parts.type);
  }
  Claim(frames.Missing() > 0 && frames.Missing() <= zolt_frame::kLength,
        "a part of one is missing");
  Claim(frames.bad() <= frames.count(), "bad frames are frames");
  Claim(static_cast<std::size_t>(frames.count()) <= bytes, "there are no more than bytes");
  return found;
}

// Frames without a break between them are all found, wherever the pieces end.
void ClaimOfSoundLine(FuzzInput& input) {
  const int count = input.Below(8);
  std::string line;
  for (int i = 0; i < count; ++i) line += SoundZolt(ZoltBody(input));
  SnifferFrames frames;
  int found = 0;
  for (std::string_view rest = line; !rest.empty();) {
    const std::size_t size = std::min<std::size_t>(1 + input.Byte() % 24, rest.size());
    frames.Add(rest.substr(0, size));
    found += TakeAll(frames, line.size());
    rest.remove_prefix(size);
  }
  Claim(found == count && frames.bad() == 0, "every frame of a sound line is found");
}

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  ClaimOfSoundLine(input);
  SnifferFrames frames;
  std::size_t fed = 0;
  while (!input.AtEnd() && fed < kMostBytes) {
    const std::string piece = input.Coin() ? OnTheLine(input, SoundZolt(ZoltBody(input)))
                                           : std::string(input.ShortText());
    fed += piece.size();
    frames.Add(piece);
    if (input.Below(3) > 0) TakeAll(frames, fed);
    if (input.Byte() == 0xFF) frames.DropRest();
  }
  TakeAll(frames, fed);
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {"\2\x15\1\5\x6D\5\x3C\0\x15\1\5\x6D\5\x3C\0"s,
          "\0\0\x10"s +
              SoundZolt("\x15"
                        "0056D3C00") +
              "\1\0",
          "\0\0\x12"s + "xx" +
              SoundZolt("\x15"
                        "0056D3C00") +
              "\1\0\0\x10"s +
              SoundZolt("\x15"
                        "0056D3C00") +
              "\1\0"s,
          "\0\1\x15\1\5\x6D\5\x3C\0\0\7\3\1\0"s};
}

}  // namespace

FuzzTarget SnifferFramesTarget() { return {"sniffer_frames", Run, Seeds}; }

}  // namespace tarnlink
