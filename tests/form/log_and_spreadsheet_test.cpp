// The two records of one run hold the same, field by field, and both what went over the line.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <utility>

#include "form/locations.h"
#include "form/log_boiler_fixture.h"
#include "form/log_line_reader.h"
#include "simulator/bytes.h"
#include "simulator/memory_layout.h"

namespace tarnlink {
namespace {

constexpr int kLocations = 8;
constexpr int kFirstRow = 2;
// The registers of Modbus that are read together.
constexpr int kHead = 3;
constexpr int kLastFollower = 5;

std::string Free(int index) {
  return boiler::HexDigits(boiler::kFreeRamFirst + 2U * static_cast<unsigned>(index - 1), 4);
}

Location MemoryLocation(int index) {
  return index % 3 == 1 ? ByteAt(Free(index)) : WordAt(Free(index));
}

Location RegisterLocation(int index) {
  const Location location = RegisterAt(boiler::HexDigits(0x1FFU + static_cast<unsigned>(index), 4));
  if (index == kHead) return HeadOf(kLastFollower - kHead + 1, location);
  return index > kHead && index <= kLastFollower ? Follower(location) : location;
}

// Each is logged and linked; every second one shows a number that a cell can be reckoned with.
std::vector<Location> RecordedLocations(int protocol) {
  std::vector<Location> locations;
  for (int i = 1; i <= kLocations; ++i) {
    Location location = protocol == kModbusProtocol ? RegisterLocation(i) : MemoryLocation(i);
    if (protocol == kZoltProtocol && i == 4) location = IdAt("056D", "0", 5);
    location.Alias = "L" + std::to_string(i);
    location.Representation = i % 2 == 0 ? kDecimal : kHexadecimal;
    location.DDEEnable = 1;
    location.ExcelColumn = std::to_string(i);
    locations.push_back(Logged(location));
  }
  return locations;
}

// A workbook in the making, as the fake one writes it down.
class ExpectedBook {
 public:
  void Put(int row, int column, const std::string& text) {
    const bool is_number = column % 2 == 0;
    cells_[{1, column}] = "text L" + std::to_string(column);
    cells_[{row, column}] = (is_number ? "number " : "text ") + text;
  }
  std::vector<std::string> Lines() const {
    std::vector<std::string> lines{"Sheet1"};
    for (const auto& [cell, text] : cells_) {
      lines.push_back("R" + std::to_string(cell.first) + "C" + std::to_string(cell.second) + " " +
                      text);
    }
    return lines;
  }

 private:
  std::map<std::pair<int, int>, std::string> cells_;
};

// What both records must hold by what went over the line: of each round the first answer of every
// Location to a request for it, in the order of the scan. What comes once a write has gone out
// answers no request.
class RoundsOnLine {
 public:
  explicit RoundsOnLine(std::unique_ptr<LogLineReader> reader) : reader_(std::move(reader)) {}

  void Ask(std::string_view frame, int row) {
    asked_ = reader_->RequestOf(frame);
    if (asked_.writes) return;
    if (row != row_) column_ = 0;
    row_ = row;
    // The request opens the field; nothing is put in ahead of it any more.
    column_ = std::max(column_, asked_.index - 1);
  }
  void Answer(std::string_view bytes) {
    if (asked_.writes || asked_.index == 0) return;
    int index = asked_.index;
    for (const std::string& text : reader_->TextsOf(index, bytes)) {
      if (index > column_) {
        book_.Put(row_, index, text);
        column_ = index;
      }
      ++index;
    }
    asked_.index = 0;
  }

  LogLineReader::Request RequestOf(std::string_view frame) const {
    return reader_->RequestOf(frame);
  }
  std::vector<std::string> Lines() const { return book_.Lines(); }
  int row() const { return row_; }

