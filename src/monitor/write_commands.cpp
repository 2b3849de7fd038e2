#include "monitor/write_commands.h"

#include <cstdint>
#include <limits>
#include <utility>

#include "common/numbers.h"
#include "common/text_file.h"
#include "protocols/modbus_frame.h"

namespace tarnlink {

namespace {

constexpr const char* kUnreadable = "can not read";
// A block's values stand in `StoredRegisters`; this is what counts as the value written.
constexpr const char* kBlockValue = "2";

}  // namespace

WriteCommands::WriteCommands(frm_Main& main, const frm_Options& options, CommunicationRun& run,
                             frm_WriteValue& value, frm_WriteBitValue& bit,
                             frm_multiple_reg& registers)
    : main_(main), options_(options), run_(run), value_(value), bit_(bit), registers_(registers) {
  main_.RAM_LOC_VAL.DblClick = [this](int index) { Begin(index); };
  value_.GoesOut = [this] { return GoesOut(); };
  value_.Values.Click = [this] { AskForRegisters(); };
  value_.Closed = [this](bool is_ok) { ValueDecided(is_ok); };
  bit_.Closed = [this](bool is_ok) { BitDecided(is_ok); };
  registers_.Closed = [this] { value_.ShowGoesOut(); };
}

void WriteCommands::Begin(int index) {
  if (!main_.CommRunning || value_.form.Visible || bit_.form.Visible) return;
  index_ = index;
  main_.Comm_Timer->SetEnabled(false);
  main_.tmr_MsgTimeout->SetEnabled(false);
  // The second half of an earlier word may still be owed: it belongs to that Location.
  if (!main_.SendSecondByte) main_.SecondByteIndex = index;
  if (Target().StorageType != kBit) {
    AskForValue(Target());
  } else {
    AskForBit(Target());
  }
}

void WriteCommands::AskForValue(const Location& location) {
  value_.caption.Caption = "Write value to : " + location.Alias + " [" + location.Address + "]";
  const std::string& shown = main_.RAM_LOC_VAL(index_).Text;
  value_.txt_WriteValue.Text = shown == kUnreadable ? std::string() : shown;
  value_.Representation = static_cast<std::uint8_t>(location.Representation);
  value_.first_load = true;
  value_.Show();
}

void WriteCommands::AskForBit(const Location& location) {
  bit_.caption.Caption = "Write : " + location.Alias + " [" + location.Address + ":" +
                         std::to_string(location.BitAddress) + "]";
  // As it stands, so that Enter alone changes nothing.
  const std::string& shown = main_.RAM_LOC_VAL(index_).Text;
  if (shown == BitText(true) || shown == BitText(false)) bit_.Choose(shown == BitText(true));
  bit_.Show();
}

void WriteCommands::AskForRegisters() {
  const int count = ValInt(value_.Text1.Text.get(), 0, kRegisterLines + 1);
  if (count < 1 || count > kRegisterLines) {
    main_.platform().dialogs().MessageBox(
        {.text = "The number of registers must be between 1 and " + std::to_string(kRegisterLines) +
                 ".",
         .title = "Multiple Write",
         .icon = Icon::kExclamation});
    return;
  }
  registers_.NumReg_frm = count;
  main_.SelectedLocation = index_;  // the lines bear the names from the written one on
  registers_.Show();
}

bool WriteCommands::IsModbus() const { return options_.SelectedProtocol() == kModbusProtocol; }

bool WriteCommands::IsBlock() const {
  return IsModbus() && value_.Option1.Selected() == kMultipleWrite;
}

// A block that nobody has stored is no value either.
bool WriteCommands::IsEmptyWrite() const {
  if (IsBlock() && main_.StoredRegisters.empty()) return true;
  return value_.txt_WriteValue.Text->empty() && value_.Text1.Text->empty();
}

WriteText WriteCommands::TypedText() const {
  return MakeWriteText(Target(), value_.opt_WriteValueFormat.Selected(),
                       value_.txt_WriteValue.Text.get());
}

std::string WriteCommands::GoesOut() const {
  if (IsBlock() && main_.StoredRegisters.empty()) return "nothing before the values are stored";
  if (IsEmptyWrite()) return "nothing";
  if (!IsBlock()) {
    const int format = value_.opt_WriteValueFormat.Selected();
    const bool is_converted = format == kDecimal || format == kHexadecimal;
    return DecodeText(TypedText().value) +
           (is_converted ? "" : " (binary and octal text is not converted)");
  }
  std::string line;
  for (const std::string& digits : main_.StoredRegisters)
    line += (line.empty() ? "" : " ") + digits;
  return line;
}

void WriteCommands::ValueDecided(bool is_ok) {
  if (is_ok && !IsEmptyWrite()) Send(TypedText());
  End();
}

void WriteCommands::BitDecided(bool is_ok) {
  if (is_ok)
    Send({.value = MakeBitText(Target(), bit_.txt_WriteValue.Text.get() == BitText(true))});
  End();
}

void WriteCommands::Send(WriteText text) {
  // The dialog may have stood for long: the run goes on behind it.
  if (!main_.CommRunning) return TellNothingWritten("communication is stopped");
  if (!run_.NameVisible(index_)) return TellNothingWritten("the location is gone");
  if (OwesSecondByte()) {
    return TellNothingWritten("the slave has not yet answered the write before");
  }
  main_.Comm->ClearInBuffer();
  main_.Comm_Timer->SetEnabled(false);
  // A second half that an earlier write has left does not go out behind this one.
  main_.SendSecondByte = text.SendSecondByte;
  main_.SecondByteIndex = index_;
  if (text.SendSecondByte) main_.SecondByteValue = text.SecondByteValue;
  if (IsModbus()) {
    const bool block = IsBlock() && Target().StorageType != kBit;
    main_.Function_code = block ? modbus_frame::kWriteRegisters : modbus_frame::kWriteRegister;
    if (block) text.value = kBlockValue;
  }
  if (!run_.SendWrite(index_, text.value)) return;
  main_.Locations[index_].RawValue =
      ValInt("&H" + text.value, std::numeric_limits<std::int32_t>::min(),
             std::numeric_limits<std::int32_t>::max());
}

// Whether the first half of a word is under way. Another write in between would leave the word
// torn. Without a time-out nothing else ends the waiting for a silent slave: the write goes out.
bool WriteCommands::OwesSecondByte() const {
  return options_.SelectedProtocol() == kZoltProtocol && main_.write_message &&
         main_.SendSecondByte && main_.SecondByteIndex != 0 && main_.tmr_noresponse->Interval() > 0;
}

void WriteCommands::TellNothingWritten(const std::string& reason) {
  main_.platform().dialogs().MessageBox({.text = "Nothing has been written: " + reason + ".",
                                         .title = "Write Error",
                                         .icon = Icon::kExclamation});
}

// The timers of a run that has ended meanwhile stay as its end has left them.
void WriteCommands::End() {
  registers_.Unload();
  if (!main_.CommRunning) return;
  main_.Comm_Timer->SetEnabled(true);
  main_.tmr_noresponse->SetEnabled(true);
}

}  // namespace tarnlink
