// Undo and redo of single edits: what the entries say and what comes back.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "form/undo_fixture.h"

namespace tarnlink {
namespace {

TEST_F(Undoing, BeginsWithNothingToUndo) {
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
  const std::string before = Everything();
  Undo();
  Redo();
  program().history.Undo();
  program().history.Redo();
  EXPECT_EQ(Everything(), before);
  EXPECT_FALSE(Changed());
}

// --- Every kind of edit ---

struct Kind {
  std::string what;
  bool changes_file;
  std::function<void()> edit;
};

class UndoingEveryKind : public Undoing {
 protected:
  std::vector<Kind> Kinds() {
    std::vector<Kind> kinds = OfLocations();
    for (const Kind& kind : OfLabelsAndForm()) kinds.push_back(kind);
    return kinds;
  }

 private:
  std::vector<Kind> OfLocations() {
    return {
        {"adding of Name 2", true, [this] { AddLocation(); }},
        {"move of Flow", true,
         [this] {
           DragName(1, {2000, 3000});
         }},
        {"move of Flow", false,
         [this] {
           DragName(1, {1000, 600});
         }},
        {"move of Flow", false,
         [this] {
           GrabName(1);
           main().RAM_LOC_TEXT.DragDrop(2);
         }},
        {"move of Flow", false,
         [this] {
           GrabName(1);
           main().RAM_LOC_VAL.DragDrop(2);
         }},
        {"move of the value of Tank", true,
         [this] {
           DragValue(2, {2000, 3000});
         }},
        {"move of the value of Tank", false,
         [this] {
           GrabValue(2);
           main().RAM_LOC_TEXT.DragDrop(1);
         }},
        {"move of Flow", true, [this] { main().RAM_LOC_TEXT.Arrow(1, kRight); }},
        {"move of the value of Flow", true, [this] { main().RAM_LOC_VAL.Arrow(1, kUp); }},
        {"deletion of Tank", true, [this] { DeleteLocation(2); }},
        {"size of the value of Flow", false, [this] { ToggleSize(1); }},
        {"scanning of Flow", false, [this] { ToggleCheck(1); }},
        {"scanning of Tank", false, [this] { ToggleCheck(2); }},
    };
  }
  std::vector<Kind> OfLabelsAndForm() {
    return {
        {"adding of text", true, [this] { AddText(); }},
        {"move of Boiler", true,
         [this] {
           DragLabel(1, {2000, 3000});
         }},
        {"move of Cellar", true, [this] { main().lbl_TextInfo.Arrow(2, kDown); }},
        {"text of Boiler", true, [this] { TypeLabel(1, "Roof"); }},
        {"deletion of Boiler", true, [this] { TypeLabel(1, ""); }},
        {"deletion of Cellar", true, [this] { main().lbl_TextInfo.DeleteKey(2); }},
        {"font of Boiler", true, [this] { FontLabel(1, {.name = "Courier", .size = 20}); }},
        {"colour of Cellar", true, [this] { ColourLabel(2, 0xFF00); }},
        {"colour of the screen", true, [this] { ColourForm(0x123456); }},
    };
  }
};

TEST_F(UndoingEveryKind, BringsBackAllThatItChangedAndRedoDoesItAgain) {
  for (const bool scanning_box : {false, true}) {
    SetScanningBox(scanning_box);
    for (const Kind& kind : Kinds()) {
      SCOPED_TRACE(kind.what);
      OpenStart();
      const std::string before = Everything();
      kind.edit();
      const std::string after = Everything();
      EXPECT_NE(after, before);
      EXPECT_EQ(Changed(), kind.changes_file);
      for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(Entries(), "&Undo " + kind.what + " | [&Redo]");
        Undo();
        EXPECT_EQ(Everything(), before);
        EXPECT_EQ(FileNow(), File());
        EXPECT_FALSE(Changed());
        EXPECT_EQ(Entries(), "[&Undo] | &Redo " + kind.what);
        Redo();
        EXPECT_EQ(Everything(), after);
        EXPECT_EQ(Changed(), kind.changes_file || FileNow() != File());
      }
    }
  }
}

TEST_F(UndoingEveryKind, OneAfterTheOtherComesBackInOrder) {
  std::vector<std::string> states = {Everything()};
  std::vector<std::string> whats;
  AddLocation();
  states.push_back(Everything());
  whats.push_back("adding of Name 2");
  DragName(3, {3000, 3000});
  states.push_back(Everything());
  whats.push_back("move of Name 2");
  ToggleCheck(3);
  states.push_back(Everything());
  whats.push_back("scanning of Name 2");
  DeleteLocation(3);
  states.push_back(Everything());
  whats.push_back("deletion of Name 2");
  AddText();
  states.push_back(Everything());
  whats.push_back("adding of text");
  TypeLabel(3, "Roof");
  states.push_back(Everything());
  whats.push_back("text of Textual Information");
  ColourForm(7);
  states.push_back(Everything());
  whats.push_back("colour of the screen");
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = whats.size(); i > 0; --i) {
      EXPECT_TRUE(Entries().starts_with("&Undo " + whats[i - 1] + " | ")) << Entries();
      Undo();
      EXPECT_EQ(Everything(), states[i - 1]) << i;
    }
    for (std::size_t i = 0; i < whats.size(); ++i) {
      EXPECT_TRUE(Entries().ends_with("| &Redo " + whats[i])) << Entries();
      Redo();
      EXPECT_EQ(Everything(), states[i + 1]) << i;
    }
  }
}

