// The form of the graph: its controls and the fields that its parts share. Acquisition and view act
// on it, the menu belongs to frmContextMenu.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/control_array.h"
#include "common/controls.h"
#include "common/dates.h"
#include "common/scroll_bar.h"
#include "graph/graph_geometry.h"
#include "graph/graphic.h"
#include "graph/line_ages.h"
#include "platform/platform.h"

namespace tarnlink {

inline constexpr const char* kCommunicationError = "Communication error";
inline constexpr const char* kCommunicationStopped = "Communication stopped";

// Four for each row of a caption; the last one is never used.
inline constexpr int kCaptionLabels = 400;
inline constexpr int kLabelsOfRow = 4;

// The box that the picture is drawn in. `Draw` has it drawn anew; what draws it is told to the
// view.
class PictureBox : public PlacedControl {
 public:
  using PlacedControl::PlacedControl;

  Property<float> ScaleWidth{this, 0.0F};
  Property<float> ScaleHeight{this, 0.0F};
  std::function<void()> Draw;
};

// The numbers beside the picture, from the top: degrees and turns, bar and percent.
const std::vector<std::string>& LeftScale();
const std::vector<std::string>& RightScale();

// The pointer of the mouse while the form is idle, and while it draws a page.
inline constexpr int kArrow = 0;
inline constexpr int kHourglass = 11;

class FormWithPointer : public PlacedControl {
 public:
  using PlacedControl::PlacedControl;

  Property<int> MousePointer{this, kArrow};
};

class frmGraphic {
 public:
  explicit frmGraphic(Platform& platform);

  Platform& platform() const { return platform_; }
  // The present second: a part of one would be the next second where it is rounded.
  Date Now() const;

  FormWithPointer form{"frmGraphic"};
  Label caption{"frmGraphic.Caption", "Graphic"};
  Label lblCommunicationError{"lblCommunicationError", kCommunicationError};
  // Over the picture as long as nothing is shown in it.
  Label lblNoLine{"lblNoLine",
                  "No line is shown. \"Graph settings\" in the menu of the right mouse button "
                  "shows some,\n\"File, Open properties\" takes them from a file."};
  Label lblTest{"lblTest", "Test"};
  Label lblExit{"lblExit", "Exit"};
  Label lblDate{"lblDate"};

  Graphic Data;

  // --- Acquisition ---
  const std::unique_ptr<SerialPort> Comm;
  const std::unique_ptr<Timer> CommWatch;
  const std::unique_ptr<Timer> AutoSaveTimer;
  bool ZOLTCommunication = false;  // it runs
  std::int32_t LinePointer = -1;   // the line whose request is out
  LineAges Ages;
  std::int32_t RetryCount = 0;       // expiries of CommWatch since the last good answer
  bool SendTestMode = false;         // the command goes out in place of the next poll
  bool TestModeOn = true;            // what it says
  std::uint8_t TestModePower = 100;  // percent

  // --- View ---
  float ScaleWidth = 0.0F;  // of the form, as its view reports it
  float ScaleHeight = 0.0F;
  // The panels around the picture: captions, times, left and right scale.
  FixedArray<Label> frm{"frm", 0, std::vector<std::string>(4)};
  PictureBox GraphPan{"GraphPan"};
  FixedArray<Label> lblVal{"lblVal", 0, std::vector<std::string>(kCaptionLabels + 1)};
  FixedArray<Label> lblYL{"lblYL", 0, LeftScale()};
  FixedArray<Label> lblYR{"lblYR", 0, RightScale()};
  FixedArray<Label> lblX{"lblX", 0, std::vector<std::string>(kTimeLines)};
  // How far a caption row is seen below its place: the rows of many lanes would cover it there.
  std::array<float, kCaptionLabels / kLabelsOfRow> CaptionDrop{};
  ScrollBar HScroll1{"HScroll1"};
  const std::unique_ptr<Timer> ScreenRefreshTimer;
  std::int16_t TimeScale = 10;  // minutes
  Date BaseTime = 0;            // at the right edge
  Date CursorTime = 0;          // 0: there is no cursor
  bool AutoScroll = true;       // the right edge follows the clock

 private:
  Platform& platform_;
};

}  // namespace tarnlink
