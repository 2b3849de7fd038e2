#include "ui/graph_image.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "platform/qt/qt_surface.h"
#include "ui/units.h"

namespace tarnlink {

namespace {

// Then all of it is drawn anew, before the numbers of the places grow too coarse.
constexpr int kMostPages = 16;

// Pixels of a widget that the pen of a line reaches beyond its samples, and the end of a lane's
// line that is too short for gaps.
constexpr double kReach = 10;

}  // namespace

GraphImage::Look GraphImage::LookOf(const Graphic& data, const GraphView& view, float lane_height,
                                    bool MeasOnly, const QSize& size, double ratio) {
  Look look{.time_scale = view.TimeScale,
            .width = view.ScaleWidth,
            .height = view.ScaleHeight,
            .lane_height = lane_height,
            .meas_only = MeasOnly,
            .size = size,
            .ratio = ratio,
            .grid = data.Colors.GridColor,
            .background = data.Colors.GraphColor,
            .channels = data.LastChannel(),
            .lines = {}};
  for (int i = 0; i <= data.LastAttribute(); ++i) {
    const GraphAttribute& line = data.Attributes[static_cast<std::size_t>(i)];
    if (!line.ShowLine) continue;
    look.lines.push_back({i, line.LineColor, line.LineStyle, line.Unit, line.Factor, line.StoredAs,
                          data.ChannelOf(i).Filling()});
  }
  return look;
}

void GraphImage::Update(const Graphic& data, const GraphView& view, float lane_height,
                        bool MeasOnly, const QSize& size, double ratio) {
  Look look = LookOf(data, view, lane_height, MeasOnly, size, ratio);
  const bool is_same = look == look_ && CanMove(data, view);
  look_ = std::move(look);
  if (!is_same) return Begin(data, view);
  const int shift = ShiftOf(view.BaseTime);
  const int moved = shift - shift_;
  shift_ = shift;
  base_ = view.BaseTime;
  const int first = FirstChange(data, moved);
  if (first <= 0) return Begin(data, view);
  MoveLeft(moved);
  Draw(data, first);
  NoteNewest(data);
}

void GraphImage::Redraw(const Graphic& data) { Draw(data, 0); }

void GraphImage::Begin(const Graphic& data, const GraphView& view) {
  view_ = view;
  base_ = view.BaseTime;
  shift_ = 0;
  const QSizeF pixels = QSizeF(look_.size) * look_.ratio;
  const QSize size(static_cast<int>(std::ceil(pixels.width())),
                   static_cast<int>(std::ceil(pixels.height())));
  if (image_.size() != size) image_ = QImage(size, QImage::Format_RGB32);
  if (image_.isNull()) return;
  // By the time, so that dashes stay with their samples.
  const GraphPens pens = Pens();
  constexpr int kPatterns = 36;  // columns, in widths of the pen, after which each one is repeated
  const double cycle = kPatterns * pens.broken * pens.lane;
  const TimeMap times = view_.Times();
  const double column = times.SecondsAt(UnitsPerPixel()) - times.SecondsAt(0);
  const double from_day_0 = std::floor(times.SecondsAt(0) / column);
  dash_origin_ = std::isfinite(from_day_0) ? static_cast<int>(std::fmod(from_day_0, cycle)) : 0;
  Draw(data, 0);
  NoteNewest(data);
  NoteOldest(data);
}

// --- What has changed ----------------------------------------------------------------------------

bool GraphImage::CanMove(const Graphic& data, const GraphView& view) const {
  if (image_.isNull() || view.BaseTime < base_) return false;
  const int shift = ShiftOf(view.BaseTime);
  if (shift - shift_ >= image_.width() || shift > kMostPages * image_.width()) return false;
  const std::int64_t start = SecondsAt(-Margin());
  for (std::size_t i = 0; i < drawn_.size(); ++i) {
    const MeasureChannel& channel = data.ChannelOf(look_.lines[i].index);
    // Lines that go back in time do not only grow at the right.
    if (channel.FallsBehind(channel.IndexOf(drawn_[i].oldest))) return false;
    // What is lost at the bottom of a channel must be out of sight.
    const int oldest = channel.FirstIndex();
    const bool has_lost = channel.NumberAt(oldest) > drawn_[i].oldest;
    if (has_lost && channel[oldest].Time >= start) return false;
  }
  return true;
}

// In whole columns since the picture began.
int GraphImage::ShiftOf(Date base) const {
  const TimeMap times = view_.Times();
  const double column = times.SecondsAt(UnitsPerPixel()) - times.SecondsAt(0);
  constexpr double kFarthest = 1 << 30;
  constexpr double kLost = 1e-6;  // by rounding
  const double columns = (base - view_.BaseTime) * kSecondsPerDay / column + kLost;
  return static_cast<int>(std::floor(std::min(columns, kFarthest)));
}

// The segments to new samples begin at the last one that was drawn.
int GraphImage::FirstChange(const Graphic& data, int moved) const {
  const TimeMap times = view_.Times();
  double first = image_.width() - moved;
  for (std::size_t i = 0; i < drawn_.size(); ++i) {
    const MeasureChannel& channel = data.ChannelOf(look_.lines[i].index);
    if (NewestOf(channel) == drawn_[i].newest) continue;
    const int index = channel.IndexOf(std::max<std::int64_t>(drawn_[i].newest, 0));
    if (index < channel.FirstIndex()) return 0;
    first = std::min(first, times(channel[index].Time) / UnitsPerPixel() - shift_);
  }
  return static_cast<int>(std::clamp<double>(first - Margin(), 0, image_.width()));
}

// Rounded down, of the left edge of a column.
std::int64_t GraphImage::SecondsAt(int column) const {
  const double seconds = view_.Times().SecondsAt((column + shift_) * UnitsPerPixel());
  return ToSeconds(seconds / kSecondsPerDay) - 1;
}

std::int64_t GraphImage::NewestOf(const MeasureChannel& channel) const {
  return channel.NumberAt(NewestInView(channel, ToSeconds(base_)));
}

void GraphImage::NoteNewest(const Graphic& data) {
  drawn_.resize(look_.lines.size());
  for (std::size_t i = 0; i < drawn_.size(); ++i) {
    drawn_[i].newest = NewestOf(data.ChannelOf(look_.lines[i].index));
  }
}

void GraphImage::NoteOldest(const Graphic& data) {
  const std::int64_t start = SecondsAt(-Margin());
  for (std::size_t i = 0; i < drawn_.size(); ++i) {
    const MeasureChannel& channel = data.ChannelOf(look_.lines[i].index);
    const int newest = channel.IndexOf(drawn_[i].newest);
    const int oldest = std::max(channel.LastNotLater(start - 1, newest), channel.FirstIndex());
    drawn_[i].oldest = channel.NumberAt(oldest);
  }
}

// --- Drawing -------------------------------------------------------------------------------------

void GraphImage::MoveLeft(int columns) {
  if (columns <= 0) return;
  // All rows in one go: what comes from the next row lies where is drawn anew.
  const auto bytes = static_cast<std::size_t>(columns) * sizeof(QRgb);
  const auto size = static_cast<std::size_t>(image_.sizeInBytes());
  std::memmove(image_.bits(), image_.constBits() + bytes, size - bytes);
}

void GraphImage::Draw(const Graphic& data, int first_column) {
  if (first_column >= image_.width()) return;
  image_.setDevicePixelRatio(1);
  {
    QtSurface surface(image_, QtSurface::kScreenDpi * look_.ratio);
    surface.SetOrigin(shift_);
    surface.SetDashOrigin(dash_origin_ + shift_);
    const auto place = [&](int column) {
      return static_cast<float>((column + shift_ + 0.5) * UnitsPerPixel());
    };
    const Point corner{place(first_column), 0};
    const Point opposite{place(image_.width()),
                         static_cast<float>(image_.height() * UnitsPerPixel())};
    surface.SetClip(corner, opposite);
    surface.SetPen(data.Colors.GraphColor, DrawStyle::kSolid, 1);
    surface.FilledBox(corner, opposite);
    surface.GatherLines();
    GraphPicture picture(surface, data, view_, look_.lane_height, look_.meas_only, Pens());
    picture.SetPart({.left = place(first_column - 1),
                     .right = opposite.x,
                     .newest = ToSeconds(base_),
                     .oldest = SecondsAt(first_column - Margin())});
    picture.DrawGrid();
    picture.DrawLines();
  }
  image_.setDevicePixelRatio(look_.ratio);
}

int GraphImage::Margin() const { return static_cast<int>(std::ceil(kReach * look_.ratio)); }

double GraphImage::UnitsPerPixel() const {
  return static_cast<double>(kUnitsPerPixel) / look_.ratio;
}

GraphPens GraphImage::Pens() const {
  const auto wide = [this](int width) {
    return std::max(static_cast<int>(std::lround(width * look_.ratio)), 1);
  };
  const GraphPens pens;
  return {.hairline = wide(pens.hairline),
          .solid = wide(pens.solid),
          .broken = wide(pens.broken),
          .lane = wide(pens.lane)};
}

}  // namespace tarnlink
