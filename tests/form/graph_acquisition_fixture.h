// A graph that talks to a slave whose answers the test gives.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "graph/graph_acquisition.h"
#include "protocols/zolt_message.h"
#include "support/fake_world.h"

namespace tarnlink {

inline constexpr int kTop = MeasureChannel::kUpperBound;
inline constexpr int kLanesId = 1;
inline constexpr std::uint8_t kReadAcknowledge = 0x10;
inline constexpr std::uint8_t kWriteAcknowledge = 0x90;
inline constexpr std::uint8_t kUnknownId = 0x60;

class GraphAcquisitionTest : public ::testing::Test {
 protected:
  GraphAcquisitionTest() {
    LineColors colors;
    graph.Data.Attributes = LoadDefaultAttributes(colors);
    graph.Data.FirstTime = graph.Data.LastTime = graph.Now();
    graph.ScreenRefreshTimer->SetInterval(5000);
  }

  void Show(int index) {
    Line(index).ShowLine = true;
    graph.Data.AllocateChannel(index);
  }
  GraphAttribute& Line(int index) {
    return graph.Data.Attributes.at(static_cast<std::size_t>(index));
  }
  const MeasureChannel& Channel(int index) {
    return graph.Data.Channels.at(static_cast<std::size_t>(index));
  }
  std::int32_t Newest(int index) { return Channel(index)[kTop].Value; }

  // "type 4 slave 0 id 241 data 0 0" for each request since the last time.
  std::string Sent() {
    std::string text;
    for (const std::string& frame : world.port().TakeSent()) {
      const ZoltMessage one = ParseZoltMessage(frame);
      text += "type " + std::to_string(one.Ack + one.Class) + " slave " + frame.at(2) + " id " +
              std::to_string(one.Id) + " data " + std::to_string(one.DataHi) + " " +
              std::to_string(one.DataLo) + "\n";
    }
    return text;
  }
  std::string Poll(int data_class, int id) {
    return "type " + std::to_string(data_class) + " slave 0 id " + std::to_string(id) +
           " data 0 0\n";
  }
  void Answer(std::uint8_t kind, int id, int high, int low) {
    world.port().Receive(BuildZoltMessage(kind, "0", id, static_cast<std::uint8_t>(high),
                                          static_cast<std::uint8_t>(low)));
    world.Settle();
  }
  void ExpectBusy() {
    world.dialogs().ExpectMessageBox(
        {.text = "Com port busy.", .title = "Communication port", .icon = Icon::kCritical});
  }
  ScriptedDialog& ExpectQuestion(const std::string& verb) {
    return world.dialogs().ExpectMessageBox(
        {.text = "Are you sure you want to " + verb + " communication",
         .title = "ZOLT Communication",
         .icon = Icon::kExclamation,
         .buttons = Buttons::kYesNo});
  }
  // "running" or "stopped", with what the graph says of it.
  std::string State() {
    std::string text = graph.ZOLTCommunication ? "running" : "stopped";
    EXPECT_EQ(menu.mnuZOLTCom.Checked.get(), graph.ZOLTCommunication);
    if (graph.lblCommunicationError.Visible)
      text += ": " + graph.lblCommunicationError.Caption.get();
    return text;
  }

  FakeWorld world;
  frmGraphic graph{world};
  frmContextMenu menu{graph};
  int com_port = 1;
  int baudrate = 1;
  GraphAcquisition acquisition{
      graph, menu, {[this] { return com_port; }, [this] { return baudrate; }}};
};

}  // namespace tarnlink
