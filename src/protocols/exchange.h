// What the routines of the protocols have in common: how a response is taken from the port, and how
// a write is sent and waited for.
#pragma once

#include <string>

#include "protocols/protocol_run.h"

namespace tarnlink {

// "4: Flow" in the status bar, while Location `index` is being asked for.
void ShowPolledLocation(ProtocolRun& run, int index);

// Sets the interval of `tmr_MsgTimeout` and starts nothing.
void SetMessageTimeout(ProtocolRun& run);

// Stops the timers that wait for an answer and takes all bytes that have come.
std::string TakeInput(ProtocolRun& run);

// The exchange is over, whatever it was: the next poll may go out.
void EndExchange(RunFields& fields);

// Drops what has come so far, sends `frame` and sets the message time-out's interval.
void SendWriteFrame(ProtocolRun& run, const std::string& frame);

// From now on the run waits for the answer to a write, also if it stood still before. `pointer` is
// where the scan stands.
void AwaitWriteAnswer(ProtocolRun& run, int pointer);

}  // namespace tarnlink
