// Everything that stops to ask the user. Each call is modal: timers and port events go on inside
// it. Real class: `QtDialogs`; fake: `FakeDialogs`.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "common/controls.h"

namespace tarnlink {

enum class Icon { kNone, kCritical, kQuestion, kExclamation, kInformation };
enum class Buttons { kOk, kOkCancel, kYesNo };
enum class Answer { kOk, kCancel, kYes, kNo };

struct MessageBoxRequest {
  std::string text;
  std::string title;
  Icon icon = Icon::kNone;
  Buttons buttons = Buttons::kOk;
  bool second_is_default = false;
  std::string detail = {};  // a reason or a way out, shown smaller below the text
};

struct FileDialogRequest {
  std::string title = {};
  std::string filter = {};  // "Text (*.txt)|*.txt": descriptions and patterns by turns
  std::string file_name = {};
  std::string folder = {};         // where the dialog opens; empty: where it last was
  std::string extension = {};      // added to a name that is typed without one, such as "wcr"
  bool confirm_overwrite = false;  // for saving
};

struct PageSetup {
  bool landscape = false;
};

class DrawingSurface;

struct PreviewRequest {
  std::string title = {};
  std::string file_name = {};  // proposed for the PDF file, with its path
  PageSetup setup = {};
  // Draws all pages, from the first, on the surface it is given. Called anew for each look at the
  // pages, at other page sizes too; it must draw the same each time. In any thread, while the
  // program goes on: it owns all that it uses.
  std::function<void(DrawingSurface&)> draw = {};
  // Told in the caller's thread before and after that, where there is somebody to be told.
  std::function<void(bool is_drawing)> drawing = {};
};

class Dialogs {
 public:
  virtual ~Dialogs() = default;

  // Closing the box without a button is Cancel, also where there is no such button, but Ok where
  // there is nothing else.
  virtual Answer MessageBox(const MessageBoxRequest& request) = 0;

  // In all of these an empty result is the user's cancel.
  virtual std::optional<std::string> InputBox(const std::string& prompt, const std::string& title,
                                              const std::string& text) = 0;
  virtual std::optional<std::string> OpenFile(const FileDialogRequest& request) = 0;
  virtual std::optional<std::string> SaveFile(const FileDialogRequest& request) = 0;
  virtual std::optional<std::string> PickFolder(const std::string& title,
                                                const std::string& folder) = 0;
  virtual std::optional<Colour> PickColour(Colour colour) = 0;
  virtual std::optional<Font> PickFont(const Font& font) = 0;
  // The printer is chosen inside and kept for the page that is printed next.
  virtual std::optional<PageSetup> PickPrinter(const PageSetup& setup) = 0;

  // Shows pages as they would come out of the printer, with the ways to print them and to keep them
  // as a PDF file, until the user closes it. What goes wrong there is told there.
  virtual void Preview(const PreviewRequest& request) = 0;
};

}  // namespace tarnlink
