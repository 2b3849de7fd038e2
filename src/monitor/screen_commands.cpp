#include "monitor/screen_commands.h"

#include <optional>

#include "common/numbers.h"
#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/text.h"
#include "common/text_file.h"
#include "monitor/file_error_box.h"
#include "monitor/project_paths.h"
#include "monitor/screen_builder.h"
#include "platform/path_resolver.h"

namespace tarnlink {

namespace {

constexpr const char* kScreenFilter = "Windows Tarnlink Screens (*.wcr)|*.wcr";
constexpr const char* kIdFile = ".\\default.ids";
constexpr const char* kModbusIdFile = ".\\MBID.ids";

// While a whole screen is replaced nothing of it is painted, however the replacing ends.
class Replacing {
 public:
  explicit Replacing(frm_Main& main) : main_(main) {
    main_.building = true;
    main_.form.Painting = false;
  }
  ~Replacing() {
    main_.building = false;
    main_.form.Painting = true;
  }
  Replacing(const Replacing&) = delete;
  Replacing& operator=(const Replacing&) = delete;

 private:
  frm_Main& main_;
};

// The last file name of the dialog, made to end like a screen.
std::string ProposedName(const std::string& last_name) {
  constexpr int kShortest = 5;
  constexpr int kExtensionLength = 4;
  const int length = CharacterCount(last_name);
  if (length < kShortest || ToLower(last_name).ends_with(".wcr")) return last_name;
  return std::string(FirstCharacters(last_name, length - kExtensionLength)) + ".wcr";
}

}  // namespace

ScreenCommands::ScreenCommands(frm_Main& main, frm_Options& options, CommunicationRun& run,
                               RunRecorder& recorder, EditHistory& history, AddressCheck& addresses)
    : main_(main),
      options_(options),
      run_(run),
      recorder_(recorder),
      history_(history),
      addresses_(addresses) {
  main_.M_fileopen.Click = [this] { M_fileopen(); };
  main_.M_filesave(0).Click = [this] { M_filesave(0); };
  main_.M_filesave(1).Click = [this] { M_filesave(1); };
  main_.M_NewScreen.Click = [this] { M_NewScreen(); };
  main_.Toolbar1(6).Click = [this] { RefreshScreen(); };
  for (int i = main_.M_fileHist.first(); i <= main_.M_fileHist.last(); ++i) {
    main_.M_fileHist(i).Click = [this, i] {
      const std::string path = main_.M_fileHist(i).Caption;
      if (OfferToSave()) OpenTarnLinkFileBuildScreen(path);
    };
  }
}

// --- Open ----------------------------------------------------------------------------------------

// By value, since it may be the name of the screen that is cleared here.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void ScreenCommands::OpenTarnLinkFileBuildScreen(std::string path) {
  if (main_.CommRunning) run_.StopZOLTCommunication();
  std::optional<RunTimeError> failure;
  try {
    const int protocol = ReplaceScreen(path);
    main_.CurrentTarnLinkFile = path;
    SelectProtocolOfScreen(protocol);
  } catch (const RunTimeError& error) {
    main_.CurrentTarnLinkFile.clear();
    failure = error;
  }
  main_.WCRChanged = false;
  main_.ShowTitle();
  main_.ShowLocationCount();
  main_.MsgPointer = 0;
  main_.Comm_Timer->SetEnabled(false);
  main_.CommRunning = false;
  if (failure) {
    ReportFileError(main_.platform().dialogs(), *failure, "During opening wcr file ", path);
  }
}

int ScreenCommands::ReplaceScreen(const std::string& path) {
  const Replacing replacing(main_);
  recorder_.CloseLogFile();
  UnloadObjects();
  main_.CurrentTarnLinkFile.clear();
  main_.InitLocations();
  main_.InitForm();
  main_.LoadShortCuts(path);
  const std::string text = DecodeText(main_.platform().files().ReadWhole(path));
  const int protocol = ScreenFileReader::InferProtocol(text);
  BuildScreen(text);
  return protocol;
}

void ScreenCommands::BuildScreen(const std::string& text) {
  ScreenFileReader reader(text);
  addresses_.Begin();
  main_.form.BackColor = reader.ReadColour();
  // The counts follow each object that stands, so that a bad record leaves a whole screen.
  while (const auto record = reader.Next()) {
    if (const auto* location = std::get_if<LocationRecord>(&*record)) {
      BuildLocation(main_, options_, main_.MaxId + 1, *location);
      ++main_.MaxId;
      main_.LocationCount = main_.MaxId;
      if (location->tag == kMemoryTag) addresses_.AdaptAddress(main_.MaxId);
    } else {
      BuildLabel(main_, main_.TextInfoCount + 1, std::get<LabelRecord>(*record));
      ++main_.TextInfoCount;
    }
  }
}

void ScreenCommands::SelectProtocolOfScreen(int protocol) {
  LoadOptions(main_, options_);
  options_.opt_Protocol.Select(protocol);
  options_.txt_ZOLTIDDef.Text = protocol == kModbusProtocol ? kModbusIdFile : kIdFile;
  options_.ApplyOptions();
}

