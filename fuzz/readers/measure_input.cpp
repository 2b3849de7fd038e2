#include "fuzz/readers/measure_input.h"

#include <cmath>

#include "fuzz/claim.h"
#include "fuzz/readers/reader_claims.h"
#include "support/pieces.h"

namespace tarnlink {
namespace {

constexpr int kLines = 17;  // the fewest

}  // namespace

std::string ShortMeasureFile(std::string_view samples, bool with_measurements) {
  std::string text = "t\r\n 0 \r\n 1 \r\n 2 \r\n 3 \r\n 4 \r\n 16 \r\n";
  for (int i = 0; i < kLines; ++i) {
    text += "A\r\n4\r\n" + std::to_string(241 + i) + "\r\n 0 \r\n 1 \r\n\r\n" +
            (i % 2 == 0 ? "True" : "False") + "\r\nFalse\r\nL" + std::to_string(i) +
            "\r\n\r\n 255 \r\n 0 \r\n" + std::to_string(1 + i % 5) + "\r\n .5 \r\n" +
            std::to_string(i % 2) + "\r\n";
  }
  if (!with_measurements) return text;
  text += " 1 \r\nM\r\n 90000 \r\n";
  text += samples;
  return text + "00000000000000 0\r\nM\r\n 9 \r\n20240305140709 7\r\n0000\r\n";
}

ReadGraph ReadGraphFile(std::string_view text, bool with_measurements, std::size_t piece,
                        std::size_t pieces) {
  ReadGraph read;
  MeasureFileReader reader("file", with_measurements);
  std::size_t taken = 0;
  Tried([&] {
    FeedPieces(text, piece, [&](std::string_view each) {
      ++taken;
      return reader.Take(each) && taken < pieces;
    });
    if (taken < pieces) reader.Finish();
    return true;
  });
  read.is_whole = reader.IsDone();
  reader.HandOver(read.data);
  return read;
}

void ClaimGraph(const Graphic& data) {
  Claim(data.Attributes.size() >= kLanes && data.Attributes.size() <= 1'016, "so many lines");
  Claim(!data.Channels.empty() && data.Channels.size() <= 1'016, "so many channels");
  Claim(data.FirstTime <= data.LastTime, "the first time is not behind the last one");
  for (const GraphAttribute& line : data.Attributes) {
    Claim(std::isfinite(line.Factor), "a factor is a number");
    Claim(IsText(line.FixedCaption) && IsText(line.Alias) && IsText(line.Description),
          "its texts are texts");
  }
  for (const MeasureChannel& channel : data.Channels) {
    Claim(channel.UpperBound() >= 0 && channel.UpperBound() <= MeasureChannel::kUpperBound,
          "a channel is not larger than one that records");
    Claim(channel.Count() == 0 || channel.Count() <= channel.UpperBound() + 1, "it has room");
  }
  for (const int line : {0, data.LastAttribute() / 2, data.LastAttribute()}) {
    const MeasureChannel& channel = data.ChannelOf(line);
    if (channel.Count() > 0) data.GetSampleValue(line, channel.UpperBound());
    data.GetCursorValue(line, data.FirstTime);
  }
  Claim(data.ChannelOf(data.LastChannel() + 1).UpperBound() == data.Channels.back().UpperBound(),
        "a lane has the last channel");
}

}  // namespace tarnlink
