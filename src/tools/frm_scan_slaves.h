// The slave scan: walks over the sixteen slave addresses, without end, and shows for each what
// answers there. A row's button opens the control panel on its slave.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/control_array.h"
#include "common/controls.h"
#include "tools/answer_frames.h"
#include "tools/array_text.h"
#include "tools/quiet_watch.h"
#include "tools/tool_host.h"

namespace tarnlink {

class frm_ScanSlaves {
 public:
  static constexpr int kAddresses = 16;
  static constexpr Colour kFieldInWork = 0xFFFF;  // yellow

  // `host` outlives it.
  explicit frm_ScanSlaves(ToolHost& host);

  Control form{"frm_ScanSlaves"};
  Label caption{"frm_ScanSlaves.Caption", "Scan slaves"};

  // --- The table, one row for each address ---
  FixedArray<Label> lblHeading{"lblHeading",
                               0,
                               {"Slave Address", "OS number", "Version number LuP processor",
                                "Version number HuP processor", "Version number EEPROM"}};
  FixedArray<ArrayText> txtAddress{"txtAddress", 0, Rows("")};
  FixedArray<ArrayText> txtType{"txtType", 0, Rows("")};
  FixedArray<ArrayText> txtLuP{"txtLuP", 0, Rows("")};
  FixedArray<ArrayText> txtHuP{"txtHuP", 0, Rows("")};
  FixedArray<ArrayText> txtEEPROM{"txtEEPROM", 0, Rows("")};
  FixedArray<CommandButton> cmdControlPanel{"cmdControlPanel", 0, Rows("details")};

  // --- Around it ---
  Label lblState{"lblState"};  // at which address it is, or what keeps it
  CommandButton cmdStart{"cmdStart", "Start"};
  CommandButton cmdStop{"cmdStop", "Stop"};
  CommandButton cmdCopy{"cmdCopy", "Copy table"};

  std::unique_ptr<SerialPort> ScanSlavesCom;
  std::unique_ptr<Timer> ScanSlavesTimer;

  int ScanAddress = 0;
  int ScanStep = 0;
  int ScanRetries = 0;  // time-outs of the present request
  std::array<bool, kAddresses> SlavePresent{};
  std::array<std::string, kAddresses> ScanOSName;
  std::array<std::string, kAddresses> ScanOSNumber;

  // Opens with an empty table, and the walk begins at address 0. Only once.
  void Show();
  // The walk ends and the port is let go. Only once.
  void Unload();
  std::function<void()> Unloaded;

  // The walk rests, with the port closed; `Start` goes on where it was.
  void Start();
  void Stop();

  // Sends the request of the present address and step. Without a port it says so, and the next
  // expiry of the timer tries anew.
  void ScanSendRequest();
  // Moves on to the next step or slave.
  void ScanNextStep();
  // Applies one response.
  void ScanProcessResponse(std::string_view Raw);

  // Headings and rows, each on a line of its own with tabs between the fields.
  std::string TableText() const;
  std::function<void(const std::string& text)> CopyText;  // what `cmdCopy` does with it

 private:
  struct Step {
    std::uint8_t data_class;
    std::int32_t id;
  };
  static constexpr int kSteps = 5;
  static const std::array<Step, kSteps> kRequests;

  static std::vector<std::string> Rows(const std::string& text) {
    return std::vector<std::string>(kAddresses, text);
  }
  void Begin();
  void Halt();
  void ShowState();
  void OpenPanel(int index);
  void CommEvent(int event);
  void Received();
  void DeviceGone();
  bool IsForUs(std::string_view frame) const;
  void AwaitQuiet();
  void TimerExpired();
  void StoreAnswer(std::uint8_t high, std::uint8_t low);
  void StoreUnknown();
  void ShowType();
  void EmptyVersions();
  static constexpr int kFields = 4;
  // What an answer can fill of a row.
  std::array<ArrayText*, kFields> Fields(int row) const;
  ArrayText& FieldInWork();
  std::size_t Row() const { return static_cast<std::size_t>(ScanAddress); }
  const Step& Request() const { return kRequests[static_cast<std::size_t>(ScanStep)]; }

  ToolHost& host_;
  bool is_running_ = false;
  bool is_out_ = false;       // the request has gone out, and nothing has cut it off
  bool is_in_panel_ = false;  // the port is the control panel's
  std::string trouble_;       // what keeps the port from being used
  AnswerFrames frames_;
  QuietWatch quiet_watch_;  // on while the next request waits for a quiet line
};

}  // namespace tarnlink
