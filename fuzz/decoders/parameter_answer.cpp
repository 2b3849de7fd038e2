#include "tools/parameter_answer.h"

#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"
#include "protocols/zolt_frame.h"
#include "tools/answer_frames.h"

namespace tarnlink {
namespace {

void ClaimOf(std::string_view answer, const ParameterRequest& request,
             const ZoltMessages& messages) {
  const ParameterVerdict verdict = JudgeAnswer(answer, request, messages);
  const bool is_sound = IsSoundZolt(answer);
  const bool is_about = IsAbout(answer, request, messages);
  Claim(is_sound || verdict.outcome == ParameterOutcome::kUnusable,
        "what is not sound is no answer");
  Claim(is_about || verdict.outcome == ParameterOutcome::kUnusable, "nor is one to something else");
  const ZoltMessage message = ParseZoltMessage(answer);
  if (verdict.outcome == ParameterOutcome::kVerified) {
    Claim(!request.is_write && message.Ack == zolt_frame::kReadAcknowledge,
          "only what was read back is verified");
    Claim(IsSameItem(ItemOf(answer, messages), request.item), "and only this item");
    Claim(message.DataLo == (request.item.Value & 0xFF), "and only with its value");
  }
  if (std::string_view(verdict.word) == "OK" && request.is_write) {
    Claim(message.Ack == zolt_frame::kWriteAcknowledge, "only an acknowledged write is written");
  }
}

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  const ParameterItem item{
      .Class = input.Below(kHighestParameterClass + 1), .ID = input.Word(), .Value = input.Word()};
  const bool is_write = input.Coin();
  ZoltMessages messages;
  const ParameterRequest request =
      MakeParameterRequest(item, is_write, input.ShortText(), messages);
  Claim(!request.frame.empty() || (is_write && !CanBeWritten(item)),
        "what can be written goes out");
  Claim(request.frame.empty() || IsSoundZolt(request.frame), "as a sound frame");

  // The slave's answer to just this, of any kind and with any data.
  if (!request.frame.empty()) {
    std::string body = request.frame.substr(1, 10);
    body[0] = static_cast<char>((body[0] & 0x07) | (input.Byte() & 0xF0));
    if (input.Coin()) body.replace(6, 4, ZoltBody(input).substr(6, 4));
    const std::string answer = SoundZolt(body);
    ClaimOf(answer, request, messages);
    ClaimOf(OnTheLine(input, answer), request, messages);
  }
  ClaimOf(SoundZolt(ZoltBody(input)), request, messages);
  ClaimOf(input.Rest(), request, messages);
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {"\5\x6D\5\x3C\0\1\1"s + "0\x90\0\7", "\5\x6D\5\x3C\0\0\1"s + "0\x10\0\7",
          "\7\x12\x80\x2A\0\0\1"s + "0\x10\0\7", "\7\x12\x80\x2A\0\1\1"s + "0\x90\0\7",
          "\7\x12\x10\x2A\0\1\1"s + "0\x60\0\7"};
}

}  // namespace

FuzzTarget ParameterAnswerTarget() { return {"parameter_answer", Run, Seeds}; }

}  // namespace tarnlink
