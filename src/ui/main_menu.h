// The menu bar of the main form.
#pragma once

#include <QMenuBar>

#include "monitor/frm_main.h"

namespace tarnlink {

// Fills `bar` with the menus of `main`, each entry bound to its action. `tools` are the tool bar's
// actions; those that edit the screen stand in the Edit menu too.
void BuildMainMenu(QMenuBar* bar, frm_Main& main, const QList<QAction*>& tools);

}  // namespace tarnlink
