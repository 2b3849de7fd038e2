// Screen files that cannot be read to their end: the message, and what stays.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "form/desk_fixture.h"
#include "support/prefixes.h"

namespace tarnlink {
namespace {

constexpr const char* kL = R"("L",0,3,"01A0",0,"Flow","v",0,0,0,0,"0",0,1,2,3,4,"0")";
constexpr const char* kI = R"("I",1,3,"0012",0,"S","v",0,0,0,0,"0",1,1,2,3,4,"1",3,2)";
constexpr const char* kM =
    R"("M",1,3,"0012",0,"S","v",0,0,0,0,"0",1,1,2,3,4,"1",3,2,"&H03",1,#FALSE#)";
constexpr const char* kT = R"("T","Boiler",1,2,"Arial",8.25,#FALSE#,#TRUE#,255)";

class UnreadableScreen : public DeskTest {
 protected:
  UnreadableScreen() {
    StartProgram();
    TakeNotes();
  }

  // After a failure: the screen has no file, so that the next save asks for a name.
  void ExpectNoFile() {
    EXPECT_EQ(main().CurrentTarnLinkFile, "");
    EXPECT_FALSE(main().building);
    EXPECT_TRUE(main().form.Painting);
    EXPECT_FALSE(main().CommRunning);
    EXPECT_EQ(Title(), "TarnLink - New Screen");
    EXPECT_EQ(Panel(2), "Locations : " + std::to_string(main().MaxId));
    const int writes = world.faults().CountOf("Files.WriteWhole");
    world.dialogs().ExpectSaveFile("Save As").Cancel();
    Save();
    EXPECT_EQ(world.faults().CountOf("Files.WriteWhole"), writes);
  }

