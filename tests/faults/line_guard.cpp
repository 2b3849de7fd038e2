#include "faults/line_guard.h"

#include <utility>

#include "simulator/zolt_frames.h"
#include "support/byte_text.h"

namespace tarnlink {
namespace {

using std::chrono::milliseconds;

// Start, command, address, digits, sum and end.
constexpr std::size_t kByteAnswer = 11;
constexpr std::size_t kWordAnswer = 13;
constexpr char kWriteWord = 2;  // and 1, which reads one

constexpr std::size_t kShortestModbus = 5;
constexpr std::size_t kModbusAcknowledge = 8;
// Adapters hand bytes on every 16 ms, so that a shorter pause is no end.
constexpr milliseconds kModbusPause(20);

std::size_t LengthOfModbus(std::string_view message) {
  const int function = static_cast<unsigned char>(message.at(1));
  if (function != 3 && function != 4) return kModbusAcknowledge;
  return kShortestModbus + 2 * static_cast<std::size_t>(static_cast<unsigned char>(message.at(5)));
}

}  // namespace

EndOfMessage EndOfZolt(std::function<milliseconds()> wait) {
  return {.length = [](std::string_view) { return std::size_t{boiler::kZoltLength}; },
          .wait = std::move(wait)};
}

EndOfMessage EndOfTarnlink(std::function<milliseconds()> wait) {
  return {.length =
              [](std::string_view message) {
                return message.at(1) <= kWriteWord ? kWordAnswer : kByteAnswer;
              },
          .wait = std::move(wait),
          .ends_with_port = true};
}

EndOfMessage EndOfModbus(std::function<milliseconds()> wait) {
  return {.length = LengthOfModbus,
          .wait = std::move(wait),
          .pause = kModbusPause,
          .shortest = kShortestModbus};
}

LineGuard::LineGuard(FakeWorld& world, FakeSerialPort& port, EndOfMessage end)
    : world_(world), port_(port), end_(std::move(end)) {
  port_.SetWatcher(this);
}

LineGuard::~LineGuard() { port_.SetWatcher(nullptr); }

void LineGuard::BytesSent(std::string_view bytes) {
  if (IsUnderWay()) {
    ++hurried_;
    if (first_hurried_.empty()) {
      const auto since = std::chrono::duration_cast<milliseconds>(world_.now() - sent_at_);
      first_hurried_ = HexText(bytes) + " goes out " + std::to_string(since.count()) +
                       " ms behind " + HexText(message_) + ", of whose answer " +
                       std::to_string(came_) + " bytes have come";
    }
  }
  ++asked_;
  message_ = bytes;
  sent_at_ = world_.now();
  came_ = 0;
}

void LineGuard::BytesReceived(std::string_view bytes) {
  came_ += bytes.size();
  came_at_ = world_.now();
}

void LineGuard::LineClosed() {
  if (end_.ends_with_port) message_.clear();
}

bool LineGuard::IsUnderWay() const {
  if (message_.empty()) return false;
  if (came_ >= end_.length(message_)) return false;
  if (world_.now() - sent_at_ >= end_.wait()) return false;
  const bool has_begun = end_.shortest > 0 && came_ >= end_.shortest;
  return !has_begun || world_.now() - came_at_ < end_.pause;
}

}  // namespace tarnlink
