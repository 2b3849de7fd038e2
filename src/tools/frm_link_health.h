// The panel under the status bar that tells how the line is: of each slave how many exchanges there
// were and how they went, and of each value on the screen how old it is.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/controls.h"
#include "common/dialog_controls.h"
#include "platform/platform.h"
#include "tools/link_record.h"

namespace tarnlink {

// How old the value of a Location is.
struct ValueAge {
  int index = 0;
  std::string name;
  double seconds = -1;  // negative: it was never answered
  bool is_old = false;  // its Location was not answered in the last round
};

class frm_LinkHealth {
 public:
  // Both outlive it.
  frm_LinkHealth(Platform& platform, LinkRecord& record);

  Control form{"frm_LinkHealth"};
  Label caption{"frm_LinkHealth.Caption", "Link health"};

  // Columns have tabs between them, in the headings and in the rows.
  Label lblSlaves{"lblSlaves",
                  "Slave\tExchanges\tAnswers\tRefused\tTime-outs\tBad checks\tShortest ms\tMedian "
                  "ms\tLongest ms\tLast bad frame"};
  ListBox lstSlaves{"lstSlaves"};
  Label lblAges{"lblAges", "Location\tName\tAge"};
  ListBox lstAges{"lstAges"};
  CommandButton cmdTrace{"cmdTrace", "Trace"};
  CommandButton cmdClear{"cmdClear", "Clear"};

  // Of the Locations on the screen, in their order.
  std::function<std::vector<ValueAge>()> Ages;

  // It is shown, or not, as it was when the program ended the last time.
  void Load();
  void Show();
  void Hide();

 private:
  void Remember();
  void Refresh();

  Platform& platform_;
  LinkRecord& record_;
  std::unique_ptr<Timer> refresh_;
};

}  // namespace tarnlink
