// Whether the screen counts as changed after edits, saves, undo and redo.

#include <gtest/gtest.h>

#include "form/undo_fixture.h"

namespace tarnlink {
namespace {

TEST_F(Undoing, BackAtTheFileTheScreenIsUnchanged) {
  DragName(1, {2000, 3000});
  AddText();
  EXPECT_TRUE(Changed());
  Undo();
  EXPECT_TRUE(Changed());
  Undo();
  EXPECT_FALSE(Changed());
  Redo();
  EXPECT_TRUE(Changed());
}

TEST_F(Undoing, PastTheSavedPlaceTheScreenIsChanged) {
  DragName(1, {2000, 3000});
  AddText();
  Save();
  EXPECT_FALSE(Changed());
  Undo();
  EXPECT_TRUE(Changed());
  Undo();
  EXPECT_TRUE(Changed());
  Redo();
  EXPECT_TRUE(Changed());
  Redo();
  EXPECT_FALSE(Changed());
  EXPECT_EQ(FileNow(), File());
}

TEST_F(Undoing, ASaveInTheMiddleIsThePlaceThatCounts) {
  DragName(1, {2000, 3000});
  Save();
  AddText();
  Undo();
  EXPECT_FALSE(Changed());
  Undo();
  EXPECT_TRUE(Changed());
  Save();
  EXPECT_FALSE(Changed());
  Redo();
  EXPECT_TRUE(Changed());
  Undo();
  EXPECT_FALSE(Changed());
  EXPECT_EQ(FileNow(), File());
}

TEST_F(Undoing, ASavedPlaceThatCannotBeReachedAnyMoreLeavesTheScreenChanged) {
  DragName(1, {2000, 3000});
  Save();
  Undo();
  DragLabel(1, {100, 100});
  EXPECT_TRUE(Changed());
  Undo();
  EXPECT_TRUE(Changed());
  Redo();
  EXPECT_TRUE(Changed());
  Save();
  EXPECT_FALSE(Changed());
  Undo();
  EXPECT_TRUE(Changed());
}

TEST_F(Undoing, AfterASaveUnderAnotherNameItIsThatFileThatCounts) {
  DragName(1, {2000, 3000});
  world.dialogs().ExpectSaveFile("Save As").Give("/home/user/Documents/other.wcr");
  ExpectAddToProject().Press(Answer::kNo);
  SaveAs();
  Undo();
  EXPECT_TRUE(Changed());
  EXPECT_EQ(Title(), "TarnLink - other.wcr *");
  Redo();
  EXPECT_EQ(Title(), "TarnLink - other.wcr");
}

TEST_F(Undoing, ASaveThatFailedDoesNotCount) {
  DragName(1, {2000, 3000});
  world.disk().SetFreeSpace(0);
  ExpectSaveFailure(61);
  Save();
  EXPECT_TRUE(Changed());
  Undo();
  EXPECT_FALSE(Changed());
  Redo();
  EXPECT_TRUE(Changed());
}

TEST_F(Undoing, WhatDoesNotChangeTheFileDoesNotCountOnTheWay) {
  ToggleSize(1);
  ToggleCheck(1);
  EXPECT_FALSE(Changed());
  Undo();
  EXPECT_FALSE(Changed());
  Undo();
  EXPECT_FALSE(Changed());
  Redo();
  DragLabel(1, {100, 100});
  Undo();
  EXPECT_FALSE(Changed());
  Undo();
  EXPECT_FALSE(Changed());
}

TEST_F(Undoing, WhatTheFileHoldsCountsWhenItIsUndoneAfterASave) {
  ToggleCheck(1);
  Save();
  Undo();
  EXPECT_TRUE(Changed());
  Redo();
  EXPECT_FALSE(Changed());
}

TEST_F(Undoing, AValueBoxThatAClickMovedCountsWhenItIsUndoneAfterASave) {
  GrabName(1);
  Drop(main().RAM_LOC_TEXT(1).Left, main().RAM_LOC_TEXT(1).Top);
  ASSERT_TRUE(main().mnuUndo.Enabled);
  EXPECT_FALSE(Changed());
  Save();
  Undo();
  EXPECT_TRUE(Changed());
}

TEST_F(Undoing, ASaveUnderAnotherNameThatFailedLeavesNoPlaceThatIsSaved) {
  DragLabel(1, {100, 100});
  Undo();
  ASSERT_FALSE(Changed());
  world.dialogs().ExpectSaveFile("Save As").Give("/home/user/Documents");
  ExpectSaveFailure(57, "/home/user/Documents");
  SaveAs();
  EXPECT_TRUE(Changed());
  Redo();
  Undo();
  EXPECT_TRUE(Changed());
}

TEST_F(Undoing, APressOnALabelChangesTheScreenWithoutAnEntry) {
  GrabLabel(1);
  Drop(500, 9000);
  EXPECT_TRUE(Changed());
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
}

TEST_F(Undoing, AnEmptyScreenThatBeginsAnewIsStillAChangedOne) {
  main().WCRChanged = false;
  OpenScreen({});
  ColourForm(0x123456);
  ASSERT_TRUE(Changed());
  ShowOptions();
  Ok();
  EXPECT_EQ(Entries(), "[&Undo] | [&Redo]");
  AddText();
  Undo();
  EXPECT_TRUE(Changed());
  EXPECT_EQ(main().form.BackColor.get(), 0x123456);
}

}  // namespace
}  // namespace tarnlink
