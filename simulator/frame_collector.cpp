#include "simulator/frame_collector.h"

#include <utility>

namespace boiler {
namespace {

constexpr std::size_t kMostGarbage = 64;  // bytes in one line of the log
constexpr std::string_view kOutside = "outside a frame";

}  // namespace

std::optional<FrameCollector::Found> FrameCollector::Hear(char byte) {
  const bool in_frame = InFrame();
  if (byte == start_) {
    auto ended = GiveUp(in_frame ? "a new frame began inside" : kOutside);
    waiting_ += byte;
    return ended;
  }
  waiting_ += byte;
  if (!in_frame) {
    if (waiting_.size() == kMostGarbage) return GiveUp(kOutside);
    return std::nullopt;
  }
  switch (look_(waiting_)) {
    case FrameState::kGoesOn:
      break;
    case FrameState::kWhole:
      return std::exchange(waiting_, "");
    case FrameState::kTooLong:
      return GiveUp("no end in sight");
  }
  return std::nullopt;
}

std::optional<Ignored> FrameCollector::Silence() {
  return GiveUp(InFrame() ? "incomplete" : kOutside);
}

std::optional<Ignored> FrameCollector::GiveUp(std::string_view reason) {
  if (!Waiting()) return std::nullopt;
  return Ignored{std::exchange(waiting_, ""), std::string(reason)};
}

}  // namespace boiler
