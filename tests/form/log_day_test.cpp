// The log of a day under the ZOLT protocol, in virtual time, held field by field against what the
// simulated boiler wrote down of its own side of the line. Now and then it does not answer, or
// wrongly.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "common/numbers.h"
#include "common/text.h"
#include "form/boiler_on_line.h"
#include "form/log_fixture.h"
#include "form/readable_ids.h"
#include "simulator/memory_layout.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr int kLocations = 40;
constexpr Micros kDay = 24h;
constexpr Micros kHour = 1h;

bool IsMemory(int index) { return index % 2 == 0; }
bool IsWord(int index) { return index % 4 < 2; }
bool IsDecimal(int index) { return index % 3 == 0; }
bool IsUnknown(int index) { return index % 20 == 13; }
bool IsDisabled(int index) { return index % 10 == 4; }
bool IsHeld(int index) { return index == 21; }
bool IsLogged(int index) { return index % 7 != 5; }
bool IsDeletedAfterAnHour(int index) { return index == 11 || index == 40; }

Location LocationAt(int index) {
  static const std::vector<const boiler::DataId*> ids = ReadableIds();
  Location location;
  location.Alias = "L" + std::to_string(index);
  location.LocSlaveAddress = index % 2 == 0 ? "0" : "3";
  location.LogEnable = IsLogged(index) ? 1 : 0;
  location.StorageType = IsWord(index) ? kUnsignedWord : kUnsignedByte;
  location.SelectByte = IsWord(index) ? kBoth : kLsb;
  location.Representation = IsDecimal(index) ? kDecimal : kHexadecimal;
  location.ScanFlags = IsDisabled(index) ? kScanningDisabled : IsHeld(index) ? kContinuousWrite : 0;
  if (IsMemory(index)) {
    location.Specification = 0;
    location.Address = Stuff(Hex32(boiler::Item("flow_temperature").address + 2 * index), 4);
    return location;
  }
  const boiler::DataId& id = *ids[static_cast<std::size_t>(index) % ids.size()];
  location.Address = IsUnknown(index) ? "EEEE" : Stuff(Hex32(id.id), 4);
  location.Class = static_cast<std::uint8_t>(id.data_class);
  return location;
}

std::vector<int> Columns() {
  std::vector<int> columns;
  for (int i = 1; i <= kLocations; ++i) {
    if (IsLogged(i)) columns.push_back(i);
  }
  return columns;
}

// The slave, the class and the ID or address of a request: all that tells one Location's from
// another's.
std::string KeyOf(std::string_view request) {
  const int data_class = request[1] & 7;
  const bool is_memory = data_class == 7;
  return std::string(request.substr(2, 1)) + std::to_string(data_class) +
         std::string(request.substr(is_memory ? 7 : 3, 4));
}

std::string KeyOf(const Location& location) {
  const std::string data_class = location.Specification == 0 ? "7" : std::to_string(location.Class);
  return location.LocSlaveAddress + data_class + location.Address;
}

// What the boiler's record says that the log must hold.
class BoilerRecord {
 public:
  struct Row {
    std::map<int, std::string> values{};
    Micros begins_after{};   // the last request of the round before
    Micros begins_before{};  // the first of its own
  };

  BoilerRecord() {
    for (int i = 1; i <= kLocations; ++i) {
      if (!IsDisabled(i)) index_of_[KeyOf(LocationAt(i))] = i;
    }
  }

  void Take(const boiler::LogEntry& entry) {
    if (entry.kind == boiler::LogKind::kHeard) TakeRequest(entry);
    if (entry.kind == boiler::LogKind::kSaid) TakeAnswer(entry);
    if (entry.kind == boiler::LogKind::kFault) ++faults_;
  }

  const std::vector<Row>& rows() const { return rows_; }  // the last one may go on
  int faults() const { return faults_; }

 private:
  void TakeRequest(const boiler::LogEntry& entry) {
    const int index = index_of_.at(KeyOf(entry.bytes));
    const Micros now(entry.time_us);
    if (index <= asked_) rows_.push_back({.begins_after = last_, .begins_before = now});
    if (rows_.size() == 1 && asked_ == 0) rows_.back().begins_before = now;
    asked_ = index;
    last_ = now;
  }

