// What a user does to write a value while the run is under way: the double click on its box, the
// dialog, "Write Ok".
#pragma once

#include <string>
#include <vector>

#include "monitor/monitor.h"

namespace tarnlink {

// `format` is the index of `opt_WriteValueFormat`.
inline void TypeAndWrite(Monitor& monitor, int index, int format, const std::string& text) {
  monitor.main.RAM_LOC_VAL.DblClick(index);
  monitor.write_value.opt_WriteValueFormat.Choose(format);
  monitor.write_value.txt_WriteValue.Text = text;
  monitor.write_value.cmd_WriteOk.Press();
}

inline void ChooseAndWriteBit(Monitor& monitor, int index, bool value) {
  monitor.main.RAM_LOC_VAL.DblClick(index);
  monitor.write_bit.Choose(value);
  monitor.write_bit.cmd_Ok.Press();
}

// Registers in a row, by one message.
inline void TypeAndWriteBlock(Monitor& monitor, int index, const std::vector<int>& values) {
  monitor.main.RAM_LOC_VAL.DblClick(index);
  monitor.write_value.Option1.Choose(kMultipleWrite);
  monitor.write_value.Text1.Text = std::to_string(values.size());
  monitor.write_value.Values.Press();
  int line = 0;
  for (const int value : values) {
    monitor.write_registers.value(++line).Text = std::to_string(value);
  }
  monitor.write_registers.Command1.Press();
  monitor.write_value.cmd_WriteOk.Press();
}

}  // namespace tarnlink
