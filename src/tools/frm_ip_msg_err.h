// Generates wrong messages: a frame that is typed byte by byte, broken on purpose and sent once,
// and what comes back of it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/control_array.h"
#include "common/controls.h"
#include "tools/array_text.h"
#include "tools/tool_host.h"

namespace tarnlink {

// True for one of the characters "0" to "9" and "A" to "F".
bool IsHexDigit(std::string_view Text);

class frm_IPMsgErr {
 public:
  static constexpr int kBoxes = 16;  // one for each byte of a frame
  static constexpr Colour kWarning = 255;
  static constexpr Colour kTxLit = 255;
  static constexpr Colour kRxLit = 65280;
  static constexpr Colour kLampOut = kFormBackground;

  // Another number each time, of which the wrong check digits are made.
  using RandomSource = std::function<std::uint32_t()>;

  // `host` outlives it. Without a source the numbers are those of the machine.
  explicit frm_IPMsgErr(ToolHost& host, RandomSource random = {});

  Control form{"frm_IPMsgErr"};
  Label caption{"frm_IPMsgErr.Caption", "Generate Wrong Messages"};

  // --- Both rows of boxes, with the names of their bytes and of groups of them ---
  FixedArray<Label> lblByte{
      "lblByte",
      0,
      {"Start Of Message", "Message Type", "Slave Address", "DATA ID MSB HI", "DATA ID MSB LOW",
       "DATA ID LSB HI", "DATA ID LSB LOW", "DATA MSB HI", "DATA MSB LOW", "DATA LSB HI",
       "DATA LSB LOW", "CRC MSB HI", "CRC MSB LOW", "CRC LSB HI", "CRC LSB LOW", "End of Message"}};
  FixedArray<Label> lblGroup{"lblGroup", 0, {"Message ID", "Message DATA", "Message CRC"}};
  FixedArray<ArrayText> txt_ErrMsg{"txt_ErrMsg", 0, std::vector<std::string>(kBoxes)};
  FixedArray<ArrayText> txt_RecErrMsg{"txt_RecErrMsg", 0, std::vector<std::string>(kBoxes)};

  // --- Around them ---
  FixedArray<CheckBox> chk_IPMsgErr{
      "chk_IPMsgErr", 0, {"Calculate wrong CRC", "Use non ASCII characters"}};
  Label lblReturnedData{"lblReturnedData", "Returned Raw Data"};
  TextBox txt_ReturnedData{"txt_ReturnedData"};
  Label lblStatus{"lblStatus", "Status"};
  TextBox txtStatus{"txtStatus"};
  PlacedControl shp_Tx{"shp_Tx"};  // a lamp: lit in a colour of its own, or `kLampOut`
  PlacedControl shp_Rx{"shp_Rx"};
  CommandButton cmd_SendErrMsg{"cmd_SendErrMsg", "Send"};
  CommandButton cmd_ResetDefault{"cmd_ResetDefault", "Default Message"};
  CommandButton cmd_CloseErrGen{"cmd_CloseErrGen", "Close Window"};

  std::unique_ptr<SerialPort> comm_ErrMsg;  // open for one exchange only
  std::unique_ptr<Timer> tim_IPMsgErr;      // runs while an answer is awaited
  std::unique_ptr<Timer> tim_TxRxLed;       // runs while a lamp is lit

  // Opens with the default message. Only once.
  void Show();
  // Gives up what is awaited. Only once.
  void Unload();
  std::function<void()> Unloaded;

  // Fills the received boxes and the status.
  void ShowReceivedMessage(std::string_view Raw);
  void ClearReceived();

 private:
  void BoxChanged(int index);
  void WrongCrcClicked();
  void NonAsciiClicked();
  void ResetDefault();
  void Send();
  void FillWrongCrc();
  std::optional<std::string> BuildFrame();
  std::optional<std::string> BytesOfBoxes(int first, int last) const;
  void FillBoxes(int first, int last, const std::string& text);
  bool IsTicked(int index) const { return chk_IPMsgErr(index).Value; }
  void CommEvent(int event);
  void Received();
  void ShowAnswer(const std::string& answer);
  void NoResponse();
  void GiveUp();
  void PutLampsOut();

  ToolHost& host_;
  RandomSource random_;
  std::string sent_;      // which some adapters send back before the answer; empty when they have
  std::string echo_;      // that came back, kept until it is clear whether something follows
  std::string received_;  // behind it, or without it
};

}  // namespace tarnlink
