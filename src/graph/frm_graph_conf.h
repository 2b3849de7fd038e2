// The settings of the graph: its lines, one row each, the details of the one that is selected, and
// the colours. What is changed here is in force at once; there is no cancel.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/control_array.h"
#include "common/controls.h"
#include "common/dialog_controls.h"
#include "common/scroll_bar.h"
#include "graph/frm_graphic.h"
#include "graph/graph_display.h"
#include "platform/drawing_surface.h"

namespace tarnlink {

// A sample of a line: a stroke in `ForeColor`, which is the background's colour while the line is
// off.
class LineSample : public PlacedControl {
 public:
  LineSample(std::string name, const std::string&) : PlacedControl(std::move(name)) {}

  Property<DrawStyle> Style{this, DrawStyle::kSolid};
  Property<int> DrawWidth{this, 2};
  std::function<void()> Click;
};

// A button that shows the colour which it changes, none for one that changes no single colour.
class ColorButton : public CommandButton {
 public:
  using CommandButton::CommandButton;

  Property<std::optional<Colour>> Color{this, std::nullopt};
};

class frmGraphConf {
 public:
  static constexpr int kRows = 25;
  static constexpr int kNone = -1;  // no row

  // Both outlive it.
  frmGraphConf(frmGraphic& graph, GraphDisplay& display);

  Control form{"frmGraphConf"};
  Label caption{"frmGraphConf.Caption", "Graphic Settings"};

  // --- The list ---
  PlacedControl Picture1{"Picture1"};
  FixedArray<Label> lblCap{"lblCap", 0, Rows("")};
  FixedArray<LineSample> lblLine{"lblLine", 0, Rows("")};
  FixedArray<CheckBox> chkLine{"chkLine", 0, Rows("Show line")};
  FixedArray<CheckBox> chkCap{"chkCap", 0, Rows("Show caption")};
  ScrollBar VScroll1{"VScroll1"};
  GroupBox Frame1{"Frame1", "View"};
  OptionGroup optView{"optView", {"View alias", "View fixed"}};

  // --- The selected line ---
  Label lblFixedCap{"lblFixedCap"};
  TextBox txtAlias{"txtAlias"};
  TextBox txtDescription{"txtDescription"};
  Label lblStyle{"lblStyle", "Style :"};
  PickBox cmbDrawStyle{"cmbDrawStyle"};
  CheckBox chkShowLine{"chkShowLine", "Show line"};
  CheckBox chkShowCaption{"chkShowCaption", "Show caption"};
  ColorButton cmdLineColor{"cmdLineColor", "Color"};
  CommandButton cmdAdvanced{"cmdAdvanced", "Advanced"};

  // --- What it asks the slave for; hidden until the user insists ---
  TextBox txtID{"txtID"};
  TextBox txtSlaveAddress{"txtSlaveAddress"};
  TextBox txtClass{"txtClass"};
  TextBox txtData{"txtData"};
  TextBox txtFactor{"txtFactor"};
  PickBox cmbStoredAs{"cmbStoredAs"};
  PickBox cmbUnit{"cmbUnit"};
  FixedArray<Label> lblAdvanced{
      "lblAdvanced", 0, {"ID :", "SA :", "Class :", "Data :", "Factor :", "Stored as :", "Unit :"}};

  FixedArray<ColorButton> cmdColor{"cmdColor",
                                   0,
                                   {"Caption color", "Grid color", "Cursor color", "Graph color",
                                    "Back color", "Default colors"}};

  // Opens with no row selected.
  void Show();
  // Asks whether what is hidden may go from memory; a question that is not answered leaves it open.
  void Close();
  // The lines are others now, such as those of a file: none of them is selected.
  void FollowTable();
  std::function<void()> Closed;
  // False while samples must stay in memory, as those of which a file is being made.
  std::function<bool()> MayClear;

  // What the user does: a click on a row's name, on the name above the details.
  void lblCapClick(int Row) { Select(Row); }
  void lblFixedCapClick() { ShowAdvanced(); }

  // The attribute that a row shows, kNone for a row that shows none; the same for the channels.
  int GetAttributeIndex(int Row) const { return IndexOf(Row, graph_.Data.LastAttribute()); }
  int GetLineIndex(int Row) const { return IndexOf(Row, graph_.Data.LastChannel()); }

 private:
  static std::vector<std::string> Rows(const std::string& caption) {
    return std::vector<std::string>(kRows, caption);
  }
  int IndexOf(int row, int last) const;
  void BindRows();
  void BindDetails();
  void BindAdvanced();
  template <class Number>
  void BindNumber(TextBox& box, Number GraphAttribute::*field, Number (*convert)(std::string_view));
  template <class Number>
  void BindPick(PickBox& box, Number GraphAttribute::*field);
  void RefreshList();
  void RefreshRow(int row);
  void Select(int row);
  void LoadDetails();
  void ShowNormal(bool visible);
  void ShowAdvancedSet(bool visible);
  void ShowAdvanced();
  void Switch(int index, bool GraphAttribute::*field, bool on);
  void SwitchRow(int row, bool GraphAttribute::*field, bool on);
  void PickLineColor(int row);
  void PickGraphColor(int index);
  void ShowColours();
  // The colour that a button changes.
  Colour& PlaceOf(int button);
  std::vector<int> HiddenChannels() const;
  GraphAttribute* Selected();

  frmGraphic& graph_;
  GraphDisplay& display_;
  int selected_ = kNone;      // the attribute
  int selected_row_ = kNone;  // the row that it stands in
  bool is_loading_ = false;   // the controls follow the attribute, not the other way round
};

}  // namespace tarnlink
