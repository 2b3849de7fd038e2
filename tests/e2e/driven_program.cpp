#include "driven_program.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace e2e {

namespace {

// What the program says beside its answers.
void TakeNote(const std::string& line) {
  if (!line.empty() && line.front() == '!') ADD_FAILURE() << line.substr(1);
}

constexpr int kAnswerBound = 10000;  // ms
constexpr int kFileBound = 5000;     // ms

// True once `look` gives `wanted`; `last` keeps what it gave.
bool ComesTrue(const std::function<std::string()>& look, const std::string& wanted,
               int milliseconds, std::string& last) {
  constexpr int kSlice = 10;
  for (int waited = 0; waited <= milliseconds; waited += kSlice) {
    last = look();
    if (last == wanted) return true;
    poll(nullptr, 0, kSlice);
  }
  return false;
}

}  // namespace

std::string TestFolder::Write(const std::string& name, const std::string& text) const {
  const std::filesystem::path file = Path(name);
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << text;
  return file.string();
}

std::string TestFolder::Read(const std::string& name) const {
  std::ifstream file(Path(name), std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

bool TestFolder::Becomes(const std::string& name, const std::string& text) const {
  std::string last;
  if (ComesTrue([&] { return Read(name); }, text, kFileBound, last)) return true;
  const auto differs = std::mismatch(last.begin(), last.end(), text.begin(), text.end());
  const auto line = [](const std::string& whole, std::string::const_iterator at) {
    const std::size_t begin = whole.rfind('\n', at - whole.begin()) + 1;
    return whole.substr(begin, whole.find('\n', begin) - begin);
  };
  ADD_FAILURE() << name << " has \"" << line(last, differs.first) << "\" where there should be \""
                << line(text, differs.second) << "\"";
  return false;
}

DrivenProgram::DrivenProgram(const TestFolder& folder, const std::string& settings,
                             const std::string& screen)
    : DrivenProgram(
          folder, settings,
          screen.empty() ? std::vector<std::string>() : std::vector<std::string>{screen}) {}

DrivenProgram::DrivenProgram(const TestFolder& folder, const std::string& settings,
                             const std::vector<std::string>& files,
                             const std::vector<std::string>& starter) {
  folder.Write("config/TarnLink2/TarnLink2.ini", settings);
  std::vector<std::string> command = starter;
  command.push_back(TARNLINK_PROGRAM);
  command.insert(command.end(), files.begin(), files.end());
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
    TakeNote(line);
  }
}

DrivenProgram::~DrivenProgram() {
  if (process_ == nullptr) return;
  // What it made its user wait for last it tells before its next answer.
  if (process_->IsOurs()) {
    process_->Write("modal");
    for (std::string line = process_->ReadLine(kAnswerBound); !line.empty() && line.front() != '@';
         line = process_->ReadLine(kAnswerBound)) {
      TakeNote(line);
    }
  }
  process_->Kill();
  for (const std::string& line : process_->RestOfLines()) TakeNote(line);
}

void DrivenProgram::Press(const std::string& name) { EXPECT_EQ(Ask("press " + name), "ok"); }

void DrivenProgram::Do(const std::string& command) { EXPECT_TRUE(Becomes(command, "ok")); }

void DrivenProgram::SaveAs(const std::string& title, const std::string& path) {
  const std::string dialog = title + "|SaveFile";
  ASSERT_TRUE(Becomes("modal", dialog));
  ASSERT_TRUE(Becomes("type " + path, "ok"));
  // While the dialog is still reading its folder it may take no notice of the button.
  const auto press = [&]() -> std::string {
    const std::string pressed = Ask("modal") == dialog ? Ask("click Save") : "";
    return Ask("modal") == dialog ? pressed : "gone";
  };
  std::string last;
  EXPECT_TRUE(ComesTrue(press, "gone", kAnswerBound, last))
      << "The dialog stays, the button says: " << last;
}

bool DrivenProgram::Becomes(const std::string& command, const std::string& wanted,
                            int milliseconds) {
  std::string answer;
  if (ComesTrue([&] { return Ask(command); }, wanted, milliseconds, answer)) return true;
  ADD_FAILURE() << command << " stayed \"" << answer << "\", wanted \"" << wanted << "\"";
  return false;
}

}  // namespace e2e
