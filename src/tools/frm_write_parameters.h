// The parameter writer: sends the values of a parameter file to one slave, one a message, and reads
// every one back if it is asked to.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/controls.h"
#include "common/dialog_controls.h"
#include "common/growing_text.h"
#include "files/parameter_file.h"
#include "protocols/zolt_message.h"
#include "tools/answer_frames.h"
#include "tools/parameter_answer.h"
#include "tools/quiet_watch.h"
#include "tools/tool_host.h"

namespace tarnlink {

// "C:\...\file.par" of a path with more than one folder; one of under 12 characters stays whole.
std::string ShortnPath(const std::string& Path);

class frmWriteParameters {
 public:
  // `host` outlives it.
  explicit frmWriteParameters(ToolHost& host);

  Control form{"frmWriteParameters"};
  Label caption{"frmWriteParameters.Caption", "Write Parameters"};

  TextBox txtFilename{"txtFilename"};
  CommandButton cmdBrowse{"cmdBrowse", "Browse..."};
  GroupBox fraSlave{"fraSlave", "Slave "};
  TextBox txtSlave{"txtSlave"};  // of which the first character counts
  CheckBox chkVerify{"chkVerify", "Verify"};
  CommandButton cmdWriteZOLT{"cmdWriteZOLT", "Write ZOLT"};
  CommandButton cmdCancel{"cmdCancel", "Cancel"};
  GroupBox fraMonitor{"fraMonitor", "Communication monitor"};
  GrowingText txtScrollStatus{"txtScrollStatus"};
  Label lblProgress{"lblProgress"};  // the item in work and what is left; in the end the result
  CountBar ProgressBar1{"ProgressBar1"};
  StatusPanel StatusBar1{"StatusBar1", "State"};
  CommandButton cmdCopy{"cmdCopy", "Copy list"};
  CommandButton cmdSaveList{"cmdSaveList", "Save list..."};

  std::unique_ptr<SerialPort> Comm;
  std::unique_ptr<Timer> CommWatch;

  std::string ParameterPath;
  int WritePhase = 0;  // 1 while writing, 0 while verifying
  int ParameterIndex = 0;
  int RetryCount = 0;     // failed tries of this item
  int NotSentCount = 0;   // items given up on, in either phase
  int VerifiedCount = 0;  // items that the slave holds as they were asked for

  // Opens with the parameter file that the program names, if it does. Only once.
  void Show();
  // Asks first while parameters are being sent. Only once.
  void Unload();
  std::function<void()> Unloaded;

  void ReadParameters();
  void AddMonitorText(const std::string& Text, bool AddNewLine);
  // Goes on with the item in work, or with what comes behind it.
  void SendNextParameter();

  const std::vector<ParameterItem>& items() const { return items_; }
  bool IsRunning() const { return is_running_; }
  std::function<void(const std::string& text)> CopyText;  // what `cmdCopy` does with the list

 private:
  void Browse();
  void TakeFile(const std::string& path);
  void Write();
  bool BeginVerify();
  bool SendItem();
  void ShowProgress();
  void CommEvent(int event);
  void Received();
  bool IsForAnother(std::string_view answer) const;
  void Answered(const ParameterVerdict& verdict, bool is_doubtful);
  void Hold(const ParameterVerdict& verdict, const std::string& answer);
  void Overhear(const std::string& bytes);
  void LineIsQuiet(bool is_quiet);
  void HeardRequest(std::string_view frame);
  void Take(const ParameterVerdict& verdict);
  void NextItem();
  void GoOn(bool is_doubtful, bool was_repeated);
  bool IsRetryNext() const;
  const ParameterItem* NextItemToSend() const;
  bool IsNextConfusable() const;
  bool IsNextOnSamePage() const;
  bool IsSameItemReadNext() const;
  bool IsMemoryRead() const;
  std::string Slave() const;
  void Watch(int milliseconds);
  void Pause(int milliseconds);
  int AnswerTime() const;
  void WatchExpired();
  void AwaitQuiet(bool was_repeated);
  bool MayStop();
  void Halt();
  void ShowIdle();
  void EndOfPhases();
  void Report();
  std::string StateText() const;
  void Fail(const std::string& reason);
  void SaveList();
  int Count() const { return static_cast<int>(items_.size()); }
  const ParameterItem& Item() const { return items_.at(static_cast<std::size_t>(ParameterIndex)); }

  ToolHost& host_;
  ZoltMessages messages_;
  std::vector<ParameterItem> items_;
  ParameterRequest request_;
  AnswerFrames frames_;
  QuietWatch quiet_watch_;                   // on while the next message waits for a quiet line
  bool is_running_ = false;                  // in one of the phases
  bool is_out_ = false;                      // a message has gone out and its answer is awaited
  bool is_pausing_ = false;                  // the watch ends a pause; no answer is awaited
  int requests_ = 0;                         // that went out for the item in work
  std::optional<ParameterVerdict> verdict_;  // of an answer behind which the line must be quiet
  std::string held_answer_;
  bool is_contradicted_ = false;  // something else came behind it
  bool hears_master_ = false;     // another one has asked our slave since
  bool is_asked_ = false;         // the user is asked whether to stop: nothing goes out meanwhile
  bool is_held_ = false;          // and something would have
  int acknowledged_ = 0;          // items that the slave says it has taken
};

}  // namespace tarnlink
