#include "support/fake_dialogs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "common/numbers.h"
#include "common/text.h"

namespace tarnlink {
namespace {

std::string IconName(Icon icon) {
  switch (icon) {
    case Icon::kCritical:
      return "critical";
    case Icon::kQuestion:
      return "question";
    case Icon::kExclamation:
      return "exclamation";
    case Icon::kInformation:
      return "information";
    case Icon::kNone:
      break;
  }
  return "plain";
}

std::string ButtonNames(Buttons buttons, bool second_is_default) {
  switch (buttons) {
    case Buttons::kOkCancel:
      return second_is_default ? "OK, Cancel*" : "OK*, Cancel";
    case Buttons::kYesNo:
      return second_is_default ? "Yes, No*" : "Yes*, No";
    case Buttons::kOk:
      break;
  }
  return "OK";
}

bool Offers(Buttons buttons, Answer answer) {
  switch (buttons) {
    case Buttons::kOkCancel:
      return answer == Answer::kOk || answer == Answer::kCancel;
    case Buttons::kYesNo:
      return answer == Answer::kYes || answer == Answer::kNo;
    case Buttons::kOk:
      break;
  }
  return answer == Answer::kOk;
}

Answer WhenClosed(Buttons buttons) {
  return buttons == Buttons::kOk ? Answer::kOk : Answer::kCancel;
}

std::string ShortBox(const std::string& text, const std::string& title) {
  return "box [" + title + "] " + text;
}

std::string WholeBox(const MessageBoxRequest& request) {
  return IconName(request.icon) + " " + ShortBox(request.text, request.title) + " (" +
         ButtonNames(request.buttons, request.second_is_default) + ")";
}

std::string WithDetail(const MessageBoxRequest& request) {
  return WholeBox(request) + (request.detail.empty() ? "" : " | " + request.detail);
}

}  // namespace

ScriptedDialog& FakeDialogs::Expect(std::string expected) {
  return script_.emplace_back(std::move(expected));
}

ScriptedDialog& FakeDialogs::ExpectMessageBox(const MessageBoxRequest& request) {
  return Expect(WithDetail(request));
}

ScriptedDialog& FakeDialogs::ExpectMessageBox(const std::string& text, const std::string& title) {
  return Expect(ShortBox(text, title));
}

ScriptedDialog& FakeDialogs::ExpectInputBox(const std::string& prompt, const std::string& title) {
  return Expect("input box [" + title + "] " + prompt);
}

ScriptedDialog& FakeDialogs::ExpectOpenFile(const std::string& title) {
  return Expect("open file [" + title + "]");
}

ScriptedDialog& FakeDialogs::ExpectSaveFile(const std::string& title) {
  return Expect("save file [" + title + "]");
}

ScriptedDialog& FakeDialogs::ExpectFolder(const std::string& title) {
  return Expect("folder [" + title + "]");
}

ScriptedDialog& FakeDialogs::ExpectColour() { return Expect("colour"); }
ScriptedDialog& FakeDialogs::ExpectFont() { return Expect("font"); }
ScriptedDialog& FakeDialogs::ExpectPrinter() { return Expect("printer"); }

ScriptedDialog& FakeDialogs::ExpectPreview(const std::string& title) {
  return Expect("preview [" + title + "]");
}

void FakeDialogs::Verify() {
  for (const ScriptedDialog& dialog : std::exchange(script_, {})) {
    ADD_FAILURE() << "The expected dialog never came: " << dialog.expected_;
  }
}

std::vector<std::string> FakeDialogs::TakeShown() { return std::exchange(shown_, {}); }

ScriptedDialog::Reply FakeDialogs::Show(const std::string& shown,
                                        const std::vector<std::string>& names) {
  shown_.push_back(shown);
  if (script_.empty() && !user) {
    ADD_FAILURE() << "Unexpected dialog: " << shown;
    return {};
  }
  if (script_.empty()) return ShowFor(user(shown));
  const ScriptedDialog dialog = std::move(script_.front());
  script_.pop_front();
  if (std::find(names.begin(), names.end(), dialog.expected_) == names.end()) {
    ADD_FAILURE() << "Expected dialog: " << dialog.expected_ << "\n  Dialog that came: " << shown;
    return {};
  }
  return ShowFor(dialog);
}

ScriptedDialog::Reply FakeDialogs::ShowFor(const ScriptedDialog& dialog) {
  ++up_;
  if (dialog.action_) dialog.action_();
  time_.Advance(dialog.span_);
  --up_;
  return dialog.reply_;
}

template <class T>
std::optional<T> FakeDialogs::Ask(const std::string& shown, const std::vector<std::string>& names) {
  const ScriptedDialog::Reply reply = Show(shown, names);
  if (std::holds_alternative<T>(reply)) return std::get<T>(reply);
  if (!std::holds_alternative<std::monostate>(reply)) {
    ADD_FAILURE() << "The script's answer does not fit this dialog: " << shown;
  }
  return std::nullopt;
}

Answer FakeDialogs::MessageBox(const MessageBoxRequest& request) {
  const auto answer = Ask<Answer>(WithDetail(request), {WithDetail(request), WholeBox(request),
                                                        ShortBox(request.text, request.title)});
  if (!answer) return WhenClosed(request.buttons);
  if (!Offers(request.buttons, *answer)) {
    ADD_FAILURE() << "The script presses a button that is not there: " << WholeBox(request);
    return WhenClosed(request.buttons);
  }
  return *answer;
}

std::optional<std::string> FakeDialogs::InputBox(const std::string& prompt,
                                                 const std::string& title,
                                                 const std::string& text) {
  last_input_text_ = text;
  const std::string name = "input box [" + title + "] " + prompt;
  return Ask<std::string>(name + " (" + text + ")", {name});
}

std::optional<std::string> FakeDialogs::OpenFile(const FileDialogRequest& request) {
  last_file_request_ = request;
  const std::string name = "open file [" + request.title + "]";
  return Ask<std::string>(name + " " + request.filter, {name});
}

std::optional<std::string> FakeDialogs::SaveFile(const FileDialogRequest& request) {
  last_file_request_ = request;
  const std::string name = "save file [" + request.title + "]";
  return Ask<std::string>(name + " " + request.filter, {name});
}

std::optional<std::string> FakeDialogs::PickFolder(const std::string& title,
                                                   const std::string& folder) {
  last_folder_ = folder;
  const std::string name = "folder [" + title + "]";
  return Ask<std::string>(name, {name});
}

std::optional<Colour> FakeDialogs::PickColour(Colour colour) {
  constexpr int kDigits = 6;
  return Ask<Colour>("colour " + Stuff(Hex32(colour), kDigits), {"colour"});
}

std::optional<Font> FakeDialogs::PickFont(const Font&) { return Ask<Font>("font", {"font"}); }

std::optional<PageSetup> FakeDialogs::PickPrinter(const PageSetup&) {
  return Ask<PageSetup>("printer", {"printer"});
}

void FakeDialogs::Preview(const PreviewRequest& request) {
  const auto draw = [&request] {
    const auto page = MakeA4Page(request.setup.landscape);
    if (request.drawing) request.drawing(true);
    request.draw(*page);
    if (request.drawing) request.drawing(false);
    return page->operations();
  };
  last_preview_request_ = request;
  last_preview_ = draw();
  const std::string name = "preview [" + request.title + "]";
  Ask<std::monostate>(name, {name});
  // As printing does, after however long a look.
  if (draw() != last_preview_) ADD_FAILURE() << "The pages are drawn differently again: " << name;
}

}  // namespace tarnlink
