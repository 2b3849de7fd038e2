// The main form as state: its menus, tool bar, status bar, screen, port and timers, and the fields
// that all parts of the monitor share. What happens on it stands in the units beside this one:
// the run in communication_run, the screen in screen_commands, start and leave in start_and_leave.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "common/control_array.h"
#include "common/controls.h"
#include "files/project_tree.h"
#include "monitor/location_table.h"
#include "monitor/read_values.h"
#include "platform/platform.h"
#include "protocols/protocol_run.h"

namespace tarnlink {

inline constexpr std::string_view kProgramTitle = "TarnLink";
inline constexpr std::string_view kQuestionTitle = "TarnLink2";
inline constexpr std::string_view kFreeHistoryEntry = "<Free>";
inline constexpr int kHistoryLength = 4;
inline constexpr Colour kNewScreenColour = 0xFF8080;
inline constexpr Colour kBlockColour = 0xFFFF00;  // Locations of a Modbus register block
// A check box stands this far under its name box's top, and this far left of the box.
inline constexpr float kCheckDrop = 50.0F;
inline constexpr float kCheckGap = 50.0F;

enum class WindowState { kNormal, kMinimized, kMaximized };

// What a file dialog of a form remembers between two uses.
struct CommonDialog {
  std::string InitDir;
  std::string FileName;
};

// A place on the form, in units of 1440 to the inch.
struct FormPlace {
  float Left = 0.0F;
  float Top = 0.0F;

  bool operator==(const FormPlace&) const = default;
};

// The window itself: place and size in units of 1440 to the inch.
class Window : public Control {
 public:
  using Control::Control;

  Property<std::string> Caption{this, {}};
  Property<Colour> BackColor{this, kNewScreenColour};
  Property<float> Left{this, 0.0F};
  Property<float> Top{this, 0.0F};
  Property<float> Width{this, 0.0F};
  Property<float> Height{this, 0.0F};
  Property<WindowState> State{this, WindowState::kNormal};
  // Off while a whole screen is replaced, so that it appears at once.
  Property<bool> Painting{this, true};

  // What the user does on the form's free area, reported by the view; X and Y are units on the
  // form.
  std::function<void(const MousePress&)> MouseDown;
  std::function<void(float X, float Y)> DragDrop;
  // The drag ends without a drop: everything is as it was before it.
  std::function<void()> DragCancel;
  // Where a drop at (X, Y) would put the box that is being dragged.
  std::function<FormPlace(float X, float Y)> DropPlace;
  // Brings a control into sight and gives it the keyboard; the view hooks in here.
  std::function<void(const PlacedControl&)> SetFocus;
  // One file was dropped from the desktop.
  std::function<void(const std::string& path)> FileDropped;
};

class frm_Main : public RunFields {
 public:
  explicit frm_Main(Platform& platform);

  Platform& platform() const { return platform_; }

  Window form{"frm_Main"};

  FixedArray<MenuEntry> Toolbar1{"Toolbar1",
                                 1,
                                 {"Add Location", "Start Communication", "Stop Communication",
                                  "Add Text", "Project Window", "Refresh Screen"}};
  FixedArray<StatusPanel> StatusBar1{
      "StatusBar1",
      1,
      {"Communication Parameters", "Number of locations on screen.", "Activated Protocol",
       "Communication Status", "Location which is read", "Remote Connection"}};

  MenuEntry M_file{"M_file", "&File"};
  MenuEntry M_fileopen{"M_fileopen", "Open Tarnlink File"};
  FixedArray<MenuEntry> M_filesave{
      "M_filesave", 0, {"Save Tarnlink File", "Save Tarnlink File as"}};
  MenuEntry M_NewScreen{"M_NewScreen", "New Screen"};
  MenuEntry mnuPrint{"mnuPrint", "Print Screen"};
  MenuEntry mnuPrintToFile{"mnuPrintToFile", "Export to DOC"};
  MenuEntry M_options{"M_options", "Options"};
  FixedArray<MenuEntry> M_fileHist{"M_fileHist", 0, FreeHistory()};
  FixedArray<MenuEntry> M_fileHistPrj{"M_fileHistPrj", 0, FreeHistory()};
  MenuEntry M_exit{"M_exit", "E&xit"};

