// The graph's own conversation with the slave: one read request at a time, line after line, always
// under ZOLT. Each answer becomes a sample and sends the next request.
#pragma once

#include <functional>
#include <string>

#include "graph/frm_context_menu.h"
#include "graph/frm_graphic.h"

namespace tarnlink {

// What the options say of the line, asked whenever the acquisition begins.
struct GraphPort {
  std::function<int()> ComPortNumber;
  std::function<int()> Baudrate;  // as it is stored: how often 1200 is doubled
};

class GraphAcquisition {
 public:
  // Both forms outlive this; it binds the port, the watch timer and the menu's entry.
  GraphAcquisition(frmGraphic& graph, frmContextMenu& menu, GraphPort options);

  // Begins anew with the first line; without a port it says so, and nothing is sent.
  void InitCom();
  // Sends the test mode command if it is wanted, otherwise the request of the next line that is
  // shown. Opens the port. Throws RunTimeError 8005 or 57.
  void SendMsgToZOLT();
  // The port is closed afterwards.
  bool IsPortFree();

  // The mouse on `lblTest`: left sends the command, any other button asks for its settings.
  void TestMouseDown(MouseButton button);
  void TestMouseUp();
  std::function<void()> ShowTestMode;

 private:
  void Received(int event);
  bool TakeAnswer();
  void SayBusy();
  void WatchExpired();
  void mnuZOLTCom();
  void AskAndSwitch();
  bool IsPolled(int index) const;
  std::string NextFrame();
  void SendOrRetry();
  std::size_t Index() const { return static_cast<std::size_t>(graph_.LinePointer); }

  frmGraphic& graph_;
  frmContextMenu& menu_;
  GraphPort options_;
  std::int32_t request_id_ = 0;  // of the request that is out
};

}  // namespace tarnlink
