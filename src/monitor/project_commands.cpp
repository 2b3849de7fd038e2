#include "monitor/project_commands.h"

#include "common/paths.h"
#include "common/run_time_error.h"
#include "common/shown_text.h"
#include "common/text_file.h"
#include "files/project_file.h"
#include "monitor/file_error_box.h"
#include "monitor/project_paths.h"
#include "platform/path_resolver.h"

namespace tarnlink {

namespace {

constexpr const char* kProjectFilter = "Project Files (*.prj)|*.prj";

}  // namespace

ProjectCommands::ProjectCommands(frm_Main& main, const frm_Options& options, MemoryMap& map)
    : main_(main), options_(options), map_(map) {
  main_.mnuViewProjectWindow.Click = [this] { mnuViewProjectWindow(); };
  main_.Toolbar1(5).Click = [this] { mnuViewProjectWindow(); };
  main_.mnuNewProject.Click = [this] { mnuNewProject(); };
  main_.mnuOpenProject.Click = [this] { mnuOpenProject(); };
  main_.mnuSaveProject.Click = [this] { mnuSaveProject(); };
  for (int i = main_.M_fileHistPrj.first(); i <= main_.M_fileHistPrj.last(); ++i) {
    main_.M_fileHistPrj(i).Click = [this, i] {
      const std::string path = main_.M_fileHistPrj(i).Caption;
      if (OfferToSaveProject()) ReadProject(path);
    };
  }
}

void ProjectCommands::mnuViewProjectWindow() {
  main_.sstProject.Visible = !main_.sstProject.Visible.get();
  main_.mnuViewProjectWindow.Checked = main_.sstProject.Visible.get();
}

// --- New, Open -----------------------------------------------------------------------------------

void ProjectCommands::ShowNewProject() {
  main_.trvProject.InitNewProjectTree();
  main_.CurrentProjectFile.clear();
  main_.ProjectChanged = false;
}

void ProjectCommands::mnuNewProject() {
  if (!OfferToSaveProject()) return;
  ShowNewProject();
  ReadNames();
}

void ProjectCommands::mnuOpenProject() {
  if (!OfferToSaveProject()) return;
  const auto path = main_.platform().dialogs().OpenFile(
      {.title = "Open",
       .filter = kProjectFilter,
       .folder = UsableFolder(main_.PrjCmnDlg.InitDir, main_.platform().files()),
       .extension = "prj"});
  if (!path || path->empty()) return;
  main_.PrjCmnDlg.InitDir = FolderOfPath(*path);  // also of one that cannot be read
  ReadProject(*path);
}

// By value, since it may be a caption of the history, which changes with the project.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void ProjectCommands::ReadProject(std::string FileName) {
  ShowNewProject();
  std::string text;
  try {
    text = DecodeText(main_.platform().files().ReadWhole(FileName));
  } catch (const RunTimeError& error) {
    return SayCannotRead(error.what());
  }
  main_.CurrentProjectFile = FileName;  // its entries may be found beside it
  if (!AddEntries(text)) return;
  main_.trvProject.SetRootText(StripFileFromPath(FileName));
  main_.PrjCmnDlg.InitDir = FolderOfPath(FileName);
  main_.LoadShortCutsPrj(FileName);
  if (main_.trvProject.FirstChild("ids")) ReadNames();
}

void ProjectCommands::ReadNames() {
  if (main_.ReadIDItems) main_.ReadIDItems(FileOfGroup(main_, "ids", options_.txt_ZOLTIDDef.Text));
}

// A name without a folder is that of a file beside the project, also once that is saved elsewhere.
std::string ProjectCommands::BesideProject(const std::string& entry) const {
  if (StripFileFromPath(entry) != entry) return entry;
  return JoinPath(FolderOfPath(main_.CurrentProjectFile), entry);
}

bool ProjectCommands::AddEntries(const std::string& text) {
  for (const std::string& entry : ReadProjectEntries(text)) {
    const auto group = GroupOfEntry(entry);
    const std::string key = BesideProject(entry);
    if (!group || !main_.trvProject.AddFileToProject(*group, key)) {
      ShowNewProject();
      SayCannotRead("The entry \"" + ShownText(entry) + "\" " +
                    (group ? "stands in it twice." : "is of no kind that a project holds."));
      return false;
    }
    if (*group == "lst") ReadMap(key);
  }
  return true;
}

// A listing is read as it is, without a look at what it says of itself. Of one that cannot be had
// no name is left: those of the project before would pass for this one's.
void ProjectCommands::ReadMap(const std::string& key) {
  const std::string path = FoundFile(main_, key);
  try {
    main_.platform().files().ReadPieces(path, [](std::string_view) { return false; });
  } catch (const RunTimeError& error) {
    ReportFileError(main_.platform().dialogs(), error, "During reading memory map ", path);
  }
  map_.Load(path);
}

void ProjectCommands::SayCannotRead(const std::string& reason) {
  main_.platform().dialogs().MessageBox({.text = "Can not read project file.",
                                         .title = std::string(kProgramTitle),
                                         .icon = Icon::kExclamation,
                                         .detail = reason});
}

// --- Save ----------------------------------------------------------------------------------------

bool ProjectCommands::mnuSaveProject() {
  const auto path = main_.platform().dialogs().SaveFile(
      {.title = "Save As",
       .filter = kProjectFilter,
       .file_name = main_.trvProject.RootText(),
       .folder = UsableFolder(main_.PrjCmnDlg.InitDir, main_.platform().files()),
       .extension = "prj",
       .confirm_overwrite = true});
  if (!path || path->empty()) return false;
  std::string text;
  try {
    text = WriteProjectFile(main_.trvProject);
  } catch (const RunTimeError& error) {
    main_.platform().dialogs().MessageBox(
        {.text = error.what(), .title = std::string(kProgramTitle), .icon = Icon::kExclamation});
    return false;
  }
  try {
    main_.platform().files().WriteWhole(*path, EncodeText(text));
  } catch (const RunTimeError& error) {
    ReportFileError(main_.platform().dialogs(), error, "During saving prj file ", *path);
    return false;
  }
  main_.trvProject.SetRootText(StripFileFromPath(*path));
  main_.PrjCmnDlg.InitDir = FolderOfPath(*path);
  main_.CurrentProjectFile = *path;
  main_.ProjectChanged = false;
  main_.LoadShortCutsPrj(*path);
  WarnOfExtensions();
  return true;
}

// A file whose extension has capitals can be added and opened, but not read in a project file.
void ProjectCommands::WarnOfExtensions() {
  for (const ProjectNode& node : main_.trvProject.Nodes()) {
    const bool is_file = !node.parent.empty() && node.parent != ProjectTree::kRoot;
    if (!is_file || GroupOfEntry(node.key) == node.parent) continue;
    main_.platform().dialogs().MessageBox(
        {.text = "The project cannot be opened again as long as it holds \"" +
                 ShownText(node.text) +
                 "\": a file must have the extension of its group, in small letters.",
         .title = std::string(kProgramTitle),
         .icon = Icon::kExclamation});
    return;
  }
}

bool ProjectCommands::OfferToSaveProject() {
  if (!main_.ProjectChanged) return true;
  const Answer answer =
      main_.platform().dialogs().MessageBox({.text = "Project has changed. Save Project ?",
                                             .title = "Project Changed",
                                             .buttons = Buttons::kOkCancel});
  return answer != Answer::kOk || mnuSaveProject();
}

}  // namespace tarnlink
