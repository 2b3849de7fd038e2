// The drawing of a screen on paper.

#include "monitor/screen_sheet.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/recording_surface.h"

namespace tarnlink {
namespace {

using Kind = SheetItem::Kind;

constexpr const char* kMoment = "14:07 05-Mar-2024";

SheetItem Box(float left, float top, const std::string& text) {
  return {.kind = Kind::kBox, .frame = {left, top, 2000, 300}, .text = text, .font = {.size = 8}};
}

SheetItem LabelAt(float left, float top, const std::string& text) {
  return {.kind = Kind::kLabel, .frame = {left, top, 0, 0}, .text = text, .font = {.size = 10}};
}

SheetItem Check(float left, float top, bool checked) {
  return {.kind = Kind::kCheck, .frame = {left, top, 200, 200}, .checked = checked};
}

ScreenSheet Sheet(std::vector<SheetItem> items, Colour colour = kWhite) {
  return {.name = "/jobs/a.wcr", .moment = kMoment, .colour = colour, .items = std::move(items)};
}

class ScreenOnPaper : public ::testing::Test {
 protected:
  // Everything that is drawn on a page of 10 000 by 10 000 units, 10 units to the pixel.
  std::string Drawn(const ScreenSheet& sheet) {
    paper_.Forget();
    DrawSheet(sheet, paper_);
    return paper_.Describe();
  }

  // The texts but for those of the page itself, a line each.
  std::string Texts(const ScreenSheet& sheet) {
    Drawn(sheet);
    std::string all;
    for (const std::string& operation : paper_.Only("text")) {
      if (operation.find(kMoment) != std::string::npos) continue;
      if (operation.find(sheet.name) != std::string::npos) continue;
      all += operation + "\n";
    }
    return all;
  }

  // The last font that was chosen before the text with these characters in it.
  std::string FontOf(const ScreenSheet& sheet, const std::string& text) {
    Drawn(sheet);
    std::string font;
    for (const std::string& operation : paper_.operations()) {
      if (operation.starts_with("font")) font = operation;
      if (operation.starts_with("text") && operation.find(text) != std::string::npos) return font;
    }
    return "none";
  }

  bool Draws(const ScreenSheet& sheet, const std::string& operations) {
    return Drawn(sheet).find(operations) != std::string::npos;
  }

  std::size_t Pages(const ScreenSheet& sheet) {
    Drawn(sheet);
    return paper_.Only("page").size() + 1;
  }

