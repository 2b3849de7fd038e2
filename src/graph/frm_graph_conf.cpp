#include "graph/frm_graph_conf.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/local_decimal.h"
#include "common/numbers.h"
#include "common/run_time_error.h"
#include "graph/graph_picture.h"

namespace tarnlink {

namespace {

constexpr Colour kButtonFace = kFormBackground;
constexpr Colour kHighlight = static_cast<Colour>(0x8000000C);

constexpr int kViewAlias = 0;      // of `optView`
constexpr int kDefaultColors = 5;  // of `cmdColor`

using Items = std::vector<ComboBox::Item>;

Items ItemsOf(std::initializer_list<const char*> texts) {
  Items items;
  for (const char* text : texts) items.push_back({text});
  return items;
}

// An index that the list does not have, such as a file can bring, shows nothing.
void ShowPick(PickBox& box, int index) {
  box.SelectText({});
  box.Select(index);
}

// Changes a flag for as long as this lives.
class Raised {
 public:
  explicit Raised(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  ~Raised() { flag_ = before_; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace

frmGraphConf::frmGraphConf(frmGraphic& graph, GraphDisplay& display)
    : graph_(graph), display_(display) {
  form.Visible = false;
  cmbDrawStyle.List = ItemsOf({"Solid", "Dash", "Dot", "Dash Dot", "Dash Dot Dot"});
  cmbUnit.List = ItemsOf({"No", "Celcius", "rpm", "bar", "%", "on off"});
  cmbStoredAs.List = ItemsOf({"Msb", "Lsb", "Both"});
  txtSlaveAddress.ToolTipText = "Slave Address";
  txtFactor.ToolTipText = "when unit=onf off bit number";
  lblFixedCap.BackColor = kButtonFace;
  BindRows();
  BindDetails();
  BindAdvanced();
}

// --- Opening and closing -------------------------------------------------------------------------

void frmGraphConf::Show() {
  VScroll1.LargeChange = kRows;
  VScroll1.Value = 0;
  optView.Select(kViewAlias);
  FollowTable();
  form.Visible = true;
}

void frmGraphConf::FollowTable() {
  VScroll1.Max = std::max(0, graph_.Data.LastAttribute() - (kRows - 1));
  VScroll1.Value = std::min(VScroll1.Value.get(), VScroll1.Max.get());
  Select(kNone);
  RefreshList();
}

void frmGraphConf::Close() {
  if (!form.Visible) return;
  if (!HiddenChannels().empty() && (!MayClear || MayClear())) {
    const Answer answer =
        graph_.platform().dialogs().MessageBox({.text = "Remove unused data from memory.",
                                                .title = "Clear",
                                                .icon = Icon::kQuestion,
                                                .buttons = Buttons::kYesNo});
    if (answer == Answer::kCancel) return;
    // Once more: a file may have come meanwhile, or be under way.
    if (answer == Answer::kYes && (!MayClear || MayClear())) {
      for (const int i : HiddenChannels())
        graph_.Data.Channels[static_cast<std::size_t>(i)].Dimension(0);
    }
  }
  form.Visible = false;
  if (Closed) Closed();
}

std::vector<int> frmGraphConf::HiddenChannels() const {
  std::vector<int> hidden;
  for (int i = 0; i < graph_.Data.LastChannel(); ++i) {
    const bool is_allocated = graph_.Data.Channels[static_cast<std::size_t>(i)].UpperBound() > 0;
    if (is_allocated && !graph_.Data.LineAt(i).IsShown()) hidden.push_back(i);
  }
  return hidden;
}

// --- The list ------------------------------------------------------------------------------------

// A table that is shorter than the list fills the first rows; one that has become shorter than the
// scroll bar thinks shows the first line of its last page in every row.
int frmGraphConf::IndexOf(int row, int last) const {
  constexpr int kBelow = kRows - 1;
  if (last < kBelow) return row <= last ? row : kNone;
  return VScroll1.Value + kBelow > last ? last - kBelow : VScroll1.Value + row;
}

void frmGraphConf::BindRows() {
  VScroll1.Change = [this] {
    Select(kNone);
    RefreshList();
  };
  optView.Click = [this](int) {
    Select(kNone);
    RefreshList();
  };
  for (int row = 0; row < kRows; ++row) {
    lblLine(row).ToolTipText = "Another color";
    lblLine(row).Click = [this, row] { PickLineColor(row); };
    chkLine(row).Click = [this, row] {
      SwitchRow(row, &GraphAttribute::ShowLine, chkLine(row).Value);
    };
    chkCap(row).Click = [this, row] {
      SwitchRow(row, &GraphAttribute::ShowCaption, chkCap(row).Value);
    };
  }
}

void frmGraphConf::RefreshList() {
  const Raised loading(is_loading_);
  Picture1.BackColor = graph_.Data.Colors.GraphColor;
  for (int row = 0; row < kRows; ++row) RefreshRow(row);
  ShowColours();
}

void frmGraphConf::RefreshRow(int row) {
  const int index = GetAttributeIndex(row);
  const bool is_used = index != kNone;
  for (Control* control :
       std::initializer_list<Control*>{&lblCap(row), &lblLine(row), &chkLine(row), &chkCap(row)}) {
    control->Visible = is_used;
  }
  const GraphAttribute line = graph_.Data.LineAt(index);
  chkLine(row).Value = line.ShowLine;
  chkCap(row).Value = line.ShowCaption;
  lblLine(row).ForeColor = line.IsShown() ? line.LineColor : graph_.Data.Colors.GraphColor;
  lblLine(row).BackColor = graph_.Data.Colors.GraphColor;
  lblLine(row).Style = StyleOf(line);
  lblLine(row).DrawWidth = StyleOf(line) == DrawStyle::kSolid ? 2 : 1;
  lblCap(row).Caption = optView.Selected() == kViewAlias ? line.Alias : line.FixedCaption;
  lblCap(row).ForeColor = line.LineColor;
}

void frmGraphConf::Switch(int index, bool GraphAttribute::*field, bool on) {
  if (index < 0 || index > graph_.Data.LastAttribute()) return;
  graph_.Data.Attributes[static_cast<std::size_t>(index)].*field = on;
  if (on) graph_.Data.AllocateChannel(index);
  RefreshList();
}

void frmGraphConf::SwitchRow(int row, bool GraphAttribute::*field, bool on) {
  if (is_loading_) return;
  Switch(GetAttributeIndex(row), field, on);
  Select(row);
}

// --- The selected line ---------------------------------------------------------------------------

GraphAttribute* frmGraphConf::Selected() {
  if (selected_ < 0 || selected_ > graph_.Data.LastAttribute()) return nullptr;
  return &graph_.Data.Attributes[static_cast<std::size_t>(selected_)];
}

void frmGraphConf::Select(int row) {
  for (int i = 0; i < kRows; ++i) lblCap(i).BackColor = kButtonFace;
  ShowAdvancedSet(false);
  selected_ = row == kNone ? kNone : GetAttributeIndex(row);
  selected_row_ = selected_ == kNone ? kNone : row;
  if (Selected() == nullptr) {
    lblFixedCap.Caption = "No item selected";
    ShowNormal(false);
    return;
  }
  lblCap(row).BackColor = kHighlight;
  cmdAdvanced.Enabled = selected_ < graph_.Data.LastChannel();
  ShowNormal(true);
  LoadDetails();
}

void frmGraphConf::LoadDetails() {
  const Raised loading(is_loading_);
  const GraphAttribute& line = *Selected();
  lblFixedCap.Caption = line.FixedCaption;
  txtAlias.Text = line.Alias;
  txtDescription.Text = line.Description;
  ShowPick(cmbDrawStyle, line.LineStyle);
  chkShowLine.Value = line.ShowLine;
  chkShowCaption.Value = line.ShowCaption;
  txtID.Text = std::to_string(line.ID);
  txtSlaveAddress.Text = std::to_string(line.SlaveAddress);
  txtClass.Text = std::to_string(line.Class);
  txtData.Text = std::to_string(line.Data);
  cmdLineColor.Color = line.LineColor;
  txtFactor.Text =
      LocalizeDecimal(FormatSingle(line.Factor), graph_.platform().locale().DecimalSeparator());
  ShowPick(cmbStoredAs, line.StoredAs);
  ShowPick(cmbUnit, line.Unit);
}

void frmGraphConf::ShowNormal(bool visible) {
  for (Control* control :
       std::initializer_list<Control*>{&txtAlias, &txtDescription, &cmbDrawStyle, &chkShowLine,
                                       &chkShowCaption, &cmdLineColor, &cmdAdvanced}) {
    control->Visible = visible;
  }
}

void frmGraphConf::ShowAdvancedSet(bool visible) {
  for (Control* control :
       std::initializer_list<Control*>{&txtID, &txtSlaveAddress, &txtClass, &txtData, &txtFactor,
                                       &cmbStoredAs, &cmbUnit, &lblStyle}) {
    control->Visible = visible;
  }
  for (int i = 0; i <= lblAdvanced.last(); ++i) lblAdvanced(i).Visible = visible;
}

void frmGraphConf::BindDetails() {
  const auto bind_text = [this](TextBox& box, std::string GraphAttribute::*field) {
    box.Change = [this, &box, field] {
      if (is_loading_ || Selected() == nullptr) return;
      Selected()->*field = box.Text;
      RefreshList();
    };
  };
  bind_text(txtAlias, &GraphAttribute::Alias);
  bind_text(txtDescription, &GraphAttribute::Description);
  BindPick(cmbDrawStyle, &GraphAttribute::LineStyle);
  const auto bind_switch = [this](CheckBox& box, bool GraphAttribute::*field) {
    box.Click = [this, &box, field] {
      if (!is_loading_) Switch(selected_, field, box.Value);
    };
  };
  bind_switch(chkShowLine, &GraphAttribute::ShowLine);
  bind_switch(chkShowCaption, &GraphAttribute::ShowCaption);
  cmdLineColor.Click = [this] { PickLineColor(selected_row_); };
  cmdAdvanced.Click = [this] { ShowAdvanced(); };
  for (int i = 0; i <= cmdColor.last(); ++i) {
    cmdColor(i).Click = [this, i] { PickGraphColor(i); };
  }
}

template <class Number>
void frmGraphConf::BindPick(PickBox& box, Number GraphAttribute::*field) {
  box.Click = [this, &box, field] {
    if (is_loading_ || Selected() == nullptr || box.ListIndex < 0) return;
    Selected()->*field = static_cast<Number>(box.ListIndex.get());
    RefreshList();
  };
}

// --- Advanced ------------------------------------------------------------------------------------

// The status bits have no request of their own.
void frmGraphConf::ShowAdvanced() {
  if (Selected() == nullptr || selected_ >= graph_.Data.LastChannel()) return;
  const Answer answer = graph_.platform().dialogs().MessageBox(
      {.text = "Altering this data could harm your measurement.",
       .title = "Edit",
       .icon = Icon::kExclamation,
       .buttons = Buttons::kOkCancel});
  if (answer == Answer::kOk) ShowAdvancedSet(true);
}

// What is no number leaves the line as it was and stays in the box.
template <class Number>
void frmGraphConf::BindNumber(TextBox& box, Number GraphAttribute::*field,
                              Number (*convert)(std::string_view)) {
  box.Change = [this, &box, field, convert] {
    if (is_loading_ || Selected() == nullptr) return;
    try {
      Selected()->*field = convert(box.Text.get());
    } catch (const RunTimeError&) {
      // As the user types, a number is often not yet one.
    }
  };
}

void frmGraphConf::BindAdvanced() {
  BindNumber(txtClass, &GraphAttribute::Class, &ToByte);
  BindNumber(txtSlaveAddress, &GraphAttribute::SlaveAddress, &ToByte);
  BindNumber(txtID, &GraphAttribute::ID, &ToLong);
  BindNumber(txtData, &GraphAttribute::Data, &ToLong);
  BindNumber<float>(txtFactor, &GraphAttribute::Factor,
                    [](std::string_view text) { return ToSingle(LocalizeDecimal(text, ".")); });
  BindPick(cmbUnit, &GraphAttribute::Unit);
  BindPick(cmbStoredAs, &GraphAttribute::StoredAs);
}

// --- Colours -------------------------------------------------------------------------------------

void frmGraphConf::PickLineColor(int row) {
  if (row == kNone) return;
  const int index = GetAttributeIndex(row);
  if (index == kNone) return;
  const auto colour = graph_.platform().dialogs().PickColour(graph_.Data.LineAt(index).LineColor);
  if (!colour || GetAttributeIndex(row) != index) return;
  graph_.Data.Attributes.at(static_cast<std::size_t>(index)).LineColor = *colour;
  RefreshList();
  Select(row);
}

Colour& frmGraphConf::PlaceOf(int button) {
  GraphColors& colours = graph_.Data.Colors;
  const std::array<Colour*, kDefaultColors> places = {&colours.CaptionColor, &colours.GridColor,
                                                      &colours.CursorColor, &colours.GraphColor,
                                                      &colours.BackColor};
  return *places.at(static_cast<std::size_t>(button));
}

void frmGraphConf::PickGraphColor(int index) {
  if (index == kDefaultColors) {
    graph_.Data.DefaultColor();
  } else {
    const auto colour = graph_.platform().dialogs().PickColour(PlaceOf(index));
    if (!colour) return;
    PlaceOf(index) = *colour;
  }
  display_.Form_Resize();
  RefreshList();
}

void frmGraphConf::ShowColours() {
  for (int i = 0; i < kDefaultColors; ++i) cmdColor(i).Color = PlaceOf(i);
  if (Selected() != nullptr) cmdLineColor.Color = Selected()->LineColor;
}

}  // namespace tarnlink
