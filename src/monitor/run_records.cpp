#include "monitor/run_records.h"

namespace tarnlink {

void RunRecords::RecordValue(int index) {
  log_.RecordValue(index);
  spreadsheet_.Poke(index);
}

void RunRecords::CloseLogFile() {
  log_.CloseLogFile();
  spreadsheet_.Save();
}

}  // namespace tarnlink
