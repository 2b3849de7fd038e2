#include "tools/answer_frames.h"

#include <utility>

#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {
namespace {

constexpr std::size_t kMostBytes = 1024;

struct Heard {
  std::vector<std::string> answers;
  std::vector<std::string> requests;

  bool operator==(const Heard&) const = default;
};

class Listener {
 public:
  Listener() {
    frames_.HeardRequest = [this](std::string_view frame) { heard_.requests.emplace_back(frame); };
  }

  void Take(std::string_view bytes) {
    for (auto kind = frames_.Take(bytes); kind != AnswerKind::kNone; kind = frames_.Take({})) {
      const std::string& frame = frames_.frame();
      Claim(frame.size() == zolt_frame::kLength, "an answer has its length");
      Claim((kind == AnswerKind::kGood) == IsSoundZolt(frame), "it is good if its check holds");
      Claim(kind != AnswerKind::kGood || zolt_frame::IsGood(frame), "then in capital digits");
      Claim(kind != AnswerKind::kCorrupt || !frames_.IsDoubtful(), "a corrupt one is whole");
      heard_.answers.push_back(frame);
    }
    Claim(frames_.Missing() > 0 && frames_.Missing() <= zolt_frame::kLength,
          "behind all answers a part of one is missing");
  }

  Heard heard() && { return std::move(heard_); }

 private:
  AnswerFrames frames_;
  Heard heard_;
};

// The line: sound frames and noise, one behind the other.
std::string LineOf(FuzzInput& input) {
  std::string line;
  for (int parts = input.Below(16); parts > 0 && line.size() < kMostBytes; --parts) {
    line += input.Coin() ? OnTheLine(input, SoundZolt(ZoltBody(input)))
                         : std::string(input.ShortText());
  }
  return line;
}

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  const std::string line = LineOf(input);
  Listener whole;
  whole.Take(line);
  Listener pieces;
  for (std::string_view rest = line; !rest.empty();) {
    // Without more of the input byte by byte.
    const std::size_t size = std::min<std::size_t>(1 + input.Byte() % 24, rest.size());
    pieces.Take(std::string(rest.substr(0, size)));
    rest.remove_prefix(size);
  }
  const Heard heard = std::move(whole).heard();
  Claim(heard == std::move(pieces).heard(), "pieces at any borders are the same as the whole");
  const std::size_t count = heard.answers.size() + heard.requests.size();
  Claim(count == line.size() / zolt_frame::kLength, "all that comes is taken");
  for (const std::string& frame : heard.answers) {
    const std::string_view slave = zolt_frame::Text(frame, zolt_frame::kSlave);
    Claim(IsFrom(frame, "0") || slave != "0", "an answer of the slave is ours");
    Claim(!IsFrom(frame, "0") || slave == "0" || !zolt_frame::IsSlave(slave),
          "the answer of another slave is not");
  }
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  const std::string frame = SoundZolt(
      "\x15"
      "0056D3C00");
  return {"\1\0\x10"s + frame,
          "\2\0\x20"s + frame +
              SoundZolt("\x05"
                        "0056D3C00") +
              "\0\x10"s + frame,
          "\1\1\x15\1\5\x6D\5\x3C\0\7"s,
          "\2\1\x85\1\5\x6D\5\x3C\0\0\5\1\1\x95\1\5\x6D\5\x3C\0\7\5\3\4"s};
}

}  // namespace

FuzzTarget AnswerFramesTarget() { return {"answer_frames", Run, Seeds}; }

}  // namespace tarnlink
