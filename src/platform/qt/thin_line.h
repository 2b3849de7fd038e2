// A line with very many points, thinned out for paper: a picture of it, a printer and a PDF file
// would take seconds for what nobody can see.
#pragma once

#include <QPolygonF>

namespace tarnlink {

// Leaves of all points that lie behind one another in the same column, this wide and above 0, at
// most four: the first, the highest, the lowest and the last, in their order.
void ThinLine(QPolygonF& points, double column);

}  // namespace tarnlink
