// Print Screen: the preview, and what of the screen is on its pages.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/numbers.h"
#include "form/desk_fixture.h"
#include "form/monitor_fixture.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

// A Location whose name box stands at this place, with its value box beside it.
std::string LocationAt(const std::string& alias, float left, float top) {
  const auto place = [](float units) { return FormatSingle(units); };
  return R"("L",0,3,"01A0",0,")" + alias + R"(","v",0,0,0,0,"0",0,)" + place(top) + "," +
         place(left + 2100) + "," + place(top) + "," + place(left) + R"(,"0")";
}

std::string LabelLine(const std::string& caption, const std::string& place = "100,100") {
  return R"("T",")" + caption + "\"," + place + R"(,"Arial",8,#FALSE#,#FALSE#,255)";
}

class PrintingAScreen : public DeskTest {
 protected:
  PrintingAScreen() { StartProgram(); }

  void OpenLines(std::vector<std::string> lines, const std::string& path = kScreen) {
    lines.insert(lines.begin(), "255");
    OpenText(FileText(lines), path);
  }

  // The user looks at the preview and closes it.
  void Print() {
    world.dialogs().ExpectPreview("Print Screen");
    main().mnuPrint.Press();
  }

  const PreviewRequest& Asked() { return world.dialogs().last_preview_request(); }

  // The texts of each page, sorted.
  std::vector<std::vector<std::string>> Pages() {
    std::vector<std::vector<std::string>> pages(1);
    for (const std::string& operation : world.dialogs().last_preview()) {
      if (operation == "page") pages.emplace_back();
      if (!operation.starts_with("text")) continue;
      const std::size_t quote = operation.find('"') + 1;
      pages.back().push_back(operation.substr(quote, operation.size() - quote - 1));
    }
    for (auto& page : pages) std::sort(page.begin(), page.end());
    return pages;
  }

  // "Flow, Value 1": what is on all pages but for their first and last lines.
  std::string Shown() {
    std::string all;
    for (const auto& page : Pages()) {
      for (const std::string& text : page) {
        if (text.find("-20") != std::string::npos || text.starts_with("Page ")) continue;
        if (text == main().CurrentTarnLinkFile || text == "New Screen") continue;
        all += (all.empty() ? "" : ", ") + text;
      }
    }
    return all;
  }

  // How often something of this kind is drawn.
  long Count(const std::string& kind) {
    const auto& drawn = world.dialogs().last_preview();
    return std::count_if(drawn.begin(), drawn.end(), [&kind](const std::string& operation) {
      return operation.starts_with(kind);
    });
  }
};

// --- The command ---

TEST_F(PrintingAScreen, TheFileMenuIsHiddenWhileThePreviewIsUp) {
  OpenLines({LocationAt("Flow", 0, 0)});
  bool hidden = false;
  world.dialogs().ExpectPreview("Print Screen").While([&] { hidden = !main().M_file.Visible; });
  main().mnuPrint.Press();
  EXPECT_TRUE(hidden);
  EXPECT_TRUE(main().M_file.Visible);
}

TEST_F(PrintingAScreen, TheFileMenuComesBackWhenThePreviewFails) {
  world.dialogs().ExpectPreview("Print Screen").While([] { throw std::runtime_error("jam"); });
  EXPECT_THROW(main().mnuPrint.Press(), std::runtime_error);
  EXPECT_TRUE(main().M_file.Visible);
}

TEST_F(PrintingAScreen, ThePdfFileIsProposedBesideTheScreenUnderItsName) {
  struct Row {
    std::string screen, proposed;
  };
  for (const Row& row : {Row{"", "screen.pdf"}, Row{"/jobs/boiler.wcr", "/jobs/boiler.pdf"},
                         Row{"/jobs/Wärme.v2.WCR", "/jobs/Wärme.v2.pdf"},
                         Row{"/jobs.d/boiler", "/jobs.d/boiler.pdf"},
                         Row{"/jobs/a.b", "/jobs/a.pdf"}, Row{"/jobs/.wcr", "/jobs/.wcr.pdf"}}) {
    main().CurrentTarnLinkFile = row.screen;
    Print();
    EXPECT_EQ(Asked().file_name, row.proposed) << row.screen;
  }
}

