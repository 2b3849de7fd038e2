// The form of the graph: its controls and the fields that its parts share. Acquisition and view act
// on it, the menu belongs to frmContextMenu.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "common/controls.h"
#include "common/dates.h"
#include "graph/graph_geometry.h"
#include "graph/graphic.h"
#include "platform/platform.h"

namespace tarnlink {

inline constexpr const char* kCommunicationError = "Communication error";
inline constexpr const char* kCommunicationStopped = "Communication stopped";

class frmGraphic {
 public:
  explicit frmGraphic(Platform& platform)
      : Comm(platform.CreatePort()),
        CommWatch(platform.CreateTimer()),
        AutoSaveTimer(platform.CreateTimer()),
        ScreenRefreshTimer(platform.CreateTimer()),
        platform_(platform) {
    form.Visible = false;
    lblCommunicationError.Visible = false;
    lblTest.ToolTipText = "Send testmode command to ZOLT";
    lblExit.ToolTipText = "Click to exit ";
  }

  Platform& platform() const { return platform_; }
  Date Now() const { return platform_.clock().Now(); }

  Control form{"frmGraphic"};
  Label caption{"frmGraphic.Caption", "Graphic"};
  Label lblCommunicationError{"lblCommunicationError", kCommunicationError};
  Label lblTest{"lblTest", "Test"};
  Label lblExit{"lblExit", "Exit"};
  Label lblDate{"lblDate"};

  Graphic Data;

  // --- Acquisition ---
  const std::unique_ptr<SerialPort> Comm;
  const std::unique_ptr<Timer> CommWatch;
  const std::unique_ptr<Timer> AutoSaveTimer;
  bool ZOLTCommunication = false;    // it runs
  std::int32_t LinePointer = -1;     // the line whose request is out
  std::int32_t RetryCount = 0;       // expiries of CommWatch since the last good answer
  bool SendTestMode = false;         // the command goes out in place of the next poll
  bool TestModeOn = true;            // what it says
  std::uint8_t TestModePower = 100;  // percent

  // --- View ---
  const std::unique_ptr<Timer> ScreenRefreshTimer;
  std::int16_t TimeScale = 10;  // minutes
  Date BaseTime = 0;            // at the right edge
  Date CursorTime = 0;          // 0: there is no cursor
  bool AutoScroll = true;       // the right edge follows the clock

 private:
  Platform& platform_;
};

}  // namespace tarnlink