  MenuEntry M_edit{"M_edit", "&Edit"};
  MenuEntry mnuUndo{"mnuUndo", "&Undo"};
  MenuEntry mnuRedo{"mnuRedo", "&Redo"};

  MenuEntry M_view{"M_view", "&View"};
  MenuEntry mnuLinkHealth{"mnuLinkHealth", "Link &Health"};
  MenuEntry mnuLinkTrace{"mnuLinkTrace", "Link &Trace"};

  MenuEntry M_Tools{"M_Tools", "&Tools"};
  MenuEntry M_Graphics{"M_Graphics", "Graphics"};
  MenuEntry M_ControlPanel{"M_ControlPanel", "Control Panel"};
  MenuEntry mnuScanSlaves{"mnuScanSlaves", "Scan Slaves"};
  MenuEntry mnuWPConversion{"mnuWPConversion", "WP conversion"};
  MenuEntry mnuSniffer{"mnuSniffer", "Sniffer"};
  MenuEntry mnuCfgCheck{"mnuCfgCheck", "Configuration Check"};
  MenuEntry mnuLoadParameters{"mnuLoadParameters", "Load Parameters"};
  MenuEntry mnuGenParaFile{"mnuGenParaFile", "Gen Parameter File"};
  MenuEntry M_EE_DOWN{"M_EE_DOWN", "EEPROM Download"};
  MenuEntry M_EEPROM{"M_EEPROM", "PROM Programmer"};
  MenuEntry M_errgen{"M_errgen", "Error Generator"};

  MenuEntry mnuProject{"mnuProject", "&Project"};
  MenuEntry mnuNewProject{"mnuNewProject", "New Project"};
  MenuEntry mnuOpenProject{"mnuOpenProject", "Open Project"};
  MenuEntry mnuSaveProject{"mnuSaveProject", "Save Project"};
  MenuEntry mnuAddTarnLinkFile{"mnuAddTarnLinkFile", "Add Tarnlink File"};
  MenuEntry mnuAddParameterFile{"mnuAddParameterFile", "Add Parameter File"};
  MenuEntry mnuAddGraphFile{"mnuAddGraphFile", "Add Graphic File"};
  MenuEntry mnuAddErrorDiscr{"mnuAddErrorDiscr", "Add Error Description"};
  MenuEntry mnuAddIDFile{"mnuAddIDFile", "Add ID Description"};
  MenuEntry mnuAddNecMap{"mnuAddNecMap", "Add Memory Map"};
  MenuEntry mnuRefresh{"mnuRefresh", "Refresh Memory Map"};
  MenuEntry mnuViewProjectWindow{"mnuViewProjectWindow", "Project Window"};

  MenuEntry M_Help{"M_Help", "&Help"};
  MenuEntry M_HelpTopics{"M_HelpTopics", "Help Topics"};
  MenuEntry M_About{"M_About", "About"};

  // The project window. Its view reports what the user does to a node, by its key, and the files
  // that are dropped on it.
  Control sstProject{"sstProject"};
  ProjectTree trvProject;
  std::function<void(const std::string& key)> trvProject_DblClick;
  std::function<void(const std::string& key)> trvProject_DeleteKey;
  std::function<void(const std::vector<std::string>& paths)> trvProject_FilesDropped;

  // What the readers of names have to say, each in a line of its own; hidden while it is empty.
  Label lbl_MapNotice{"lbl_MapNotice"};
  Label lbl_IdNotice{"lbl_IdNotice"};

