// What the real program puts on paper and into its export, read back with tools that are not ours.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "driven_program.h"

namespace e2e {
namespace {

constexpr int kLocations = 512;

std::string NameOf(int index) { return "Item-" + std::to_string(index) + "-"; }

// Twelve columns, far larger than the window and than a page.
std::string LargeScreen() {
  constexpr int kRows = 43;
  std::string text = "16744576\r\n";
  for (int i = 0; i < kLocations; ++i) {
    const std::string top = std::to_string(120 + i % kRows * 330);
    const int left = 450 + i / kRows * 4300;
    text += "\"L\",0,1,\"01A0\",0,\"" + NameOf(i + 1) + "\",\"v\",0,0,0,0,\"0\",0," + top + "," +
            std::to_string(left + 2100) + "," + top + "," + std::to_string(left) + ",\"0\"\r\n";
  }
  return text + "\"T\",\"Boiler room\",14500,450,\"DejaVu Sans\",12,#TRUE#,#FALSE#,255\r\n";
}

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

// The dark pixels of the first page between a quarter and three quarters of its height, at 72 to
// the inch: its texts alone can be there in the file and yet be cut away on paper.
int InkInTheMiddle(const std::string& pdf) {
  const std::string picture = Output("pdftoppm -f 1 -l 1 -r 72 -gray '" + pdf + "'");
  int width = 0;
  int height = 0;
  int begin = 0;
  if (std::sscanf(picture.c_str(), "P5 %d %d 255%n", &width, &height, &begin) != 2) return -1;
  constexpr int kDark = 128;
  const auto row = [&](int y) { return picture.begin() + begin + 1 + y * width; };
  return static_cast<int>(std::count_if(row(height / 4), row(height * 3 / 4), [](char grey) {
    return static_cast<unsigned char>(grey) < kDark;
  }));
}

class OnPaper : public testing::Test {
 protected:
  // Whether the file comes to be there; it is whole when it does. The box that asked last is gone a
  // moment before.
  bool Appears(const std::string& path) {
    constexpr int kTries = 5000;
    for (int i = 0; i < kTries; ++i) {
      if (std::filesystem::exists(path)) return true;
      program.Ask("modal");  // gives the program its turn
    }
    return false;
  }

  TestFolder folder;
  DrivenProgram program{folder, "", folder.Write("large.wcr", LargeScreen())};
};

TEST_F(OnPaper, TheExportHoldsEveryLocationInOrder) {
  program.Press("mnuPrintToFile");
  program.SaveAs("Doc file", folder.Path("report.doc"));
  ASSERT_TRUE(program.Becomes("modal", "Export to DOC|InputBox"));
  ASSERT_TRUE(program.Becomes("type Night shift", "ok"));
  program.Click("OK");
  ASSERT_TRUE(Appears(folder.Path("report.doc")));
  std::string expected = "\r\n\r\n\r\nNight shift\r\n\r\n";
  for (int i = 1; i <= kLocations; ++i) {
    expected += NameOf(i) + "\tValue " + std::to_string(i) + "\r\n";
  }
  const std::string report = folder.Read("report.doc");
  EXPECT_TRUE(report.starts_with(folder.Path("large.wcr") + "  "));
  EXPECT_EQ(report.substr(report.find("\r\n")), expected);
}

TEST_F(OnPaper, ThePdfHoldsEveryLocationAndLabel) {
  program.Press("mnuPrint");
  ASSERT_TRUE(program.Becomes("modal", "Print Screen|Preview"));
  program.Press("PreviewPdf");
  program.SaveAs("Save as PDF", folder.Path("screen.pdf"));
  ASSERT_TRUE(program.Becomes("modal", "none"));
  const std::string text = Output("pdftotext -layout '" + folder.Path("screen.pdf") + "' -");
  int missing = 0;
  for (int i = 1; i <= kLocations; ++i) {
    if (text.find(NameOf(i)) == std::string::npos) ++missing;
    if (text.find("Value " + std::to_string(i)) == std::string::npos) ++missing;
  }
  EXPECT_EQ(missing, 0);
  EXPECT_NE(text.find("Boiler room"), std::string::npos);
  EXPECT_GT(InkInTheMiddle(folder.Path("screen.pdf")), 1000);
  const std::string pages = Output("pdfinfo '" + folder.Path("screen.pdf") + "'");
  EXPECT_NE(pages.find("Page size:"), std::string::npos) << pages;
}

}  // namespace
}  // namespace e2e
