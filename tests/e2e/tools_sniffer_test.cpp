// The sniffer in the real program, between a second master and the slave: all IDs that go by, with
// the values that the boiler holds, and each frame in the log, against the boiler's own record.

#include <algorithm>
#include <bitset>
#include <map>
#include <set>
#include <sstream>

#include "tools_line.h"

namespace e2e {
namespace {

const std::string kForm = "frmSniffer";
constexpr int kRoundPatience = 20'000;  // ms, for more than one round of the second master

struct NamedId {
  std::string name;
  int representation = 0;
  char size = 'W';
};

// The samples' sniffer text file, by ID.
std::map<std::string, NamedId> NamedIds(const std::string& text) {
  std::map<std::string, NamedId> ids;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() == '*') continue;
    std::istringstream fields(line);
    std::string name;
    std::string id;
    std::string representation;
    std::string size;
    std::getline(fields, name, ',');
    std::getline(fields, id, ',');
    std::getline(fields, representation, ',');
    std::getline(fields, size, ',');
    ids[id] = {name, std::stoi(representation), size.at(0)};
  }
  return ids;
}

// Four data digits as the item of that ID shows them.
std::string Shown(const NamedId& id, const std::string& data) {
  const std::string digits = id.size == 'H' ? data.substr(0, 2) : data.substr(2, 2);
  const bool is_word = id.size == 'W';
  const int value = std::stoi(is_word ? data : digits, nullptr, 16);
  constexpr int kHexadecimal = 1;
  constexpr int kBinary = 2;
  if (id.representation == kHexadecimal) return "0x" + (is_word ? data : digits);
  if (id.representation == kBinary)
    return std::bitset<16>(static_cast<unsigned>(value)).to_string();
  return std::to_string(is_word ? static_cast<int>(static_cast<std::int16_t>(value))
                                : static_cast<int>(static_cast<std::int8_t>(value)));
}

// A frame's part of its row in the log, from its characters on.
std::string LogText(const RecordedFrame& frame) {
  static const std::map<int, std::string> kKinds = {
      {0, "M->S Read"}, {1, "S->M Read ACK"}, {6, "S->M Unknown ID"}};
  std::string characters = frame.bytes;
  for (char& one : characters) {
    if (one < ' ' || one > '~') one = ' ';
  }
  const auto byte = [&](std::size_t at) {
    return std::to_string(std::stoi(frame.data().substr(at, 2), nullptr, 16));
  };
  std::ostringstream type;
  type << std::uppercase << std::hex << frame.type();
  return characters + " .0x" + frame.id() + " ." + byte(0) + " ." + byte(2) + " ." + type.str() +
         " " + kKinds.at(frame.type() >> 4);
}

class SnifferOnALine : public ToolsOnALine {
 protected:
  // A slave, and a second master that has its round in three seconds.
  void OpenSniffer(const std::vector<std::string>& faults = {}) {
    std::vector<std::string> options = {"--poll", "0", "--poll-gap", "5", "--delay", "2"};
    for (const std::string& fault : faults) options.insert(options.end(), {"--fault", fault});
    Start(options);
    ids = NamedIds(folder.Read("default.snf"));
    Open("mnuSniffer", kForm);
  }
  void BeginLog() {
    program->Mouse("LogCheck");
    program->SaveAs("Save log file as", folder.Path("Sniffer.log"));
    ASSERT_TRUE(ComesToFront(kForm));
  }
  // The rows of the log, each from the frame's characters on.
  std::vector<std::string> LogRows() const {
    std::vector<std::string> rows;
    std::istringstream lines(folder.Read("Sniffer.log"));
    for (std::string line; std::getline(lines, line);) {
      const std::size_t id = line.find(" .0x");
      if (id == std::string::npos) continue;
      constexpr std::size_t kCharacters = 16;
      rows.push_back(line.substr(id - kCharacters, line.find('\r') - id + kCharacters));
    }
    return rows;
  }
  std::set<std::string> Detected() {
    std::set<std::string> found;
    std::istringstream items(program->Ask("items List_DisplayDetectedID"));
    for (std::string id; std::getline(items, id, '|');) found.insert(id);
    return found;
  }
  bool DetectsAll() {
    return Eventually([&] { return Detected().size() >= ids.size(); }, kRoundPatience);
  }
  // "Frames: 12, bad: 1"
  int Frames() { return std::stoi(program->Text("lbl_Frames").substr(8)); }
  int Bad() {
    const std::string text = program->Text("lbl_Frames");
    return std::stoi(text.substr(text.rfind(' ')));
  }
  bool FramesPass(int count) {
    const int before = Frames();
    return Eventually([&] { return Frames() >= before + count; });
  }
  std::vector<RecordedFrame> Said() const {
    std::vector<RecordedFrame> whole;
    for (const RecordedFrame& frame : Record("said")) {
      if (frame.bytes.size() == 16) whole.push_back(frame);
    }
    return whole;
  }

