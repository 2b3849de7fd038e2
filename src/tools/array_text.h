// A text box that can be a member of a fixed array.
#pragma once

#include <string>
#include <utility>

#include "common/controls.h"

namespace tarnlink {

class ArrayText : public TextBox {
 public:
  ArrayText(std::string name, const std::string& text) : TextBox(std::move(name)) { Text = text; }
};

}  // namespace tarnlink