  RecordingSurface paper_ = [] {
    RecordingSurface paper(10'000, 10'000);
    paper.twips_per_pixel = 10.0F;
    return paper;
  }();
};

// --- The page itself ---

TEST_F(ScreenOnPaper, AnEmptyScreenIsAPageWithNameAndMoment) {
  // 17 characters of 108 units end at the right edge.
  EXPECT_EQ(Drawn(Sheet({})),
            "font Sans Serif 9\n"
            "font Sans Serif 9\n"
            "text 8164,0 000000 \"14:07 05-Mar-2024\"\n"
            "font Sans Serif 9\n"
            "text 0,0 000000 \"/jobs/a.wcr\"\n");
}

TEST_F(ScreenOnPaper, ALongNameGetsSmallerLettersAndIsCutInTheEnd) {
  ScreenSheet sheet = Sheet({});
  sheet.name = "/" + std::string(99, 'n') + ".wcr";
  EXPECT_EQ(FontOf(sheet, ".wcr"), "font Sans Serif 6.38141");
  sheet.name = "/" + std::string(500, 'n') + ".wcr";
  EXPECT_EQ(FontOf(sheet, "nnn"), "font Sans Serif 4");
  EXPECT_TRUE(Draws(sheet, "text 0,0 000000 \"/" + std::string(163, 'n') + "…\"\n"));
}

TEST_F(ScreenOnPaper, SeveralPagesAreNumberedAndEachHasNameAndMoment) {
  std::vector<SheetItem> items;
  for (int i = 0; i < 60; ++i) items.push_back(Box(0, static_cast<float>(i) * 400, "b"));
  const ScreenSheet sheet = Sheet(items);
  EXPECT_EQ(Pages(sheet), 3U);
  const std::string all = paper_.Describe();
  for (const std::string number : {"Page 1 of 3", "Page 2 of 3", "Page 3 of 3"}) {
    EXPECT_NE(all.find("text 4406,9784 000000 \"" + number + "\""), std::string::npos) << number;
  }
  EXPECT_EQ(paper_.Only("text 0,0 000000 \"/jobs/a.wcr\"").size(), 3U);
  EXPECT_EQ(paper_.Only("text 8164,0").size(), 3U);
}

TEST_F(ScreenOnPaper, ASinglePageHasNoNumber) {
  Drawn(Sheet({Box(0, 0, "b")}));
  EXPECT_EQ(paper_.Describe().find("Page"), std::string::npos);
}

TEST_F(ScreenOnPaper, OnlyAFurtherPageIsBegunAnew) {
  Drawn(Sheet({Box(0, 0, "a"), Box(0, 20'000, "b")}));
  const auto& operations = paper_.operations();
  EXPECT_EQ(paper_.Only("page").size(), 1U);
  EXPECT_NE(operations.front(), "page");
  EXPECT_NE(operations.back(), "page");
}

TEST_F(ScreenOnPaper, IsDrawnTheSameEachTime) {
  const ScreenSheet sheet = Sheet({Box(0, 0, "a"), LabelAt(0, 20'000, "b"), Check(5, 5, true)});
  const std::string first = Drawn(sheet);
  EXPECT_EQ(Drawn(sheet), first);
}

// --- The form ---

TEST_F(ScreenOnPaper, TheFormIsFilledInItsColourBehindItsObjectsAndNothingLeavesIt) {
  EXPECT_TRUE(Draws(Sheet({Box(1000, 1000, "")}, 0xFF8080),
                    "clip 0,324 2300,924\n"
                    "pen FF8080 solid 1\n"
                    "box 0,324 2300,924\n"));
  EXPECT_TRUE(Draws(Sheet({Box(1000, 1000, "")}), "no clip\nfont Sans Serif 9\n"));
}

TEST_F(ScreenOnPaper, ColoursOfTheDesktopComeOutAsOnALightOne) {
  EXPECT_TRUE(Draws(Sheet({Box(0, 0, "")}, kWindowBackground), "pen FFFFFF solid 1\nbox 0,324"));
  EXPECT_TRUE(Draws(Sheet({Box(0, 0, "")}, kFormBackground), "pen F0F0F0 solid 1\nbox 0,324"));
  SheetItem box = Box(0, 0, "x");
  box.back = kFormBackground;
  EXPECT_TRUE(Draws(Sheet({box}), "pen F0F0F0 solid 1\nbox 150,474"));
  EXPECT_NE(Texts(Sheet({box})).find(" 000000 "), std::string::npos);
  SheetItem label = LabelAt(0, 0, "x");
  label.fore = static_cast<Colour>(0x80000012);
  EXPECT_NE(Texts(Sheet({label})).find(" 000000 "), std::string::npos);
}

// --- Boxes ---

TEST_F(ScreenOnPaper, ABoxIsFilledAndFramedWithItsTextAtTheLeftInTheMiddleOfItsHeight) {
  SheetItem box = Box(0, 0, "Flow");
  box.back = 0xFFFF00;
  EXPECT_TRUE(Draws(Sheet({box}),
                    "pen FFFF00 solid 1\n"
                    "box 150,474 2150,774\n"
                    "pen 808080 solid 1\n"
                    "polyline 150,474 2150,474 2150,774 150,774 150,474\n"
                    "font Sans Serif 8\n"
                    "text 225,528 000000 \"Flow\"\n"));
}

TEST_F(ScreenOnPaper, ABoxWithoutTextIsStillThere) {
  EXPECT_TRUE(Draws(Sheet({Box(0, 0, "")}), "polyline 150,474"));
  EXPECT_EQ(Texts(Sheet({Box(0, 0, "")})), "");
}

TEST_F(ScreenOnPaper, TheTextOfABoxIsBlackOrWhiteWhicheverReadsBetter) {
  struct Row {
    Colour back;
    std::string text;
  };
  for (const Row& row :
       {Row{kWhite, "000000"}, Row{kBlack, "FFFFFF"}, Row{0x0000FF, "FFFFFF"},
        Row{0x00FF00, "000000"}, Row{0xFF0000, "FFFFFF"}, Row{0x00FFFF, "000000"},
        Row{0x808080, "000000"}, Row{0x7F7F7F, "FFFFFF"}, Row{kWindowBackground, "000000"}}) {
    SheetItem box = Box(0, 0, "x");
    box.back = row.back;
    EXPECT_EQ(Texts(Sheet({box})), "text 225,528 " + row.text + " \"x\"\n") << row.back;
  }
}

TEST_F(ScreenOnPaper, ABoxKeepsItsFont) {
  SheetItem box = Box(0, 0, "x");
  box.font = {"Verdana", 8, true, true};
  EXPECT_EQ(FontOf(Sheet({box}), "\"x\""), "font Verdana 8 bold italic");
}

TEST_F(ScreenOnPaper, ATextTooWideForItsBoxGetsSmallerLettersUntilItFits) {
  // 1850 units of room: 19 letters of 8 points take 1824, 20 take 1920, 38 of 4 points take 1824.
  EXPECT_EQ(FontOf(Sheet({Box(0, 0, std::string(19, 'x'))}), "xxx"), "font Sans Serif 8");
  EXPECT_EQ(FontOf(Sheet({Box(0, 0, std::string(20, 'x'))}), "xxx"), "font Sans Serif 7.708333");
  EXPECT_EQ(FontOf(Sheet({Box(0, 0, std::string(38, 'x'))}), "xxx"), "font Sans Serif 4.057017");
  EXPECT_NE(Texts(Sheet({Box(0, 0, std::string(38, 'x'))})).find(std::string(38, 'x')),
            std::string::npos);
}

TEST_F(ScreenOnPaper, ATextTooWideInTheSmallestLettersIsCutWithASign) {
  const ScreenSheet sheet = Sheet({Box(0, 0, "-" + std::string(50, '7'))});
  EXPECT_EQ(FontOf(sheet, "777"), "font Sans Serif 4");
  EXPECT_EQ(Texts(sheet), "text 225,576 000000 \"-" + std::string(36, '7') + "…\"\n");
}

TEST_F(ScreenOnPaper, ATextIsCutBetweenCharactersNotBytes) {
  std::string euros;
  for (int i = 0; i < 50; ++i) euros += "€";
  std::string kept;
  for (int i = 0; i < 37; ++i) kept += "€";
  EXPECT_EQ(Texts(Sheet({Box(0, 0, euros)})), "text 225,576 000000 \"" + kept + "…\"\n");
}

TEST_F(ScreenOnPaper, OfATextThatDoesNotFitAtAllTheSignIsLeft) {
  SheetItem box = Box(0, 0, "12");
  for (const float width : {0.0F, 100.0F, 190.0F}) {
    box.frame.width = width;
    EXPECT_NE(Texts(Sheet({box})).find("\"…\""), std::string::npos) << width;
  }
}

TEST_F(ScreenOnPaper, LettersThatAreSmallAlreadyShrinkByAQuarterAtTheMost) {
  SheetItem box = Box(0, 0, std::string(60, 'x'));
  box.font.size = 4;
  EXPECT_EQ(FontOf(Sheet({box}), "xxx"), "font Sans Serif 3");
}

// --- Labels ---

TEST_F(ScreenOnPaper, ALabelStandsInItsColourAndFontWithoutAFrame) {
  SheetItem label = LabelAt(100, 100, "Boiler");
  label.font = {"Arial", 10, true, false};
  label.fore = 0x0000FF;
  EXPECT_EQ(Texts(Sheet({label})), "text 150,474 0000FF \"Boiler\"\n");
  EXPECT_EQ(FontOf(Sheet({label}), "Boiler"), "font Arial 10 bold");
  EXPECT_TRUE(paper_.Only("polyline").empty());
}

TEST_F(ScreenOnPaper, TheFormReachesAsFarAsTheTextsOfItsLabels) {
  // 6 letters of 10 points: 720 by 240 units, and the margins.
  EXPECT_TRUE(Draws(Sheet({LabelAt(100, 100, "Boiler")}), "box 0,324 1020,864\n"));
}

TEST_F(ScreenOnPaper, ALabelOfAnotherColourThanTheFormHasAPlate) {
  SheetItem label = LabelAt(0, 0, "Boiler");
  label.back = 0x00FF00;
  EXPECT_TRUE(Draws(Sheet({label}), "pen 00FF00 solid 1\nbox 150,474 870,714\n"));
  label.back = kWhite;
  Drawn(Sheet({label}));
  EXPECT_EQ(paper_.Only("box").size(), 1U);
}

TEST_F(ScreenOnPaper, AnEmptyLabelDrawsNothing) {
  EXPECT_EQ(Texts(Sheet({LabelAt(0, 0, "")})), "");
}

TEST_F(ScreenOnPaper, ALabelTooWideForAPageIsCutWithASign) {
  const ScreenSheet sheet = Sheet({LabelAt(0, 0, std::string(500, 'w'))});
  EXPECT_EQ(Pages(sheet), 1U);
  const std::string texts = Texts(sheet);
  EXPECT_NE(texts.find("w…\""), std::string::npos);
  EXPECT_EQ(FontOf(sheet, "www"), "font Sans Serif 3.75");
}

// --- Check boxes ---

TEST_F(ScreenOnPaper, ACheckBoxHasAMarkWhenItIsChecked) {
  EXPECT_TRUE(Draws(Sheet({Check(0, 0, true)}, 0xFF8080),
                    "pen FFFFFF solid 1\n"
                    "box 150,474 350,674\n"
                    "pen 808080 solid 1\n"
                    "polyline 150,474 350,474 350,674 150,674 150,474\n"
                    "pen 000000 solid 3\n"
                    "polyline 190,574 240,624 310,524\n"));
  Drawn(Sheet({Check(0, 0, false)}));
  EXPECT_EQ(paper_.Only("polyline").size(), 1U);
}

// --- Size and place ---

TEST_F(ScreenOnPaper, AWideScreenIsDrawnSmallerWithItsLettersAndLines) {
  SheetItem label = LabelAt(17'000, 0, std::string(5, 'l'));
  label.fore = 1;
  const ScreenSheet sheet = Sheet({label, Box(0, 0, "Flow"), Box(17'700, 0, "61")});
  EXPECT_EQ(FontOf(sheet, "Flow"), "font Sans Serif 4");
  EXPECT_EQ(FontOf(sheet, "lll"), "font Sans Serif 5");
  EXPECT_TRUE(Draws(sheet, "box 75,399 1075,549\n"));
  EXPECT_TRUE(Draws(sheet, "text 112.5,426 000000 \"Flow\"\n"));
  EXPECT_TRUE(Draws(sheet, "text 8962.5,426 000000 \"61\"\n"));
}

TEST_F(ScreenOnPaper, ObjectsAtNegativePlacesAreThereToo) {
  EXPECT_EQ(Texts(Sheet({Box(-5000, -4000, "a"), Box(0, 0, "b")})),
            "text 225,528 000000 \"a\"\n"
            "text 5225,4528 000000 \"b\"\n");
}

TEST_F(ScreenOnPaper, OnPaperOfNoSizeTheDrawingComesToAnEnd) {
  RecordingSurface none(0, 0);
  DrawSheet(Sheet({Box(0, 0, "a"), LabelAt(0, 900, "b")}), none);
  EXPECT_FALSE(none.operations().empty());
}

TEST_F(ScreenOnPaper, AScreenWiderThanHighIsWide) {
  EXPECT_FALSE(IsWide(Sheet({})));
  EXPECT_TRUE(IsWide(Sheet({Box(0, 0, "")})));
  EXPECT_FALSE(IsWide(Sheet({Box(0, 0, ""), Box(0, 1800, "")})));
  EXPECT_TRUE(IsWide(Sheet({Box(0, 0, ""), Box(0, 1600, "")})));
  EXPECT_TRUE(IsWide(Sheet({Box(-3000, 0, ""), Box(0, 4500, "")})));
  EXPECT_TRUE(
      IsWide(Sheet({Box(0, 0, ""), Box(0, 4500, ""), LabelAt(0, 0, std::string(60, 'x'))})));
}

}  // namespace
}  // namespace tarnlink
