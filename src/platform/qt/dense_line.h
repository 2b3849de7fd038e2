// Lines with many points, drawn straight into an image column by column of pixels. QPainter's own
// polylines of width 2, and dashed ones, take seconds where this takes milliseconds.
#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QRgb>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <utility>
#include <vector>

#include "platform/drawing_surface.h"

namespace tarnlink {

struct DensePen {
  QRgb colour = 0;
  int width = 1;  // pixels
  DrawStyle style = DrawStyle::kSolid;
  // Where column 0 stands in the pattern of a style with gaps. It counts in columns where a line
  // runs flat, otherwise in rows, so that it keeps to its place whatever is drawn of the line.
  int dash_origin = 0;
};

// Remembers lines and then paints them together: what later ones cover is not drawn at all.
class DenseLines {
 public:
  // In RGB32 format; it outlives this.
  explicit DenseLines(QImage& image) : image_(image) {}

  // Joins `points` in order, inside `clip`.
  void Add(std::span<const QPoint> points, const QRect& clip, const DensePen& pen);
  // Everything since the last time, in the order in which it was added.
  void Paint();

 private:
  static constexpr int kWords = 64;  // of rows: as many as a word has bits

  // What a line covers of some neighbouring pixel columns, without the width of its pen. All ends
  // are included.
  struct Piece {
    std::int16_t first = 0;
    std::int16_t last = 0;
    std::int16_t from = 0;  // rows
    std::int16_t to = 0;

    bool IsFlat() const { return to - from <= 1; }
  };
  // A pattern of pixels: drawn or not, over and over again.
  struct Dashes {
    std::vector<bool> is_drawn;       // one period
    std::vector<std::uint64_t> rows;  // of the image, a bit for each
  };
  // A part of a line that goes in one direction; its pieces lie in `pieces_` in that order.
  struct Run {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool goes_right = false;
    QRect clip;
    DensePen pen;
    const Dashes* dashes = nullptr;  // null if there are no gaps

    int before() const { return pen.width / 2; }  // pixels of the pen left of and above the line
    int behind() const { return (pen.width - 1) / 2; }  // and right of and below it
    bool IsGap(int column) const;
  };
  class Gathering;

  const Dashes* DashesOf(const DensePen& pen);
  bool IsCrowded() const;
  void PaintInOrder(const Run& run);
  void PaintBox(QRgb colour, int first, int last, int top, int bottom);
  void PaintFromTheTop();
  void PaintColumn(int x);
  void PaintRunInColumn(Run& run, int x);
  void PaintUncovered(const Run& run, const Piece& piece, int x);
  void PaintRows(QRgb colour, int x, int first_row, std::uint64_t rows);
  QRgb* Pixel(int x, int y) { return bits_ + y * stride_ + x; }

  QImage& image_;
  QRgb* bits_ = nullptr;
  std::ptrdiff_t stride_ = 0;
  std::vector<Piece> pieces_;
  std::vector<Run> runs_;
  std::int64_t columns_ = 0;  // of all pieces
  std::int64_t area_ = 0;     // their pixels
  // Of the column that is being painted: a bit for each row, and one for each word that still has
  // such a row.
  std::array<std::uint64_t, kWords> covered_{};
  std::uint64_t uncovered_ = 0;
  std::map<std::pair<DrawStyle, int>, Dashes> dashes_;
};

// One line at once.
void DrawDenseLine(QImage& image, const QRect& clip, std::span<const QPoint> points,
                   const DensePen& pen);

}  // namespace tarnlink
