#include "monitor/run_records.h"

namespace tarnlink {

void RunRecords::LogRequest(int index) {
  values_.Ask(index);
  // What ZOLT writes continuously is acknowledged and has no value. Modbus sends it with a read.
  const bool writes = (main_.Locations[index].ScanFlags & kContinuousWrite) != 0;
  if (writes && options_.SelectedProtocol() == kZoltProtocol) values_.ForgetRequest();
  log_.LogRequest(index);
}

void RunRecords::RecordValue(int index) {
  if (!values_.Take(index)) return;
  log_.RecordValue(index);
  spreadsheet_.Poke(index);
}

void RunRecords::LogUnreadable(int index) {
  if (values_.Take(index)) log_.LogUnreadable(index);
}

void RunRecords::CloseLogFile() {
  values_.EndRound();
  log_.CloseLogFile();
  spreadsheet_.Save();
}

}  // namespace tarnlink
