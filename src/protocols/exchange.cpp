#include "protocols/exchange.h"

namespace tarnlink {

void ShowPolledLocation(ProtocolRun& run, int index) {
  run.ShowPanel(kLocationPanel, std::to_string(index) + ": " + run.NameText(index));
}

void SetMessageTimeout(ProtocolRun& run) { run.tmr_MsgTimeout().SetInterval(run.MessageTimeout()); }

std::string TakeInput(ProtocolRun& run) {
  run.tmr_noresponse().SetEnabled(false);
  run.tmr_MsgTimeout().SetEnabled(false);
  return run.Comm().Input();
}

void EndExchange(RunFields& fields) {
  fields.message_received = true;
  fields.write_message = false;
}

void SendWriteFrame(ProtocolRun& run, const std::string& frame) {
  run.Comm().ClearInBuffer();
  run.Comm().Output(frame);
  SetMessageTimeout(run);
}

void AwaitWriteAnswer(ProtocolRun& run, int pointer) {
  RunFields& fields = run.fields();
  fields.write_message = true;
  run.Comm_Timer().SetEnabled(true);
  fields.CommRunning = true;
  fields.MsgPointer = pointer;
}

}  // namespace tarnlink
