#include "fuzz/forms/forms.h"
#include "fuzz/forms/monitor_user.h"
#include "fuzz/forms/seed_text.h"
#include "monitor/screen_state.h"

namespace tarnlink {
namespace {

constexpr int kMostLabels = 40;

class Editor {
 public:
  explicit Editor(FuzzInput& input)
      : input_(input), user_(input, kTarnlinkProtocol), main_(user_.monitor.main) {
    user_.Screen(2);
    const std::uint8_t options = input.Byte();
    user_.monitor.options.chkGridOn.Value = (options & 1) != 0;
    user_.monitor.options.ScanningBox.Value = (options & 2) != 0;
    FormDriver& driver = user_.driver;
    driver.Form(main_.form);
    driver.Add(main_.Toolbar1(1), main_.Toolbar1(4), main_.mnuUndo, main_.mnuRedo);
    driver.Do([this] { Grab(); });
    driver.Do([this] { Drop(); });
    driver.Do([this] { Arrow(); });
    driver.Do([this] { Delete(); });
    driver.Do([this] { main_.form.DragCancel(); });
    driver.Do([this] { main_.form.MouseDown(Press()); });
    driver.Do([this] { Tick(); });
  }

  void Run() {
    user_.driver.Run();
    ClaimOfUndo();
    user_.Run();
  }

 private:
  MousePress Press() {
    const std::uint8_t how = input_.Byte();
    return {.button = (how & 1) != 0 ? MouseButton::kRight : MouseButton::kLeft,
            .shift = (how & 2) != 0,
            .X = static_cast<float>(how),
            .Y = 60};
  }
  int AnyLabel() {
    const int most = std::min(main_.TextInfoCount, kMostLabels);
    const int index = most == 0 ? 0 : 1 + input_.Below(most);
    return main_.lbl_TextInfo.Has(index) && main_.lbl_TextInfo(index).Visible ? index : 0;
  }

  // What is dragged already cannot be grabbed.
  void Grab() {
    if (main_.DragSource != nullptr) return;
    const int what = input_.Below(3);
    const int index = what == 2 ? AnyLabel() : user_.AnyLocation();
    if (index == 0) return;
    if (what == 0) main_.RAM_LOC_TEXT.MouseDown(index, Press());
    if (what == 1) main_.RAM_LOC_VAL.MouseDown(index, Press());
    if (what == 2) main_.lbl_TextInfo.MouseDown(index, Press());
  }
  void Drop() {
    if (main_.DragSource == nullptr) return;
    const int what = input_.Below(4);
    const int index = user_.AnyLocation();
    if (what == 0 && index > 0) return main_.RAM_LOC_TEXT.DragDrop(index);
    if (what == 1 && index > 0) return main_.RAM_LOC_VAL.DragDrop(index);
    const auto x = static_cast<float>(input_.Word());
    const auto y = static_cast<float>(input_.Word());
    main_.form.DropPlace(x, y);
    main_.form.DragDrop(x - 500, y - 500);
  }
  void Arrow() {
    const int what = input_.Below(3);
    const int index = what == 2 ? AnyLabel() : user_.AnyLocation();
    if (index == 0) return;
    const ArrowStep step{
        .right = input_.Below(3) - 1, .down = input_.Below(3) - 1, .other = input_.Coin()};
    if (what == 0) main_.RAM_LOC_TEXT.Arrow(index, step);
    if (what == 1) main_.RAM_LOC_VAL.Arrow(index, step);
    if (what == 2) main_.lbl_TextInfo.Arrow(index, step);
  }
  void Delete() {
    const bool is_label = input_.Coin();
    const int index = is_label ? AnyLabel() : user_.AnyLocation();
    if (index == 0) return;
    if (is_label) return main_.lbl_TextInfo.DeleteKey(index);
    main_.RAM_LOC_TEXT.DeleteKey(index);
  }
  void Tick() {
    const int index = user_.AnyLocation();
    if (index == 0 || !main_.RAM_LOC_CHECK(index).Visible) return;
    main_.RAM_LOC_CHECK(index).Value = !main_.RAM_LOC_CHECK(index).Value;
  }

  ScreenState State() const {
    ScreenState state(main_);
    for (int i = 1; i <= main_.MaxId; ++i) state.AddLocation(main_, i);
    for (int i = 1; i <= main_.TextInfoCount; ++i) state.AddLabel(main_, i);
    return state;
  }

  // All edits are taken back one after the other, and made again.
  void ClaimOfUndo() {
    user_.world.faults().Clear();
    user_.driver.Guard([this] {
      main_.form.DragCancel();
      const ScreenState after = State();
      int undone = 0;
      for (; main_.mnuUndo.Enabled && undone < 200; ++undone) main_.mnuUndo.Press();
      Claim(!main_.mnuUndo.Enabled, "every edit can be taken back");
      for (; undone > 0; --undone) {
        Claim(main_.mnuRedo.Enabled, "what was taken back can be made again");
        main_.mnuRedo.Press();
      }
      Claim(State() == after, "and the screen is as it was");
    });
  }

  FuzzInput& input_;
  MonitorUser user_;
  frm_Main& main_;
};

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  Editor(input).Run();
}

std::vector<std::string> Seeds() {
  using namespace seed;
  const std::string screen("\1\x86\x10\0\x87\x12\0\1", 8);
  const std::string name(1, '\0');
  return {
      screen + Act(0) + Act(1) + "\5" + Text(2) + std::string(1, '\0') + Act(2) + Act(2) + Act(3),
      screen + Act(4, name + name + "\x20") + Act(5, std::string("\3\0\0\x10\0\x10", 6)) + Act(2) +
          Act(3),
      screen + Act(4, std::string("\1\0\4", 3)) + Act(5, std::string("\1\1", 2)) +
          Act(6, std::string("\0\0\2\1\0", 5)) + Act(2),
      screen + Act(4, std::string("\1\0\2", 3)) + Act(7, std::string("\0\0", 2)) + Yes() + Act(2) +
          Act(10, name),
      screen + Act(9, "\1") + "\5\1\2" + name + Act(9, "\3") + Act(4, std::string("\0\1\0", 3)) +
          Act(2) + Act(8)};
}

}  // namespace

FuzzTarget ScreenEditingFormTarget() { return {"screen_editing_form", Run, Seeds}; }

}  // namespace tarnlink
