// The slave scan in the real program: who is found on the line, and what was asked for that.

#include "tools_line.h"

namespace e2e {
namespace {

const std::string kForm = "frm_ScanSlaves";
const std::string kPanel = "frm_ContPanel";

// What the scan asks of a slave that answers.
std::vector<std::string> RequestsOf(const std::string& slave) {
  return {RequestText(1, slave, 61), RequestText(1, slave, 5337), RequestText(2, slave, 152),
          RequestText(2, slave, 1284), RequestText(2, slave, 164)};
}

class ScanOnALine : public ToolsOnALine {
 protected:
  void OpenScan() { Open("mnuScanSlaves", kForm); }
  std::string Row(int address) {
    std::string row;
    for (const char* field : {"txtAddress", "txtType", "txtLuP", "txtHuP", "txtEEPROM"}) {
      row += (row.empty() ? "" : "|") +
             program->Text(std::string(field) + "(" + std::to_string(address) + ")");
    }
    return row;
  }
  bool RowBecomes(int address, const std::string& wanted) {
    if (Eventually([&] { return Row(address) == wanted; })) return true;
    ADD_FAILURE() << "Row " << address << " is " << Row(address) << ", not " << wanted;
    return false;
  }
};

TEST_F(ScanOnALine, FindsTheThreeSlavesThatAreThereAndOpensThePanelOnOne) {
  Start({"--at-once", "--slaves", "0,1,3"});
  OpenScan();
  EXPECT_TRUE(RowBecomes(0, "0|R1865CM2040|3.07|4.12|2.14"));
  EXPECT_TRUE(RowBecomes(1, "1|R1866CL2041|3.08|4.13|2.15"));
  EXPECT_TRUE(RowBecomes(2, "2|-|||"));
  EXPECT_TRUE(RowBecomes(3, "3|R1865S2043|3.10|4.15|2.17"));
  EXPECT_TRUE(RowBecomes(4, "4|-|||"));
  EXPECT_TRUE(Says("text lblState", "Scanning address 5"));

  std::vector<std::string> expected;
  for (const char* slave : {"0", "1", "3"}) {
    for (const std::string& request : RequestsOf(slave)) expected.push_back(request);
  }
  EXPECT_EQ(Heard(), expected);
  EXPECT_TRUE(Eventually([&] { return Record("ignored").size() == 3; }));
  std::vector<std::string> unanswered;
  for (const RecordedFrame& frame : Record("ignored")) unanswered.push_back(frame.Text());
  EXPECT_EQ(unanswered, (std::vector<std::string>{RequestText(1, "2", 61), RequestText(1, "4", 61),
                                                  RequestText(1, "5", 61)}));

  program->Mouse("cmdControlPanel(3)");
  ASSERT_TRUE(ComesToFront(kPanel));
  EXPECT_EQ(program->Text("lblSlave"), "N.B.  Reading slave 3");
  program->Mouse("cmdUpdateStatus");
  EXPECT_TRUE(program->Becomes("text txt_HUPCRC", "C51E"));
  EXPECT_EQ(program->Text("txt_OSNumber"), "R1865S2043");
  EXPECT_EQ(program->Text("txt_softwareversionROMLUP"), " 3.10");
  EXPECT_EQ(Record("heard").back().slave(), "3");
  program->Mouse("cmdClose");
  ASSERT_TRUE(ComesToFront(kForm));
  // The request that the panel has cut off goes out anew.
  EXPECT_TRUE(Eventually([&] { return Record("ignored").size() == 4; }));
  EXPECT_EQ(Record("ignored").back().Text(), RequestText(1, "5", 61));
  Leave();
}

TEST_F(ScanOnALine, ShowsAllSixteenAddressesAndStartsAgainBehindTheLast) {
  Start({"--at-once", "--slaves", "0,1,2,3,4,5,6,7,8,9,A,B,C,D,E,F"});
  OpenScan();
  constexpr std::size_t kRound = 80;
  ASSERT_TRUE(HasHeard(kRound + 6));
  program->Mouse("cmdStop");
  EXPECT_TRUE(Says("text lblState", "Stopped at address"));
  const std::vector<std::string> names = {
      "R1865CM", "R1866CL", "R1862V", "R1865S",  "R1866BF", "R1862DM", "R1865B",  "R1866H",
      "R1862R",  "R1865BD", "R1866A", "R1862AM", "R1865AL", "R1866C",  "R1862CM", "R1865CL"};
  const std::string digits = "0123456789ABCDEF";
  std::vector<std::string> expected;
  for (int address = 0; address < 16; ++address) {
    const std::string slave = digits.substr(static_cast<std::size_t>(address), 1);
    const auto version = [&](const std::string& major, int minor) {
      const std::string text = std::to_string(minor + address);
      return "|" + major + "." + (text.size() < 2 ? "0" : "") + text;
    };
    const std::string name =
        names.at(static_cast<std::size_t>(address)) + std::to_string(2040 + address);
    std::string row = slave;
    row += "|" + name + version("3", 7) + version("4", 12) + version("2", 14);
    EXPECT_EQ(Row(address), row);
    for (const std::string& request : RequestsOf(slave)) expected.push_back(request);
  }
  ASSERT_EQ(expected.size(), kRound);
  for (const std::string& request : RequestsOf("0")) expected.push_back(request);
  expected.push_back(RequestText(1, "1", 61));
  std::vector<std::string> heard = Heard();
  heard.resize(expected.size());
  EXPECT_EQ(heard, expected);

  const std::size_t at_rest = Record("heard").size();
  program->Mouse("cmdStart");
  EXPECT_TRUE(HasHeard(at_rest + 1));
  Leave();
}

}  // namespace
}  // namespace e2e
