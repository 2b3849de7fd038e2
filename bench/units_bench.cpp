// Costs of single steps: frames, value texts, the screen file.

#include <benchmark/benchmark.h>

#include "files/screen_file.h"
#include "monitor/location_table.h"
#include "protocols/tarnlink_frame.h"
#include "protocols/zolt_message.h"

namespace {

void BuildReadRequest(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        tarnlink::tarnlink_frame::ReadRequest(tarnlink::tarnlink_frame::kReadByte, "01A0"));
  }
}
BENCHMARK(BuildReadRequest);

// A poll has some 20 ms; building and taking apart a frame are to stay below a microsecond each.
void BuildZoltFrame(benchmark::State& state) {
  std::int32_t id = 0xC80;
  for (auto _ : state) {
    benchmark::DoNotOptimize(id);
    benchmark::DoNotOptimize(tarnlink::BuildZoltMessage(0x85, "0", id, 0x5A, 0));
  }
}
BENCHMARK(BuildZoltFrame);

void ParseZoltFrame(benchmark::State& state) {
  const std::string frame = tarnlink::BuildZoltMessage(0x15, "0", 0xC80, 0x5A, 0);
  std::string_view raw = frame;
  for (auto _ : state) {
    benchmark::DoNotOptimize(raw);
    benchmark::DoNotOptimize(tarnlink::ParseZoltMessage(raw));
  }
}
BENCHMARK(ParseZoltFrame);

void ValueToText(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        tarnlink::TarnlinkValueText("8001", static_cast<std::int32_t>(state.range(0))));
  }
}
BENCHMARK(ValueToText)->DenseRange(0, 3);

void ReadScreen(benchmark::State& state) {
  const std::vector<tarnlink::ScreenRecord> records(512, tarnlink::LocationRecord{});
  const std::string text = tarnlink::WriteScreenFile(0, records);
  for (auto _ : state) {
    tarnlink::ScreenFileReader reader(text);
    benchmark::DoNotOptimize(reader.ReadColour());
    while (auto record = reader.Next()) benchmark::DoNotOptimize(record);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}
BENCHMARK(ReadScreen);

}  // namespace

BENCHMARK_MAIN();
