// The pictures of the help, and the key that leads to its pages. Each picture is taken of a form as
// a user would see it and compared with the one that is shipped, so that none grows stale;
// `dev/help-pictures` takes them anew.
#pragma once

#include <QWidget>
#include <string>
#include <string_view>
#include <vector>

#include "ui/help_key.h"

namespace tarnlink {

// Takes the picture of what a widget shows, or of what it shows with a box above it.
void HelpShot(QWidget& widget, const std::string& name, QWidget* above = nullptr);

// A user who presses F1 in one window after the other.
class HelpReader {
 public:
  // The pages that came up with a key in this window.
  std::vector<std::string> PagesOf(QWidget& window, Qt::Key key = Qt::Key_F1,
                                   Qt::KeyboardModifiers modifiers = {});
  // Expects this page, and nothing else, for F1 in this window.
  void ExpectPage(QWidget& window, const std::string& page);

 private:
  std::vector<std::string> opened_;
  HelpKey key_{[this](std::string_view page) { opened_.emplace_back(page); }};
};

}  // namespace tarnlink
