// The kinds of controls that forms are made of. Events are plain members that the form model fills
// in; a view reports what the user did through `Press`, `Choose` and the property setters.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/control.h"

namespace tarnlink {

// 0x00BBGGRR, or a system colour with the high bit set.
using Colour = std::int32_t;

inline constexpr Colour kWhite = 0xFFFFFF;
inline constexpr Colour kBlack = 0;
inline constexpr Colour kWindowBackground = static_cast<Colour>(0x80000005);
inline constexpr Colour kFormBackground = static_cast<Colour>(0x8000000F);

struct Font {
  std::string name = "Sans Serif";
  float size = 8.25F;  // points
  bool bold = false;
  bool italic = false;

  bool operator==(const Font&) const = default;
};

enum class MouseButton { kLeft, kRight, kMiddle };

// A button of the mouse that goes down on a control; X and Y count from the control's corner, in
// units of 1440 to the inch.
struct MousePress {
  MouseButton button = MouseButton::kLeft;
  bool shift = false;
  float X = 0.0F;
  float Y = 0.0F;
};

// One press of an arrow key on a control that can be moved.
struct ArrowStep {
  int right = 0;       // 1, 0 or -1
  int down = 0;        // 1, 0 or -1
  bool other = false;  // with Shift: the step that is not the usual one
};

// A control with a place on a form, in units of 1440 to the inch.
class PlacedControl : public Control {
 public:
  using Control::Control;

  Property<float> Top{this, 0.0F};
  Property<float> Left{this, 0.0F};
  Property<float> Width{this, 0.0F};
  Property<float> Height{this, 0.0F};
  Property<Colour> BackColor{this, kWindowBackground};
  Property<Colour> ForeColor{this, kBlack};
  Property<Font> TextFont{this, Font{}};

  // Takes over place, size, colours and font: a new member of an array begins as its template.
  void CopyLook(const PlacedControl& from);
};

class TextBox : public PlacedControl {
 public:
  using PlacedControl::PlacedControl;

  Property<std::string> Text{this, {}};
  Property<bool> Locked{this, false};
  // How many characters the user can type; 0 is any number. A longer text that the program has set
  // stays whole until it is typed over.
  Property<int> MaxLength{this, 0};
  // A value that has not been confirmed for a while: its letters are grey, and nothing else
  // changes.
  Property<bool> IsOld{this, false};
  // When a value came in last, as the clock's `Elapsed` has it.
  std::optional<std::chrono::microseconds> AnsweredAt;
  std::function<void()> Change;     // after each change of Text, by whomever
  std::function<void()> LostFocus;  // reported by the view

 protected:
  void Changed(const PropertyBase& which) override;
};

// A check box. `Click` fires on each change of the value, by the user or by the program.
class CheckBox : public PlacedControl {
 public:
  explicit CheckBox(std::string name, const std::string& caption = {});

  Property<std::string> Caption{this, {}};
  Property<bool> Value{this, false};
  std::function<void()> Click;

 protected:
  void Changed(const PropertyBase& which) override;
};

class Label : public PlacedControl {
 public:
  explicit Label(std::string name, const std::string& caption = {});

  Property<std::string> Caption{this, {}};
};

class CommandButton : public Control {
 public:
  explicit CommandButton(std::string name, const std::string& caption = {});

  // What a user does; nothing happens while the button is disabled or hidden.
  void Press();

  Property<std::string> Caption{this, {}};
  std::function<void()> Click;
};

// An entry of a menu or a button of a tool bar. "&" in the caption marks the mnemonic.
class MenuEntry : public CommandButton {
 public:
  using CommandButton::CommandButton;

  Property<bool> Checked{this, false};
};

class Slider : public Control {
 public:
  Slider(std::string name, int lowest, int highest, int value);

  const int minimum;
  const int maximum;
  Property<int> Value{this, 0};  // a value outside the range is held at its end
  std::function<void()> Change;

  void SetValue(int value);

 protected:
  void Changed(const PropertyBase& which) override;
};

// A box with a list to pick from and a text that can also be typed.
class ComboBox : public Control {
 public:
  struct Item {
    std::string text;
    int data = 0;
    bool operator==(const Item&) const = default;
  };

  using Control::Control;

  Property<std::vector<Item>> List{this, {}};
  Property<std::string> Text{this, {}};
  std::function<void()> Change;

 protected:
  void Changed(const PropertyBase& which) override;
};

class StatusPanel : public Control {
 public:
  StatusPanel(std::string name, const std::string& tool_tip);

  Property<std::string> Text{this, {}};
};

// One button of an option group; use it through its group.
class OptionButton : public Control {
 public:
  OptionButton(std::string name, const std::string& caption);

  Property<std::string> Caption{this, {}};
  Property<bool> Value{this, false};

 private:
  friend class OptionGroup;
  void Changed(const PropertyBase& which) override;
  std::function<void()> value_changed_;
};

// Option buttons of which at most one is set. Setting one, by `Choose` or by its Value, clears the
// others and fires `Click` with its index. `Clear` leaves none set and fires nothing.
class OptionGroup {
 public:
  OptionGroup(const std::string& name, const std::vector<std::string>& captions);

  int count() const { return static_cast<int>(buttons_.size()); }
  // An index outside the group throws RunTimeError 9.
  OptionButton& operator()(int index);
  const OptionButton& operator()(int index) const;
  // -1 while none is set.
  int Selected() const;
  // The program's choice: setting the button that is set already is no change and fires nothing.
  void Select(int index);
  // The user's click: fires `Click` also on the button that is set already.
  void Choose(int index);
  void Clear();

  std::function<void(int)> Click;

 private:
  void ButtonChanged(int index);

  std::vector<std::unique_ptr<OptionButton>> buttons_;
};

}  // namespace tarnlink
