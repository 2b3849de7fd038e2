// The real program, started on a screen and a settings store of its own and driven from outside.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "process.h"
#include "support/temporary_folder.h"

namespace e2e {

// A folder of a test's own and the files in it, removed in the end.
class TestFolder {
 public:
  std::string Path(const std::string& name) const { return folder_ / name; }
  std::string Write(const std::string& name, const std::string& text) const;
  std::string Read(const std::string& name) const;
  // True once the file holds `text`; false if that did not come in time.
  bool Becomes(const std::string& name, const std::string& text) const;

 private:
  tarnlink::TemporaryFolder folder_;
};

class DrivenProgram {
 public:
  // `settings` is the text of the settings store; `screen` the file to open, or empty; `starter`
  // the command that starts it, if it is not simply started.
  DrivenProgram(const TestFolder& folder, const std::string& settings, const std::string& screen);
  DrivenProgram(const TestFolder& folder, const std::string& settings,
                const std::vector<std::string>& files,
                const std::vector<std::string>& starter = {});
  // Fails the test if the window has kept its user waiting, as does every other call.
  ~DrivenProgram();
  DrivenProgram(DrivenProgram&&) = default;
  DrivenProgram& operator=(DrivenProgram&&) = default;

  // One command to the driver; its answer.
  std::string Ask(const std::string& command);
  void Press(const std::string& name);
  // A button of the dialog that is up, by its text, once it can be pressed.
  void Click(const std::string& text) { Do("click " + text); }
  // A click, a double click; a key ("Ctrl+S"), a text letter by letter: as soon as they can be had.
  void Mouse(const std::string& target) { Do("mouse " + target); }
  void Twice(const std::string& target) { Do("twice " + target); }
  void Key(const std::string& name) { Do("key " + name); }
  void Keys(const std::string& text) { Do("keys " + text); }
  // Gives the name in the save dialog of that title, which is up or comes up.
  void SaveAs(const std::string& title, const std::string& path);
  std::string Text(const std::string& name) { return Ask("text " + name); }

  // True once `command` is answered with `wanted`; false if that did not come in time.
  bool Becomes(const std::string& command, const std::string& wanted, int milliseconds = 5000);

  Process& process() { return *process_; }

 private:
  void Do(const std::string& command);

  std::unique_ptr<Process> process_;
};

}  // namespace e2e
