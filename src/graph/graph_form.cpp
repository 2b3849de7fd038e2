#include "graph/graph_form.h"

#include "common/run_time_error.h"

namespace tarnlink {

GraphForm::GraphForm(frmGraphic& graph, frmContextMenu& menu, GraphAcquisition& acquisition,
                     AutoSave& auto_save, MeasureFiles& files)
    : graph_(graph), menu_(menu), acquisition_(acquisition), auto_save_(auto_save), files_(files) {
  menu.mnuExit.Click = [this] { Unload(); };
}

void GraphForm::Load() {
  is_loaded_ = true;
  graph_.Data.InitMeasurements();
  graph_.Data.DefaultColor();
  LineColors colours;
  graph_.Data.Attributes = LoadDefaultAttributes(colours);
  graph_.Data.FirstTime = graph_.Data.LastTime = graph_.BaseTime = graph_.Now();
  graph_.ScreenRefreshTimer->SetEnabled(true);
  acquisition_.InitCom();
  graph_.form.Visible = true;
}

void GraphForm::Unload() {
  if (!is_loaded_) return;
  is_loaded_ = false;
  files_.TakeFailedWrite();  // one before has been told, and went on
  files_.StopLoads();
  auto_save_.Unload();
  graph_.ZOLTCommunication = false;
  for (Timer* timer :
       {graph_.CommWatch.get(), graph_.AutoSaveTimer.get(), graph_.ScreenRefreshTimer.get()}) {
    timer->SetEnabled(false);
  }
  try {
    graph_.Comm->SetPortOpen(false);
  } catch (const RunTimeError&) {
    // Whatever the device says, the graph is left.
  }
  graph_.form.Visible = false;
  files_.WhenIdle([this] {
    if (files_.TakeFailedWrite()) {
      ComeBack();
    } else if (Unloaded) {
      Unloaded();
    }
  });
}

// Recording has ended. The next time it is left for good.
void GraphForm::ComeBack() {
  is_loaded_ = true;
  menu_.mnuAutoSave.Checked = false;
  menu_.SetTimeScroll(false);
  menu_.SetCommunication(false);
  if (files_.DrawAgain) files_.DrawAgain();
  graph_.form.Visible = true;
  if (Returned) Returned();
}

}  // namespace tarnlink
