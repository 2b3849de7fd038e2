#include "platform/qt/dense_line.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace tarnlink {
namespace {

// What the line covers of one pixel column; nothing while the lower end is above the upper.
struct Span {
  int from = std::numeric_limits<int>::max();
  int to = std::numeric_limits<int>::min();

  void Cover(int y) {
    from = std::min(from, y);
    to = std::max(to, y);
  }
  void Cover(const Span& other) {
    from = std::min(from, other.from);
    to = std::max(to, other.to);
  }
};

// Several times faster than the library's, which minds the processor's rounding mode.
int Rounded(double height) {
  constexpr double kShift = 1 << 28;
  return static_cast<int>(height + (kShift + 0.5)) - static_cast<int>(kShift);
}

// Gathers a part of the line that goes in one direction, and paints it at the end of that part: a
// line that turns back covers a column twice, and what lies between is not its own.
class DenseLine {
 public:
  DenseLine(QImage& image, const QRect& clip, QRgb colour, int width)
      : bits_(reinterpret_cast<QRgb*>(image.bits())),
        stride_(image.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb))),
        clip_(clip & image.rect()),
        colour_(colour),
        before_(width / 2),
        behind_((width - 1) / 2),
        first_column_(clip_.left() - width),
        spans_(static_cast<std::size_t>(std::max(0, clip_.width()) + 2 * width + 1)),
        low_(last_column()),
        high_(first_column_) {}

  void Join(QPoint from, QPoint to) {
    const int direction = to.x() > from.x() ? 1 : (to.x() < from.x() ? -1 : 0);
    if (direction * direction_ < 0) Paint();
    if (direction != 0) direction_ = direction;
    if (direction >= 0) {
      Gather(from, to);
    } else {
      Gather(to, from);
    }
  }

  void Paint() {
    // A column shows the spans of its neighbours too, as far as the pen is wide.
    const int from = std::max(low_ - before_, clip_.left());
    const int to = std::min(high_ + behind_, clip_.right());
    for (int x = from; x <= to; ++x) {
      Span span;
      for (int near = x - behind_; near <= x + before_; ++near) span.Cover(At(near));
      PaintColumn(x, span);
    }
    for (int x = low_; x <= high_; ++x) At(x) = {};
    low_ = last_column();
    high_ = first_column_;
  }

 private:
  int last_column() const { return first_column_ + static_cast<int>(spans_.size()) - 1; }
  Span& At(int x) { return spans_[static_cast<std::size_t>(x - first_column_)]; }

  // `from` is not to the right of `to`.
  void Gather(QPoint from, QPoint to) {
    const int left = std::max(from.x(), first_column_ + before_);
    const int right = std::min(to.x(), last_column() - before_);
    if (left > right) return;
    low_ = std::min(low_, left);
    high_ = std::max(high_, right);
    if (left == right && from.x() == to.x()) {
      At(left).Cover(from.y());
      At(left).Cover(to.y());
      return;
    }
    const double slope = static_cast<double>(to.y() - from.y()) / (to.x() - from.x());
    const auto right_border = [&](int x) {
      return x == to.x() ? to.y() : from.y() + Rounded(slope * (x - from.x() + 0.5));
    };
    // Neighbouring columns share the height at their border, so that the line has no gap.
    int y = left == from.x() ? from.y() : right_border(left - 1);
    for (int x = left; x <= right; ++x) {
      Span& span = At(x);
      span.Cover(y);
      y = right_border(x);
      span.Cover(y);
    }
  }

  void PaintColumn(int x, const Span& span) {
    if (span.from > span.to) return;
    const int from = std::max(span.from - before_, clip_.top());
    const int to = std::min(span.to + behind_, clip_.bottom());
    QRgb* pixel = bits_ + from * stride_ + x;
    for (int y = from; y <= to; ++y, pixel += stride_) *pixel = colour_;
  }

  QRgb* bits_;
  qsizetype stride_;
  QRect clip_;
  QRgb colour_;
  int before_;  // pixels of the pen left of and above the line, as QPainter places it
  int behind_;  // and right of and below it
  int first_column_;
  std::vector<Span> spans_;
  int low_;   // the columns that the gathered part covers
  int high_;  // below `low_` while there is none
  int direction_ = 0;
};

}  // namespace

void DrawDenseLine(QImage& image, const QRect& clip, std::span<const QPoint> points, QRgb colour,
                   int width) {
  if (points.size() < 2 || (clip & image.rect()).isEmpty()) return;
  DenseLine line(image, clip, colour, width);
  for (std::size_t i = 1; i < points.size(); ++i) line.Join(points[i - 1], points[i]);
  line.Paint();
}

}  // namespace tarnlink
