#include "graph/frm_context_menu.h"

namespace tarnlink {

namespace {

constexpr int kTenMinutes = 2;  // of `mnuScale`, the scale that the form begins with

}  // namespace

frmContextMenu::frmContextMenu(frmGraphic& graph) : graph_(graph) {
  mnuScale(kTenMinutes).Checked = true;
  mnuTimeScroll.Checked = true;
}

void frmContextMenu::SetCommunication(bool On) {
  graph_.ZOLTCommunication = On;
  graph_.lblCommunicationError.Visible = !On;
  graph_.lblCommunicationError.Caption = kCommunicationStopped;
  mnuZOLTCom.Checked = On;
  if (On && InitCom) InitCom();
}

void frmContextMenu::SetTimeScroll(bool On) {
  graph_.AutoScroll = On;
  mnuTimeScroll.Checked = On;
  graph_.ScreenRefreshTimer->SetEnabled(On);
  graph_.CursorTime = On ? 0 : graph_.BaseTime;
}

}  // namespace tarnlink