  void TakeAnswer(const boiler::LogEntry& entry) {
    constexpr int kRefusal = 6;
    if (IsHeld(asked_)) return;
    const std::string& frame = entry.bytes;
    // A refusal is taken whether its check holds or not.
    if (static_cast<unsigned char>(frame[1]) >> 4 == kRefusal) {
      rows_.back().values[asked_] = "NA";
    } else if (entry.check == boiler::Check::kHolds) {
      std::string digits = frame.substr(7, 4);
      if (!IsWord(asked_)) digits = digits.substr(2);
      if (IsDecimal(asked_)) digits = std::to_string(std::stoi(digits, nullptr, 16));
      rows_.back().values[asked_] = digits;
    }
  }

  std::map<std::string, int> index_of_;
  std::vector<Row> rows_{Row{}};
  int asked_ = 0;
  int faults_ = 0;
  Micros last_{};
};

class LogDay : public LogTest {
 protected:
  LogDay() {
    ChooseProtocol(kZoltProtocol);
    std::vector<Location> locations;
    for (int i = 1; i <= kLocations; ++i) locations.push_back(LocationAt(i));
    Screen(locations);
    monitor.main.Locations[21].RawValue = 0x2800;
  }

  bool HasTimeOf(const BoilerRecord::Row& row, const std::string& text) const {
    const Date start = ToDate({2024, 3, 5, 14, 7, 9});
    const auto second_of = [&](Micros moment) {
      return ToSeconds(start + std::chrono::duration<double>(moment).count() / kSecondsPerDay);
    };
    for (auto second = second_of(row.begins_after) - 1; second <= second_of(row.begins_before) + 1;
         ++second) {
      if (FormatDate(FromSeconds(second), "hh:nn:ss", EnglishMonthNames()) == text) return true;
    }
    return false;
  }

  // Empty if the row is as it must be; only the last one may end early.
  std::string Difference(const BoilerRecord::Row& row, const std::vector<std::string>& fields,
                         bool is_last) const {
    static const std::vector<int> columns = Columns();
    if (!HasTimeOf(row, fields[0])) return "the time is " + fields[0];
    const bool has_all = fields.size() == columns.size() + 1;
    if (!has_all && (!is_last || fields.size() > columns.size())) {
      return std::to_string(fields.size()) + " fields";
    }
    for (std::size_t c = 0; c + 1 < fields.size(); ++c) {
      const auto value = row.values.find(columns[c]);
      const std::string expected = value == row.values.end() ? "" : value->second;
      if (fields[c + 1] != expected) {
        return "of L" + std::to_string(columns[c]) + " " + fields[c + 1] + ", said " + expected;
      }
    }
    return "";
  }

  BoilerRecord record;
  BoilerOnLine boiler{world,
                      {.protocol = "zolt",
                       .slave = {.addresses = "0,3"},
                       .line = {.pace = {.baud = 2400}, .answer_delay_us = 5'000}},
                      [this](const boiler::LogEntry& entry) { record.Take(entry); }};
};

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t begin = 0;
  for (auto end = text.find("\r\n"); end != std::string::npos; end = text.find("\r\n", begin)) {
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 2;
  }
  lines.push_back(text.substr(begin));
  return lines;
}

TEST_F(LogDay, HoldsWhatTheBoilerSaidInADay) {
  boiler.line().AddFault("no_reply@0.001");
  boiler.line().AddFault("check_wrong@0.002");
  StartLog();
  world.Advance(kHour);
  for (int i = 1; i <= kLocations; ++i) {
    if (IsDeletedAfterAnHour(i)) Delete(i);
  }
  world.Advance(kDay - kHour);
  Stop();

  std::vector<std::string> lines = LinesOf(world.disk().Get(kLog));
  const std::vector<std::string> names = FieldsOf(lines[1]);
  ASSERT_EQ(names.size(), Columns().size() + 2);
  lines.erase(lines.begin(), lines.begin() + 2);
  // The row that is open behind the last one has its time and nothing else.
  if (lines.size() == record.rows().size() + 1) {
    EXPECT_EQ(lines.back().size(), 8U) << lines.back();
    lines.pop_back();
  }
  ASSERT_EQ(lines.size(), record.rows().size());
  std::size_t values = 0;
  for (std::size_t r = 0; r < lines.size(); ++r) {
    values += record.rows()[r].values.size();
    ASSERT_EQ(Difference(record.rows()[r], FieldsOf(lines[r]), r + 1 == lines.size()), "")
        << "Row " << r << ": " << ReadableLog(lines[r]);
  }
  EXPECT_GT(lines.size(), 15'000U);
  EXPECT_GT(values, 400'000U);
  EXPECT_GT(record.faults(), 1'000);
}

}  // namespace
}  // namespace tarnlink
