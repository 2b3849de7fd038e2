// Reads a measurement file, `.mss`, or the lines of a graph alone, `.grp`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/text_file.h"
#include "graph/graphic.h"
#include "graph/measure_stamps.h"

namespace tarnlink {

// Takes the file in pieces that may end anywhere. What it has read up to a failure stays, and can
// be handed over too.
class MeasureFileReader {
 public:
  // `path` is what errors name. Without measurements it takes the lines and wants nothing of what
  // follows them.
  MeasureFileReader(std::string path, bool with_measurements)
      : path_(std::move(path)), with_measurements_(with_measurements) {}

  // False once it wants no more. Throws RunTimeError 13, 6 or 9 for a bad line.
  bool Take(std::string_view piece);
  // Behind the last piece. Throws RunTimeError 62 if the file ended too early, and as `Take` does.
  void Finish();
  bool IsDone() const { return stage_ == Stage::kDone; }

  // Puts what has been read in place of what `data` has; the rest of it stays. Lines that were read
  // to their end without measurements begin with empty channels. Once, and last.
  void HandOver(Graphic& data);

 private:
  enum class Stage {
    kTitle,
    kColours,
    kLastLine,
    kAttributes,
    kLastChannel,
    kChannelTitle,
    kUpperBound,
    kSamples,
    kDone,
  };

  [[noreturn]] void Fail(int code, const std::string& reason) const;
  void TakeLine(std::string_view line);
  void TakeColour(std::string_view line);
  void TakeLastAttribute(std::string_view line);
  void TakeField(std::string_view line);
  void TakeLastChannel(std::string_view line);
  void TakeUpperBound(std::string_view line);
  void TakeSample(std::string_view line);
  // As many samples as stand at the front of `text` just as the writer writes them; returns their
  // bytes.
  std::size_t TakePlainSamples(std::string_view text);
  void Store(std::int32_t value, std::int64_t time);
  void EndChannel();
  void FillChannel();
  void DecodeTexts();

  std::string path_;
  bool with_measurements_;
  PieceLines lines_;
  bool in_line_ = false;  // the last piece ended inside a line
  Stage stage_ = Stage::kTitle;
  int line_ = 0;      // that is being read, from 1
  int position_ = 0;  // in a stage of many lines

  std::vector<Colour> colours_;
  std::optional<std::vector<GraphAttribute>> attributes_;
  std::optional<std::vector<MeasureChannel>> channels_;
  std::size_t channel_ = 0;
  int upper_bound_ = 0;
  std::vector<MeasureSample> samples_;  // of this channel, newest first
  StampReader stamps_;
  bool has_sample_ = false;
  std::int64_t first_time_ = 0;
  std::int64_t last_time_ = 0;
};

// The channels that belong to these lines: those of lines that are shown record, and so does the
// last one.
std::vector<MeasureChannel> ChannelsOf(const std::vector<GraphAttribute>& lines);

}  // namespace tarnlink
