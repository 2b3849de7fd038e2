// The communication run: polls the Locations of the screen one after the other over the one port of
// the main form. No thread: timers and the port's events, all on the GUI thread.
#pragma once

#include <array>
#include <chrono>
#include <memory>
#include <string>

#include "common/run_time_error.h"
#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "monitor/receive_pause.h"
#include "monitor/run_recorder.h"
#include "protocols/line_doubt.h"
#include "protocols/protocol_run.h"

namespace tarnlink {

// The protocols of the run by the index of `opt_Protocol`; an empty place is a protocol that can be
// chosen but that this program does not poll with.
using ProtocolTable = std::array<std::unique_ptr<Protocol>, kProtocolCount>;
ProtocolTable MakeProtocols();

class CommunicationRun final : public ProtocolRun {
 public:
  // Binds the tool bar's start and stop buttons, the port and the timers. All arguments outlive it.
  CommunicationRun(frm_Main& main, frm_Options& options, RunRecorder& recorder,
                   ProtocolTable protocols);

  void StartCommunication();
  void StopCommunication();
  // Stops the run from anywhere, without a word.
  void StopZOLTCommunication() override;
  // Sends a write of `value`, prepared hexadecimal text, to Location `index`; what was not sent is
  // cut from it. False if there is no message for it, which is told, and the exchange left to the
  // watchdog; also for a device that is gone and about to be told. A page that may not be written
  // counts as sent.
  bool SendWrite(int index, std::string& value);
  // The end of a Start, or of the run, by an error: says what it was and stops.
  void FailurePath(const RunTimeError& error);

  // The run as its protocol sees it.
  RunFields& fields() override { return main_; }
  LocationTable& locations() override { return main_.Locations; }
  SerialPort& Comm() override { return *main_.Comm; }
  Timer& Comm_Timer() override { return *main_.Comm_Timer; }
  Timer& tmr_noresponse() override { return *main_.tmr_noresponse; }
  Timer& tmr_MsgTimeout() override { return *main_.tmr_MsgTimeout; }
  int MessageTimeout() const override;
  bool NameVisible(int index) const override;
  std::string NameText(int index) const override;
  void ShowValue(int index, const std::string& text) override;
  void ShowPanel(StatusPanelIndex panel, const std::string& text) override;
  void LogRequest(int index) override { recorder_.LogRequest(index); }
  void RecordValue(int index) override;
  void LogUnreadable(int index) override { recorder_.LogUnreadable(index); }
  void EndRound() override;
  void EndLogRow() override { recorder_.EndLogRow(); }
  void TellProtectedArea() override;
  void DoubtTheLine() override { doubt_.Raise(); }

 private:
  Protocol* SelectedProtocol() const;
  void EndRun();
  void StopWithoutPort();
  void ClearAllValues();
  void ShowWhichAreOld();
  void DisableToolsDuringRun();
  void ReportError(const RunTimeError& error);

  void PollTick();
  void NoteUnaskedBytes();
  void CommEventHandler(int event);
  void Receive();
  void TakeGathered();
  int TimeOfExchange() const;
  int SpeedIndex() const;
  void TakeResponse();
  void LineError(const std::string& text);
  bool LossIsAboutToBeTold() const;
  void DeviceGone();
  void NoResponse();
  void MessageTimedOut();

  frm_Main& main_;
  frm_Options& options_;
  RunRecorder& recorder_;
  ProtocolTable protocols_;
  ReceivePause receive_pause_;
  LineDoubt doubt_;
  std::chrono::microseconds round_began_{0};
  bool line_error_shown_ = false;  // one box at a time, however many errors come in
};

}  // namespace tarnlink
