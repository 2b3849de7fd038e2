#include "common/dialog_controls.h"

#include <algorithm>

namespace tarnlink {

GroupBox::GroupBox(std::string name, const std::string& caption) : Control(std::move(name)) {
  Caption = caption;
}

void SpinButton::Press(int step) {
  if (Enabled && Step) Step(step);
}

void PickBox::Select(int index) {
  const auto count = static_cast<int>(List->size());
  const bool is_row = index >= 0 && index < count;
  ListIndex = is_row ? index : -1;
  if (is_row) Text = List.get()[static_cast<std::size_t>(index)].text;
}

void PickBox::SelectText(const std::string& text) {
  const auto& rows = List.get();
  const auto row =
      std::find_if(rows.begin(), rows.end(), [&](const Item& each) { return each.text == text; });
  Text = text;
  ListIndex = row == rows.end() ? -1 : static_cast<int>(row - rows.begin());
}

void PickBox::Pick(int index) {
  if (!Enabled) return;
  Select(index);
  if (Click) Click();
}

void PickBox::Accept(const std::string& text) {
  if (!Enabled) return;
  SelectText(text);
  if (Click) Click();
}

}  // namespace tarnlink