  // Opens a file that ends in run-time error `code`; what stays are `counts`.
  void ExpectFailure(const std::vector<std::string>& lines, int code, const std::string& counts) {
    SCOPED_TRACE(lines.empty() ? "" : lines.back());
    const std::string text = FileText(lines);
    OpenTextFails(code, text);
    EXPECT_EQ(Counts(), counts);
    EXPECT_EQ(world.disk().Get(kScreen), text);
    ExpectNoFile();
  }
};

// --- Files that cannot be read at all ---

TEST_F(UnreadableScreen, AFileThatIsNotThereLeavesAnEmptyScreen) {
  OpenText(FileText({"77", kL, kT}));
  OpenFails(53, "/home/user/Documents/gone.wcr");
  EXPECT_EQ(Counts(), "MaxId 0, LocationCount 0, TextInfoCount 0");
  EXPECT_EQ(Screen(), "colour FF8080\n");
  ExpectNoFile();
}

TEST_F(UnreadableScreen, EveryReasonHasItsNumberAndItsSentence) {
  world.disk().Put("/jobs/locked.wcr", "77");
  world.disk().Forbid("/jobs/locked.wcr");
  struct Row {
    std::string path;
    int code;
  };
  for (const Row& row : {Row{"/jobs/gone.wcr", 53}, Row{"/nowhere/a.wcr", 76},
                         Row{"/jobs/locked.wcr", 70}, Row{"/jobs", 57}, Row{"", 53}}) {
    SCOPED_TRACE(row.path);
    OpenFails(row.code, row.path);
    const std::string shown = world.dialogs().shown().back();
    EXPECT_NE(shown.find(" | \"" + row.path + "\" could not be read: "), std::string::npos)
        << shown;
    ExpectNoFile();
  }
}

TEST_F(UnreadableScreen, StandsInTheHistoryAsAskedFor) {
  world.disk().MakeFolder("/jobs");
  OpenFails(53, "/jobs/gone.wcr");
  EXPECT_EQ(main().M_fileHist(0).Caption.get(), "/jobs/gone.wcr");
}

TEST_F(UnreadableScreen, ChangesNoOptionAndNoSetting) {
  OpenTextFails(13, FileText({"77", kM, R"("L",x)"}));
  EXPECT_EQ(TakeNotes(), "");
  EXPECT_EQ(PortOptions(), "1: 2400 Even Two 3");
}

// --- Damaged files ---

TEST_F(UnreadableScreen, TheFirstLineMustBeAColour) {
  const std::string empty = "MaxId 0, LocationCount 0, TextInfoCount 0";
  OpenTextFails(62, "");
  EXPECT_EQ(Counts(), empty);
  ExpectNoFile();
  for (const std::string first : {"", " ", "abc", "\"255\"", "#TRUE#", "0xFF", "&HFF", "12x",
                                  "\"L\"", kL, "\"\"", "-", "."}) {
    ExpectFailure({first, kL}, 13, empty);
    EXPECT_EQ(main().form.BackColor.get(), 0xFF8080);
  }
  for (const std::string first : {"2147483648", "-2147483649", "99999999999999999999", "1E30"}) {
    ExpectFailure({first, kL}, 6, empty);
  }
}

TEST_F(UnreadableScreen, WhatWasBuiltBeforeTheBadRecordStays) {
  ExpectFailure({"77", kL, kT, kI, R"("L",0,3,"01A0",x)", kL, kT}, 13,
                "MaxId 2, LocationCount 2, TextInfoCount 1");
  EXPECT_EQ(main().RAM_LOC_TEXT(1).Text.get(), "Flow");
  EXPECT_EQ(main().RAM_LOC_VAL(2).Text.get(), "Value 2");
  EXPECT_EQ(main().lbl_TextInfo(1).Caption.get(), "Boiler");
  EXPECT_EQ(main().form.BackColor.get(), 77);
}

TEST_F(UnreadableScreen, HalfAScreenCanBePolledAndSavedElsewhere) {
  OpenTextFails(13, FileText({"77", kL, R"("L",x)"}));
  options().opt_Protocol.Choose(0);
  main().Toolbar1(2).Press();
  EXPECT_TRUE(main().CommRunning);
  main().Toolbar1(3).Press();
  world.dialogs().ExpectSaveFile("Save As").Give("/home/user/Documents/rescued.wcr");
  ExpectAddToProject().Press(Answer::kNo);
  Save();
  EXPECT_EQ(world.disk().Get("/home/user/Documents/rescued.wcr"), FileText({"77", kL}));
}

TEST_F(UnreadableScreen, EveryFieldOfAMemoryLocationIsChecked) {
  const std::string counts = "MaxId 1, LocationCount 1, TextInfoCount 0";
  // The fields of an "L" record from the second on; a text takes anything but the end of the file.
  const std::vector<std::string> fields = {"0", "3", R"("01A0")", "0", R"("Flow")", R"("v")",
                                           "0", "0", "0",         "0", R"("0")",    "0",
                                           "1", "2", "3",         "4", R"("0")"};
  const std::string kinds =
      "llsbssbbbbsl"
      "ffff"
      "s";
  ASSERT_EQ(fields.size(), kinds.size());
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const auto with = [&](const std::string& damaged) {
      std::string line = "\"L\"";
      for (std::size_t k = 0; k < fields.size(); ++k) line += "," + (k == i ? damaged : fields[k]);
      return std::vector<std::string>{"77", kL, line, kL};
    };
    if (kinds[i] == 's') continue;
    for (const char* wrong : {"x", "", "\"0\"", "#TRUE#", "&H1", "1 2"}) {
      ExpectFailure(with(wrong), 13, counts);
    }
    const std::string beyond = kinds[i] == 'b' ? "256" : kinds[i] == 'l' ? "2147483648" : "4E38";
    ExpectFailure(with(beyond), 6, counts);
    if (kinds[i] == 'b') ExpectFailure(with("-1"), 6, counts);
  }
}

TEST_F(UnreadableScreen, EveryFieldBeyondItIsChecked) {
  const std::string counts = "MaxId 1, LocationCount 1, TextInfoCount 0";
  const std::string id = R"("I",1,3,"0012",0,"S","v",0,0,0,0,"0",1,1,2,3,4,"1",)";
  const std::string modbus = R"("M",1,3,"0012",0,"S","v",0,0,0,0,"0",1,1,2,3,4,"1",3,2,"&H03",)";
  struct Row {
    std::string line;
    int code;
  };
  for (const Row& row :
       {Row{id + "x,2", 13}, Row{id + "256,2", 6}, Row{id + "3,\"2\"", 13}, Row{id + "3,300", 6},
        Row{modbus + "x,#TRUE#", 13}, Row{modbus + "32768,#TRUE#", 6},
        Row{modbus + "-32769,#TRUE#", 6}, Row{modbus + "1,1", 13}, Row{modbus + "1,TRUE", 13},
        Row{modbus + "1,\"#TRUE#\"", 13}, Row{modbus + "1,#TRUE", 13},
        Row{R"("T","x",a,2,"Arial",8,#TRUE#,#TRUE#,0)", 13},
        Row{R"("T","x",1,4E38,"Arial",8,#TRUE#,#TRUE#,0)", 6},
        Row{R"("T","x",1,2,"Arial","8",#TRUE#,#TRUE#,0)", 13},
        Row{R"("T","x",1,2,"Arial",8,-1,#TRUE#,0)", 13},
        Row{R"("T","x",1,2,"Arial",8,#TRUE#,0,0)", 13},
        Row{R"("T","x",1,2,"Arial",8,#TRUE#,#TRUE#,red)", 13},
        Row{R"("T","x",1,2,"Arial",8,#TRUE#,#TRUE#,4294967296)", 6}}) {
    ExpectFailure({"77", kL, row.line}, row.code, counts);
  }
}

TEST_F(UnreadableScreen, ALocationBeyondTheLastOfTheTableEndsTheLoad) {
  std::vector<std::string> lines = {"77"};
  for (int i = 0; i < 512; ++i) lines.emplace_back(i % 2 == 0 ? kL : kI);
  OpenText(FileText(lines));
  EXPECT_EQ(Counts(), "MaxId 512, LocationCount 512, TextInfoCount 0");
  for (const char* one_more : {kL, kI, kM}) {
    std::vector<std::string> longer = lines;
    longer.emplace_back(one_more);
    longer.emplace_back(kT);
    ExpectFailure(longer, 9, "MaxId 512, LocationCount 512, TextInfoCount 0");
  }
}

// --- Truncated files ---

// What the opening of a prefix of a sound file gives.
struct Outcome {
  int error = 0;
  int locations = 0;
  int labels = 0;
};

bool IsCutBoolean(std::string_view field) {
  return field.starts_with('#') && (field.size() == 1 || !field.ends_with('#'));
}

// Only the last line can be damaged. Where its last field is a text or a number, what is left of it
// counts as the whole; further fields meet the end of the file.
Outcome OutcomeOf(std::string_view prefix) {
  Outcome outcome;
  if (prefix.empty()) outcome.error = 62;
  std::size_t end = prefix.find('\n');
  while (end != std::string_view::npos && outcome.error == 0) {
    const std::size_t start = end + 1;
    end = prefix.find('\n', start);
    std::string_view line = prefix.substr(start, end - start);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.size() < 2) continue;  // too short to hold a tag
    const char tag = line[1];
    const auto needed = tag == 'L' ? 18 : tag == 'I' ? 20 : tag == 'M' ? 23 : 9;
    const std::string_view last = line.substr(line.rfind(',') + 1);
    const auto commas = std::count(line.begin(), line.end(), ',');
    if (IsCutBoolean(last)) {
      outcome.error = 13;
    } else if (commas + (last.empty() ? 0 : 1) < needed) {
      outcome.error = 62;
    } else {
      ++(tag == 'T' ? outcome.labels : outcome.locations);
    }
  }
  return outcome;
}

