// The program over real pseudo terminals. Every wait has a bound.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "running_program.h"
#include "simulator/bytes.h"
#include "simulator/log.h"
#include "simulator/pty_port.h"

namespace boiler {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr char kReadF400[] = "04 05 46 34 30 30 44 46 03";
constexpr char kAnswerF400[] = "04 05 46 34 30 30 35 41 35 35 03";  // 5A

class ProgramTest : public ::testing::Test {
 protected:
  ProgramTest() {
    std::string pattern = fs::temp_directory_path() / "boiler-XXXXXX";
    folder_ = ::mkdtemp(pattern.data());
  }
  ~ProgramTest() override { fs::remove_all(folder_); }

  std::string InFolder(const char* name) const { return folder_ / name; }
  std::string Link() const { return InFolder("boiler"); }

  // Starts the program at once, with a link, and has 5A put to F400.
  RunningProgram Start(std::vector<std::string> words = {}) {
    words.insert(words.end(), {"--at-once", "--delay", "0", "--link", Link()});
    RunningProgram program(words);
    path_ = program.Line();
    program.Tell("set F400 5A");
    EXPECT_EQ(program.Line(), "ok");
    return program;
  }

  std::string Ask(const std::string& path) {
    OpenTerminal terminal(path);
    if (!terminal.open()) return "(not opened)";
    terminal.Send(kReadF400);
    return terminal.Receive(11);
  }

