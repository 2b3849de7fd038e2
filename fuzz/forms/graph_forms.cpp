#include "fuzz/claim.h"
#include "fuzz/forms/answers.h"
#include "fuzz/forms/form_driver.h"
#include "fuzz/forms/forms.h"
#include "fuzz/forms/seed_text.h"
#include "graph/graph.h"
#include "support/fake_world.h"

namespace tarnlink {
namespace {

constexpr FormDriver::Limits kLimits = {.steps = 40, .milliseconds = 4'000, .silence = 400};
constexpr const char* kFolder = "/home/user/measured/";
constexpr int kMostLines = 1'016;
constexpr int kMostDrawn = 100;  // a second's answers, each of which may draw the lines anew

// The graph as the program opens it, and a user of those of its parts that a target names.
class GraphUser {
 public:
  explicit GraphUser(FuzzInput& input, FormDriver::Limits limits = kLimits)
      : input_(input),
        all(world, {.ComPortNumber = [] { return 1; }, .Baudrate = [] { return 3; }}, project),
        driver(input, world, ZoltSlave, limits) {
    all.graph.GraphPan.Draw = [this] { ++drawn; };
    all.picture.PngBytes = [] { return std::string("picture"); };
    all.picture.CopyPicture = [] {};
    project.HasFile = [](const std::string& name) { return name.size() % 2 == 0; };
    project.AddFile = [](const std::string&) {};
    world.disk().MakeFolder(kFolder);
    driver.Guard([&] {
      all.form.Load();
      for (int lines = input_.Below(4); lines > 0; --lines) ShowLine(input_.Byte());
    });
    driver.Check = [this] { Check(); };
    driver.Form(all.graph.form);
  }

  void ShowLine(int index) {
    if (index > all.graph.Data.LastAttribute()) return;
    all.graph.Data.Attributes[static_cast<std::size_t>(index)].ShowLine = true;
    all.graph.Data.AllocateChannel(index);
  }

  void AddMenu() {
    frmContextMenu& menu = all.menu;
    driver.Add(menu.mnuZOLTCom, menu.mnuTimeScroll, menu.mnuMeasOnly, menu.mnuCopyPicture);
    driver.AddAll(menu.mnuScale);
  }

  void AddView() {
    GraphDisplay& display = all.display;
    all.graph.ScaleWidth = 12'000;
    all.graph.ScaleHeight = 9'000;
    display.Form_Resize();
    driver.Add(all.graph.HScroll1);
    driver.Do([&] {
      display.GraphPanMouseUp(MouseButton::kLeft, static_cast<float>(input_.Word() - 100));
    });
    driver.Do([&] {
      display.GraphPanKeyDown(input_.Coin() ? CursorKey::kLeft : CursorKey::kRight, input_.Coin());
    });
    driver.Do([&] { display.PanelMouseDown(input_.Below(4), MouseButton::kLeft); });
    driver.Do([&] {
      all.graph.ScaleWidth = static_cast<float>(input_.Word());
      all.graph.ScaleHeight = static_cast<float>(input_.Word());
      display.Form_Resize();
    });
    driver.Do([&] { all.commands.ChangeScale(input_.Below(5) - 2); });
    driver.Do([&] { all.pointer.MoveInTime(input_.Byte() - 128); });
    driver.Do([&] { Point(); });
    driver.Show(all.graph.lblDate, all.graph.lblCommunicationError);
  }

  void AddTest() {
    driver.Do([&] {
      all.acquisition.TestMouseDown(input_.Coin() ? MouseButton::kLeft : MouseButton::kRight);
    });
    driver.Do([&] { all.acquisition.TestMouseUp(); });
    frmTestMode& test = all.test_mode;
    driver.Form(test.form, true);
    driver.Add(test.optTestMode, test.sldTestPower, test.txtTestPower);
    driver.Do([&] { test.Close(); });
  }

  void AddFiles() {
    frmContextMenu& menu = all.menu;
    driver.Add(menu.mnuSaveProperties, menu.mnuOpenProperties, menu.mnuSaveMeasure,
               menu.mnuOpenMeasure, menu.mnuExport, menu.mnuAutoSave, menu.mnuSavePicture);
    driver.Do([&] { all.menu.mnuPrint.Press(); });
    driver.Add(all.files.progress.cmdCancel);
    driver.Do([&] { DamageFile(); });
  }

  void Run() {
    driver.Run();
    driver.Guard([&] {
      world.faults().Clear();
      all.settings.Close();
      all.menu.mnuAutoSave.Checked = false;
    });
    driver.Leave([&] {
      all.form.Unload();
      all.files.FinishNow();
      all.form.Unload();  // it comes back once if what was recorded could not be written
      all.files.FinishNow();
    });
    Claim(!all.form.IsLoaded() && !all.files.IsBusy(), "a graph that was left has gone");
  }

  FakeWorld world;

 private:
  // Of a file that the graph has written before, one byte.
  void DamageFile() {
    const std::string path = kFolder + std::string(input_.Coin() ? "a.mss" : "a.grp");
    if (!world.disk().Exists(path)) return;
    std::string bytes = world.disk().Get(path);
    if (bytes.empty()) return;
    const std::size_t at = static_cast<std::size_t>(input_.Word()) % bytes.size();
    bytes[at] = static_cast<char>(input_.Byte());
    world.disk().Put(path, input_.Below(8) == 0 ? bytes.substr(0, at) : bytes);
  }

  // What stands under the pointer, and the picture as it is drawn.
  void Point() {
    const GraphView view = all.display.View();
    const auto reading = all.pointer.Reading(view, {static_cast<float>(input_.Word() % 12'000),
                                                    static_cast<float>(input_.Word() % 9'000)});
    Claim(!reading || reading->Value.size() < 100, "a value is short");
    if (input_.Byte() > 16) return;  // drawing costs more than all else
    RecordingSurface surface(300, 200);
    all.display.Paint(surface);
  }

  void Check() {
    const Graphic& data = all.graph.Data;
    Claim(static_cast<int>(data.Attributes.size()) <= kMostLines, "lines are counted");
    Claim(data.Channels.size() <= kMostLines, "and so are channels");
    Claim(all.graph.LinePointer >= -1 && all.graph.LinePointer < kMostLines, "a line is asked for");
    Claim(all.graph.RetryCount >= 0, "tries are counted");
    Claim(all.graph.HScroll1.Value <= all.graph.HScroll1.Max, "the scroll bar has its range");
    Claim(all.graph.TestModePower <= 100, "there is no more power");
    Claim(std::exchange(drawn, 0) <= kMostDrawn, "a step does not draw without end");
  }

  FuzzInput& input_;
  std::string mss_folder_ = kFolder;
  std::string grp_folder_ = kFolder;
  GraphProject project{mss_folder_, grp_folder_, {}, {}};
  int drawn = 0;

 public:
  Graph all;
  FormDriver driver;
};

void RunGraph(std::string_view bytes) {
  FuzzInput input(bytes);
  GraphUser user(input);
  user.AddMenu();
  user.AddView();
  user.Run();
}

void RunTestMode(std::string_view bytes) {
  FuzzInput input(bytes);
  GraphUser user(input);
  user.AddTest();
  user.Run();
}

void RunSettings(std::string_view bytes) {
  FuzzInput input(bytes);
  GraphUser user(input);
  frmGraphConf& conf = user.all.settings;
  FormDriver& driver = user.driver;
  driver.Add(user.all.menu.mnuGraphSettings);
  driver.Form(conf.form, true);
  driver.Add(conf.VScroll1, conf.optView, conf.txtAlias, conf.txtDescription, conf.cmbDrawStyle,
             conf.chkShowLine, conf.chkShowCaption, conf.cmdLineColor, conf.cmdAdvanced, conf.txtID,
             conf.txtSlaveAddress, conf.txtClass, conf.txtData, conf.txtFactor, conf.cmbStoredAs,
             conf.cmbUnit);
  driver.AddAll(conf.cmdColor);
  const auto row = [&input] { return input.Below(frmGraphConf::kRows); };
  driver.Do([&conf, row] { conf.lblCapClick(row()); });
  driver.Do([&conf] { conf.lblFixedCapClick(); });
  driver.Do([&conf, row] { conf.lblLine(row()).Click(); });
  driver.Do([&conf, row] { conf.chkLine(row()).Value = true; });
  driver.Do([&conf, row] { conf.chkCap(row()).Value = false; });
  driver.Do([&conf] { conf.Close(); });
  driver.Show(conf.lblFixedCap);
  driver.Guard([&] { user.all.menu.mnuGraphSettings.Press(); });
  user.Run();
}

void RunFiles(std::string_view bytes) {
  FuzzInput input(bytes);
  // The end of a file that is loaded begins the acquisition anew, at any time.
  GraphUser user(input, {.steps = 40, .milliseconds = 4'000, .silence = 0});
  const std::string folder = kFolder;
  user.world.disk().Put(folder + "broken.mss", input.ShortText());
  user.world.disk().Put(folder + "broken.grp", input.ShortText());
  user.driver.Offer({folder + "a.mss", folder + "a.grp", folder + "broken.mss",
                     folder + "broken.grp", folder + "a.txt", folder + "a.xlsx", folder, ""});
  user.driver.Add(user.all.menu.mnuZOLTCom, user.all.menu.mnuTimeScroll);
  user.AddFiles();
  user.AddView();
  user.Run();
}

std::vector<std::string> GraphSeeds() {
  using namespace seed;
  const std::string begin("\2\0\x14", 3);
  return {begin + Times(8, Reply() + Wait(2)), begin + Times(4, Wait(7)),
          begin + Times(3, Reply()) + Act(1) + Act(10, "\1\x10") + Act(11, "\1\1") + Act(5) +
              Act(16, "\1\2\1\2\1"),
          begin + Reply() + Act(0) + Yes() + Act(0) + Yes() + Act(13, "\1\x10\1\x10") +
              Act(14, "\1") + Act(15, "\x80"),
          begin + Reply() + Unplug() + Wait(7) + PlugIn() + Wait(7) + Reply()};
}

std::vector<std::string> TestModeSeeds() {
  using namespace seed;
  const std::string begin("\1\0", 2);
  const std::string left = "\1";
  const std::string right(1, '\0');
  return {begin + Act(0, left) + Reply() + Acknowledge() + Act(1) + Reply(),
          begin + Act(0, right) + Act(2, left) + Act(4, Text(7)) + Act(5) + Act(0, left) + Reply() +
              Acknowledge(),
          begin + Act(0, right) + Act(3, "\x32") + Act(2, std::string(1, '\0')) + Act(5) + Wait(7)};
}

std::vector<std::string> SettingsSeeds() {
  using namespace seed;
  const std::string begin("\1\0", 2);
  return {begin + Act(23, "\1") + Act(3, Text(17)) + Act(8) + "\5\1\2" + std::string(1, '\0') +
              Act(6) + Act(28) + Yes(),
          begin + Act(23, "\2") + Act(24) + Yes() + Act(10, Text(17)) + Act(12, Text(2)) +
              Act(14, Text(24)) + Act(15, "\1\1") + Act(28),
          begin + Act(1, "\5") + Act(25, "\1") + "\5\1\2" + std::string(1, '\0') + Act(26, "\3") +
              Act(27, "\3") + Act(22) + Act(0)};
}

std::vector<std::string> FilesSeeds() {
  using namespace seed;
  const std::string begin("\2\0\x14\4\1\2\3\4\4\1\2\3\4", 13);
  const std::string some = Times(3, Reply() + Wait(2));
  return {begin + some + Act(4) + File(0) + Wait(3) + Act(5) + File(0) + Wait(3),
          begin + Act(2) + File(1) + Act(3) + File(1) + Act(5) + File(2) + Act(3) + File(3),
          begin + some + Act(6) + File(4) + Wait(3) + Act(6) + File(5) + Act(7) + File(6) + Wait(7),
          begin + some + Act(4) + File(0) + Wait(3) + Act(11, std::string("\1\4\0\2\1", 5)) +
              Act(5) + File(0) + Wait(3) + Act(19, "\1\2\1\2\1"),
          begin + Act(2) + File(1) + Act(11, std::string("\0\0\0\7\1", 5)) + Act(3) + File(1) +
              some + Act(19, "\1\2\1\2\1"),
          begin + some + Act(8) + File(4) + Act(9) + "\5\1\1" + Act(10)};
}

}  // namespace

FuzzTarget GraphFormTarget() { return {"graph_form", RunGraph, GraphSeeds}; }
FuzzTarget GraphTestModeFormTarget() {
  return {"graph_test_mode_form", RunTestMode, TestModeSeeds};
}
FuzzTarget GraphSettingsFormTarget() { return {"graph_settings_form", RunSettings, SettingsSeeds}; }
FuzzTarget GraphFilesFormTarget() { return {"graph_files_form", RunFiles, FilesSeeds}; }

}  // namespace tarnlink
