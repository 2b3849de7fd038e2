// The cable is pulled out of the run, in each protocol, and out of the graph.

#include "plug_line.h"

namespace e2e {
namespace {

const std::string kGone =
    "Communication Error|Communication port 1 is gone. Communication is stopped.";
const std::string kGraph = "frmGraphic";

// One free byte of memory, or the register that holds it. A data ID makes a screen one of ZOLT.
const std::string kColour = "16777215\r\n";
const std::string kByte =
    "\"L\",0,1,\"F400\",0,\"Free\",\"a\",0,0,0,0,\"0\",0,600,2400,600,240,\"0\"\r\n";
const std::string kId =
    "\"I\",1,4,\"00FE\",0,\"Flow\",\"b\",0,0,0,0,\"0\",0,1800,2400,1800,240,\"0\",4,2\r\n";
const std::string kRegister =
    "\"M\",1,1,\"0200\",0,\"Free\",\"c\",0,0,0,0,\"0\",0,600,2400,600,240,\"1\",1,2,\"&H03\",1,"
    "#FALSE#\r\n";

class PlugRun : public PlugLine {
 protected:
  void EndureRun(const std::string& protocol, const std::string& locations) {
    StartOn(protocol, {}, kColour + locations);
    Endure({.name = "run, " + protocol,
            .start = [this](int cycle) { Run(cycle); },
            .told =
                [this](int cycle, Pull) {
                  TakeLoss(cycle);
                  return "none";
                }});
  }

 private:
  // Each run shows what the boiler has held only since it began.
  void Run(int cycle) {
    constexpr int kBytes = 255;
    const int held = 1 + cycle % kBytes;
    ASSERT_EQ(Tell("set F400 " + Digits(held).substr(2) + " 00"), "ok");
    program->Mouse("Toolbar1(2)");
    ASSERT_TRUE(program->Becomes("text RAM_LOC_VAL(1)", std::to_string(held)));
    EXPECT_EQ(program->Text("StatusBar1(4)"), "Communication Running");
  }
  void TakeLoss(int cycle) {
    ASSERT_TRUE(program->Becomes("modal", kGone));
    SeeThatItIsCalm(cycle);
    program->Click("OK");
    ASSERT_TRUE(program->Becomes("modal", "none"));
    EXPECT_EQ(program->Text("StatusBar1(4)"), "Communication Stopped");
    EXPECT_TRUE(HasLetGo());
  }
};

TEST_F(PlugRun, OutOfTheRunOfTarnLink) { EndureRun("tarnlink", kByte); }
TEST_F(PlugRun, OutOfTheRunOfZolt) { EndureRun("zolt", kByte + kId); }
TEST_F(PlugRun, OutOfTheRunOfModbus) { EndureRun("modbus", kRegister); }

// --- The graph -----------------------------------------------------------------------------------

class PlugGraph : public PlugLine {
 protected:
  void EndureGraph() {
    StartOn("zolt");
    // Qt keeps the pictures of two scroll bars of each window, in a cache that is bounded.
    constexpr double kPicturesOfAWindow = 14;
    Endure({.name = "graph",
            .start = [this](int cycle) { Begin(cycle); },
            .told =
                [this](int cycle, Pull) {
                  TakeLoss(cycle);
                  return WayOf(cycle) == Way::kLeft ? "none" : kGraph;
                },
            .most_blocks = kPicturesOfAWindow});
  }

 private:
  // What becomes of the graph while the cable is out: it is left, it waits for the cable, or it
  // gives up after its time of silence.
  enum class Way { kLeft, kWaits, kGivesUp };

  static Way WayOf(int cycle) {
    constexpr int kSeldom = 50;
    constexpr int kOften = 5;
    if (cycle % kSeldom == kSeldom - kOften) return Way::kGivesUp;
    return cycle % kOften == kOften - 2 ? Way::kWaits : Way::kLeft;
  }

  void Begin(int cycle) {
    const Way before = cycle == 0 ? Way::kLeft : WayOf(cycle - 1);
    if (before == Way::kLeft) Open("M_Graphics", kGraph);
    if (before == Way::kGivesUp) {
      program->Press("mnuZOLTCom");
      TakeBox("Are you sure you want to start communication", "Yes", kGraph);
    }
    EXPECT_TRUE(IsBusy());
    EXPECT_EQ(program->Ask("get lblCommunicationError visible"), "false");
  }

  void TakeLoss(int cycle) {
    EXPECT_TRUE(HasLetGo());
    SeeThatItIsCalm(cycle);
    const Way way = WayOf(cycle);
    if (way == Way::kLeft) {
      program->Mouse("lblExit");
      ASSERT_TRUE(ComesToFront("none"));
    }
    if (way == Way::kGivesUp) {
      constexpr int kSilence = 20'000;  // ms
      ASSERT_TRUE(program->Becomes("modal", "Communication port|Com port busy.", kSilence));
      program->Click("OK");
      ASSERT_TRUE(ComesToFront(kGraph));
      EXPECT_EQ(program->Text("lblCommunicationError"), "Communication stopped");
    }
  }
};

TEST_F(PlugGraph, OutOfTheGraph) { EndureGraph(); }

}  // namespace
}  // namespace e2e
