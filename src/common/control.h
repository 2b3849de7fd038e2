// Controls as state: what a form shows and what its user did, without a toolkit. A form model owns
// its controls under their given names; a view watches each control and shows it.
#pragma once

#include <functional>
#include <string>
#include <utility>

namespace tarnlink {

class Control;

// What every property has in common: the control that is told of a change.
class PropertyBase {
 public:
  explicit PropertyBase(Control* owner) : owner_(owner) {}
  PropertyBase(const PropertyBase&) = delete;
  PropertyBase& operator=(const PropertyBase&) = delete;

 protected:
  ~PropertyBase() = default;
  void Tell();

 private:
  Control* owner_;
};

// One property of a control. Assigning an equal value is no change and tells nobody.
template <class T>
class Property final : public PropertyBase {
 public:
  Property(Control* owner, T initial) : PropertyBase(owner), value_(std::move(initial)) {}

  Property& operator=(const T& value) {
    if (value == value_) return *this;
    value_ = value;
    Tell();
    return *this;
  }

  // From another property its value is taken, never its control.
  Property& operator=(const Property& other) { return *this = other.value_; }

  operator const T&() const { return value_; }
  const T& get() const { return value_; }
  const T* operator->() const { return &value_; }

 private:
  T value_;
};

// The base of all controls. A control stays where it is for its whole life: its properties and its
// view point at it.
class Control {
 public:
  explicit Control(std::string name) : name_(std::move(name)) {}
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control() = default;

  // The given name, with the index in round brackets for a member of an array: "opt_Protocol(1)".
  const std::string& name() const { return name_; }

  // `view` is called after each change of any property; one view at a time, none to let go.
  void SetView(std::function<void()> view) { view_ = std::move(view); }

  Property<bool> Visible{this, true};
  Property<bool> Enabled{this, true};
  Property<std::string> ToolTipText{this, {}};

 protected:
  friend class PropertyBase;
  // Kinds with an event of their own extend this: the view is told first, then the event fires.
  virtual void Changed(const PropertyBase& which);

 private:
  std::string name_;
  std::function<void()> view_;
};

}  // namespace tarnlink
