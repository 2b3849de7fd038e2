#include "tools/sniffer_frames.h"

#include <algorithm>

#include "protocols/zolt_frame.h"
#include "tools/answer_frames.h"

namespace tarnlink {

// Adapters hand over more than one frame at once, and parts of them.
SnifferFrames::Found SnifferFrames::Next() {
  while (rest_.size() >= zolt_frame::kLength) {
    frame_ = rest_.substr(0, zolt_frame::kLength);
    if (HasGoodCheck(frame_)) {
      in_step_ = true;
      ++count_;
      DropToStart(zolt_frame::kLength);
      return Found::kFrame;
    }
    const bool has_start = rest_.find(zolt_frame::kStart, 1) != std::string::npos;
    if (in_step_ || !has_start) {
      CountBad();
      rest_.clear();
      in_step_ = false;
      return Found::kLost;
    }
    if (frame_.front() == zolt_frame::kStart) CountBad();
    DropToStart(1);
  }
  if (!in_step_) DropToStart(0);
  return Found::kNothing;
}

int SnifferFrames::Missing() const { return zolt_frame::kLength - static_cast<int>(rest_.size()); }

void SnifferFrames::CountBad() {
  ++count_;
  ++bad_;
}

void SnifferFrames::DropToStart(std::size_t from) {
  rest_.erase(0, std::min(rest_.find(zolt_frame::kStart, from), rest_.size()));
}

}  // namespace tarnlink
