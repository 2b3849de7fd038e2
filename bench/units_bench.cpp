// Costs of single steps: frames, value texts, the screen file.

#include <benchmark/benchmark.h>

#include "files/screen_file.h"
#include "monitor/location_table.h"
#include "protocols/tarnlink_frame.h"

namespace {

void BuildReadRequest(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        tarnlink::tarnlink_frame::ReadRequest(tarnlink::tarnlink_frame::kReadByte, "01A0"));
  }
}
BENCHMARK(BuildReadRequest);

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
