// Finds frames that begin with a byte of their own among the bytes on the line, and loses no byte:
// each one comes out again, in a frame or as something ignored.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "simulator/slave.h"

namespace boiler {

// How far bytes that began with the start byte have come.
enum class FrameState { kGoesOn, kWhole, kTooLong };

class FrameCollector {
 public:
  using Look = FrameState (*)(std::string_view begun);
  using Found = std::variant<std::string, Ignored>;  // a whole frame, or bytes that are none

  FrameCollector(char start, Look look) : start_(start), look_(look) {}

  // Takes one byte off the line. A start byte always begins a frame.
  std::optional<Found> Hear(char byte);
  // Gives up what waits for more.
  std::optional<Ignored> Silence();
  bool Waiting() const { return !waiting_.empty(); }
  void Forget() { waiting_.clear(); }

 private:
  bool InFrame() const { return Waiting() && waiting_.front() == start_; }
  std::optional<Ignored> GiveUp(std::string_view reason);

  char start_;
  Look look_;
  // Either bytes that began no frame, or a frame from its start byte on.
  std::string waiting_;
};

}  // namespace boiler
