// In which order the Locations of the screen are polled. Every protocol's poll begins with one of
// the two steps, and its response of a Location ends with `FinishLocation`.
#pragma once

#include "protocols/protocol_run.h"

namespace tarnlink {

// The next index, whatever Location it is. Past the last Location the pointer stands on 0, the
// template that is never shown, so that the poll skips it and the next tick goes on at 1; an open
// log begins a new row there.
void StepToNextLocation(ProtocolRun& run);

// Moves on over the Locations whose scanning is disabled (`ScanFlags` exactly 1) and, if
// `skip_followers`, over the later Locations of a register block. Back at where it began there is
// nothing to poll: the pointer goes to 0 and the run stops itself.
void StepToNextScannedLocation(ProtocolRun& run, bool skip_followers);

// The normal end of a round, when the answer of Location `index`, the last one, has been handled:
// the pointer goes to 0, the spreadsheet moves on a row, and an open log begins a new row.
void FinishLocation(ProtocolRun& run, int index);

}  // namespace tarnlink
