#include "platform/qt/thin_line.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tarnlink {
namespace {

constexpr qsizetype kMost = 4;  // of one column

// Moves those of [first, behind) that are kept to `to`, which is not behind them. Returns where
// they end.
QPointF* KeepOfColumn(const QPointF* first, const QPointF* behind, QPointF* to) {
  if (behind - first <= kMost) return std::copy(first, behind, to);
  const auto [highest, lowest] = std::minmax_element(
      first, behind, [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); });
  std::array<const QPointF*, kMost> kept{first, highest, lowest, behind - 1};
  std::sort(kept.begin(), kept.end());
  const auto end = std::unique(kept.begin(), kept.end());
  return std::transform(kept.begin(), end, to, [](const QPointF* point) { return *point; });
}

}  // namespace

void ThinLine(QPolygonF& points, double column) {
  const auto column_of = [column](const QPointF& point) { return std::floor(point.x() / column); };
  QPointF* const begin = points.data();
  const QPointF* const end = begin + points.size();
  QPointF* to = begin;
  for (const QPointF* first = begin; first != end;) {
    const double here = column_of(*first);
    const QPointF* behind =
        std::find_if(first, end, [&](const QPointF& point) { return column_of(point) != here; });
    if (behind == first) ++behind;  // a place that is no number
    to = KeepOfColumn(first, behind, to);
    first = behind;
  }
  points.resize(to - begin);
}

}  // namespace tarnlink
