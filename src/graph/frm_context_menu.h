// The popup menu of the graph: its entries, and the two switches that its other parts use as well.
#pragma once

#include <functional>

#include "common/control_array.h"
#include "common/controls.h"
#include "graph/frm_graphic.h"

namespace tarnlink {

class frmContextMenu {
 public:
  explicit frmContextMenu(frmGraphic& graph);

  MenuEntry mnuFile{"mnuFile", "File"};
  MenuEntry mnuSaveProperties{"mnuSaveProperties", "Save properties"};
  MenuEntry mnuOpenProperties{"mnuOpenProperties", "Open properties"};
  MenuEntry mnuSaveMeasure{"mnuSaveMeasure", "Save measurements"};
  MenuEntry mnuOpenMeasure{"mnuOpenMeasure", "Open measurements"};
  MenuEntry mnuExport{"mnuExport", "Export"};
  MenuEntry mnuAutoSave{"mnuAutoSave", "Auto save"};
  MenuEntry mnuGraphSettings{"mnuGraphSettings", "Graph settings"};
  MenuEntry mnuZOLTCom{"mnuZOLTCom", "ZOLT communication"};
  MenuEntry mnuTimeScale{"mnuTimeScale", "Time scale"};
  FixedArray<MenuEntry> mnuScale{
      "mnuScale", 0, {" 1 minute", " 5 minutes", "10 minutes", "20 minutes", "60 minutes"}};
  MenuEntry mnuTimeScroll{"mnuTimeScroll", "Time Scroll"};
  MenuEntry mnuMeasOnly{"mnuMeasOnly", "Measured only"};
  MenuEntry mnuPrint{"mnuPrint", "Print"};
  MenuEntry mnuCopyPicture{"mnuCopyPicture", "Copy picture"};
  MenuEntry mnuSavePicture{"mnuSavePicture", "Save picture"};
  MenuEntry mnuExit{"mnuExit", "Quit Graphics"};

  // Starts or stops the acquisition; what its check mark says is what is.
  void SetCommunication(bool On);
  // The view follows the clock, or stands with a cursor at its right edge.
  void SetTimeScroll(bool On);

  // Begins the acquisition anew; draws the graph anew. Set by what owns them.
  std::function<void()> InitCom;
  std::function<void()> DrawAgain;

 private:
  frmGraphic& graph_;
};

}  // namespace tarnlink
