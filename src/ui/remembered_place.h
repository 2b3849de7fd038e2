// Where a window stood and how large it was, kept from one start of the program to the next.
#pragma once

#include <QWidget>

#include "platform/settings_store.h"

namespace tarnlink {

// To be called before `window`, which has its object name and usual size, is first shown. Each time
// that it comes up it stands where it was left, on a screen that is there. `settings` outlives it.
void RememberPlace(QWidget* window, SettingsStore& settings);

}  // namespace tarnlink
