#include "tools_line.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <sstream>

namespace e2e {

namespace {

constexpr std::size_t kFrameLength = 16;

std::string BytesOfHex(const std::string& hex) {
  std::string bytes;
  std::istringstream pairs(hex);
  for (std::string pair; pairs >> pair;) {
    if (pair != "-") bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
  }
  return bytes;
}

std::string TwoDigits(int number) {
  std::array<char, 3> text{};
  std::snprintf(text.data(), text.size(), "%02X", static_cast<unsigned>(number) & 0xFF);
  return text.data();
}

}  // namespace

std::string Digits(int number) { return TwoDigits(number >> 8) + TwoDigits(number); }

std::string RecordedFrame::Text() const {
  if (bytes.size() != kFrameLength) return "no frame";
  return TwoDigits(type()) + " " + slave() + " " + id() + " " + data();
}

std::string RequestText(int type, const std::string& slave, int id, int position) {
  return TwoDigits(type) + " " + slave + " " + Digits(id) + " " + Digits(position * 256);
}

bool Eventually(const std::function<bool()>& look, int milliseconds) {
  constexpr int kSlice = 10;
  for (int waited = 0; waited <= milliseconds; waited += kSlice) {
    if (look()) return true;
    poll(nullptr, 0, kSlice);
  }
  return false;
}

// --- Boiler and program --------------------------------------------------------------------------

void ToolsOnALine::Start(const std::vector<std::string>& options) {
  const std::string link = folder.Path("line");
  std::vector<std::string> command = {
      BOILER_SIMULATOR_PROGRAM, "--protocol", "zolt", "--link", link, "--until-eof", "--log",
      folder.Path("line.log")};
  command.insert(command.end(), options.begin(), options.end());
  boiler = std::make_unique<Process>(command, std::map<std::string, std::string>{});
  device = boiler->ReadLine(kToolPatience);
  ASSERT_NE(device, "");
  for (const char* name : {"default.ids", "default.snf", "default.erc"}) {
    std::filesystem::copy_file(std::filesystem::path(TARNLINK_SAMPLES) / name, folder.Path(name));
  }
  const std::string settings =
      "[Communication]\nProtocol=1\nBaudrate=3\nCommport=1\nStopBits=0\nParity=0\n"
      "IgnoreErrors=1\n\n[Paths]\nLogPath=" +
      folder.Path("") + "\nZOLTIDDefPath=" + folder.Path("default.ids") +
      "\n\n[Ports]\nCOM1=" + link + "\n";
  program = std::make_unique<DrivenProgram>(folder, settings, "");
}

std::string ToolsOnALine::Tell(const std::string& command) {
  boiler->Write(command);
  for (;;) {
    const std::string line = boiler->ReadLine(kToolPatience);
    if (line.rfind("port ", 0) != 0) return line;
    device = line.substr(5);
  }
}

// --- Its record ----------------------------------------------------------------------------------

std::vector<RecordedFrame> ToolsOnALine::Record() const {
  std::vector<RecordedFrame> all;
  std::istringstream lines(folder.Read("line.log"));
  for (std::string line; std::getline(lines, line) && !lines.eof();) {
    std::vector<std::string> columns;
    std::istringstream text(line);
    for (std::string column; std::getline(text, column, '\t');) columns.push_back(column);
    constexpr std::size_t kKind = 1;
    constexpr std::size_t kBytes = 4;
    constexpr std::size_t kMeaning = 5;
    if (columns.size() > kMeaning) {
      all.push_back({columns[kKind], BytesOfHex(columns[kBytes]), columns[kMeaning]});
    }
  }
  return all;
}

std::vector<RecordedFrame> ToolsOnALine::Record(const std::string& kind) const {
  std::vector<RecordedFrame> all;
  for (const RecordedFrame& frame : Record()) {
    if (frame.kind == kind) all.push_back(frame);
  }
  return all;
}

std::vector<std::string> ToolsOnALine::Heard(std::size_t from) const {
  std::vector<std::string> texts;
  for (const RecordedFrame& frame : Record("heard")) texts.push_back(frame.Text());
  texts.erase(texts.begin(), texts.begin() + static_cast<std::ptrdiff_t>(from));
  return texts;
}

std::string ToolsOnALine::LastData(const std::string& id, const std::string& slave) const {
  std::string data;
  for (const RecordedFrame& frame : Record("said")) {
    if (frame.bytes.size() != kFrameLength || !frame.IsAnswer()) continue;
    if (frame.id() == id && frame.slave() == slave) data = frame.data();
  }
  return data;
}

bool ToolsOnALine::HasHeard(std::size_t count) const {
  return Eventually([&] { return Record("heard").size() >= count; });
}

// --- Windows -------------------------------------------------------------------------------------

// A form's title tells what it is doing at the moment.
std::string ToolsOnALine::Named(const std::string& modal) {
  return modal.substr(modal.rfind('|') + 1);
}

void ToolsOnALine::Open(const std::string& entry, const std::string& form) {
  program->Press(entry);
  ASSERT_TRUE(ComesToFront(form));
}

bool ToolsOnALine::ComesToFront(const std::string& form) {
  if (Eventually([&] { return Front() == form; })) return true;
  ADD_FAILURE() << "In front is " << Front() << ", not " << form;
  return false;
}

void ToolsOnALine::Leave() {
  EXPECT_EQ(program->Ask("close"), "ok");
  ASSERT_TRUE(ComesToFront("none"));
}

bool ToolsOnALine::Says(const std::string& command, const std::string& part, int milliseconds) {
  std::string last;
  const auto says = [&] {
    last = program->Ask(command);
    return last.find(part) != std::string::npos;
  };
  if (Eventually(says, milliseconds)) return true;
  ADD_FAILURE() << command << " stayed \"" << last << "\", without \"" << part << "\"";
  return false;
}

// --- Another program -----------------------------------------------------------------------------

OtherUser::OtherUser(const std::string& device)
    : file_(open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
  EXPECT_EQ(flock(file_, LOCK_EX | LOCK_NB), 0);
}

void OtherUser::LetGo() {
  if (file_ >= 0) close(file_);
  file_ = -1;
}

}  // namespace e2e
