// Writing a value: the double click on a value box of a run under way, the dialog that asks, and
// the message that goes out.
#pragma once

#include <string>

#include "monitor/communication_run.h"
#include "monitor/frm_main.h"
#include "monitor/frm_multiple_reg.h"
#include "monitor/frm_options.h"
#include "monitor/frm_write_bit_value.h"
#include "monitor/frm_write_value.h"
#include "monitor/write_texts.h"

namespace tarnlink {

class WriteCommands {
 public:
  // Binds the double click and the dialogs. All arguments outlive it.
  WriteCommands(frm_Main& main, const frm_Options& options, CommunicationRun& run,
                frm_WriteValue& value, frm_WriteBitValue& bit, frm_multiple_reg& registers);

 private:
  void Begin(int index);
  void AskForValue(const Location& location);
  void AskForBit(const Location& location);
  void AskForRegisters();
  void ValueDecided(bool is_ok);
  void BitDecided(bool is_ok);
  void Send(WriteText text);
  void TellNothingWritten(const std::string& reason);
  void End();

  bool IsModbus() const;
  // Whether the message is one for a block of registers.
  bool IsBlock() const;
  bool IsEmptyWrite() const;
  bool OwesSecondByte() const;
  WriteText TypedText() const;
  std::string GoesOut() const;
  const Location& Target() const { return main_.Locations[index_]; }

  frm_Main& main_;
  const frm_Options& options_;
  CommunicationRun& run_;
  frm_WriteValue& value_;
  frm_WriteBitValue& bit_;
  frm_multiple_reg& registers_;
  int index_ = 0;  // the Location that the dialog is for
};

}  // namespace tarnlink