TEST_F(PrintingAScreen, LeavesScreenAndSettingsAsTheyAre) {
  OpenLines({LocationAt("Flow", 0, 0), LabelLine("Boiler")});
  ChangeScreen();
  TakeNotes();
  const std::string before = Screen() + Counts() + Title();
  Print();
  EXPECT_EQ(Screen() + Counts() + Title(), before);
  EXPECT_EQ(TakeNotes(), "");
  EXPECT_TRUE(world.pages().empty());
}

TEST_F(PrintingAScreen, AWideScreenAsksForLandscapeAndAHighOneForPortrait) {
  OpenLines({LocationAt("a", 0, 0), LocationAt("b", 0, 3000)});
  Print();
  EXPECT_TRUE(Asked().setup.landscape);
  OpenLines({LocationAt("a", 0, 0), LocationAt("b", 0, 4000)});
  Print();
  EXPECT_FALSE(Asked().setup.landscape);
  main().M_NewScreen.Press();
  Print();
  EXPECT_FALSE(Asked().setup.landscape);
}

// --- What is on the pages ---

TEST_F(PrintingAScreen, ANewScreenIsAPageThatSaysSo) {
  Print();
  EXPECT_EQ(Pages(), (std::vector<std::vector<std::string>>{{"14:07 05-Mar-2024", "New Screen"}}));
}

TEST_F(PrintingAScreen, ThePageTellsTheScreensPathAndTheMoment) {
  OpenLines({LocationAt("Flow", 0, 0)});
  MonthNames names = EnglishMonthNames();
  names[2] = "Mars";
  world.locale().SetMonths(names);
  Print();
  EXPECT_EQ(Pages()[0], (std::vector<std::string>{"/home/user/Documents/boiler.wcr",
                                                  "14:07 05-Mar-2024", "Flow", "Value 1"}));
}

TEST_F(PrintingAScreen, AllVisibleBoxesAndLabelsAreThereInTheirColours) {
  OpenLines({LocationAt("Flow", 0, 0), LocationAt("Return", 0, 400), LabelLine("Boiler")});
  main().form.BackColor = 0x123456;
  main().RAM_LOC_VAL(2).Text = "48";
  main().RAM_LOC_VAL(2).BackColor = 0x654321;
  Print();
  EXPECT_EQ(Shown(), "48, Boiler, Flow, Return, Value 1");
  EXPECT_EQ(Count("pen 123456"), 1);
  EXPECT_EQ(Count("pen 654321"), 1);
  EXPECT_EQ(Count("polyline"), 4);
  const auto& drawn = world.dialogs().last_preview();
  EXPECT_TRUE(std::any_of(drawn.begin(), drawn.end(), [](const std::string& operation) {
    return operation.starts_with("text") && operation.ends_with("0000FF \"Boiler\"");
  }));
}

TEST_F(PrintingAScreen, ALabelStandsOnThePlateThatTheScreenShows) {
  OpenLines({LabelLine("Boiler")});
  main().form.BackColor = 0x123456;
  Print();
  EXPECT_EQ(Count("pen 0000FF"), 1);
  main().lbl_TextInfo(1).BackColor = 0x123456;
  Print();
  EXPECT_EQ(Count("pen 0000FF"), 0);
}

TEST_F(PrintingAScreen, WhatIsDeletedIsNotThere) {
  OpenLines(
      {LocationAt("Flow", 0, 0), LocationAt("Return", 0, 400), LabelLine("x"), LabelLine("y")});
  Delete(1);
  main().lbl_TextInfo(2).Visible = false;
  Print();
  EXPECT_EQ(Shown(), "Return, Value 2, x");
  Delete(2);
  main().lbl_TextInfo(1).Visible = false;
  Print();
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(Count("box"), 0);
}

TEST_F(PrintingAScreen, CheckBoxesAreThereOnlyWhileTheScreenShowsThem) {
  OpenLines({LocationAt("Flow", 500, 0), LocationAt("Return", 500, 400)});
  Print();
  const long frames = Count("polyline");
  main().RAM_LOC_CHECK(1).Visible = true;
  main().RAM_LOC_CHECK(1).Value = false;
  Print();
  EXPECT_EQ(Count("polyline"), frames + 1);
  main().RAM_LOC_CHECK(1).Value = true;
  Print();
  EXPECT_EQ(Count("polyline"), frames + 2);
}

