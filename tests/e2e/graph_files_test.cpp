// The graph's files in the real program, on a real pseudo terminal: lines from the project, a
// recording kept, another one opened, exported and printed.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <string>

#include "job_folder.h"
#include "process.h"

namespace e2e {
namespace {

constexpr int kPatience = 5000;  // ms

// What `command` prints.
std::string Output(const std::string& command) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string text;
  std::array<char, 4096> piece;
  while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), pipe.get())) {
    text.append(piece.data(), count);
  }
  return text;
}

// The rows of a table without their first column: its times are the system's.
std::string Cells(const std::string& table) {
  std::string cells;
  for (std::size_t at = 0; at < table.size();) {
    const std::size_t end = table.find('\n', at);
    const std::string row = table.substr(at, end - at + 1);
    cells += row.substr(row.find('\t'));
    at = end + 1;
  }
  return cells;
}

class GraphFilesTest : public testing::Test {
 protected:
  void OpenAs(const std::string& title, const std::string& path) {
    const std::string dialog = title + "|OpenFile";
    ASSERT_TRUE(program->Becomes("modal", dialog));
    ASSERT_TRUE(program->Becomes("type " + path, "ok"));
    program->Click("Open");
    ASSERT_TRUE(program->Becomes("modal", "Graphic|frmGraphic"));
  }
  // Samples of the first line in a file of measurements.
  static int SamplesIn(const std::string& file) {
    const std::size_t first = file.find("Measurement 0\r\n");
    const std::size_t end = file.find("00000000000000 0", first);
    if (first == std::string::npos || end == std::string::npos) return -1;
    return static_cast<int>(std::count(file.begin() + static_cast<long>(first),
                                       file.begin() + static_cast<long>(end), '\n')) -
           2;
  }

  JobFolder folder;
  Process boiler{{BOILER_SIMULATOR_PROGRAM, "--protocol", "any", "--at-once", "--until-eof"}, {}};
  std::unique_ptr<DrivenProgram> program;
};

TEST_F(GraphFilesTest, LinesOfTheProjectAreRecordedSavedOpenedExportedAndPrinted) {
  program = std::make_unique<DrivenProgram>(
      folder, TarnLinkSettings(boiler.ReadLine(kPatience)),
      std::vector<std::string>{folder.Path("boiler.prj"), folder.Path("zolt.wcr")});
  OpenFromTree(*program, "burner.grp");
  ASSERT_TRUE(program->Becomes("modal", "Graphic|frmGraphic"));
  EXPECT_EQ(program->Ask("get mnuZOLTCom checked"), "true");
  // Recorded until there are five seconds of it.
  for (int saved = 0; saved < 5;) {
    program->Press("mnuSaveMeasure");
    program->SaveAs("Save As", folder.Path("now.mss"));
    ASSERT_TRUE(program->Becomes("modal", "Graphic|frmGraphic"));
    const int samples = SamplesIn(folder.Read("now.mss"));
    ASSERT_GE(samples, saved);
    saved = samples;
    std::filesystem::remove(folder.Path("now.mss"));
  }

  program->Press("mnuOpenMeasure");
  OpenAs("Open", folder.Path("burner_start.mss"));
  EXPECT_EQ(program->Ask("get mnuZOLTCom checked"), "false");
  EXPECT_EQ(program->Text("lblCommunicationError"), "Communication stopped");
  EXPECT_EQ(program->Text("lblDate"), "05-Mar-24 07:12:59");

  program->Press("mnuSaveMeasure");
  program->SaveAs("Save As", folder.Path("again.mss"));
  ASSERT_TRUE(program->Becomes("modal", "Graphic|frmGraphic"));
  EXPECT_EQ(folder.Read("again.mss"), folder.Read("burner_start.mss"));

  program->Press("mnuExport");
  program->SaveAs("Export measurement data", folder.Path("table.txt"));
  ASSERT_TRUE(program->Becomes("modal", "Graphic|frmGraphic"));
  EXPECT_EQ(Cells(folder.Read("table.txt")), Cells(folder.Read("burner_start.txt")));

  program->Press("mnuPrint");
  ASSERT_TRUE(program->Becomes("modal", "Print|InputBox"));
  ASSERT_TRUE(program->Becomes("type Burner in the cellar", "ok"));
  program->Click("OK");
  ASSERT_TRUE(program->Becomes("modal", "Print|Preview"));
  program->Press("PreviewPdf");
  program->SaveAs("Save as PDF", folder.Path("page.pdf"));
  ASSERT_TRUE(program->Becomes("modal", "Graphic|frmGraphic"));
  const std::string page = Output("pdftotext -layout '" + folder.Path("page.pdf") + "' -");
  for (const char* text :
       {"Burner in the cellar", "Sensor 1", "Fan speed", "07:10", "7000", "05-Mar-24 07:12:59"}) {
    EXPECT_NE(page.find(text), std::string::npos) << text << " in:\n" << page;
  }
}

}  // namespace
}  // namespace e2e
