#include "protocols/tarnlink_protocol.h"

#include "protocols/exchange.h"
#include "protocols/scan_order.h"
#include "protocols/tarnlink_frame.h"

namespace tarnlink {

namespace {

struct Exchange {
  char command;
  int response_length;
};

Exchange ReadOf(std::int32_t storage_type) {
  if (storage_type >= kUnsignedWord) {
    return {tarnlink_frame::kReadWord, tarnlink_frame::kWordResponseLength};
  }
  return {tarnlink_frame::kReadByte, tarnlink_frame::kByteResponseLength};
}

// Slaves of this protocol take every write by the byte command, also one of four digits. The test
// goes by Specification, which the options of a Location hold at 0 or 1, so that no screen made
// here ever sends the word command.
Exchange WriteOf(std::int32_t specification) {
  if (specification >= kUnsignedWord) {
    return {tarnlink_frame::kWriteWord, tarnlink_frame::kWordResponseLength};
  }
  return {tarnlink_frame::kWriteByte, tarnlink_frame::kByteResponseLength};
}

}  // namespace

void Tarnlink_Protocol(ProtocolRun& run) {
  RunFields& fields = run.fields();
  StepToNextLocation(run);
  const int index = fields.MsgPointer;
  if (!run.NameVisible(index)) {
    fields.message_received = true;
    return;
  }
  if (!fields.CommRunning) return;

  const Location& location = run.locations()[index];
  const Exchange read = ReadOf(location.StorageType);
  run.Comm().SetRThreshold(read.response_length);
  run.ShowPanel(kLocationPanel, location.Alias + ": " + std::to_string(index));
  run.Comm().Output(tarnlink_frame::ReadRequest(read.command, location.Address));
  SetMessageTimeout(run);
  run.tmr_MsgTimeout().SetEnabled(true);
  run.LogRequest(index);
}

void TarnlinkSlaveResponse(ProtocolRun& run) {
  RunFields& fields = run.fields();
  if (fields.write_message) {
    // The bytes stay in the buffer: the event fires again, and its second pass takes them as the
    // answer to a read of the Location before the written one.
    fields.write_message = false;
    return;
  }
  const std::string response = TakeInput(run);
  // A frame is taken by its length alone, so its length is all that can be doubted.
  if (static_cast<int>(response.size()) != run.Comm().RThreshold()) run.DoubtTheLine();
  const int index = fields.MsgPointer;
  run.ShowValue(index,
                TarnlinkValueText(tarnlink_frame::ResponseDigits(response, run.Comm().RThreshold()),
                                  run.locations()[index].Representation));
  run.RecordValue(index);
  FinishLocation(run, index);
  EndExchange(fields);
}

void BuildTarnlinkWriteMessage(ProtocolRun& run, int index, const std::string& value) {
  // The command goes by the Location that the scan stands on, not by the written one.
  const Exchange write = WriteOf(run.locations()[run.fields().MsgPointer].Specification);
  run.Comm().SetRThreshold(write.response_length);
  const std::string frame =
      tarnlink_frame::WriteRequest(write.command, run.locations()[index].Address, value);
  SendWriteFrame(run, frame);
  run.tmr_MsgTimeout().SetEnabled(true);
  AwaitWriteAnswer(run, index - 1);
}

}  // namespace tarnlink
