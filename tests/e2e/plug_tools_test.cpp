// The cable is pulled out of the service tools that listen to the line or ask on it: none shows a
// box of its own for that, all say it beside the form.

#include "plug_line.h"

namespace e2e {
namespace {

const std::string kPanel = "frm_ContPanel";
const std::string kScan = "frm_ScanSlaves";
const std::string kSniffer = "frmSniffer";
const std::string kWrongMessage = "frm_IPMsgErr";

// Each window that is opened anew leaves a connection of Qt's own to the main window, which without
// a desktop never loses the keyboard to it. Values that are new have letters that are drawn and
// kept.
constexpr double kMostOfAWindow = 2;

class PlugTools : public PlugLine {
 protected:
  // Every so many cycles a form finds the cable by itself, which takes it up to three seconds. In
  // the others its user starts it again.
  static constexpr int kOften = 5;
  static bool WaitsByItself(int cycle) { return cycle % kOften == kOften - 2; }
  static bool WaitedByItself(int cycle) { return cycle > 0 && WaitsByItself(cycle - 1); }

  // Without a cable the line beside the form is not empty. A loose contact may be over before
  // anybody has looked.
  void SeeTold(const std::string& label, Pull pull) {
    if (pull == Pull::kLooseContact) return;
    EXPECT_TRUE(Says("text " + label, "COM1 ("));
  }
  void Reopen(const std::string& entry, const std::string& form) {
    Leave();
    Open(entry, form);
  }
};

TEST_F(PlugTools, OutOfTheControlPanel) {
  StartOn("zolt");
  Open("M_ControlPanel", kPanel);
  const auto start = [this](int cycle) {
    if (!WaitedByItself(cycle)) {
      Reopen("M_ControlPanel", kPanel);
      program->Mouse("chkContinuousUpdate");
    }
    EXPECT_TRUE(IsBusy());
    EXPECT_TRUE(program->Becomes("text lblLine", ""));
  };
  const auto told = [this](int, Pull pull) {
    SeeTold("lblLine", pull);
    return kPanel;
  };
  Endure({.name = "control panel", .start = start, .told = told, .most_blocks = kMostOfAWindow});
}

TEST_F(PlugTools, OutOfTheSlaveScan) {
  StartOn("zolt", {"--slaves", "0,1,2,3,4,5,6,7,8,9,A,B,C,D,E,F"});
  Open("mnuScanSlaves", kScan);
  const auto start = [this](int cycle) {
    if (cycle > 0 && !WaitedByItself(cycle)) {
      program->Mouse("cmdStop");
      EXPECT_TRUE(Says("text lblState", "Stopped at address"));
      program->Mouse("cmdStart");
    }
    EXPECT_TRUE(IsBusy());
    EXPECT_TRUE(Says("text lblState", "Scanning address"));
  };
  const auto told = [this](int, Pull pull) {
    SeeTold("lblState", pull);
    return kScan;
  };
  Endure({.name = "slave scan", .start = start, .told = told});
}

TEST_F(PlugTools, OutOfTheSniffer) {
  StartOn("zolt", {"--poll", "0", "--poll-gap", "5"});
  std::filesystem::copy_file(std::filesystem::path(TARNLINK_SAMPLES) / "default.snf",
                             folder.Path("default.snf"));
  Open("mnuSniffer", kSniffer);
  const auto start = [this](int cycle) {
    if (cycle > 0 && !WaitedByItself(cycle)) {
      if (Front() == kSniffer) Leave();
      Open("mnuSniffer", kSniffer);
    }
    const auto frames = [this] { return std::stoi(program->Text("lbl_Frames").substr(8)); };
    EXPECT_TRUE(program->Becomes("text lbl_Port", ""));
    const int before = frames();
    EXPECT_TRUE(Eventually([&] { return frames() >= before + 5; }));
  };
  // What it has heard, it forgets when it is closed; only then can its memory be compared.
  const auto told = [this](int cycle, Pull pull) -> std::string {
    SeeTold("lbl_Port", pull);
    if (pull != Pull::kInAnswer) return kSniffer;
    SeeThatItIsCalm(cycle);
    Leave();
    return "none";
  };
  Endure({.name = "sniffer", .start = start, .told = told, .most_blocks = kMostOfAWindow});
}

// Pulled while an answer is awaited, it says so at once, and in a second that there is none.
TEST_F(PlugTools, OutOfTheWrongMessage) {
  StartOn("zolt");
  Open("M_errgen", kWrongMessage);
  const auto start = [this](int) {
    const std::size_t noted = Noted();
    program->Mouse("cmd_SendErrMsg");
    EXPECT_TRUE(HasNoted(noted + 1));
    EXPECT_TRUE(program->Becomes("text txtStatus", "Read Acknowledge"));
  };
  const auto told = [this](int, Pull pull) {
    const std::size_t noted = Noted();
    program->Mouse("cmd_SendErrMsg");
    if (pull == Pull::kAnyTime) {
      EXPECT_TRUE(Says("text txtStatus", "is not there"));
      return kWrongMessage;
    }
    EXPECT_TRUE(HasNoted(noted + 1));
    std::string status;
    EXPECT_TRUE(Eventually([&] { return !(status = program->Text("txtStatus")).empty(); }));
    // What was sent before the cable was pulled may have been answered; otherwise it is told again
    // when no answer has come.
    if (status != "Read Acknowledge") {
      EXPECT_NE(status.find("is gone"), std::string::npos) << status;
      TakeBox("No Response", "OK", kWrongMessage);
    }
    EXPECT_TRUE(HasLetGo());
    return kWrongMessage;
  };
  Endure({.name = "wrong message", .start = start, .told = told});
}

}  // namespace
}  // namespace e2e
