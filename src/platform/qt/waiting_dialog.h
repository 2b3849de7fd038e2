// Work that the window must not wait for, such as that of a slow or hung disk: a thread of its own
// does it while the caller stays where it is and the event loop goes on, as under any dialog.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/qt/left_threads.h"

namespace tarnlink {

// The application has this property while the user's keys and clicks are kept back for work that
// may soon be done.
inline constexpr const char* kInputKeptBack = "inputKeptBack";

// Asked by the work itself, in its thread: whether the user has stopped waiting for it, so that it
// had better leave everything as it is.
using IsGivenUp = std::function<bool()>;

// Whether there is a window to wait with, and this is its thread.
bool HasLoop();

// Comes back when `work` has ended, with what it has thrown. Work that is short enough nobody
// notices; from then on timers and port events are served, soon a small window tells `what` is
// waited for, and its button ends the waiting: RunTimeError 57 with `given_up` for its reason. The
// thread is left to `left` then, so `work` must own all that it uses. Without a window, or in a
// thread other than the window's, the work is simply done.
void RunBesideLoop(const std::string& what, const std::string& given_up,
                   const std::function<void(const IsGivenUp&)>& work, LeftThreads& left);

}  // namespace tarnlink
