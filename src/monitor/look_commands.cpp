#include "monitor/look_commands.h"

#include "common/text.h"

namespace tarnlink {

LookCommands::LookCommands(frm_Main& main, ScreenDrag& drag, EditHistory& history)
    : main_(main), drag_(drag), history_(history) {
  main_.RAM_LOC_VAL.MouseDown = [this](int index, const MousePress& press) {
    PressValue(index, press);
  };
  main_.lbl_TextInfo.MouseDown = [this](int index, const MousePress& press) {
    PressLabel(index, press);
  };
  main_.lbl_TextInfo.DblClick = [this](int index) { EditLabelText(index); };
  main_.form.MouseDown = [this](const MousePress& press) {
    if (press.button == MouseButton::kRight) ChangeFormColour();
  };
}

void LookCommands::PressValue(int index, const MousePress& press) {
  if (press.button != MouseButton::kLeft) return;
  if (press.shift) {
    ToggleSize(index);
  } else {
    drag_.BeginValue(index, press);
  }
}

void LookCommands::ToggleSize(int index) {
  constexpr float kLarger = 2.0F;
  constexpr float kLargerLetters = 4.0F;
  const TextBox& normal = main_.RAM_LOC_VAL(0);
  TextBox& value = main_.RAM_LOC_VAL(index);
  const ScreenEdit edit =
      history_.Begin("size of the value of " + EditName(main_.RAM_LOC_TEXT(index).Text))
          .Location(index);
  const bool enlarge = value.Height.get() == normal.Height.get();
  value.Height = normal.Height * (enlarge ? kLarger : 1.0F);
  value.Width = normal.Width * (enlarge ? kLarger : 1.0F);
  Font font = value.TextFont;
  font.size = normal.TextFont->size * (enlarge ? kLargerLetters : 1.0F);
  value.TextFont = font;
  // The file does not hold the size.
  history_.Commit(edit, Effect::kOnlyLook);
}

void LookCommands::PressLabel(int index, const MousePress& press) {
  main_.MarkChanged();
  if (press.button == MouseButton::kLeft) {
    drag_.BeginLabel(index, press);
  } else if (press.button == MouseButton::kRight) {
    press.shift ? ChangeLabelColour(index) : ChangeLabelFont(index);
  }
}

void LookCommands::ChangeLabelFont(int index) {
  Label& label = main_.lbl_TextInfo(index);
  const auto font = main_.platform().dialogs().PickFont(label.TextFont);
  if (!font) return;
  const ScreenEdit edit = history_.Begin("font of " + EditName(label.Caption)).Label(index);
  label.TextFont = *font;
  history_.Commit(edit, Effect::kChangesFile);
}

void LookCommands::ChangeLabelColour(int index) {
  Label& label = main_.lbl_TextInfo(index);
  const auto colour = main_.platform().dialogs().PickColour(label.ForeColor);
  if (!colour) return;
  const ScreenEdit edit = history_.Begin("colour of " + EditName(label.Caption)).Label(index);
  label.ForeColor = *colour;
  history_.Commit(edit, Effect::kChangesFile);
}

void LookCommands::EditLabelText(int index) {
  Label& label = main_.lbl_TextInfo(index);
  main_.MarkChanged();
  const auto text = main_.platform().dialogs().InputBox("Enter text to be displayed",
                                                        "Text Information", label.Caption);
  if (!text) return;
  const std::string caption = WithoutQuotes(*text);
  const bool deletes = caption.empty();
  const ScreenEdit edit =
      history_.Begin((deletes ? "deletion of " : "text of ") + EditName(label.Caption))
          .Label(index);
  if (deletes) {
    label.Visible = false;
  } else {
    label.Caption = caption;
  }
  history_.Commit(edit, Effect::kChangesFile);
}

void LookCommands::ChangeFormColour() {
  const auto colour = main_.platform().dialogs().PickColour(main_.form.BackColor);
  if (!colour) return;
  ScreenEdit edit = history_.Begin("colour of the screen");
  for (int i = 1; i <= main_.TextInfoCount; ++i) {
    edit.Label(i);
    main_.lbl_TextInfo(i).BackColor = *colour;
  }
  main_.form.BackColor = *colour;
  history_.Commit(edit, Effect::kChangesFile);
}

}  // namespace tarnlink
