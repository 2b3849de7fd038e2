// A text that grows at its end, such as the list of what a tool has done. However long it is,
// adding to it costs no more than what is added.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "common/control.h"

namespace tarnlink {

class GrowingText : public Control {
 public:
  using Control::Control;

  const std::string& Text() const { return text_; }
  // Another text in place of all that stands there.
  void Begin(std::string text) {
    text_ = std::move(text);
    ++beginnings_;
    changes_ = changes_ + 1;
  }
  void Append(std::string_view text) {
    text_ += text;
    changes_ = changes_ + 1;
  }
  // How often it began anew: as long as that stays, what was seen of it still holds.
  int beginnings() const { return beginnings_; }

 private:
  std::string text_;
  int beginnings_ = 0;
  Property<int> changes_{this, 0};
};

}  // namespace tarnlink
