// The service tools in the real program, on a real pseudo terminal with the simulated boiler at its
// other end.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "driven_program.h"
#include "process.h"

namespace e2e {

constexpr int kToolPatience = 5000;  // ms

// A frame as the boiler's record has it: kind of the entry, and the bytes.
struct RecordedFrame {
  std::string kind;  // "heard", "said", ...
  std::string bytes;
  std::string meaning;

  int type() const { return static_cast<unsigned char>(bytes.at(1)); }
  std::string slave() const { return bytes.substr(2, 1); }
  std::string id() const { return bytes.substr(3, 4); }
  std::string data() const { return bytes.substr(7, 4); }
  bool IsAnswer() const { return kind == "said" && (type() & 0x70) != 0; }
  // "81 0 000E FFFF": type, slave, ID, data.
  std::string Text() const;
};

// A request as `Text` has it. `position` is the high data byte.
std::string RequestText(int type, const std::string& slave, int id, int position = 0);
// A number in four hexadecimal digits, upper case.
std::string Digits(int number);

class ToolsOnALine : public testing::Test {
 protected:
  // The boiler with these options, and the program on it, which has COM1 by a link that stays.
  void Start(const std::vector<std::string>& options);

  // A command to the boiler and its answer. What it says of ports plugged again is passed over.
  std::string Tell(const std::string& command);
  // What it has heard and said so far, whole frames and others.
  std::vector<RecordedFrame> Record() const;
  std::vector<RecordedFrame> Record(const std::string& kind) const;
  // The text of each request that it has heard, behind the first `from`.
  std::vector<std::string> Heard(std::size_t from = 0) const;
  // The data digits of the last answer with this ID; empty where there is none.
  std::string LastData(const std::string& id, const std::string& slave = "0") const;
  // True once the boiler has heard so many requests.
  bool HasHeard(std::size_t count) const;

  // Opens a tool by its entry of the menu; `form` is then the window in front.
  void Open(const std::string& entry, const std::string& form);
  // The name of the window in front, or the text of the box that is.
  std::string Front() { return Named(program->Ask("modal")); }
  bool ComesToFront(const std::string& form);
  // Closes the window in front, behind which there is the main window.
  void Leave();
  // True once the text or the property holds `part`.
  bool Says(const std::string& command, const std::string& part, int milliseconds = kToolPatience);

  TestFolder folder;
  std::unique_ptr<Process> boiler;
  std::string device;
  std::unique_ptr<DrivenProgram> program;

 private:
  static std::string Named(const std::string& modal);
};

// Another program that has the device of the port.
class OtherUser {
 public:
  explicit OtherUser(const std::string& device);
  ~OtherUser() { LetGo(); }
  OtherUser(const OtherUser&) = delete;
  OtherUser& operator=(const OtherUser&) = delete;

  void LetGo();

 private:
  int file_;
};

// True once `look` is true; false if that did not come in time.
bool Eventually(const std::function<bool()>& look, int milliseconds = kToolPatience);

}  // namespace e2e
