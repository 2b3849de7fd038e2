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

// An append costs the same however many samples there are, but for one now and then for which the
// room is made larger. Only what has been filled takes up memory: 12 bytes for a sample, and up to
// a tenth more for what a full channel has just lost; a bound alone takes none.
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
  int FirstIndex() const { return upper_bound_ - Count() + 1; }  // of the oldest one
  // The same as plain arrays, oldest first: the last one is the element at the upper bound.
  std::span<const std::int64_t> Times() const { return {times_.get() + begin_, end_ - begin_}; }
  std::span<const std::int32_t> Values() const { return {values_.get() + begin_, end_ - begin_}; }

  // Samples are numbered from 0 in the order of their arrival since the channel was last emptied.
  std::int64_t Appended() const { return appended_; }
  // The same for as long as the channel has not been emptied; no two channels share one.
  std::int64_t Filling() const { return filling_; }
  int IndexOf(std::int64_t number) const {
    return static_cast<int>(upper_bound_ - (appended_ - 1 - number));
  }
  // Whether the times fall anywhere above this element.
  bool FallsBehind(int index) const { return last_fall_ > NumberAt(index); }
  std::int64_t NumberAt(int index) const { return appended_ - 1 - (upper_bound_ - index); }

  // The highest index up to `from` whose sample is not later than `time`, -1 if all are later. An
  // empty element is never later. Where times fall, since the clock was set back, it is the first
  // one that a walk down from there meets; only behind such a place it is looked for one by one.
  int LastNotLater(std::int64_t time, int from) const;
  int LastNotLater(std::int64_t time) const { return LastNotLater(time, upper_bound_); }

 private:
  // Among the samples, oldest first; below 0 for an empty element.
  std::int64_t PlaceOf(int index) const {
    return static_cast<std::int64_t>(index) - upper_bound_ + Count() - 1;
  }
  std::size_t MostRoom() const;
  void MakeRoom();
  void Enlarge();

  int upper_bound_ = 0;
  // The samples lie at [begin_, end_) and wander up; at the end of the room they go back to its
  // front, so that they are always one plain array. The memory below `released_` is given back.
  std::size_t room_ = 0;
  std::size_t released_ = 0;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::int64_t appended_ = 0;
  std::int64_t last_fall_ = 0;
  std::int64_t filling_ = 0;
  std::unique_ptr<std::int64_t[]> times_;
  std::unique_ptr<std::int32_t[]> values_;
};

}  // namespace tarnlink
