// The configuration check in the real program, against a boiler whose limits are right, and one
// with three that are wrong.

#include <algorithm>
#include <sstream>

#include "tools_line.h"

namespace e2e {
namespace {

const std::string kForm = "frm_CfgCheck";
constexpr int kRunTime = 60'000;  // ms, at most
constexpr int kRead = 0x05;
constexpr int kWrite = 0x85;

struct Parameter {
  int id;
  int minimum;
  int maximum;
  std::string standard;  // as the file has it
  std::string name;
  std::string read;  // what the boiler holds at first

  std::string Row(const std::string& read_text, const std::string& result) const {
    return Digits(id) + "\t" + std::to_string(minimum) + "\t" + std::to_string(maximum) + "\t" +
           standard + "\t" + name + "\t1\t" + read_text + "\t" + result;
  }
};

// Those of samples/boiler.cfg.
const std::vector<Parameter> kParameters = {
    {1389, 30, 85, "60", "CH setpoint (C)", "60"},
    {1524, 35, 65, "50", "DHW setpoint (C)", "50"},
    {2311, 40, 70, "60", "Storage setpoint (C)", "60"},
    {2352, 5, 150, "25", "Prepurge time (0.2 s)", "25"},
    {2363, 5, 50, "15", "Ignition time (0.2 s)", "15"},
    {2374, 5, 250, "40", "Postpurge time (0.2 s)", "40"},
    {2385, 1, 10, "3", "Ignition retries", "3"},
    {2396, 0, 255, "0", "Heat demand", "0"},
    {2408, 0, 150, "-", "Tap flow (0.1 l/min)", "0"},
};

// What proves one of them right.
std::vector<std::string> RequestsFor(const Parameter& one) {
  const auto read = RequestText(kRead, "0", one.id);
  const auto write = [&](int value) { return RequestText(kWrite, "0", one.id, value); };
  std::vector<std::string> all = {read, write(one.minimum), read};
  if (one.minimum > 0) all.push_back(write(one.minimum - 1));
  all.insert(all.end(), {write(one.maximum), read});
  if (one.maximum < 255) all.push_back(write(one.maximum + 1));
  return all;
}

class CfgCheckOnALine : public ToolsOnALine {
 protected:
  // The check is open and has read the sample.
  void StartWithSample(std::vector<std::string> options) {
    std::filesystem::copy_file(std::filesystem::path(TARNLINK_SAMPLES) / "boiler.cfg",
                               folder.Path("boiler.cfg"));
    options.insert(options.begin(), "--at-once");
    Start(options);
    Open("mnuCfgCheck", kForm);
    program->Mouse("cmd_Open");
    ASSERT_TRUE(ComesToFront("OpenFile"));
    ASSERT_TRUE(program->Becomes("type " + folder.Path("boiler.cfg"), "ok"));
    // While the dialog is still reading its folder it may take no notice of the button.
    ASSERT_TRUE(Eventually([&] {
      if (Front() == "OpenFile") program->Ask("click Open");
      return Front() == kForm;
    }));
    EXPECT_EQ(program->Text("txt_ConfigurationFile"), folder.Path("boiler.cfg"));
    EXPECT_EQ(program->Text("Label6"), "0 / 9");
  }
  void CheckAll(const std::string& summary) {
    program->Mouse("cmd_Check");
    EXPECT_TRUE(Says("text lblState", summary, kRunTime));
    EXPECT_EQ(program->Text("Label6"), "9 / 9");
  }
  std::vector<std::string> Rows() {
    std::vector<std::string> rows;
    std::istringstream text(program->Ask("items ParametersList"));
    for (std::string row; std::getline(text, row, '|');) rows.push_back(row);
    return rows;
  }
  // A request without an answer in time goes out once more.
  std::vector<std::string> HeardWithoutRepeats() const {
    std::vector<std::string> heard = Heard();
    heard.erase(std::unique(heard.begin(), heard.end()), heard.end());
    return heard;
  }
};

TEST_F(CfgCheckOnALine, FindsNothingWrongWhereTheLimitsAreRight) {
  StartWithSample({});
  CheckAll("Finished: 9 of 9 OK");
  std::vector<std::string> rows;
  std::vector<std::string> requests;
  for (const Parameter& one : kParameters) {
    rows.push_back(one.Row(one.read, "OK"));
    for (const std::string& request : RequestsFor(one)) requests.push_back(request);
  }
  EXPECT_EQ(Rows(), rows);
  EXPECT_EQ(HeardWithoutRepeats(), requests);
  EXPECT_EQ(program->Ask("enabled cmd_Check"), "true");
  EXPECT_EQ(program->Ask("enabled cmd_Stop"), "false");
  const OtherUser other(device);  // the port has been let go
  Leave();
}

TEST_F(CfgCheckOnALine, FindsTheThreeWrongLimitsAndNoOther) {
  StartWithSample({"--wrong-limits"});
  CheckAll("Finished: 6 of 9 OK");
  std::vector<std::string> rows;
  for (const Parameter& one : kParameters) rows.push_back(one.Row(one.read, "OK"));
  rows[0] = kParameters[0].Row("60", "Minimum limit incorrect");
  rows[1] = kParameters[1].Row("50", "Maximum limit incorrect");
  rows[2] = kParameters[2].Row("60", "Maximum is not written");
  EXPECT_EQ(Rows(), rows);
  // Each test ends with the message that shows what is wrong.
  const std::vector<std::string> heard = HeardWithoutRepeats();
  for (const auto& [id, last] : {std::pair{1389, 29}, {1524, 66}, {2311, 70}}) {
    const std::string mine = " 0 " + Digits(id) + " ";
    const auto found = std::find_if(heard.rbegin(), heard.rend(), [&](const std::string& request) {
      return request.find(mine) != std::string::npos;
    });
    ASSERT_NE(found, heard.rend()) << id;
    EXPECT_EQ(*found, RequestText(kWrite, "0", id, last));
  }
  Leave();
}

TEST_F(CfgCheckOnALine, StopsInTheMiddleAndBeginsAnew) {
  StartWithSample({});
  program->Mouse("cmd_Check");
  ASSERT_TRUE(program->Becomes("text Label6", "3 / 9", kRunTime));
  program->Mouse("cmd_Stop");
  ASSERT_TRUE(Says("text lblState", "Stopped at ID "));
  const std::size_t at_rest = Record("heard").size();
  EXPECT_LT(at_rest, 7U * 5);
  const std::vector<std::string> rows = Rows();
  ASSERT_EQ(rows.size(), kParameters.size());
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(rows[i], kParameters[i].Row(kParameters[i].read, "OK"));
  }
  for (std::size_t i = 4; i < 8; ++i) {
    EXPECT_EQ(rows[i], kParameters[i].Row("", "ID has not been checked"));
  }
  EXPECT_EQ(rows[8], kParameters[8].Row("", ""));
  EXPECT_FALSE(Eventually([&] { return Record("heard").size() > at_rest; }, 500));

  program->Mouse("cmd_Check");
  ASSERT_TRUE(HasHeard(at_rest + 1));
  EXPECT_EQ(Heard(at_rest).front(), RequestText(kRead, "0", 1389));
  // Its default is not what it was: the maximum was written last.
  EXPECT_TRUE(Says("items ParametersList", kParameters[0].Row("85", "Wrong default value")));
  // Closing it now asks.
  EXPECT_EQ(program->Ask("close"), "ok");
  ASSERT_TRUE(program->Becomes(
      "modal", "Configuration check|The check is running. Stop it and close the window?"));
  program->Click("Yes");
  ASSERT_TRUE(ComesToFront("none"));
}

}  // namespace
}  // namespace e2e