  // The screen. Member 0 of each array is the template.
  ControlArray<TextBox> RAM_LOC_TEXT{"RAM_LOC_TEXT"};
  ControlArray<TextBox> RAM_LOC_VAL{"RAM_LOC_VAL"};
  ControlArray<CheckBox> RAM_LOC_CHECK{"RAM_LOC_CHECK"};
  ControlArray<Label> lbl_TextInfo{"lbl_TextInfo"};
  int TextInfoCount = 0;
  LocationTable Locations;

  // The drag that is under way: where the box was grabbed, the Location whose name box it is (0 for
  // any other box), and the box itself, which is hidden meanwhile (null without a drag).
  float DragX = 0.0F;
  float DragY = 0.0F;
  int DragIndex = 0;
  PlacedControl* DragSource = nullptr;

  // What the boxes show of the controller, and not of the user.
  ReadValues Reads;

  bool WCRChanged = false;
  bool ProjectChanged = false;
  std::string CurrentTarnLinkFile;
  std::string CurrentProjectFile;  // empty for a project that has no file yet
  std::string ParameterFile;
  std::string GraphicFile;
  std::int16_t MicroType = 0;  // 0 ATMega, 1 XMega, 2 NEC, 3 Renesas
  bool FirstLoad = false;
  int SelectedLocation = 0;

  CommonDialog WcrCmnDlg;
  CommonDialog PrjCmnDlg;
  CommonDialog ParCmnDlg;
  CommonDialog GrpCmnDlg;
  CommonDialog MssCmnDlg;

  const std::unique_ptr<SerialPort> Comm;
  const std::unique_ptr<Timer> Comm_Timer;
  const std::unique_ptr<Timer> tmr_noresponse;
  const std::unique_ptr<Timer> tmr_MsgTimeout;

  // The look of a new screen. A screen that holds labels or has a file keeps its own.
  void InitForm();
  void InitLocations();

  // The window's caption: program, screen file, and a mark while the screen differs from it.
  void ShowTitle();
  void ShowLocationCount();
  // The screen differs from its file from now on, and the caption says so.
  void MarkChanged();
  // Whether Location `index` is on the screen: it has been made and not deleted.
  bool IsShown(int index) const { return RAM_LOC_TEXT.Has(index) && RAM_LOC_TEXT(index).Visible; }

  // Shows a line of the readers of names; without a text the line is gone.
  static void ShowNotice(Label& line, const std::string& text);

  // Tells the user, once, that the settings could not be written.
  void TellStoreFailure();

  // Enters a file at the top of a history; a file that is in it already moves up.
  void LoadShortCuts(const std::string& FileName);
  void LoadShortCutsPrj(const std::string& FileName);

  // What a change of the memory map or ID file sets off: the readers of names hook in here. They
  // tell the user themselves what went wrong and never throw.
  std::function<void(const std::string& FileName)> LoadClass7;
  std::function<void(const std::string& FileName)> ReadIDItems;

  // The tools that a project's files open: those of parameters and of graphs hook in here.
  std::function<void()> ShowParameters;
  std::function<void()> ShowGraphic;
  std::function<void(int Index)> GoControlPanel;  // on the slave of this number
  std::function<void()> ShowScanSlaves;
  std::function<void()> ShowSniffer;
  std::function<void()> ShowErrorGenerator;
  std::function<void()> ShowCfgCheck;
  std::function<void()> ShowEepromDownloader;
  std::function<void()> ShowEepromWriter;
  std::function<void()> ShowWPConversion;

  // The screen is another one, or begins anew: nothing of it can be undone.
  std::function<void()> ForgetEdits;

  // What the composition hooks in for leaving the program. False if a tool still writes a file; if
  // that comes to its end, `again` is called. And the end itself.
  std::function<bool(std::function<void()> again)> MayEnd;
  std::function<void()> Unload;

 private:
  static std::vector<std::string> FreeHistory();
  void BuildTemplates();

  Platform& platform_;
};

}  // namespace tarnlink
