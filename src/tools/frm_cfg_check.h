// The configuration check: proves the limits of a controller's parameters against a file. It reads
// the default of each, writes both limits, and writes just outside of them, which the slave has to
// refuse. A parameter keeps what was written last.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/controls.h"
#include "common/dialog_controls.h"
#include "files/config_file.h"
#include "tools/answer_frames.h"
#include "tools/cfg_stages.h"
#include "tools/quiet_watch.h"
#include "tools/tool_host.h"

namespace tarnlink {

// The rows of the check, one of which can be in work.
class CheckList : public ListBox {
 public:
  using ListBox::ListBox;

  Property<int> InWork{this, -1};  // the row; -1 while none is
};

class frm_CfgCheck {
 public:
  static constexpr const char* kNoFile = "No file specified";

  // `host` outlives it.
  explicit frm_CfgCheck(ToolHost& host);

  Control form{"frm_CfgCheck"};
  Label caption{"frm_CfgCheck.Caption", "Configuration check"};

  Label lblFile{"lblFile", "Configuration file"};
  TextBox txt_ConfigurationFile{"txt_ConfigurationFile"};
  CommandButton cmd_Open{"cmd_Open", "Open file"};
  Label lblSlave{"lblSlave", "Slave address"};
  PickBox cmb_Slave{"cmb_Slave"};

  // The names of the columns, with tabs between them as in the rows.
  Label lblHeading{"lblHeading"};
  CheckList ParametersList{"ParametersList"};

  CountBar ProgressBar1{"ProgressBar1"};
  Label Label6{"Label6"};      // "3 / 12"
  Label lblState{"lblState"};  // what is in work, and what is left
  CommandButton cmd_Check{"cmd_Check", "Check"};
  CommandButton cmd_Stop{"cmd_Stop", "Stop"};
  CommandButton cmd_Copy{"cmd_Copy", "Copy list"};
  CommandButton cmd_Save{"cmd_Save", "Save list"};

  std::unique_ptr<SerialPort> CfgCom;
  std::unique_ptr<Timer> tim_cfgread;          // until the next message goes out
  std::unique_ptr<Timer> tim_cfgread_timeout;  // until it goes out once more

  std::vector<ConfigItem> ConfigItems;
  int CfgIndex = 0;  // of the item in work
  int CfgStage = 0;

  // Without a file, unless it is open already.
  void Show();
  // In the middle of a check it asks first. Only once.
  void Unload();
  std::function<void()> Unloaded;

  void OpenFile();
  void Check();
  void Stop();

  bool IsRunning() const { return is_running_; }
  CfgVerdict VerdictAt(std::size_t row) const { return VerdictOf(ConfigItems.at(row)); }
  // Sends the last message again.
  void ResendMsg();
  void ErrorHandler(const std::string& text);
  // The check is over, and the port is let go.
  void ShutDownCom();

  // Headings and rows, each on a line of its own.
  std::string ListText() const;
  std::function<void(const std::string& text)> CopyText;  // what `cmd_Copy` does with it

 private:
  void BindControls();
  std::optional<ConfigFile> ReadFile(const std::string& path);
  void TellBadLine(const BadLine& line);
  void ClearResults();
  void ShowRows();
  void ShowRow(std::size_t index);
  void ShowCount();
  void ShowRowInWork();
  void ShowState();
  void ShowButtons();
  bool Begin();

  void SendMessage();
  void Output();
  void TimedOut();
  void CommEvent(int event);
  void Received();
  bool IsForUs(std::string_view frame) const;
  bool IsAnswer(std::string_view frame);
  void ProcessAnswer(std::string_view frame);
  void KeepWrite(const ZoltMessage& answer);
  void EndItem(const std::string& result);
  void GoOn();
  void AwaitQuiet();
  void LineIsQuiet();
  void Finish();
  void MarkUnreached();
  void Empty();
  std::string NameOfItem() const;
  std::string StoppedText() const;
  std::string LeftOutText() const;
  void Save();
  ConfigItem& Item() { return ConfigItems[static_cast<std::size_t>(CfgIndex)]; }
  const ConfigItem& Item() const { return ConfigItems[static_cast<std::size_t>(CfgIndex)]; }
  int Count() const { return static_cast<int>(ConfigItems.size()); }

  ToolHost& host_;
  AnswerFrames frames_;
  std::unique_ptr<Timer> late_;   // on while an answer of the run before may still come
  QuietWatch quiet_watch_;        // on while the next message waits until no late answer can come
  std::vector<CfgWrite> writes_;  // each that was answered, since the file was opened
  std::string message_;           // that went out last
  std::string heard_;             // of it, while there is no answer
  std::string trouble_;           // why it went out once more
  std::string old_answer_;        // that came to it, as one to a message before
  std::string folder_;            // where the last file was
  int left_out_ = 0;              // lines of the file
  int repeats_ = 0;               // of the message
  bool is_running_ = false;
  bool asks_again_ = false;       // the message goes out again when the line is quiet
  bool is_behind_quiet_ = false;  // it has
  bool is_prolonged_ = false;     // its answer was arriving when the time was up
  bool is_asking_ = false;        // whether the form may be closed
  bool is_begun_ = false;         // the item in work: a message for it has gone out
  bool is_doubtful_ = false;      // an answer to a message before may still be on its way
};

}  // namespace tarnlink