void ScreenCommands::UnloadObjects() {
  history_.Clear();
  for (int i = 1; i <= main_.MaxId; ++i) {
    main_.RAM_LOC_TEXT.Unload(i);
    main_.RAM_LOC_VAL.Unload(i);
    main_.RAM_LOC_CHECK.Unload(i);
  }
  for (int j = 1; j <= main_.TextInfoCount; ++j) main_.lbl_TextInfo.Unload(j);
  main_.MaxId = 0;
  main_.TextInfoCount = 0;
  main_.LocationCount = 0;
  main_.MsgPointer = 0;
  main_.tmr_noresponse->SetEnabled(false);
  if (main_.Comm->PortOpen()) main_.Comm->SetPortOpen(false);
}

void ScreenCommands::M_fileopen() {
  if (!OfferToSave()) return;
  const auto path = main_.platform().dialogs().OpenFile(
      {.title = "Open",
       .filter = kScreenFilter,
       .folder = UsableFolder(main_.WcrCmnDlg.InitDir, main_.platform().files()),
       .extension = "wcr"});
  if (!path) return;
  main_.WcrCmnDlg.InitDir = FolderOfPath(*path);
  main_.WcrCmnDlg.FileName = *path;
  OpenTarnLinkFileBuildScreen(*path);
}

void ScreenCommands::M_NewScreen() {
  if (!OfferToSave()) return;
  run_.StopZOLTCommunication();
  UnloadObjects();
  recorder_.CloseLogFile();
  main_.CurrentTarnLinkFile.clear();
  main_.InitLocations();
  main_.InitForm();
  main_.WCRChanged = false;
  main_.ShowTitle();
  main_.ShowLocationCount();
}

void ScreenCommands::RefreshScreen() {
  options_.ReloadMap();
  if (main_.CurrentTarnLinkFile.empty()) {
    main_.platform().dialogs().MessageBox({.text = " The file has to be saved first. ",
                                           .title = std::string(kProgramTitle),
                                           .icon = Icon::kInformation});
    return;
  }
  if (OfferToSave()) OpenTarnLinkFileBuildScreen(main_.CurrentTarnLinkFile);
}

// --- Save ----------------------------------------------------------------------------------------

bool ScreenCommands::SaveScreenFile(const std::string& path) {
  if (path.empty()) return true;
  // What is being dragged is hidden, and what is hidden is not saved.
  if (main_.form.DragCancel) main_.form.DragCancel();
  try {
    const std::string text = WriteScreenFile(main_.form.BackColor, ScreenRecords(main_, options_));
    main_.platform().files().WriteWhole(path, EncodeText(text));
  } catch (const RunTimeError& error) {
    ReportFileError(main_.platform().dialogs(), error, "During saving wcr file ", path);
    return false;
  }
  return true;
}

bool ScreenCommands::M_filesave(int Index) {
  if (Index != 0 || main_.CurrentTarnLinkFile.empty()) return SaveAs();
  if (!SaveScreenFile(main_.CurrentTarnLinkFile)) return false;
  ScreenIsSaved();
  main_.ShowTitle();
  return true;
}

void ScreenCommands::ScreenIsSaved() {
  main_.WCRChanged = false;
  history_.MarkSaved();
}

bool ScreenCommands::SaveAs() {
  CommonDialog& dialog = main_.WcrCmnDlg;
  dialog.FileName =
      main_.CurrentTarnLinkFile.empty() ? ProposedName(dialog.FileName) : main_.CurrentTarnLinkFile;
  const auto path = main_.platform().dialogs().SaveFile(
      {.title = "Save As",
       .filter = kScreenFilter,
       .file_name = dialog.FileName,
       .folder = UsableFolder(dialog.InitDir, main_.platform().files()),
       .extension = "wcr",
       .confirm_overwrite = true});
  if (!path) return false;
  dialog.InitDir = FolderOfPath(*path);
  dialog.FileName = *path;
  main_.CurrentTarnLinkFile = *path;
  main_.LoadShortCuts(*path);
  const bool saved = SaveScreenFile(*path);
  if (saved) {
    ScreenIsSaved();
  } else {
    history_.ForgetSaved();
  }
  main_.ShowTitle();
  if (saved) OfferToAddToProject();
  return saved;
}

void ScreenCommands::OfferToAddToProject() {
  const std::string& path = main_.CurrentTarnLinkFile;
  if (HoldsFile(main_, path)) return;
  const Answer answer = main_.platform().dialogs().MessageBox({.text = "Add file to project?",
                                                               .title = std::string(kQuestionTitle),
                                                               .icon = Icon::kQuestion,
                                                               .buttons = Buttons::kYesNo});
  if (answer == Answer::kYes) AddSavedFile(main_, "wcr", path);
}

bool ScreenCommands::OfferToSave() {
  if (!main_.WCRChanged) return true;
  const Answer answer = main_.platform().dialogs().MessageBox(
      {.text = "The screen was changed. Do you want to save the changes?",
       .title = std::string(kQuestionTitle),
       .icon = Icon::kExclamation,
       .buttons = Buttons::kYesNo});
  // Leaving the question without an answer leaves everything as it is.
  return answer == Answer::kNo || (answer == Answer::kYes && M_filesave(0));
}

}  // namespace tarnlink
