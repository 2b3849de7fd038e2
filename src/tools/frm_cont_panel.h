// The control panel: a service screen for one ZOLT slave that knows its data IDs by heart. It has
// its own port and works off what is pending, one request at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "tools/answer_frames.h"
#include "tools/panel_answers.h"
#include "tools/panel_form.h"
#include "tools/panel_open_requests.h"
#include "tools/quiet_watch.h"
#include "tools/tool_host.h"

namespace tarnlink {

class frm_ContPanel : public PanelForm {
 public:
  // `host` outlives it.
  explicit frm_ContPanel(ToolHost& host);

  // On the host's slave. Nothing is asked for until the user asks; shown already, it stays as it
  // is.
  void Show();
  // Closes the port.
  void Unload();
  std::function<void()> Unloaded;

  // What an update of this tab asks for, in place of all other reads. The commands stay.
  void RequestTab(int Tab);
  void RequestCurrentTab();
  // The lowest that is pending; with continuous update the tab in view begins anew.
  void SendNextRequest();
  // Opens the port. What goes wrong is not told in a box: the time-out follows.
  void SendKEM3Message(std::uint8_t Class, std::int32_t Id, std::uint8_t DataHi,
                       std::uint8_t DataLo);
  // Applies one answer of 16 bytes whose check holds.
  void ProcessKEM3Message(std::string_view Raw);

  const std::unique_ptr<SerialPort> comm_CtrlPanel;
  const std::unique_ptr<Timer> tim_CommTimeout;

 private:
  void BindEvents();
  void ShowSlave();
  void Update(int tab);
  void UpdateCurrentTab();
  void SetPending(int index);
  void Ask();
  int FirstPending() const;
  PanelRequest NextRequest();
  void Received(int event);
  void TakeAnswer(AnswerKind kind);
  void HearRequest(std::string_view frame);
  bool IsAnswerToOther(std::string_view frame) const;
  bool IsCompletion(std::string_view frame) const;
  bool IsOfPendingCommand(std::string_view frame) const;
  void TakeGood();
  void TakeUnasked();
  double Milliseconds() const;
  void AwaitQuiet(bool is_open);
  void DoubtIsOver(bool is_quiet);
  void TimedOut();

  ToolHost& host_;
  PanelAnswers answers_;
  AnswerFrames frames_;
  PanelRequest request_;  // the one that is out, or the last one
  bool is_out_ = false;
  bool is_repeated_ = false;  // it went out before, without an answer: that may still come
  PanelOpenRequests open_;
  std::string last_answer_;
  bool is_fast_ = false;    // answers may be sooner than the line can bring them
  bool is_shared_ = false;  // another master asks the same slave
  bool is_silent_ = false;  // it has not answered, and no box has said so
  QuietWatch quiet_watch_;  // on while the next request waits for a quiet line
  bool is_open_ = false;    // meanwhile the answer to the request that is out counts
};

}  // namespace tarnlink
