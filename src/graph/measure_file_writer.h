// The text of a measurement file, `.mss`, or of its lines alone, `.grp`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "graph/graphic.h"
#include "graph/measure_stamps.h"
#include "graph/piece_source.h"

namespace tarnlink {

// The text is that of the moment when the writer was made, whatever is appended afterwards. Samples
// that have fallen out of their channel before they are reached are missing at its end.
class MeasureFileWriter final : public PieceSource {
 public:
  struct Content {
    bool with_measurements = true;
    std::optional<std::int64_t> newer_than =
        {};  // seconds; a sample that is not later ends its channel
    std::string decimal_separator = ".";
  };

  // `data` outlives it.
  MeasureFileWriter(const Graphic& data, const Content& content);

  bool Next(std::string& piece) override;
  double Share() const override;

 private:
  struct Channel {
    SampleRange range;
    int upper_bound;
  };

  void WriteChannel(PieceFiller& piece);
  // False once the channel has no more of them.
  bool WriteSamples(PieceFiller& piece);
  bool EndSamples();

  const Graphic& data_;
  std::int64_t newer_than_;
  std::string begin_;  // all that stands in front of the first channel
  std::vector<Channel> channels_;
  std::size_t channel_ = 0;  // that is being written
  bool in_samples_ = false;
  SampleStamps stamps_;
  std::int64_t left_ = 0;  // samples
  std::int64_t total_ = 0;
};

}  // namespace tarnlink
