// The picture of grid, lines and lanes, kept between paintings. While time runs on it moves to the
// left by whole pixels, and only what is new is drawn.
#pragma once

#include <QImage>
#include <QSize>
#include <cstdint>
#include <vector>

#include "graph/graph_geometry.h"
#include "graph/graph_picture.h"
#include "graph/graphic.h"

namespace tarnlink {

class GraphImage {
 public:
  // Brings the picture up to date. `size` is in pixels of the widget, of which each has `ratio` by
  // `ratio` on the screen; `lane_height` and `MeasOnly` as for `GraphPicture`. The time at the
  // right edge is that of `view`, or less than a pixel older.
  void Update(const Graphic& data, const GraphView& view, float lane_height, bool MeasOnly,
              const QSize& size, double ratio = 1.0);
  // The same, all of it drawn anew, with the times at the same places.
  void Redraw(const Graphic& data);
  // Without the cursor, which moves more often.
  const QImage& image() const { return image_; }
  // How far it has moved since all of it was drawn, in pixels of the screen.
  int shift() const { return shift_; }

 private:
  // What a line is drawn from, apart from its samples.
  struct LineLook {
    int index = 0;
    Colour colour = 0;
    int style = 0;
    std::int32_t unit = 0;
    float factor = 0;
    std::int32_t stored_as = 0;
    std::int64_t filling = 0;

    bool operator==(const LineLook&) const = default;
  };
  // What the whole picture is drawn from, apart from samples and the time at its right edge.
  struct Look {
    int time_scale = 0;
    float width = 0;
    float height = 0;
    float lane_height = 0;
    bool meas_only = false;
    QSize size;
    double ratio = 0;
    Colour grid = 0;
    Colour background = 0;
    int channels = 0;
    std::vector<LineLook> lines;

    bool operator==(const Look&) const = default;
  };
  // The samples of a line in the picture, by their numbers.
  struct Drawn {
    std::int64_t newest = 0;
    std::int64_t oldest = 0;
  };

  static Look LookOf(const Graphic& data, const GraphView& view, float lane_height, bool MeasOnly,
                     const QSize& size, double ratio);
  void Begin(const Graphic& data, const GraphView& view);
  bool CanMove(const Graphic& data, const GraphView& view) const;
  int ShiftOf(Date base) const;
  int FirstChange(const Graphic& data, int moved) const;
  std::int64_t SecondsAt(int column) const;
  std::int64_t NewestOf(const MeasureChannel& channel) const;
  void NoteNewest(const Graphic& data);
  void NoteOldest(const Graphic& data);
  void MoveLeft(int columns);
  void Draw(const Graphic& data, int first_column);
  int Margin() const;
  double UnitsPerPixel() const;
  GraphPens Pens() const;

  QImage image_;
  Look look_;
  GraphView view_;  // when all of it was drawn
  Date base_ = 0;   // at the right edge now
  int shift_ = 0;   // columns that it has moved since
  int dash_origin_ = 0;
  std::vector<Drawn> drawn_;  // of each line of the look
};

}  // namespace tarnlink
