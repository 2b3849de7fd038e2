#include "tools/link_record.h"

#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"
#include "platform/clock.h"
#include "protocols/modbus_frame.h"
#include "protocols/tarnlink_frame.h"

namespace tarnlink {
namespace {

class CountingClock final : public Clock {
 public:
  Date Now() const override { return 45'000; }
  std::chrono::microseconds Elapsed() const override { return elapsed; }

  std::chrono::microseconds elapsed{0};
};

std::string TarnLinkFrame(FuzzInput& input) {
  const char command = static_cast<char>(1 + input.Below(6));
  const std::string digits(input.ShortText().substr(0, 4));
  return input.Coin() ? tarnlink_frame::ReadRequest(command, digits)
                      : tarnlink_frame::WriteRequest(command, "01A0", digits);
}

std::string SomeFrame(FuzzInput& input) {
  switch (input.Below(4)) {
    case 0:
      return SoundZolt(ZoltBody(input));
    case 1:
      return SoundModbus(std::string(input.ShortText().substr(0, 40)));
    case 2:
      return TarnLinkFrame(input);
    default:
      return std::string(input.ShortText());
  }
}

void ClaimOf(const LinkRecord& record, std::string_view received) {
  const SlaveAccount total = record.account().Total();
  Claim(total.answers + total.timeouts + total.bad_checks <= total.exchanges,
        "an exchange ends in one way");
  Claim(total.refusals <= total.answers, "a refusal is an answer");
  Claim(total.times.Shortest() <= total.times.Median() &&
            total.times.Median() <= total.times.Longest(),
        "times have an order");
  std::string heard;
  for (const TraceEntry& entry : record.trace()) {
    const bool came_in = entry.kind != TraceKind::kRequest;
    if (came_in) heard += entry.bytes;
    Claim(!entry.meaning.empty(), "an entry says something");
    Claim(entry.meaning.find('\0') == std::string::npos, "a text has no zero byte");
    Claim(entry.meaning.size() < 2'000, "a meaning is a line");
  }
  Claim(received.starts_with(heard), "what came in stands there byte by byte");
  Claim(received.size() - heard.size() <= 600, "and not much of it is kept back");
}

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  CountingClock clock;
  LinkRecord record(clock);
  std::string received;
  std::string request;
  for (int step = 0; step < 40 && !input.AtEnd(); ++step) {
    clock.elapsed += std::chrono::milliseconds(input.Byte());
    switch (input.Below(8)) {
      case 0:
      case 1:
      case 2:
        request = SomeFrame(input);
        record.BytesSent(request);
        break;
      case 3:
        record.LineClosed();
        break;
      case 4:
        record.BytesReceived(received.append(request).substr(received.size() - request.size()));
        break;
      default: {
        const std::string heard = OnTheLine(input, SomeFrame(input));
        received += heard;
        record.BytesReceived(heard);
      }
    }
    ClaimOf(record, received);
  }
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  const std::string zolt_read("\0\0\x01"s + "300010000");
  return {"\5\0"s + zolt_read + "\x14\5"s + "\0\x11"s + "300012A00\0"s,
          "\5\0\1\6\x0A\3\0\x10\0\2"s + "\x14\6\1\7\x0A\3\4\0\1\0\2\0"s,
          "\5\0\2\4\4"s + "01A0\1" + "\x14\4\0\3"s};
}

}  // namespace

FuzzTarget LinkRecordTarget() { return {"link_record", Run, Seeds}; }

}  // namespace tarnlink
