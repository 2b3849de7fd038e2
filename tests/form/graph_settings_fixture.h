// The graph with its settings, and what is seen in their list and details.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "common/numbers.h"
#include "common/text.h"
#include "form/open_graph.h"
#include "unit/measure_store.h"

namespace tarnlink {

inline constexpr const char* kNoneSelected = "No item selected";

class GraphSettingsTest : public OpenGraph {
 protected:
  GraphSettingsTest() { Open(); }

  // --- The user ---

  void OpenSettings() { menu.mnuGraphSettings.Press(); }
  // The list begins with this line.
  void ScrollTo(int line) { conf.VScroll1.Value = line; }
  void Click(int row) { conf.lblCapClick(row); }
  ScriptedDialog& ExpectHarm() {
    return world.dialogs().ExpectMessageBox(
        {.text = "Altering this data could harm your measurement.",
         .title = "Edit",
         .icon = Icon::kExclamation,
         .buttons = Buttons::kOkCancel});
  }
  ScriptedDialog& ExpectClear() {
    return world.dialogs().ExpectMessageBox({.text = "Remove unused data from memory.",
                                             .title = "Clear",
                                             .icon = Icon::kQuestion,
                                             .buttons = Buttons::kYesNo});
  }

  // --- The table ---

  MeasureChannel& Channel(int index) {
    return graph.Data.Channels.at(static_cast<std::size_t>(index));
  }
  // A file of so many lines, "Line 0" and up, none of which is shown.
  static std::string LinesText(int count) {
    Graphic data = SmallStore();
    data.Attributes.resize(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < data.Attributes.size(); ++i) {
      data.Attributes[i].Alias = "Line " + std::to_string(i);
    }
    return FileText(data, {.with_measurements = false});
  }
  void Load(const std::string& text) {
    constexpr const char* kLines = "/home/user/work/lines.grp";
    world.disk().Put(kLines, text);
    all.file_commands.OpenProperties(kLines);
  }
  void LoadLines(int count) { Load(LinesText(count)); }

  // --- What is seen ---

  // "Sensor 1 0000FF line caption: 0000FF style 0 width 2", empty for a row that is not there.
  std::string Row(int row) {
    const Label& name = conf.lblCap(row);
    const LineSample& sample = conf.lblLine(row);
    const CheckBox& line = conf.chkLine(row);
    const CheckBox& caption = conf.chkCap(row);
    if (!AllVisible({&name, &sample, &line, &caption})) return {};
    return name.Caption.get() + " " + ColourText(name.ForeColor) + (line.Value ? " line" : "") +
           (caption.Value ? " caption" : "") + ": " + ColourText(sample.ForeColor) + " style " +
           std::to_string(static_cast<int>(sample.Style.get())) + " width " +
           std::to_string(sample.DrawWidth);
  }
  std::string Name(int row) { return conf.lblCap(row).Caption; }
  int RowsSeen() {
    int count = 0;
    for (int row = 0; row < frmGraphConf::kRows; ++row) count += Row(row).empty() ? 0 : 1;
    return count;
  }
  // The row that stands out, once all others do not; -1 for none.
  int HighlightedRow() {
    constexpr auto kFace = static_cast<Colour>(0x8000000F);
    constexpr auto kHighlight = static_cast<Colour>(0x8000000C);
    int highlighted = -1;
    for (int row = 0; row < frmGraphConf::kRows; ++row) {
      const Colour colour = conf.lblCap(row).BackColor;
      if (colour == kFace) continue;
      EXPECT_EQ(colour, kHighlight) << row;
      EXPECT_EQ(highlighted, -1) << row;
      highlighted = row;
    }
    return highlighted;
  }
  bool NormalSetIsSeen() {
    return AllVisible({&conf.txtAlias, &conf.txtDescription, &conf.cmbDrawStyle, &conf.chkShowLine,
                       &conf.chkShowCaption, &conf.cmdLineColor, &conf.cmdAdvanced});
  }
  bool AdvancedSetIsSeen() {
    return AllVisible({&conf.txtID, &conf.txtSlaveAddress, &conf.txtClass, &conf.txtData,
                       &conf.txtFactor, &conf.cmbStoredAs, &conf.cmbUnit, &conf.lblStyle,
                       &conf.lblAdvanced(0), &conf.lblAdvanced(1), &conf.lblAdvanced(2),
                       &conf.lblAdvanced(3), &conf.lblAdvanced(4), &conf.lblAdvanced(5),
                       &conf.lblAdvanced(6)});
  }
  // "row 3: Sensor 4, advanced", "No item selected".
  std::string Selection() {
    std::string text = conf.lblFixedCap.Caption;
    EXPECT_EQ(NormalSetIsSeen(), HighlightedRow() != -1);
    if (HighlightedRow() != -1) text = "row " + std::to_string(HighlightedRow()) + ": " + text;
    return AdvancedSetIsSeen() ? text + ", advanced" : text;
  }

  static std::string ColourText(Colour colour) {
    constexpr int kDigits = 6;
    return Stuff(Hex32(colour), kDigits);
  }

  frmGraphConf& conf = all.settings;

 private:
  // Once all of them agree.
  static bool AllVisible(std::initializer_list<const Control*> controls) {
    const bool first = (*controls.begin())->Visible;
    for (const Control* each : controls) EXPECT_EQ(each->Visible.get(), first) << each->name();
    return first;
  }
};

}  // namespace tarnlink