 private:
  const std::unique_ptr<LogLineReader> reader_;
  LogLineReader::Request asked_;
  int row_ = kFirstRow;
  int column_ = 0;  // up to which this row is closed
  ExpectedBook book_;
};

// Without what stands behind the last line end, if that is nothing.
std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines = FieldsOf(text, '\n');
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

// The one workbook that the log's folder has.
std::string BookIn(const FakeWorld& world) {
  const std::string folder = "/home/user/Documents/";
  for (const std::string& name : world.disk().ListFolder(folder)) {
    if (name.ends_with(".xlsx")) return world.disk().Get(folder + name);
  }
  return "";
}

// Empty if there is none.
std::string FirstDifference(const std::vector<std::string>& got,
                            const std::vector<std::string>& expected) {
  const auto [mine, other] =
      std::mismatch(got.begin(), got.end(), expected.begin(), expected.end());
  if (mine == got.end() && other == expected.end()) return "";
  return (mine == got.end() ? "nothing" : *mine) + " in place of " +
         (other == expected.end() ? "nothing" : *other);
}

struct Line {
  BoilerProtocol protocol;
  int delay;                // ms, of the boiler's answers
  bool user_waits = false;  // for the answer that is under way, before writing
};

std::string NameOf(const Line& line) {
  return line.protocol.name + std::string("_") + std::to_string(line.delay) + "_ms";
}
void PrintTo(const Line& line, std::ostream* out) { *out << NameOf(line); }

class LogAndSpreadsheet : public LogTest, public ::testing::WithParamInterface<Line> {
 protected:
  LogAndSpreadsheet()
      : rounds(MakeLogLineReader(protocol(), RecordedLocations(protocol()))),
        boiler(world, {.protocol = GetParam().protocol.name,
                       .slave = {.addresses = GetParam().protocol.addresses},
                       .line = {.answer_delay_us = GetParam().delay * 1'000}}) {
    monitor.options.chk_GeneralLogging(1).Value = true;
    ChooseProtocol(protocol());
    monitor.options.opt_Baudrate.Select(k9600);
    SetTimeout(1);
    Screen(RecordedLocations(protocol()));
    world.on_output = [this, boiler_hears = world.on_output](FakeSerialPort& port,
                                                             std::string_view frame) {
      rounds.Ask(frame, monitor.main.DDERowCounter);
      ChangeAByte();
      if (!Fails(rounds.RequestOf(frame))) boiler_hears(port, frame);
    };
    world.port().on_input = [this](std::string_view bytes) { rounds.Answer(bytes); };
  }
  ~LogAndSpreadsheet() override { world.port().on_input = nullptr; }

  static int protocol() { return GetParam().protocol.index; }

  void RunLong() {
    constexpr Micros kSpan = std::chrono::minutes(8);
    constexpr int kLongestWait = 100;  // ms, from one deed of the user's to the next
    StartLog();
    const Micros end = world.now() + kSpan;
    while (world.now() < end) {
      Advance(1 + Chance(kLongestWait));
      if (writes_per_hundred > Chance(100)) WriteSomething();
    }
    Stop();
    Advance(0);
  }

  std::vector<std::string> Book() const { return SplitLines(BookIn(world)); }
  // The workbook that this log would fill; an empty field is an empty cell.
  std::vector<std::string> BookOfLog() const {
    ExpectedBook book;
    const std::vector<std::string> rows = SplitLines(Rows());
    for (std::size_t r = 0; r < rows.size(); ++r) {
      const std::vector<std::string> fields = FieldsOf(rows[r], '|');
      const bool is_whole = fields.size() == kLocations + 1;
      EXPECT_TRUE(is_whole || r + 1 == rows.size()) << rows[r];
      for (std::size_t f = 1; f < fields.size(); ++f) {
        if (fields[f].empty()) continue;
        book.Put(kFirstRow + static_cast<int>(r), static_cast<int>(f), fields[f]);
      }
    }
    return book.Lines();
  }
  void ExpectTheSame() {
    const std::vector<std::string> book = Book();
    EXPECT_EQ(FirstDifference(book, BookOfLog()), "") << "The workbook is not the log.";
    EXPECT_EQ(FirstDifference(book, rounds.Lines()), "") << "It is not what went over the line.";
  }

  int writes_per_hundred = 0;
  int faults_per_thousand = 0;
  int writes = 0;
  int blocks = 0;  // of the writes, those of several registers
  int faults = 0;
  RoundsOnLine rounds;
  BoilerOnLine boiler;

 private:
  int Chance(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }

  void ChangeAByte() {
    boiler.controller().WriteByte(
        static_cast<std::uint16_t>(boiler::kFreeRamFirst + Chance(2 * kLocations)),
        static_cast<std::uint8_t>(Chance(256)));
  }

  // Whether the boiler does not even hear it. The last Location is spared, and under TarnLink a
  // silence would end the run.
  bool Fails(const LogLineReader::Request& request) {
    if (request.writes || request.index == kLocations || faults_per_thousand <= Chance(1'000)) {
      return false;
    }
    ++faults;
    if (protocol() != kTarnlinkProtocol && Chance(4) == 0) return true;
    boiler.line().AddFault("check_wrong#1");
    return false;
  }

  int SomeLocation() {
    switch (Chance(5)) {
      case 0:
        return 1;
      case 1:
        return kLocations;
      case 2:
        return std::clamp(monitor.main.MsgPointer, 1, kLocations);
      default:
        return 1 + Chance(kLocations);
    }
  }

  // A last Location that is written in the midst of an exchange may not be read back, and then the
  // log moves on to the next row and the workbook does not.
  bool MustBeReadBack(int index) const {
    return index == kLocations && protocol() != kTarnlinkProtocol;
  }

  void WaitForTheLine() {
    EXPECT_TRUE(
        world.RunUntil([this] { return monitor.main.message_received; }, std::chrono::seconds(2)));
  }

  void WriteSomething() {
    // The second half of a word is still owed.
    if (protocol() == kZoltProtocol && monitor.main.write_message) return;
    const int index = SomeLocation();
    monitor.main.RAM_LOC_VAL.DblClick(index);
    constexpr int kThinking[] = {0, 0, 3, 120};  // ms
    Advance(kThinking[Chance(4)]);
    if (GetParam().user_waits || MustBeReadBack(index)) WaitForTheLine();
    // The dialog is up already.
    if (index == kHead && protocol() == kModbusProtocol && Chance(2) == 0) {
      WriteBlock(index, {Chance(0x8000), Chance(0x8000), Chance(0x8000)});
      ++blocks;
    } else {
      monitor.write_value.Option1.Choose(kSingleWrite);
      Write(index, boiler::HexDigits(static_cast<unsigned>(Chance(0x10000)), 4));
    }
    ++writes;
  }

  std::mt19937 random_{20240305};
};

INSTANTIATE_TEST_SUITE_P(Lines, LogAndSpreadsheet,
                         ::testing::Values(Line{kTarnlinkBoiler, 5}, Line{kTarnlinkBoiler, 45},
                                           Line{kZoltBoiler, 5}, Line{kZoltBoiler, 45},
                                           Line{kModbusBoiler, 5}, Line{kModbusBoiler, 45}),
                         [](const auto& line) { return NameOf(line.param); });

TEST_P(LogAndSpreadsheet, HoldTheSameFieldByField) {
  RunLong();
  ExpectTheSame();
  EXPECT_GT(rounds.row(), 800);
  EXPECT_GT(Book().size(), 6'000U);
}

TEST_P(LogAndSpreadsheet, HoldTheSameWhileSomebodyWritesAgainAndAgain) {
  writes_per_hundred = 30;
  RunLong();
  ExpectTheSame();
  EXPECT_GT(writes, 1'000);
  EXPECT_EQ(blocks > 50, protocol() == kModbusProtocol) << blocks;
  EXPECT_GT(rounds.row(), 300);
}

TEST_P(LogAndSpreadsheet, HoldTheSameUnderFaultsAndWrites) {
  writes_per_hundred = 10;
  faults_per_thousand = 20;
  RunLong();
  ExpectTheSame();
  EXPECT_GT(writes, 300);
  EXPECT_GT(faults, 50);
}

// --- Where they differ ---------------------------------------------------------------------------

class TwoRecorded : public TwoLogged {
 protected:
  TwoRecorded() {
    monitor.options.chk_GeneralLogging(1).Value = true;
    for (int i = 1; i <= 2; ++i) {
      monitor.main.Locations[i].DDEEnable = 1;
      monitor.main.Locations[i].ExcelColumn = std::to_string(i);
    }
  }
  // What the workbook holds after the run.
  std::string Book() {
    Stop();
    Advance(0);
    return BookIn(world);
  }
};

class ALastLocationWithoutAGoodAnswer : public TwoRecorded {};

INSTANTIATE_TEST_SUITE_P(Protocols, ALastLocationWithoutAGoodAnswer,
                         ::testing::Values(kZoltBoiler, kModbusBoiler), NameOfProtocol);

TEST_P(ALastLocationWithoutAGoodAnswer, LetsTheNextRoundOverwriteTheWorkbooksRowButNotTheLogs) {
  constexpr Micros kBound = std::chrono::seconds(1);
  BoilerHolds(0xA1, 0xA2);
  StartLog();
  FinishRow();
  BoilerHolds(0xB1, 0xB2);
  ASSERT_TRUE(world.RunUntil([this] { return Value(1) == "B1"; }, kBound));
  boiler.line().AddFault("check_wrong#1");
  const std::size_t requests = world.port().frames().size();
  ASSERT_TRUE(world.RunUntil([&] { return world.port().frames().size() > requests; }, kBound));
  BoilerHolds(0xC1, 0xC2);
  FinishRow();
  EXPECT_EQ(Rows(), "14:07:09|A1|A2\n14:07:09|B1|\n14:07:09|C1|C2\n14:07:09");
  EXPECT_EQ(Book(),
            "Sheet1\nR1C1 text first\nR1C2 text second\nR2C1 text A1\nR2C2 text A2\n"
            "R3C1 text C1\nR3C2 text C2\n");
}

class AnUnknownId : public TwoRecorded {};

INSTANTIATE_TEST_SUITE_P(Protocols, AnUnknownId, ::testing::Values(kZoltBoiler), NameOfProtocol);

TEST_P(AnUnknownId, IsNotAvailableInTheLogAndAnEmptyCellInTheWorkbook) {
  monitor.main.Locations[1].Specification = 1;
  monitor.main.Locations[1].Address = "EEEE";
  BoilerHolds(0xA1, 0xA2);
  StartLog();
  FinishRow();
  EXPECT_EQ(Rows(), "14:07:09|NA|A2\n14:07:09");
  EXPECT_EQ(Book(), "Sheet1\nR1C2 text second\nR2C2 text A2\n");
}

}  // namespace
}  // namespace tarnlink
