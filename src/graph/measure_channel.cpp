#include "graph/measure_channel.h"

#include <algorithm>

namespace tarnlink {

// The room is not touched before it is filled, so that the system need not provide it.
void MeasureChannel::Dimension(int upper_bound) {
  *this = {};
  if (upper_bound <= 0) return;
  constexpr std::size_t kSlack = 10;  // a tenth
  upper_bound_ = upper_bound;
  const auto elements = static_cast<std::size_t>(upper_bound) + 1;
  room_ = elements + elements / kSlack + 1;
  times_ = std::make_unique_for_overwrite<std::int64_t[]>(room_);
  values_ = std::make_unique_for_overwrite<std::int32_t[]>(room_);
}

void MeasureChannel::Append(const MeasureSample& sample) {
  if (upper_bound_ == 0) return;
  if (end_ == room_) MakeRoom();
  times_[end_] = sample.Time;
  values_[end_] = sample.Value;
  if (end_ > begin_ && sample.Time < times_[end_ - 1]) {
    last_fall_ = static_cast<std::int64_t>(end_);
  }
  ++end_;
  if (Count() > upper_bound_ + 1) ++begin_;
}

// Once in a tenth of a channel, so that it hardly counts.
void MeasureChannel::MakeRoom() {
  std::copy(times_.get() + begin_, times_.get() + end_, times_.get());
  std::copy(values_.get() + begin_, values_.get() + end_, values_.get());
  last_fall_ -= static_cast<std::int64_t>(begin_);
  end_ -= begin_;
  begin_ = 0;
}

void MeasureChannel::Fill(int upper_bound, std::span<const MeasureSample> newest_first) {
  Dimension(upper_bound);
  const auto elements = static_cast<std::size_t>(upper_bound_) + 1;
  const auto kept = newest_first.first(std::min(newest_first.size(), elements));
  for (auto sample = kept.rbegin(); sample != kept.rend(); ++sample) Append(*sample);
}

int MeasureChannel::LastNotLater(std::int64_t time, int from) const {
  const int first = upper_bound_ - Count() + 1;  // the index of the oldest sample
  const int highest = std::min(from, upper_bound_);
  const auto samples = static_cast<std::size_t>(std::max(highest - first + 1, 0));
  const std::span<const std::int64_t> times = Times().first(samples);
  const auto is_not_later = [time](std::int64_t each) { return each <= time; };
  const auto behind = IsSorted() ? std::upper_bound(times.begin(), times.end(), time)
                                 : std::find_if(times.rbegin(), times.rend(), is_not_later).base();
  if (behind != times.begin()) return first + static_cast<int>(behind - times.begin()) - 1;
  // Below the samples there are empty elements, unless the channel is full.
  return time >= 0 ? std::min(first - 1, highest) : -1;
}

}  // namespace tarnlink
