// The caption rows beside the picture: name, value and unit of each line that has one.
#pragma once

#include <string>

#include "graph/frm_graphic.h"

namespace tarnlink {

// Fills `lblVal` row by row, as many rows as it has; the labels behind them are hidden.
void ShowCaptions(frmGraphic& graph);

// The shortest text of a value, at most seven digits, with the decimal separator of the locale.
std::string CaptionValue(float value, const std::string& decimal_separator);

// "°C", "rpm", "bar" or "%", otherwise nothing.
std::string UnitText(int unit);

}  // namespace tarnlink
