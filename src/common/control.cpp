#include "common/control.h"

namespace tarnlink {

void PropertyBase::Tell() { owner_->Changed(*this); }

void Control::Changed(const PropertyBase&) {
  // A copy, because a view may hand over to another one.
  const auto view = view_;
  if (view) view();
}

}  // namespace tarnlink
