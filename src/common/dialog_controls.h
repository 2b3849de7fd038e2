// Kinds of controls that only dialogs have.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/controls.h"

namespace tarnlink {

// A frame around other controls.
class GroupBox : public Control {
 public:
  explicit GroupBox(std::string name, const std::string& caption = {});

  Property<std::string> Caption{this, {}};
};

// Two arrows beside a text box. What a step means is the form's to say.
class SpinButton : public Control {
 public:
  using Control::Control;

  // `step` is 1 or -1; nothing happens while the button is disabled.
  void Press(int step);

  std::function<void(int step)> Step;
};

// A bar that shows how many of so many are done.
class CountBar : public Control {
 public:
  using Control::Control;

  Property<int> Max{this, 1};
  Property<int> Value{this, 0};  // 0 to Max
};

// Rows of text to look at and to pick from.
class ListBox : public Control {
 public:
  using Control::Control;

  Property<std::vector<std::string>> List{this, {}};
  std::function<void(int row)> DblClick;  // reported by the view
};

// A combo box that knows which of its rows is picked.
class PickBox : public ComboBox {
 public:
  using ComboBox::ComboBox;

  Property<int> ListIndex{this, -1};  // -1 while none is

  // The program's choice: the row and its text, or none and the text as it was. Fires nothing.
  void Select(int index);
  // The same by a text: the first row of just that text if there is one.
  void SelectText(const std::string& text);
  // What the user does: picks a row, or types a text and accepts it. Both fire `Click`; nothing
  // happens while the box is disabled.
  void Pick(int index);
  void Accept(const std::string& text);

  std::function<void()> Click;
};

}  // namespace tarnlink
