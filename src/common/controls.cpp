#include "common/controls.h"

#include <algorithm>

#include "common/run_time_error.h"

namespace tarnlink {

void PlacedControl::CopyLook(const PlacedControl& from) {
  Top = from.Top;
  Left = from.Left;
  Width = from.Width;
  Height = from.Height;
  BackColor = from.BackColor;
  ForeColor = from.ForeColor;
  TextFont = from.TextFont;
}

void TextBox::Changed(const PropertyBase& which) {
  PlacedControl::Changed(which);
  if (&which == &Text && Change) Change();
}

CheckBox::CheckBox(std::string name, const std::string& caption) : PlacedControl(std::move(name)) {
  Caption = caption;
}

void CheckBox::Changed(const PropertyBase& which) {
  PlacedControl::Changed(which);
  if (&which == &Value && Click) Click();
}

Label::Label(std::string name, const std::string& caption) : PlacedControl(std::move(name)) {
  Caption = caption;
}

CommandButton::CommandButton(std::string name, const std::string& caption)
    : Control(std::move(name)) {
  Caption = caption;
}

void CommandButton::Press() {
  if (Visible && Enabled && Click) Click();
}

Slider::Slider(std::string name, int lowest, int highest, int value)
    : Control(std::move(name)), minimum(lowest), maximum(highest) {
  SetValue(value);
}

void Slider::SetValue(int value) { Value = std::clamp(value, minimum, maximum); }

void Slider::Changed(const PropertyBase& which) {
  if (Value < minimum || Value > maximum) {
    SetValue(Value);  // comes back here with a value that stands
    return;
  }
  Control::Changed(which);
  if (&which == &Value && Change) Change();
}

void ComboBox::Changed(const PropertyBase& which) {
  Control::Changed(which);
  if (&which == &Text && Change) Change();
}

StatusPanel::StatusPanel(std::string name, const std::string& tool_tip) : Control(std::move(name)) {
  ToolTipText = tool_tip;
}

OptionButton::OptionButton(std::string name, const std::string& caption)
    : Control(std::move(name)) {
  Caption = caption;
}

void OptionButton::Changed(const PropertyBase& which) {
  Control::Changed(which);
  if (&which == &Value && value_changed_) value_changed_();
}

OptionGroup::OptionGroup(const std::string& name, const std::vector<std::string>& captions) {
  for (std::size_t i = 0; i < captions.size(); ++i) {
    const int index = static_cast<int>(i);
    buttons_.push_back(
        std::make_unique<OptionButton>(name + "(" + std::to_string(index) + ")", captions[i]));
    buttons_.back()->value_changed_ = [this, index] { ButtonChanged(index); };
  }
}

OptionButton& OptionGroup::operator()(int index) {
  return const_cast<OptionButton&>(std::as_const(*this)(index));
}

const OptionButton& OptionGroup::operator()(int index) const {
  if (index < 0 || index >= count()) {
    throw RunTimeError(kSubscript, "An option group has no button " + std::to_string(index) + ".");
  }
  return *buttons_[static_cast<std::size_t>(index)];
}

int OptionGroup::Selected() const {
  for (int i = 0; i < count(); ++i) {
    if ((*this)(i).Value) return i;
  }
  return -1;
}

void OptionGroup::Select(int index) { (*this)(index).Value = true; }

void OptionGroup::Choose(int index) {
  if ((*this)(index).Value) {
    if (Click) Click(index);
  } else {
    Select(index);
  }
}

void OptionGroup::Clear() {
  for (auto& button : buttons_) button->Value = false;
}

void OptionGroup::ButtonChanged(int index) {
  if (!(*this)(index).Value) return;
  for (int i = 0; i < count(); ++i) {
    if (i != index) (*this)(i).Value = false;
  }
  if (Click) Click(index);
}

}  // namespace tarnlink
