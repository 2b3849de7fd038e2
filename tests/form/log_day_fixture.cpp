#include "form/log_day_fixture.h"

#include <utility>

#include "common/dates.h"

namespace tarnlink {
namespace {

constexpr Micros kHour = std::chrono::hours(1);
constexpr Micros kPatience = std::chrono::seconds(10);
constexpr std::size_t kTimeLength = 8;  // "14:07:09"

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

}  // namespace

// --- BoilerRecord --------------------------------------------------------------------------------

void BoilerRecord::Take(const boiler::LogEntry& entry) {
  if (entry.kind == boiler::LogKind::kHeard) TakeRequest(entry);
  if (entry.kind == boiler::LogKind::kSaid) TakeAnswer(entry);
  if (entry.kind == boiler::LogKind::kFault) ++faults_;
}

void BoilerRecord::TakeRequest(const boiler::LogEntry& entry) {
  const LogLineReader::Request request = reader_->RequestOf(entry.bytes);
  ASSERT_NE(request.index, 0) << entry.meaning;
  const Micros now(entry.time_us);
  if (request.index <= asked_.index) rows_.push_back({.begins_after = last_, .begins_before = now});
  if (asked_.index == 0) rows_.back().begins_before = now;
  asked_ = request;
  last_ = now;
}

void BoilerRecord::TakeAnswer(const boiler::LogEntry& entry) {
  if (asked_.writes) return;
  int index = asked_.index;
  for (const std::string& text : reader_->TextsOf(index, entry.bytes)) {
    rows_.back().values[index++] = text;
  }
}

// --- LogDayTest ----------------------------------------------------------------------------------

LogDayTest::LogDayTest(int protocol, const std::vector<Location>& locations,
                       const boiler::SimulatedBoiler::Options& options)
    : record(MakeLogLineReader(protocol, locations)),
      boiler(world, options, [this](const boiler::LogEntry& entry) { record.Take(entry); }) {
  ChooseProtocol(protocol);
  for (int i = 0; i < monitor.options.opt_Baudrate.count(); ++i) {
    if (BaudrateOfIndex(i) == options.line.pace.baud) monitor.options.opt_Baudrate.Select(i);
  }
  Screen(locations);
  for (std::size_t i = 0; i < locations.size(); ++i) {
    if (locations[i].LogEnable == 1) columns_.push_back(static_cast<int>(i + 1));
  }
}

void LogDayTest::RunADay(const std::vector<std::string>& faults, const std::vector<int>& deleted) {
  for (const std::string& fault : faults) boiler.line().AddFault(fault);
  StartLog();
  world.Advance(kHour);
  // The answer under way may be one of theirs.
  EXPECT_TRUE(world.RunUntil([this] { return monitor.main.message_received; }, kPatience));
  for (const int index : deleted) Delete(index);
  world.Advance(kDay - world.now());
  Stop();
}

bool LogDayTest::HasTimeOf(const BoilerRecord::Row& row, const std::string& text) const {
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
std::string LogDayTest::Difference(const BoilerRecord::Row& row,
                                   const std::vector<std::string>& fields, bool is_last) const {
  if (!HasTimeOf(row, fields[0])) return "the time is " + fields[0];
  const bool has_all = fields.size() == columns_.size() + 1;
  if (!has_all && (!is_last || fields.size() > columns_.size())) {
    return std::to_string(fields.size()) + " fields";
  }
  for (std::size_t c = 0; c + 1 < fields.size(); ++c) {
    const auto value = row.values.find(columns_[c]);
    const std::string expected = value == row.values.end() ? "" : value->second;
    if (fields[c + 1] != expected) {
      return "of L" + std::to_string(columns_[c]) + " " + fields[c + 1] + ", said " + expected;
    }
  }
  return "";
}

std::vector<std::string> LogDayTest::RowsOfLog() const {
  std::vector<std::string> lines = LinesOf(world.disk().Get(kLog));
  EXPECT_EQ(FieldsOf(lines[1]).size(), columns_.size() + 2);
  lines.erase(lines.begin(), lines.begin() + 2);
  // The row that is open behind the last one has its time and nothing else.
  if (lines.size() == record.rows().size() + 1) {
    EXPECT_EQ(lines.back().size(), kTimeLength) << lines.back();
    lines.pop_back();
  }
  return lines;
}

void LogDayTest::ExpectWhatTheBoilerSaid(std::size_t rows, std::size_t values) const {
  const std::vector<std::string> lines = RowsOfLog();
  ASSERT_EQ(lines.size(), record.rows().size());
  std::size_t found = 0;
  for (std::size_t r = 0; r < lines.size(); ++r) {
    for (const auto& [index, text] : record.rows()[r].values) {
      found += monitor.main.Locations[index].LogEnable;
    }
    ASSERT_EQ(Difference(record.rows()[r], FieldsOf(lines[r]), r + 1 == lines.size()), "")
        << "Row " << r << ": " << ReadableLog(lines[r]);
  }
  EXPECT_GT(lines.size(), rows);
  EXPECT_GT(found, values);
}

}  // namespace tarnlink