TEST_F(Undoing, AnAddedLocationComesAndGoesForTheView) {
  std::string seen;
  main().RAM_LOC_TEXT.Loaded = [&](int i) { seen += "made " + std::to_string(i) + "\n"; };
  main().RAM_LOC_TEXT.Unloading = [&](int i) { seen += "gone " + std::to_string(i) + "\n"; };
  AddLocation();
  Undo();
  Redo();
  EXPECT_EQ(seen, "made 3\ngone 3\nmade 3\n");
  ToggleCheck(3);
  EXPECT_EQ(main().Locations[3].ScanFlags, 1);
}

TEST_F(Undoing, AnUndoneAddLeavesTheTableAsItWas) {
  const Location before = main().Locations[3];
  AddLocation();
  ToggleCheck(3);
  Undo();
  Undo();
  EXPECT_EQ(main().Locations[3], before);
  EXPECT_EQ(Panel(2), "Locations : 2");
}

TEST_F(Undoing, ADeletedLocationIsCountedAgain) {
  DeleteLocation(1);
  EXPECT_EQ(Panel(2), "Locations : 1");
  Undo();
  EXPECT_EQ(Panel(2), "Locations : 2");
  EXPECT_EQ(main().LocationCount, 2);
  Redo();
  EXPECT_EQ(Panel(2), "Locations : 1");
}

TEST_F(Undoing, LeavesOtherObjectsAsTheyAre) {
  ToggleSize(2);
  ColourLabel(2, 0xFF);
  DragLabel(1, {100, 100});
  Undo();
  EXPECT_EQ(PlaceOf(main().lbl_TextInfo(1)), "500,9000");
  EXPECT_EQ(main().lbl_TextInfo(2).ForeColor.get(), 0xFF);
}

// --- What the entries say ---

TEST_F(Undoing, AnAmpersandOfANameIsNoMnemonic) {
  TypeLabel(1, "Heat & Water &&");
  DragLabel(1, {100, 100});
  EXPECT_EQ(main().mnuUndo.Caption.get(), "&Undo move of Heat && Water &&&&");
  Undo();
  EXPECT_EQ(main().mnuRedo.Caption.get(), "&Redo move of Heat && Water &&&&");
}

TEST_F(Undoing, ALongNameIsCutToThirtyCharacters) {
  struct Row {
    std::string text, shown;
  };
  std::string umlauts;
  for (int i = 0; i < 29; ++i) umlauts += "ü";
  for (const Row& row :
       {Row{"123456789012345678901234567890", "123456789012345678901234567890"},
        Row{"1234567890123456789012345678901", "123456789012345678901234567890..."},
        Row{umlauts + "€", umlauts + "€"}, Row{umlauts + "€ä", umlauts + "€..."},
        Row{umlauts + "a€€", umlauts + "a..."},
        Row{umlauts + "\U0001F525x", umlauts + "\U0001F525..."},
        Row{umlauts + "a\U0001F525", umlauts + "a..."}}) {
    TypeLabel(1, row.text);
    DragLabel(1, {100, 100});
    EXPECT_EQ(main().mnuUndo.Caption.get(), "&Undo move of " + row.shown);
    Undo();
  }
}

