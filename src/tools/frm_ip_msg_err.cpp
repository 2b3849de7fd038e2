#include "tools/frm_ip_msg_err.h"

#include <algorithm>
#include <array>
#include <random>
#include <utility>

#include "common/numbers.h"
#include "common/text.h"
#include "common/text_file.h"
#include "protocols/frame_bytes.h"
#include "protocols/zolt_crc.h"
#include "protocols/zolt_frame.h"
#include "tools/tool_port.h"

namespace tarnlink {

namespace {

constexpr int kAnswerTime = 1000;  // ms
constexpr int kLampTime = 100;     // ms

constexpr int kStartBox = 0;
constexpr int kTypeBox = 1;
constexpr int kSlaveBox = 2;
constexpr int kFirstDigitBox = 3;
constexpr int kLastIdBox = 6;
constexpr int kFirstDataBox = 7;
constexpr int kLastDataBox = 10;
constexpr int kFirstCrcBox = 11;
constexpr int kLastCrcBox = 14;
constexpr int kEndBox = 15;

constexpr int kWrongCrc = 0;  // of `chk_IPMsgErr`
constexpr int kNonAscii = 1;

constexpr std::array<const char*, frm_IPMsgErr::kBoxes> kDefaultMessage = {
    "0D", "1", "0", "0", "0", "0", "1", "0", "0", "0", "0", "D", "7", "A", "F", "0A"};
constexpr std::string_view kControlBytes = "\x01\x02\x03\x04";

// Shown as the byte's value, where all others show the character.
bool ShowsCode(int box) { return box == kStartBox || box == kTypeBox || box == kEndBox; }

std::string TwoDigits(char byte) { return HexDigits(static_cast<unsigned char>(byte), 2); }

// Any byte is a character of its own, but for a zero byte, which would end the text for many who
// read it.
std::string ShownBytes(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) text += byte == '\0' ? " " : DecodeText({&byte, 1});
  return text;
}

// The byte that a text of hexadecimal digits, of either case, stands for.
std::optional<std::string> ByteOfCode(const std::string& text) {
  constexpr std::size_t kMostDigits = 8;
  if (text.empty() || text.size() > kMostDigits) return std::nullopt;
  for (const char digit : ToUpper(text)) {
    if (!IsHexDigit({&digit, 1})) return std::nullopt;
  }
  const std::uint32_t code = HexNumber(text);
  if (code > 0xFF) return std::nullopt;
  return std::string(1, static_cast<char>(code));
}

// One byte for each character, where there is one.
std::optional<std::string> BytesOf(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const std::string_view character = FirstCharacters(text, 1);
    const std::string byte = EncodeText(character);
    if (byte.size() != 1) return std::nullopt;
    bytes += byte;
    text.remove_prefix(character.size());
  }
  return bytes;
}

std::string StatusText(char type) {
  switch (zolt_frame::KindOf(static_cast<std::uint8_t>(type))) {
    case zolt_frame::kReadAcknowledge:
      return "Read Acknowledge";
    case zolt_frame::kCorruptedMessage:
      return "Corrupted Message";
    case zolt_frame::kOutsideRange:
      return "Parameter outside range";
    case zolt_frame::kUnknownDataId:
      return "Unknown Data ID";
    case zolt_frame::kWriteAcknowledge:
      return "Write Acknowledge";
    default:
      return "";
  }
}

}  // namespace

bool IsHexDigit(std::string_view Text) {
  return Text.size() == 1 &&
         ((Text[0] >= '0' && Text[0] <= '9') || (Text[0] >= 'A' && Text[0] <= 'F'));
}

frm_IPMsgErr::frm_IPMsgErr(ToolHost& host, RandomSource random)
    : comm_ErrMsg(host.platform.CreatePort()),
      tim_IPMsgErr(host.platform.CreateTimer()),
      tim_TxRxLed(host.platform.CreateTimer()),
      host_(host),
      random_(random ? std::move(random) : [] { return std::random_device{}(); }) {
  form.Visible = false;
  for (int i = 0; i < kBoxes; ++i) {
    txt_ErrMsg(i).MaxLength = ShowsCode(i) ? 2 : 1;
    txt_ErrMsg(i).Change = [this, i] { BoxChanged(i); };
    txt_RecErrMsg(i).Locked = true;
  }
  txt_ReturnedData.Locked = true;
  txtStatus.Locked = true;
  chk_IPMsgErr(kWrongCrc).Click = [this] { WrongCrcClicked(); };
  chk_IPMsgErr(kNonAscii).Click = [this] { NonAsciiClicked(); };
  cmd_SendErrMsg.Click = [this] { Send(); };
  cmd_ResetDefault.Click = [this] { ResetDefault(); };
  cmd_CloseErrGen.Click = [this] { Unload(); };
  comm_ErrMsg->SetOnComm([this](int event) { CommEvent(event); });
  tim_IPMsgErr->SetInterval(kAnswerTime);
  tim_IPMsgErr->SetOnTimer([this] { NoResponse(); });
  tim_TxRxLed->SetInterval(kLampTime);
  tim_TxRxLed->SetOnTimer([this] { PutLampsOut(); });
  PutLampsOut();
}

