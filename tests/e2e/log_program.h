// The real program with a log under way, on a line of its own at whose other end the answers are
// the numbers from 1 on.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "driven_program.h"
#include "line_end.h"

namespace e2e {

class LogProgram {
 public:
  static constexpr int kColumns = 3;

  using Starter = std::function<std::vector<std::string>(const std::string& log)>;

  // The names of its three Locations. `logs` is made ready before the program looks at it;
  // `starter` gives the command that starts it, if it is not simply started.
  explicit LogProgram(const std::vector<std::string>& names,
                      const std::function<void(const std::string& logs)>& prepare = nullptr,
                      const Starter& starter = nullptr);

  // Starts the run with the log that the dialog proposes.
  void StartLog();
  // Answers so many requests.
  void Answer(int count);
  int answers() const { return answers_; }

  std::string Log() const { return folder_.Read(kLog); }
  std::string LogPath() const { return folder_.Path(kLog); }
  DrivenProgram& program() { return *program_; }

 private:
  static constexpr const char* kLog = "logs/log 3.log";

  std::string Settings() const;

  TestFolder folder_;
  LineEnd line_;
  int answers_ = 0;
  std::unique_ptr<DrivenProgram> program_;
};

std::vector<std::string> Split(const std::string& text, const std::string& mark);

// "" if the log is as it must be after so many answers: a heading that names the Locations, rows of
// all columns but for the last one, and no value missing but perhaps the last.
std::string FaultOfLog(const std::string& log, int answers);

}  // namespace e2e
