// A user in front of the dialogs: a script for the fake, and somebody who works with the real
// widgets, offscreen.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "contract/loops.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_timer.h"
#include "support/fake_world.h"

namespace tarnlink {

class FakeUser : public VirtualLoop {
 public:
  Dialogs& dialogs() { return world().dialogs(); }
  std::unique_ptr<Timer> MakeTimer() { return world().CreateTimer(); }

  // What the user does with the dialog that comes next.
  void Presses(const MessageBoxRequest& box, Answer answer) { Box(box).Press(answer); }
  void Closes(const MessageBoxRequest& box) { Box(box).Cancel(); }
  void WaitsIn(const MessageBoxRequest& box, const std::function<bool()>& condition) {
    Box(box).While([this, condition] { EXPECT_TRUE(RunUntil(condition)); });
  }
  void Opens(const MessageBoxRequest& box, const std::function<void()>& inside) {
    Box(box).While(inside);
  }
  void Types(const std::string& prompt, const std::string& title, const std::string& text) {
    dialogs_().ExpectInputBox(prompt, title).Give(text);
  }
  void LeavesInputBox(const std::string& prompt, const std::string& title) {
    dialogs_().ExpectInputBox(prompt, title).Cancel();
  }
  void OpensFile(const std::string& path) { dialogs_().ExpectOpenFile("Title").Give(path); }
  void SavesFile(const std::string& path) { dialogs_().ExpectSaveFile("Title").Give(path); }
  void PicksFolder(const std::string& path) { dialogs_().ExpectFolder("Title").Give(path); }
  void PicksColour(Colour colour) { dialogs_().ExpectColour().GiveColour(colour); }
  void PicksFont(const Font& font) { dialogs_().ExpectFont().GiveFont(font); }
  void PicksPrinter(bool landscape) { dialogs_().ExpectPrinter().GivePage({landscape}); }
  // Looks at the pages and closes the preview.
  void LooksAtPreview(const std::function<void()>& look) {
    dialogs_().ExpectPreview("Title").While(look);
  }
  void LeavesOpenFile() { dialogs_().ExpectOpenFile("Title").Cancel(); }
  void LeavesSaveFile() { dialogs_().ExpectSaveFile("Title").Cancel(); }
  void LeavesFolder() { dialogs_().ExpectFolder("Title").Cancel(); }
  void LeavesColour() { dialogs_().ExpectColour().Cancel(); }
  void LeavesFont() { dialogs_().ExpectFont().Cancel(); }
  void LeavesPrinter() { dialogs_().ExpectPrinter().Cancel(); }

 private:
  FakeDialogs& dialogs_() { return world().dialogs(); }
  ScriptedDialog& Box(const MessageBoxRequest& box) { return dialogs_().ExpectMessageBox(box); }
};

class QtUser : public QtLoop {
 public:
  Dialogs& dialogs() { return dialogs_; }
  std::unique_ptr<Timer> MakeTimer() { return std::make_unique<QtTimer>(); }

  void Presses(const MessageBoxRequest& box, Answer answer);
  void Closes(const MessageBoxRequest&) { Leaves("MessageBox"); }
  void WaitsIn(const MessageBoxRequest& box, const std::function<bool()>& condition);
  void Opens(const MessageBoxRequest& box, const std::function<void()>& inside);
  void Types(const std::string& prompt, const std::string& title, const std::string& text);
  void LeavesInputBox(const std::string&, const std::string&) { Leaves("InputBox"); }
  void OpensFile(const std::string& path) { ChoosesFile("OpenFile", path); }
  void SavesFile(const std::string& path) { ChoosesFile("SaveFile", path); }
  void PicksFolder(const std::string& path) { ChoosesFile("PickFolder", path); }
  void PicksColour(Colour colour);
  void PicksFont(const Font& font);
  void PicksPrinter(bool landscape);
  void LooksAtPreview(const std::function<void()>& look);
  void LeavesOpenFile() { Leaves("OpenFile"); }
  void LeavesSaveFile() { Leaves("SaveFile"); }
  void LeavesFolder() { Leaves("PickFolder"); }
  void LeavesColour() { Leaves("PickColour"); }
  void LeavesFont() { Leaves("PickFont"); }
  void LeavesPrinter() { Leaves("PickPrinter"); }

  // Runs `action` with the dialog of that name as soon as it is up.
  void With(const std::string& name, std::function<void(QWidget&)> action);
  // Closes the window as the user does with its frame.
  void Leaves(const std::string& name);
  void ChoosesFile(const std::string& name, const std::string& path);

 private:
  QtDialogs dialogs_;
};

}  // namespace tarnlink
