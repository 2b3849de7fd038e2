// Text that somebody else wrote, as a message can quote it.
#pragma once

#include <string>
#include <string_view>

namespace tarnlink {

inline constexpr int kMostShown = 200;  // characters

// The first characters of a text, or of bytes that were to be one, with "..." behind them if there
// are more. Always UTF-8 and one line: a control character is a blank, but for the tab.
std::string ShownText(std::string_view text, int most = kMostShown);

// The same for a cell of a table that tabs part: a tab is a blank, too.
std::string ShownCell(std::string_view text);

}  // namespace tarnlink
