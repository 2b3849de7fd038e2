#include "platform/qt/dense_line.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace tarnlink {
namespace {

// Several times faster than the library's, which minds the processor's rounding mode.
int Rounded(double height) {
  constexpr double kShift = 1 << 28;
  return static_cast<int>(height + (kShift + 0.5)) - static_cast<int>(kShift);
}

int Modulo(int number, int period) {
  const int rest = number % period;
  return rest < 0 ? rest + period : rest;
}

// Drawn and left out by turns, in widths of the pen: as Qt's own pen styles.
std::span<const int> PatternOf(DrawStyle style) {
  static constexpr int kDash[] = {4, 2};
  static constexpr int kDot[] = {1, 2};
  static constexpr int kDashDot[] = {4, 2, 1, 2};
  static constexpr int kDashDotDot[] = {4, 2, 1, 2, 1, 2};
  switch (style) {
    case DrawStyle::kDash:
      return kDash;
    case DrawStyle::kDot:
      return kDot;
    case DrawStyle::kDashDot:
      return kDashDot;
    case DrawStyle::kDashDotDot:
      return kDashDotDot;
    case DrawStyle::kSolid:
      break;
  }
  return {};
}

// Never inside an image, but inside what the number can hold.
std::int16_t Near(int y) {
  constexpr int kFarthest = 32'700;
  return static_cast<std::int16_t>(std::clamp(y, -kFarthest, kFarthest));
}

constexpr int kBits = 64;  // of a word of rows

// The rows `from` to `to` of a word whose first row is `first`.
std::uint64_t RowBits(int first, int from, int to) {
  const std::uint64_t all = ~std::uint64_t{0};
  const int skipped = std::max(from - first, 0);
  const int beyond = std::max(first + kBits - 1 - to, 0);
  return all << skipped & all >> beyond;
}

}  // namespace

bool DenseLines::Run::IsGap(int column) const {
  const auto period = static_cast<int>(dashes->is_drawn.size());
  return !dashes->is_drawn[static_cast<std::size_t>(Modulo(column + pen.dash_origin, period))];
}

// --- Gathering -----------------------------------------------------------------------------------

// Follows a line. The column that it is in stays open until it leaves it; the columns between two
// points are finished at once. A line that turns back begins a new run, since what lies between its
// two passes of a column is not its own.
class DenseLines::Gathering {
 public:
  Gathering(DenseLines& lines, const Run& run, const QPoint& begin)
      : lines_(lines),
        run_(run),
        left_(run.clip.left() - run.pen.width),
        right_(run.clip.right() + run.pen.width),
        at_(begin),
        open_{begin.y(), begin.y()} {
    run_.begin = lines_.pieces_.size();
  }

  void GoTo(const QPoint& to) {
    const int columns = to.x() - at_.x();
    if (columns != 0) {
      const bool goes_right = columns > 0;
      if (goes_right != run_.goes_right) TurnBack(goes_right);
      // A line that stays on its row, which is what most do.
      if (to.y() == at_.y() && kept_ == open_ && open_.from == open_.to) {
        kept_end_ = to.x() - (goes_right ? 1 : -1);
        at_ = to;
        return;
      }
      Leave(to, columns);
    }
    open_.Cover(to.y());
    at_ = to;
  }

  void Finish() {
    Keep(at_.x(), at_.x(), open_);
    Store();
    run_.end = lines_.pieces_.size();
    if (run_.end > run_.begin) lines_.runs_.push_back(run_);
    run_.begin = run_.end;
  }

 private:
  struct Rows {
    int from = 0;
    int to = -1;

    bool operator==(const Rows&) const = default;
    void Cover(int y) {
      from = std::min(from, y);
      to = std::max(to, y);
    }
  };

  void TurnBack(bool goes_right) {
    Finish();
    open_ = {at_.y(), at_.y()};
    run_.goes_right = goes_right;
  }

  // Neighbouring columns share the height at their border, so that the line has no gap.
  void Leave(const QPoint& to, int columns) {
    const int step = columns > 0 ? 1 : -1;
    const int count = columns * step;
    if (to.y() == at_.y()) {
      Keep(at_.x(), at_.x(), open_);
      if (count > 1) Keep(at_.x() + step, to.x() - step, {to.y(), to.y()});
      open_ = {to.y(), to.y()};
      return;
    }
    const double slope = static_cast<double>(to.y() - at_.y()) / count;
    const auto border = [&](int column) { return at_.y() + Rounded(slope * (column + 0.5)); };
    int y = border(0);
    open_.Cover(y);
    Keep(at_.x(), at_.x(), open_);
    // Only columns in sight; the way there may be long.
    const int first = step > 0 ? left_ - at_.x() : at_.x() - right_;
    const int last = step > 0 ? right_ - at_.x() : at_.x() - left_;
    int column = 1;
    if (first > column) {
      column = std::min(first, count);
      y = border(column - 1);
    }
    for (const int end = std::min(last, count - 1); column <= end; ++column) {
      Rows rows{y, y};
      y = border(column);
      rows.Cover(y);
      Keep(at_.x() + column * step, at_.x() + column * step, rows);
    }
    if (column < count) y = border(count - 1);
    open_ = {y, y};
  }

