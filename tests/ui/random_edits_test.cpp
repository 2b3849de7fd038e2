// A user without a plan: a thousand edits with mouse and keys, undone to the start and redone to
// the end.

#include <random>

#include "ui/edit_fixture.h"

namespace tarnlink {
namespace {

class RandomEdits : public EditUiTest {
 protected:
  void OpenFullScreen() {
    ShowChecks();
    std::string text = "16744576\r\n";
    for (int i = 0; i < 8; ++i) {
      text +=
          LocationAt("Loc & " + std::to_string(i), 600, 600 + 500 * i, 2900, 600 + 500 * i, i % 4);
    }
    for (int i = 0; i < 4; ++i) {
      text += LabelAt("Text " + std::to_string(i), 7000, 600 + 900 * i, "12");
    }
    OpenScreen(text);
    window->resize(1000, 700);
  }

  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  bool OneIn(int count) { return Below(count) == 0; }

  // One of all that can be done, or now and then something that is broken off.
  void Edit() {
    switch (Below(12)) {
      case 0:
      case 1:
      case 2:
      case 3:
        return DragSomething();
      case 4:
        return ClickAt(OnSomething(), Qt::LeftButton,
                       OneIn(2) ? Qt::ShiftModifier : Qt::NoModifier);
      case 5:
        return RightClick();
      case 6:
        return DoubleClick();
      case 7:
        return PressArrows();
      case 8:
        return PressKey();
      case 9:
        return Add();
      case 10:
        return OneIn(3) ? SetGrid(OneIn(2)) : Key(Qt::Key_Tab);
      default:
        for (int i = Below(4); i > 0; --i) OneIn(3) ? Redo() : Undo();
    }
  }

 private:
  // A place in the window where the screen can be seen.
  QPoint SomePlace() {
    const QWidget* viewport = Scroller().viewport();
    return viewport->mapTo(window.get(),
                           QPoint(Below(viewport->width()), Below(viewport->height())));
  }
  // One on an object, which is scrolled to.
  QPoint OnSomething() {
    std::vector<QWidget*> objects;
    for (QWidget* object : Get("screen").findChildren<QWidget*>()) {
      if (object->isVisible()) objects.push_back(object);
    }
    if (objects.empty()) return SomePlace();
    QWidget* object = objects[static_cast<std::size_t>(Below(static_cast<int>(objects.size())))];
    Scroller().ensureWidgetVisible(object);
    const QRect seen = object->visibleRegion().boundingRect();
    if (seen.isEmpty()) return SomePlace();
    return object->mapTo(window.get(),
                         seen.topLeft() + QPoint(Below(seen.width()), Below(seen.height())));
  }
  // The kind of what is seen there, and of what has the keyboard, by the name of its array.
  std::string At(const QPoint& place) const {
    const QWidget* widget = window->childAt(place);
    return widget == nullptr ? "" : KindOf(widget->objectName().toStdString());
  }
  static std::string KindOf(const std::string& name) { return name.substr(0, name.find('(')); }

  void DragSomething() {
    PressAt(OnSomething());
    for (int i = Below(3); i >= 0; --i) MoveTo(OneIn(8) ? OnSomething() : SomePlace());
    if (OneIn(10)) Key(Qt::Key_Escape);
    Release();
  }
  void RightClick() {
    const QPoint place = OneIn(4) ? SomePlace() : OnSomething();
    const bool shift = OneIn(2);
    ExpectRightButton(At(place), shift);
    ClickAt(place, Qt::RightButton, shift ? Qt::ShiftModifier : Qt::NoModifier);
  }
  void DoubleClick() {
    const QPoint place = OnSomething();
    if (At(place) == "lbl_TextInfo") GiveText();
    DoubleClickAt(place);
    ConfirmSettings();
  }
  // Those of a Location are an edit like any other.
  void ConfirmSettings() {
    if (!monitor.settings.form.Visible) return;
    monitor.settings.cmd_Ok.Press();
    WaitForActive(window.get());
  }
  void PressArrows() {
    constexpr Qt::Key kArrows[] = {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down};
    const Qt::Key key = kArrows[Below(4)];
    const auto modifier = OneIn(3) ? Qt::ShiftModifier : Qt::NoModifier;
    for (int i = Below(5); i >= 0; --i) Key(key, modifier);
  }
  void PressKey() {
    const std::string kind = KindOf(Focus());
    const bool shift = OneIn(2);
    const auto modifier = shift ? Qt::ShiftModifier : Qt::NoModifier;
    switch (Below(3)) {
      case 0:
        if (kind == "RAM_LOC_TEXT" || kind == "RAM_LOC_VAL") {
          ExpectDeleteQuestion().Press(OneIn(2) ? Answer::kYes : Answer::kNo);
        }
        return Key(Qt::Key_Delete);
      case 1:
        if (kind == "lbl_TextInfo") GiveText();
        Key(Qt::Key_Return, modifier);
        return ConfirmSettings();
      default:
        ExpectRightButton(kind, shift);
        return Key(Qt::Key_Menu, modifier);
    }
  }
  void Add() {
    constexpr int kMany = 40;  // objects
    if (monitor.main.MaxId < kMany && OneIn(2)) Key(Qt::Key_L, Qt::ControlModifier);
    if (monitor.main.TextInfoCount < kMany && OneIn(2)) Key(Qt::Key_T, Qt::ControlModifier);
  }

  // --- What the dialogs are answered ---

  void ExpectRightButton(const std::string& kind, bool shift) {
    const bool label = kind == "lbl_TextInfo";
    if (kind == "screen" || (label && shift)) {
      ScriptedDialog& dialog = world.dialogs().ExpectColour();
      if (!OneIn(5)) dialog.GiveColour(Below(0x1000000));
    } else if (label) {
      ScriptedDialog& dialog = world.dialogs().ExpectFont();
      if (OneIn(5)) return;
      dialog.GiveFont({.name = OneIn(2) ? "DejaVu Sans" : "DejaVu Serif",
                       .size = static_cast<float>(24 + Below(48)) / 4,
                       .bold = OneIn(2),
                       .italic = OneIn(2)});
    }
  }
  void GiveText() {
    ScriptedDialog& dialog = ExpectLabelText();
    if (OneIn(5)) return;
    dialog.Give(OneIn(5) ? " \" " : "W\xC3\xA4rme & \"" + std::to_string(Below(50)) + "\" ");
  }

  std::mt19937 random_{20240517};
};

TEST_F(RandomEdits, AThousandAreUndoneAndRedoneToTheByte) {
  OpenFullScreen();
  const std::string first_file = Save();
  const std::string first_look = Everything();
  for (int i = 0; i < 1000; ++i) {
    Edit();
    ASSERT_FALSE(Dragging()) << i;
    if (HasFailure()) return;
  }
  const std::string last_file = Save();
  const std::string last_look = Everything();
  EXPECT_NE(last_file, first_file);

  int steps = 0;
  for (; Entry("mnuUndo").isEnabled(); ++steps) Undo();
  EXPECT_EQ(Save(), first_file);
  EXPECT_EQ(Everything(), first_look);
  EXPECT_GT(steps, 100) << "so many edits are real ones";

  for (; Entry("mnuRedo").isEnabled(); --steps) Redo();
  EXPECT_EQ(steps, 0);
  EXPECT_EQ(Save(), last_file);
  EXPECT_EQ(Everything(), last_look);
}

}  // namespace
}  // namespace tarnlink
