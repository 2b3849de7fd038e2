#include "tools/answer_frames.h"

#include "protocols/zolt_frame.h"

namespace tarnlink {

namespace {

bool IsWhole(std::string_view frame) {
  return frame.front() == zolt_frame::kStart && frame.back() == zolt_frame::kEnd;
}

// A master's frame, ours or another's.
bool IsRequest(std::string_view frame) {
  const std::uint8_t kind = zolt_frame::KindOf(zolt_frame::TypeOf(frame));
  return kind == zolt_frame::kRead || kind == zolt_frame::kWrite;
}

}  // namespace

bool HasGoodCheck(std::string_view frame) {
  return zolt_frame::IsGood(zolt_frame::WithUpperCheck(frame));
}

bool IsFrom(std::string_view answer, std::string_view slave) {
  const std::string_view one = zolt_frame::Text(answer, zolt_frame::kSlave);
  if (one == slave) return true;
  return zolt_frame::KindOf(zolt_frame::TypeOf(answer)) == zolt_frame::kCorruptedMessage &&
         !zolt_frame::IsSlave(one);
}

AnswerKind AnswerFrames::Take(std::string_view bytes) {
  rest_ += bytes;
  while (rest_.size() >= zolt_frame::kLength) {
    frame_ = rest_.substr(0, zolt_frame::kLength);
    rest_.erase(0, zolt_frame::kLength);
    const bool is_good = HasGoodCheck(frame_);
    if (is_good) frame_ = zolt_frame::WithUpperCheck(frame_);
    if (is_good && IsRequest(frame_)) {
      if (HeardRequest) HeardRequest(frame_);
      continue;
    }
    is_doubtful_ = !IsWhole(frame_) || !rest_.empty();
    if (is_good) return AnswerKind::kGood;
    return is_doubtful_ ? AnswerKind::kTorn : AnswerKind::kCorrupt;
  }
  return AnswerKind::kNone;
}

int AnswerFrames::Missing() const { return zolt_frame::kLength - static_cast<int>(rest_.size()); }

}  // namespace tarnlink