  // The columns from `one` to `other`, in the direction of the run. Those that are alike are put
  // together.
  void Keep(int one, int other, const Rows& rows) {
    if (rows == kept_) {
      kept_end_ = other;
      return;
    }
    Store();
    kept_ = rows;
    kept_begin_ = one;
    kept_end_ = other;
  }

  void Store() {
    const int first = std::max(run_.goes_right ? kept_begin_ : kept_end_, left_);
    const int last = std::min(run_.goes_right ? kept_end_ : kept_begin_, right_);
    const Rows rows = std::exchange(kept_, {});
    if (first > last || rows.from > rows.to) return;
    const Piece piece{static_cast<std::int16_t>(first), static_cast<std::int16_t>(last),
                      Near(rows.from), Near(rows.to)};
    lines_.columns_ += last - first + 1;
    lines_.area_ += std::int64_t{last - first + 1} * (piece.to - piece.from + run_.pen.width);
    lines_.pieces_.push_back(piece);
  }

  DenseLines& lines_;
  Run run_;
  const int left_;
  const int right_;
  QPoint at_;
  Rows open_;  // what is covered so far of the column of `at_`
  Rows kept_;  // none if the ends are the wrong way round
  int kept_begin_ = 0;
  int kept_end_ = 0;
};

void DenseLines::Add(std::span<const QPoint> points, const QRect& clip, const DensePen& pen) {
  constexpr std::size_t kFew = 1 << 11;  // as many as the processor has at hand
  constexpr std::size_t kMost = 1 << 20;
  const QRect area = clip & image_.rect();
  if (points.size() < 2 || area.isEmpty()) return;
  if (pieces_.size() > kMost || (pieces_.size() > kFew && !IsCrowded())) Paint();
  Gathering gathering(*this, {.clip = area, .pen = pen, .dashes = DashesOf(pen)}, points.front());
  for (const QPoint& point : points.subspan(1)) gathering.GoTo(point);
  gathering.Finish();
}

const DenseLines::Dashes* DenseLines::DashesOf(const DensePen& pen) {
  const std::span<const int> pattern = PatternOf(pen.style);
  if (pattern.empty()) return nullptr;
  Dashes& dashes = dashes_[{pen.style, pen.width}];
  if (!dashes.is_drawn.empty()) return &dashes;
  bool is_drawn = true;
  for (const int length : pattern) {
    dashes.is_drawn.insert(dashes.is_drawn.end(),
                           static_cast<std::size_t>(length) * static_cast<std::size_t>(pen.width),
                           is_drawn);
    is_drawn = !is_drawn;
  }
  const auto rows = static_cast<std::size_t>(image_.height());
  dashes.rows.assign(rows / kBits + 1, 0);
  for (std::size_t y = 0; y < rows; ++y) {
    const bool is_on = dashes.is_drawn[y % dashes.is_drawn.size()];
    dashes.rows[y / kBits] |= std::uint64_t{is_on} << y % kBits;
  }
  return &dashes;
}

// --- Painting ------------------------------------------------------------------------------------

void DenseLines::Paint() {
  if (runs_.empty()) return;
  bits_ = reinterpret_cast<QRgb*>(image_.bits());
  stride_ = image_.bytesPerLine() / static_cast<std::ptrdiff_t>(sizeof(QRgb));
  if (IsCrowded()) {
    PaintFromTheTop();
  } else {
    for (const Run& run : runs_) PaintInOrder(run);
  }
  runs_.clear();
  pieces_.clear();
  columns_ = 0;
  area_ = 0;
}

// Whether lines cover one another so much that looking for it is worth while.
bool DenseLines::IsCrowded() const {
  constexpr std::int64_t kTall = 5;   // pixels of a column of a line, on average
  constexpr std::int64_t kShort = 4;  // a run of this part of the picture's width
  const auto runs = static_cast<std::int64_t>(runs_.size());
  return image_.height() <= kBits * kWords && area_ > kTall * columns_ &&
         runs * image_.width() <= kShort * columns_;
}

