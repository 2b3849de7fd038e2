// The log of a day, in virtual time, held field by field against what the simulated boiler wrote
// down of its own side of the line.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "form/boiler_on_line.h"
#include "form/day.h"
#include "form/log_fixture.h"
#include "form/log_line_reader.h"

namespace tarnlink {

// What the boiler's record says that the log must hold.
class BoilerRecord {
 public:
  struct Row {
    std::map<int, std::string> values{};
    Micros begins_after{};   // the last request of the round before
    Micros begins_before{};  // the first of its own
  };

  explicit BoilerRecord(std::unique_ptr<LogLineReader> reader) : reader_(std::move(reader)) {}

  void Take(const boiler::LogEntry& entry);

  const std::vector<Row>& rows() const { return rows_; }  // the last one may go on
  int faults() const { return faults_; }

 private:
  void TakeRequest(const boiler::LogEntry& entry);
  void TakeAnswer(const boiler::LogEntry& entry);

  const std::unique_ptr<LogLineReader> reader_;
  std::vector<Row> rows_{Row{}};
  LogLineReader::Request asked_;
  int faults_ = 0;
  Micros last_{};
};

class LogDayTest : public LogTest {
 protected:
  // The baud rate is the one of the line.
  LogDayTest(int protocol, const std::vector<Location>& locations,
             const boiler::SimulatedBoiler::Options& options);

  // An hour into the run these Locations are deleted.
  void RunADay(const std::vector<std::string>& faults, const std::vector<int>& deleted = {});
  // Every row of the log, of which there are to be so many, with so many values, at least.
  void ExpectWhatTheBoilerSaid(std::size_t rows, std::size_t values) const;

  BoilerRecord record;
  BoilerOnLine boiler;

 private:
  bool HasTimeOf(const BoilerRecord::Row& row, const std::string& text) const;
  std::string Difference(const BoilerRecord::Row& row, const std::vector<std::string>& fields,
                         bool is_last) const;
  // Without the heading and a row that is open behind the last one.
  std::vector<std::string> RowsOfLog() const;

  std::vector<int> columns_;
};

}  // namespace tarnlink
