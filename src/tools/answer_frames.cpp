#include "tools/answer_frames.h"

#include <algorithm>

#include "protocols/frame_bytes.h"
#include "protocols/zolt_crc.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {

namespace {

bool IsHexDigit(char one) {
  return (one >= '0' && one <= '9') || (one >= 'A' && one <= 'F') || (one >= 'a' && one <= 'f');
}

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
  const std::string_view digits = zolt_frame::Text(frame, zolt_frame::kCrc);
  return digits.size() == zolt_frame::kCrc.length &&
         std::all_of(digits.begin(), digits.end(), IsHexDigit) &&
         HexNumber(digits) == Calc_Crc(zolt_frame::Text(frame, zolt_frame::kBody));
}

AnswerKind AnswerFrames::Take(std::string_view bytes) {
  rest_ += bytes;
  while (rest_.size() >= zolt_frame::kLength) {
    frame_ = rest_.substr(0, zolt_frame::kLength);
    rest_.erase(0, zolt_frame::kLength);
    const bool is_good = HasGoodCheck(frame_);
    if (is_good && IsRequest(frame_)) continue;
    is_doubtful_ = !IsWhole(frame_) || !rest_.empty();
    if (is_good) return AnswerKind::kGood;
    return is_doubtful_ ? AnswerKind::kTorn : AnswerKind::kCorrupt;
  }
  return AnswerKind::kNone;
}

int AnswerFrames::Missing() const { return zolt_frame::kLength - static_cast<int>(rest_.size()); }

}  // namespace tarnlink
