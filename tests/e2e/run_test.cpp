// The communication run through the real program on a real pseudo terminal, byte by byte.

#include <gtest/gtest.h>

#include "driven_program.h"
#include "line_end.h"

namespace e2e {
namespace {

constexpr int kPatience = 5000;  // ms

const std::string kFlowRequest = std::string("\x04\x05") + "01A0" + "D7" + "\x03";
const std::string kFanRequest = std::string("\x04\x01") + "F010" + "D8" + "\x03";

std::string ByteAnswer(const std::string& digits) {
  return std::string("\x04\x05") + "01A0" + digits + "00" + "\x03";
}

std::string WordAnswer(const std::string& digits) {
  return std::string("\x04\x01") + "F010" + digits + "00" + "\x03";
}

const char* const kScreen =
    "16744576\r\n"
    "\"L\",0,1,\"01A0\",0,\"Flow\",\"t_flow\",0,0,0,0,\"0\",0,600,2400,600,240,\"0\"\r\n"
    "\"L\",0,3,\"F010\",0,\"Fan\",\"n_fan\",0,0,0,0,\"0\",1,960,2400,960,240,\"0\"\r\n";

class RunOnALine : public testing::Test {
 protected:
  std::string Settings(int seconds) const {
    return "[Communication]\nProtocol=0\nBaudrate=3\nCommport=1\nStopBits=0\nParity=0\n"
           "IgnoreErrors=1\nMsgTimeout=" +
           std::to_string(seconds) + "\n\n[Ports]\nCOM1=" + line.path() + "\n";
  }

  void ExpectRequest(const std::string& frame) {
    EXPECT_EQ(line.Receive(frame.size(), kPatience), frame);
  }

  TestFolder folder;
  LineEnd line;
  DrivenProgram program{folder, Settings(1), folder.Write("boiler.wcr", kScreen)};
};

TEST_F(RunOnALine, StartsPollsTimesOutStopsAndStartsAgain) {
  EXPECT_EQ(program.Text("RAM_LOC_VAL(1)"), "Value 1");
  EXPECT_EQ(program.Ask("title frm_Main"), "TarnLink - boiler.wcr");
  program.Press("Toolbar1(2)");
  ExpectRequest(kFlowRequest);
  EXPECT_EQ(program.Text("StatusBar1(4)"), "Communication Running");
  EXPECT_EQ(program.Text("StatusBar1(5)"), "Flow: 1");
  EXPECT_EQ(program.Text("StatusBar1(6)"), "Local Connection Active");
  EXPECT_EQ(program.Ask("enabled M_options"), "false");

  line.Send(ByteAnswer("3C"));
  ExpectRequest(kFanRequest);
  EXPECT_EQ(program.Text("RAM_LOC_VAL(1)"), "60");
  line.Send(WordAnswer("8001"));
  ExpectRequest(kFlowRequest);
  EXPECT_EQ(program.Text("RAM_LOC_VAL(2)"), "FFFF8001");

  // The slave falls silent.
  ASSERT_TRUE(program.Becomes("modal", "Message Timeout|Slave is not responding"));
  program.Click("OK");
  ASSERT_TRUE(program.Becomes("text StatusBar1(4)", "Communication Stopped"));
  EXPECT_EQ(program.Ask("modal"), "none");
  EXPECT_EQ(program.Ask("enabled M_options"), "true");
  EXPECT_EQ(program.Ask("enabled mnuSniffer"), "false");

  program.Press("Toolbar1(3)");
  ASSERT_TRUE(program.Becomes("enabled mnuSniffer", "true"));
  line.Drain();
  program.Press("Toolbar1(2)");
  ExpectRequest(kFlowRequest);
  line.Send(ByteAnswer("3D"));
  ExpectRequest(kFanRequest);
  EXPECT_EQ(program.Text("RAM_LOC_VAL(1)"), "61");
}

TEST_F(RunOnALine, TellsOnceThatTheDeviceIsGoneAndStaysCalm) {
  program.Press("Toolbar1(2)");
  ExpectRequest(kFlowRequest);
  line.Unplug();
  ASSERT_TRUE(program.Becomes(
      "modal", "Communication Error|Communication port 1 is gone. Communication is stopped."));
  EXPECT_EQ(program.Text("StatusBar1(4)"), "Communication Stopped");
  EXPECT_EQ(program.Text("StatusBar1(6)"), "No Connection Active");
  program.Click("OK");
  ASSERT_TRUE(program.Becomes("modal", "none"));

  // Whoever spins while the device is gone burns a core; nothing at all is to be done here.
  const double before = program.process().ProcessorSeconds();
  EXPECT_TRUE(program.process().WaitForEnd(2000) == -1) << "The program ended.";
  const double share = (program.process().ProcessorSeconds() - before) / 2.0;
  EXPECT_LT(share, 0.05);
  EXPECT_EQ(program.Ask("modal"), "none");
}

TEST_F(RunOnALine, SaysWhyAPortCannotBeHad) {
  line.Unplug();
  program.Press("Toolbar1(2)");
  ASSERT_TRUE(program.Becomes("modal",
                              "Communication Error|Communication port 1 occupied.\\nStop "
                              "communication and try again."));
  program.Click("OK");
  ASSERT_TRUE(program.Becomes("text StatusBar1(4)", "Communication Stopped"));
}

TEST_F(RunOnALine, LeavesWithoutAQuestionAndKeepsItsSettings) {
  program.Press("M_exit");
  EXPECT_EQ(program.process().WaitForEnd(kPatience), 0);
  const std::string store = folder.Read("config/TarnLink2/TarnLink2.ini");
  EXPECT_NE(store.find("COM1=" + line.path()), std::string::npos) << store;
  EXPECT_NE(store.find("Hist0="), std::string::npos) << store;
}

}  // namespace
}  // namespace e2e
