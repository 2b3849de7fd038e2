#include "driven_program.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>

#include <fstream>
#include <sstream>

namespace e2e {

namespace {

constexpr int kAnswerBound = 10000;  // ms

}  // namespace

TestFolder::TestFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "tarnlink-e2e-XXXXXX").string();
  path_ = mkdtemp(name.data());
}

TestFolder::~TestFolder() { std::filesystem::remove_all(path_); }

std::string TestFolder::Write(const std::string& name, const std::string& text) const {
  const std::filesystem::path file = path_ / name;
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << text;
  return file.string();
}

std::string TestFolder::Read(const std::string& name) const {
  std::ifstream file(path_ / name, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

DrivenProgram::DrivenProgram(const TestFolder& folder, const std::string& settings,
                             const std::string& screen) {
  folder.Write("config/TarnLink2/TarnLink2.ini", settings);
  std::vector<std::string> command{TARNLINK_PROGRAM};
  if (!screen.empty()) command.push_back(screen);
  process_ = std::make_unique<Process>(
      command, std::map<std::string, std::string>{{"QT_QPA_PLATFORM", "offscreen"},
                                                  {"QT_QPA_GENERIC_PLUGINS", "tarnlinkdriver"},
                                                  {"QT_PLUGIN_PATH", TARNLINK_DRIVER_PATH},
                                                  {"XDG_CONFIG_HOME", folder.Path("config")},
                                                  {"HOME", folder.Path("")},
                                                  {"LC_ALL", "C.UTF-8"}});
}

std::string DrivenProgram::Ask(const std::string& command) {
  process_->Write(command);
  for (;;) {
    const std::string line = process_->ReadLine(kAnswerBound);
    if (line.empty()) {
      ADD_FAILURE() << "The program did not answer: " << command;
      return {};
    }
    if (line.front() == '@') return line.substr(1);
  }
}

void DrivenProgram::Press(const std::string& name) { EXPECT_EQ(Ask("press " + name), "ok"); }

bool DrivenProgram::Becomes(const std::string& command, const std::string& wanted,
                            int milliseconds) {
  constexpr int kSlice = 10;
  std::string answer;
  for (int waited = 0; waited <= milliseconds; waited += kSlice) {
    answer = Ask(command);
    if (answer == wanted) return true;
    poll(nullptr, 0, kSlice);
  }
  ADD_FAILURE() << command << " stayed \"" << answer << "\", wanted \"" << wanted << "\"";
  return false;
}

}  // namespace e2e