// --- Beginning and end ---------------------------------------------------------------------------

void frm_IPMsgErr::Show() {
  if (form.Visible) return;
  for (const int which : {kWrongCrc, kNonAscii}) chk_IPMsgErr(which).Value = false;
  WrongCrcClicked();
  NonAsciiClicked();
  ResetDefault();
  ClearReceived();
  form.Visible = true;
}

void frm_IPMsgErr::Unload() {
  if (!form.Visible) return;
  GiveUp();
  PutLampsOut();
  form.Visible = false;
  if (Unloaded) Unloaded();
}

void frm_IPMsgErr::GiveUp() {
  tim_IPMsgErr->SetEnabled(false);
  CloseQuietly(*comm_ErrMsg);
}

void frm_IPMsgErr::PutLampsOut() {
  tim_TxRxLed->SetEnabled(false);
  shp_Tx.BackColor = kLampOut;
  shp_Rx.BackColor = kLampOut;
}

// --- Editing -------------------------------------------------------------------------------------

void frm_IPMsgErr::BoxChanged(int index) {
  ArrayText& box = txt_ErrMsg(index);
  if (index <= kSlaveBox || index == kEndBox) {
    box.BackColor = kWarning;
  } else if (index >= kFirstDigitBox && index <= kLastDataBox) {
    box.BackColor = IsHexDigit(box.Text.get()) ? kWindowBackground : kWarning;
  }
}

void frm_IPMsgErr::WrongCrcClicked() {
  for (int i = kFirstCrcBox; i <= kLastCrcBox; ++i) txt_ErrMsg(i).Locked = !IsTicked(kWrongCrc);
  if (!IsTicked(kWrongCrc)) FillBoxes(kFirstCrcBox, kLastCrcBox, "0000");
}

void frm_IPMsgErr::NonAsciiClicked() {
  for (int i = kFirstDataBox; i <= kLastDataBox; ++i) txt_ErrMsg(i).Enabled = !IsTicked(kNonAscii);
  FillBoxes(kFirstDataBox, kLastDataBox, IsTicked(kNonAscii) ? "xxxx" : "0000");
}

void frm_IPMsgErr::ResetDefault() {
  for (int i = 0; i < kBoxes; ++i) {
    txt_ErrMsg(i).Text = kDefaultMessage[static_cast<std::size_t>(i)];
    txt_ErrMsg(i).BackColor = kWindowBackground;
  }
}

// One character each.
void frm_IPMsgErr::FillBoxes(int first, int last, const std::string& text) {
  for (int i = first; i <= last; ++i) {
    txt_ErrMsg(i).Text = text.substr(static_cast<std::size_t>(i - first), 1);
  }
}

// --- Sending -------------------------------------------------------------------------------------

void frm_IPMsgErr::Send() {
  ClearReceived();
  GiveUp();
  const std::optional<std::string> frame = BuildFrame();
  if (!frame) return;
  try {
    SetServiceLine(*comm_ErrMsg, host_.line);
    comm_ErrMsg->SetPortOpen(true);
    comm_ErrMsg->SetRThreshold(zolt_frame::kLength);
    comm_ErrMsg->ClearInBuffer();
    sent_ = *frame;
    echo_.clear();
    received_.clear();
    comm_ErrMsg->Output(*frame);
  } catch (const RunTimeError& error) {
    GiveUp();
    txtStatus.Text = PortTrouble(error);
    return;
  }
  tim_IPMsgErr->SetEnabled(true);
  shp_Tx.BackColor = kTxLit;
  Restart(*tim_TxRxLed);
}

