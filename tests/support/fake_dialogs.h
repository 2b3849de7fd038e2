// A user who answers dialogs as a test has written down beforehand, in that order. A dialog that
// nobody expected fails the test, and so does an expected one that never came.
#pragma once

#include <functional>
#include <list>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/dialogs.h"
#include "support/recording_surface.h"
#include "support/virtual_time.h"

namespace tarnlink {

// One expected dialog and what the user does in it. Without an answer an OK box is confirmed and
// every other dialog is closed.
class ScriptedDialog {
 public:
  explicit ScriptedDialog(std::string expected) : expected_(std::move(expected)) {}

  ScriptedDialog& Press(Answer button) { return Set(button); }
  // What is typed into an input box or chosen as a file or folder.
  ScriptedDialog& Give(std::string text) { return Set(std::move(text)); }
  ScriptedDialog& GiveColour(Colour colour) { return Set(colour); }
  ScriptedDialog& GiveFont(Font font) { return Set(std::move(font)); }
  ScriptedDialog& GivePage(PageSetup setup) { return Set(setup); }
  ScriptedDialog& Cancel() { return Set(std::monostate{}); }

  // The dialog stays on the screen for this long: timers and port events go on.
  ScriptedDialog& For(Micros span) {
    span_ = span;
    return *this;
  }
  // Runs while the dialog is up, before `For`.
  ScriptedDialog& While(std::function<void()> action) {
    action_ = std::move(action);
    return *this;
  }

 private:
  friend class FakeDialogs;
  using Reply = std::variant<std::monostate, Answer, std::string, Colour, Font, PageSetup>;
  ScriptedDialog& Set(Reply reply) {
    reply_ = std::move(reply);
    return *this;
  }

  std::string expected_;
  Reply reply_;
  Micros span_{};
  std::function<void()> action_;
};

class FakeDialogs final : public Dialogs {
 public:
  explicit FakeDialogs(VirtualTime& time) : time_(time) {}
  ~FakeDialogs() override { Verify(); }

  // The whole box must agree, but for a detail that the expectation leaves empty.
  ScriptedDialog& ExpectMessageBox(const MessageBoxRequest& request);
  // Only text and title must agree.
  ScriptedDialog& ExpectMessageBox(const std::string& text, const std::string& title);
  ScriptedDialog& ExpectInputBox(const std::string& prompt, const std::string& title);
  // The dialogs without a text are told apart by their titles.
  ScriptedDialog& ExpectOpenFile(const std::string& title = {});
  ScriptedDialog& ExpectSaveFile(const std::string& title = {});
  ScriptedDialog& ExpectFolder(const std::string& title = {});
  ScriptedDialog& ExpectColour();
  ScriptedDialog& ExpectFont();
  ScriptedDialog& ExpectPrinter();
  ScriptedDialog& ExpectPreview(const std::string& title);

  // A user who needs no script: answers whatever the script does not expect. Gets the line that
  // stands in `shown()`.
  std::function<ScriptedDialog(const std::string& shown)> user;

  // Fails the test for each expected dialog that has not come; done at the end by itself.
  void Verify();

  // The dialogs that were shown, one line each, such as
  // "critical box [Message Timeout] Slave is not responding (OK)".
  const std::vector<std::string>& shown() const { return shown_; }
  std::vector<std::string> TakeShown();
  // How many are on the screen now, one inside the other.
  int up() const { return up_; }

  // What the last of each kind was asked with.
  const FileDialogRequest& last_file_request() const { return last_file_request_; }
  const std::string& last_input_text() const { return last_input_text_; }
  const std::string& last_folder() const { return last_folder_; }
  const PreviewRequest& last_preview_request() const { return last_preview_request_; }
  // What the last preview showed, drawn on sheets of A4; there already while it is up.
  const RecordingSurface::Log& last_preview() const { return last_preview_; }

  Answer MessageBox(const MessageBoxRequest& request) override;
  std::optional<std::string> InputBox(const std::string& prompt, const std::string& title,
                                      const std::string& text) override;
  std::optional<std::string> OpenFile(const FileDialogRequest& request) override;
  std::optional<std::string> SaveFile(const FileDialogRequest& request) override;
  std::optional<std::string> PickFolder(const std::string& title,
                                        const std::string& folder) override;
  std::optional<Colour> PickColour(Colour colour) override;
  std::optional<Font> PickFont(const Font& font) override;
  std::optional<PageSetup> PickPrinter(const PageSetup& setup) override;
  void Preview(const PreviewRequest& request) override;

 private:
  ScriptedDialog& Expect(std::string expected);
  // Any of `names` is what the script may have written for this dialog.
  ScriptedDialog::Reply Show(const std::string& shown, const std::vector<std::string>& names);
  ScriptedDialog::Reply ShowFor(const ScriptedDialog& dialog);
  template <class T>
  std::optional<T> Ask(const std::string& shown, const std::vector<std::string>& names);

  VirtualTime& time_;
  std::list<ScriptedDialog> script_;
  std::vector<std::string> shown_;
  int up_ = 0;
  FileDialogRequest last_file_request_;
  std::string last_input_text_;
  std::string last_folder_;
  PreviewRequest last_preview_request_;
  RecordingSurface::Log last_preview_;
};

}  // namespace tarnlink
