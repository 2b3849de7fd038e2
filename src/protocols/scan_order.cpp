#include "protocols/scan_order.h"

namespace tarnlink {

namespace {

void EndRound(ProtocolRun& run) {
  run.fields().MsgPointer = 0;
  run.EndRound();
  if (run.fields().filelogging) run.EndLogRow();
}

}  // namespace

void StepToNextLocation(ProtocolRun& run) {
  RunFields& fields = run.fields();
  ++fields.MsgPointer;
  if (fields.MsgPointer > fields.MaxId) EndRound(run);
}

void StepToNextScannedLocation(ProtocolRun& run, bool skip_followers) {
  RunFields& fields = run.fields();
  const int began_at = fields.MsgPointer;
  const auto passed_over = [&] {
    const Location& location = run.locations()[fields.MsgPointer];
    return location.ScanFlags == kScanningDisabled || (skip_followers && location.RegisterFollower);
  };
  do {
    StepToNextLocation(run);
    if (fields.MsgPointer == began_at) {
      fields.MsgPointer = 0;
      run.StopZOLTCommunication();
      return;
    }
  } while (passed_over());
}

void FinishLocation(ProtocolRun& run, int index) {
  RunFields& fields = run.fields();
  if (index < fields.MaxId) return;
  ++fields.DDERowCounter;
  EndRound(run);
}

}  // namespace tarnlink