void frm_IPMsgErr::FillWrongCrc() {
  constexpr std::uint32_t kDigits = 9;  // 1 to 9
  for (int i = kFirstCrcBox; i <= kLastCrcBox; ++i) {
    txt_ErrMsg(i).Text = std::to_string(1 + random_() % kDigits);
  }
}

// Nothing if a box can not be read; what has been shown by then stays.
std::optional<std::string> frm_IPMsgErr::BuildFrame() {
  if (IsTicked(kWrongCrc)) FillWrongCrc();
  const auto start = BytesOfBoxes(kStartBox, kStartBox);
  auto body = BytesOfBoxes(kTypeBox, kLastIdBox);
  if (!start || !body) return std::nullopt;
  if (IsTicked(kNonAscii)) {
    FillBoxes(kFirstDataBox, kLastDataBox, "xxxx");
    *body += kControlBytes;
  } else {
    const auto data = BytesOfBoxes(kFirstDataBox, kLastDataBox);
    if (!data) return std::nullopt;
    *body += *data;
  }
  if (!IsTicked(kWrongCrc)) {
    FillBoxes(kFirstCrcBox, kLastCrcBox, Stuff(Hex(Calc_Crc(*body)), 4));
  }
  const auto rest = BytesOfBoxes(kFirstCrcBox, kEndBox);
  if (!rest) return std::nullopt;
  return *start + *body + *rest;
}

std::optional<std::string> frm_IPMsgErr::BytesOfBoxes(int first, int last) const {
  std::string bytes;
  for (int i = first; i <= last; ++i) {
    const std::string& text = txt_ErrMsg(i).Text;
    const auto some = ShowsCode(i) ? ByteOfCode(text) : BytesOf(text);
    if (!some) return std::nullopt;
    bytes += *some;
  }
  return bytes;
}

// --- The answer ----------------------------------------------------------------------------------

void frm_IPMsgErr::CommEvent(int event) {
  // On a port that could not be closed what nobody waits for would come again and again.
  if (!tim_IPMsgErr->Enabled()) return comm_ErrMsg->ClearInBuffer();
  if (event == kCommDeviceGone) txtStatus.Text = comm_ErrMsg->LossReason();
  if (event != kCommReceive) return;
  try {
    Received();
  } catch (const RunTimeError&) {
    // It is read at the next event, or never.
  }
}

void frm_IPMsgErr::Received() {
  received_ += comm_ErrMsg->Input();
  if (!sent_.empty() && received_.starts_with(sent_)) {
    received_.erase(0, sent_.size());
    echo_ = std::exchange(sent_, {});
  }
  const int missing = zolt_frame::kLength - static_cast<int>(received_.size());
  if (missing > 0) return comm_ErrMsg->SetRThreshold(missing);
  ShowAnswer(received_);
}

void frm_IPMsgErr::ShowAnswer(const std::string& answer) {
  txt_ReturnedData.Text = ShownBytes(answer);
  ShowReceivedMessage(answer);
  GiveUp();
  shp_Rx.BackColor = kRxLit;
  Restart(*tim_TxRxLed);
}

void frm_IPMsgErr::ShowReceivedMessage(std::string_view Raw) {
  const int count = std::min(kBoxes, static_cast<int>(Raw.size()));
  for (int i = 0; i < count; ++i) {
    const char byte = Raw[static_cast<std::size_t>(i)];
    const std::string code = TwoDigits(byte);
    txt_RecErrMsg(i).Text = ShowsCode(i) ? code : ShownBytes({&byte, 1});
    txt_RecErrMsg(i).ToolTipText = "Hex " + code;
  }
  if (count > kTypeBox) txtStatus.Text = StatusText(Raw[kTypeBox]);
}

void frm_IPMsgErr::ClearReceived() {
  for (int i = 0; i < kBoxes; ++i) {
    txt_RecErrMsg(i).Text = "";
    txt_RecErrMsg(i).ToolTipText = "";
  }
  txt_ReturnedData.Text = "";
  txtStatus.Text = "";
}

// What came back without anything behind it is shown, as of a plug that joins both wires. But a
// slave has not answered.
void frm_IPMsgErr::NoResponse() {
  if (!echo_.empty() && received_.empty()) {
    ShowAnswer(echo_);
  } else {
    GiveUp();
  }
  host_.platform.dialogs().MessageBox(
      {.text = "No Response", .title = "Communication Problem", .icon = Icon::kCritical});
}

}  // namespace tarnlink
