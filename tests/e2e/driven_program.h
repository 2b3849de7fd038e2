// The real program, started on a screen and a settings store of its own and driven from outside.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "process.h"

namespace e2e {

// A folder of a test's own, removed in the end.
class TestFolder {
 public:
  TestFolder();
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  std::string Path(const std::string& name) const { return (path_ / name).string(); }
  std::string Write(const std::string& name, const std::string& text) const;
  std::string Read(const std::string& name) const;

 private:
  std::filesystem::path path_;
};

class DrivenProgram {
 public:
  // `settings` is the text of the settings store; `screen` the file to open, or empty.
  DrivenProgram(const TestFolder& folder, const std::string& settings, const std::string& screen);

  // One command to the driver; its answer.
  std::string Ask(const std::string& command);
  void Press(const std::string& name);
  std::string Text(const std::string& name) { return Ask("text " + name); }

  // True once `command` is answered with `wanted`; false if that did not come in time.
  bool Becomes(const std::string& command, const std::string& wanted, int milliseconds = 5000);

  Process& process() { return *process_; }

 private:
  std::unique_ptr<Process> process_;
};

}  // namespace e2e
