// The two records of one run hold the same.

#include <gtest/gtest.h>

#include <algorithm>

#include "common/numbers.h"
#include "form/log_fixture.h"

namespace tarnlink {
namespace {

constexpr int kLocations = 5;
constexpr int kRounds = 2'000;

class LogAndSpreadsheet : public LogTest {
 protected:
  LogAndSpreadsheet() {
    monitor.options.chk_GeneralLogging(1).Value = true;
    std::vector<Location> locations;
    for (int i = 1; i <= kLocations; ++i) {
      Location location = WordAt("000" + std::to_string(i), kDecimal);
      location.LogEnable = 1;
      location.DDEEnable = 1;
      location.ExcelColumn = std::to_string(i);
      locations.push_back(location);
    }
    Screen(locations);
    // Every answer is another number, negative ones too.
    world.on_output = [this](FakeSerialPort& port, std::string_view request) {
      number_ = number_ * 25'173U + 13'849U;
      std::string digits = "000" + Hex(number_ & 0xFFFFU);
      digits = digits.substr(digits.size() - 4);
      port.ReceiveIn(Micros::zero(), AnswerOf(std::string(request.substr(2, 4)), digits));
    };
  }

  // The workbook that this log would fill.
  std::string BookOfLog() const {
    std::string text = "Sheet1\n";
    for (int i = 1; i <= kLocations; ++i) {
      text += "R1C" + std::to_string(i) + " text at 000" + std::to_string(i) + "\n";
    }
    int row = 2;
    const std::string rows = Rows();
    for (std::size_t start = 0; start < rows.size(); ++row) {
      const std::size_t end = std::min(rows.find('\n', start), rows.size());
      std::size_t field = rows.find('|', start);
      for (int i = 1; field < end; ++i) {
        const std::size_t next = std::min(rows.find('|', field + 1), end);
        text += "R" + std::to_string(row) + "C" + std::to_string(i) + " number " +
                rows.substr(field + 1, next - field - 1) + "\n";
        field = next;
      }
      start = end + 1;
    }
    return text;
  }
  std::string Book() {
    for (const std::string& name : world.files().ListFolder("/home/user/Documents")) {
      if (name.ends_with(".xlsx")) return world.disk().Get("/home/user/Documents/" + name);
    }
    return "none";
  }

 private:
  unsigned number_ = 1;
};

TEST_F(LogAndSpreadsheet, HoldTheSameFieldByField) {
  StartLog();
  Advance(kRounds * kLocations * 20 + 2 * 20);
  Stop();
  Advance(0);
  const std::string expected = BookOfLog();
  const std::string last = "\nR" + std::to_string(kRounds + 1) + "C" + std::to_string(kLocations);
  EXPECT_NE(expected.find(last + " number "), std::string::npos) << "The run was too short.";
  EXPECT_EQ(Book(), expected);
}

}  // namespace
}  // namespace tarnlink