TEST_F(Undoing, TheNameIsThatBeforeTheEdit) {
  TypeLabel(1, "Roof");
  EXPECT_EQ(Entries(), "&Undo text of Boiler | [&Redo]");
}

// --- What is not kept ---

TEST_F(Undoing, AnEditThatChangesNothingIsNotKept) {
  DragName(1, {2000, 3000});
  DragName(2, {2000, 3000});
  Undo();
  const std::string entries = Entries();
  const std::string before = Everything();
  const Font font = main().lbl_TextInfo(1).TextFont;
  const std::vector<std::function<void()>> edits = {
      [this] {
        DragValue(1, {4100, 3000});
      },
      [this] {
        DragName(1, {2000, 3000});
      },
      [this] {
        DragLabel(1, {500, 9000});
      },
      [this] {
        GrabValue(1);
        main().RAM_LOC_VAL.DragDrop(2);
      },
      [this] { TypeLabel(1, " Boiler "); },
      [this, font] { FontLabel(1, font); },
      [this] { ColourLabel(1, kBlack); },
      [this] { ColourForm(255); },
      [this] {
        GrabName(1);
        main().form.DragCancel();
      },
      [this] {
        ExpectDeleteQuestion().Press(Answer::kNo);
        main().RAM_LOC_TEXT.DeleteKey(1);
      },
      [this] {
        world.dialogs().ExpectColour().Cancel();
        main().form.MouseDown(RightPress());
      },
      [this] { main().RAM_LOC_TEXT.MouseDown(1, RightPress()); },
  };
  for (std::size_t i = 0; i < edits.size(); ++i) {
    edits[i]();
    EXPECT_EQ(Everything(), before) << i;
    EXPECT_EQ(Entries(), entries) << i;
  }
  EXPECT_EQ(entries, "&Undo move of Flow | &Redo move of Tank");
}

TEST_F(Undoing, ANewEditForgetsWhatWasUndone) {
  DragName(1, {2000, 3000});
  DragName(2, {2000, 6000});
  Undo();
  Undo();
  DragLabel(1, {100, 100});
  EXPECT_EQ(Entries(), "&Undo move of Boiler | [&Redo]");
  Undo();
  EXPECT_EQ(Entries(), "[&Undo] | &Redo move of Boiler");
  EXPECT_EQ(FileNow(), File());
}

// --- Strokes of the arrow keys ---

class UndoingArrows : public Undoing {
 protected:
  int UndosToTheStart() {
    int count = 0;
    while (main().mnuUndo.Enabled) {
      Undo();
      ++count;
    }
    return count;
  }
};

TEST_F(UndoingArrows, StrokesOnOneObjectAreOneEdit) {
  const std::string before = Everything();
  for (int i = 0; i < 5; ++i) main().RAM_LOC_TEXT.Arrow(1, kRight);
  main().RAM_LOC_TEXT.Arrow(1, kDown);
  const std::string after = Everything();
  Undo();
  EXPECT_EQ(Everything(), before);
  EXPECT_EQ(Entries(), "[&Undo] | &Redo move of Flow");
  Redo();
  EXPECT_EQ(Everything(), after);
}

TEST_F(UndoingArrows, StrokesOnDifferentObjectsAreDifferentEdits) {
  main().WCRChanged = false;
  OpenScreen({LocationLine("Flow", {1000, 600}, {4000, 640}),
              LocationLine("Flow", {1000, 5000}, {4000, 5040}), LabelLine("Flow", {500, 9000})});
  main().RAM_LOC_TEXT.Arrow(1, kRight);
  main().RAM_LOC_TEXT.Arrow(2, kRight);
  main().RAM_LOC_VAL.Arrow(2, kRight);
  main().lbl_TextInfo.Arrow(1, kRight);
  main().RAM_LOC_TEXT.Arrow(1, kRight);
  EXPECT_EQ(UndosToTheStart(), 5);
  EXPECT_EQ(FileNow(), File());
}