  std::map<std::string, NamedId> ids;
};

TEST_F(SnifferOnALine, ShowsAllIdsWithTheBoilersValuesAndLogsEachFrame) {
  OpenSniffer();
  BeginLog();
  const int bad_at_begin = Bad();
  EXPECT_LE(bad_at_begin, 2) << "It may have come in amidst a frame.";
  ASSERT_TRUE(DetectsAll());
  std::set<std::string> named;
  for (const auto& [id, record] : ids) named.insert(id);
  EXPECT_EQ(Detected(), named);
  EXPECT_TRUE(FramesPass(20));

  // From now on there are requests only, and the values stand.
  ASSERT_EQ(Tell("fault no_reply"), "ok");
  EXPECT_TRUE(Eventually([&] {
    const std::vector<RecordedFrame> said = Said();
    return !said[said.size() - 1].IsAnswer() && !said[said.size() - 2].IsAnswer();
  }));
  for (std::size_t i = 1; i <= ids.size(); ++i) {
    const std::string index = "(" + std::to_string(i) + ")";
    const std::string id = program->Text("RAM_ID" + index);
    ASSERT_EQ(named.erase(id), 1u) << id;
    EXPECT_EQ(program->Text("RAM_TEXT" + index), ids.at(id).name);
    EXPECT_TRUE(program->Becomes("text RAM_VALUE" + index, Shown(ids.at(id), LastData(id)))) << id;
  }
  EXPECT_TRUE(named.empty());
  EXPECT_EQ(Bad(), bad_at_begin);
  const std::string text = program->Ask("get txt_Messages plainText");
  for (const char* kind : {"M->S Read", "S->M Read ACK", "S->M Unknown ID"}) {
    EXPECT_NE(text.find(kind), std::string::npos) << kind;
  }

  program->Mouse("LogCheck");
  ASSERT_TRUE(program->Becomes("get LogCheck checked", "false"));
  const std::vector<std::string> rows = LogRows();
  std::vector<std::string> said;
  for (const RecordedFrame& frame : Said()) said.push_back(LogText(frame));
  EXPECT_GE(rows.size(), 2 * ids.size());
  EXPECT_NE(std::search(said.begin(), said.end(), rows.begin(), rows.end()), said.end())
      << "A frame is missing, or one too many, among " << rows.size()
      << " rows, of which the first is " << rows.front();
  std::printf("%zu IDs, %zu frames logged of %zu on the line\n", ids.size(), rows.size(),
              said.size());
  Leave();
}

TEST_F(SnifferOnALine, ComesBackIntoStepBehindNoiseAndHalfFrames) {
  OpenSniffer({"noise_before(5)@0.05", "truncate(7)@0.04", "byte_insert@0.04", "bit_flip@0.04"});
  BeginLog();
  ASSERT_TRUE(DetectsAll());
  EXPECT_TRUE(Eventually([&] { return Bad() > 0; }));
  ASSERT_EQ(Tell("clear"), "ok");
  EXPECT_TRUE(FramesPass(10));
  const int bad = Bad();
  EXPECT_TRUE(FramesPass(40));
  EXPECT_EQ(Bad(), bad) << "The line is sound again.";
  program->Mouse("LogCheck");
  ASSERT_TRUE(program->Becomes("get LogCheck checked", "false"));
  std::string said;
  for (const RecordedFrame& frame : Record("said")) said += frame.bytes;
  const std::vector<std::string> rows = LogRows();
  EXPECT_GE(rows.size(), ids.size());
  for (const std::string& row : rows) {
    // Start and type are no characters that can be read.
    EXPECT_NE(said.find(row.substr(2, 13)), std::string::npos) << "Nobody said " << row;
  }
  std::printf("%zu frames logged, %d bad\n", rows.size(), bad);
  Leave();
}

}  // namespace
}  // namespace e2e
