#include "protocols/service_line.h"

#include <algorithm>
#include <chrono>

#include "common/run_time_error.h"
#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/fuzz_input.h"
#include "support/fake_timer.h"
#include "support/fake_world.h"
#include "tools/quiet_watch.h"

namespace tarnlink {
namespace {

constexpr int kTick = 20;            // ms
constexpr int kLongestWait = 1'000;  // ms
constexpr int kMostLate = 4;         // answers
constexpr int kMostTime = 6'000;     // ms
constexpr int kLongestLate = 300;    // ms

std::int32_t Number(FuzzInput& input) {
  return static_cast<std::int32_t>(input.Word() | static_cast<std::uint32_t>(input.Word()) << 16);
}

void ClaimOfSettings(FakeSerialPort& port, const ServiceLine& line) {
  try {
    SetServiceLine(port, line);
    const PortSettings settings = ParsePortSettings(port.Settings());
    Claim(settings.speed == SpeedOf(line), "the port has the speed of the line");
    Claim(settings.parity == 'N' && settings.data_bits == 8 && settings.stop_bits == 1,
          "and the framing of ZOLT");
  } catch (const RunTimeError&) {
    // A number or a speed that no port has.
  }
}

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  const int baudrate = input.Coin() ? Number(input) : input.Below(8);
  const ServiceLine line{[number = Number(input)] { return number; },
                         [baudrate] { return baudrate; }};
  const int exchange = TimeOfExchange(line);
  Claim(SpeedOf(line) >= 1200 && exchange >= 0 && exchange <= 267, "a frame takes its time");

  FakeWorld world;
  PortRack rack;
  FakeSerialPort port(world.time(), rack);
  ClaimOfSettings(port, line);

  // Bytes come at any times: what follows is held back until the line has been quiet.
  int ends = 0;
  int quiet = 0;   // ms since bytes came last
  int waited = 0;  // ms since they came first
  int late = 0;    // the most that was given since then
  QuietWatch watch(world, line, [&](bool is_quiet) {
    ++ends;
    const bool was_quiet = quiet + kTick >= exchange + kThinkingTime + late;
    Claim(is_quiet ? was_quiet : waited + kTick >= kLongestWait,
          "it ends when the line is quiet, or was waited for");
  });
  for (int passed = 0; passed < kMostTime && !input.AtEnd();) {
    const bool was_on = watch.IsOn();
    const int before = ends;
    const std::uint8_t what = input.Byte();
    if (what < 0x40) {
      if (!was_on) waited = late = 0;
      quiet = 0;
      const int more = what < 0x20 ? 0 : input.Word() % kLongestLate;
      more == 0 ? watch.Raise() : watch.Settle(more);
      late = std::max(late, more);
      Claim(watch.IsOn(), "it is on when something came");
    } else if (what == 0xFF) {
      watch.End();
      Claim(!watch.IsOn(), "it can be ended");
    } else {
      // In whole ticks, so that both count alike.
      const int ticks = 1 + (what & 7);
      for (int i = 0; i < ticks; ++i) {
        world.Advance(std::chrono::milliseconds(kTick));
        quiet += kTick;
        waited += kTick;
      }
      passed += ticks * kTick;
      Claim(!watch.IsOn() || waited < kLongestWait + kMostLate * late + kTick,
            "it does not wait for ever");
    }
    Claim(ends - before <= (was_on ? 1 : 0), "it ends once");
  }
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {"\0\3\1\0\0\0\0\x47\x41\0\x47\x47\x47\x47\x47"s,
          "\0\0\1\0\0\0\x20\x64\0\x47\x47\0\x47\x47\0\x47\xFF\0"s,
          "\1\xFF\xFF\xFF\x7F\xFF\xFF\xFF\xFF\0\x47\x47"s};
}

}  // namespace

FuzzTarget ServiceLineTarget() { return {"service_line", Run, Seeds}; }

}  // namespace tarnlink