TEST_F(UndoingArrows, AnotherEditInBetweenPartsThem) {
  main().lbl_TextInfo.Arrow(1, kRight);
  DragLabel(1, {100, 100});
  main().lbl_TextInfo.Arrow(1, kRight);
  EXPECT_EQ(UndosToTheStart(), 3);
}

TEST_F(UndoingArrows, AnUndoInBetweenPartsThem) {
  main().lbl_TextInfo.Arrow(1, kRight);
  DragLabel(2, {100, 100});
  Undo();
  main().lbl_TextInfo.Arrow(1, kRight);
  EXPECT_EQ(Entries(), "&Undo move of Boiler | [&Redo]");
  Undo();
  Undo();
  EXPECT_EQ(FileNow(), File());
}

TEST_F(UndoingArrows, ASaveInBetweenPartsThem) {
  main().lbl_TextInfo.Arrow(1, kRight);
  Save();
  main().lbl_TextInfo.Arrow(1, kRight);
  EXPECT_TRUE(Changed());
  Undo();
  EXPECT_FALSE(Changed());
  EXPECT_EQ(FileNow(), File());
  EXPECT_EQ(PlaceOf(main().lbl_TextInfo(1)), "515,9000");
  Undo();
  EXPECT_TRUE(Changed());
  EXPECT_EQ(PlaceOf(main().lbl_TextInfo(1)), "500,9000");
}

// --- Another screen ---

TEST_F(Undoing, AnotherScreenForgetsEverything) {
  const auto two_edits = [this] {
    DragName(1, {2000, 3000});
    AddText();
    Undo();
    main().WCRChanged = false;
  };
  two_edits();
  Open(kScreen);
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
  two_edits();
  main().M_NewScreen.Press();
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
  AddText();
  EXPECT_TRUE(Changed());
  Undo();
  EXPECT_FALSE(Changed());
  OpenStart();
  two_edits();
  main().M_fileHist(0).Press();
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
  two_edits();
  OpenTextFails(62, "255\r\n\"L\",0");
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
}

TEST_F(Undoing, ACancelledOpenForgetsNothing) {
  DragName(1, {2000, 3000});
  main().WCRChanged = false;
  world.dialogs().ExpectOpenFile("Open").Cancel();
  main().M_fileopen.Press();
  EXPECT_EQ(Entries(), "&Undo move of Flow | [&Redo]");
}

// --- What the run shows ---

TEST_F(Undoing, ValuesAreNotRolledBack) {
  const std::vector<std::function<void()>> edits = {
      [this] {
        DragName(1, {2000, 3000});
      },
      [this] {
        DragValue(1, {2000, 3000});
      },
      [this] { DeleteLocation(1); }, [this] { ToggleSize(1); }, [this] { ToggleCheck(1); }};
  for (const auto& edit : edits) {
    OpenStart();
    main().RAM_LOC_VAL(1).Text = "1";
    main().Locations[1].RawValue = 1;
    edit();
    main().RAM_LOC_VAL(1).Text = "42";
    main().Locations[1].RawValue = 42;
    Undo();
    EXPECT_EQ(main().RAM_LOC_VAL(1).Text.get(), "42");
    EXPECT_EQ(main().Locations[1].RawValue, 42);
    main().RAM_LOC_VAL(1).Text = "43";
    main().Locations[1].RawValue = 43;
    Redo();
    EXPECT_EQ(main().RAM_LOC_VAL(1).Text.get(), "43");
    EXPECT_EQ(main().Locations[1].RawValue, 43);
  }
}

TEST_F(Undoing, ANewValueAloneIsNoEdit) {
  GrabValue(1);
  main().RAM_LOC_VAL(1).Text = "42";
  main().Locations[1].RawValue = 42;
  main().RAM_LOC_VAL.DragDrop(2);
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
  EXPECT_EQ(main().RAM_LOC_VAL(1).Text.get(), "42");
}

}  // namespace
}  // namespace tarnlink
