#include "form/edit_fixture.h"

#include "common/numbers.h"
#include "monitor/screen_builder.h"

namespace tarnlink {
namespace {

// A box lands this much up and left of where it is held; a label lands just there.
constexpr float kDropOffset = 30;

std::string Pair(float left, float top) { return FormatSingle(left) + "," + FormatSingle(top); }

std::string SizeText(const PlacedControl& control) {
  return control.name() + " " + Pair(control.Width, control.Height) + " font " +
         control.TextFont->name + " " + FormatSingle(control.TextFont->size) + "\n";
}

}  // namespace

std::string LocationLine(const std::string& alias, FormPlace name, FormPlace value,
                         int scan_flags) {
  return R"("L",0,3,"01A0",0,")" + alias + R"(","v",0,0,)" + std::to_string(scan_flags) +
         R"(,0,"0",0,)" + Pair(value.Top, value.Left) + "," + Pair(name.Top, name.Left) + R"(,"0")";
}

std::string LabelLine(const std::string& caption, FormPlace place) {
  return R"("T",")" + caption + R"(",)" + Pair(place.Top, place.Left) +
         R"(,"Arial",8.25,#FALSE#,#FALSE#,0)";
}

MousePress LeftPress(float X, float Y) { return {.X = X, .Y = Y}; }
MousePress ShiftLeftPress() { return {.shift = true}; }
MousePress RightPress() { return {.button = MouseButton::kRight}; }
MousePress ShiftRightPress() { return {.button = MouseButton::kRight, .shift = true}; }

std::string PlaceOf(const PlacedControl& control) { return Pair(control.Left, control.Top); }

void EditTest::OpenScreen(const std::vector<std::string>& lines) {
  OpenText("255\r\n" + FileText(lines));
}

void EditTest::SetScanningBox(bool on) {
  Store("Communication", "Scanning", on ? "1" : "0");
  options().ScanningBox.Value = on;
}

void EditTest::GrabName(int index, const MousePress& press) {
  main().RAM_LOC_TEXT.MouseDown(index, press);
}

void EditTest::GrabValue(int index, const MousePress& press) {
  main().RAM_LOC_VAL.MouseDown(index, press);
}

void EditTest::GrabLabel(int index, const MousePress& press) {
  main().lbl_TextInfo.MouseDown(index, press);
}

void EditTest::DragName(int index, FormPlace place) {
  GrabName(index, LeftPress(100, 60));
  Drop(place.Left + 100 + kDropOffset, place.Top + 60 + kDropOffset);
}

void EditTest::DragValue(int index, FormPlace place) {
  GrabValue(index, LeftPress(100, 60));
  Drop(place.Left + 100 + kDropOffset, place.Top + 60 + kDropOffset);
}

void EditTest::DragLabel(int index, FormPlace place) {
  GrabLabel(index, LeftPress(100, 60));
  Drop(place.Left + 100, place.Top + 60);
}

ScriptedDialog& EditTest::ExpectDeleteQuestion() {
  return world.dialogs().ExpectMessageBox(
      {.text = "Are you sure you want to delete the selected location ?",
       .title = "Delete Location",
       .icon = Icon::kExclamation,
       .buttons = Buttons::kYesNo});
}

void EditTest::DeleteLocation(int index) {
  ExpectDeleteQuestion().Press(Answer::kYes);
  main().RAM_LOC_TEXT.DeleteKey(index);
}

ScriptedDialog& EditTest::ExpectLabelText() {
  return world.dialogs().ExpectInputBox("Enter text to be displayed", "Text Information");
}

void EditTest::TypeLabel(int index, const std::string& text) {
  ExpectLabelText().Give(text);
  main().lbl_TextInfo.DblClick(index);
}

bool EditTest::Changed() {
  EXPECT_EQ(Title().ends_with(" *"), main().WCRChanged) << Title();
  return main().WCRChanged;
}

std::string EditTest::Entries() {
  const auto shown = [](const MenuEntry& entry) {
    const std::string caption = entry.Caption;
    return entry.Enabled ? caption : "[" + caption + "]";
  };
  return shown(main().mnuUndo) + " | " + shown(main().mnuRedo);
}

std::string EditTest::FileNow() {
  return WriteScreenFile(main().form.BackColor, ScreenRecords(main(), options()));
}

std::string EditTest::Everything() {
  std::string text = Screen() + FileNow() + Panel(2) + "\n" + Counts() + "\n";
  for (int i = 1; i <= main().MaxId; ++i) {
    text += SizeText(main().RAM_LOC_TEXT(i)) + SizeText(main().RAM_LOC_VAL(i)) +
            SizeText(main().RAM_LOC_CHECK(i)) + "flags " +
            std::to_string(main().Locations[i].ScanFlags) + "\n";
  }
  for (int j = 1; j <= main().TextInfoCount; ++j) {
    text +=
        SizeText(main().lbl_TextInfo(j)) + "tip " + main().lbl_TextInfo(j).ToolTipText.get() + "\n";
  }
  return text;
}

}  // namespace tarnlink
