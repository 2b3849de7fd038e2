// Arrays of controls under one name. A `ControlArray` grows: member 0 is a hidden template, the
// others are made on demand and destroyed again. A `FixedArray` has its members for good.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/controls.h"
#include "common/run_time_error.h"

namespace tarnlink {

inline std::string MemberName(const std::string& array, int index) {
  std::string name = array;
  return name.append("(").append(std::to_string(index)).append(")");
}

// Members `first` and up, one for each caption (or whatever second text `T` is made with).
template <class T>
class FixedArray {
 public:
  FixedArray(std::string name, int first, const std::vector<std::string>& texts)
      : name_(std::move(name)), first_(first) {
    members_.reserve(texts.size());
    for (const std::string& text : texts) {
      members_.push_back(std::make_unique<T>(MemberName(name_, last() + 1), text));
    }
  }

  int first() const { return first_; }
  int last() const { return first_ + static_cast<int>(members_.size()) - 1; }

  // A member that is not there throws RunTimeError 9.
  T& operator()(int index) const {
    const auto at = static_cast<std::size_t>(index - std::ptrdiff_t{first_});
    if (at >= members_.size()) {
      throw RunTimeError(kSubscript, MemberName(name_, index) + " does not exist.");
    }
    return *members_[at];
  }

 private:
  std::string name_;
  int first_;
  std::vector<std::unique_ptr<T>> members_;
};

// `T` is a PlacedControl. A view that wants to follow sets `Loaded` and `Unloading`, and reports
// what the user does to a member through the events, which the form model fills in.
template <class T>
class ControlArray {
 public:
  explicit ControlArray(std::string name) : name_(std::move(name)) {
    members_.push_back(std::make_unique<T>(MemberName(name_, 0)));
    members_[0]->Visible = false;
  }

  // A member that is not there throws RunTimeError 9.
  T& operator()(int index) const {
    if (!Has(index)) throw RunTimeError(kSubscript, MemberName(name_, index) + " does not exist.");
    return *members_[static_cast<std::size_t>(index)];
  }

  bool Has(int index) const {
    return index >= 0 && index < static_cast<int>(members_.size()) &&
           members_[static_cast<std::size_t>(index)] != nullptr;
  }

  // Makes member `index`, hidden, with the template's look, unless it is there already.
  T& Load(int index) {
    if (index < 0) throw RunTimeError(kSubscript, MemberName(name_, index) + " does not exist.");
    if (Has(index)) return (*this)(index);
    if (index >= static_cast<int>(members_.size())) {
      members_.resize(static_cast<std::size_t>(index) + 1);
    }
    auto member = std::make_unique<T>(MemberName(name_, index));
    member->Visible = false;
    member->CopyLook(*members_[0]);
    T& made = *member;
    members_[static_cast<std::size_t>(index)] = std::move(member);
    if (GiveEvents) GiveEvents(index);
    if (Loaded) Loaded(index);
    return made;
  }

  // Destroys member `index` if it is there. The template stays.
  void Unload(int index) {
    if (index == 0 || !Has(index)) return;
    if (Unloading) Unloading(index);
    members_[static_cast<std::size_t>(index)].reset();
  }

  std::function<void(int)> Loaded;
  std::function<void(int)> Unloading;

  // The form gives a member that was just made the events of its own.
  std::function<void(int)> GiveEvents;

  std::function<void(int, const MousePress&)> MouseDown;
  std::function<void(int)> DblClick;
  std::function<void(int)> DragDrop;  // what is being dragged was let go over this member
  std::function<void(int, const ArrowStep&)> Arrow;
  std::function<void(int)> DeleteKey;

 private:
  std::string name_;
  std::vector<std::unique_ptr<T>> members_;
};

}  // namespace tarnlink