void DenseLines::PaintInOrder(const Run& run) {
  const int before = run.before();
  const int behind = run.behind();
  for (std::size_t i = run.begin; i < run.end; ++i) {
    const Piece& piece = pieces_[i];
    const int first = std::max(piece.first - before, run.clip.left());
    const int last = std::min(piece.last + behind, run.clip.right());
    const int top = std::max(piece.from - before, run.clip.top());
    const int bottom = std::min(piece.to + behind, run.clip.bottom());
    if (run.dashes == nullptr) {
      PaintBox(run.pen.colour, first, last, top, bottom);
    } else if (piece.IsFlat()) {
      for (int x = first; x <= last; ++x) {
        if (!run.IsGap(x)) PaintBox(run.pen.colour, x, x, top, bottom);
      }
    } else {
      for (int y = top; y <= bottom; ++y) {
        const std::uint64_t rows = run.dashes->rows[static_cast<std::size_t>(y / kBits)];
        if ((rows >> y % kBits & 1) != 0) PaintBox(run.pen.colour, first, last, y, y);
      }
    }
  }
}

void DenseLines::PaintBox(QRgb colour, int first, int last, int top, int bottom) {
  if (first > last) return;
  QRgb* row = Pixel(first, top);
  for (int y = top; y <= bottom; ++y, row += stride_) {
    for (int i = 0; i <= last - first; ++i) row[i] = colour;
  }
}

void DenseLines::PaintFromTheTop() {
  for (Run& run : runs_) {
    if (!run.goes_right) {
      std::reverse(pieces_.begin() + static_cast<std::ptrdiff_t>(run.begin),
                   pieces_.begin() + static_cast<std::ptrdiff_t>(run.end));
    }
  }
  for (int x = 0; x < image_.width(); ++x) PaintColumn(x);
}

// From the last line back: each draws only what those before it have left.
void DenseLines::PaintColumn(int x) {
  const int words = (image_.height() - 1) / kBits + 1;
  for (int i = 0; i < words; ++i) {
    covered_[static_cast<std::size_t>(i)] = ~RowBits(i * kBits, 0, image_.height() - 1);
  }
  uncovered_ = RowBits(0, 0, words - 1);
  for (auto run = runs_.rbegin(); run != runs_.rend() && uncovered_ != 0; ++run) {
    if (x >= run->clip.left() && x <= run->clip.right()) PaintRunInColumn(*run, x);
  }
}

// The pieces go from left to right and so do the columns: what lies behind is never looked at
// again.
void DenseLines::PaintRunInColumn(Run& run, int x) {
  while (run.begin < run.end && pieces_[run.begin].last + run.behind() < x) ++run.begin;
  for (std::size_t i = run.begin; i < run.end && pieces_[i].first - run.before() <= x; ++i) {
    PaintUncovered(run, pieces_[i], x);
  }
}

void DenseLines::PaintUncovered(const Run& run, const Piece& piece, int x) {
  const bool has_gaps = run.dashes != nullptr && !piece.IsFlat();
  if (run.dashes != nullptr && piece.IsFlat() && run.IsGap(x)) return;
  const int top = std::max(piece.from - run.before(), run.clip.top());
  const int bottom = std::min(piece.to + run.behind(), run.clip.bottom());
  if (top > bottom) return;
  std::uint64_t words = RowBits(0, top / kBits, bottom / kBits) & uncovered_;
  for (; words != 0; words &= words - 1) {
    const int word = std::countr_zero(words);
    std::uint64_t& covered = covered_[static_cast<std::size_t>(word)];
    std::uint64_t rows = RowBits(word * kBits, top, bottom) & ~covered;
    if (has_gaps) rows &= run.dashes->rows[static_cast<std::size_t>(word)];
    covered |= rows;
    if (~covered == 0) uncovered_ &= ~(std::uint64_t{1} << word);
    PaintRows(run.pen.colour, x, word * kBits, rows);
  }
}

void DenseLines::PaintRows(QRgb colour, int x, int first_row, std::uint64_t rows) {
  QRgb* pixel = Pixel(x, first_row);
  while (rows != 0) {
    const int skipped = std::countr_zero(rows);
    rows >>= skipped;
    const int count = std::countr_one(rows);
    pixel += skipped * stride_;
    for (int i = 0; i < count; ++i, pixel += stride_) *pixel = colour;
    rows = count < kBits ? rows >> count : 0;
  }
}

void DrawDenseLine(QImage& image, const QRect& clip, std::span<const QPoint> points,
                   const DensePen& pen) {
  DenseLines lines(image);
  lines.Add(points, clip, pen);
  lines.Paint();
}

}  // namespace tarnlink