  fs::path folder_;
  std::string path_;
};

TEST_F(ProgramTest, AnswersOverItsPseudoTerminal) {
  RunningProgram program = Start();
  EXPECT_THAT(path_, StartsWith("/dev/pts/"));
  EXPECT_EQ(Ask(path_), kAnswerF400);
  EXPECT_EQ(Ask(Link()), kAnswerF400);
  EXPECT_EQ(fs::read_symlink(Link()), path_);
}

TEST_F(ProgramTest, SpeaksTheProtocolAndUnderTheAddressesThatItIsTold) {
  struct Row {
    const char* protocol;
    const char* slaves;
    const char* request;
    const char* answer;
  };
  for (const Row& row : {
           Row{"zolt", "0,3", "0D 07 30 46 46 41 42 46 34 30 30 46 42 44 37 0A",
               "0D 17 30 46 46 41 42 30 30 35 41 34 37 32 45 0A"},
           Row{"modbus", "1,17", "01 03 02 00 00 01 85 B2", "01 03 02 00 5A 38 7F"},
           Row{"modbus", "1", "01 2B 0E 01 00 70 77", "01 AB 01 9E F0"},
       }) {
    RunningProgram program = Start({"--protocol", row.protocol, "--slaves", row.slaves});
    OpenTerminal terminal(path_);
    terminal.Send(row.request);
    EXPECT_EQ(terminal.Receive(ParseHexBytes(row.answer)->size()), row.answer);
  }
}

TEST_F(ProgramTest, PassesAllByteValuesUnchanged) {
  RunningProgram program = Start({"--fault", "noise_before(4096)#1"});
  OpenTerminal terminal(path_);
  terminal.Send(kReadF400);
  const std::string said = terminal.Receive(4096 + 11);
  EXPECT_EQ(said.size(), (4096u + 11u) * 3 - 1);
  for (const char* byte : {" 0A ", " 0D ", " 03 ", " 11 ", " 13 ", " 00 ", " FF "}) {
    EXPECT_THAT(said, HasSubstr(byte));
  }
}

TEST_F(ProgramTest, CarriesOutCommands) {
  RunningProgram program = Start();
  program.Tell("get F400 2");
  EXPECT_EQ(program.Line(), "F400 5A 00");
  program.Tell("set F400 11 22");
  EXPECT_EQ(program.Line(), "ok");
  program.Tell("get F400 2");
  EXPECT_EQ(program.Line(), "F400 11 22");
  program.Tell("nonsense");
  EXPECT_EQ(program.Line(), "error: \"nonsense\" is no command.");
  program.Tell("fault refused");
  EXPECT_EQ(program.Line(),
            "error: Fault \"refused\": a TarnLink slave has no answer that says no.");
  program.Tell("quit");
  EXPECT_EQ(program.Line(), "ok");
  EXPECT_EQ(program.Status(), 0);
  EXPECT_FALSE(fs::is_symlink(Link()));
}

TEST_F(ProgramTest, WritesALogThatCanBeReadBack) {
  const std::string log = InFolder("boiler.log");
  RunningProgram program = Start({"--log", log, "--fault", "wrong_kind#1"});
  Ask(path_);
  Ask(path_);
  program.Tell("quit");
  ASSERT_EQ(program.Status(), 0);
  std::ifstream file(log);
  const auto entries = ReadLog(std::string{std::istreambuf_iterator<char>(file), {}});
  std::vector<std::string> meanings;
  for (const LogEntry& entry : entries) meanings.push_back(entry.meaning);
  EXPECT_EQ(meanings, (std::vector<std::string>{"plugged, " + path_, "fault wrong_kind#1",
                                                "set F400 5A", "read byte F400", "wrong_kind",
                                                "wrong_kind", "read byte F400", "answer", "end"}));
}

TEST_F(ProgramTest, GoesOnAfterTheEndOfItsInput) {
  RunningProgram program = Start();
  program.CloseInput();
  EXPECT_EQ(Ask(path_), kAnswerF400);
  EXPECT_EQ(Ask(path_), kAnswerF400);
  program.Signal(SIGTERM);
  EXPECT_EQ(program.Status(), 0);
}

TEST_F(ProgramTest, EndsWithItsInputWhenItIsToldTo) {
  RunningProgram program = Start({"--until-eof"});
  program.CloseInput();
  EXPECT_EQ(program.Status(), 0);
  EXPECT_FALSE(fs::is_symlink(Link()));
}

TEST_F(ProgramTest, EndsCleanlyOnASignal) {
  for (const int signal : {SIGTERM, SIGINT}) {
    RunningProgram program = Start();
    EXPECT_TRUE(fs::is_symlink(Link()));
    program.Signal(signal);
    EXPECT_EQ(program.Status(), 0);
    EXPECT_FALSE(fs::is_symlink(Link()));
  }
}

TEST_F(ProgramTest, UnplugsAndComesBackUnderItsLink) {
  RunningProgram program = Start();
  OpenTerminal terminal(Link());
  program.Tell("unplug");
  EXPECT_EQ(program.Line(), "ok");
  EXPECT_TRUE(terminal.HangsUp());
  EXPECT_FALSE(fs::is_symlink(Link()));
  program.Tell("get F400");
  EXPECT_EQ(program.Line(), "F400 5A");
  program.Tell("replug");
  EXPECT_THAT(program.Line(), StartsWith("port /dev/pts/"));
  EXPECT_EQ(program.Line(), "ok");
  EXPECT_EQ(Ask(Link()), kAnswerF400);
}

// The answer to a request of before the cable was pulled would carry 5A.
TEST_F(ProgramTest, LosesAnAnswerThatIsUnderWayWhenTheCableIsPulled) {
  RunningProgram program = Start({"--fault", "late_reply(300)#1"});
  {
    OpenTerminal terminal(Link());
    terminal.Send(kReadF400);
    program.Tell("get F400");
    EXPECT_EQ(program.Line(), "F400 5A");
  }
  program.Tell("replug\nset F400 11");
  program.Line();
  EXPECT_EQ(program.Line(), "ok");
  EXPECT_EQ(program.Line(), "ok");
  OpenTerminal terminal(Link());
  program.Tell("fault late_reply(600)#1");
  EXPECT_EQ(program.Line(), "ok");
  terminal.Send(kReadF400);
  EXPECT_EQ(terminal.Receive(11), "04 05 46 34 30 30 31 31 34 31 03");
}

TEST_F(ProgramTest, ComesBackUnderAnotherName) {
  RunningProgram program = Start();
  program.Tell("replug other");
  const std::string line = program.Line();
  EXPECT_THAT(line, StartsWith("port /dev/pts/"));
  EXPECT_NE(line, "port " + path_);
  EXPECT_EQ(program.Line(), "ok");
  EXPECT_FALSE(fs::is_symlink(Link()));
  EXPECT_EQ(Ask(Link() + "-other"), kAnswerF400);
  program.Tell("replug");
  EXPECT_THAT(program.Line(), StartsWith("port /dev/pts/"));
  EXPECT_EQ(program.Line(), "ok");
  EXPECT_FALSE(fs::is_symlink(Link() + "-other"));
  EXPECT_EQ(Ask(Link()), kAnswerF400);
}

TEST_F(ProgramTest, PullsTheCableInTheMiddleOfAnAnswer) {
  RunningProgram program = Start({"--fault", "unplug_midframe#1"});
  OpenTerminal terminal(Link());
  terminal.Send(kReadF400);
  EXPECT_TRUE(terminal.HangsUp());
  EXPECT_FALSE(fs::is_symlink(Link()));
}

TEST_F(ProgramTest, PlugsInAgainByItselfAfterAFault) {
  RunningProgram program = Start({"--fault", "replug_same_name(1)#1"});
  OpenTerminal terminal(Link());
  terminal.Send(kReadF400);
  EXPECT_THAT(program.Line(), StartsWith("port /dev/pts/"));
  EXPECT_TRUE(terminal.HangsUp());
  EXPECT_EQ(Ask(Link()), kAnswerF400);
}

TEST_F(ProgramTest, HasAPortThatCannotBeOpenedUntilItIsCleared) {
  RunningProgram program = Start();
  const auto tell = [&](const char* command) {
    program.Tell(command);
    std::string line = program.Line();
    if (line.starts_with("port ")) line = program.Line();
    return line;
  };
  EXPECT_EQ(tell("fault open_missing"), "ok");
  EXPECT_FALSE(fs::exists(fs::symlink_status(Link())));
  EXPECT_EQ(tell("clear"), "ok");
  EXPECT_EQ(Ask(Link()), kAnswerF400);

  EXPECT_EQ(tell("fault open_not_a_tty"), "ok");
  const OpenTerminal no_terminal(Link());
  EXPECT_TRUE(no_terminal.open());
  EXPECT_FALSE(::isatty(no_terminal.number()));
  EXPECT_EQ(tell("clear"), "ok");
  EXPECT_EQ(Ask(Link()), kAnswerF400);

  EXPECT_EQ(tell("fault open_denied"), "ok");
  struct stat status = {};
  ASSERT_EQ(::stat(Link().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0u);
  EXPECT_EQ(tell("clear"), "ok");
  ASSERT_EQ(::stat(Link().c_str(), &status), 0);
  EXPECT_NE(status.st_mode & 0777, 0u);
}

// The superuser opens a busy terminal all the same, so the mark itself is looked at.
TEST_F(ProgramTest, HasAPortThatIsBusyUntilItIsCleared) {
  RunningProgram program = Start();
  const OpenTerminal before(Link());
  const auto busy = [&] {
    int exclusive = -1;
    ::ioctl(before.number(), TIOCGEXCL, &exclusive);
    return exclusive;
  };
  EXPECT_EQ(busy(), 0);
  program.Tell("fault open_busy");
  EXPECT_EQ(program.Line(), "ok");
  EXPECT_EQ(busy(), 1);
  program.Tell("clear");
  EXPECT_EQ(program.Line(), "ok");
  EXPECT_EQ(busy(), 0);
}

TEST_F(ProgramTest, TakesADeviceAndNoticesThatItIsGone) {
  PtyPort other_end("");
  other_end.Plug(false);
  const std::string log = InFolder("device.log");
  RunningProgram program({"--device", other_end.Path(), "--delay", "0", "--log", log});
  EXPECT_EQ(program.Line(), other_end.Path());
  WriteFitting(other_end.File(), std::string("\x04\x05"
                                             "F400DF\x03"));
  std::string said;
  EXPECT_TRUE(Eventually([&] {
    said += ReadWaiting(other_end.File()).value_or("");
    return said.size() >= 11;
  }));
  EXPECT_EQ(said,
            "\x04\x05"
            "F400003F\x03");
  other_end.Unplug();
  EXPECT_TRUE(Eventually([&] {
    std::ifstream file(log);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return text.find("unplugged: the device is gone") != std::string::npos;
  }));
  program.Tell("fault open_busy");
  EXPECT_EQ(program.Line(), "error: Only a pseudo terminal can be made one that cannot be opened.");
  program.Tell("quit");
  EXPECT_EQ(program.Line(), "ok");
  EXPECT_EQ(program.Status(), 0);
}

// While another boiler answers two thousand requests this one has nothing to do.
TEST_F(ProgramTest, SleepsWhileNothingHappens) {
  RunningProgram program = Start();
  program.CloseInput();
  EXPECT_EQ(Ask(path_), kAnswerF400);
  RunningProgram other({"--at-once", "--delay", "0"});
  OpenTerminal terminal(other.Line());
  const long switches = program.Switches();
  const long ticks = program.ProcessorTicks();
  for (int i = 0; i < 2000; ++i) {
    terminal.Send(kReadF400);
    ASSERT_NE(terminal.Receive(11), "");
  }
  EXPECT_GT(other.Switches(), 500);
  EXPECT_LE(program.Switches() - switches, 3);
  EXPECT_LE(program.ProcessorTicks() - ticks, 1);
}

TEST_F(ProgramTest, RefusesToStartWithASentence) {
  std::ofstream(InFolder("file")) << "precious";
  struct Row {
    std::vector<std::string> words;
    std::string sentence;
  };
  for (const Row& row : {
           Row{{"--protocol", "morse"},
               "The boiler does not speak the protocol \"morse\"; it speaks tarnlink, zolt, "
               "modbus, or any."},
           Row{{"--protocol", "zolt", "--slaves", "G"},
               "The slave addresses \"G\" must be digits 0 to F with commas between them."},
           Row{{"--fault", "oops"}, "Fault \"oops\": there is no fault of this name."},
           Row{{"--link", InFolder("file")},
               "The link \"" + InFolder("file") +
                   "\" cannot be made: something else stands there."},
           Row{{"--link", InFolder("no/folder")},
               "The link \"" + InFolder("no/folder") +
                   "\" cannot be made: No such file or directory."},
           Row{{"--log", InFolder("no/log")},
               "The log \"" + InFolder("no/log") + "\" cannot be written."},
           Row{{"--device", InFolder("gone")},
               "The device \"" + InFolder("gone") +
                   "\" cannot be used: No such file or directory."},
           Row{{"--device", InFolder("file")},
               "The device \"" + InFolder("file") +
                   "\" cannot be used: Inappropriate ioctl for device."},
           Row{{"--device", "/dev/null", "--baud", "1234"},
               "A serial device has no speed of 1234 baud."},
       }) {
    RunningProgram program(row.words);
    EXPECT_EQ(program.Status(), 2);
    EXPECT_EQ(program.Errors(), "boiler_simulator: " + row.sentence + "\n");
  }
  EXPECT_TRUE(fs::is_regular_file(InFolder("file")));
}

}  // namespace
}  // namespace boiler
