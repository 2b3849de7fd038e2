// Which page of the help tells of which form.
#pragma once

#include <span>
#include <string_view>

namespace tarnlink {

struct HelpChapter {
  std::string_view form;  // its given name
  std::string_view page;  // a file of the help
};

inline constexpr std::string_view kHelpStart = "HELP.HTML";

// Every form that has a window or is a panel of the main window.
std::span<const HelpChapter> HelpChapters();

// The page of a form; empty for a name that is none.
std::string_view HelpPageOf(std::string_view form);

}  // namespace tarnlink