TEST_F(UnreadableScreen, CutAtAnyByteIsToldAndLeavesWhatWasBuilt) {
  ForEveryPrefix(FileText({"16744576", kL, kT, kI, kM, kT, kL}), [&](std::string_view prefix) {
    const Outcome expected = OutcomeOf(prefix);
    if (expected.error != 0) {
      OpenTextFails(expected.error, prefix);
      ExpectNoFile();
    } else {
      OpenText(prefix);
      EXPECT_EQ(main().CurrentTarnLinkFile, kScreen);
    }
    const std::string locations = std::to_string(expected.locations);
    EXPECT_EQ(Counts(), "MaxId " + locations + ", LocationCount " + locations + ", TextInfoCount " +
                            std::to_string(expected.labels));
    EXPECT_EQ(world.disk().Get(kScreen), prefix);
  });
}

// --- Files that are no screens ---

TEST_F(UnreadableScreen, GarbageIsToldAndHarmsNothing) {
  std::string every_byte;
  for (int i = 0; i < 100'000; ++i) every_byte += static_cast<char>(i * 7 % 256);
  std::string noise;
  std::uint32_t state = 12345;
  for (int i = 0; i < 300'000; ++i) {
    state = state * 1664525U + 1013904223U;
    noise += static_cast<char>(state >> 24);
  }
  for (const std::string& garbage :
       {every_byte, noise, std::string(100'000, '\0'), std::string(100'000, '"'),
        std::string(100'000, ','), std::string("\177ELF\2\1\1\0\0", 9), std::string("\xEF\xBB\xBF"),
        std::string("PK\x03\x04")}) {
    SCOPED_TRACE(garbage.substr(0, 4));
    const bool nothing = garbage == "\xEF\xBB\xBF";
    OpenTextFails(nothing ? 62 : 13, garbage);
    EXPECT_EQ(Counts(), "MaxId 0, LocationCount 0, TextInfoCount 0");
    EXPECT_EQ(world.disk().Get(kScreen), garbage);
    ExpectNoFile();
  }
}

TEST_F(UnreadableScreen, GarbageBehindAColourIsPassedOver) {
  std::string garbage = "77\r\n";
  for (int i = 0; i < 100'000; ++i) garbage += static_cast<char>(i % 256);
  OpenText(garbage);
  EXPECT_EQ(Counts(), "MaxId 0, LocationCount 0, TextInfoCount 0");
  EXPECT_EQ(main().form.BackColor.get(), 77);
}

TEST_F(UnreadableScreen, GarbageInEveryFieldOfText) {
  std::string alias;
  for (int i = 1; i < 256; ++i) {
    if (i != '"' && i != '\n' && i != '\r') alias += static_cast<char>(i);
  }
  OpenText(
      FileText({"77", R"("L",0,3,")" + alias + R"(",0,")" + std::string(1'000'000, 'A') + R"(",")" +
                          alias + R"(",0,0,0,0,")" + alias + R"(",0,1,2,3,4,")" + alias + "\""}));
  EXPECT_EQ(Counts(), "MaxId 1, LocationCount 1, TextInfoCount 0");
  EXPECT_EQ(main().Locations[1].Address.size(), 4U);
  EXPECT_EQ(main().RAM_LOC_TEXT(1).Text->size(), 1'000'000U);
}

// --- A platform that breaks ---

TEST_F(UnreadableScreen, AnyCallThatBreaksDuringTheLoadIsTold) {
  const std::string text = FileText({"77", kL, kM});
  const std::size_t before = world.faults().calls().size();
  OpenText(text);
  // Behind the screen come its names, which are read in silence.
  const std::vector<std::string> made(world.faults().calls().begin() + static_cast<long>(before),
                                      world.faults().calls().end());
  const auto screen = std::find(made.begin(), made.end(), "Files.ReadWhole");
  ASSERT_NE(screen, made.end());
  const auto calls = static_cast<int>(screen - made.begin()) + 1;
  ASSERT_GE(calls, 1);
  for (int nth = 1; nth <= calls; ++nth) {
    SCOPED_TRACE(nth);
    world.faults().Break("*", nth, RunTimeError(kDeviceIo, "It broke."));
    OpenTextFails(57, text);
    EXPECT_TRUE(world.faults().Spent());
    EXPECT_EQ(world.disk().Get(kScreen), text);
    ExpectNoFile();
  }
}

}  // namespace
}  // namespace tarnlink
