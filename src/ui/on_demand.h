// Dialogs that are made when their form is first shown and stay, hidden, to the end.
#pragma once

#include <functional>

#include "common/control.h"

namespace tarnlink {

// Calls `make` the first time that `form` becomes visible. The dialog made there takes over the
// form's view.
inline void MakeOnDemand(Control& form, std::function<void()> make) {
  form.SetView([&form, make = std::move(make)] {
    if (form.Visible) make();
  });
}

}  // namespace tarnlink
