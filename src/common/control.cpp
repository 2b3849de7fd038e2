#include "common/control.h"

namespace tarnlink {

void PropertyBase::Tell() { owner_->Changed(*this); }

void Control::Changed(const PropertyBase&) {
  if (!view_) return;
  // A copy, because a view may hand over to another one.
  const auto view = view_;
  view();
}

}  // namespace tarnlink