TEST_F(PrintingAScreen, ObjectsAtNegativePlacesAndFarAwayAreThereToo) {
  OpenLines({LocationAt("above", -9000, -5000), LocationAt("far", 1e30F, 1e30F),
             LocationAt("left", -1e30F, 20), LabelLine("beyond", "1E30,1E30")});
  Print();
  EXPECT_EQ(Shown(), "Value 3, left, Value 1, above, Value 2, beyond, far");
}

TEST_F(PrintingAScreen, ALabelOfNonsenseSizeIsStillPrinted) {
  OpenText(FileText({"255", R"("T","none",0,0,"Arial",0,#FALSE#,#FALSE#,0)",
                     R"("T","minus",900,0,"Arial",-5,#FALSE#,#FALSE#,0)",
                     R"("T","huge",1800,0,"Arial",1E+30,#FALSE#,#FALSE#,0)"}));
  Print();
  EXPECT_EQ(Shown(), "huge, minus, none");
  EXPECT_EQ(Count("font Arial 8.25"), 4);
}

TEST_F(PrintingAScreen, OfATextWithoutEndTheBeginningIsPrintedWithASign) {
  OpenLines({LabelLine(std::string(100'000, 'x'))});
  Print();
  EXPECT_TRUE(Shown().ends_with("x…"));
  EXPECT_LE(Shown().size(), 503U);
}

// --- Several pages ---

TEST_F(PrintingAScreen, AFullScreenGoesOnSeveralPagesAndNothingIsLostOrTwice) {
  std::vector<std::string> lines;
  std::vector<std::string> expected;
  for (int i = 0; i < 512; ++i) {
    const auto column = static_cast<float>(i % 4);
    const auto row = static_cast<float>(i / 4);
    lines.push_back(LocationAt("n" + std::to_string(i), column * 4400, row * 330));
    expected.push_back("n" + std::to_string(i));
    expected.push_back("Value " + std::to_string(i + 1));
  }
  OpenLines(lines);
  Print();
  EXPECT_FALSE(Asked().setup.landscape);
  const auto pages = Pages();
  ASSERT_EQ(pages.size(), 2U);
  std::vector<std::string> found;
  for (std::size_t n = 0; n < pages.size(); ++n) {
    EXPECT_TRUE(std::binary_search(pages[n].begin(), pages[n].end(),
                                   "Page " + std::to_string(n + 1) + " of 2"));
    EXPECT_TRUE(std::binary_search(pages[n].begin(), pages[n].end(), kScreen));
    found.insert(found.end(), pages[n].begin(), pages[n].end());
  }
  std::erase_if(found, [](const std::string& text) {
    return !text.starts_with("n") && !text.starts_with("Value");
  });
  std::sort(found.begin(), found.end());
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(found, expected);
}

TEST_F(PrintingAScreen, ANameAndItsValueBesideItStayOnOnePageOfAVeryWideScreen) {
  std::vector<std::string> lines;
  for (int i = 0; i < 40; ++i) {
    lines.push_back(LocationAt("n" + std::to_string(i + 1), static_cast<float>(i) * 4000, 0));
  }
  OpenLines(lines);
  Print();
  EXPECT_TRUE(Asked().setup.landscape);
  const auto pages = Pages();
  EXPECT_EQ(pages.size(), 5U);
  for (const auto& page : pages) {
    for (const std::string& text : page) {
      if (!text.starts_with("n")) continue;
      EXPECT_TRUE(std::binary_search(page.begin(), page.end(), "Value " + text.substr(1))) << text;
    }
  }
}

// --- Time goes on ---

class PrintingDuringARun : public MonitorTest {};

TEST_F(PrintingDuringARun, ThePictureStaysAsItWasWhenTheCommandWasGiven) {
  Screen({ByteAt("01A0")});
  SlaveHolds({{"01A0", "A1"}});
  Start();
  Advance(100);
  ASSERT_EQ(Value(1), "A1");
  // The fake draws the pages again after the look, and fails if they differ.
  world.dialogs()
      .ExpectPreview("Print Screen")
      .While([this] {
        SlaveHolds({{"01A0", "B2"}});
      })
      .For(120s);
  monitor.main.mnuPrint.Press();
  EXPECT_EQ(Value(1), "B2");
  const auto& drawn = world.dialogs().last_preview();
  EXPECT_TRUE(std::any_of(drawn.begin(), drawn.end(), [](const std::string& operation) {
    return operation.ends_with("\"A1\"");
  }));
  EXPECT_TRUE(monitor.main.CommRunning);
}

}  // namespace
}  // namespace tarnlink
