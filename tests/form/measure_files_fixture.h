// The graph in a world of fakes, with what its files need said.
#pragma once

#include <chrono>
#include <string>
#include <utility>

#include "form/open_graph.h"
#include "graph/measure_files.h"

namespace tarnlink {

using namespace std::chrono_literals;

inline constexpr const char* kFile = "/home/user/measured/file.mss";
inline constexpr const char* kTable = "/home/user/measured/table.txt";

class MeasureFilesTest : public OpenGraph {
 protected:
  MeasureFilesTest() {
    Open();
    files.DrawAgain = [this] { done += "drawn "; };
    world.disk().MakeFolder("/home/user/measured");
    Show(0);
    Show(1);
  }

  MeasureFiles::Then Then() {
    return [this] { done += "then "; };
  }
  std::string Done() { return std::exchange(done, {}); }
  // Samples of as many seconds in both lines.
  void Measure(int seconds) {
    for (int i = 0; i < seconds; ++i) {
      Sample(0, i, i % 5000);
      Sample(1, i, 65'535 - i % 1000);
    }
  }
  // More than is done at once.
  void MeasureLong() { Measure(40'000); }
  void Save(bool with_measurements = true) {
    files.SaveMeasureFile(kFile, with_measurements, false, Then());
  }
  void Load(bool with_measurements = true) {
    files.LoadMeasureFile(kFile, with_measurements, Then());
  }
  void Export(const std::string& name = kTable) { files.ExportMeasureFile(name, Then()); }
  bool WaitForEnd() {
    return world.RunUntil([this] { return !files.IsBusy(); }, 60s);
  }
  void ExpectError(const char* text, const char* title) {
    world.dialogs().ExpectMessageBox({.text = text, .title = title, .icon = Icon::kCritical});
  }
  void ExpectReadError() { ExpectError("Error reading file", "Reading file"); }
  void ExpectSaveError() { ExpectError("Error saving file", "Saving file"); }
  void ExpectExportError() { ExpectError("Error exporting file", "exporting file"); }
  int Count(int channel) const {
    return graph.Data.Channels.at(static_cast<std::size_t>(channel)).Count();
  }
  std::string State() const {
    return std::string(graph.ZOLTCommunication ? "communicates" : "silent") +
           (graph.AutoScroll ? ", follows" : ", stands") + (menu.mnuZOLTCom.Checked ? " +" : " -") +
           (menu.mnuTimeScroll.Checked ? "+" : "-");
  }
  // What is on the disk now, as another graph reads it.
  std::string OnDisk() { return world.disk().Get(kFile); }

  MeasureFiles& files = all.files;
  std::string done;
};

}  // namespace tarnlink
