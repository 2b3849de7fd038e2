// The language of the tests on options, start and leave, screen files and histories: a person at
// the menus and dialogs, and one list of all that the program does because of them.
//
//   StartProgram();
//   options().opt_Baudrate.Choose(3);
//   TakeNotes();
//   options().cmd_OptionsOk.Press();
//   EXPECT_EQ(TakeNotes(), "save Communication/Baudrate=3\n...");
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "monitor/monitor.h"
#include "platform/forwarding_platform.h"
#include "support/fake_world.h"

namespace tarnlink {

// What happened, one line each, in order.
class Notes {
 public:
  void Add(const std::string& line) { text_ += line + "\n"; }
  std::string Take() { return std::exchange(text_, {}); }

 private:
  std::string text_;
};

// Carries everything on to the fake and notes "save Section/Key=value".
class NotedStore final : public SettingsStore {
 public:
  NotedStore(FakeSettingsStore& store, Notes& notes) : store_(store), notes_(notes) {}

  std::string GetSetting(std::string_view section, std::string_view key,
                         std::string_view fallback) const override;
  void SaveSetting(std::string_view section, std::string_view key, std::string_view value) override;
  std::string Failure() override { return store_.Failure(); }

 private:
  FakeSettingsStore& store_;
  Notes& notes_;
};

// A fake world whose store and ports note what is done to them.
class NotedWorld final : public ForwardingPlatform {
 public:
  NotedWorld(FakeWorld& world, Notes& notes);

  std::unique_ptr<SerialPort> CreatePort() override;
  SettingsStore& settings() override { return store_; }

 private:
  Notes& notes_;
  NotedStore store_;
};

class DeskTest : public ::testing::Test {
 protected:
  // --- The program ---

  // Starts it on the store as it stands; one that was started before is gone first.
  void StartProgram();
  // The program that has been made but not loaded yet.
  void MakeProgram();
  Monitor& program() { return *program_; }
  frm_Main& main() { return program_->main; }
  frm_Options& options() { return program_->options; }
  bool Unloaded() const { return unloaded_; }

  // --- The store ---

  void Store(std::string_view section, std::string_view key, std::string_view value) {
    world.settings().SaveSetting(section, key, value);
  }
  // "<absent>" where nothing is stored.
  std::string Stored(std::string_view section, std::string_view key) {
    return world.settings().GetSetting(section, key, "<absent>");
  }

  // --- The user ---

  // Shows the options dialog, and presses its buttons.
  void ShowOptions() { main().M_options.Press(); }
  void Ok() { options().cmd_OptionsOk.Press(); }
  void Cancel() { options().cmd_OptionsCancel.Press(); }
  // Chooses a file in the dialog of the Open entry. The screen is to be unchanged.
  void Open(const std::string& path);
  // The same with a file that cannot be read to its end: run-time error `code` is told.
  void OpenFails(int code, const std::string& path = kScreen);
  // The same with a file that is put on the disk first.
  void OpenText(std::string_view text, const std::string& path = kScreen);
  void OpenTextFails(int code, std::string_view text);
  void Save() { main().M_filesave(0).Press(); }
  void SaveAs() { main().M_filesave(1).Press(); }
  void Exit() { main().M_exit.Press(); }
  // What an edit of the screen, or of the project, leaves.
  void ChangeScreen();
  void ChangeProject() { main().ProjectChanged = true; }
  // What the deletion of a Location leaves.
  void Delete(int index);

  ScriptedDialog& ExpectScreenQuestion();
  ScriptedDialog& ExpectProjectQuestion();
  ScriptedDialog& ExpectAddToProject();
  ScriptedDialog& ExpectPortError();
  ScriptedDialog& ExpectOpenFailure(int code, const std::string& path = kScreen);
  ScriptedDialog& ExpectSaveFailure(int code, const std::string& path = kScreen);

  // --- What can be seen ---

  // What was saved, shown and done to the port since the last time.
  std::string TakeNotes() { return notes.Take(); }
  std::string Panel(int panel) { return main().StatusBar1(panel).Text; }
  std::string Title() { return main().form.Caption; }
  // The four captions of a history in one line each; a disabled one stands in brackets.
  static std::string History(const FixedArray<MenuEntry>& menu);
  // The form's colour and every box and label with all that a user sees of it.
  std::string Screen();
  // "MaxId 2, LocationCount 2, TextInfoCount 1", once the controls that exist agree with it.
  std::string Counts();
  // Protocol, speed, parity, stop bits and time-out as the dialog shows them: "1: 2400 Even Two 3".
  std::string PortOptions();

  static constexpr const char* kFolder = "/home/user/Documents";
  static constexpr const char* kScreen = "/home/user/Documents/boiler.wcr";

  FakeWorld world;
  Notes notes;
  NotedWorld noted_world{world, notes};

 private:
  std::unique_ptr<Monitor> program_;
  bool unloaded_ = false;
};

// Lines joined as a file holds them.
std::string FileText(const std::vector<std::string>& lines);

}  // namespace tarnlink
