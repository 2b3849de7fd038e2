// The menu bar of the main form.
#pragma once

#include <QMenuBar>

#include "monitor/frm_main.h"

namespace tarnlink {

// Fills `bar` with the menus of `main`, each entry bound to its action.
void BuildMainMenu(QMenuBar* bar, frm_Main& main);

}  // namespace tarnlink
