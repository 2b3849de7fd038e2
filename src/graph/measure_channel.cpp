#include "graph/measure_channel.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <iterator>

namespace tarnlink {

namespace {

// Gives the whole pages between the two back to the system; what stood there is lost.
template <class Number>
void Release(Number* from, Number* to) {
  static const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  auto* const bytes = reinterpret_cast<std::byte*>(from);
  const std::size_t size = static_cast<std::size_t>(to - from) * sizeof(Number);
  const std::size_t before = (page - reinterpret_cast<std::uintptr_t>(from) % page) % page;
  if (before + page > size) return;
  madvise(bytes + before, (size - before) / page * page, MADV_DONTNEED);
}

}  // namespace

void MeasureChannel::Dimension(int upper_bound) {
  *this = {};
  if (upper_bound <= 0) return;
  static std::atomic<std::int64_t> fillings = 0;
  filling_ = ++fillings;
  upper_bound_ = upper_bound;
}

std::size_t MeasureChannel::MostRoom() const {
  constexpr std::size_t kRoom = 2;  // times what it can hold
  return kRoom * (static_cast<std::size_t>(upper_bound_) + 1);
}

void MeasureChannel::Append(const MeasureSample& sample) {
  if (upper_bound_ == 0) return;
  if (end_ == room_) MakeRoom();
  times_[end_] = sample.Time;
  values_[end_] = sample.Value;
  if (end_ > begin_ && sample.Time < times_[end_ - 1]) last_fall_ = appended_;
  ++end_;
  ++appended_;
  if (Count() <= upper_bound_ + 1) return;
  ++begin_;
  constexpr std::size_t kBatch = 8192;  // less than a tenth of a channel that records
  if (begin_ - released_ < kBatch) return;
  Release(times_.get() + released_, times_.get() + begin_);
  Release(values_.get() + released_, values_.get() + begin_);
  released_ = begin_;
}

// Doubled: what is not touched before it is filled, the system need not provide.
void MeasureChannel::Enlarge() {
  constexpr std::size_t kFirstRoom = 512;
  const std::size_t room = std::clamp(2 * room_, std::min(kFirstRoom, MostRoom()), MostRoom());
  auto times = std::make_unique_for_overwrite<std::int64_t[]>(room);
  auto values = std::make_unique_for_overwrite<std::int32_t[]>(room);
  std::copy(times_.get() + begin_, times_.get() + end_, times.get());
  std::copy(values_.get() + begin_, values_.get() + end_, values.get());
  times_ = std::move(times);
  values_ = std::move(values);
  room_ = room;
  end_ -= begin_;
  begin_ = 0;
  released_ = 0;
}

// So seldom that it hardly counts.
void MeasureChannel::MakeRoom() {
  if (room_ < MostRoom()) return Enlarge();
  std::copy(times_.get() + begin_, times_.get() + end_, times_.get());
  std::copy(values_.get() + begin_, values_.get() + end_, values_.get());
  Release(times_.get() + Count(), times_.get() + end_);
  Release(values_.get() + Count(), values_.get() + end_);
  end_ -= begin_;
  begin_ = 0;
  released_ = 0;
}

void MeasureChannel::Fill(int upper_bound, std::span<const MeasureSample> newest_first) {
  Dimension(upper_bound);
  const auto elements = static_cast<std::size_t>(upper_bound_) + 1;
  const auto kept = newest_first.first(std::min(newest_first.size(), elements));
  for (auto sample = kept.rbegin(); sample != kept.rend(); ++sample) Append(*sample);
}

int MeasureChannel::LastNotLater(std::int64_t time, int from) const {
  const int first = FirstIndex();
  const int highest = std::min(from, upper_bound_);
  const auto samples = static_cast<std::size_t>(std::max(highest - first + 1, 0));
  const std::span<const std::int64_t> times = Times().first(samples);
  const auto is_not_later = [time](std::int64_t each) { return each <= time; };
  // From the last fall on the times only rise.
  const std::int64_t fall = std::max<std::int64_t>(last_fall_ - (appended_ - Count()), 0);
  const auto rising = times.begin() + std::min(fall, static_cast<std::int64_t>(samples));
  // What is looked for is mostly near the end.
  auto high = times.end();
  std::ptrdiff_t step = 1;
  while (high - rising > step && *(high - step) > time) {
    high -= step;
    step *= 2;
  }
  auto behind = std::upper_bound(high - std::min(step, high - rising), high, time);
  if (behind == rising) {
    behind = std::find_if(std::make_reverse_iterator(rising), times.rend(), is_not_later).base();
  }
  if (behind != times.begin()) return first + static_cast<int>(behind - times.begin()) - 1;
  // Below the samples there are empty elements, unless the channel is full.
  return time >= 0 ? std::min(first - 1, highest) : -1;
}

}  // namespace tarnlink
