// The sniffer: listens on the link between another master and a slave, and sends nothing. It shows
// the values of the IDs that go by, each as an item of its own, and a running text of all frames.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "common/control_array.h"
#include "common/dialog_controls.h"
#include "tools/sniffer_frames.h"
#include "tools/sniffer_items.h"
#include "tools/sniffer_log.h"
#include "tools/sniffer_text.h"
#include "tools/tool_host.h"

namespace tarnlink {

// The part of the form that the items stand on. The view scrolls over it.
class ItemArea : public Control {
 public:
  using Control::Control;

  Property<float> ContentHeight{this, 0.0F};  // of all rows

  // Reported by the view, in units on the whole area: what is being dragged was let go, or the drag
  // ends without that; the area has another width.
  std::function<void(float X, float Y)> DragDrop;
  std::function<void()> DragCancel;
  std::function<void(float width)> Resized;

  // Set by the view: scrolls until the item is to be seen.
  std::function<void(int index)> BringIntoView;
};

// A text whose marked piece is state; an empty piece is the caret.
class MarkedText : public TextBox {
 public:
  using TextBox::TextBox;

  Property<TextPiece> Marked{this, TextPiece{}};
};

class frmSniffer {
 public:
  static constexpr const char* kNotFound = "Not found.";

  // `host` outlives the form.
  explicit frmSniffer(ToolHost& host);

  Control form{"frmSniffer"};
  Label caption{"frmSniffer.Caption", "Sniffer"};

  ItemArea Items{"Items"};
  ControlArray<TextBox> RAM_TEXT{"RAM_TEXT"};
  ControlArray<TextBox> RAM_ID{"RAM_ID"};
  ControlArray<TextBox> RAM_VALUE{"RAM_VALUE"};

  Label lbl_Detected{"lbl_Detected", "Detected IDs"};
  ListBox List_DetectedID{"List_DetectedID"};  // never shown
  ListBox List_DisplayDetectedID{"List_DisplayDetectedID"};

  MarkedText txt_Messages{"txt_Messages"};
  CommandButton Command1{"Command1", "Continue"};
  CommandButton Command2{"Command2", "Pause"};
  CommandButton cmd_Clear{"cmd_Clear", "Clear"};
  TextBox txt_Find{"txt_Find"};
  CommandButton cmd_Find{"cmd_Find", "Find next"};
  Label lbl_Find{"lbl_Find"};  // kNotFound, or nothing
  CheckBox LogCheck{"LogCheck", "Log to file"};
  Label lbl_Frames{"lbl_Frames"};      // "Frames: 12, bad: 1"
  Label lbl_Port{"lbl_Port"};          // why nothing is heard; empty while the port is open
  Label lbl_Revision{"lbl_Revision"};  // of the sniffer text file

  std::unique_ptr<SerialPort> Comm;
  std::unique_ptr<Timer> tim_Reopen;  // while the port cannot be had

  bool sniffing = true;  // the box follows the running text
  SniffLocations SniffItems;

  void Show();
  void Unload();
  std::function<void()> Unloaded;

  // Tells of a file that is missing or broken.
  void ReadIDItems();
  void InitSniffLocations();
  void CheckNameAndValueWithFile(const std::string& Id, std::int32_t Value, int Index);
  // One frame whose CRC is good.
  void ProcessSnifferMessage(std::string_view Raw);

  bool HasItem(int Index) const { return layout_.Has(Index); }
  // What the settings dialog has made of an item.
  void ChangeItem(int Index, const SniffLocation& item);
  void DeleteItem(int Index);
  // Gives an ID of the list an item, unless it has one; that is brought into view in any case.
  void PlaceDetected(int row);

  int frames() const { return frames_.count(); }
  int bad_frames() const { return frames_.bad(); }
  const std::string& running_text() const { return text_.get(); }

  std::function<void(int Index)> ShowSettings;
  std::function<void()> CloseSettings;

 private:
  struct Hold {
    int index = 0;
    float X = 0.0F;
    float Y = 0.0F;
  };

  void BindText();
  void BindItems();
  void Reset();

  bool OpenByOptions();
  bool OpenPort();
  void AwaitPort(const std::string& reason);
  void TellBusy();
  void OnComm(int event);
  void TakeInput();
  void ShowCounts();

  void Detect(const SniffedFrame& frame);
  // Its number, or 0 where there is no more room.
  int PlaceItem(const std::string& id, std::int32_t value);
  int NextFreeItem();
  int ItemOf(const std::string& id) const;
  bool IsOn(int index, const std::string& id) const;
  void ShowAnswer(const std::string& id, std::string_view raw);
  void ShowLastAnswer(int index);
  void SetText(ControlArray<TextBox>& boxes, int index, const std::string& text);
  void BringIntoView(int index);
  void TellFull();
  std::array<ControlArray<TextBox>*, 3> Boxes();
  void LayOut();
  void ShowItem(int Index, const std::string& name);

  void WriteText(const SniffedFrame& frame);
  void ShowText();
  void SetSniffing(bool on);
  void Find();
  std::optional<TextPiece> NextPlace() const;
  void LogClicked();
  void BeginLog();
  void WriteLog(const SniffedFrame& frame, Date now);

  ToolHost& host_;
  SnifferFile file_;
  SnifferLayout layout_;
  std::optional<Hold> hold_;  // of the item that is being dragged
  // By IDs in capital letters: a frame may have small ones.
  std::set<std::string> detected_;
  std::set<std::string> placed_;                     // that were given an item once
  std::map<std::string, std::string> last_answers_;  // the frames
  int last_item_ = 0;
  bool from_master_ = false;  // the last frame whose kind says it

  SnifferFrames frames_;

  RunningText text_;
  SnifferLog log_;
  std::optional<RunTimeError> log_failure_;  // to be told when the port event is over
  std::unique_ptr<Timer> tell_;
};

}  // namespace tarnlink
