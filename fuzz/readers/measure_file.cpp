#include <limits>

#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/measure_input.h"
#include "fuzz/readers/readers.h"
#include "graph/measure_file_writer.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

std::string Written(const Graphic& data, bool with_measurements, bool has_comma) {
  MeasureFileWriter writer(
      data, {.with_measurements = with_measurements, .decimal_separator = has_comma ? "," : "."});
  std::string text;
  double share = writer.Share();
  for (std::string piece; writer.Next(piece);) {
    text += piece;
    Claim(writer.Share() >= share && writer.Share() <= 1, "a share only rises");
    share = writer.Share();
  }
  return text;
}

void Run(std::string_view input, bool with_measurements) {
  FuzzInput bytes(input);
  const std::size_t piece = 1 + std::size_t{bytes.Byte()};
  const std::uint8_t stop = bytes.Byte();
  const bool has_comma = bytes.Coin();
  const std::string_view text = bytes.Rest();
  const std::size_t pieces = stop == 0 ? kAll : stop;
  const ReadGraph read = ReadGraphFile(text, with_measurements, piece, pieces);
  ClaimGraph(read.data);
  if (!read.is_whole) return;
  // Ends of lines inside a text become blanks, and what is too old for a channel is left out.
  const std::string once = Written(read.data, with_measurements, has_comma);
  const ReadGraph again = ReadGraphFile(once, with_measurements, kAll, kAll);
  Claim(again.is_whole, "what is written can be read");
  ClaimGraph(again.data);
  Claim(again.data.Colors == read.data.Colors, "its colours are the same");
  Claim(again.data.Attributes.size() == read.data.Attributes.size(), "so many lines");
  Claim(again.data.Channels.size() == read.data.Channels.size(), "so many channels");
  if (text.find('\r') == std::string_view::npos) {
    Claim(again.data.Attributes == read.data.Attributes, "its lines are the same");
  }
  Claim(Written(again.data, with_measurements, has_comma) == once, "and is the same then");
}

void RunMeasurements(std::string_view input) { Run(input, true); }
void RunLines(std::string_view input) { Run(input, false); }

const char* const kSamples =
    "20240305140712 65535\r\n20240305140711 5\r\n20240305140710 -3\r\n2024 30514 709 7\r\n";

std::vector<std::string> MeasurementSeeds() {
  const std::string whole("\xFF\0\0", 3);
  std::string endless = ShortMeasureFile("");
  endless.resize(endless.find(" 1 \r\nM"));
  for (int i = 0; i < 20; ++i) endless += i == 0 ? " 1015 \r\n" : "M\r\n 90000 \r\n0000\r\n";
  return {whole + ShortMeasureFile(kSamples),
          std::string("\6\0\1", 3) + ShortMeasureFile("18991230000000 5\n01000101000000 1\n"),
          std::string("\x0F\x30\0", 3) + ShortMeasureFile(kSamples), whole + endless,
          whole + SampleText("burner_start.mss").substr(0, 4'000)};
}

std::vector<std::string> LineSeeds() {
  const std::string whole("\xFF\0\0", 3);
  return {whole + ShortMeasureFile("", false),
          std::string("\3\0\1", 3) + ShortMeasureFile("", false),
          whole + SampleText("burner.grp").substr(0, 4'000)};
}

}  // namespace

FuzzTarget MeasureFileTarget() { return {"measure_file", RunMeasurements, MeasurementSeeds}; }

FuzzTarget GraphLinesTarget() { return {"graph_lines", RunLines, LineSeeds}; }

}  // namespace tarnlink
