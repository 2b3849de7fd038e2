// The samples of one line of the graph. The newest stands at the upper bound and older ones below
// it, as in an array that moves down by one place with every new sample.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace tarnlink {

struct MeasureSample {
  std::int32_t Value = 0;  // the raw answer, 0 to 65535 when it comes from the line
  std::int64_t Time = 0;   // whole seconds since day 0; 0: the element holds no sample

  bool operator==(const MeasureSample&) const = default;
};

// An append costs the same however many samples there are, and only what has been filled takes up
// memory: 12 bytes for a sample and a tenth more once the channel is full.
class MeasureChannel {
 public:
  static constexpr int kUpperBound = 90'000;  // of a channel that records

  // Empties it; an upper bound of 0 (or less) takes no samples and no memory.
  void Dimension(int upper_bound);
  int UpperBound() const { return upper_bound_; }

  // Puts a sample at the upper bound; what stood in element 0 is lost. Nothing on an upper bound
  // of 0.
  void Append(const MeasureSample& sample);
  // Empties it and puts `newest_first` below the upper bound, at most as many as it has elements.
  void Fill(int upper_bound, std::span<const MeasureSample> newest_first);

  // An element of 0 to the upper bound; any other, and one without a sample, is empty.
  MeasureSample operator[](int index) const {
    const std::int64_t at = PlaceOf(index);
    if (at < 0 || index > upper_bound_) return {};
    return {values_[begin_ + at], times_[begin_ + at]};
  }
  // Elements that hold a sample: they end at the upper bound.
  int Count() const { return static_cast<int>(end_ - begin_); }
  // The same as plain arrays, oldest first: the last one is the element at the upper bound.
  std::span<const std::int64_t> Times() const { return {times_.get() + begin_, end_ - begin_}; }
  std::span<const std::int32_t> Values() const { return {values_.get() + begin_, end_ - begin_}; }

  // The highest index up to `from` whose sample is not later than `time`, -1 if all are later. An
  // empty element is never later. Where times fall, since the clock was set back, it is the first
  // one that a walk down from there meets.
  int LastNotLater(std::int64_t time, int from) const;
  int LastNotLater(std::int64_t time) const { return LastNotLater(time, upper_bound_); }

 private:
  // Among the samples, oldest first; below 0 for an empty element.
  std::int64_t PlaceOf(int index) const {
    return static_cast<std::int64_t>(index) - upper_bound_ + Count() - 1;
  }
  bool IsSorted() const { return last_fall_ <= static_cast<std::int64_t>(begin_); }
  void MakeRoom();

  int upper_bound_ = 0;
  // The samples lie at [begin_, end_) and wander up; at the end of the room they go back to its
  // front, so that they are always one plain array.
  std::size_t room_ = 0;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::int64_t last_fall_ = 0;  // the place of the last sample that is earlier than the one before
  std::unique_ptr<std::int64_t[]> times_;
  std::unique_ptr<std::int32_t[]> values_;
};

}  // namespace tarnlink
