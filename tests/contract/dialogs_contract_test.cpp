#include <gtest/gtest.h>

#include <fstream>

#include "contract/dialogs_benches.h"
#include "support/temporary_folder.h"

namespace tarnlink {
namespace {

template <class Bench>
class DialogsContract : public testing::Test {
 protected:
  static MessageBoxRequest Box(Buttons buttons, bool second_is_default = false) {
    return {"Text", "Title", Icon::kExclamation, buttons, second_is_default};
  }
  Dialogs& dialogs() { return user.dialogs(); }

  Bench user;
};

using Benches = testing::Types<FakeUser, QtUser>;
TYPED_TEST_SUITE(DialogsContract, Benches, BenchNames);

TYPED_TEST(DialogsContract, AMessageBoxGivesTheButtonThatWasPressed) {
  const std::vector<std::pair<Buttons, Answer>> cases{{Buttons::kOk, Answer::kOk},
                                                      {Buttons::kOkCancel, Answer::kOk},
                                                      {Buttons::kOkCancel, Answer::kCancel},
                                                      {Buttons::kYesNo, Answer::kYes},
                                                      {Buttons::kYesNo, Answer::kNo}};
  for (const auto& [buttons, answer] : cases) {
    for (const bool second_is_default : {false, true}) {
      const MessageBoxRequest box = this->Box(buttons, second_is_default);
      this->user.Presses(box, answer);
      EXPECT_EQ(this->dialogs().MessageBox(box), answer);
    }
  }
}

TYPED_TEST(DialogsContract, ClosingAMessageBoxIsCancelOrOk) {
  const std::vector<std::pair<Buttons, Answer>> cases{{Buttons::kOk, Answer::kOk},
                                                      {Buttons::kOkCancel, Answer::kCancel},
                                                      {Buttons::kYesNo, Answer::kCancel}};
  for (const auto& [buttons, answer] : cases) {
    this->user.Closes(this->Box(buttons));
    EXPECT_EQ(this->dialogs().MessageBox(this->Box(buttons)), answer);
  }
}

TYPED_TEST(DialogsContract, TimersGoOnInsideAMessageBox) {
  int ticks = 0;
  const auto timer = this->user.MakeTimer();
  timer->SetInterval(5);
  timer->SetOnTimer([&] { ++ticks; });
  timer->SetEnabled(true);
  this->user.WaitsIn(this->Box(Buttons::kOk), [&] { return ticks >= 3; });
  this->dialogs().MessageBox(this->Box(Buttons::kOk));
  EXPECT_GE(ticks, 3);
}

TYPED_TEST(DialogsContract, AMessageBoxMayOpenInsideAnother) {
  const MessageBoxRequest outer = this->Box(Buttons::kYesNo);
  MessageBoxRequest inner = this->Box(Buttons::kOkCancel);
  inner.text = "Inside";
  Answer inside = Answer::kYes;
  this->user.Opens(outer, [&] {
    this->user.Presses(inner, Answer::kCancel);
    inside = this->dialogs().MessageBox(inner);
  });
  EXPECT_EQ(this->dialogs().MessageBox(outer), Answer::kCancel);
  EXPECT_EQ(inside, Answer::kCancel);
}

TYPED_TEST(DialogsContract, AnInputBoxGivesWhatWasTyped) {
  for (const char* text : {"new", "", " blanks ", "Größe"}) {
    this->user.Types("Prompt", "Title", text);
    EXPECT_EQ(this->dialogs().InputBox("Prompt", "Title", "old"), text);
  }
}

TYPED_TEST(DialogsContract, LeavingADialogGivesNothing) {
  this->user.LeavesInputBox("Prompt", "Title");
  EXPECT_EQ(this->dialogs().InputBox("Prompt", "Title", "old"), std::nullopt);
  FileDialogRequest request;
  request.title = "Title";
  this->user.LeavesOpenFile();
  EXPECT_EQ(this->dialogs().OpenFile(request), std::nullopt);
  this->user.LeavesSaveFile();
  EXPECT_EQ(this->dialogs().SaveFile(request), std::nullopt);
  this->user.LeavesFolder();
  EXPECT_EQ(this->dialogs().PickFolder("Title", ""), std::nullopt);
  this->user.LeavesColour();
  EXPECT_EQ(this->dialogs().PickColour(kBlack), std::nullopt);
  this->user.LeavesFont();
  EXPECT_EQ(this->dialogs().PickFont({}), std::nullopt);
  this->user.LeavesPrinter();
  EXPECT_FALSE(this->dialogs().PickPrinter({}).has_value());
}

TYPED_TEST(DialogsContract, FileDialogsGiveTheWholePath) {
  const TemporaryFolder folder;
  std::ofstream(folder / "there.wcr") << "x";
  FileDialogRequest request;
  request.title = "Title";
  request.filter = "Screen (*.wcr)|*.wcr";
  request.folder = folder.path();
  this->user.OpensFile(folder / "there.wcr");
  EXPECT_EQ(this->dialogs().OpenFile(request), folder / "there.wcr");
  this->user.SavesFile(folder / "new.wcr");
  EXPECT_EQ(this->dialogs().SaveFile(request), folder / "new.wcr");
  this->user.SavesFile(folder / "there.wcr");
  EXPECT_EQ(this->dialogs().SaveFile(request), folder / "there.wcr") << "without asking";
  this->user.PicksFolder(folder.path());
  EXPECT_EQ(this->dialogs().PickFolder("Title", "/"), folder.path());
}

TYPED_TEST(DialogsContract, PickersGiveWhatWasPicked) {
  this->user.PicksColour(0x123456);
  EXPECT_EQ(this->dialogs().PickColour(kWhite), 0x123456);
  this->user.PicksPrinter(true);
  EXPECT_TRUE(this->dialogs().PickPrinter({false})->landscape);
  this->user.PicksPrinter(false);
  EXPECT_FALSE(this->dialogs().PickPrinter({true})->landscape);
}

TYPED_TEST(DialogsContract, TheFontPickerGivesSizeAndStyle) {
  const Font font{"Sans Serif", 14, true, false};
  this->user.PicksFont(font);
  const std::optional<Font> picked = this->dialogs().PickFont({});
  ASSERT_TRUE(picked.has_value());
  EXPECT_EQ(picked->size, 14.0F);
  EXPECT_TRUE(picked->bold);
  EXPECT_FALSE(picked->italic);
}

TYPED_TEST(DialogsContract, APreviewDrawsItsPagesInTheOrientationAskedForUntilItIsClosed) {
  for (const bool landscape : {false, true}) {
    int drawn = 0;
    int looked = 0;
    PreviewRequest request;
    request.title = "Title";
    request.setup = {landscape};
    request.draw = [&](DrawingSurface& page) {
      ++drawn;
      EXPECT_EQ(page.ScaleWidth() > page.ScaleHeight(), landscape);
      EXPECT_GT(page.ScaleWidth(), 7 * 1440.0F) << "a common sheet, in units of 1440 to the inch";
      EXPECT_LT(page.TwipsPerPixelX(), 5.0F) << "paper is finer than a screen";
      page.Text({0, 0}, "first", kBlack);
      page.NewPage();
      page.Text({0, 0}, "second", kBlack);
    };
    this->user.LooksAtPreview([&] {
      EXPECT_GT(drawn, 0);
      ++looked;
    });
    this->dialogs().Preview(request);
    EXPECT_EQ(looked, 1);
  }
}

}  // namespace
}  // namespace tarnlink
