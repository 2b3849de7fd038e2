// Pages drawn while the window goes on: a graph of many hours takes longer than a window may stand
// still.
#pragma once

#include <functional>

#include "platform/qt/qt_surface.h"

class QPrinter;

namespace tarnlink {

using DrawPages = std::function<void(DrawingSurface&)>;

// Runs `draw`, which draws on surfaces that it makes itself and that stop when they are told to, as
// in `QtSurface::StopWhen`. Soon a small window tells what is waited for. False if the user has
// stopped that: nothing is drawn any more when this comes back, and all surfaces are gone.
bool DrawBesideLoop(const std::function<void(const std::function<bool()>& is_given_up)>& draw);

// The pages on the paper of a preview. Those that would take too long to be shown, however they
// were drawn, become pictures. False as above; the paper is to be drawn anew then.
bool DrawForPreview(QPrinter& paper, const DrawPages& draw);

}  // namespace tarnlink
